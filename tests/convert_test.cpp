// Pixel conversions, byte for byte on small pictures, mostly read through
// windows of odd width with both skips set, as the tiler makes them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "image/convert.h"

using namespace libgr;

namespace {

using bytes_t = std::vector<int>;

// A picture whose first bytes are `start`.
image2d_t make(e_image_format_t format, e_image_bits_t bits, std::uint32_t w, std::uint32_t h,
               bytes_t const& start = {})
{
    image2d_t img;
    img.desc = {format, IMAGE_TYPE_UINT, bits};
    img.m_width = w;
    img.m_height = h;
    EXPECT_TRUE(img.allocate());
    std::copy(start.begin(), start.end(), img.begin());
    return img;
}

bytes_t bytes(unsigned char const* from, std::size_t n) { return bytes_t(from, from + n); }

// Every byte names its pixel and component, so a misplaced byte shows.
unsigned char tag(std::uint64_t x, std::uint64_t y, int c) { return 40 * y + 8 * x + c; }

// 8-bit pixels of `format`, 5 x 3, tagged; `win` is its (1, 1, 3, 2) window.
struct tagged_t {
    image2d_t whole, win;
    explicit tagged_t(e_image_format_t format, std::uint32_t channels)
    {
        whole = make(format, IMAGE_BITS_8, 5, 3);
        for (std::uint32_t y = 0; y < 3; ++y)
            for (std::uint32_t x = 0; x < 5; ++x)
                for (std::uint32_t c = 0; c < channels; ++c) whole.pixel(x, y)[c] = tag(x, y, c);
        EXPECT_TRUE(makewindow(win, whole, 1, 1, 3, 2));
    }
};

}  // namespace

TEST(ChannelSwap, SwapsRedAndBlueOfAWindowIntoRowsPaddedToFour)
{
    tagged_t bgr(IMAGE_FORMAT_BGR, 3);
    image_store_t const packed{false, 1};
    image2d_t dst;
    dst.store = &packed;  // kept, but the rows still go 12 bytes apart
    ASSERT_TRUE(bgr2rgb(dst, bgr.win));
    EXPECT_EQ(dst.desc.format, IMAGE_FORMAT_RGB);
    ASSERT_GE(dst.size(), 12u + 9u);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x)
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(dst.begin()[12 * y + 3 * x + c], tag(x + 1, y + 1, 2 - c));
}

TEST(ChannelSwap, SharesTheSourceWhenInOrderOrUnsupported)
{
    image2d_t rgb = make(IMAGE_FORMAT_RGB, IMAGE_BITS_16, 2, 2), a, b;
    EXPECT_TRUE(bgr2rgb(a, rgb));  // whatever the bits
    EXPECT_EQ(a.begin(), rgb.begin());
    rgb.desc.format = IMAGE_FORMAT_BGR;
    EXPECT_FALSE(bgr2rgb(b, rgb));
    EXPECT_EQ(b.begin(), rgb.begin());
}

TEST(AlphaChannel, AddsOpaqueAlphaAndDropsItAgain)
{
    tagged_t rgb(IMAGE_FORMAT_RGB, 3);
    image2d_t rgba, back;
    ASSERT_TRUE(rgb2rgba(rgba, rgb.win));
    ASSERT_TRUE(rgba2rgb(back, rgba));
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) {
            EXPECT_EQ(rgba.pixel(x, y)[3], 255);
            for (int c = 0; c < 3; ++c) EXPECT_EQ(back.pixel(x, y)[c], tag(x + 1, y + 1, c));
        }
}

TEST(PaletteExpansion, TakesEachEntrysHighByteForOneFourAndEightBits)
{
    image2d_t idx = make(IMAGE_FORMAT_INDEX, IMAGE_BITS_4, 4, 1);
    ASSERT_TRUE(idx.palette.resize(16));
    for (int i = 0; i < 16; ++i) {
        idx.palette.red[i] = 0x1000 * i + 0xAB;  // the low byte never shows
        idx.palette.green[i] = i;
        idx.palette.blue[i] = 0xFF00;
    }
    idx.begin()[0] = 0x12;
    idx.begin()[1] = 0x34;
    image2d_t win, rgb;
    ASSERT_TRUE(makewindow(win, idx, 1, 0, 2, 1));  // starts in the low half of byte 0
    ASSERT_TRUE(index2rgb(rgb, win));
    EXPECT_EQ(rgb.desc.format, IMAGE_FORMAT_RGB);
    EXPECT_EQ(bytes(rgb.begin(), 6), (bytes_t{0x20, 0, 0xFF, 0x30, 0, 0xFF}));

    image2d_t bits = make(IMAGE_FORMAT_INDEX, IMAGE_BITS_1, 10, 1);
    bits.palette = idx.palette;
    bits.begin()[0] = 0xA0;  // 1 0 1 0 0 0 0 0
    bits.begin()[1] = 0x40;  // 0 1
    ASSERT_TRUE(index2rgb(rgb, bits));
    std::string reds;
    for (int x = 0; x < 10; ++x) reds += rgb.pixel(x, 0)[0] ? '1' : '0';
    EXPECT_EQ(reds, "1010000001");
}

TEST(PaletteExpansion, IndicesPastTheColoursGiveBlackWithoutReadingOn)
{
    image2d_t idx = make(IMAGE_FORMAT_INDEX, IMAGE_BITS_8, 4, 1, {1, 0, 2, 255});
    ASSERT_TRUE(idx.palette.resize(2));
    idx.palette.red[1] = idx.palette.green[1] = idx.palette.blue[1] = 0xFFFF;
    idx.palette.size = 16;  // claims more than its planes hold
    image2d_t rgb;
    ASSERT_TRUE(index2rgb(rgb, idx));
    EXPECT_EQ(bytes(rgb.begin(), 12), (bytes_t{255, 255, 255, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(index2rgb(rgb, make(IMAGE_FORMAT_INDEX, IMAGE_BITS_2, 4, 1)));
}

TEST(DeepCopy, PacksAWindowIntoOwnRowsWithZeroPadding)
{
    tagged_t rgb(IMAGE_FORMAT_RGB, 3);
    ASSERT_TRUE(rgb.win.palette.resize(1));
    image2d_t dst;
    ASSERT_TRUE(copy(dst, rgb.win));
    EXPECT_EQ(dst.window.skippixels + dst.window.skiprows + dst.window.rowlength, 0u);
    EXPECT_EQ(dst.palette.size, 0u);
    ASSERT_EQ(dst.size(), 24u);
    for (int y = 0; y < 2; ++y) {
        for (int i = 0; i < 9; ++i)
            EXPECT_EQ(dst.begin()[12 * y + i], tag(1 + i / 3, y + 1, i % 3));
        for (int i = 9; i < 12; ++i) EXPECT_EQ(dst.begin()[12 * y + i], 0);
    }
    dst.begin()[0] = 0;
    EXPECT_EQ(rgb.win.pixel(0, 0)[0], tag(1, 1, 0));
}

// Nothing in the viewer fills, tints or greys pictures: one case each.
TEST(ColourOperations, FillClampsWithinTheWindowAddSaturatesMonochromeTruncates)
{
    tagged_t rgba(IMAGE_FORMAT_RGBA, 4);
    ASSERT_TRUE(fillcolor(rgba.win, color3a(2.0f, -1.0f, NAN, 0.5f)));
    EXPECT_EQ(bytes(rgba.whole.pixel(3, 2), 4), (bytes_t{255, 0, 255, 128}));
    EXPECT_EQ(rgba.whole.pixel(4, 1)[0], tag(4, 1, 0));
    EXPECT_EQ(rgba.whole.pixel(1, 0)[0], tag(1, 0, 0));

    image2d_t img = make(IMAGE_FORMAT_RGBA, IMAGE_BITS_8, 1, 1, {255, 100, 100, 77});
    ASSERT_TRUE(addcolor(img, color3a(0.5f, 0.2f, -1.0f, 1.0f)));
    EXPECT_EQ(bytes(img.begin(), 4), (bytes_t{255, 151, 0, 77}));

    image2d_t rgb = make(IMAGE_FORMAT_RGB, IMAGE_BITS_8, 2, 1, {255, 0, 0, 10, 20, 30}), gray;
    ASSERT_TRUE(monochrome(gray, rgb));
    EXPECT_EQ(gray.desc.format, IMAGE_FORMAT_GRAYSCALE);
    EXPECT_EQ(gray.begin()[0], 76);  // 76.245
    EXPECT_EQ(gray.begin()[1], 18);  // 18.15
}

TEST(QuarterTurn, MovesEveryPixelClockwise)
{
    tagged_t rgb(IMAGE_FORMAT_RGB, 3);  // the window is 3 x 2
    for (unsigned long count = 1; count <= 3; ++count) {
        image2d_t turned;
        ASSERT_TRUE(rotate(count, turned, rgb.win));
        ASSERT_EQ(turned.m_width, count == 2 ? 3u : 2u);
        std::uint64_t const W = turned.m_width, H = turned.m_height;
        for (std::uint64_t y = 0; y < 2; ++y)
            for (std::uint64_t x = 0; x < 3; ++x) {
                std::uint64_t dx = y, dy = H - 1 - x;
                if (count == 2) dx = W - 1 - x, dy = H - 1 - y;
                if (count == 3) dx = W - 1 - y, dy = x;
                for (int c = 0; c < 3; ++c)
                    EXPECT_EQ(turned.pixel(dx, dy)[c], tag(x + 1, y + 1, c));
            }
    }
    image2d_t kept;
    EXPECT_FALSE(rotate(4, kept, rgb.win));
}

// The grid the tiler cuts is checked with the tiler; here, that a window
// shares the picture's bytes and how its origin and size are clipped.
TEST(Windows, ShareBytesAddOriginsAndKeepTheWidthForAnOriginPastIt)
{
    image2d_t picture = make(IMAGE_FORMAT_RGB, IMAGE_BITS_8, 600, 300), corner, outer, inner, past;
    picture.pixel(512, 256)[0] = 42;
    ASSERT_TRUE(makewindow(corner, picture, 512, 256, 256, 256));
    EXPECT_EQ(corner.m_width, 88u);
    EXPECT_EQ(corner.m_height, 44u);
    EXPECT_EQ(corner.pixel(0, 0)[0], 42);

    ASSERT_TRUE(makewindow(outer, picture, 256, 0, 256, 256));
    ASSERT_TRUE(makewindow(inner, outer, 200, 20, 100, 100));
    EXPECT_EQ(inner.window.skippixels, 456u);
    EXPECT_EQ(inner.window.skiprows, 20u);
    EXPECT_EQ(inner.m_width, 100u);  // 256 - 456 wraps around

    ASSERT_TRUE(makewindow(past, picture, 700, 290, 50, 50));
    EXPECT_EQ(past.m_width, 50u);
    EXPECT_EQ(past.m_height, 10u);
    // Its last row reaches behind the picture's bytes: refused, not read.
    image2d_t dst;
    EXPECT_FALSE(copy(dst, past));
    EXPECT_FALSE(rotate(1, dst, past));

    picture.compressed = true;
    EXPECT_FALSE(makewindow(dst, picture, 0, 0, 1, 1));
}
