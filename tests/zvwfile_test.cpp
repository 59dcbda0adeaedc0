// The view state file: its name beside the picture, its exact text, and a
// reader that takes hand-edited text and never hangs on a damaged file.
#include "app/zvwfile.h"

#include <gtest/gtest.h>

#include <string>

#include "geometry/matrix.h"
#include "options/option.h"

#include "tests/support/scratch.h"

using namespace libgr;
using zanoview2::make_zvwpath;
using zanoview2::zvwfile_t;

namespace {

// A fresh directory holding one picture name, a.jpg, whose view state file
// a.zvw the tests write by hand or through zvwfile_t. The picture itself is
// never created: the file beside it doesn't need it.
class ZvwFile : public zvtest::ScratchFiles {
protected:
    std::string picture() const { return path("a.jpg"); }
    std::string zvw() const { return path("a.zvw"); }
    // A record whose every value differs from the start values, so that a
    // read that leaves one alone shows.
    static zvwfile_t marked()
    {
        zvwfile_t state;
        state.size = {7, 9};
        for (int i = 0; i < 16; ++i) state.matrix.data()[i] = 100.0f + float(i);
        return state;
    }
};

}  // namespace

TEST(ZvwPath, SitsBesideThePictureUnderItsStem)
{
    EXPECT_EQ(make_zvwpath("/p/a.jpg"), "/p/a.zvw");
    EXPECT_EQ(make_zvwpath("/p.d/b.x.jpg"), "/p.d/b.x.zvw");
}

TEST_F(ZvwFile, WritesFiveLinesOfSizeAndMatrix)
{
    zvwfile_t state;
    state.size = {800, 600};
    ASSERT_TRUE(state.save(picture().c_str()));
    EXPECT_EQ(zvtest::read_file(zvw()),
              "dir2l(800, 600)\n"
              "mtx3w(\t1.000000, 0.000000, 0.000000, 0.000000,\n"
              "\t0.000000, 1.000000, 0.000000, 0.000000,\n"
              "\t0.000000, 0.000000, 1.000000, 0.000000,\n"
              "\t0.000000, 0.000000, 0.000000, 1.000000)\n");
}

TEST_F(ZvwFile, ReadsBackWhatWasSavedUnderAnyPictureOfTheStem)
{
    zvwfile_t saved;
    saved.size = {1024, 77};
    saved.matrix = getScaleMatrix(0.175f, 0.175f, 0.175f) * getTranslateMatrix(position3(-12.5f, 40.0f, 0.0f));
    saved.matrix.m[0].y = 0.333333f;
    ASSERT_TRUE(saved.save(picture().c_str()));

    zvwfile_t loaded;
    ASSERT_TRUE(loaded.load(path("a.png").c_str()));
    EXPECT_EQ(loaded.size, saved.size);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(loaded.matrix.data()[i], saved.matrix.data()[i], 1e-6f) << "float " << i;
}

// Whatever the file holds, load ends, says the file was there, and keeps
// the values the text doesn't reach.
TEST_F(ZvwFile, DamagedFilesEndTheReadAndKeepWhatTheyLack)
{
    zvwfile_t const start = marked();
    struct {
        char const* what;
        std::string text;
        direction2l_t size;
        int matrix_floats_read;  // from the front; the rest keep their mark
    } const cases[] = {
        {"empty", "", start.size, 0},
        {"no parenthesis", "dir2l 800 600 mtx3w 1 0 0 0", start.size, 0},
        {"cut inside the matrix", "dir2l(800, 600)\nmtx3w(\t3.000000, 4.0", {800, 600}, 2},
        {"binary", std::string("\0\xff\x7f(\x01", 5), {0, start.size.y}, 0},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        write("a.zvw", c.text);
        zvwfile_t state = start;
        ASSERT_TRUE(state.load(picture().c_str()));
        EXPECT_EQ(state.size, c.size);
        for (int i = c.matrix_floats_read; i < 16; ++i)
            EXPECT_EQ(state.matrix.data()[i], start.matrix.data()[i]) << "float " << i;
    }
}

TEST_F(ZvwFile, MissingFileOrDirectoryFailsQuietly)
{
    zvwfile_t state = marked();
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(state.load(picture().c_str()));
    EXPECT_FALSE(state.del(picture().c_str()));
    EXPECT_FALSE(state.save("/nonexistent-dir/a.jpg"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(state.size, marked().size);
}

TEST_F(ZvwFile, VerboseAndDebugLinesGoToStandardOutput)
{
    zanolib::option_t const kept = zanolib::g_option;
    zanolib::g_option.verbose = true;
    zanolib::g_option.debug = true;
    zvwfile_t state;
    state.size = {320, 200};
    testing::internal::CaptureStdout();
    state.save(picture().c_str());
    state.load(picture().c_str());
    std::string const out = testing::internal::GetCapturedStdout();
    zanolib::g_option = kept;
    EXPECT_EQ(out, zvw() + ": zvwfile saved.\n" + "dir2l(320, 200)\n" + zvw() + ": zvwfile loaded.\n");
}
