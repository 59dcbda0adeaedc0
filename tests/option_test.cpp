#include "options/option.h"

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using zanolib::g_option;

// Every parse writes into the one global record: each test starts from the
// built-in values and leaves them behind.
class OptionFixture : public ::testing::Test {
protected:
    void SetUp() override { saved = g_option; }
    void TearDown() override { g_option = saved; }

private:
    zanolib::option_t saved;
};

using OptionNames = OptionFixture;
using RemainingArguments = OptionFixture;
using FlagOptions = OptionFixture;
using ValuedOptions = OptionFixture;
using SizeValues = OptionFixture;
using ColorValues = OptionFixture;
using MissingValue = OptionFixture;
using DebugLines = OptionFixture;

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

// A heap copy of `text` of exactly its size, so that the sanitizer catches a
// read past its terminating null.
std::vector<char> exact(char const* text)
{
    return std::vector<char>(text, text + std::strlen(text) + 1);
}

// An option and its value as an array of exactly two elements, with no null
// behind them.
int analyze(char const* name, std::vector<char> const& value)
{
    std::vector<char const*> elements{name, value.data()};
    return zanolib::option_each_analyze(elements.data(), int(elements.size()));
}

// Sends what a stream receives to a string while it lives.
class Capture {
public:
    explicit Capture(std::ostream& stream) : stream(stream), old(stream.rdbuf(buffer.rdbuf())) {}
    ~Capture() { stream.rdbuf(old); }
    std::string text() const { return buffer.str(); }

private:
    std::ostream& stream;
    std::ostringstream buffer;
    std::streambuf* old;
};

uint32_t bits_of(float value)
{
    uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

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

TEST_F(OptionNames, IgnoreCase)
{
    EXPECT_EQ(parse({"-VERBOSE", "-MaxSize", "640x480", "Pic.JPG"}), (Args{"zv", "Pic.JPG"}));
    EXPECT_TRUE(g_option.verbose);
    EXPECT_EQ(g_option.maxsize.x, 640);
    EXPECT_EQ(g_option.maxsize.y, 480);
}

TEST_F(OptionNames, WholeNameWithNothingBehindIt)
{
    // Each of these is no option, so it and everything behind it are files.
    for (char const* first : {"-verbos", "-verbosex", "-help", "-winsize=800x600", "-winsize800x600", "+menu", "-"}) {
        EXPECT_EQ(parse({first, "-debug"}), (Args{"zv", first, "-debug"})) << first;
    }
    EXPECT_FALSE(g_option.debug);
    EXPECT_FALSE(g_option.verbose);
}

TEST_F(RemainingArguments, MoveUpBehindTheProgramName)
{
    EXPECT_EQ(parse({"-verbose", "-winsize", "1024x768", "a.jpg", "-debug", "b.jpg"}),
              (Args{"zv", "a.jpg", "-debug", "b.jpg"}));
    EXPECT_FALSE(g_option.debug);
    EXPECT_EQ(parse({"-menu-", "-single"}), Args{"zv"});
    EXPECT_EQ(parse({}), Args{"zv"});
}

TEST_F(FlagOptions, BarePlusAndMinusForms)
{
    parse({"-menu-", "-resize_shrink+", "-single"});
    EXPECT_FALSE(g_option.menu);
    EXPECT_TRUE(g_option.resize_shrink);
    EXPECT_TRUE(g_option.single);
    parse({"-menu"});
    EXPECT_TRUE(g_option.menu);
    EXPECT_EQ(parse({"-menu+-", "-menu--"}), (Args{"zv", "-menu+-", "-menu--"}));
}

TEST_F(FlagOptions, HelpComesOnlyFromTheCommandLine)
{
    g_option.h = true;  // as a saved user default would leave it
    EXPECT_EQ(parse({"-h-", "x.jpg"}), (Args{"zv", "x.jpg"}));
    EXPECT_FALSE(g_option.h);
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
    EXPECT_EQ(g_option.cursor_movement, 0u);
    EXPECT_FALSE(g_option.verbose);
}

TEST_F(ValuedOptions, PercentIsTheBitsOfTheFloat)
{
    parse({"-image_ratio_of_image", "1063256064", "-image_ratio_of_window", "0x3f800000",
           "-window_ratio_of_image", "100"});
    EXPECT_EQ(g_option.image_ratio_of_image, 0.875f);
    EXPECT_EQ(g_option.image_ratio_of_window, 1.0f);
    EXPECT_EQ(bits_of(g_option.window_ratio_of_image), 100u);
}

TEST_F(ValuedOptions, UlongRefusesZeroButUsesItUp)
{
    EXPECT_EQ(parse({"-doubleclick_interval", "0", "-framewidth", "16", "pic.jpg"}), (Args{"zv", "pic.jpg"}));
    EXPECT_EQ(g_option.doubleclick_interval, 300u);
    EXPECT_EQ(g_option.framewidth, 16u);
}

TEST_F(SizeValues, AnySeparatorAndNegativesKeepTheField)
{
    parse({"-winsize", "1024,768"});
    EXPECT_EQ(g_option.winsize.x, 1024);
    EXPECT_EQ(g_option.winsize.y, 768);
    parse({"-winsize", "-5x600", "-maxmargin", "7x-1"});
    EXPECT_EQ(g_option.winsize.x, 1024);
    EXPECT_EQ(g_option.winsize.y, 600);
    EXPECT_EQ(g_option.maxmargin.x, 7);
    EXPECT_EQ(g_option.maxmargin.y, 32);
}

TEST_F(SizeValues, ShortTextStopsAtItsEnd)
{
    EXPECT_EQ(analyze("-winsize", exact("1024")), 2);
    EXPECT_EQ(g_option.winsize.x, 1024);
    EXPECT_EQ(g_option.winsize.y, 600);
    EXPECT_EQ(analyze("-winsize", exact("")), 2);
    EXPECT_EQ(g_option.winsize.x, 0);
    EXPECT_EQ(g_option.winsize.y, 600);
}

TEST_F(ColorValues, BytesWithOptionalAlpha)
{
    EXPECT_EQ(analyze("-framecolor", exact("1,2,3")), 2);
    EXPECT_EQ(g_option.framecolor.r, 1);
    EXPECT_EQ(g_option.framecolor.g, 2);
    EXPECT_EQ(g_option.framecolor.b, 3);
    EXPECT_EQ(g_option.framecolor.a, 255);
    analyze("-framecolor", exact("0x10;20 30/40,50"));
    EXPECT_EQ(g_option.framecolor.r, 16);
    EXPECT_EQ(g_option.framecolor.a, 40);
    analyze("-framecolor", exact("256"));
    EXPECT_EQ(g_option.framecolor.r, 0);
    EXPECT_EQ(g_option.framecolor.g, 20);
}

TEST_F(ColorValues, CharactersInsteadOfNumbersGiveZeros)
{
    // As a saved user default file writes white: raw bytes, not digits.
    analyze("-framecolor", exact("\xff,\xff,\xff,\xff"));
    zanolib::option_color_t const black{0, 0, 0, 0};
    EXPECT_EQ(std::memcmp(&g_option.framecolor, &black, sizeof black), 0);
}

TEST_F(MissingValue, LastOnTheCommandLine)
{
    EXPECT_EQ(parse({"-verbose", "-winsize"}), Args{"zv"});
    EXPECT_TRUE(g_option.verbose);
    EXPECT_EQ(g_option.winsize.x, 800);
    EXPECT_EQ(g_option.winsize.y, 600);
}

TEST_F(MissingValue, TokenArrayWithoutNull)
{
    // Lines of the user default file come as arrays of exactly their tokens.
    std::vector<char const*> line{"-resizetype"};
    EXPECT_EQ(zanolib::option_each_analyze(line.data(), 1), 1);
    EXPECT_EQ(g_option.resizetype, 1u);
    line = {"-menu-"};
    EXPECT_EQ(zanolib::option_each_analyze(line.data(), 1), 1);
    EXPECT_FALSE(g_option.menu);
    line = {"comment", "-menu"};
    EXPECT_EQ(zanolib::option_each_analyze(line.data(), 2), 0);
    EXPECT_EQ(zanolib::option_each_analyze(nullptr, 0), 0);
}

TEST_F(DebugLines, FlagsAfterDebugAreReportedInTableSpelling)
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
