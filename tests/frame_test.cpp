// The photo frame on the screen of the real viewer at scale 1: where the
// band lies, its exact colour in the flat look, and that every look draws
// the band around an untouched picture with nothing on the error stream.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/picture_files.h"
#include "tests/support/viewer_process.h"

namespace {

using zvtest::kBackground;

constexpr int kWidth = 800, kHeight = 600;  // the window
// A picture of 100 x 50 with the default band of 32: outer corners at
// (-82, -57) and (82, 57), inner ones at (-50, -25) and (50, 25), which an
// even window centres on whole pixels.
constexpr int kPictureWidth = 100, kPictureHeight = 50, kBand = 32;

enum place_t { PICTURE, BAND, OUTSIDE };

// Where screenshot pixel (x, y), row 0 at the top, falls.
place_t place_of(int x, int y)
{
    int const dx = x - kWidth / 2, dy = y - kHeight / 2;
    auto within = [&](int w, int h) { return dx >= -w && dx < w && dy >= -h && dy < h; };
    if (within(kPictureWidth / 2, kPictureHeight / 2)) return PICTURE;
    if (within(kPictureWidth / 2 + kBand, kPictureHeight / 2 + kBand)) return BAND;
    return OUTSIDE;
}

std::uint32_t picture_pixel(int x, int y)
{
    return zvtest::distinct_colour(x - (kWidth - kPictureWidth) / 2, y - (kHeight - kPictureHeight) / 2);
}

// The window of one run of the viewer on the picture with frame `type`,
// checked outside the band and inside the picture; `band_ok` judges each
// band pixel. Returns the screenshot, kept under $TMPDIR on a failure.
zvtest::screenshot_t check_framed(std::string const& type, std::function<bool(std::uint32_t)> band_ok,
                                  std::vector<std::string> const& extra = {})
{
    zvtest::TempDir dir, home;
    std::string const picture = dir.file("picture.bmp");
    EXPECT_TRUE(zvtest::write_bmp24(picture, kPictureWidth, kPictureHeight, zvtest::distinct_colour));
    std::vector<std::string> args = {"-resizetype", "0", "-frametype", type, "-winsize", "800x600"};
    args.insert(args.end(), extra.begin(), extra.end());
    args.push_back(picture);
    zvtest::ViewerProcess viewer(args, {"HOME=" + home.path()});
    EXPECT_TRUE(viewer.wait_window());
    zvtest::screenshot_t const shot = viewer.settled_screenshot();
    viewer.key("q");
    EXPECT_EQ(viewer.wait_exit(), 0);
    EXPECT_EQ(viewer.err(), "");
    if (shot.width != kWidth || shot.height != kHeight) {
        ADD_FAILURE() << "a window of " << shot.width << " x " << shot.height;
        return shot;
    }
    int wrong[3] = {};
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            std::uint32_t const p = shot.at(x, y);
            place_t const place = place_of(x, y);
            bool const ok = place == PICTURE ? p == picture_pixel(x, y)
                            : place == BAND  ? band_ok(p)
                                             : p == kBackground;
            wrong[place] += !ok;
        }
    }
    std::string const kept =
        wrong[PICTURE] + wrong[BAND] + wrong[OUTSIDE] ? "; the screenshot is kept in " + shot.keep() : "";
    EXPECT_EQ(wrong[PICTURE], 0) << "picture pixels changed" << kept;
    EXPECT_EQ(wrong[BAND], 0) << "band pixels not as the look has them" << kept;
    EXPECT_EQ(wrong[OUTSIDE], 0) << "pixels beyond the band not the background" << kept;
    return shot;
}

}  // namespace

TEST(FlatFrame, IsExactlyTheFrameColourFromThePictureEdgeOutToTheBandWidth)
{
    std::uint32_t const colour = 0xc87828;
    zvtest::screenshot_t const shot =
        check_framed("1", [&](std::uint32_t p) { return p == colour; }, {"-framecolor", "200,120,40"});
    if (shot.width != kWidth) return;
    // The worked corners, in screenshot coordinates.
    EXPECT_EQ(shot.at(318, 243), colour);  // outer, top left
    EXPECT_EQ(shot.at(317, 243), kBackground);
    EXPECT_EQ(shot.at(481, 356), colour);  // outer, bottom right
    EXPECT_EQ(shot.at(481, 357), kBackground);
    EXPECT_EQ(shot.at(349, 275), colour);  // inner, top left
    EXPECT_EQ(shot.at(350, 275), picture_pixel(350, 275));
}

class TexturedFrame : public testing::TestWithParam<int> {};

TEST_P(TexturedFrame, CoversTheWholeBandWithAPattern)
{
    int const type = GetParam();
    zvtest::screenshot_t const shot =
        check_framed(std::to_string(type), [](std::uint32_t p) { return p != kBackground; });
    std::set<std::uint32_t> colours;
    double sum[3] = {};
    for (int y = 0; y < shot.height; ++y) {
        for (int x = 0; x < shot.width; ++x) {
            if (place_of(x, y) != BAND) continue;
            std::uint32_t const p = shot.at(x, y);
            colours.insert(p);
            for (int c = 0; c < 3; ++c) sum[c] += (p >> (16 - 8 * c)) & 0xff;
        }
    }
    EXPECT_GT(colours.size(), 16u) << "a flat band: the relief or the flowers are missing";
    if (type == 2) {
        // Brown: red over green over blue.
        EXPECT_GT(sum[0], sum[1]);
        EXPECT_GT(sum[1], sum[2] * 1.5);
    } else if (type == 3) {
        // The default white, three quarters: light and gray.
        double const n = double((2 * kBand + kPictureWidth) * (2 * kBand + kPictureHeight) -
                                kPictureWidth * kPictureHeight);
        EXPECT_GT(sum[1] / n, 128);
        EXPECT_NEAR(sum[0] / n, sum[2] / n, 4);
    }
}

INSTANTIATE_TEST_SUITE_P(Looks, TexturedFrame, testing::Values(2, 3, 4),
                         [](testing::TestParamInfo<int> const& info) {
                             return "Frametype" + std::to_string(info.param);
                         });
