// Value types of geometry/: vector arithmetic, matrices in GL's order with
// row vectors, rotations (glRotatef's matrix and the halving inverse), and
// the colour conversions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "geometry/color.h"
#include "geometry/matrix.h"
#include "geometry/rotation.h"
#include "geometry/tmatrix.h"
#include "geometry/vector.h"

using namespace libgr;

namespace {

::testing::AssertionResult Near(direction3_t a, direction3_t b, float eps = 1e-6f)
{
    if (std::fabs(a.x - b.x) <= eps && std::fabs(a.y - b.y) <= eps && std::fabs(a.z - b.z) <= eps) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "(" << a.x << ", " << a.y << ", " << a.z << ") vs ("
                                         << b.x << ", " << b.y << ", " << b.z << ")";
}

::testing::AssertionResult Near(vector3w_t a, vector3w_t b, float eps = 1e-6f)
{
    for (int i = 0; i < 4; ++i) {
        if (!(std::fabs(a[i] - b[i]) <= eps)) {
            return ::testing::AssertionFailure()
                   << "component " << i << ": " << a[i] << " vs " << b[i];
        }
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult Near(matrix3w_t const& a, matrix3w_t const& b, float eps = 1e-6f)
{
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            if (!(std::fabs(a[r][c] - b[r][c]) <= eps)) {
                return ::testing::AssertionFailure()
                       << "m[" << r << "][" << c << "]: " << a[r][c] << " vs " << b[r][c];
            }
        }
    }
    return ::testing::AssertionSuccess();
}

// glRotatef's matrix as OpenGL's reference page writes it, for column
// vectors and in double: row i, column j of that form is float 4j + i of
// the matrix GL multiplies with.
matrix3w_t GlRotateReference(double degrees, double x, double y, double z)
{
    double const length = std::sqrt(x * x + y * y + z * z);
    x /= length;
    y /= length;
    z /= length;
    double const a = degrees * M_PI / 180.0;
    double const c = std::cos(a);
    double const s = std::sin(a);
    double const k = 1 - c;
    double const r[3][3] = {{x * x * k + c, x * y * k - z * s, x * z * k + y * s},
                            {y * x * k + z * s, y * y * k + c, y * z * k - x * s},
                            {x * z * k - y * s, y * z * k + x * s, z * z * k + c}};
    matrix3w_t m = Imtx;
    float* gl = m.data();
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) gl[4 * j + i] = static_cast<float>(r[i][j]);
    }
    return m;
}

// The determinant by the permutation sum, in double, as an independent check
// of the cofactor expansion.
double LeibnizDeterminant(matrix3w_t const& m)
{
    int p[4] = {0, 1, 2, 3};
    double sum = 0;
    do {
        int inversions = 0;
        for (int i = 0; i < 4; ++i) {
            for (int j = i + 1; j < 4; ++j) inversions += p[i] > p[j];
        }
        double term = inversions % 2 ? -1.0 : 1.0;
        for (int i = 0; i < 4; ++i) term *= m[i][p[i]];
        sum += term;
    } while (std::next_permutation(p, p + 4));
    return sum;
}

vector3w_t Row(float x, float y, float z, float w = 1.0f)
{
    return vector3w(x, y, z, w);
}

}  // namespace

TEST(Normalize, ScalesToUnitLengthAndLeavesZeroAlone)
{
    EXPECT_TRUE(Near(Normalize(direction3(3, 4, 0)), direction3(0.6f, 0.8f, 0)));
    direction3_t const zero = Normalize(direction3(0, 0, 0));
    EXPECT_EQ(zero.x, 0.0f);
    EXPECT_EQ(zero.y, 0.0f);
    EXPECT_EQ(zero.z, 0.0f);
    // w takes no part in the length and comes out 0.
    EXPECT_TRUE(Near(Normalize(vector3w(0, 3, 4, 7)), vector3w(0, 0.6f, 0.8f, 0)));
}

TEST(Direction2Division, EqualComponentsGiveExactlyOne)
{
    direction2_t const q = direction2(4, 0) / direction2(2, 0);
    EXPECT_EQ(q.x, 2.0f);
    EXPECT_EQ(q.y, 1.0f);  // 0 / 0
    direction2_t const same = direction2(1.0f / 3, 7) / direction2(1.0f / 3, 7);
    EXPECT_EQ(same.x, 1.0f);
    EXPECT_EQ(same.y, 1.0f);
    direction2_t const inverse = 1.0f / direction2(2, 4);
    EXPECT_EQ(inverse.x, 0.5f);
    EXPECT_EQ(inverse.y, 0.25f);
}

TEST(Direction2l, UnequalToIntegerWhenEitherComponentDiffers)
{
    EXPECT_FALSE(direction2l(0, 0) != 0);
    EXPECT_TRUE(direction2l(0, 600) != 0);
    EXPECT_TRUE(direction2l(800, 0) != 0);
    EXPECT_FALSE(direction2l(5, 5) != 5);
    EXPECT_TRUE(direction2l(800, 600) != direction2l(800, 601));
}

TEST(Direction2l, FloatSizesTruncateTowardZero)
{
    direction2l_t const d = direction2l(direction2(-1.7f, 2.9f));
    EXPECT_EQ(d.x, -1);
    EXPECT_EQ(d.y, 2);
    EXPECT_EQ(min1(direction2(3, -2)), -2.0f);
    EXPECT_EQ(max1(direction2(3, -2)), 3.0f);
}

TEST(CrossProduct, IsRightHandedAndUsesConsecutiveEdges)
{
    EXPECT_TRUE(Near(CrossProduct(IdirX, IdirY), IdirZ));
    EXPECT_TRUE(Near(CrossProduct(IdirY, IdirX), IdirMZ));
    // Counter-clockwise seen from +z faces +z: (p1 - p0) x (p2 - p1).
    position3_t const p0 = position3(1, 1, 0), p1 = position3(3, 1, 0), p2 = position3(3, 4, 0);
    EXPECT_TRUE(Near(CrossProduct(p0, p1, p2), direction3(0, 0, 6)));
    EXPECT_TRUE(Near(CrossProductWithNormalize(p0, p1, p2), IdirZ));
    EXPECT_TRUE(Near(CrossProductWithNormalize(p0, p1, position3(5, 1, 0)), direction3(0, 0, 0)));
}

TEST(ScalarTriProduct, IsSignedVolume)
{
    EXPECT_FLOAT_EQ(ScalarTriProduct(IdirX, IdirY, IdirZ), 1.0f);
    EXPECT_FLOAT_EQ(ScalarTriProduct(IdirY, IdirX, IdirZ), -1.0f);
    position3_t const p0 = position3(1, 1, 1);
    EXPECT_FLOAT_EQ(
        ScalarTriProduct(p0, position3(2, 1, 1), position3(1, 3, 1), position3(1, 1, 4)), 6.0f);
}

TEST(Homogeneous, SpecializeDividesByWUnlessItIsZero)
{
    position3_t const p = SpecializeToPos(vector3w(2, 4, 6, 2));
    EXPECT_TRUE(Near(dir3(p), direction3(1, 2, 3)));
    position3_t const infinite = SpecializeToPos(vector3w(2, 4, 6, 0));
    EXPECT_TRUE(Near(dir3(infinite), direction3(2, 4, 6)));
    EXPECT_TRUE(Near(SpecializeToDir(vector3w(0, 0, 5, 0.5f)), IdirZ));
    EXPECT_TRUE(Near(Generalize(position3(1, 2, 3)), vector3w(1, 2, 3, 1)));
}

TEST(Quotient, RoundsDownTowardZeroAndUpTowardPlusInfinity)
{
    direction3_t const v = direction3(7.9f, -7.9f, 0);
    EXPECT_TRUE(Near(round_to_quotient(v, 2.0f), direction3(6, -6, 0)));
    EXPECT_TRUE(Near(roundup_to_quotient(v, 2.0f), direction3(8, -6, 0)));
    EXPECT_TRUE(Near(dir3(round_to_quotient(pos3(v), direction3(2, 3, 1))), direction3(6, -6, 0)));
    EXPECT_TRUE(
        Near(roundup_to_quotient(direction3(7.9f), direction3(2, 3, 0.5f)), direction3(8, 9, 8)));
    // A value already on the grid stays.
    EXPECT_EQ(roundup_to_quotient(8.0f, 2.0f), 8.0f);
    EXPECT_EQ(roundup_to_quotient(-7.9f, 2.0f), -6.0f);
}

TEST(MatrixProduct, LeftFactorActsFirstOnRowVectors)
{
    matrix3w_t const move = getTranslateMatrix(direction3(10, 0, 0));
    matrix3w_t const turn = getRotateMatrix(rotation3(90, IdirZ));
    vector3w_t const v = Row(1, 0, 0);
    EXPECT_TRUE(Near(v * (move * turn), Row(0, 11, 0), 1e-5f));
    EXPECT_TRUE(Near(v * (turn * move), Row(10, 1, 0), 1e-5f));
    EXPECT_TRUE(Near(v * (move * turn), (v * move) * turn, 1e-5f));
    matrix3w_t m = move;
    m *= turn;
    EXPECT_TRUE(Near(m, move * turn));
    // As a column the vector meets the transpose.
    EXPECT_TRUE(Near((move * turn) * v, v * Transpose(move * turn), 1e-5f));
}

TEST(MatrixLayout, TranslationLiesInFloats12To14ForGl)
{
    matrix3w_t const m = getTranslateMatrix(position3(1, 2, 3));
    EXPECT_EQ(m.data()[12], 1.0f);
    EXPECT_EQ(m.data()[13], 2.0f);
    EXPECT_EQ(m.data()[14], 3.0f);
    EXPECT_EQ(m.data()[15], 1.0f);
    position3_t const t = getTranslateVector(m * getScaleMatrix(2, 2, 2));
    EXPECT_TRUE(Near(dir3(t), direction3(2, 4, 6)));
}

TEST(Shrink, DropsOneRowAndOneColumn)
{
    tmatrix_t<3, 3> const m{{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}};
    tmatrix_t<2, 2> const s = shrink(m, 1, 0);
    EXPECT_EQ(s[0][0], 2.0f);
    EXPECT_EQ(s[0][1], 3.0f);
    EXPECT_EQ(s[1][0], 8.0f);
    EXPECT_EQ(s[1][1], 9.0f);
}

TEST(Determinant, AgreesWithThePermutationSum)
{
    EXPECT_EQ(Determinant(getScaleMatrix(direction3(2))), 8.0f);
    EXPECT_NEAR(Determinant(getRotateMatrix(rotation3(37, direction3(1, 2, 3)))), 1.0f, 1e-5f);
    // Swapping two rows flips the sign: catches a wrong cofactor sign.
    matrix3w_t swapped = Imtx;
    std::swap(swapped[0], swapped[1]);
    EXPECT_EQ(Determinant(swapped), -1.0f);
    matrix3w_t const m{{{2, -1, 0, 3}, {1, 4, -2, 0}, {0, 5, 1, -1}, {3, 0, 2, 1}}};
    EXPECT_NEAR(Determinant(m), LeibnizDeterminant(m), 1e-3);
}

TEST(Invert, UndoesTheMatrixFromEitherSide)
{
    matrix3w_t const m = getScaleMatrix(2, 3, 0.5f) *
                         getRotateMatrix(rotation3(33, direction3(1, -2, 0.5f))) *
                         getTranslateMatrix(position3(4, -5, 6));
    matrix3w_t const inv = Invert(m);
    EXPECT_TRUE(Near(m * inv, Imtx, 1e-5f));
    EXPECT_TRUE(Near(inv * m, Imtx, 1e-5f));
    // A singular matrix is not caught; it just isn't finite.
    EXPECT_FALSE(std::isfinite(Invert(getScaleMatrix(1, 0, 1))[0][0]));
}

TEST(GetRotateMatrix, MatchesGlRotateReference)
{
    struct Case {
        float degrees, x, y, z;
    } const cases[] = {{90, 0, 0, 1},  {-30, 0, 0, 1}, {45, 1, 0, 0},      {120, 0, 1, 0},
                       {37, 1, 2, 3},  {200, -3, 0.5f, 2}, {450, 0, 0, 5}, {-75.5f, 1, 1, 1}};
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.degrees << " about " << c.x << ", " << c.y << ", " << c.z);
        EXPECT_TRUE(Near(getRotateMatrix(rotation3(c.degrees, direction3(c.x, c.y, c.z))),
                         GlRotateReference(c.degrees, c.x, c.y, c.z), 2e-6f));
    }
}

TEST(GetRotateMatrix, QuarterTurnAboutZTakesXToY)
{
    matrix3w_t const m = getRotateMatrix(rotation3(90, IdirZ));
    EXPECT_NEAR(m[0][1], 1.0f, 1e-6f);
    EXPECT_NEAR(m[1][0], -1.0f, 1e-6f);
    EXPECT_TRUE(Near(Row(1, 0, 0) * m, Row(0, 1, 0)));
}

TEST(GetRotateMatrix, NullAxisGivesCosineDiagonal)
{
    matrix3w_t const m = getRotateMatrix(rotation3(60, direction3(0, 0, 0)));
    EXPECT_TRUE(Near(m, getScaleMatrix(direction3(std::cos(static_cast<float>(M_PI / 3))))));
    EXPECT_TRUE(Near(getRotateMatrix(rotation3(0, direction3(0, 0, 0))), Imtx, 0.0f));
}

TEST(GetRotation3, HalvesTheAngle)
{
    rotation3_t const quarter = getRotation3(getRotateMatrix(rotation3(90, IdirZ)));
    EXPECT_NEAR(quarter.angle, 45.0f, 1e-4f);
    EXPECT_TRUE(Near(quarter.axis, IdirZ));
    direction3_t const axis = Normalize(direction3(1, 2, 3));
    rotation3_t const general = getRotation3(getRotateMatrix(rotation3(60, axis)));
    EXPECT_NEAR(general.angle, 30.0f, 1e-3f);
    EXPECT_TRUE(Near(general.axis, axis, 1e-5f));
}

TEST(GetRotation3, UndoingTheResultStraightensByHalves)
{
    matrix3w_t m = getRotateMatrix(rotation3(80, IdirZ));
    for (float const left : {40.0f, 20.0f, 10.0f}) {
        m *= getRotateMatrix(Invert(getRotation3(m)));
        EXPECT_NEAR(getRotation3(m).angle * 2, left, 1e-3f);
    }
}

TEST(GetRotation3, DegenerateMatrices)
{
    // The identity: no turn about a null axis, which turns back into the
    // identity.
    rotation3_t const none = getRotation3(Imtx);
    EXPECT_EQ(none.angle, 0.0f);
    EXPECT_TRUE(Near(none.axis, direction3(0, 0, 0), 0.0f));
    EXPECT_TRUE(Near(getRotateMatrix(none), Imtx, 0.0f));
    // Symmetric: the half turn shows as 90 degrees with no axis.
    rotation3_t const half = getRotation3(getScaleMatrix(-1, -1, 1));
    EXPECT_NEAR(half.angle, 90.0f, 1e-4f);
    EXPECT_TRUE(Near(half.axis, direction3(0, 0, 0), 0.0f));
    // A trace out of acos's range gives no turn rather than NaN.
    rotation3_t const scaled = getRotation3(getScaleMatrix(direction3(2)));
    EXPECT_EQ(scaled.angle, Irot.angle);
    EXPECT_TRUE(Near(scaled.axis, Irot.axis, 0.0f));
}

TEST(CalcRotation3, TurnsFirstDirectionOntoSecond)
{
    direction3_t const b = Normalize(direction3(1, 1, 0));
    rotation3_t const r = calcRotation3(IdirX, b);
    EXPECT_NEAR(r.angle, 45.0f, 1e-4f);
    EXPECT_TRUE(Near(r.axis, IdirZ));
    EXPECT_TRUE(Near(Row(1, 0, 0, 0) * getRotateMatrix(r), Row(b.x, b.y, b.z, 0)));
    for (direction3_t const other : {IdirX, IdirMX}) {
        rotation3_t const none = calcRotation3(IdirX, other);
        EXPECT_EQ(none.angle, 0.0f);
        EXPECT_TRUE(Near(none.axis, IdirZ, 0.0f));
    }
}

TEST(Color3a, ScalingIncludesAlpha)
{
    color3a_t const c = white * 0.18f;
    EXPECT_FLOAT_EQ(c.r, 0.18f);
    EXPECT_FLOAT_EQ(c.a, 0.18f);
    color3a_t const bytes = color3a(color3aub(255, 51, 0, 255));
    EXPECT_NEAR(bytes.r, 1.0f, 1e-6f);
    EXPECT_NEAR(bytes.g, 0.2f, 1e-6f);
    EXPECT_NEAR(bytes.a, 1.0f, 1e-6f);
}

TEST(YCbCr, NeutralColoursHaveChroma128)
{
    for (std::uint8_t const v : {0, 127, 255}) {
        ycbcrub_t const c = ycbcrub(color3ub(v, v, v));
        EXPECT_EQ(c.y, v);
        EXPECT_EQ(c.cb, 128);
        EXPECT_EQ(c.cr, 128);
    }
}

TEST(YCbCr, ChromaIsScaledBy127AndRoundedAwayFromZero)
{
    // Blue: luma 0.114, cb 0.5 -> 64 above the offset, cr -0.08131 -> -10.
    ycbcrub_t const b = ycbcrub(color3ub(0, 0, 255));
    EXPECT_EQ(b.y, 29);
    EXPECT_EQ(b.cb, 128 + 64);
    EXPECT_EQ(b.cr, 128 - 10);
    // Red: luma 0.299, cb -0.16874 -> -21, cr 0.5 -> 64.
    ycbcrub_t const r = ycbcrub(color3ub(255, 0, 0));
    EXPECT_EQ(r.y, 76);
    EXPECT_EQ(r.cb, 128 - 21);
    EXPECT_EQ(r.cr, 128 + 64);
}

TEST(YCbCr, RoundTripStaysWithinQuantization)
{
    // Chroma steps of 1/127 over +-0.5 are worth up to about 2 in blue.
    color3ub_t const colours[] = {{255, 0, 0}, {0, 255, 0},     {0, 0, 255},  {255, 255, 0},
                                  {0, 255, 255}, {255, 0, 255}, {12, 200, 99}, {127, 127, 127}};
    for (color3ub_t const& c : colours) {
        color3ub_t const back = color3ub(ycbcrub(c));
        EXPECT_NEAR(back.r, c.r, 3);
        EXPECT_NEAR(back.g, c.g, 3);
        EXPECT_NEAR(back.b, c.b, 3);
    }
}

TEST(YCbCr, ConversionBackClampsToByteRange)
{
    color3ub_t const high = color3ub(ycbcrub_t{255, 255, 255});
    EXPECT_EQ(high.r, 255);
    EXPECT_EQ(high.g, 0);
    EXPECT_EQ(high.b, 255);
    color3ub_t const low = color3ub(ycbcrub_t{0, 0, 0});
    EXPECT_EQ(low.r, 0);
    EXPECT_EQ(low.g, 255);
    EXPECT_EQ(low.b, 0);
}

TEST(ColourMatrices, CoefficientsAreConsistent)
{
    // The JPEG pair undo each other.
    EXPECT_TRUE(Near(matrix_rgb2ycbcr * matrix_ycbcr2rgb, Imtx, 1e-4f));
    // Luma weights sum to 1 and chroma weights to 0, so gray has no chroma.
    for (matrix3w_t const* m : {&matrix_rgb2ycbcr, &matrix_rgb2ypbpr}) {
        EXPECT_NEAR((*m)[0][0] + (*m)[1][0] + (*m)[2][0], 1.0f, 1e-4f);
        EXPECT_NEAR((*m)[0][1] + (*m)[1][1] + (*m)[2][1], 0.0f, 1e-4f);
        EXPECT_NEAR((*m)[0][2] + (*m)[1][2] + (*m)[2][2], 0.0f, 1e-4f);
    }
}
