// The viewer's start and end, driven through the real binary: the help,
// the window it opens, and the ways out of it.
#include <gtest/gtest.h>

#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>

#include "tests/support/picture_files.h"
#include "tests/support/viewer_process.h"

using zvtest::ViewerProcess;

namespace {

// A HOME of its own, so that no default file of the user's can change a
// run, and the plain message file.
std::vector<std::string> clean_env() { return {"HOME=/nonexistent-zanoview-home", "LANG=C"}; }

// User plus system CPU time of a process, in clock ticks: fields 14 and 15
// of its stat line, counted from 1, the command name in brackets being 2.
long cpu_ticks(pid_t pid)
{
    std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
    std::string line, skipped;
    std::getline(in, line);
    std::istringstream fields(line.substr(line.rfind(')') + 2));
    for (int i = 3; i < 14; ++i) fields >> skipped;
    long utime = 0, stime = 0;
    fields >> utime >> stime;
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

TEST(Start, WithoutADisplayFailsWithStatusOne)
{
    ViewerProcess viewer({}, {"DISPLAY", "WAYLAND_DISPLAY", "HOME=/nonexistent-zanoview-home"});
    EXPECT_EQ(viewer.wait_exit(), 1);
    EXPECT_EQ(viewer.err(), "glfwInit() failed.\n");
}

TEST(Window, OpensAtTheDefaultSizeWithTheEmptyTitleAndSleepsWhileNothingHappens)
{
    // A directory with no picture leaves the window empty.
    zvtest::TempDir empty;
    ViewerProcess viewer({empty.path()}, clean_env());
    ASSERT_TRUE(viewer.wait_window());
    zvtest::geometry_t const g = viewer.sized_geometry(800, 600);
    EXPECT_EQ(g.width, 800);
    EXPECT_EQ(g.height, 600);
    EXPECT_EQ(viewer.title(), zvtest::catalogue_line(0) + " - " + zvtest::catalogue_line(1));
    viewer.settled_screenshot();
    // A spinning loop would burn about a hundred ticks in that second.
    long const before = cpu_ticks(viewer.pid());
    sleep(1);
    EXPECT_LE(cpu_ticks(viewer.pid()) - before, 5);
    viewer.key("q");
    EXPECT_EQ(viewer.wait_exit(), 0);
    EXPECT_EQ(viewer.out(), "");
    EXPECT_EQ(viewer.err(), "");
}

// The work area type, which fills the screen, is run by input_test, which
// toggles it with "f".
struct window_case {
    char const* name;
    std::vector<std::string> options;
    int width, height;  // of the window they open
};

class WindowOptions : public ::testing::TestWithParam<window_case> {};

TEST_P(WindowOptions, OpenAWindowOfTheirSizeAndPrintNothing)
{
    zvtest::TempDir empty;
    std::vector<std::string> args = GetParam().options;
    args.push_back(empty.path());
    ViewerProcess viewer(args, clean_env());
    ASSERT_TRUE(viewer.wait_window());
    zvtest::geometry_t const g = viewer.sized_geometry(GetParam().width, GetParam().height);
    EXPECT_EQ(g.width, GetParam().width);
    EXPECT_EQ(g.height, GetParam().height);
    viewer.key("q");
    EXPECT_EQ(viewer.wait_exit(), 0);
    EXPECT_EQ(viewer.out(), "");
    EXPECT_EQ(viewer.err(), "");
}

INSTANTIATE_TEST_SUITE_P(Cases, WindowOptions,
                         ::testing::Values(window_case{"HelpSwitchedOff", {"-h-"}, 800, 600},
                                           window_case{"Winsize", {"-winsize", "1024x768"}, 1024, 768},
                                           // An ordinary window.
                                           window_case{"MaximizeType", {"-wintype", "1"}, 800, 600}),
                         [](::testing::TestParamInfo<window_case> const& info) {
                             return std::string(info.param.name);
                         });

// "q" ends the runs above.
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

INSTANTIATE_TEST_SUITE_P(ByKeyOrCloseButton, Quit, ::testing::Values("Escape", "close"),
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
