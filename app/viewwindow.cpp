#include "app/viewwindow.h"

#include <iostream>
#include <string>

#include "glext/glext.h"
#include <GLFW/glfw3.h>

#include "app/messages.h"
#include "app/sizing.h"
#include "app/workarea.h"
#include "geometry/text.h"
#include "options/message.h"
#include "options/option.h"
#include "options/userdefault.h"
#include "utils/path.h"
#include "window/glfwymgr4.h"

namespace zanoview2 {

std::int32_t winwidth = 0;
std::int32_t winheight = 0;
std::int32_t winx = 0;
std::int32_t winy = 0;

namespace {

wenk::glfwyMGR4& manager() { return wenk::glfwyMGR4::getSingleton(); }

}  // namespace

ViewWindow::ViewWindow(int* argc, char** argv)
{
    libutils::basename(prog, argv[0], sizeof prog);
    prog[sizeof prog - 1] = '\0';
    size_t const len = std::char_traits<char>::length(prog);
    if (libutils::extcasecmp(prog, len, ".exe") == 0) prog[len - 4] = '\0';
    libutils::dirname(dir, argv[0], sizeof dir);
    dir[sizeof dir - 1] = '\0';

    // The catalogue is an extra: without one the title says so, and the
    // program goes on.
    zanolib::init_message(dir, prog);

    // Built-in values, then the user's default file, then the command line.
    zanolib::option_init();
    zanolib::option_load_user_default(prog, dir);
    zanolib::option_enter_argument(argc, &argv);

    current = imagelist.end();
    // The current directory without arguments. A path that yields no
    // picture is simply not in the list.
    if (*argc < 2) {
        setImagePath(".");
    } else {
        for (int i = 1; i < *argc; ++i) setImagePath(argv[i]);
    }
}

ViewWindow::~ViewWindow() = default;

GLFWwindow* ViewWindow::window() const
{
    return manager().win(const_cast<ViewWindow*>(this));
}

void ViewWindow::init()
{
    GLFWwindow* const w = window();

    gl_extloader_init();
    scene.Init(dir);

    std::string title;
    zanolib::make_title2(title, getmsg(MSG_APPLICATION_NAME), getmsg(MSG_NO_IMAGE));
    glfwSetWindowTitle(w, title.c_str());
    glfwSetWindowSize(w, zanolib::g_option.winsize.x, zanolib::g_option.winsize.y);

    int width = 0, height = 0, x = 0, y = 0;
    glfwGetWindowSize(w, &width, &height);
    glfwGetWindowPos(w, &x, &y);
    int area_x = 0, area_y = 0, area_width = 0, area_height = 0;
    glfwGetMonitorWorkarea(glfwGetPrimaryMonitor(), &area_x, &area_y, &area_width, &area_height);

    if (zanolib::g_option.wintype & kWorkAreaBit) {
        winwidth = width;
        winheight = height;
        winx = x;
        winy = y;
        // The work area's own origin is not used: the window goes to 0,0.
        glfwSetWindowPos(w, 0, 0);
        glfwSetWindowSize(w, area_width, area_height);
    }

    if (initial_load()) {
        residue(true);
        update_title();
        scene.make_graph(dir);
    }
    // GLFW sends no size event when the size doesn't change: the scene gets
    // its viewport here all the same, before the first frame. oldwinsize is
    // left to the first size event, which only records it.
    libgr::direction2l_t const size = get_window_size();
    scene.Reshape(size.x, size.y);

    // Switched on only now, so that no repeat reaches the start.
    manager().KeyRepeat(true);
}

void ViewWindow::clear()
{
    scene.setCurrent(0);
    while (scene.delImage()) {}
    imagelist.clear();
    current = imagelist.end();
    current_index = 0;
    manager().PostRedisplay();
}

libgr::direction2l_t ViewWindow::get_window_size() const
{
    int width = 0, height = 0;
    glfwGetFramebufferSize(window(), &width, &height);
    return {width, height};
}

void ViewWindow::set_shape()
{
    oldwinsize = get_window_size();
    scene.Reshape(oldwinsize.x, oldwinsize.y);
}

void ViewWindow::reshape(int width, int height)
{
    zanolib::option_t const& option = zanolib::g_option;
    // GLFW reports window coordinates; everything here is framebuffer pixels.
    if (width != 0 && height != 0) {
        libgr::direction2l_t const fb = get_window_size();
        pixelratio = {fb.x / width, fb.y / height};
        width = fb.x;
        height = fb.y;
    }
    scene.Reshape(width, height);
    if (oldwinsize.x == 0 && oldwinsize.y == 0) {
        if (option.debug) std::cout << "oldwinsize is ZERO." << std::endl;
    } else if (option.resizetype == 1) {
        // The picture keeps its share of the window's height; the width's
        // ratio is left out on purpose.
        float const f = reshape_scale(height, oldwinsize.y);
        if (option.debug) std::cout << "re-shape scale factor is " << f << std::endl;
        scene.Scale(f, 0.0f);
    }
    oldwinsize = {width, height};
    if (option.debug) std::cout << "newwinsize is " << oldwinsize << std::endl;
}

void ViewWindow::display() { scene.Display(); }

}  // namespace zanoview2
