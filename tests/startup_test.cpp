// The viewer's start and end, driven through the real binary: the help,
// the window it opens, and the ways out of it.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

#include "tests/support/picture_files.h"
#include "tests/support/viewer_process.h"

using zvtest::ViewerProcess;

namespace {

// A HOME of its own, so that no default file of the user's can change a
// run, and the plain message file.
std::vector<std::string> clean_env() { return {"HOME=/nonexistent-zanoview-home", "LANG=C"}; }

// User plus system CPU time of a process, in clock ticks.
long cpu_ticks(pid_t pid)
{
    std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    std::getline(in, line);
    std::istringstream fields(line.substr(line.rfind(')') + 2));
    std::string field;
    long utime = 0, stime = 0;
    for (int i = 3; fields >> field; ++i) {
        if (i == 14) utime = std::stol(field);
        if (i == 15) { stime = std::stol(field); break; }
    }
    return utime + stime;
}

}  // namespace

TEST(Help, PrintsTheListingAndExitsBeforeAnyWindow)
{
    ViewerProcess viewer({"-verbose", "-h", "picture.bmp"}, clean_env());
    ASSERT_EQ(viewer.wait_exit(), 0);
    std::string const out = viewer.out();
    // The usage line names the program as it was called.
    std::string const usage = "usage: " + zvtest::viewer_binary() + " [option] file...\n\noption";
    EXPECT_EQ(out.rfind(usage, 0), 0u) << out;
    EXPECT_NE(out.find("-single                bool    disable double-buffer, reduce VRAM use.\n"), std::string::npos);
    EXPECT_EQ(viewer.err(), "");
}

TEST(Help, SwitchedOffFormGivesNoHelp)
{
    zvtest::TempDir empty;
    ViewerProcess viewer({"-h-", empty.path()}, clean_env());
    ASSERT_TRUE(viewer.wait_window());
    EXPECT_EQ(viewer.out(), "");
    viewer.key("q");
    EXPECT_EQ(viewer.wait_exit(), 0);
}

TEST(Start, WithoutADisplayFailsWithStatusOne)
{
    ViewerProcess viewer({}, {"DISPLAY", "WAYLAND_DISPLAY", "HOME=/nonexistent-zanoview-home"});
    EXPECT_EQ(viewer.wait_exit(), 1);
    EXPECT_EQ(viewer.err(), "glfwInit() failed.\n");
}

TEST(Window, OpensAtTheDefaultSizeWithTheEmptyTitle)
{
    // A directory with no picture leaves the window empty.
    zvtest::TempDir empty;
    ViewerProcess viewer({empty.path()}, clean_env());
    ASSERT_TRUE(viewer.wait_window());
    zvtest::geometry_t const g = viewer.sized_geometry(800, 600);
    EXPECT_EQ(g.width, 800);
    EXPECT_EQ(g.height, 600);
    EXPECT_EQ(viewer.title(), zvtest::catalogue_line(0) + " - " + zvtest::catalogue_line(1));
    viewer.key("q");
    EXPECT_EQ(viewer.wait_exit(), 0);
    EXPECT_EQ(viewer.out(), "");
    EXPECT_EQ(viewer.err(), "");
}

TEST(Window, TakesItsSizeFromTheWinsizeOption)
{
    zvtest::TempDir empty;
    ViewerProcess viewer({"-winsize", "1024x768", empty.path()}, clean_env());
    ASSERT_TRUE(viewer.wait_window());
    zvtest::geometry_t const g = viewer.sized_geometry(1024, 768);
    EXPECT_EQ(g.width, 1024);
    EXPECT_EQ(g.height, 768);
}

TEST(Window, WorkAreaTypeCoversTheScreenFromTheOrigin)
{
    // Without a window manager the work area is the whole screen.
    zvtest::TempDir empty;
    ViewerProcess viewer({"-wintype", "2", empty.path()}, clean_env());
    ASSERT_TRUE(viewer.wait_window());
    zvtest::geometry_t const g = viewer.sized_geometry(1280, 1024);
    EXPECT_EQ(g.x, 0);
    EXPECT_EQ(g.y, 0);
    EXPECT_EQ(g.width, 1280);
    EXPECT_EQ(g.height, 1024);
}

TEST(Window, MaximizeTypeIsAnOrdinaryWindow)
{
    zvtest::TempDir empty;
    ViewerProcess viewer({"-wintype", "1", empty.path()}, clean_env());
    ASSERT_TRUE(viewer.wait_window());
    zvtest::geometry_t const g = viewer.sized_geometry(800, 600);
    EXPECT_EQ(g.width, 800);
    EXPECT_EQ(g.height, 600);
}

TEST(Window, SleepsWhileNothingHappens)
{
    zvtest::TempDir empty;
    ViewerProcess viewer({empty.path()}, clean_env());
    ASSERT_TRUE(viewer.wait_window());
    viewer.settled_screenshot();
    // A spinning loop would burn about a hundred ticks in that second.
    long const before = cpu_ticks(viewer.pid());
    sleep(1);
    EXPECT_LE(cpu_ticks(viewer.pid()) - before, 5);
}

class Quit : public ::testing::TestWithParam<char const*> {};

TEST_P(Quit, EndsWithStatusZero)
{
    zvtest::TempDir empty;
    ViewerProcess viewer({empty.path()}, clean_env());
    ASSERT_TRUE(viewer.wait_window());
    if (std::string(GetParam()) == "close") viewer.close();
    else viewer.key(GetParam());
    EXPECT_EQ(viewer.wait_exit(), 0);
    EXPECT_EQ(viewer.err(), "");
}

INSTANTIATE_TEST_SUITE_P(ByKeyOrCloseButton, Quit, ::testing::Values("q", "Escape", "close"),
                         [](::testing::TestParamInfo<char const*> const& info) {
                             std::string const how = info.param;
                             return how == "close" ? std::string("CloseButton") : "Key_" + how;
                         });

// A script or a person watching the viewer through a pipe sees each line as
// it is written, not when the viewer exits: the line of the "W" key arrives
// while the window is still open.
TEST(Output, VerboseLineReachesAPipeWhileTheViewerRuns)
{
    zvtest::TempDir home, empty;
    ViewerProcess viewer({"-verbose", empty.path()}, {"HOME=" + home.path(), "LANG=C"},
                         ViewerProcess::output_t::pipe);
    ASSERT_TRUE(viewer.wait_window());
    viewer.key("W");
    std::string const expected = "save user default: " + home.file(".zanoview");
    std::string line;
    bool seen = false;
    while (!seen && viewer.read_line(line)) seen = line == expected;
    EXPECT_TRUE(seen) << "no line \"" << expected << "\" before the timeout";
    EXPECT_TRUE(viewer.running());
    viewer.key("q");
    EXPECT_EQ(viewer.wait_exit(), 0);
}
