#include "geometry/text.h"

#include <istream>
#include <string>

#include "geometry/mtype.h"

namespace libgr {

namespace {

// Passes over everything up to the "(" and reads it. At the end of the text
// the stream fails instead, and the caller leaves its value alone.
bool open_paren(std::istream& is)
{
    for (;;) {
        int const next = is.get();
        if (next == std::char_traits<char>::eof()) {
            is.setstate(std::ios_base::failbit);
            return false;
        }
        if (next == '(') return true;
    }
}

// The ")" when it is next; anything else stays for the next read.
void close_paren(std::istream& is)
{
    if (is.peek() == ')') is.get();
}

// Any one character; blanks before it are skipped as the stream is set.
void skip_separator(std::istream& is)
{
    char c = 0;
    is >> c;
}

// The first field, then a separator and a field for each of the rest. Once
// the stream fails the remaining fields are left alone.
template <class First, class... Rest>
void fields(std::istream& is, First& first, Rest&... rest)
{
    is >> first;
    ((skip_separator(is), is >> rest), ...);
}

template <class... Fields>
std::istream& plain(std::istream& is, Fields&... f)
{
    if (open_paren(is)) {
        fields(is, f...);
        close_paren(is);
    }
    return is;
}

bool named(std::istream& is, e_mtype_t expected)
{
    e_mtype_t type = MTYPE_NONE;
    is >> type;
    return type == expected;
}

}  // namespace

std::istream& operator>>(std::istream& is, position3_t& v)
{
    return plain(is, v.x, v.y, v.z);
}

std::istream& operator>>(std::istream& is, direction3_t& v)
{
    return plain(is, v.x, v.y, v.z);
}

std::istream& operator>>(std::istream& is, position2_t& v)
{
    return plain(is, v.x, v.y);
}

std::istream& operator>>(std::istream& is, direction2_t& v)
{
    return plain(is, v.x, v.y);
}

std::istream& operator>>(std::istream& is, position2l_t& v)
{
    return plain(is, v.x, v.y);
}

std::istream& operator>>(std::istream& is, direction2l_t& v)
{
    return plain(is, v.x, v.y);
}

std::istream& operator>>(std::istream& is, quaternion_t& v)
{
    return plain(is, v.x, v.y, v.z, v.w);
}

std::istream& operator>>(std::istream& is, rotation3_t& v)
{
    if (!open_paren(is)) return is;
    is >> v.angle;
    skip_separator(is);
    if (!named(is, MTYPE_DIR3)) return is;
    is >> v.axis;
    close_paren(is);
    return is;
}

std::istream& operator>>(std::istream& is, posture3w_t& v)
{
    if (!open_paren(is)) return is;
    posture3w_t read = v;
    if (!named(is, MTYPE_ROT3)) return is;
    is >> read.attitude;
    skip_separator(is);
    if (!named(is, MTYPE_ROT3)) return is;
    is >> read.revolution;
    skip_separator(is);
    if (!named(is, MTYPE_POS3)) return is;
    is >> read.pos;
    close_paren(is);
    if (is) v = read;
    return is;
}

std::istream& operator>>(std::istream& is, polarpos3_t& v)
{
    return plain(is, v.r, v.theta, v.phi);
}

std::istream& operator>>(std::istream& is, angles3_t& v)
{
    return plain(is, v.x, v.y, v.z);
}

std::istream& operator>>(std::istream& is, revolution3_t& v)
{
    return plain(is, v.x, v.y, v.z);
}

std::istream& operator>>(std::istream& is, straight3_t& v)
{
    if (!open_paren(is)) return is;
    is >> v.speed;
    skip_separator(is);
    if (!named(is, MTYPE_DIR3)) return is;
    is >> v.dir;
    close_paren(is);
    return is;
}

std::istream& operator>>(std::istream& is, inertial3_t& v)
{
    if (!open_paren(is)) return is;
    inertial3_t read = v;
    if (!named(is, MTYPE_REV3)) return is;
    is >> read.revolution;
    skip_separator(is);
    if (!named(is, MTYPE_SRT3)) return is;
    is >> read.straight;
    close_paren(is);
    if (is) v = read;
    return is;
}

std::istream& operator>>(std::istream& is, vector3w_t& v)
{
    return plain(is, v.x, v.y, v.z, v.w);
}

std::istream& operator>>(std::istream& is, color3_t& v)
{
    return plain(is, v.r, v.g, v.b);
}

std::istream& operator>>(std::istream& is, color3a_t& v)
{
    return plain(is, v.r, v.g, v.b, v.a);
}

std::istream& operator>>(std::istream& is, texcoord1_t& v)
{
    return plain(is, v.s);
}

std::istream& operator>>(std::istream& is, texcoord2_t& v)
{
    return plain(is, v.s, v.t);
}

std::istream& operator>>(std::istream& is, texcoord2q_t& v)
{
    return plain(is, v.s, v.t, v.q);
}

std::istream& operator>>(std::istream& is, texcoord3_t& v)
{
    return plain(is, v.s, v.t, v.r);
}

std::istream& operator>>(std::istream& is, texcoord3q_t& v)
{
    return plain(is, v.s, v.t, v.r, v.q);
}

std::istream& operator>>(std::istream& is, matrix3w_t& v)
{
    // The 16 floats as they lie in storage; the line ends are blanks.
    vector3w_t(&m)[4] = v.m;
    return plain(is, m[0].x, m[0].y, m[0].z, m[0].w, m[1].x, m[1].y, m[1].z, m[1].w,
                 m[2].x, m[2].y, m[2].z, m[2].w, m[3].x, m[3].y, m[3].z, m[3].w);
}

std::istream& operator>>(std::istream& is, box2_t& v)
{
    if (!open_paren(is)) return is;
    if (!named(is, MTYPE_POS2)) return is;
    is >> v.p0;
    skip_separator(is);
    if (!named(is, MTYPE_POS2)) return is;
    is >> v.p1;
    close_paren(is);
    return is;
}

std::istream& operator>>(std::istream& is, box3_t& v)
{
    if (!open_paren(is)) return is;
    if (!named(is, MTYPE_POS3)) return is;
    is >> v.p0;
    skip_separator(is);
    if (!named(is, MTYPE_POS3)) return is;
    is >> v.p1;
    close_paren(is);
    return is;
}

std::istream& operator>>(std::istream& is, dim2_t& v)
{
    return plain(is, v.w, v.h);
}

std::istream& operator>>(std::istream& is, dim3_t& v)
{
    return plain(is, v.w, v.h, v.d);
}

// The byte colours go through the character extractor, one character a
// channel.
std::istream& operator>>(std::istream& is, color3aub_t& v)
{
    return plain(is, v.r, v.g, v.b, v.a);
}

std::istream& operator>>(std::istream& is, color3ub_t& v)
{
    return plain(is, v.r, v.g, v.b);
}

std::istream& operator>>(std::istream& is, color1aub_t& v)
{
    return plain(is, v.l, v.a);
}

std::istream& operator>>(std::istream& is, color1ub_t& v)
{
    return plain(is, v.l);
}

std::istream& operator>>(std::istream& is, surface_t& v)
{
    return plain(is, v.a, v.b, v.c, v.d);
}

std::istream& operator>>(std::istream& is, line2d_t& v)
{
    return plain(is, v.a, v.b, v.c);
}

std::istream& operator>>(std::istream& is, line3d_t& v)
{
    return plain(is, v.dir, v.m0, v.m1);
}

std::istream& operator>>(std::istream& is, projection_t& v)
{
    return plain(is, v.left, v.right, v.bottom, v.top, v.near, v.far);
}

}  // namespace libgr
