#include "geometry/vector.h"

#include <cmath>

namespace libgr {

namespace {

float snap_down(float c, float q)
{
    return std::trunc(c * (1.0f / q)) * q;
}

float snap_up(float c, float q)
{
    float const r = snap_down(c, q);
    return r < c ? r + q : r;
}

}  // namespace

direction3_t pow(direction3_t const& base, direction3_t const& exponent)
{
    return {std::pow(base.x, exponent.x), std::pow(base.y, exponent.y),
            std::pow(base.z, exponent.z)};
}

float Length(direction3_t const& d)
{
    return std::sqrt(d.x * d.x + d.y * d.y + d.z * d.z);
}

float DotProduct(direction3_t const& a, direction3_t const& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

direction3_t Normalize(direction3_t const& d)
{
    float const length = Length(d);
    if (length == 0.0f) return {0.0f, 0.0f, 0.0f};
    float const inverse = 1.0f / length;
    return {d.x * inverse, d.y * inverse, d.z * inverse};
}

position3_t Normalize(position3_t const& p)
{
    return pos3(Normalize(dir3(p)));
}

vector3w_t Normalize(vector3w_t const& v)
{
    direction3_t const n = Normalize(direction3(v.x, v.y, v.z));
    return {n.x, n.y, n.z, 0.0f};
}

direction3_t CrossProduct(direction3_t const& a, direction3_t const& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

direction3_t CrossProduct(position3_t const& p0, position3_t const& p1, position3_t const& p2)
{
    return CrossProduct(p1 - p0, p2 - p1);
}

direction3_t CrossProductWithNormalize(position3_t const& p0, position3_t const& p1,
                                       position3_t const& p2)
{
    return Normalize(CrossProduct(p0, p1, p2));
}

float ScalarTriProduct(direction3_t const& a, direction3_t const& b, direction3_t const& c)
{
    return DotProduct(a, CrossProduct(b, c));
}

float ScalarTriProduct(position3_t const& p0, position3_t const& p1, position3_t const& p2,
                       position3_t const& p3)
{
    return ScalarTriProduct(p1 - p0, p2 - p0, p3 - p0);
}

vector3w_t Generalize(position3_t const& p)
{
    return {p.x, p.y, p.z, 1.0f};
}

position3_t SpecializeToPos(vector3w_t const& v)
{
    if (v.w == 0.0f) return {v.x, v.y, v.z};
    return {v.x / v.w, v.y / v.w, v.z / v.w};
}

direction3_t SpecializeToDir(vector3w_t const& v)
{
    return Normalize(direction3(v.x, v.y, v.z));
}

position3_t round_to_quotient(position3_t const& v, float q)
{
    return {snap_down(v.x, q), snap_down(v.y, q), snap_down(v.z, q)};
}

position3_t round_to_quotient(position3_t const& v, direction3_t const& q)
{
    return {snap_down(v.x, q.x), snap_down(v.y, q.y), snap_down(v.z, q.z)};
}

direction3_t round_to_quotient(direction3_t const& v, float q)
{
    return dir3(round_to_quotient(pos3(v), q));
}

direction3_t round_to_quotient(direction3_t const& v, direction3_t const& q)
{
    return dir3(round_to_quotient(pos3(v), q));
}

float roundup_to_quotient(float c, float q)
{
    return snap_up(c, q);
}

position3_t roundup_to_quotient(position3_t const& v, float q)
{
    return {snap_up(v.x, q), snap_up(v.y, q), snap_up(v.z, q)};
}

position3_t roundup_to_quotient(position3_t const& v, direction3_t const& q)
{
    return {snap_up(v.x, q.x), snap_up(v.y, q.y), snap_up(v.z, q.z)};
}

direction3_t roundup_to_quotient(direction3_t const& v, float q)
{
    return dir3(roundup_to_quotient(pos3(v), q));
}

direction3_t roundup_to_quotient(direction3_t const& v, direction3_t const& q)
{
    return dir3(roundup_to_quotient(pos3(v), q));
}

}  // namespace libgr
