// Our rotation matrix against the one the GL makes for glRotatef, on a real
// context: the view matrix is handed to GL and read back, so both must agree.
#include <gtest/gtest.h>

#include <string>

#include "glext/glext.h"

#include "geometry/rotation.h"
#include "tests/support/gl_context.h"

using namespace libgr;

namespace {

struct turn_t {
    char const* name;
    float angle;  // degrees
    float x, y, z;
};

class RotateMatrixOnTheContext : public zvtest::GlContextTest,
                                 public ::testing::WithParamInterface<turn_t> {};

}  // namespace

TEST_P(RotateMatrixOnTheContext, MatchesGlRotatef)
{
    turn_t const t = GetParam();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glRotatef(t.angle, t.x, t.y, t.z);
    float gl[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, gl);

    matrix3w_t const ours = getRotateMatrix(rotation3(t.angle, {t.x, t.y, t.z}));
    // Bit for bit about the coordinate axes, which is how the viewer turns
    // its pictures; about a slanted axis the GL sums in another order and
    // the last bit may differ.
    bool const slanted = (t.x != 0) + (t.y != 0) + (t.z != 0) > 1;
    for (int i = 0; i < 16; ++i) {
        if (slanted) EXPECT_NEAR(ours.data()[i], gl[i], 2e-7f) << "float " << i;
        else EXPECT_EQ(ours.data()[i], gl[i]) << "float " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Turns, RotateMatrixOnTheContext,
    ::testing::Values(turn_t{"QuarterAboutZ", 90, 0, 0, 1}, turn_t{"BackQuarterAboutZ", -90, 0, 0, 1},
                      turn_t{"HalfAboutZ", 180, 0, 0, 1}, turn_t{"SmallAboutZ", 5, 0, 0, 1},
                      turn_t{"AboutX", 30, 1, 0, 0}, turn_t{"AboutY", 45, 0, 1, 0},
                      turn_t{"AboutSlantedAxis", 37.5f, 1, 2, 3}, turn_t{"AboutLongZAxis", -120, 0, 0, 5},
                      turn_t{"MoreThanOnceRound", 450, 1, 1, 0}),
    [](::testing::TestParamInfo<turn_t> const& info) { return std::string(info.param.name); });
