// Turns about an axis, and the way between them and rotation matrices.
#ifndef ZANOVIEW_GEOMETRY_ROTATION_H
#define ZANOVIEW_GEOMETRY_ROTATION_H

#include "geometry/matrix.h"
#include "geometry/vector.h"

namespace libgr {

struct rotation3_t {
    float angle;  // degrees, counter-clockwise seen from the axis's tip
    direction3_t axis;
};

constexpr rotation3_t rotation3(float angle, direction3_t const& axis) { return {angle, axis}; }

// No turn. The axis is any unit vector; +z is the one a picture turns about.
inline constexpr rotation3_t Irot{0.0f, {0.0f, 0.0f, 1.0f}};

// The same 16 floats that glRotatef(angle, x, y, z) multiplies with, so a
// turn computed here and one done by GL agree. The axis is normalized first;
// a null axis gives the diagonal (cos a, cos a, cos a, 1), which is the
// identity only for a = 0. 90 degrees about +z has m[0][1] = 1 and
// m[1][0] = -1: the row (1, 0, 0) goes to (0, 1, 0).
matrix3w_t getRotateMatrix(rotation3_t const& r);

// The axis of a rotation matrix and HALF its angle: a matrix of 90 degrees
// about +z gives 45 degrees about +z. Undoing the result turns a picture
// half-way upright, and repeated use closes in on upright by halves; the
// view's "straighten" command is built on that.
// The identity gives angle 0 about a null axis; a trace out of acos's range
// (a scaled matrix, or rounding) gives Irot. The axis comes from the skew
// part alone, so a symmetric upper 3x3, such as the diagonal (-1, -1, 1),
// gives a null axis with its angle (90 there).
rotation3_t getRotation3(matrix3w_t const& m);

// The turn that takes the unit direction a to the unit direction b, by its
// full angle: calcRotation3(IdirX, IdirY) is 90 degrees about +z. Parallel
// and opposite directions have no cross product and give Irot. a . b is
// taken as it stands, so directions that are not unit length give a wrong
// angle or a NaN.
rotation3_t calcRotation3(direction3_t const& a, direction3_t const& b);

// The same axis with the angle negated.
constexpr rotation3_t Invert(rotation3_t const& r) { return {-r.angle, r.axis}; }

}  // namespace libgr

#endif
