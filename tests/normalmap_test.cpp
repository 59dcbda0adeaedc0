// Normal maps from height maps and the normalisation cube map, on small
// pictures whose normals can be worked out by hand.
#include "image/normalmap.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

using namespace libgr;

namespace {

// An 8-bit gray picture with rows padded to 4; `heights` bottom row first.
image2d_t heightmap(std::uint32_t w, std::uint32_t h, std::initializer_list<int> heights)
{
    image2d_t img;
    img.desc = {IMAGE_FORMAT_GRAYSCALE, IMAGE_TYPE_UINT, IMAGE_BITS_8};
    img.m_width = w;
    img.m_height = h;
    EXPECT_TRUE(img.allocate());
    auto it = heights.begin();
    for (std::uint32_t y = 0; y < h; ++y)
        for (std::uint32_t x = 0; x < w; ++x) *img.pixel(x, y) = *it++;
    return img;
}

// x, y, z; a vector, so that a failure prints it.
using normal_t = std::vector<int>;

// The stored normal at (x, y), as signed bytes; rows are 4-aligned.
normal_t signed_at(image2d_t const& img, std::uint32_t x, std::uint32_t y)
{
    std::uint64_t const row = (3 * img.m_width + 3) / 4 * 4;
    auto const* p = reinterpret_cast<std::int8_t const*>(img.begin() + row * y + 3 * x);
    return {p[0], p[1], p[2]};
}

normal_t unsigned_at(image2d_t const& img, std::uint32_t x, std::uint32_t y)
{
    unsigned char const* p = img.begin() + 3 * 256 * y + 3 * x;
    return {p[0], p[1], p[2]};
}

}  // namespace

TEST(HeightmapToNormalmap, FlatGroundPointsStraightUpEvenOnOnePixel)
{
    for (image2d_t const& flat : {heightmap(3, 2, {9, 9, 9, 9, 9, 9}), heightmap(1, 1, {200})}) {
        image2d_t normals;
        ASSERT_TRUE(heightmap2normalmap(normals, flat, 100.0f));
        EXPECT_EQ(normals.desc, (image_desc_t{IMAGE_FORMAT_RGB, IMAGE_TYPE_SINT, IMAGE_BITS_8}));
        EXPECT_EQ(normals.m_height, flat.m_height);
        for (std::uint32_t y = 0; y < flat.m_height; ++y)
            for (std::uint32_t x = 0; x < flat.m_width; ++x)
                EXPECT_EQ(signed_at(normals, x, y), (normal_t{0, 0, 127})) << x << ", " << y;
    }
}

TEST(HeightmapToNormalmap, LeansTowardsHigherGroundAndWrapsAtTheEdges)
{
    // 3 wide, so that a row of heights is 3 bytes in 4: read without the
    // padding, the upper row would come out shifted.
    image2d_t const steps = heightmap(3, 2, {0, 255, 255,
                                             0, 255, 0});
    image2d_t normals;
    ASSERT_TRUE(heightmap2normalmap(normals, steps, 1.0f));
    // A full step up to the right: (1, 0, 1) before normalising.
    EXPECT_EQ(signed_at(normals, 0, 0), (normal_t{90, 0, 90}));
    // The right edge wraps onto the left: 255 down to 0 both ways, which
    // leaves both square roots 0.
    EXPECT_EQ(signed_at(normals, 2, 0), (normal_t{-90, -90, 0}));
    // The top row wraps onto the bottom row.
    EXPECT_EQ(signed_at(normals, 1, 1), (normal_t{-90, 0, 90}));
    EXPECT_EQ(signed_at(normals, 2, 1), (normal_t{0, 90, 90}));
}

TEST(HeightmapToNormalmap, SharesWhatIsNoGrayHeightMap)
{
    image2d_t rgb = heightmap(2, 2, {1, 2, 3, 4});
    rgb.desc = {IMAGE_FORMAT_RGB, IMAGE_TYPE_SINT, IMAGE_BITS_8};
    image2d_t deep = heightmap(2, 2, {1, 2, 3, 4});
    deep.desc.bits = IMAGE_BITS_16;
    image2d_t packed = heightmap(2, 2, {1, 2, 3, 4});
    packed.compressed = true;
    struct {
        image2d_t const& src;
        bool result;
        char const* line;
    } const cases[] = {
        {rgb, true, ""},  // a normal map already
        {deep, false, "normalmap(): image type not supported.\n"},
        {packed, false, "normalmap(): compressed format not supported.\n"},
    };
    for (auto const& c : cases) {
        image2d_t normals;
        testing::internal::CaptureStderr();
        EXPECT_EQ(heightmap2normalmap(normals, c.src, 1.0f), c.result);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.line);
        EXPECT_EQ(normals.begin(), c.src.begin());
    }
}

TEST(NormalCubeMap, FacesHoldTheirDirectionsAsUnsignedBytes)
{
    image2d_t faces[6];
    ASSERT_TRUE(makenormalcubemap(faces));
    for (image2d_t const& face : faces) {
        EXPECT_EQ(face.desc, (image_desc_t{IMAGE_FORMAT_RGB, IMAGE_TYPE_SINT, IMAGE_BITS_8}));
        EXPECT_EQ(face.m_width, 256u);
    }
    // (1, -1, -1) normalised, each component v as (v + 1) / 2 of 255.
    EXPECT_EQ(unsigned_at(faces[0], 0, 0), (normal_t{201, 54, 54}));
    // A negated index reaches -3: (1, -3.008, -3.008).
    EXPECT_EQ(unsigned_at(faces[0], 255, 255), (normal_t{157, 40, 40}));
    // -X: (-1, -1 - 5/127, 9/127 - 1).
    EXPECT_EQ(unsigned_at(faces[1], 9, 5), (normal_t{53, 50, 58}));
    // +Z at column 127: (0, -1, 1).
    EXPECT_EQ(unsigned_at(faces[4], 127, 0), (normal_t{128, 37, 218}));
}
