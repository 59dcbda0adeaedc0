// The "s" key: what the window shows goes to <stem>.zvw.jpg beside the
// picture, and the picture itself is left alone. Reading the front buffer
// back needs softpipe; the test runs with GALLIUM_DRIVER=softpipe.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>

#include "codecs/jpeg.h"
#include "tests/support/picture_images.h"
#include "tests/support/viewer_process.h"

namespace {

// A flat colour with a darker square in the middle, so that the snapshot's
// content can be told from the background and the frame.
std::uint32_t picture_colour(int x, int y)
{
    bool const middle = x >= 100 && x < 200 && y >= 50 && y < 150;
    return middle ? 0x204080 : 0xe0a040;
}

}  // namespace

TEST(Snapshot, WritesWhatTheWindowShows)
{
    zvtest::TempDir dir;
    std::string const picture = dir.file("shot.bmp");
    ASSERT_TRUE(zvtest::write_bmp24(picture, 300, 200, picture_colour));
    zvtest::bytes_t const before = zvtest::read_bytes(picture);

    zvtest::ViewerProcess viewer({"-resizetype", "0", "-frametype", "0", "-winsize", "800x600", picture},
                                 {"HOME=" + dir.path(), "GALLIUM_DRIVER=softpipe"});
    ASSERT_TRUE(viewer.wait_window());
    viewer.settled_screenshot();
    viewer.key("s");
    std::string const snapshot = dir.file("shot.zvw.jpg");
    struct stat st;
    zvtest::eventually([&] { return stat(snapshot.c_str(), &st) == 0; }, 5);
    viewer.key("q");
    ASSERT_EQ(viewer.wait_exit(), 0);
    EXPECT_EQ(viewer.err(), "");
    EXPECT_TRUE(zvtest::read_bytes(picture) == before) << "the picture file was written";

    libgr::image2d_t shown;
    libgr::image_jpeg1_t reader;
    ASSERT_TRUE(reader.load(shown, snapshot.c_str()));
    ASSERT_EQ(shown.m_width, 800u);
    ASSERT_EQ(shown.m_height, 600u);
    // Row 0 is the bottom. The picture is centred at scale 1; JPEG is lossy.
    auto const at = [&](int x, int y) { return shown.pixel(std::uint64_t(x), std::uint64_t(y)); };
    auto const near = [](unsigned char const* p, std::uint32_t c) {
        return std::abs(p[0] - int(c >> 16)) < 12 && std::abs(p[1] - int((c >> 8) & 0xff)) < 12 &&
               std::abs(p[2] - int(c & 0xff)) < 12;
    };
    EXPECT_TRUE(near(at(400, 300), 0x204080));  // the middle square
    EXPECT_TRUE(near(at(260, 260), 0xe0a040));  // the picture's flat part
    EXPECT_TRUE(near(at(20, 20), zvtest::kBackground));
}
