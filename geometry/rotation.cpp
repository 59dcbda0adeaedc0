#include "geometry/rotation.h"

#include <cmath>

namespace libgr {

namespace {

// Applied in double and cut to float: a float product rounds differently,
// and getRotateMatrix must give glRotatef's floats to the bit.
constexpr double radians_per_degree = 0.017453292519943122;
constexpr double degrees_per_radian = 57.29577951308232;

float to_degrees(float radians)
{
    return static_cast<float>(static_cast<double>(radians) * degrees_per_radian);
}

}  // namespace

matrix3w_t getRotateMatrix(rotation3_t const& r)
{
    float const a = static_cast<float>(static_cast<double>(r.angle) * radians_per_degree);
    direction3_t const axis = Normalize(r.axis);
    float const n[3] = {axis.x, axis.y, axis.z};
    float s = 0.0f;
    float c = 0.0f;
    ::sincosf(a, &s, &c);

    // The symmetric part: the outer product of the axis, and the identity
    // minus it scaled by the cosine.
    matrix3w_t m = Imtx;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            float const nn = n[i] * n[j];
            m[i][j] = (Imtx[i][j] - nn) * c + nn;
        }
    }
    // The skew part, transposed against the column-vector textbook form
    // because rows are the vectors here.
    float const xs = axis.x * s;
    float const ys = axis.y * s;
    float const zs = axis.z * s;
    m[0][1] += zs;
    m[0][2] -= ys;
    m[1][0] -= zs;
    m[1][2] += xs;
    m[2][0] += ys;
    m[2][1] -= xs;
    return m;
}

rotation3_t getRotation3(matrix3w_t const& m)
{
    float const t = (m[0][0] + m[1][1] + m[2][2] - 1.0f) * 0.5f;
    // NOTE: half the angle, on purpose; see the header.
    float const angle = to_degrees(std::acos(t)) * 0.5f;
    if (!std::isfinite(angle)) return Irot;
    direction3_t const axis =
        Normalize(direction3(m[1][2] - m[2][1], m[2][0] - m[0][2], m[0][1] - m[1][0]));
    return {angle, axis};
}

rotation3_t calcRotation3(direction3_t const& a, direction3_t const& b)
{
    direction3_t const c = CrossProduct(a, b);
    float const n = Length(c);
    if (n == 0.0f) return Irot;
    return {to_degrees(std::acos(DotProduct(a, b))), c * (1.0f / n)};
}

}  // namespace libgr
