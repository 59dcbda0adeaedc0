// Boxes, sizes, planes, lines, triangles and the orthographic volume: plain
// records that are built elsewhere and come here for their text forms.
#ifndef ZANOVIEW_GEOMETRY_SHAPES_H
#define ZANOVIEW_GEOMETRY_SHAPES_H

#include "geometry/matrix.h"
#include "geometry/vector.h"

namespace libgr {

// Two opposite corners, in no particular order.
struct box2_t {
    position2_t p0, p1;
};
struct box3_t {
    position3_t p0, p1;
};
struct dim2_t {
    unsigned long w, h;
};
struct dim3_t {
    unsigned long w, h, d;
};
// The plane a x + b y + c z + d = 0.
struct surface_t {
    float a, b, c, d;
};
// The line a x + b y + c = 0.
struct line2d_t {
    float a, b, c;
};
// A line's direction with its two transforms.
struct line3d_t {
    direction3_t dir;
    matrix3w_t m0, m1;
};
// A triangle with what is derived from it: a transform, its plane, its
// three edges as 2-D lines, its corners, and three groups of three values.
struct triangle_t {
    matrix3w_t matrix;
    surface_t surface;
    line2d_t edges[3];
    position3_t corners[3];
    float values[3][3];
};
// An orthographic volume in glOrtho's order.
struct projection_t {
    double left, right, bottom, top, near, far;
};

}  // namespace libgr

#endif
