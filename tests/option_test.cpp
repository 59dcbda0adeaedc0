#include "options/option.h"

#include <cstring>
#include <initializer_list>
#include <iostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/scratch.h"

namespace {

using zanolib::g_option;

// Every parse writes into the one global record: each test starts from the
// built-in values and leaves them behind.
class OptionFixture : public ::testing::Test {
protected:
    void TearDown() override { g_option = saved; }
    zanolib::option_t const saved = g_option;
};

using OptionNames = OptionFixture;
using FlagOptions = OptionFixture;
using ValuedOptions = OptionFixture;
using MissingValue = OptionFixture;

using Args = std::vector<std::string>;

// Runs the parser on "zv" followed by `args`, as main would, and returns
// argv[0 .. argc) afterwards.
Args parse(std::initializer_list<char const*> args)
{
    std::vector<std::string> texts{"zv"};
    texts.insert(texts.end(), args.begin(), args.end());
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    int argc = int(texts.size());
    char** argv = pointers.data();
    zanolib::option_enter_argument(&argc, &argv);
    return Args(argv, argv + argc);
}

// An option and its value as an array of exactly two elements, with no null
// behind them, and the value a heap copy of exactly its size, so that the
// sanitizer catches a read past either end.
int analyze(char const* name, char const* text)
{
    std::vector<char> const value(text, text + std::strlen(text) + 1);
    std::vector<char const*> elements{name, value.data()};
    return zanolib::option_each_analyze(elements.data(), int(elements.size()));
}

using zvtest::Capture;

// The help is part of the command line's contract, byte for byte, with the
// " percent  " rows two columns out of line.
char const kListing[] = R"LIST(usage: zanoview [option] file...

option                 format  comment.
---------------------------------------
-h                     bool    print help and exit(if commend-line).
-verbose               bool    verbose print.
-debug                 bool    debug print.
-wintype               enum    window type (0:window 1:maximize 2:fullscreen).
-winsize               XXXxYYY initial window size.
-resizetype            enum    policy of resize (0:don't care 1:image 2:window).
-image_ratio_of_image  percent   image size factor of image.
-image_ratio_of_window percent   image size factor of window.
-window_ratio_of_image percent   window size factor of image.
-resize_magnify        bool    allow window resize (if magnify).
-resize_shrink         bool    allow window resize (if shrink).
-sizelimit             enum    limitation of window size (0:screen 1:value).
-maxmargin             XXXxYYY 0:screen, margin of maximum window size.
-maxsize               XXXxYYY 1:value, maximum window size.
-cursor_movement       enum    moving cursorkey direction (0:panning, 1:camera).
-magsmooth             bool    image smoother for magnify.
-move_limit            bool    image move limitation (not implemented yet).
-doubleclick_interval  ulong   maximum interval time(ms) of mouse double-click.
-frametype             enum    drawing photo-frame type (0:none - 4:max).
-framewidth            ulong   drawing photo-frame width (in pixel).
-framecolor            R,G,B   frame color.
-reproduce             bool    reproduce angle/zoom of saved '.zvw' file.
-resetview             bool    resetview(reproduce) on nextimage.
-menu                  bool    menu on/off.
-single                bool    disable double-buffer, reduce VRAM use.
)LIST";

TEST_F(OptionNames, IgnoreCaseAndTheRestMovesUpBehindTheProgramName)
{
    EXPECT_EQ(parse({"-VERBOSE", "-MaxSize", "640x480", "Pic.JPG", "-debug", "b.jpg"}),
              (Args{"zv", "Pic.JPG", "-debug", "b.jpg"}));
    EXPECT_TRUE(g_option.verbose);
    EXPECT_FALSE(g_option.debug);
    EXPECT_EQ(g_option.maxsize.y, 480);
}

TEST_F(OptionNames, WholeNameWithNothingBehindIt)
{
    // Each of these is no option, so it and everything behind it are files.
    for (char const* first :
         {"-verbos", "-verbosex", "-winsize=800x600", "-menu+-", "-"}) {
        EXPECT_EQ(parse({first, "-debug"}), (Args{"zv", first, "-debug"})) << first;
    }
    EXPECT_FALSE(g_option.debug);
}

TEST_F(FlagOptions, BarePlusAndMinusFormsAndHelpOnlyFromTheCommandLine)
{
    g_option.h = true;  // as a saved user default would leave it
    EXPECT_EQ(parse({"-menu-", "-resize_shrink+", "-single", "-h-"}), Args{"zv"});
    EXPECT_FALSE(g_option.menu);
    EXPECT_TRUE(g_option.resize_shrink);
    EXPECT_TRUE(g_option.single);
    EXPECT_FALSE(g_option.h);
    parse({"-menu"});
    EXPECT_TRUE(g_option.menu);
}

TEST_F(ValuedOptions, IntegersReadWithBaseZeroUnchecked)
{
    parse({"-wintype", "0x2", "-frametype", "010", "-resizetype", "-1", "-sizelimit", "abc"});
    EXPECT_EQ(g_option.wintype, 2u);
    EXPECT_EQ(g_option.frametype, 8u);
    EXPECT_EQ(g_option.resizetype, 0xFFFFFFFFu);
    EXPECT_EQ(g_option.sizelimit, 0u);
    // The value element is taken whatever it looks like.
    EXPECT_EQ(parse({"-cursor_movement", "-verbose", "x.jpg"}), (Args{"zv", "x.jpg"}));
    EXPECT_FALSE(g_option.verbose);
}

TEST_F(ValuedOptions, PercentIsTheBitsOfTheFloatAndUlongRefusesZero)
{
    EXPECT_EQ(parse({"-image_ratio_of_image", "1063256064", "-image_ratio_of_window", "0x3f800000",
                     "-window_ratio_of_image", "100", "-doubleclick_interval", "0", "pic.jpg"}),
              (Args{"zv", "pic.jpg"}));
    EXPECT_EQ(g_option.image_ratio_of_image, 0.875f);
    EXPECT_EQ(g_option.image_ratio_of_window, 1.0f);
    // Not a hundred per cent: the bits 100 make a denormal close to 0.
    EXPECT_LT(g_option.window_ratio_of_image, 1e-40f);
    EXPECT_EQ(g_option.doubleclick_interval, 300u);
}

TEST_F(ValuedOptions, SizesTakeAnySeparatorRefuseNegativesAndStopAtTheTextsEnd)
{
    parse({"-winsize", "1024,768"});
    EXPECT_EQ(g_option.winsize.y, 768);
    parse({"-winsize", "-5x600"});
    EXPECT_EQ(g_option.winsize.x, 1024);
    EXPECT_EQ(g_option.winsize.y, 600);
    EXPECT_EQ(analyze("-winsize", ""), 2);
    EXPECT_EQ(g_option.winsize.x, 0);
    EXPECT_EQ(analyze("-winsize", "1024"), 2);
    EXPECT_EQ(g_option.winsize.x, 1024);
    EXPECT_EQ(g_option.winsize.y, 600);
}

TEST_F(ValuedOptions, ColoursAreBytesWithOptionalAlpha)
{
    EXPECT_EQ(analyze("-framecolor", "0x10;20 30"), 2);
    EXPECT_EQ(g_option.framecolor.r, 16);
    EXPECT_EQ(g_option.framecolor.a, 255);
    analyze("-framecolor", "1,2,3/40,50");
    EXPECT_EQ(g_option.framecolor.a, 40);
    // As a saved user default file writes white: raw bytes, not digits.
    analyze("-framecolor", "\xff,\xff,\xff,\xff");
    zanolib::option_color_t const black{0, 0, 0, 0};
    EXPECT_EQ(std::memcmp(&g_option.framecolor, &black, sizeof black), 0);
}

TEST_F(MissingValue, EndOfTheArrayLeavesTheFieldAlone)
{
    EXPECT_EQ(parse({"-verbose", "-winsize"}), Args{"zv"});
    EXPECT_TRUE(g_option.verbose);
    EXPECT_EQ(g_option.winsize.x, 800);
    // Lines of the user default file come as arrays of exactly their tokens.
    std::vector<char const*> line{"-resizetype"};
    EXPECT_EQ(zanolib::option_each_analyze(line.data(), 1), 1);
    EXPECT_EQ(g_option.resizetype, 1u);
    line = {"comment", "-menu"};
    EXPECT_EQ(zanolib::option_each_analyze(line.data(), 2), 0);
    EXPECT_EQ(zanolib::option_each_analyze(nullptr, 0), 0);
}

TEST_F(FlagOptions, AfterDebugAreReportedInTableSpelling)
{
    Capture err(std::cerr);
    parse({"-menu", "-DEBUG", "-Verbose+", "-resize_shrink-", "-winsize", "1x1", "-debug-", "-single"});
    EXPECT_EQ(err.text(),
              "option debug is set.\n"
              "option verbose is '+'.\n"
              "option resize_shrink is '-'.\n");
}

TEST(HelpListing, ExactText)
{
    Capture out(std::cout);
    zanolib::option_list("zanoview");
    EXPECT_EQ(out.text(), kListing);
}

TEST(HelpDeathTest, ListsAfterAllOptionsAndExitsZero)
{
    // The child sends the listing to the error stream, where the death test
    // can see it behind the debug lines of the options around "-h".
    EXPECT_EXIT(
        {
            std::cout.rdbuf(std::cerr.rdbuf());
            parse({"-debug", "-h", "-menu", "file.jpg"});
        },
        ::testing::ExitedWithCode(0),
        "option h is set.\noption menu is set.\nusage: zv \\[option\\] file\\.\\.\\.\n\noption ");
}

}  // namespace
