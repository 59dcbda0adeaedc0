// The sizing policy: when a picture comes up, the window adapts to the
// picture, the picture to the window, or neither, as the options say.
#include "app/sizing.h"

#include <cassert>
#include <iostream>
#include <utility>

#include "glext/glext.h"
#include <GLFW/glfw3.h>

#include "app/viewwindow.h"
#include "app/zvwfile.h"
#include "geometry/text.h"
#include "options/option.h"

namespace zanoview2 {

namespace {

// Values of the resizetype option.
enum : uint32_t {
    RESIZE_NEITHER = 0,
    RESIZE_PICTURE_FOLLOWS = 1,
    RESIZE_WINDOW_FOLLOWS = 2,
};

// Values of the sizelimit option; anything else means no limit.
// NOTE: the option's help text numbers these one lower ("0:screen
// 1:value"). The values acted on are these, and the help text stays as it
// is; don't align one side alone.
enum : uint32_t {
    SIZELIMIT_MARGIN = 1,
    SIZELIMIT_MAXSIZE = 2,
};

}  // namespace

float stored_view_scale(libgr::direction2l_t const& window, libgr::direction2l_t const& stored)
{
    assert(stored != 0);
    libgr::direction2_t const ratio = libgr::direction2(window) / libgr::direction2(stored);
    if (stored.x == 0) return ratio.y;
    if (stored.y == 0) return ratio.x;
    return libgr::min1(ratio);
}

float reshape_scale(std::int32_t height, std::int32_t old_height)
{
    if (height == 0 || old_height == 0) return 1.0f;
    return float(height) / float(old_height);
}

bool ViewWindow::residue(bool resize)
{
    zanolib::option_t const& option = zanolib::g_option;
    // The new picture stands as the scene loaded it.
    if (!option.resetview) return true;
    if (option.reproduce && residue_resume(resize)) return true;
    return residue_new(resize);
}

// The picture's stored view, when it has a view state file.
bool ViewWindow::residue_resume(bool resize)
{
    if (current == imagelist.end()) return false;
    zvwfile_t stored;
    if (!stored.load(current->c_str())) return false;

    libgr::direction2l_t const win = get_window_size();
    switch (zanolib::g_option.resizetype) {
    case RESIZE_WINDOW_FOLLOWS:
        residue_set_window_size(residue_calc_window_size(stored.size, win), win, resize);
        setMatrix(stored.matrix);
        break;
    case RESIZE_PICTURE_FOLLOWS:
        // Without a stored size there is nothing to scale against; the
        // picture then stands as loaded, its stored view ignored too.
        if (stored.size != 0) {
            setMatrix(stored.matrix);
            setScale(stored_view_scale(win, stored.size));
        }
        break;
    case RESIZE_NEITHER:
        setMatrix(stored.matrix);
        break;
    default:
        break;
    }
    return true;
}

// A picture with no stored view.
bool ViewWindow::residue_new(bool resize)
{
    zanolib::option_t const& option = zanolib::g_option;
    switch (option.resizetype) {
    case RESIZE_WINDOW_FOLLOWS: {
        // The size as stored, not as turned on screen: a turned picture gets
        // a window of its unturned shape.
        libgr::direction2l_t const img = scene.getCurrentImageSize();
        if (option.verbose) std::cout << "imagesize: " << img << std::endl;
        libgr::direction2l_t const target =
            libgr::direction2l(libgr::direction2(img) * option.window_ratio_of_image);
        if (!(target != 0)) return false;
        libgr::direction2l_t const win = get_window_size();
        return residue_set_window_size(residue_calc_window_size(target, win), win, resize);
    }
    case RESIZE_PICTURE_FOLLOWS:
        go_center();
        return true;
    case RESIZE_NEITHER:
        setScale(option.image_ratio_of_image);
        return false;
    default:
        return false;
    }
}

// The window size to ask for: `target` where the resize flags let an axis
// move, within the kind of limit chosen; `current` elsewhere.
libgr::direction2l_t ViewWindow::residue_calc_window_size(libgr::direction2l_t const& target,
                                                          libgr::direction2l_t const& current)
{
    zanolib::option_t const& option = zanolib::g_option;
    // The margin is taken off the present window, not the monitor: under
    // SIZELIMIT_MARGIN a window can only shrink.
    int ww = 0, wh = 0;
    glfwGetWindowSize(window(), &ww, &wh);

    auto axis = [&](int32_t want, int32_t now, int32_t screen, int32_t margin, int32_t maxsize) {
        bool const moves = (want > now && option.resize_magnify) || (want < now && option.resize_shrink);
        if (!moves) return now;
        switch (option.sizelimit) {
        case SIZELIMIT_MARGIN:
            return libgr::min2(screen - margin, want);
        case SIZELIMIT_MAXSIZE:
            return libgr::min2(maxsize, want);
        default:
            return want;
        }
    };
    return {axis(target.x, current.x, ww, option.maxmargin.x, option.maxsize.x),
            axis(target.y, current.y, wh, option.maxmargin.y, option.maxsize.y)};
}

bool ViewWindow::residue_set_window_size(libgr::direction2l_t const& target,
                                         libgr::direction2l_t const& current, bool resize)
{
    if (zanolib::g_option.verbose) std::cout << "set window size to: " << target << std::endl;
    if (target == current) {
        // No size event will come: the scene gets its projection for the
        // new picture here.
        set_shape();
        return false;
    }
    // NOTE: framebuffer pixels go where GLFW takes screen coordinates, so
    // with two pixels per coordinate the window comes out twice the size.
    // The scene follows through the size callback and reshape.
    if (resize) glfwSetWindowSize(window(), target.x, target.y);
    return true;
}

void ViewWindow::go_center()
{
    scene.Origin();
    libgr::direction2l_t const picture = getCurrentImageSize();
    // Without a picture the size is 0,0: nothing to fit, the scale stays.
    // A picture has both sides, so the ratios below are never 0 / 0.
    if (picture.x == 0 || picture.y == 0) return;
    float const m = libgr::max1(libgr::direction2(picture) / libgr::direction2(get_window_size()));
    setScale(zanolib::g_option.image_ratio_of_window / m);
}

libgr::direction2l_t ViewWindow::getCurrentImageSize() const
{
    libgr::direction2l_t size = scene.getCurrentImageSize();
    // The scene has a turn count only with a picture, and without one the
    // size is 0,0: only ask when there is something to swap.
    if (size != 0 && (scene.rightrotatecount() & 1)) std::swap(size.x, size.y);
    return size;
}

void ViewWindow::setScale(float s) { scene.Scale(s, 0.0f); }

// Composes onto the picture's own matrix (its file's turn included) rather
// than replacing it.
void ViewWindow::setMatrix(libgr::matrix3w_t const& m) { scene.Matrix(m); }

}  // namespace zanoview2
