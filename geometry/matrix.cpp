#include "geometry/matrix.h"

namespace libgr {

matrix3w_t operator*(matrix3w_t const& a, matrix3w_t const& b)
{
    matrix3w_t out{};
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            float sum = 0.0f;
            for (int k = 0; k < 4; ++k) sum += a[i][k] * b[k][j];
            out[i][j] = sum;
        }
    }
    return out;
}

matrix3w_t& operator*=(matrix3w_t& a, matrix3w_t const& b)
{
    a = a * b;
    return a;
}

vector3w_t operator*(vector3w_t const& v, matrix3w_t const& m)
{
    vector3w_t out{};
    for (int c = 0; c < 4; ++c) {
        float sum = 0.0f;
        for (int r = 0; r < 4; ++r) sum += v[r] * m[r][c];
        out[c] = sum;
    }
    return out;
}

vector3w_t operator*(matrix3w_t const& m, vector3w_t const& v)
{
    vector3w_t out{};
    for (int r = 0; r < 4; ++r) {
        float sum = 0.0f;
        for (int c = 0; c < 4; ++c) sum += m[r][c] * v[c];
        out[r] = sum;
    }
    return out;
}

matrix3w_t getTranslateMatrix(position3_t const& p)
{
    matrix3w_t m = Imtx;
    m[3] = {p.x, p.y, p.z, 1.0f};
    return m;
}

matrix3w_t getTranslateMatrix(direction3_t const& d)
{
    return getTranslateMatrix(pos3(d));
}

position3_t getTranslateVector(matrix3w_t const& m)
{
    return {m[3].x, m[3].y, m[3].z};
}

matrix3w_t getScaleMatrix(direction3_t const& d)
{
    return getScaleMatrix(d.x, d.y, d.z);
}

matrix3w_t getScaleMatrix(float x, float y, float z)
{
    matrix3w_t m = Imtx;
    m[0][0] = x;
    m[1][1] = y;
    m[2][2] = z;
    return m;
}

float Determinant(matrix3w_t const& m)
{
    return Determinant(tmatrix(m));
}

matrix3w_t Invert(matrix3w_t const& m)
{
    return matrix3w(Invert(tmatrix(m)));
}

matrix3w_t Transpose(matrix3w_t const& m)
{
    matrix3w_t out{};
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) out[r][c] = m[c][r];
    }
    return out;
}

tmatrix_t<4, 4> tmatrix(matrix3w_t const& m)
{
    tmatrix_t<4, 4> t{};
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) t.m[r][c] = m[r][c];
    }
    return t;
}

matrix3w_t matrix3w(tmatrix_t<4, 4> const& t)
{
    matrix3w_t m{};
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) m[r][c] = t.m[r][c];
    }
    return m;
}

}  // namespace libgr
