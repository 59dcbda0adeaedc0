// Image records: pixel sizes, row arithmetic with alignment and windows,
// allocation, sharing, and the enumerations' tables and text.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "image/enums.h"
#include "image/image.h"

using namespace libgr;

namespace {

image_desc_t const kGray8 = {IMAGE_FORMAT_GRAYSCALE, IMAGE_TYPE_UINT, IMAGE_BITS_8};
image_desc_t const kRgb8 = {IMAGE_FORMAT_RGB, IMAGE_TYPE_UINT, IMAGE_BITS_8};

image2d_t record(image_desc_t desc, std::uint32_t width, std::uint32_t height)
{
    image2d_t image;
    image.desc = desc;
    image.m_width = width;
    image.m_height = height;
    return image;
}

std::uint64_t bits(e_image_format_t format, e_image_bits_t bits)
{
    return image_desc_t{format, IMAGE_TYPE_UINT, bits}.getPixelBits();
}

// Sees the reference count of the block behind a record.
struct counted_t : image2d_t {
    unsigned long refs() const { return m_block ? m_block->refcount : 0; }
};

}  // namespace

TEST(PixelBits, PackedBitsDecideAloneOtherwiseComponentsTimesBits)
{
    EXPECT_EQ(bits(IMAGE_FORMAT_RGB, IMAGE_BITS_R5G6B5), 16u);
    EXPECT_EQ(bits(IMAGE_FORMAT_RGBA, IMAGE_BITS_16), 64u);
    EXPECT_EQ(bits(IMAGE_FORMAT_DEPTH_STENCIL, IMAGE_BITS_D24S8), 0u);
    // Values from nowhere must not index past the tables.
    EXPECT_EQ(bits(IMAGE_FORMAT_MAX, IMAGE_BITS_8), 0u);
    EXPECT_EQ(bits(IMAGE_FORMAT_RGB, e_image_bits_t(99)), 0u);
}

TEST(RowSize, PadsToTheStoresAlignmentAndStepsByTheWindowsRowLength)
{
    image_store_t packed{false, 1}, wide{false, 8};
    image2d_t rgb = record(kRgb8, 5, 1);
    EXPECT_EQ(rgb.rowsize(), 16u);
    rgb.store = &packed;
    EXPECT_EQ(rgb.rowsize(), 15u);
    rgb.store = &wide;
    rgb.window.rowlength = 6;
    EXPECT_EQ(rgb.rowsize(), 24u);
    EXPECT_EQ(rgb.rowbyte(), 15u);
    // 33 bits take 5 whole bytes, padded to 8.
    EXPECT_EQ(record({IMAGE_FORMAT_GRAYSCALE, IMAGE_TYPE_UINT, IMAGE_BITS_1}, 33, 1).rowsize(), 8u);
}

TEST(Addressing, WindowedPixelsAndTheBytesThatMustBeThere)
{
    // RGB 5 x 2 in a window (1, 1) of a 7-pixel row: rows 24 bytes apart.
    image2d_t rgb = record(kRgb8, 5, 2);
    rgb.window = {7, 1, 1};
    EXPECT_EQ(rgb.pixel(2, 1) - rgb.pixel(0, 0), 24 + 2 * 3);
    // The last pixel ends at 24 * 2 + 3 * 6 = 66 bytes; the row's padding
    // after it needn't be there, a byte less must.
    EXPECT_EQ(rgb.layout().end(5, 2), 66u);
    ASSERT_TRUE(rgb.resize(66, 0));
    EXPECT_TRUE(rgb.holds_pixels());
    ASSERT_TRUE(rgb.resize(65, 0));
    EXPECT_FALSE(rgb.holds_pixels());
    rgb.m_width = 0;
    EXPECT_TRUE(rgb.holds_pixels()) << "no pixels need no bytes";

    // 4-bit pixels: pixel 3 starts inside byte 1, and the last byte counts whole.
    pixel_layout_t const nibbles{4, 4, 0, 0};
    EXPECT_EQ(nibbles.offset(3, 1), 5u);
    EXPECT_EQ(nibbles.end(3, 2), 6u);
    // Sizes from nowhere saturate instead of wrapping to a small count.
    std::uint64_t const most = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ((pixel_layout_t{most / 2, 8, 0, 0}.end(1, 3)), most);

    image2d_t packed = record(kGray8, 4, 1);
    ASSERT_TRUE(packed.allocate());
    packed.compressed = true;
    EXPECT_FALSE(packed.holds_pixels()) << "compressed bytes are no pixels";
}

TEST(Allocate, ReservesSkippedRowsAndFailsOnAbsurdSizesKeepingTheBytes)
{
    image2d_t image = record(kGray8, 4, 10);
    image.window.skiprows = 3;
    ASSERT_TRUE(image.allocate());
    EXPECT_EQ(image.size(), 13u * 4u);
    image.begin()[0] = 42;
    image.desc = {IMAGE_FORMAT_RGBA, IMAGE_TYPE_FLOAT, IMAGE_BITS_64};
    std::uint32_t const most = std::numeric_limits<std::uint32_t>::max();
    image.m_width = image.m_height = image.window.skiprows = most;
    EXPECT_EQ(image.datasize(), std::numeric_limits<std::uint64_t>::max());
    EXPECT_FALSE(image.allocate());
    ASSERT_EQ(image.size(), 13u * 4u);
    EXPECT_EQ(image.begin()[0], 42);
}

TEST(Allocate, ClearKeepsTheDescriptionForTheNextPicture)
{
    static image_store_t const store{false, 1};
    image2d_t image = record(kRgb8, 3, 2);
    image.store = &store;
    ASSERT_TRUE(image.allocate() && image.palette.resize(2));
    image.clear();
    EXPECT_TRUE(image.empty());
    EXPECT_EQ(image.m_width + image.m_height + image.palette.size, 0u);
    image.m_width = 5;
    image.m_height = 1;
    ASSERT_TRUE(image.allocate());
    EXPECT_EQ(image.size(), 15u) << "RGB and the store's packing stayed";
}

TEST(Sharing, CopiesSeeEachOthersWritesAndSelfAssignmentKeepsTheCount)
{
    counted_t a;
    static_cast<image2d_t&>(a) = record(kGray8, 4, 1);
    ASSERT_TRUE(a.allocate() && a.palette.resize(1));
    image2d_t b = a;
    b.begin()[2] = 7;
    b.palette.red[0] = 0xFFFF;
    EXPECT_EQ(a.begin()[2], 7);
    EXPECT_EQ(a.palette.red[0], 0xFFFF);
    image2d_t& same = a;
    same = a;
    EXPECT_EQ(a.refs(), 2u);
}

TEST(Sharing, PaletteResizeKeepsEntriesAndZeroReleasesThePlanes)
{
    palette_t a;
    ASSERT_TRUE(a.resize(2));
    a.green[1] = 0x1234;
    ASSERT_TRUE(a.resize(4));
    EXPECT_EQ(a.green[1], 0x1234);
    EXPECT_FALSE(a.resize(0));
    EXPECT_TRUE(a.red.empty() && a.green.empty() && a.blue.empty());
}

TEST(EnumText, WritesTheNameAndNamesAValueBeyondTheEndMarkOnce)
{
    EXPECT_EQ(testing::PrintToString(IMAGE_FORMAT_YCbCr422), "IMAGE_FORMAT_YCbCr422");
    EXPECT_EQ(testing::PrintToString(e_image_format_t(19)), "unknown: 19");
}
