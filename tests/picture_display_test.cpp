// Pictures on the screen of the real viewer, compared pixel by pixel: at
// scale 1 every picture pixel must land on exactly one window pixel, with
// the dark gray background all around.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
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

// Compares the window with the picture centred on the background at scale
// 1. Returns the number of wrong pixels; a few of them are described.
int wrong_pixels(zvtest::screenshot_t const& shot, int width, int height, zvtest::pixel_fn const& colour)
{
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
    return wrong;
}

// Starts the viewer on one picture at scale 1 and compares the whole window
// with it, then again after each of `keys`. Returns the number of wrong
// pixels in all.
int compare_shown(std::string const& path, int width, int height, zvtest::pixel_fn const& colour,
                  std::vector<std::string> const& keys = {})
{
    // No frame: the background must reach the picture's edge.
    ViewerProcess viewer({"-resizetype", "0", "-frametype", "0", "-winsize", "800x600", path},
                         {"HOME=/nonexistent-zanoview-home"});
    EXPECT_TRUE(viewer.wait_window());
    zvtest::screenshot_t shot = viewer.settled_screenshot();
    int wrong = wrong_pixels(shot, width, height, colour);
    for (std::string const& key : keys) {
        viewer.key(key);
        shot = viewer.settled_screenshot();
        wrong += wrong_pixels(shot, width, height, colour);
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

TEST(ShownAtScaleOne, AgainAfterARebuildOfItsTextures)
{
    // The decoded pixels are given back once the textures hold them: the
    // rebuild reads the file again. Two tiles, so that rows go in turn.
    zvtest::TempDir dir;
    std::string const path = dir.file("picture.png");
    ASSERT_TRUE(libgr::image_png_t().save(distinct_picture(203, 301, 3), path.c_str()));
    // The rebuild itself doesn't redraw; "g" does, and at scale 1 either
    // magnification shows the texels exactly.
    EXPECT_EQ(compare_shown(path, 203, 301, zvtest::distinct_colour, {"r", "g"}), 0);
}

TEST(ShownAtScaleOne, Tga)
{
    zvtest::TempDir dir;
    std::string const path = dir.file("picture.tga");
    ASSERT_TRUE(libgr::image_tga_t().save(distinct_picture(180, 120, 3), path.c_str()));
    EXPECT_EQ(compare_shown(path, 180, 120, zvtest::distinct_colour), 0);
}

// ---- Fitted, so that the lower mipmap levels show

namespace {

// The least of the channels that `mask` picks (0xff0000: red alone) over
// the picture's pixels along each edge of what the window shows of it; the
// picture is whatever is not background. Edges: left, right, bottom, top.
struct edge_minima_t {
    int pixels = 0;  // of the picture, in all
    int min[4] = {255, 255, 255, 255};
    bool framed = false;  // background all around it
};

int least_channel(std::uint32_t pixel, std::uint32_t mask)
{
    int least = 255;
    for (int shift : {16, 8, 0})
        if (mask >> shift & 0xff) least = std::min(least, int(pixel >> shift & 0xff));
    return least;
}

edge_minima_t fitted_edges(std::string const& path, std::string const& winsize, std::uint32_t mask)
{
    edge_minima_t edges;
    ViewerProcess viewer({"-frametype", "0", "-winsize", winsize, path}, {"HOME=/nonexistent-zanoview-home"});
    EXPECT_TRUE(viewer.wait_window());
    // A large picture in a sanitizer build on a busy machine takes a while.
    zvtest::screenshot_t const shot = viewer.settled_screenshot(90);
    int left = shot.width, right = -1, top = shot.height, bottom = -1;
    for (int y = 0; y < shot.height; ++y)
        for (int x = 0; x < shot.width; ++x) {
            if (shot.at(x, y) == kBackground) continue;
            ++edges.pixels;
            left = std::min(left, x), right = std::max(right, x);
            top = std::min(top, y), bottom = std::max(bottom, y);
        }
    if (edges.pixels == 0) return edges;
    edges.framed = left > 0 && top > 0 && right < shot.width - 1 && bottom < shot.height - 1;
    for (int y = top; y <= bottom; ++y) {
        edges.min[0] = std::min(edges.min[0], least_channel(shot.at(left, y), mask));
        edges.min[1] = std::min(edges.min[1], least_channel(shot.at(right, y), mask));
    }
    for (int x = left; x <= right; ++x) {
        edges.min[2] = std::min(edges.min[2], least_channel(shot.at(x, bottom), mask));
        edges.min[3] = std::min(edges.min[3], least_channel(shot.at(x, top), mask));
    }
    viewer.key("q");
    EXPECT_EQ(viewer.wait_exit(), 0);
    return edges;
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
    char const* const names[4] = {"left", "right", "bottom", "top"};
    for (char const* winsize : {"800x600", "500x400", "1000x700"}) {
        for (auto const& [path, mask] : {std::pair{white, 0xffffffu}, std::pair{edged, 0xff0000u}}) {
            SCOPED_TRACE(path + " in " + winsize);
            edge_minima_t const edges = fitted_edges(path, winsize, mask);
            EXPECT_GT(edges.pixels, 0);
            EXPECT_TRUE(edges.framed) << "the picture should be fitted inside the window";
            for (int i = 0; i < 4; ++i) EXPECT_GE(edges.min[i], 254) << names[i] << " edge";
        }
    }
}
