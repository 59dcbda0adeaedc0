// JPEGs with an Exif orientation stand upright on the screen: the view
// matrix turns them, and at scale 1 every decoded pixel lands on one window
// pixel of the turned picture.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "codecs/jpeg.h"
#include "tests/support/picture_images.h"
#include "tests/support/viewer_process.h"

namespace {

constexpr int kWidth = 64, kHeight = 48;  // even, so no half-pixel offset

// An APP1 Exif block, little-endian TIFF, whose 0th IFD holds only
// Orientation.
zvtest::bytes_t exif_orientation(unsigned short orientation)
{
    zvtest::bytes_t const tiff = {'I', 'I', 42, 0, 8, 0, 0, 0,  // header, IFD at 8
                                  1, 0,                         // one entry
                                  0x12, 0x01, 3, 0, 1, 0, 0, 0,  // 0x0112 SHORT, count 1
                                  (unsigned char)orientation, 0, 0, 0,
                                  0, 0, 0, 0};  // no next IFD
    zvtest::bytes_t app1 = {0xFF, 0xE1, 0, 0, 'E', 'x', 'i', 'f', 0, 0};
    app1.insert(app1.end(), tiff.begin(), tiff.end());
    std::size_t const length = app1.size() - 2;
    app1[2] = (unsigned char)(length >> 8);
    app1[3] = (unsigned char)(length & 0xff);
    return app1;
}

// Writes a JPEG of distinct colours with the orientation's Exif block right
// behind SOI, and returns its decoded pixels, top row first.
std::vector<std::uint32_t> write_oriented_jpeg(std::string const& path, unsigned short orientation)
{
    // Large flat blocks survive the JPEG round trip recognisably.
    auto const blocks = [](int x, int y) { return zvtest::distinct_colour(x / 8, y / 8); };
    EXPECT_TRUE(libgr::image_jpeg1_t().save(zvtest::picture_image(kWidth, kHeight, blocks), path.c_str()));
    zvtest::bytes_t bytes = zvtest::read_bytes(path);
    zvtest::bytes_t const app1 = exif_orientation(orientation);
    bytes.insert(bytes.begin() + 2, app1.begin(), app1.end());
    EXPECT_TRUE(zvtest::write_bytes(path, bytes));

    libgr::image2d_t decoded;
    EXPECT_TRUE(libgr::image_jpeg1_t().load(decoded, path.c_str()));
    std::vector<std::uint32_t> top_down(kWidth * kHeight);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            unsigned char const* p = decoded.pixel(x, kHeight - 1 - y);
            top_down[y * kWidth + x] = (std::uint32_t(p[0]) << 16) | (std::uint32_t(p[1]) << 8) | p[2];
        }
    return top_down;
}

struct orientation_case {
    unsigned short orientation;
    int clockwise_quarters;  // the turn that makes the picture upright
};

class UprightOnScreen : public ::testing::TestWithParam<orientation_case> {};

}  // namespace

TEST_P(UprightOnScreen, TurnedByTheViewNotInMemory)
{
    orientation_case const c = GetParam();
    zvtest::TempDir dir;
    std::string const path = dir.file("oriented.jpg");
    std::vector<std::uint32_t> const pixels = write_oriented_jpeg(path, c.orientation);
    auto const source = [&](int x, int y) { return pixels[std::size_t(y) * kWidth + x]; };

    bool const swapped = c.clockwise_quarters % 2 == 1;
    int const shown_width = swapped ? kHeight : kWidth, shown_height = swapped ? kWidth : kHeight;
    // Pixel (x, y) of the upright picture, y = 0 the top row.
    auto const upright = [&](int x, int y) {
        switch (c.clockwise_quarters) {
        case 1: return source(y, kHeight - 1 - x);
        case 2: return source(kWidth - 1 - x, kHeight - 1 - y);
        case 3: return source(kWidth - 1 - y, x);
        default: return source(x, y);
        }
    };

    zvtest::ViewerProcess viewer({"-resizetype", "0", "-frametype", "0", "-winsize", "800x600", path},
                                 {"HOME=" + dir.path()});
    ASSERT_TRUE(viewer.wait_window());
    zvtest::screenshot_t const shot = viewer.settled_screenshot();
    ASSERT_EQ(shot.width, 800);
    ASSERT_EQ(shot.height, 600);
    EXPECT_EQ(zvtest::differences_from_centred(shot, shown_width, shown_height, upright), "");
    viewer.key("q");
    EXPECT_EQ(viewer.wait_exit(), 0);
}

INSTANTIATE_TEST_SUITE_P(ExifOrientations, UprightOnScreen,
                         ::testing::Values(orientation_case{1, 0}, orientation_case{3, 2},
                                           orientation_case{6, 1}, orientation_case{8, 3}),
                         [](::testing::TestParamInfo<orientation_case> const& info) {
                             return "Exif" + std::to_string(info.param.orientation);
                         });
