// Texture coordinates for one to three dimensions; the q forms add the
// homogeneous coordinate for projected textures.
#ifndef ZANOVIEW_GEOMETRY_TEXCOORD_H
#define ZANOVIEW_GEOMETRY_TEXCOORD_H

namespace libgr {

struct texcoord1_t {
    float s;
};
struct texcoord2_t {
    float s, t;
};
struct texcoord2q_t {
    float s, t, q;
};
struct texcoord3_t {
    float s, t, r;
};
struct texcoord3q_t {
    float s, t, r, q;
};

}  // namespace libgr

#endif
