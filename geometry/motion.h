// Records of orientation and motion: turns, rates, speeds and poses. They
// are carried and printed in their text forms; nothing computes with them.
#ifndef ZANOVIEW_GEOMETRY_MOTION_H
#define ZANOVIEW_GEOMETRY_MOTION_H

#include "geometry/vector.h"

namespace libgr {

struct quaternion_t {
    float x, y, z, w;
};
// Turn rates or angles about x, y and z.
struct revolution3_t {
    float x, y, z;
};
struct angles3_t {
    float x, y, z;
};
// A position as distance and two angles.
struct polarpos3_t {
    float r, theta, phi;
};
// Speed along a direction.
struct straight3_t {
    float speed;
    direction3_t dir;
};
// A state of motion: turning and going straight.
struct inertial3_t {
    revolution3_t revolution;
    straight3_t straight;
};
// A pose: two turns and a place.
struct posture3w_t {
    revolution3_t attitude;
    revolution3_t revolution;
    position3_t pos;
};

}  // namespace libgr

#endif
