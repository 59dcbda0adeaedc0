// The 4x4 matrix that holds a picture's whole view transform, kept in
// OpenGL's memory order so that it goes to glMultMatrixf, glLoadMatrixf and
// glGetFloatv with no transposing.
#ifndef ZANOVIEW_GEOMETRY_MATRIX_H
#define ZANOVIEW_GEOMETRY_MATRIX_H

#include <cassert>

#include "geometry/tmatrix.h"
#include "geometry/vector.h"

namespace libgr {

// m[r][c] is float number 4r + c, so the translation stands in m[3][0..2].
// Vectors are rows: v' = v * M, and in A * B the transform A acts first.
// Right-handed; a positive angle turns counter-clockwise seen from the tip
// of the axis.
struct matrix3w_t {
    vector3w_t m[4];  // rows

    constexpr vector3w_t& operator[](int r)
    {
        assert(0 <= r && r < 4);
        return m[r];
    }
    constexpr vector3w_t const& operator[](int r) const
    {
        assert(0 <= r && r < 4);
        return m[r];
    }
    // The 16 floats for GL, in the order in which they lie here.
    float* data() { return &m[0].x; }
    float const* data() const { return &m[0].x; }
};
static_assert(sizeof(matrix3w_t) == 16 * sizeof(float), "GL reads 16 packed floats");

inline constexpr matrix3w_t Imtx{{{1.0f, 0.0f, 0.0f, 0.0f},
                                  {0.0f, 1.0f, 0.0f, 0.0f},
                                  {0.0f, 0.0f, 1.0f, 0.0f},
                                  {0.0f, 0.0f, 0.0f, 1.0f}}};
inline constexpr matrix3w_t I = Imtx;

// C[i][j] = sum over k of A[i][k] * B[k][j]: v * (A * B) is (v * A) * B.
matrix3w_t operator*(matrix3w_t const& a, matrix3w_t const& b);
matrix3w_t& operator*=(matrix3w_t& a, matrix3w_t const& b);
// v as a row: v'[c] = sum over r of v[r] * m[r][c].
vector3w_t operator*(vector3w_t const& v, matrix3w_t const& m);
// v as a column: v'[r] = sum over c of m[r][c] * v[c].
vector3w_t operator*(matrix3w_t const& m, vector3w_t const& v);

// The identity with p in row 3: position3(1, 2, 3) moves every point by
// (1, 2, 3).
matrix3w_t getTranslateMatrix(position3_t const& p);
matrix3w_t getTranslateMatrix(direction3_t const& d);
// The first three values of row 3.
position3_t getTranslateVector(matrix3w_t const& m);
// The diagonal (x, y, z, 1).
matrix3w_t getScaleMatrix(direction3_t const& d);
matrix3w_t getScaleMatrix(float x, float y, float z);

// Over all 16 elements, by cofactors along row 3: a zoom by s gives s^3.
float Determinant(matrix3w_t const& m);
// By cofactors; a singular matrix gives infinities and NaNs, undetected.
matrix3w_t Invert(matrix3w_t const& m);
matrix3w_t Transpose(matrix3w_t const& m);

// Plain copies of the 16 floats, row for row.
tmatrix_t<4, 4> tmatrix(matrix3w_t const& m);
matrix3w_t matrix3w(tmatrix_t<4, 4> const& t);

}  // namespace libgr

#endif
