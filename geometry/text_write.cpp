#include "geometry/text.h"

#include <ostream>

#include "utils/diag.h"

namespace libgr {

namespace {

// name(f0, f1, ...): floats in fixed notation, the stream's flags restored
// afterwards. Nested values write their own names.
template <class... Fields>
std::ostream& put(std::ostream& os, char const* name, Fields const&... fields)
{
    libutils::keepflag keep(os);
    os.setf(std::ios_base::fixed, std::ios_base::floatfield);
    os << name << '(';
    char const* separator = "";
    ((os << separator << fields, separator = ", "), ...);
    return os << ')';
}

// name(bb...): each byte as itself, padded to two with "0", no separators.
// showbase puts "0x" once, before the name.
template <class... Bytes>
std::ostream& put_bytes(std::ostream& os, char const* name, Bytes... bytes)
{
    libutils::keepflag keep(os);
    if (os.flags() & std::ios_base::showbase) {
        os << "0x";
        os.unsetf(std::ios_base::showbase);
    }
    os << name << '(';
    (os << ... << libutils::_puthex<unsigned char>{bytes});
    return os << ')';
}

}  // namespace

std::ostream& operator<<(std::ostream& os, position3_t const& v)
{
    return put(os, "pos3", v.x, v.y, v.z);
}

std::ostream& operator<<(std::ostream& os, direction3_t const& v)
{
    return put(os, "dir3", v.x, v.y, v.z);
}

std::ostream& operator<<(std::ostream& os, position2_t const& v)
{
    return put(os, "pos2", v.x, v.y);
}

std::ostream& operator<<(std::ostream& os, direction2_t const& v)
{
    return put(os, "dir2", v.x, v.y);
}

std::ostream& operator<<(std::ostream& os, position2l_t const& v)
{
    return put(os, "pos2l", v.x, v.y);
}

std::ostream& operator<<(std::ostream& os, direction2l_t const& v)
{
    return put(os, "dir2l", v.x, v.y);
}

std::ostream& operator<<(std::ostream& os, quaternion_t const& v)
{
    return put(os, "qua", v.x, v.y, v.z, v.w);
}

std::ostream& operator<<(std::ostream& os, rotation3_t const& v)
{
    return put(os, "rot3", v.angle, v.axis);
}

std::ostream& operator<<(std::ostream& os, posture3w_t const& v)
{
    return put(os, "pst3w", v.attitude, v.revolution, v.pos);
}

std::ostream& operator<<(std::ostream& os, polarpos3_t const& v)
{
    return put(os, "plr3", v.r, v.theta, v.phi);
}

std::ostream& operator<<(std::ostream& os, angles3_t const& v)
{
    return put(os, "ang3", v.x, v.y, v.z);
}

std::ostream& operator<<(std::ostream& os, revolution3_t const& v)
{
    return put(os, "rev3", v.x, v.y, v.z);
}

std::ostream& operator<<(std::ostream& os, straight3_t const& v)
{
    return put(os, "srt3", v.speed, v.dir);
}

std::ostream& operator<<(std::ostream& os, inertial3_t const& v)
{
    return put(os, "irt3", v.revolution, v.straight);
}

std::ostream& operator<<(std::ostream& os, vector3w_t const& v)
{
    return put(os, "vec3w", v.x, v.y, v.z, v.w);
}

std::ostream& operator<<(std::ostream& os, color3_t const& v)
{
    return put(os, "col3", v.r, v.g, v.b);
}

std::ostream& operator<<(std::ostream& os, color3a_t const& v)
{
    return put(os, "col3a", v.r, v.g, v.b, v.a);
}

std::ostream& operator<<(std::ostream& os, texcoord1_t const& v)
{
    return put(os, "txc1", v.s);
}

std::ostream& operator<<(std::ostream& os, texcoord2_t const& v)
{
    return put(os, "txc2", v.s, v.t);
}

std::ostream& operator<<(std::ostream& os, texcoord2q_t const& v)
{
    return put(os, "txc2q", v.s, v.t, v.q);
}

std::ostream& operator<<(std::ostream& os, texcoord3_t const& v)
{
    return put(os, "txc3", v.s, v.t, v.r);
}

std::ostream& operator<<(std::ostream& os, texcoord3q_t const& v)
{
    return put(os, "txc3q", v.s, v.t, v.r, v.q);
}

std::ostream& operator<<(std::ostream& os, matrix3w_t const& v)
{
    libutils::keepflag keep(os);
    os.setf(std::ios_base::fixed, std::ios_base::floatfield);
    os << "mtx3w(\t";
    for (int r = 0; r < 4; ++r) {
        if (r > 0) os << ",\n\t";
        os << v[r].x << ", " << v[r].y << ", " << v[r].z << ", " << v[r].w;
    }
    return os << ')';
}

std::ostream& operator<<(std::ostream& os, box2_t const& v)
{
    return put(os, "box2", v.p0, v.p1);
}

std::ostream& operator<<(std::ostream& os, box3_t const& v)
{
    return put(os, "box3", v.p0, v.p1);
}

std::ostream& operator<<(std::ostream& os, dim2_t const& v)
{
    return put(os, "dim2", v.w, v.h);
}

std::ostream& operator<<(std::ostream& os, dim3_t const& v)
{
    return put(os, "dim3", v.w, v.h, v.d);
}

std::ostream& operator<<(std::ostream& os, color3aub_t const& v)
{
    return put_bytes(os, "col3aub", v.r, v.g, v.b, v.a);
}

std::ostream& operator<<(std::ostream& os, color3ub_t const& v)
{
    return put_bytes(os, "col3ub", v.r, v.g, v.b);
}

std::ostream& operator<<(std::ostream& os, color1aub_t const& v)
{
    return put_bytes(os, "col1aub", v.l, v.a);
}

std::ostream& operator<<(std::ostream& os, color1ub_t const& v)
{
    return put_bytes(os, "col1ub", v.l);
}

std::ostream& operator<<(std::ostream& os, surface_t const& v)
{
    return put(os, "surface", v.a, v.b, v.c, v.d);
}

std::ostream& operator<<(std::ostream& os, line2d_t const& v)
{
    return put(os, "line2d", v.a, v.b, v.c);
}

std::ostream& operator<<(std::ostream& os, line3d_t const& v)
{
    return put(os, "line3d", v.dir, v.m0, v.m1);
}

std::ostream& operator<<(std::ostream& os, projection_t const& v)
{
    return put(os, "projection", v.left, v.right, v.bottom, v.top, v.near, v.far);
}

std::ostream& operator<<(std::ostream& os, triangle_t const& v)
{
    libutils::keepflag keep(os);
    os.setf(std::ios_base::fixed, std::ios_base::floatfield);
    os << "s: " << v.surface << '\n';
    os << v.matrix << '\n';
    os << "l: " << v.edges[0] << ", " << v.edges[1] << ", " << v.edges[2] << '\n';
    os << "p: " << v.corners[0] << ", " << v.corners[1] << ", " << v.corners[2];
    for (auto const& group : v.values) {
        os << '\n' << group[0] << ", " << group[1] << ", " << group[2];
    }
    return os;
}

}  // namespace libgr
