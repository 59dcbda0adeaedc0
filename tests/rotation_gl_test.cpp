// Our rotation matrix against the one the GL makes for glRotatef, on a real
// context: the view matrix is handed to GL and read back, so both must agree.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "glext/glext.h"

#include "geometry/rotation.h"
#include "tests/support/gl_context.h"

using namespace libgr;

namespace {

struct turn_t {
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
    ::testing::Values(turn_t{90, 0, 0, 1}, turn_t{-90, 0, 0, 1}, turn_t{180, 0, 0, 1},
                      turn_t{5, 0, 0, 1}, turn_t{30, 1, 0, 0}, turn_t{45, 0, 1, 0},
                      turn_t{37.5f, 1, 2, 3}, turn_t{-120, 0, 0, 5}, turn_t{450, 1, 1, 0}),
    [](::testing::TestParamInfo<turn_t> const& info) {
        // "Turn37_5About1_2_3", "TurnMinus90About0_0_1": only letters,
        // digits and underscores make a test name.
        auto number = [](float v) {
            std::string text = std::to_string(v);
            text.erase(text.find_last_not_of('0') + 1);
            if (text.back() == '.') text.pop_back();
            if (text[0] == '-') text.replace(0, 1, "Minus");
            std::replace(text.begin(), text.end(), '.', '_');
            return text;
        };
        turn_t const& t = info.param;
        return "Turn" + number(t.angle) + "About" + number(t.x) + "_" + number(t.y) + "_" + number(t.z);
    });
