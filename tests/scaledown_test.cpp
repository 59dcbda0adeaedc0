#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "image/convert.h"
#include "image/scaledown.h"

using namespace libgr;

namespace {

using reduce_t = bool (*)(image2d_t&, image2d_t const&);
using bytes_t = std::vector<int>;

// An 8-bit image whose rows, bottom first, start with the given bytes.
image2d_t make(e_image_format_t format, std::uint32_t w, std::vector<bytes_t> const& rows)
{
    image2d_t img;
    img.desc = {format, IMAGE_TYPE_UINT, IMAGE_BITS_8};
    img.m_width = w;
    img.m_height = static_cast<std::uint32_t>(rows.size());
    EXPECT_TRUE(img.allocate());
    for (std::size_t y = 0; y < rows.size(); ++y)
        std::copy(rows[y].begin(), rows[y].end(), img.pixel(0, y));
    return img;
}

// The bytes of the bottom row's pixels, by the record's own addressing.
bytes_t row0(image2d_t const& img, std::uint32_t bytes)
{
    unsigned char const* p = img.pixel(0, 0);
    return bytes_t(p, p + bytes * img.m_width);
}

// A 2 x 2 cell followed by the same cell 100 higher in every byte, so that
// the second output pixel shows the step from cell to cell.
bytes_t cells(bytes_t b)
{
    for (int v : bytes_t(b)) b.push_back(v + 100);
    return b;
}

}  // namespace

TEST(BoxFilter, AveragesEachQuadTruncatingWithTheFourByteAndGrayReadsKept)
{
    bytes_t const nines(12, 9), edge{200, 200, 200};
    bytes_t nines_edge = nines;
    nines_edge.insert(nines_edge.end(), edge.begin(), edge.end());
    struct case_t {
        e_image_format_t format;
        std::uint32_t width;
        std::vector<bytes_t> rows;
        bytes_t want;
    } const cases[] = {
        // (1 + 2 + 3 + 4) >> 2 in each channel.
        {IMAGE_FORMAT_RGB, 2, {{1, 1, 1, 2, 2, 2}, {3, 3, 3, 4, 4, 4}}, {2, 2, 2}},
        // The second pixel is read 3 bytes in: bytes c and 3 + c of each row.
        {IMAGE_FORMAT_BGRA, 2, {{10, 20, 30, 40, 50, 60, 70, 80}, {1, 2, 3, 4, 5, 6, 7, 8}},
         {(10 + 40 + 1 + 4) / 4, (20 + 50 + 2 + 5) / 4, (30 + 60 + 3 + 6) / 4,
          (40 + 70 + 4 + 7) / 4}},
        // The window slides one pixel a step: the 100s on the right are never read.
        {IMAGE_FORMAT_GRAYSCALE, 4, {{0, 4, 8, 100}, {4, 8, 12, 100}}, {4, 8}},
        // 5 x 3 gives 2 x 1: the last column and the top row are dropped.
        {IMAGE_FORMAT_RGB, 5, {nines_edge, nines_edge, bytes_t(15, 200)}, bytes_t(6, 9)},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.format << " " << c.width);
        image2d_t src = make(c.format, c.width, c.rows), dst;
        ASSERT_TRUE(scaledown(dst, src));
        EXPECT_EQ(dst.desc, src.desc);
        EXPECT_EQ(dst.m_height, c.rows.size() / 2);
        EXPECT_EQ(row0(dst, image_format_components(c.format)), c.want);
    }
    image2d_t one = make(IMAGE_FORMAT_RGB, 1, {{1, 2, 3}}), none;
    EXPECT_TRUE(scaledown(none, one));
    EXPECT_EQ(none.m_width + none.m_height, 0u);
}

TEST(BoxFilter, ReadsAndWritesThroughWindows)
{
    bytes_t const far(12, 250);
    image2d_t big =
        make(IMAGE_FORMAT_RGB, 4, {far, {0, 0, 0, 1, 1, 1, 2, 2, 2}, {0, 0, 0, 3, 3, 3, 4, 4, 4}});
    image2d_t win, dst;
    ASSERT_TRUE(makewindow(win, big, 1, 1, 2, 2));
    dst.window.skippixels = 1;  // left from earlier use: its pixel goes one in
    ASSERT_TRUE(scaledown(dst, win));
    EXPECT_EQ(row0(dst, 3), bytes_t(3, 2));
}

TEST(BayerCells, TakeEachColourFromItsCellPositionForRgbAndRgba)
{
    // RGBA rows are the RGB rows with two more bytes a cell; the colours come
    // from the same offsets and alpha is (11 + 41 + 29 + 71) >> 2.
    std::vector<bytes_t> const rgb{cells({3, 50, 7, 11, 90, 13}), cells({17, 19, 23, 29, 150, 37})};
    std::vector<bytes_t> const rgba{cells({3, 50, 7, 11, 90, 13, 41, 60}),
                                    cells({17, 19, 23, 29, 150, 37, 71, 80})};
    struct case_t {
        char const* name;
        reduce_t reduce;
        bytes_t want;  // red, green, blue of the first cell
    } const cases[] = {
        {"GRBG", scaledownGRBG, {11, (50 + 150) / 2, 23}},
        {"GBRG", scaledownGBRG, {17, (50 + 150) / 2, 13}},
        {"RGGB", scaledownRGGB, {3, (90 + 19) / 2, 37}},
        {"BGGR", scaledownBGGR, {29, (90 + 19) / 2, 7}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.name);
        image2d_t dst;
        ASSERT_TRUE(c.reduce(dst, make(IMAGE_FORMAT_RGB, 4, rgb)));
        EXPECT_EQ(row0(dst, 3), cells(c.want));
        bytes_t with_alpha = c.want;
        with_alpha.push_back(38);
        ASSERT_TRUE(c.reduce(dst, make(IMAGE_FORMAT_RGBA, 4, rgba)));
        EXPECT_EQ(row0(dst, 4), cells(with_alpha));
    }
    image2d_t dst;
    image2d_t const greens = make(IMAGE_FORMAT_RGB, 2, {{0, 255, 0, 0, 0, 0}, {0, 0, 0, 0, 254, 0}});
    ASSERT_TRUE(scaledownGRBG(dst, greens));
    EXPECT_EQ(row0(dst, 3)[1], 254);  // truncated
    image2d_t const gray = make(IMAGE_FORMAT_GRAYSCALE, 4, {{0, 4, 8, 100}, {4, 8, 12, 100}});
    ASSERT_TRUE(scaledownBGGR(dst, gray));
    EXPECT_EQ(row0(dst, 1), (bytes_t{4, 8}));  // the box filter
}

TEST(ScaledownFormats, RefusesWhatEachCannotReadWithOneLine)
{
    struct case_t {
        reduce_t reduce;
        e_image_format_t format;
        bool taken;
    } const cases[] = {
        {scaledown, IMAGE_FORMAT_BGRA, true},
        {scaledown, IMAGE_FORMAT_INDEX, false},
        {scaledownGRBG, IMAGE_FORMAT_BGR, false},
    };
    for (auto const& c : cases) {
        std::string const name = testing::PrintToString(c.format);
        SCOPED_TRACE(name);
        image2d_t dst;
        testing::internal::CaptureStderr();
        EXPECT_EQ(c.reduce(dst, make(c.format, 2, {{}, {}})), c.taken);
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  c.taken ? "" : "scaledown(): " + name + ": unsupported format.\n");
    }
}
