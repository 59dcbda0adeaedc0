// Pictures larger than memory allows: a header's claim is refused before it
// is allocated, quickly, and a picture within the limit still loads.
#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <string>

#include "codecs/jpeg.h"
#include "codecs/png.h"
#include "image/image.h"

#include "tests/support/jpeg_encode.h"
#include "tests/support/picture_files.h"

namespace {

unsigned char pattern(int x, int y, int c) { return (unsigned char)(x * 7 + y * 3 + c * 50); }

void write_bytes(std::string const& path, zvtest::jpeg_bytes_t const& bytes)
{
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<char const*>(bytes.data()), bytes.size());
}

long peak_rss_kb()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class PictureLimits : public ::testing::Test {
protected:
    void TearDown() override { libgr::set_max_image_bytes(0); }

    // Loads `path` with the viewer's JPEG codec.
    bool load_jpeg(std::string const& path)
    {
        libgr::image2d_t image;
        return libgr::image_jpeg1_t().load(image, path.c_str());
    }

    zvtest::TempDir dir;
};

}  // namespace

TEST_F(PictureLimits, AllocateRefusesARecordBeyondTheLimit)
{
    libgr::image2d_t image;
    image.desc = {libgr::IMAGE_FORMAT_RGB, libgr::IMAGE_TYPE_UINT, libgr::IMAGE_BITS_8};
    image.m_width = 1000;
    image.m_height = 1000;  // 3 000 000 bytes
    libgr::set_max_image_bytes(2000000);
    EXPECT_FALSE(image.allocate());
    EXPECT_TRUE(image.empty());
    libgr::set_max_image_bytes(3000000);
    EXPECT_TRUE(image.allocate());
}

TEST_F(PictureLimits, JpegHeaderClaimingHugeSidesFailsQuicklyWithoutAllocating)
{
    // 65500 x 65500 is within libjpeg's limit and 12.9 GB of RGB, more than
    // this limit allows; 65535 x 65535 is beyond libjpeg's own.
    libgr::set_max_image_bytes(std::uint64_t(1) << 30);
    zvtest::jpeg_bytes_t const good = zvtest::jpeg_encode(pattern, 48, 32, 3);
    std::size_t sof = 0;
    for (std::size_t i = 2; i + 1 < good.size() && !sof; ++i)
        if (good[i] == 0xFF && good[i + 1] == 0xC0) sof = i;
    ASSERT_NE(sof, 0u);
    long const rss_before = peak_rss_kb();
    for (unsigned side : {65500u, 65535u}) {
        zvtest::jpeg_bytes_t huge = good;
        huge[sof + 5] = huge[sof + 7] = (unsigned char)(side >> 8);
        huge[sof + 6] = huge[sof + 8] = (unsigned char)side;
        std::string const path = dir.file("huge-" + std::to_string(side) + ".jpg");
        write_bytes(path, huge);
        auto const start = std::chrono::steady_clock::now();
        EXPECT_FALSE(load_jpeg(path)) << side;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1)) << side;
    }
    EXPECT_LT(peak_rss_kb() - rss_before, 100 * 1024);  // kilobytes
}

TEST_F(PictureLimits, CoefficientsOfAPictureInSeveralScansCountToo)
{
    // 512 x 512 gray: 256 KB of pixels, and 512 KB of coefficients that
    // libjpeg holds whole for a progressive file, not for a baseline one.
    std::string const progressive = dir.file("progressive.jpg");
    std::string const baseline = dir.file("baseline.jpg");
    write_bytes(progressive, zvtest::jpeg_encode(pattern, 512, 512, 1, {}, true));
    write_bytes(baseline, zvtest::jpeg_encode(pattern, 512, 512, 1));
    libgr::set_max_image_bytes(300 * 1024);
    EXPECT_FALSE(load_jpeg(progressive));
    EXPECT_TRUE(load_jpeg(baseline));
    libgr::set_max_image_bytes(600 * 1024);
    EXPECT_TRUE(load_jpeg(progressive));
}

TEST_F(PictureLimits, PngDecodingToMoreThanTheLimitIsRefused)
{
    libgr::image2d_t picture;
    picture.desc = {libgr::IMAGE_FORMAT_RGB, libgr::IMAGE_TYPE_UINT, libgr::IMAGE_BITS_8};
    picture.m_width = 600;
    picture.m_height = 600;  // 1 080 000 bytes
    ASSERT_TRUE(picture.allocate());
    for (std::uint64_t i = 0; i < picture.size(); ++i) picture.begin()[i] = (unsigned char)(i * 13 / 7);
    std::string const path = dir.file("ramp.png");
    ASSERT_TRUE(libgr::image_png_t().save(picture, path.c_str()));

    libgr::image2d_t image;
    libgr::set_max_image_bytes(1000000);
    EXPECT_FALSE(libgr::image_png_t().load(image, path.c_str()));
    libgr::set_max_image_bytes(0);
    EXPECT_TRUE(libgr::image_png_t().load(image, path.c_str()));
}
