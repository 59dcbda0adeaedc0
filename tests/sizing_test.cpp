// The sizing policy on a real window: how a new picture is fitted, how the
// window follows a picture within its limits, and how a stored view comes
// back. Scales are read off the view matrix as the cube root of its
// determinant.
#include "app/viewwindow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <stdlib.h>
#include <unistd.h>

#include "glext/glext.h"
#include <GLFW/glfw3.h>

#include "app/sizing.h"
#include "app/zvwfile.h"
#include "geometry/matrix.h"
#include "geometry/text.h"
#include "options/option.h"
#include "tests/support/picture_files.h"
#include "window/glfwymgr4.h"

using namespace libgr;
using zanolib::g_option;
using zanoview2::ViewWindow;

namespace {

class Sizing : public ::testing::Test {
protected:
    void SetUp() override
    {
        // The user's own default file must not reach the tests.
        setenv("HOME", m_dir.path().c_str(), 1);
        // NOTE: glfwTerminate is never called: it would unload the GL driver
        // before the leak check runs.
        if (!glfwInit()) GTEST_SKIP() << "no X display";
    }
    void TearDown() override
    {
        close();
        g_option = m_kept;
    }

    std::string picture(int width, int height, char const* name = "p.bmp")
    {
        std::string const path = m_dir.file(name);
        EXPECT_TRUE(zvtest::write_bmp24(path, width, height, zvtest::distinct_colour));
        return path;
    }

    // The viewer on `path` in a window of `winsize`. The window comes up
    // with resetview off, so that it stands as loaded whatever the start
    // does; the test then sets the options and calls residue itself.
    void open(std::string const& path, char const* winsize = "800x600")
    {
        close();
        m_args = {"zanoview", "-winsize", winsize, path};
        std::vector<char*> argv;
        for (std::string& arg : m_args) argv.push_back(&arg[0]);
        argv.push_back(nullptr);
        int argc = int(argv.size()) - 1;
        m_view = std::make_unique<ViewWindow>(&argc, argv.data());
        bool const resetview = g_option.resetview;
        g_option.resetview = false;
        m_window = wenk::glfwyMGR4::getSingleton().addWindow(m_view.get(), "test");
        g_option.resetview = resetview;
        ASSERT_NE(m_window, nullptr) << "no OpenGL window";
        settle();
    }
    void close()
    {
        // The window first: its callbacks reach into the view.
        if (m_window) glfwDestroyWindow(m_window);
        m_window = nullptr;
        m_view.reset();
    }

    // Lets GLFW deliver what is pending, the size events of a resize
    // included: a tenth of a second, or up to two seconds until the
    // framebuffer has the size `until`.
    void settle(direction2l_t until = {-1, -1})
    {
        int const rounds = until.x < 0 ? 5 : 100;
        for (int i = 0; i < rounds; ++i) {
            glfwWaitEventsTimeout(0.02);
            if (framebuffer() == until) return;
        }
    }
    direction2l_t framebuffer() const
    {
        direction2l_t s{0, 0};
        glfwGetFramebufferSize(m_window, &s.x, &s.y);
        return s;
    }
    float scale() const { return std::cbrt(Determinant(m_view->getMatrix())); }
    position3_t centre() const { return getTranslateVector(m_view->getMatrix()); }

    zvtest::TempDir m_dir;
    zanolib::option_t const m_kept = g_option;
    std::vector<std::string> m_args;
    std::unique_ptr<ViewWindow> m_view;
    GLFWwindow* m_window = nullptr;
};

}  // namespace

// ---- A new picture follows the window at seven eighths of its tighter
// side (resizetype 1, the built-in), or takes the fixed scale (resizetype
// 0); the window stays as it is.

TEST_F(Sizing, NewPictureIsFittedOrGetsTheFixedScale)
{
    struct {
        unsigned resizetype;
        int width, height;
        char const* winsize;
        direction2l_t window;
        bool changed;
        float scale;
    } const cases[] = {
        {1, 400, 300, "80x60", {80, 60}, true, 0.175f},       // ratio 5 on both axes
        {1, 100, 100, "800x600", {800, 600}, true, 5.25f},    // small pictures grow just as large ones shrink
        {0, 100, 100, "800x600", {800, 600}, false, 0.5f},    // image_ratio_of_image
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(std::to_string(c.width) + "x" + std::to_string(c.height) + " in " + c.winsize);
        open(picture(c.width, c.height), c.winsize);
        g_option.resizetype = c.resizetype;
        g_option.image_ratio_of_image = 0.5f;
        EXPECT_EQ(m_view->residue(true), c.changed);
        EXPECT_NEAR(scale(), c.scale, 1e-5f);
        EXPECT_NEAR(centre().x, 0.0f, 1e-5f);
        settle();
        EXPECT_EQ(framebuffer(), c.window);
    }
}

// ---- The window follows the picture (resizetype 2): 1.2 times the picture,
// per axis where the flags let it move, within the kind of limit chosen.

TEST_F(Sizing, WindowFollowsThePictureWithinItsLimits)
{
    struct {
        char const* what;
        int width, height;
        unsigned sizelimit;
        bool magnify, shrink;
        direction2l_t window;
    } const cases[] = {
        {"no limit, both ways", 200, 100, 0, true, true, {240, 120}},
        {"no limit, grows", 1000, 800, 0, true, false, {1200, 960}},
        {"shrinking not allowed", 200, 100, 0, true, false, {800, 600}},
        {"growing not allowed", 1000, 200, 0, false, true, {800, 240}},
        // The margin comes off the present window: it can't grow.
        {"margin", 1000, 1000, 1, true, false, {790, 568}},
        {"maximum size", 1000, 1000, 2, true, false, {500, 400}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        open(picture(c.width, c.height));
        g_option.resizetype = 2;
        g_option.sizelimit = c.sizelimit;
        g_option.resize_magnify = c.magnify;
        g_option.resize_shrink = c.shrink;
        g_option.maxsize = {500, 400};
        bool const changes = c.window.x != 800 || c.window.y != 600;
        EXPECT_EQ(m_view->residue(true), changes);
        settle(c.window);
        EXPECT_EQ(framebuffer(), c.window);
        // The picture's matrix is left alone, by residue and by the resize.
        EXPECT_EQ(scale(), 1.0f);
    }
}

// ---- A stored view: the matrix saved beside the picture is composed onto
// the picture's own, under resizetype 1 scaled for the present window, and
// under resizetype 2 the window takes the stored size.

TEST_F(Sizing, StoredViewComesBackAsTheOptionsSay)
{
    // Scale 2, moved by (10, 20).
    matrix3w_t const stored = getScaleMatrix(2, 2, 2) * getTranslateMatrix(position3(10, 20, 0));
    struct {
        char const* what;
        unsigned resizetype;
        bool reproduce, resetview;
        direction2l_t saved;
        float scale;
        position3_t centre;
        direction2l_t window;
    } const cases[] = {
        // 800x600 against 400x200: the smaller ratio, 2, scales the view.
        {"picture follows", 1, true, true, {400, 200}, 4.0f, {20, 40, 0}, {800, 600}},
        {"a stored side of 0 is left out", 1, true, true, {400, 0}, 4.0f, {20, 40, 0}, {800, 600}},
        {"neither follows", 0, true, true, {400, 300}, 2.0f, {10, 20, 0}, {800, 600}},
        {"window follows", 2, true, true, {640, 400}, 2.0f, {10, 20, 0}, {640, 400}},
        {"reproduce off: centred", 1, false, true, {400, 300}, 5.25f, {0, 0, 0}, {800, 600}},
        {"resetview off: as loaded", 1, true, false, {400, 300}, 1.0f, {0, 0, 0}, {800, 600}},
    };
    std::string const path = picture(100, 100);
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        zanoview2::zvwfile_t file;
        file.size = c.saved;
        file.matrix = stored;
        ASSERT_TRUE(file.save(path.c_str()));
        open(path);
        g_option.resizetype = c.resizetype;
        g_option.reproduce = c.reproduce;
        g_option.resetview = c.resetview;
        g_option.sizelimit = 0;
        g_option.resize_shrink = true;
        EXPECT_TRUE(m_view->residue(true));
        EXPECT_NEAR(scale(), c.scale, 1e-5f);
        EXPECT_NEAR(centre().x, c.centre.x, 1e-4f);
        EXPECT_NEAR(centre().y, c.centre.y, 1e-4f);
        settle(c.window);
        EXPECT_EQ(framebuffer(), c.window);
    }
}

// Sides of 0, as a window that is minimized on some systems reports, must
// never put NaN or infinity into the view: 0 / 0 is NaN, and a scale of 0
// followed by one of infinity is NaN as well.
TEST(SizingScales, SidesOfZeroGiveFiniteFactors)
{
    using zanoview2::stored_view_scale;
    // The smaller ratio, or the only one there is.
    EXPECT_EQ(stored_view_scale({800, 600}, {400, 200}), 2.0f);
    EXPECT_EQ(stored_view_scale({800, 600}, {400, 0}), 2.0f);
    EXPECT_EQ(stored_view_scale({800, 0}, {400, 0}), 2.0f);
    EXPECT_EQ(stored_view_scale({0, 600}, {0, 300}), 2.0f);
    // Only the height counts: the picture keeps its share of it.
    EXPECT_EQ(zanoview2::reshape_scale(300, 600), 0.5f);
}

// The same through the window's own resize handler: a window that goes to a
// height of 0, or to 0,0, and comes back shows the picture as before.
TEST_F(Sizing, ResizeToZeroAndBackLeavesThePictureAlone)
{
    direction2l_t const zeros[] = {{800, 0}, {0, 0}};
    for (direction2l_t const zero : zeros) {
        SCOPED_TRACE(std::to_string(zero.x) + "x" + std::to_string(zero.y));
        open(picture(100, 100));
        m_view->residue(true);
        float const before = scale();
        // Non-zero sizes are taken from the framebuffer, which stays 800x600.
        m_view->reshape(800, 600);
        m_view->reshape(zero.x, zero.y);
        m_view->reshape(800, 600);
        for (vector3w_t const& row : m_view->getMatrix().m)
            for (int i = 0; i < 4; ++i) ASSERT_TRUE(std::isfinite(row[i]));
        EXPECT_EQ(scale(), before);
    }
}

// ---- The commands on the view state file.

TEST_F(Sizing, SaveAndDeleteTheViewOfThePictureOnScreen)
{
    std::string const path = picture(100, 100, "a.bmp");
    std::string const zvw = m_dir.file("a.zvw");
    open(path);
    m_view->go_center();
    m_view->menu_edit_save_zvwfile();
    zanoview2::zvwfile_t file;
    ASSERT_TRUE(file.load(path.c_str()));
    EXPECT_EQ(file.size, direction2l(800, 600));
    EXPECT_NEAR(file.matrix.data()[0], m_view->getMatrix().data()[0], 1e-6f);

    // Deleting leaves the view on screen as it is.
    m_view->menu_edit_delete_zvwfile();
    EXPECT_NE(access(zvw.c_str(), F_OK), 0);
    EXPECT_NEAR(scale(), 5.25f, 1e-5f);
}
