// Keys, buttons and the wheel on the real viewer, observed on the screen:
// one picture of coloured blocks at scale 1 in the middle of an 800x600
// window, compared with what each command must make of it.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/picture_files.h"
#include "tests/support/viewer_process.h"

using zvtest::ViewerProcess;
using zvtest::screenshot_t;

namespace {

// Blocks rather than single pixels, so that a turn there and back again,
// off by a rounding, changes only a few edge pixels.
std::uint32_t blocks(int x, int y) { return zvtest::distinct_colour(x / 20, y / 20); }

int differing(screenshot_t const& a, screenshot_t const& b)
{
    if (a.width != b.width || a.height != b.height) return a.width * a.height + 1;
    int n = 0;
    for (size_t i = 0; i < a.pixels.size(); ++i) n += a.pixels[i] != b.pixels[i];
    return n;
}

// Pixels of the middle row that are not background: the width of the
// picture with its frame.
int width_across_middle(screenshot_t const& shot)
{
    int n = 0;
    for (int x = 0; x < shot.width; ++x) n += shot.at(x, shot.height / 2) != shot.at(0, 0);
    return n;
}

// `shot` with everything moved right by dx and down by dy, the background
// taken from its corner filling in.
screenshot_t shifted(screenshot_t const& shot, int dx, int dy)
{
    screenshot_t out = shot;
    for (int y = 0; y < shot.height; ++y)
        for (int x = 0; x < shot.width; ++x) {
            int const sx = x - dx, sy = y - dy;
            bool const inside = sx >= 0 && sx < shot.width && sy >= 0 && sy < shot.height;
            out.pixels[size_t(y) * shot.width + x] = inside ? shot.at(sx, sy) : shot.at(0, 0);
        }
    return out;
}

class ViewCommands : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(zvtest::write_bmp24(pictures.file("blocks.bmp"), 200, 120, blocks));
        viewer.reset(new ViewerProcess({"-resizetype", "0", "-winsize", "800x600", pictures.file("blocks.bmp")},
                                       {"HOME=" + home.path()}));
        ASSERT_TRUE(viewer->wait_window());
        start = viewer->settled_screenshot();
        ASSERT_EQ(start.width, 800);
    }

    // Waits until the window shows `expected` up to `tolerance` pixels.
    ::testing::AssertionResult shows(screenshot_t const& expected, int tolerance = 0)
    {
        int n;
        if (zvtest::eventually([&] { return (n = differing(viewer->screenshot(), expected)) <= tolerance; }))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << n << " pixels differ (see the event log above)";
    }

    // A screenshot that differs from `before`, once it holds still.
    screenshot_t changed_from(screenshot_t const& before)
    {
        zvtest::eventually([&] { return differing(viewer->screenshot(), before) != 0; });
        return viewer->settled_screenshot();
    }

    zvtest::TempDir home;
    zvtest::TempDir pictures;
    std::unique_ptr<ViewerProcess> viewer;
    screenshot_t start;
};

// Rounding in a turn there and back moves at most a few edge pixels.
constexpr int kTurnTolerance = 8;

}  // namespace

// Each check waits for a picture other than the one before it, so that it
// can't pass before the viewer has handled the keys.
TEST_F(ViewCommands, DigitsSetAnAbsoluteZoomAndTheWheelShrinksForward)
{
    viewer->key("2");
    screenshot_t const half = changed_from(start);
    EXPECT_GT(differing(half, start), 0);
    viewer->key("0");
    EXPECT_TRUE(shows(start));
    // A notch of the wheel forward makes the picture smaller.
    viewer->click(4);
    screenshot_t const notch = changed_from(start);
    EXPECT_LT(width_across_middle(notch), width_across_middle(start));
    // Page Up and the wheel add up; a digit replaces them all.
    viewer->key("Prior");
    viewer->key("Prior");
    viewer->key("2");
    EXPECT_TRUE(shows(half));
}

TEST_F(ViewCommands, TurnKeysGoOppositeWays)
{
    // The picture spans columns 300 to 499 and rows 240 to 359. A turn
    // counter-clockwise lifts the right end of its top edge above row 240.
    viewer->key("slash");
    screenshot_t const turned = changed_from(start);
    EXPECT_EQ(turned.at(485, 236), blocks(190, 0)) << std::hex << turned.at(485, 236);
    // Shift+8 reaches the viewer as "8": the keypad has the only "*".
    viewer->key("KP_Multiply");
    EXPECT_TRUE(shows(start, kTurnTolerance));
    // "-" takes back half of a turn: ten degrees become five.
    viewer->key("slash");
    viewer->key("slash");
    viewer->key("minus");
    EXPECT_TRUE(shows(turned, kTurnTolerance));
    viewer->key("backslash");
    EXPECT_TRUE(shows(start, kTurnTolerance));
}

TEST_F(ViewCommands, KeysWithoutACommandDoNothingArrowsMoveTheCameraAndTheLeftButtonDrags)
{
    std::string const title = viewer->title();
    for (char const* key : {"plus", "equal", "KP_Add", "KP_Begin", "a", "x", "Tab", "F1", "shift+g"})
        viewer->key(key);
    // Handled after all of them: had any of them changed the view, the
    // picture would not stand where the arrows put it.
    viewer->key("Right");
    viewer->key("Up");
    EXPECT_TRUE(shows(shifted(start, -10, 10)));
    EXPECT_EQ(viewer->title(), title);
    viewer->move_mouse(400, 300);
    viewer->button(1, true);
    viewer->move_mouse(430, 280);
    viewer->button(1, false);
    EXPECT_TRUE(shows(shifted(start, 20, -10)));
    // A cursor moved with no button down drags nothing.
    viewer->move_mouse(300, 200);
    viewer->key("Left");
    EXPECT_TRUE(shows(shifted(start, 30, -10)));
}

TEST(WorkArea, FTogglesBetweenTheWorkAreaAndTheWindowKeptAtStart)
{
    zvtest::TempDir home;
    ViewerProcess viewer({"-wintype", "2", "-winsize", "640x400"}, {"HOME=" + home.path()});
    ASSERT_TRUE(viewer.wait_window());
    // Without a window manager the work area is the whole screen, and a
    // window stands at 0,0 unless placed.
    auto const becomes = [&](int width, int height) {
        zvtest::geometry_t const g = viewer.sized_geometry(width, height);
        return std::to_string(g.x) + "," + std::to_string(g.y) + " " + std::to_string(g.width) + "x" +
               std::to_string(g.height);
    };
    EXPECT_EQ(becomes(1280, 1024), "0,0 1280x1024");
    viewer.key("f");
    EXPECT_EQ(becomes(640, 400), "0,0 640x400");
    viewer.key("f");
    EXPECT_EQ(becomes(1280, 1024), "0,0 1280x1024");
}
