// The type names of the text forms, and a reader for a value whose type the
// text itself names, for debug input that mixes types.
#ifndef ZANOVIEW_GEOMETRY_MTYPE_H
#define ZANOVIEW_GEOMETRY_MTYPE_H

#include <cstdint>
#include <iosfwd>

#include "geometry/text.h"

namespace libgr {

// The value of each is its row in mtype_table.
enum e_mtype_t : std::int32_t {
    MTYPE_FLOAT = 0,  // float
    MTYPE_POS3,       // position3_t
    MTYPE_DIR3,       // direction3_t
    MTYPE_POS2,       // position2_t
    MTYPE_DIR2,       // direction2_t
    MTYPE_POS2L,      // position2l_t
    MTYPE_DIR2L,      // direction2l_t
    MTYPE_QUA,        // quaternion_t
    MTYPE_ROT3,       // rotation3_t
    MTYPE_PST3W,      // posture3w_t
    MTYPE_PLR3,       // polarpos3_t
    MTYPE_ANG3,       // angles3_t
    MTYPE_REV3,       // revolution3_t
    MTYPE_SRT3,       // straight3_t
    MTYPE_IRT3,       // inertial3_t
    MTYPE_VEC3W,      // vector3w_t
    MTYPE_COL3,       // color3_t
    MTYPE_COL3A,      // color3a_t
    MTYPE_TXC1,       // texcoord1_t
    MTYPE_TXC2,       // texcoord2_t
    MTYPE_TXC2Q,      // texcoord2q_t
    MTYPE_TXC3,       // texcoord3_t
    MTYPE_TXC3Q,      // texcoord3q_t
    MTYPE_MTX3W,      // matrix3w_t
    MTYPE_BOX2,       // box2_t
    MTYPE_BOX3,       // box3_t
    MTYPE_DIM2,       // dim2_t
    MTYPE_DIM3,       // dim3_t
    MTYPE_COL3AUB,    // color3aub_t
    MTYPE_COL3UB,     // color3ub_t
    MTYPE_COL1AUB,    // color1aub_t
    MTYPE_COL1UB,     // color1ub_t
    MTYPE_SURFACE,    // surface_t
    MTYPE_LINE2D,     // line2d_t
    MTYPE_LINE3D,     // line3d_t
    MTYPE_PROJECTION, // projection_t
    MTYPE_NONE,       // the end mark: no name, and what an unknown name gives
};

// Names are compared over at most this many characters.
inline constexpr int mtype_name_max = 16;

struct mtype_row_t {
    e_mtype_t value;
    char const* name;  // null for MTYPE_NONE
};
// Row i holds the value i and its name: mtype_table[MTYPE_POS3].name is "pos3".
extern mtype_row_t const mtype_table[MTYPE_NONE + 1];

// The type of a whole name, searched in table order: "col3" is MTYPE_COL3
// and "col3a" MTYPE_COL3A, with no prefix matching. MTYPE_NONE when none fits.
e_mtype_t get_mtype(char const* name);

// The name, with no line end. A value outside the table writes a line
// instead: "no type" for MTYPE_NONE, "range over" for 37 and above.
std::ostream& operator<<(std::ostream& os, e_mtype_t t);

// Scans a type name. Turns skipws on for the stream, and leaves it on, so
// that blanks before and inside the name are skipped: " po s3(" is
// MTYPE_POS3. The name ends before a NUL, tab, line feed, carriage return,
// "(", ")" or ",", which stays in the stream, at the end of the text, or
// after 16 characters. Nothing read, or a name not in the table, gives
// MTYPE_NONE; a name of 17 characters or more is cut at 16 and so is never
// in the table.
// NOTE: a line end straight before the name ends it before it starts, so
// "\npos3(" scans as MTYPE_NONE.
std::istream& operator>>(std::istream& is, e_mtype_t& t);

// Room for one value of any type of the table; the member is named after
// the text form.
union mtype_value_t {
    // First, being the largest, so that value-initializing the union zeroes
    // all of it.
    line3d_t line3d;
    float flt;
    position3_t pos3;
    direction3_t dir3;
    position2_t pos2;
    direction2_t dir2;
    position2l_t pos2l;
    direction2l_t dir2l;
    quaternion_t qua;
    rotation3_t rot3;
    posture3w_t pst3w;
    polarpos3_t plr3;
    angles3_t ang3;
    revolution3_t rev3;
    straight3_t srt3;
    inertial3_t irt3;
    vector3w_t vec3w;
    color3_t col3;
    color3a_t col3a;
    texcoord1_t txc1;
    texcoord2_t txc2;
    texcoord2q_t txc2q;
    texcoord3_t txc3;
    texcoord3q_t txc3q;
    matrix3w_t mtx3w;
    box2_t box2;
    box3_t box3;
    dim2_t dim2;
    dim3_t dim3;
    color3aub_t col3aub;
    color3ub_t col3ub;
    color1aub_t col1aub;
    color1ub_t col1ub;
    surface_t surface;
    line2d_t line2d;
    projection_t projection;
};

// A value together with the type its text named.
struct mtype_reader {
    e_mtype_t type = MTYPE_NONE;
    mtype_value_t value{};
};

// Scans the name, then reads the value with the reader of that type.
// "float" reads one character, the number and one character, with no
// looking ahead: "float(2.5)". An unknown name skips through the next ")":
// after "unknown(1, 2)" the stream stands behind the ")".
std::istream& operator>>(std::istream& is, mtype_reader& r);

// The value in its type's text form. MTYPE_NONE writes nothing, and so do
// box2, box3, dim2, dim3, surface, line2d and line3d, although their own
// writers, called on the values directly, do write them.
std::ostream& operator<<(std::ostream& os, mtype_reader const& r);

}  // namespace libgr

#endif
