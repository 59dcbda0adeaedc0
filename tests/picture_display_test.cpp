// Pictures on the screen of the real viewer, compared pixel by pixel: at
// scale 1 every picture pixel must land on exactly one window pixel, with
// the dark gray background all around.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "codecs/png.h"
#include "codecs/tga.h"
#include "tests/support/picture_images.h"
#include "tests/support/viewer_process.h"

using zvtest::ViewerProcess;
using zvtest::kBackground;

namespace {

// Starts the viewer on one picture at scale 1 and compares the whole window
// with it, then again after each of `keys`.
void expect_shown(std::string const& path, int width, int height, zvtest::pixel_fn const& colour,
                  std::vector<std::string> const& keys = {})
{
    // No frame: the background must reach the picture's edge.
    ViewerProcess viewer({"-resizetype", "0", "-frametype", "0", "-winsize", "800x600", path},
                         {"HOME=/nonexistent-zanoview-home"});
    EXPECT_TRUE(viewer.wait_window());
    for (std::size_t step = 0; step <= keys.size(); ++step) {
        if (step > 0) viewer.key(keys[step - 1]);
        zvtest::screenshot_t const shot = viewer.settled_screenshot();
        EXPECT_EQ(shot.width, 800);
        EXPECT_EQ(shot.height, 600);
        EXPECT_EQ(zvtest::differences_from_centred(shot, width, height, colour), "");
    }
    viewer.key("q");
    EXPECT_EQ(viewer.wait_exit(), 0);
    EXPECT_EQ(viewer.err(), "");
}

// Writes a picture of distinct colours in the format of the name's extension.
bool write_distinct(std::string const& path, int width, int height, int components)
{
    std::string const ext = path.substr(path.rfind('.'));
    if (ext == ".bmp") return zvtest::write_bmp24(path, width, height, zvtest::distinct_colour);
    libgr::image2d_t const image = zvtest::picture_image(width, height, zvtest::distinct_colour, components);
    return ext == ".png" ? libgr::image_png_t().save(image, path.c_str())
                         : libgr::image_tga_t().save(image, path.c_str());
}

struct shown_case {
    char const* name;
    char const* file;  // its extension picks the writer
    int width, height;
    int components;                 // 4: opaque RGBA
    std::vector<std::string> keys;  // sent in turn, the window compared again after each
};

class ShownAtScaleOne : public ::testing::TestWithParam<shown_case> {};

}  // namespace

TEST_P(ShownAtScaleOne, EveryPixelInItsPlace)
{
    shown_case const& c = GetParam();
    zvtest::TempDir dir;
    std::string const path = dir.file(c.file);
    ASSERT_TRUE(write_distinct(path, c.width, c.height, c.components));
    expect_shown(path, c.width, c.height, zvtest::distinct_colour, c.keys);
}

INSTANTIATE_TEST_SUITE_P(
    Pictures, ShownAtScaleOne,
    ::testing::Values(shown_case{"EvenSizesInOneTile", "picture.bmp", 300, 200, 3, {}},
                      // A full tile of 256 and a last column one pixel wide; the
                      // odd width in the even window also takes the half-pixel offset.
                      shown_case{"AcrossATileBoundaryWithAOnePixelStrip", "picture.bmp", 257, 300, 3, {}},
                      shown_case{"OddWidthAndHeightInAnEvenWindow", "picture.bmp", 301, 201, 3, {}},
                      shown_case{"ASinglePixel", "picture.bmp", 1, 1, 3, {}},
                      // 4x3 tiles; the window sees picture pixels from (100, 50) on.
                      shown_case{"LargerThanTheWindowShowsItsMiddle", "large.bmp", 1000, 700, 3, {}},
                      shown_case{"PngWithAlpha", "picture.png", 203, 151, 4, {}},
                      // The decoded pixels are given back once the textures hold
                      // them: the rebuild ("r") reads the file again. Two tiles, so
                      // that rows go in turn. The rebuild itself doesn't redraw;
                      // "g" does, and at scale 1 either magnification shows the
                      // texels exactly.
                      shown_case{"AgainAfterARebuildOfItsTextures", "picture.png", 203, 301, 3, {"r", "g"}},
                      shown_case{"Tga", "picture.tga", 180, 120, 3, {}}),
    [](::testing::TestParamInfo<shown_case> const& info) { return std::string(info.param.name); });

TEST(ShownAtScaleOnePalette, InItsColours)
{
    zvtest::TempDir dir;
    std::string const path = dir.file("palette.bmp");
    std::vector<std::uint32_t> palette;
    for (int i = 0; i < 256; ++i) palette.push_back(zvtest::distinct_colour(i, 255 - i));
    auto const index = [](int x, int y) { return (x * 7 + y * 13) % 256; };
    ASSERT_TRUE(zvtest::write_bmp8(path, 123, 77, palette, index));
    expect_shown(path, 123, 77, [&](int x, int y) { return palette[index(x, y)]; });
}

// ---- Fitted, so that the lower mipmap levels show

namespace {

int least_channel(std::uint32_t pixel, std::uint32_t mask)
{
    int least = 255;
    for (int shift : {16, 8, 0})
        if (mask >> shift & 0xff) least = std::min(least, int(pixel >> shift & 0xff));
    return least;
}

// Shows the picture fitted in a window of `winsize` and looks at the outer
// rows and columns of what is not background there: "" when the picture
// is inside the window and the channels that `mask` picks (0xff0000: red
// alone) are full all along its edges, else what is wrong.
std::string fitted_edge_faults(std::string const& path, std::string const& winsize, std::uint32_t mask)
{
    ViewerProcess viewer({"-frametype", "0", "-winsize", winsize, path}, {"HOME=/nonexistent-zanoview-home"});
    EXPECT_TRUE(viewer.wait_window());
    // A large picture in a sanitizer build on a busy machine takes a while.
    zvtest::screenshot_t const shot = viewer.settled_screenshot(90);
    viewer.key("q");
    EXPECT_EQ(viewer.wait_exit(), 0);
    int left = shot.width, right = -1, top = shot.height, bottom = -1;
    for (int y = 0; y < shot.height; ++y)
        for (int x = 0; x < shot.width; ++x)
            if (shot.at(x, y) != kBackground) {
                left = std::min(left, x), right = std::max(right, x);
                top = std::min(top, y), bottom = std::max(bottom, y);
            }
    if (right < 0) return "no picture shown";
    if (left == 0 || top == 0 || right == shot.width - 1 || bottom == shot.height - 1)
        return "the picture is not fitted inside the window";
    std::ostringstream faults;
    int dark = 0;
    auto const check = [&](char const* edge, int x, int y) {
        if (least_channel(shot.at(x, y), mask) >= 254 || ++dark > 5) return;
        faults << edge << " edge pixel (" << x << ", " << y << ") is " << std::hex << shot.at(x, y) << std::dec << "\n";
    };
    for (int y = top; y <= bottom; ++y) check("left", left, y), check("right", right, y);
    for (int x = left; x <= right; ++x) check("bottom", x, bottom), check("top", x, top);
    if (dark) faults << dark << " edge pixels too dark; the screenshot is kept in " << shot.keep();
    return faults.str();
}

}  // namespace

TEST(FittedPicture, KeepsItsOwnColoursToTheEdgesAtEveryScale)
{
    // 3000 x 2100 leaves partly filled tiles along the right and the top,
    // where nothing from beyond the picture may darken the edge.
    zvtest::TempDir dir;
    std::string const white = dir.file("white.bmp");
    ASSERT_TRUE(zvtest::write_bmp24(white, 3000, 2100, [](int, int) { return 0xffffffu; }));
    // White with a red last column and top row: red stays full wherever the
    // edge is blended only with the picture's own colours.
    std::string const edged = dir.file("edged.bmp");
    ASSERT_TRUE(zvtest::write_bmp24(edged, 3000, 2100,
                                    [](int x, int y) { return x == 2999 || y == 0 ? 0xff0000u : 0xffffffu; }));
    for (char const* winsize : {"800x600", "500x400", "1000x700"})
        for (auto const& [path, mask] : {std::pair{white, 0xffffffu}, std::pair{edged, 0xff0000u}})
            EXPECT_EQ(fitted_edge_faults(path, winsize, mask), "") << path << " in " << winsize;
}
