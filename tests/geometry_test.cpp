// Value types of geometry/: vector arithmetic, matrices in GL's order with
// row vectors, rotations (glRotatef's matrix and the halving inverse), and
// the colour conversions.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "geometry/color.h"
#include "geometry/matrix.h"
#include "geometry/rotation.h"
#include "geometry/vector.h"

using namespace libgr;

namespace {

std::vector<float> floats(direction3_t const& d) { return {d.x, d.y, d.z}; }
std::vector<float> floats(vector3w_t const& v) { return {v.x, v.y, v.z, v.w}; }
std::vector<float> floats(matrix3w_t const& m) { return {m.data(), m.data() + 16}; }

template <class T>
::testing::AssertionResult Near(T const& a, T const& b, float eps = 1e-6f)
{
    std::vector<float> const x = floats(a), y = floats(b);
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (!(std::fabs(x[i] - y[i]) <= eps)) {
            return ::testing::AssertionFailure() << "float " << i << ": " << x[i] << " vs " << y[i];
        }
    }
    return ::testing::AssertionSuccess();
}

vector3w_t Row(float x, float y, float z, float w = 1.0f) { return vector3w(x, y, z, w); }

}  // namespace

TEST(Normalize, ScalesToUnitLengthAndLeavesZeroAlone)
{
    EXPECT_TRUE(Near(Normalize(direction3(3, 4, 0)), direction3(0.6f, 0.8f, 0)));
    EXPECT_TRUE(Near(Normalize(direction3(0, 0, 0)), direction3(0, 0, 0), 0.0f));
    // w takes no part in the length and comes out 0.
    EXPECT_TRUE(Near(Normalize(vector3w(0, 3, 4, 7)), vector3w(0, 0.6f, 0.8f, 0)));
}

TEST(Direction2, DividesAsFloatsDoAndIntegerSizesCompareEither)
{
    direction2_t const q = direction2(4, 0) / direction2(2, 0);
    EXPECT_EQ(q.x, 2.0f);
    EXPECT_TRUE(std::isnan(q.y)) << "0 / 0 is left to the callers' guards";
    EXPECT_TRUE(std::isinf((direction2(1, 1) / direction2(0, 1)).x));
    EXPECT_EQ((direction2(1.0f / 3, 7) / direction2(1.0f / 3, 7)).x, 1.0f);
    EXPECT_FALSE(direction2l(0, 0) != 0);
    EXPECT_TRUE(direction2l(800, 0) != 0);
    EXPECT_EQ(direction2l(direction2(-1.7f, 2.9f)), direction2l(-1, 2)) << "truncated toward 0";
}

TEST(CrossProduct, IsRightHandedAndUsesConsecutiveEdges)
{
    EXPECT_TRUE(Near(CrossProduct(IdirY, IdirX), IdirMZ));
    // Counter-clockwise seen from +z faces +z: (p1 - p0) x (p2 - p1).
    position3_t const p0 = position3(1, 1, 0), p1 = position3(3, 1, 0), p2 = position3(3, 4, 0);
    EXPECT_TRUE(Near(CrossProduct(p0, p1, p2), direction3(0, 0, 6)));
    EXPECT_TRUE(Near(CrossProductWithNormalize(p0, p1, position3(5, 1, 0)), direction3(0, 0, 0)));
}

TEST(Homogeneous, SpecializeDividesByWUnlessItIsZero)
{
    EXPECT_TRUE(Near(dir3(SpecializeToPos(vector3w(2, 4, 6, 2))), direction3(1, 2, 3)));
    EXPECT_TRUE(Near(dir3(SpecializeToPos(vector3w(2, 4, 6, 0))), direction3(2, 4, 6)));
}

TEST(MatrixProduct, LeftFactorActsFirstOnRowVectorsAndTranslationIsInFloats12To14)
{
    matrix3w_t const move = getTranslateMatrix(direction3(10, 20, 30));
    matrix3w_t const turn = getRotateMatrix(rotation3(90, IdirZ));
    vector3w_t const v = Row(1, 0, 0);
    EXPECT_TRUE(Near(v * (move * turn), Row(-20, 11, 30), 1e-5f));
    EXPECT_TRUE(Near(v * (turn * move), Row(10, 21, 30), 1e-5f));
    // As a column the vector meets the transpose.
    EXPECT_TRUE(Near((move * turn) * v, v * Transpose(move * turn), 1e-5f));
    EXPECT_EQ(std::vector<float>(move.data() + 12, move.data() + 16),
              (std::vector<float>{10, 20, 30, 1}));
}

TEST(Determinant, AgreesWithThePermutationSum)
{
    EXPECT_EQ(Determinant(getScaleMatrix(direction3(2))), 8.0f);
    // -103 by the sum over all 24 permutations, worked out apart from the
    // code; every cofactor sign takes part, so a wrong one shows.
    matrix3w_t const m{{{2, -1, 0, 3}, {1, 4, -2, 0}, {0, 5, 1, -1}, {3, 0, 2, 1}}};
    EXPECT_NEAR(Determinant(m), -103.0f, 1e-3f);
}

TEST(Invert, UndoesTheMatrixFromEitherSide)
{
    matrix3w_t const m = getScaleMatrix(2, 3, 0.5f) *
                         getRotateMatrix(rotation3(33, direction3(1, -2, 0.5f))) *
                         getTranslateMatrix(position3(4, -5, 6));
    EXPECT_TRUE(Near(m * Invert(m), Imtx, 1e-5f));
    EXPECT_TRUE(Near(Invert(m) * m, Imtx, 1e-5f));
}

// Bit for bit against glRotatef itself: rotation_gl_test.
TEST(GetRotateMatrix, TurnsRowVectorsCounterClockwiseAndANullAxisGivesTheCosineDiagonal)
{
    EXPECT_TRUE(Near(Row(1, 0, 0) * getRotateMatrix(rotation3(90, IdirZ)), Row(0, 1, 0)));
    // The identity only at 0 degrees.
    matrix3w_t const null_axis = getRotateMatrix(rotation3(60, direction3(0, 0, 0)));
    EXPECT_TRUE(Near(null_axis, getScaleMatrix(direction3(0.5f))));
}

TEST(GetRotation3, HalvesTheAngleSoRepeatedUndoingStraightensByHalves)
{
    direction3_t const axis = Normalize(direction3(1, 2, 3));
    rotation3_t const general = getRotation3(getRotateMatrix(rotation3(60, axis)));
    EXPECT_NEAR(general.angle, 30.0f, 1e-3f);
    EXPECT_TRUE(Near(general.axis, axis, 1e-5f));
    matrix3w_t m = getRotateMatrix(rotation3(80, IdirZ));
    for (float const left : {40.0f, 20.0f, 10.0f}) {
        m *= getRotateMatrix(Invert(getRotation3(m)));
        EXPECT_NEAR(getRotation3(m).angle * 2, left, 1e-3f);
    }
}

TEST(GetRotation3, DegenerateMatricesGiveNoNaN)
{
    // The identity: no turn, which turns back into the identity.
    rotation3_t const none = getRotation3(Imtx);
    EXPECT_EQ(none.angle, 0.0f);
    // A trace out of acos's range gives no turn rather than NaN.
    rotation3_t const scaled = getRotation3(getScaleMatrix(direction3(2)));
    EXPECT_EQ(scaled.angle, Irot.angle);
    EXPECT_TRUE(Near(scaled.axis, Irot.axis, 0.0f));
}

TEST(YCbCr, ChromaIsScaledBy127AndRoundedAwayFromZeroAndRgbIsClamped)
{
    auto const ints = [](ycbcrub_t c) { return std::vector<int>{c.y, c.cb, c.cr}; };
    EXPECT_EQ(ints(ycbcrub(color3ub(255, 255, 255))), (std::vector<int>{255, 128, 128}));
    // Blue: luma 0.114, cb 0.5 -> 64 above the offset, cr -0.08131 -> -10.
    EXPECT_EQ(ints(ycbcrub(color3ub(0, 0, 255))), (std::vector<int>{29, 128 + 64, 128 - 10}));
    // Back to RGB, each channel clamped to [0, 1] before it becomes a byte:
    // blue comes back as (0.0033, -0.0035, 1.0067).
    color3ub_t const blue = color3ub(ycbcrub(color3ub(0, 0, 255)));
    EXPECT_EQ(std::vector<int>({blue.r, blue.g, blue.b}), std::vector<int>({1, 0, 255}));
    color3ub_t const high = color3ub(ycbcrub_t{255, 255, 255});
    EXPECT_EQ(std::vector<int>({high.r, high.g, high.b}), std::vector<int>({255, 0, 255}));
}
