// Text forms of the geometry values: a short type name, then the numbers in
// parentheses, as in pos3(1.000000, 2.000000, 3.000000). The view state file
// is made of them and debug lines print them, so the forms are exact.
#ifndef ZANOVIEW_GEOMETRY_TEXT_H
#define ZANOVIEW_GEOMETRY_TEXT_H

#include <iosfwd>

#include "geometry/color.h"
#include "geometry/matrix.h"
#include "geometry/motion.h"
#include "geometry/rotation.h"
#include "geometry/shapes.h"
#include "geometry/texcoord.h"
#include "geometry/vector.h"

namespace libgr {

// ---- Writers.
//
// Name, "(", the fields joined by ", ", ")", and no line end. Floats and
// doubles are fixed notation at the stream's precision, 6 decimals on a
// default stream, and the stream's flags are left as they were found.
// Integers are written as the stream is set. Nested fields carry their own
// names: rot3(0.500000, dir3(0.000000, 1.000000, 0.000000)).
//
// mtx3w takes four lines, one for each row as stored, the last three
// opening with a tab:
//   mtx3w(\t1.000000, 0.000000, 0.000000, 0.000000,\n\t0.000000, ... 1.000000)
//
// NOTE: the byte colours write each byte as the character itself, padded to
// two with "0", and no separators: the bytes 'A', 'B', 'C' give
// col3ub(0A0B0C). Under showbase "0x" goes before the name and not before
// each byte. These forms are for looking at, not for reading back.

std::ostream& operator<<(std::ostream& os, position3_t const& v);
std::ostream& operator<<(std::ostream& os, direction3_t const& v);
std::ostream& operator<<(std::ostream& os, position2_t const& v);
std::ostream& operator<<(std::ostream& os, direction2_t const& v);
std::ostream& operator<<(std::ostream& os, position2l_t const& v);
std::ostream& operator<<(std::ostream& os, direction2l_t const& v);
std::ostream& operator<<(std::ostream& os, quaternion_t const& v);
std::ostream& operator<<(std::ostream& os, rotation3_t const& v);
std::ostream& operator<<(std::ostream& os, posture3w_t const& v);
std::ostream& operator<<(std::ostream& os, polarpos3_t const& v);
std::ostream& operator<<(std::ostream& os, angles3_t const& v);
std::ostream& operator<<(std::ostream& os, revolution3_t const& v);
std::ostream& operator<<(std::ostream& os, straight3_t const& v);
std::ostream& operator<<(std::ostream& os, inertial3_t const& v);
std::ostream& operator<<(std::ostream& os, vector3w_t const& v);
std::ostream& operator<<(std::ostream& os, color3_t const& v);
std::ostream& operator<<(std::ostream& os, color3a_t const& v);
std::ostream& operator<<(std::ostream& os, texcoord1_t const& v);
std::ostream& operator<<(std::ostream& os, texcoord2_t const& v);
std::ostream& operator<<(std::ostream& os, texcoord2q_t const& v);
std::ostream& operator<<(std::ostream& os, texcoord3_t const& v);
std::ostream& operator<<(std::ostream& os, texcoord3q_t const& v);
std::ostream& operator<<(std::ostream& os, matrix3w_t const& v);
std::ostream& operator<<(std::ostream& os, box2_t const& v);
std::ostream& operator<<(std::ostream& os, box3_t const& v);
std::ostream& operator<<(std::ostream& os, dim2_t const& v);
std::ostream& operator<<(std::ostream& os, dim3_t const& v);
std::ostream& operator<<(std::ostream& os, color3aub_t const& v);
std::ostream& operator<<(std::ostream& os, color3ub_t const& v);
std::ostream& operator<<(std::ostream& os, color1aub_t const& v);
std::ostream& operator<<(std::ostream& os, color1ub_t const& v);
std::ostream& operator<<(std::ostream& os, surface_t const& v);
std::ostream& operator<<(std::ostream& os, line2d_t const& v);
std::ostream& operator<<(std::ostream& os, line3d_t const& v);
std::ostream& operator<<(std::ostream& os, projection_t const& v);
// Labelled lines, for debugging only; there is no reader:
//   s: surface(...)
//   mtx3w(...)                        (four lines)
//   l: line2d(...), line2d(...), line2d(...)
//   p: pos3(...), pos3(...), pos3(...)
//   and the three groups of values, one line each, joined by ", ".
std::ostream& operator<<(std::ostream& os, triangle_t const& v);

// ---- Readers.
//
// Forgiving, so that a hand-edited view state file still reads: whatever
// stands before the "(" is skipped, the type name included; any one
// character separates two numbers, with blanks and line ends around it
// skipped by the stream; the closing ")" is read when it is next and left
// otherwise. "xyz (1;2;3" reads as pos3(1, 2, 3), and "size (640 , 480)"
// as a dir2l. The fields are written as they are read.
//
// A number that doesn't parse sets failbit in the standard way (its field
// gets 0) and the fields after it are left alone. Text that ends before its
// "(" sets failbit and leaves the value untouched, so an empty or truncated
// file ends the read instead of hanging it.
//
// Byte colours read one character for each channel, with one separator
// character between channels: "(a,b,c,d)" for a col3aub.
//
// Fields that are values of their own are checked by name, and the reader
// stops at the first unexpected one, leaving the stream there:
//   rot3, srt3   a number, then dir3; fields written as read
//   box2, box3   pos2, pos2 / pos3, pos3; fields written as read
//   irt3         rev3, srt3; the target is written only when all were read
//   pst3w        rot3, rot3, pos3, each rot3 read as three numbers; the
//                target is written only when all were read
// NOTE: pst3w asks for "rot3" where its writer says "rev3", so a written
// pst3w doesn't read back: the read stops at the first field and the target
// keeps its value. The two sides differ on purpose; don't align one alone.
// line3d reads a dir3 and two mtx3w without checking their names.

std::istream& operator>>(std::istream& is, position3_t& v);
std::istream& operator>>(std::istream& is, direction3_t& v);
std::istream& operator>>(std::istream& is, position2_t& v);
std::istream& operator>>(std::istream& is, direction2_t& v);
std::istream& operator>>(std::istream& is, position2l_t& v);
std::istream& operator>>(std::istream& is, direction2l_t& v);
std::istream& operator>>(std::istream& is, quaternion_t& v);
std::istream& operator>>(std::istream& is, rotation3_t& v);
std::istream& operator>>(std::istream& is, posture3w_t& v);
std::istream& operator>>(std::istream& is, polarpos3_t& v);
std::istream& operator>>(std::istream& is, angles3_t& v);
std::istream& operator>>(std::istream& is, revolution3_t& v);
std::istream& operator>>(std::istream& is, straight3_t& v);
std::istream& operator>>(std::istream& is, inertial3_t& v);
std::istream& operator>>(std::istream& is, vector3w_t& v);
std::istream& operator>>(std::istream& is, color3_t& v);
std::istream& operator>>(std::istream& is, color3a_t& v);
std::istream& operator>>(std::istream& is, texcoord1_t& v);
std::istream& operator>>(std::istream& is, texcoord2_t& v);
std::istream& operator>>(std::istream& is, texcoord2q_t& v);
std::istream& operator>>(std::istream& is, texcoord3_t& v);
std::istream& operator>>(std::istream& is, texcoord3q_t& v);
std::istream& operator>>(std::istream& is, matrix3w_t& v);
std::istream& operator>>(std::istream& is, box2_t& v);
std::istream& operator>>(std::istream& is, box3_t& v);
std::istream& operator>>(std::istream& is, dim2_t& v);
std::istream& operator>>(std::istream& is, dim3_t& v);
std::istream& operator>>(std::istream& is, color3aub_t& v);
std::istream& operator>>(std::istream& is, color3ub_t& v);
std::istream& operator>>(std::istream& is, color1aub_t& v);
std::istream& operator>>(std::istream& is, color1ub_t& v);
std::istream& operator>>(std::istream& is, surface_t& v);
std::istream& operator>>(std::istream& is, line2d_t& v);
std::istream& operator>>(std::istream& is, line3d_t& v);
std::istream& operator>>(std::istream& is, projection_t& v);

}  // namespace libgr

#endif
