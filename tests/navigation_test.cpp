// Paging through the picture list of the real viewer, observed through the
// window title "path (index/count) - name". Keys are handled in order, so
// a step that must do nothing is checked by the title after the next key.
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>

#include "tests/support/picture_files.h"
#include "tests/support/viewer_process.h"

using zvtest::ViewerProcess;

namespace {

std::uint32_t grey(int, int) { return 0x808080; }

class Paging : public ::testing::Test {
protected:
    // Starts the viewer on the directory; the pictures must be in it first.
    void start()
    {
        viewer.reset(new ViewerProcess({dir.path()}, {"HOME=" + home.path()}));
        ASSERT_TRUE(viewer->wait_window());
    }

    void picture(std::string const& name, int width = 16, int height = 8)
    {
        ASSERT_TRUE(zvtest::write_bmp24(dir.file(name), width, height, grey));
    }

    // Sends `key` and waits for the title of entry `index` of `count`; the
    // application's name ends it.
    ::testing::AssertionResult shows(std::string const& key, std::string const& name, int index, int count)
    {
        if (!key.empty()) viewer->key(key);
        std::string const wanted = dir.file(name) + " (" + std::to_string(index) + "/" + std::to_string(count) +
                                   ") - " + zvtest::catalogue_line(0);
        std::string title;
        if (zvtest::eventually([&] { return (title = viewer->title()) == wanted; }))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "after key '" << key << "' the title is \"" << title
                                             << "\", expected \"" << wanted << "\"";
    }

    zvtest::TempDir home;
    zvtest::TempDir dir;
    std::unique_ptr<ViewerProcess> viewer;
};

}  // namespace

TEST_F(Paging, FollowsByteOrderAndStopsAtTheEnds)
{
    // Upper case before lower, digits by character.
    for (char const* name : {"img9.bmp", "a.bmp", "img10.bmp", "B.bmp"}) picture(name);
    start();
    EXPECT_TRUE(shows("", "B.bmp", 1, 4));
    EXPECT_TRUE(shows("space", "a.bmp", 2, 4));
    EXPECT_TRUE(shows("space", "img10.bmp", 3, 4));
    EXPECT_TRUE(shows("space", "img9.bmp", 4, 4));
    // No wrap-around at either end.
    viewer->key("space");
    EXPECT_TRUE(shows("BackSpace", "img10.bmp", 3, 4));
    EXPECT_TRUE(shows("Home", "B.bmp", 1, 4));
    viewer->key("BackSpace");
    EXPECT_TRUE(shows("space", "a.bmp", 2, 4));
    EXPECT_TRUE(shows("End", "img9.bmp", 4, 4));
    viewer->key("q");
    EXPECT_EQ(viewer->wait_exit(), 0);
    EXPECT_EQ(viewer->err(), "");
}

TEST_F(Paging, ShiftStepsTenForwardOnlyWhenTheyFitAndBackClamped)
{
    for (int i = 0; i < 12; ++i) picture("p" + std::to_string(10 + i) + ".bmp");
    start();
    EXPECT_TRUE(shows("shift+space", "p20.bmp", 11, 12));
    // Ten more would run past the end: refused whole, not cut short.
    viewer->key("shift+space");
    EXPECT_TRUE(shows("BackSpace", "p19.bmp", 10, 12));
    // Only nine entries lie behind: the step stops at the first.
    EXPECT_TRUE(shows("shift+BackSpace", "p10.bmp", 1, 12));
    // Shift counts only while it is held.
    EXPECT_TRUE(shows("space", "p11.bmp", 2, 12));
}

TEST_F(Paging, SkipsPicturesThatDoNotLoad)
{
    picture("a.bmp", 20, 10);
    picture("p.bmp", 30, 10);
    // Not a BMP at all, under BMP names: entries that never load.
    for (char const* name : {"m.bmp", "x.bmp"}) std::ofstream(dir.file(name)) << "no picture in here";
    start();
    EXPECT_TRUE(shows("space", "p.bmp", 3, 4));
    // Nothing behind p.bmp loads: the search turns round and p.bmp comes
    // back at its own index. The window growing to the work area ("f")
    // tells that the step is through.
    viewer->key("space");
    viewer->key("f");
    viewer->sized_geometry(1280, 1024);
    EXPECT_TRUE(shows("", "p.bmp", 3, 4));
    // Backward past m.bmp reaches the first entry by the search forward.
    EXPECT_TRUE(shows("BackSpace", "a.bmp", 1, 4));
    EXPECT_TRUE(shows("End", "p.bmp", 3, 4));
}
