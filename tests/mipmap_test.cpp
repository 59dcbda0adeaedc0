// The levels of a tile averaged on the CPU and the texels beyond the
// picture, checked against a plain model: the square filled out by
// repeating the picture's last column and row, halved by 2 x 2 means.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "image/image.h"
#include "image/mipmap.h"

#include "tests/support/pixel_window.h"

using namespace libgr;
using zvtest::window_of;

namespace {

image_store_t const s_packed{false, 1};

// A picture whose every byte differs from its neighbours', so that a texel
// taken from the wrong place shows.
image2d_t picture(std::uint32_t width, std::uint32_t height, e_image_format_t format,
                  image_store_t const* store)
{
    image2d_t img;
    img.desc = {format, IMAGE_TYPE_UINT, IMAGE_BITS_8};
    img.store = store;
    img.m_width = width;
    img.m_height = height;
    EXPECT_TRUE(img.allocate());
    for (std::uint64_t i = 0; i < img.size(); ++i) img.begin()[i] = std::uint8_t(i * 37 + i / 7);
    return img;
}

// Packed square levels, from level 0 down to 1 x 1.
using model_t = std::vector<std::vector<std::uint8_t>>;

model_t model_levels(image2d_t const& img, std::uint32_t side, unsigned pixel)
{
    model_t levels(1, std::vector<std::uint8_t>(std::size_t(side) * side * pixel));
    for (std::uint32_t y = 0; y < side; ++y)
        for (std::uint32_t x = 0; x < side; ++x) {
            std::uint32_t const px = std::min(x, img.m_width - 1);
            std::uint32_t const py = std::min(y, img.m_height - 1);
            unsigned char const* from = img.begin() + img.rowsize() * (img.window.skiprows + py) +
                                        pixel * (img.window.skippixels + px);
            std::memcpy(&levels[0][(std::size_t(y) * side + x) * pixel], from, pixel);
        }
    for (std::uint32_t s = side / 2; s >= 1; s /= 2) {
        std::vector<std::uint8_t> const& up = levels.back();
        std::vector<std::uint8_t> down(std::size_t(s) * s * pixel);
        for (std::uint32_t y = 0; y < s; ++y)
            for (std::uint32_t x = 0; x < s; ++x)
                for (unsigned c = 0; c < pixel; ++c) {
                    auto at = [&](std::uint32_t ux, std::uint32_t uy) {
                        return unsigned(up[(std::size_t(uy) * 2 * s + ux) * pixel + c]);
                    };
                    down[(std::size_t(y) * s + x) * pixel + c] = std::uint8_t(
                        (at(2 * x, 2 * y) + at(2 * x + 1, 2 * y) + at(2 * x, 2 * y + 1) + at(2 * x + 1, 2 * y + 1) + 2) / 4);
                }
        levels.push_back(down);
    }
    return levels;
}

// The rows of `made`, `bytes` long and padded to `alignment`, that differ
// from the model's rows, `model_stride` apart from `expected` on.
int wrong_rows(unsigned char const* made, std::uint32_t rows, std::size_t bytes, unsigned alignment,
               std::uint8_t const* expected, std::size_t model_stride)
{
    std::size_t const stride = (bytes + alignment - 1) / alignment * alignment;
    int wrong = 0;
    for (std::uint32_t y = 0; y < rows; ++y)
        wrong += std::memcmp(made + stride * y, expected + model_stride * y, bytes) != 0;
    return wrong;
}

struct case_t {
    e_image_format_t format;
    unsigned pixel;
    std::uint32_t width, height, side;
    unsigned alignment;
};

}  // namespace

TEST(AveragedLevels, MatchTheModelForEveryByteFormatAndPartialTile)
{
    case_t const cases[] = {
        {IMAGE_FORMAT_RGBA, 4, 8, 8, 8, 4},       // a full tile
        {IMAGE_FORMAT_RGBA, 4, 5, 3, 8, 4},       // odd sizes: the last pair is half picture
        {IMAGE_FORMAT_RGB, 3, 1, 7, 8, 4},        // one column; padded rows
        {IMAGE_FORMAT_BGR, 3, 6, 1, 8, 1},        // one row
        {IMAGE_FORMAT_GRAYSCALE, 1, 3, 5, 16, 8}, // deep chain, wide alignment
        {IMAGE_FORMAT_GRAYSCALE_ALPHA, 2, 2, 2, 2, 2},
    };
    std::vector<unsigned char> storage;
    for (case_t const& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.pixel << " bytes, " << c.width << "x" << c.height << " in "
                                          << c.side);
        // A window inside a larger record, so that its offsets count.
        image2d_t const whole = picture(c.width + 3, c.height + 2, c.format, &s_packed);
        image2d_t const tile = window_of(whole, 2, 1, c.width, c.height);
        ASSERT_EQ(averageable_pixel_bytes(tile), c.pixel);
        model_t const model = model_levels(tile, c.side, c.pixel);

        std::vector<square_level_t> const levels = average_levels(tile, c.side, c.pixel, c.alignment, storage);
        ASSERT_EQ(levels.size(), model.size() - 1);
        for (std::size_t i = 0; i < levels.size(); ++i) {
            std::size_t const row = std::size_t(levels[i].side) * c.pixel;
            EXPECT_EQ(levels[i].side, c.side >> (i + 1));
            EXPECT_EQ(wrong_rows(levels[i].bytes, levels[i].side, row, c.alignment, model[i + 1].data(), row), 0)
                << "rows wrong at level " << i + 1;
        }

        // Level 0 beyond the picture: the right strip beside its rows, the
        // top strip across the whole square.
        edge_strips_t const strips = continue_edges(tile, c.side, c.alignment, storage);
        std::size_t const row = std::size_t(c.side) * c.pixel;
        std::uint8_t const* const level0 = model[0].data();
        EXPECT_EQ(wrong_rows(strips.right, strips.right_height, (c.side - c.width) * c.pixel, c.alignment,
                             level0 + c.width * c.pixel, row) +
                      wrong_rows(strips.top, strips.top_height, row, c.alignment, level0 + c.height * row, row),
                  0)
            << "strip rows that don't continue the picture";
        EXPECT_EQ(strips.right_width, c.side - c.width);
        EXPECT_EQ(strips.top_height, c.side - c.height);
        EXPECT_EQ(strips.right != nullptr, c.width < c.side);
        EXPECT_EQ(strips.top != nullptr, c.height < c.side);
    }
}

TEST(AveragedLevels, OnlyWholeBytesThatTheRecordHoldsAreAveraged)
{
    image2d_t rgb = picture(4, 4, IMAGE_FORMAT_RGB, &s_packed);
    EXPECT_EQ(averageable_pixel_bytes(rgb), 3u);

    image2d_t wide = rgb;
    wide.desc.bits = IMAGE_BITS_16;  // two-byte components: a byte mean would be wrong
    EXPECT_EQ(averageable_pixel_bytes(wide), 0u);
    image2d_t index = rgb;
    index.desc.format = IMAGE_FORMAT_INDEX;
    EXPECT_EQ(averageable_pixel_bytes(index), 0u);

    // A window that promises rows the bytes don't hold is never read.
    image2d_t beyond = window_of(rgb, 0, 2, 4, 4);
    EXPECT_EQ(averageable_pixel_bytes(beyond), 0u);
    std::vector<unsigned char> storage;
    edge_strips_t const strips = continue_edges(beyond, 8, 4, storage);
    EXPECT_EQ(strips.right, nullptr);
    EXPECT_EQ(strips.top, nullptr);
}
