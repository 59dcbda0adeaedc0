// Cutting pictures into square tiles: the grid, the clipped windows and the
// picture's size in tile sides, on the worked cases of the tiler.
#include "scene/tiling.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace libgr;
using zanolib::multi_square_image_t;

namespace {

image2d_t rgb_picture(std::uint32_t width, std::uint32_t height)
{
    image2d_t image;
    image.desc = {IMAGE_FORMAT_RGB, IMAGE_TYPE_UINT, IMAGE_BITS_8};
    image.m_width = width;
    image.m_height = height;
    EXPECT_TRUE(image.allocate());
    return image;
}

struct window_t {
    std::uint32_t x, y, w, h;
};

struct tiling_case {
    std::uint32_t width, height;
    std::uint32_t cols, rows;
    float size_x, size_y;  // tile sides
    std::vector<window_t> windows;
};

class Tiling : public ::testing::TestWithParam<tiling_case> {};

}  // namespace

TEST_P(Tiling, CutsTheGridFromTheBottomLeft)
{
    tiling_case const& c = GetParam();
    image2d_t picture = rgb_picture(c.width, c.height);
    multi_square_image_t tiles;
    ASSERT_TRUE(zanolib::rectangle_to_squares(tiles, picture, 256, true));
    EXPECT_EQ(tiles.m_cols, c.cols);
    EXPECT_EQ(tiles.m_rows, c.rows);
    EXPECT_FLOAT_EQ(tiles.m_size.x, c.size_x);
    EXPECT_FLOAT_EQ(tiles.m_size.y, c.size_y);
    EXPECT_EQ(tiles.m_format, IMAGE_FORMAT_RGB);
    ASSERT_EQ(tiles.m_squares.size(), c.windows.size());
    for (std::size_t i = 0; i < c.windows.size(); ++i) {
        image2d_t const& tile = tiles.m_squares[i];
        window_t const& w = c.windows[i];
        EXPECT_EQ(tile.window.skippixels, w.x) << "tile " << i;
        EXPECT_EQ(tile.window.skiprows, w.y) << "tile " << i;
        EXPECT_EQ(tile.m_width, w.w) << "tile " << i;
        EXPECT_EQ(tile.m_height, w.h) << "tile " << i;
        // A window onto the picture's bytes, not a copy.
        EXPECT_EQ(tile.begin(), picture.begin()) << "tile " << i;
        EXPECT_EQ(tile.rowlength(), c.width) << "tile " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    WorkedCases, Tiling,
    ::testing::Values(
        tiling_case{256, 256, 1, 1, 1.0f, 1.0f, {{0, 0, 256, 256}}},
        tiling_case{100, 60, 1, 1, 0.78125f, 0.46875f, {{0, 0, 100, 60}}},
        tiling_case{128, 300, 1, 2, 0.5f, 1.171875f, {{0, 0, 128, 256}, {0, 256, 128, 44}}},
        tiling_case{600, 300, 3, 2, 2.34375f, 1.171875f,
                    {{0, 0, 256, 256}, {256, 0, 256, 256}, {512, 0, 88, 256},
                     {0, 256, 256, 44}, {256, 256, 256, 44}, {512, 256, 88, 44}}},
        tiling_case{1, 1, 1, 1, 1.0f, 1.0f, {{0, 0, 1, 1}}},
        tiling_case{257, 10, 2, 1, 257.0f / 256, 10.0f / 256, {{0, 0, 256, 10}, {256, 0, 1, 10}}}),
    [](::testing::TestParamInfo<tiling_case> const& info) {
        return "Picture" + std::to_string(info.param.width) + "x" + std::to_string(info.param.height);
    });

TEST(TilingCopies, TilesOwnTheirPixelsWithoutWindows)
{
    image2d_t picture = rgb_picture(300, 10);
    picture.pixel(290, 5)[0] = 77;
    multi_square_image_t tiles;
    ASSERT_TRUE(zanolib::rectangle_to_squares(tiles, picture, 256, false));
    ASSERT_EQ(tiles.m_squares.size(), 2u);
    image2d_t const& right = tiles.m_squares[1];
    EXPECT_NE(right.begin(), picture.begin());
    EXPECT_EQ(right.m_width, 44u);
    EXPECT_EQ(right.pixel(34, 5)[0], 77);
}

TEST(TilingRefusals, CompressedPicturesAreNotCut)
{
    image2d_t picture = rgb_picture(16, 16);
    picture.compressed = true;
    multi_square_image_t tiles;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(zanolib::rectangle_to_squares(tiles, picture, 256, true));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "rectangle_to_squares(): compressed format not supported.\n");
}

TEST(TilingTextures, AllTilesOfAPictureGetOneSquareSize)
{
    image2d_t picture = rgb_picture(600, 300);
    multi_square_image_t tiles;
    ASSERT_TRUE(zanolib::rectangle_to_squares(tiles, picture, 256, true));
    zanolib::multi_texture_object_t textures;
    ASSERT_TRUE(zanolib::squares_to_texobjs(textures, tiles));
    ASSERT_EQ(textures.m_textures.size(), 6u);
    for (libgr::grTexture2D const& texture : textures.m_textures) EXPECT_EQ(texture.getSize(), 256u);
    EXPECT_EQ(textures.m_cols, 3u);
    EXPECT_FLOAT_EQ(textures.m_size.x, 2.34375f);
    // No texture is preloaded yet, and that does not count against residency.
    EXPECT_TRUE(textures.isResident());
}
