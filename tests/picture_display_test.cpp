// Pictures on the screen of the real viewer, compared pixel by pixel: at
// scale 1 every picture pixel must land on exactly one window pixel, with
// the dark gray background all around.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "codecs/png.h"
#include "codecs/tga.h"
#include "image/image.h"
#include "tests/support/picture_files.h"
#include "tests/support/viewer_process.h"

using zvtest::ViewerProcess;

namespace {

constexpr std::uint32_t kBackground = 0x2e2e2e;  // gray18: 0.18 of 255, rounded
constexpr int kWindowWidth = 800;
constexpr int kWindowHeight = 600;

int floor_half(int v) { return v >= 0 ? v / 2 : -((1 - v) / 2); }

// Starts the viewer on one picture at scale 1 and compares the whole window
// with the picture centred on the background. Returns the number of wrong
// pixels; a few of them are described on the way.
int compare_shown(std::string const& path, int width, int height, zvtest::pixel_fn const& colour)
{
    // No frame: the background must reach the picture's edge.
    ViewerProcess viewer({"-resizetype", "0", "-frametype", "0", "-winsize", "800x600", path},
                         {"HOME=/nonexistent-zanoview-home"});
    EXPECT_TRUE(viewer.wait_window());
    zvtest::screenshot_t const shot = viewer.settled_screenshot();
    EXPECT_EQ(shot.width, kWindowWidth);
    EXPECT_EQ(shot.height, kWindowHeight);
    if (shot.width != kWindowWidth || shot.height != kWindowHeight) return -1;

    // Where window and picture can't both be centred on a pixel boundary,
    // the picture sits half a pixel to the right and up: the left edge is
    // rounded up, and so is the bottom edge.
    int const left = floor_half(kWindowWidth - width + 1);
    int const bottom = floor_half(kWindowHeight - height + 1);
    int const top = kWindowHeight - bottom - height;  // screenshot row of the picture's top row

    int wrong = 0;
    for (int y = 0; y < shot.height; ++y) {
        for (int x = 0; x < shot.width; ++x) {
            int const px = x - left;
            int const py = y - top;
            bool const inside = px >= 0 && px < width && py >= 0 && py < height;
            std::uint32_t const expected = inside ? colour(px, py) : kBackground;
            if (shot.at(x, y) == expected) continue;
            if (++wrong <= 5)
                ADD_FAILURE() << "window pixel (" << x << ", " << y << ") is " << std::hex << shot.at(x, y)
                              << ", expected " << expected << std::dec
                              << (inside ? " of picture pixel (" + std::to_string(px) + ", " + std::to_string(py) + ")"
                                         : " (background)");
        }
    }
    if (wrong) shot.save_ppm(path + ".shown.ppm");
    viewer.key("q");
    EXPECT_EQ(viewer.wait_exit(), 0);
    EXPECT_EQ(viewer.err(), "");
    return wrong;
}

void expect_shown_exactly(int width, int height)
{
    zvtest::TempDir dir;
    std::string const path = dir.file("picture.bmp");
    ASSERT_TRUE(zvtest::write_bmp24(path, width, height, zvtest::distinct_colour));
    EXPECT_EQ(compare_shown(path, width, height, zvtest::distinct_colour), 0);
}

}  // namespace

TEST(ShownAtScaleOne, EvenSizesInOneTile)
{
    expect_shown_exactly(300, 200);
}

TEST(ShownAtScaleOne, AcrossATileBoundaryWithAOnePixelStrip)
{
    // 257 wide: a full tile of 256 and a last column one pixel wide; the
    // odd width in the even window also takes the half-pixel offset.
    expect_shown_exactly(257, 300);
}

TEST(ShownAtScaleOne, OddWidthAndHeightInAnEvenWindow)
{
    expect_shown_exactly(301, 201);
}

TEST(ShownAtScaleOne, ASinglePixel)
{
    expect_shown_exactly(1, 1);
}

TEST(ShownAtScaleOne, LargerThanTheWindowShowsItsMiddle)
{
    // 4x3 tiles; only the middle of the picture fits the window.
    zvtest::TempDir dir;
    std::string const path = dir.file("large.bmp");
    ASSERT_TRUE(zvtest::write_bmp24(path, 1000, 700, zvtest::distinct_colour));
    // The window sees picture pixels from (100, 50) on.
    EXPECT_EQ(compare_shown(path, 1000, 700, zvtest::distinct_colour), 0);
}

TEST(ShownAtScaleOne, PaletteInItsColours)
{
    zvtest::TempDir dir;
    std::string const path = dir.file("palette.bmp");
    std::vector<std::uint32_t> palette;
    for (int i = 0; i < 256; ++i) palette.push_back(zvtest::distinct_colour(i, 255 - i));
    auto const index = [](int x, int y) { return (x * 7 + y * 13) % 256; };
    ASSERT_TRUE(zvtest::write_bmp8(path, 123, 77, palette, index));
    EXPECT_EQ(compare_shown(path, 123, 77, [&](int x, int y) { return palette[index(x, y)]; }), 0);
}

namespace {

// A picture of distinct colours as an image record, rows bottom-up, with
// `components` 3 (RGB) or 4 (RGBA, opaque).
libgr::image2d_t distinct_picture(int width, int height, int components)
{
    libgr::image2d_t image;
    image.desc = {components == 4 ? libgr::IMAGE_FORMAT_RGBA : libgr::IMAGE_FORMAT_RGB, libgr::IMAGE_TYPE_UINT,
                  libgr::IMAGE_BITS_8};
    image.m_width = std::uint32_t(width);
    image.m_height = std::uint32_t(height);
    EXPECT_TRUE(image.allocate());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            std::uint32_t const c = zvtest::distinct_colour(x, y);
            unsigned char* p = image.pixel(x, std::uint64_t(height - 1 - y));
            p[0] = (unsigned char)(c >> 16), p[1] = (unsigned char)(c >> 8), p[2] = (unsigned char)c;
            if (components == 4) p[3] = 255;
        }
    return image;
}

}  // namespace

TEST(ShownAtScaleOne, PngWithAlpha)
{
    zvtest::TempDir dir;
    std::string const path = dir.file("picture.png");
    ASSERT_TRUE(libgr::image_png_t().save(distinct_picture(203, 151, 4), path.c_str()));
    EXPECT_EQ(compare_shown(path, 203, 151, zvtest::distinct_colour), 0);
}

TEST(ShownAtScaleOne, Tga)
{
    zvtest::TempDir dir;
    std::string const path = dir.file("picture.tga");
    ASSERT_TRUE(libgr::image_tga_t().save(distinct_picture(180, 120, 3), path.c_str()));
    EXPECT_EQ(compare_shown(path, 180, 120, zvtest::distinct_colour), 0);
}
