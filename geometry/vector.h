// Points, directions and homogeneous vectors in two and three dimensions:
// plain records of numbers, laid out contiguously so that arrays of them can
// go to GL vertex arrays as they stand.
#ifndef ZANOVIEW_GEOMETRY_VECTOR_H
#define ZANOVIEW_GEOMETRY_VECTOR_H

#include <cassert>
#include <cstdint>

#include "utils/bits.h"

namespace libgr {

// A position is a place and a direction a difference of places; keeping them
// apart lets the type say which one a field holds, and gives them different
// text forms. Sizes are directions.
struct position2_t {
    float x, y;
};
struct direction2_t {
    float x, y;
};
struct position2l_t {
    std::int32_t x, y;  // pixels
};
// Every size and offset in pixels: window, framebuffer, picture.
struct direction2l_t {
    std::int32_t x, y;  // pixels
};
struct position2s_t {
    std::int16_t x, y;
};
struct position2ul_t {
    std::uint32_t x, y;
};
struct position3_t {
    float x, y, z;
};
// A vector, or a per-axis value such as a scale or a rounding quotient.
struct direction3_t {
    float x, y, z;
};
// A homogeneous vector; v[0] to v[3] are x, y, z, w.
struct vector3w_t {
    float x, y, z, w;
    constexpr float& operator[](int i);
    constexpr float operator[](int i) const;
};

// Two of them must fit one machine word, and GL reads arrays of them.
static_assert(sizeof(position2_t) == 8 && sizeof(direction2_t) == 8 &&
                  sizeof(direction2l_t) == 8,
              "2-D values travel in one machine word");
static_assert(sizeof(position3_t) == 12 && sizeof(direction3_t) == 12 &&
                  sizeof(vector3w_t) == 16,
              "3-D values are packed floats");

namespace detail {
// Indexing through member pointers rather than (&x)[i], which would step
// past `x` as if it were an array.
inline constexpr float vector3w_t::*const vector3w_fields[4] = {
    &vector3w_t::x, &vector3w_t::y, &vector3w_t::z, &vector3w_t::w};
}  // namespace detail

constexpr float& vector3w_t::operator[](int i)
{
    assert(0 <= i && i < 4);
    return this->*detail::vector3w_fields[i];
}

constexpr float vector3w_t::operator[](int i) const
{
    assert(0 <= i && i < 4);
    return this->*detail::vector3w_fields[i];
}

// Differences below this count as none where two floats are compared.
inline constexpr float COMPARE_THRESHOLD = 1e-05f;

// ---- Construction and casts between the families: the numbers are kept.

constexpr position2_t position2(float x, float y) { return {x, y}; }
constexpr direction2_t direction2(float x, float y) { return {x, y}; }
constexpr direction2_t direction2(direction2l_t const& d)
{
    return {static_cast<float>(d.x), static_cast<float>(d.y)};
}
constexpr position2l_t position2l(std::int32_t x, std::int32_t y) { return {x, y}; }
constexpr direction2l_t direction2l(std::int32_t x, std::int32_t y) { return {x, y}; }
// Truncates: direction2l(direction2(-1.7f, 2.9f)) is (-1, 2).
constexpr direction2l_t direction2l(direction2_t const& d)
{
    return {static_cast<std::int32_t>(d.x), static_cast<std::int32_t>(d.y)};
}
constexpr position3_t position3(float x, float y, float z) { return {x, y, z}; }
constexpr direction3_t direction3(float x, float y, float z) { return {x, y, z}; }
// direction3(2) is (2, 2, 2): a uniform scale.
constexpr direction3_t direction3(float v) { return {v, v, v}; }
constexpr vector3w_t vector3w(float x, float y, float z, float w) { return {x, y, z, w}; }

constexpr position2_t pos2(direction2_t const& d) { return {d.x, d.y}; }
constexpr direction2_t dir2(position2_t const& p) { return {p.x, p.y}; }
constexpr position2l_t pos2l(direction2l_t const& d) { return {d.x, d.y}; }
constexpr direction2l_t dir2l(position2l_t const& p) { return {p.x, p.y}; }
constexpr position3_t pos3(direction3_t const& d) { return {d.x, d.y, d.z}; }
constexpr direction3_t dir3(position3_t const& p) { return {p.x, p.y, p.z}; }

// ---- Named values. The zeros of the 2-D families are positions; a field of
// a direction type takes them through dir2(datum2) or dir2l(datum2l).

inline constexpr position3_t Ipos{0.0f, 0.0f, 0.0f};
inline constexpr position3_t origin = Ipos;
inline constexpr position3_t datum = Ipos;
inline constexpr direction3_t Idir{1.0f, 1.0f, 1.0f};
inline constexpr direction3_t Iscale = Idir;
inline constexpr direction3_t IdirX{1.0f, 0.0f, 0.0f};
inline constexpr direction3_t IdirY{0.0f, 1.0f, 0.0f};
inline constexpr direction3_t IdirZ{0.0f, 0.0f, 1.0f};
inline constexpr direction3_t IdirMX{-1.0f, 0.0f, 0.0f};
inline constexpr direction3_t IdirMY{0.0f, -1.0f, 0.0f};
inline constexpr direction3_t IdirMZ{0.0f, 0.0f, -1.0f};
inline constexpr position2_t Ipos2{0.0f, 0.0f};
inline constexpr position2_t datum2 = Ipos2;
inline constexpr position2l_t Ipos2l{0, 0};
inline constexpr position2l_t datum2l = Ipos2l;
inline constexpr position2s_t Ipos2s{0, 0};
inline constexpr position2s_t datum2s = Ipos2s;
inline constexpr position2ul_t Ipos2ul{0, 0};
inline constexpr position2ul_t datum2ul = Ipos2ul;

// ---- 2-D arithmetic, component by component.

constexpr direction2_t operator-(position2_t const& a, position2_t const& b)
{
    return {a.x - b.x, a.y - b.y};
}
constexpr direction2_t operator*(direction2_t const& a, direction2_t const& b)
{
    return {a.x * b.x, a.y * b.y};
}
// Plain float division: (4, 0) / (2, 0) is (2, NaN), and (1, 1) / (0, 1) is
// (inf, 1). A caller dividing sizes guards against sides of 0 itself, since
// only it knows what a missing side should mean.
constexpr direction2_t operator/(direction2_t const& a, direction2_t const& b)
{
    return {a.x / b.x, a.y / b.y};
}
constexpr direction2_t operator*(direction2_t const& d, float f) { return {d.x * f, d.y * f}; }
// 1 / (2, 4) is (0.5, 0.25).
constexpr direction2_t operator/(float f, direction2_t const& d) { return {f / d.x, f / d.y}; }

constexpr bool operator==(direction2l_t const& a, direction2l_t const& b)
{
    return a.x == b.x && a.y == b.y;
}
constexpr bool operator!=(direction2l_t const& a, direction2l_t const& b) { return !(a == b); }
// True when either component differs: only (0, 0) != 0 is false, so a size
// with one side 0 still counts as "not zero".
constexpr bool operator!=(direction2l_t const& d, int v) { return d.x != v || d.y != v; }

// The smaller and the larger component.
inline float min1(direction2_t const& d) { return libutils::min2(d.x, d.y); }
inline float max1(direction2_t const& d) { return libutils::max2(d.x, d.y); }

// The smaller and the larger of two values of one type (int, unsigned,
// float): min2(3, 5) is 3.
using libutils::max2;
using libutils::min2;

// ---- 3-D arithmetic, component by component.

constexpr direction3_t operator-(position3_t const& a, position3_t const& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr position3_t operator+(position3_t const& p, direction3_t const& d)
{
    return {p.x + d.x, p.y + d.y, p.z + d.z};
}
constexpr position3_t operator-(position3_t const& p) { return {-p.x, -p.y, -p.z}; }
constexpr direction3_t operator-(direction3_t const& d) { return {-d.x, -d.y, -d.z}; }
constexpr direction3_t operator+(direction3_t const& a, direction3_t const& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr direction3_t operator-(direction3_t const& a, direction3_t const& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr direction3_t operator*(direction3_t const& d, float f)
{
    return {d.x * f, d.y * f, d.z * f};
}
constexpr direction3_t& operator*=(direction3_t& d, float f)
{
    d.x *= f;
    d.y *= f;
    d.z *= f;
    return d;
}
constexpr direction3_t& operator+=(direction3_t& a, direction3_t const& b)
{
    a.x += b.x;
    a.y += b.y;
    a.z += b.z;
    return a;
}

// Component by component in floats. Inside namespace libgr this name hides
// std::pow: call that one qualified.
direction3_t pow(direction3_t const& base, direction3_t const& exponent);

// ---- Lengths and products.

float Length(direction3_t const& d);
float DotProduct(direction3_t const& a, direction3_t const& b);

// Scaled to length 1. The zero vector stays zero, without an error, since a
// degenerate edge or axis is an ordinary case here. For a vector3w_t, w has
// no part in the length and comes out 0.
position3_t Normalize(position3_t const& p);
direction3_t Normalize(direction3_t const& d);
vector3w_t Normalize(vector3w_t const& v);

// a x b: CrossProduct(IdirX, IdirY) is IdirZ.
direction3_t CrossProduct(direction3_t const& a, direction3_t const& b);
// The normal of the triangle p0, p1, p2: (p1 - p0) x (p2 - p1), so a triangle
// counter-clockwise seen from +z faces +z.
direction3_t CrossProduct(position3_t const& p0, position3_t const& p1, position3_t const& p2);
direction3_t CrossProductWithNormalize(position3_t const& p0, position3_t const& p1,
                                       position3_t const& p2);
// a . (b x c), the signed volume of the parallelepiped.
float ScalarTriProduct(direction3_t const& a, direction3_t const& b, direction3_t const& c);
// The same for the edges p1 - p0, p2 - p0, p3 - p0.
float ScalarTriProduct(position3_t const& p0, position3_t const& p1, position3_t const& p2,
                       position3_t const& p3);

// ---- Homogeneous coordinates.

// (x, y, z, 1).
vector3w_t Generalize(position3_t const& p);
// (x / w, y / w, z / w); a w of 0 (a point at infinity) leaves x, y, z as
// they are instead of dividing by zero.
position3_t SpecializeToPos(vector3w_t const& v);
// The normalized (x, y, z); w has no part in it.
direction3_t SpecializeToDir(vector3w_t const& v);

// ---- Snapping to a grid of step q.

// Each component becomes trunc(c * (1 / q)) * q: towards zero, not to
// nearest.
// (7.9, -7.9, 0) with 2 gives (6, -6, 0).
position3_t round_to_quotient(position3_t const& v, float q);
position3_t round_to_quotient(position3_t const& v, direction3_t const& q);
direction3_t round_to_quotient(direction3_t const& v, float q);
direction3_t round_to_quotient(direction3_t const& v, direction3_t const& q);

// Up towards +infinity: (7.9, -7.9, 0) with 2 gives (8, -6, 0). A negative
// component thus ends where round_to_quotient puts it.
float roundup_to_quotient(float c, float q);
position3_t roundup_to_quotient(position3_t const& v, float q);
position3_t roundup_to_quotient(position3_t const& v, direction3_t const& q);
direction3_t roundup_to_quotient(direction3_t const& v, float q);
direction3_t roundup_to_quotient(direction3_t const& v, direction3_t const& q);

}  // namespace libgr

#endif
