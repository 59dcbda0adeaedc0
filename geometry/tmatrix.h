// Small square and rectangular float matrices for cofactor work: the minor,
// the determinant and the inverse by cofactors, for any size.
#ifndef ZANOVIEW_GEOMETRY_TMATRIX_H
#define ZANOVIEW_GEOMETRY_TMATRIX_H

#include <cassert>

namespace libgr {

// R rows of C floats; m[r][c] is float number C * r + c.
template <int R, int C>
struct tmatrix_t {
    static_assert(R > 0 && C > 0, "a matrix has at least one element");
    float m[R][C];

    float* operator[](int r)
    {
        assert(0 <= r && r < R);
        return m[r];
    }
    float const* operator[](int r) const
    {
        assert(0 <= r && r < R);
        return m[r];
    }
};

// The (N-1) x (N-1) matrix left when row `row` and column `col` are taken
// out: shrink<3> of {{1,2,3},{4,5,6},{7,8,9}} at (1, 0) is {{2,3},{8,9}}.
template <int N>
tmatrix_t<N - 1, N - 1> shrink(tmatrix_t<N, N> const& m, int row, int col)
{
    static_assert(N > 1, "a 1x1 matrix has no minor");
    tmatrix_t<N - 1, N - 1> out{};
    for (int r = 0, ro = 0; r < N; ++r) {
        if (r == row) continue;
        for (int c = 0, co = 0; c < N; ++c) {
            if (c == col) continue;
            out.m[ro][co++] = m.m[r][c];
        }
        ++ro;
    }
    return out;
}

// Cofactor expansion along the last row, in floats. Exact for the diagonal
// matrices of a zoom, so a pure zoom's scale comes back exactly.
template <int N>
float Determinant(tmatrix_t<N, N> const& m)
{
    if constexpr (N == 1) {
        return m.m[0][0];
    } else {
        float det = 0.0f;
        for (int c = 0; c < N; ++c) {
            float const sign = (N - 1 + c) % 2 == 0 ? 1.0f : -1.0f;
            det += sign * m.m[N - 1][c] * Determinant(shrink(m, N - 1, c));
        }
        return det;
    }
}

// The inverse as the transposed cofactors times 1 / det. A singular matrix
// is not detected: its inverse is made of infinities and NaNs.
template <int N>
tmatrix_t<N, N> Invert(tmatrix_t<N, N> const& m)
{
    static_assert(N > 1, "the cofactor inverse needs minors");
    float const inverse = 1.0f / Determinant(m);
    tmatrix_t<N, N> out{};
    for (int r = 0; r < N; ++r) {
        for (int c = 0; c < N; ++c) {
            float const sign = (r + c) % 2 == 0 ? 1.0f : -1.0f;
            out.m[r][c] = sign * Determinant(shrink(m, c, r)) * inverse;
        }
    }
    return out;
}

}  // namespace libgr

#endif
