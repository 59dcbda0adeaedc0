// The user default file: the text it is saved as, how its lines are read
// back, and where it lives.
#include "options/userdefault.h"

#include <stdlib.h>

#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "options/option.h"
#include "tests/support/scratch.h"

namespace {

using zanolib::g_option;
using zvtest::Capture;
using zvtest::read_file;

// Each test starts from the built-in options in an empty directory of its
// own, and leaves the options and HOME as it found them.
class UserDefault : public zvtest::ScratchFiles {
protected:
    void TearDown() override
    {
        g_option = saved;
        if (home) setenv("HOME", home->c_str(), 1);
        else unsetenv("HOME");
        ScratchFiles::TearDown();
    }

    zanolib::option_t const saved = g_option;
    std::optional<std::string> const home =
        std::getenv("HOME") ? std::optional<std::string>(std::getenv("HOME")) : std::nullopt;
};

using SavedFile = UserDefault;
using LoadedFile = UserDefault;
using UserDefaultName = UserDefault;

// The built-in options as saved: percents as the floats' bits, the colour as
// four raw bytes.
char const kBuiltIn[] =
    "-h-\n-verbose-\n-debug-\n-wintype 0\n-winsize 800x600\n-resizetype 1\n"
    "-image_ratio_of_image 1065353216\n-image_ratio_of_window 1063256064\n"
    "-window_ratio_of_image 1067030938\n-resize_magnify+\n-resize_shrink-\n-sizelimit 1\n"
    "-maxmargin 10x32\n-maxsize 1280x960\n-cursor_movement 1\n-magsmooth+\n-move_limit-\n"
    "-doubleclick_interval 300\n-frametype 1\n-framewidth 32\n-framecolor \xff,\xff,\xff,\xff\n"
    "-reproduce+\n-resetview+\n-menu+\n-single-\n";

TEST_F(SavedFile, OneCommandLineLinePerRowInTableOrder)
{
    ASSERT_TRUE(zanolib::option_save(path("a").c_str()));
    EXPECT_EQ(read_file(path("a")), kBuiltIn);
    g_option.resizetype = 0xFFFFFFFFu;
    zanolib::option_save(path("a").c_str());
    EXPECT_NE(read_file(path("a")).find("\n-resizetype -1\n"), std::string::npos);
}

TEST_F(SavedFile, ReadsBackTheSameButTheColourAndTheCommandLineStillWins)
{
    g_option.wintype = 2;
    g_option.winsize = {1024, 768};
    g_option.image_ratio_of_window = 0.3f;
    g_option.menu = false;
    g_option.framecolor = {1, 2, 3, 4};
    zanolib::option_save(path("first").c_str());
    g_option = saved;
    ASSERT_TRUE(zanolib::option_load(path("first").c_str()));
    EXPECT_EQ(g_option.image_ratio_of_window, 0.3f);
    zanolib::option_save(path("second").c_str());
    std::string expected = read_file(path("first"));
    expected.replace(expected.find("\x01,\x02,\x03,\x04"), 7, std::string("\0,\0,\0,\0", 7));
    EXPECT_EQ(read_file(path("second")), expected);

    char const* args[] = {"zv", "-winsize", "640x480"};
    int argc = 3;
    char** argv = const_cast<char**>(args);
    zanolib::option_enter_argument(&argc, &argv);
    EXPECT_EQ(g_option.winsize.x, 640);
    EXPECT_EQ(g_option.wintype, 2u);
}

TEST_F(LoadedFile, TakesTheFirstOptionOfALineAndIgnoresTheRest)
{
    write("a", "-winsize\n"      // no value: the next line is not one
                          "640x480\n"
                          " -menu-\n"       // blank-led
                          "# -single\n"
                          "-unknown 5\n"
                          "-maxsize  900x700\n"  // the value is the empty token
                          "-FRAMEWIDTH 7 -verbose\n"
                          "-frametype 3\r\n" +
                              std::string(100000, 'x') + "\n-resizetype 2");
    ASSERT_TRUE(zanolib::option_load(path("a").c_str()));
    EXPECT_EQ(g_option.winsize.x, 800);
    EXPECT_TRUE(g_option.menu);
    EXPECT_FALSE(g_option.single);
    EXPECT_EQ(g_option.maxsize.x, 0);
    EXPECT_EQ(g_option.maxsize.y, 960);
    EXPECT_EQ(g_option.framewidth, 7u);
    EXPECT_FALSE(g_option.verbose);
    EXPECT_EQ(g_option.frametype, 3u);
    EXPECT_EQ(g_option.resizetype, 2u);
}

// Damaged contents are the fuzz harness's subject (fuzz/userdefault_fuzz.cpp).
TEST_F(LoadedFile, MissingFileOrDirectoryIsHarmless)
{
    EXPECT_TRUE(zanolib::option_load(path("missing").c_str()));
    EXPECT_TRUE(zanolib::option_load(m_dir.c_str()));
    // A file that can't be created is a silent success.
    EXPECT_TRUE(zanolib::option_save(path("no/such/dir").c_str()));
}

TEST_F(UserDefaultName, HomeWithOneSlashElseTheProgramDirectory)
{
    struct Case {
        char const* home;  // null: unset
        char const* expected;
    };
    for (Case const& c : {Case{"/home/u", "/home/u/.zv_name_test"}, Case{"/", "/.zv_name_test"},
                          Case{"", ".zv_name_test"},
                          Case{nullptr, "/usr/bin/.zv_name_test"}}) {
        if (c.home) setenv("HOME", c.home, 1);
        else unsetenv("HOME");
        g_option.verbose = true;
        Capture out(std::cout);
        zanolib::option_load_user_default("zv_name_test", "/usr/bin/");
        EXPECT_EQ(out.text(), std::string("load user default: ") + c.expected + "\n");
    }
    setenv("HOME", m_dir.c_str(), 1);
    g_option.debug = true;
    Capture out(std::cout);
    zanolib::option_save_user_default("zvtest", "/usr/bin/");
    EXPECT_EQ(out.text(), "prog: zvtest, dir: /usr/bin/\nsave user default: " + m_dir + "/.zvtest\n");
    EXPECT_NE(read_file(path(".zvtest")).find("-debug+\n"), std::string::npos);
}

}  // namespace
