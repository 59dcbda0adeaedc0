// One-line GL calls that take the program's value types instead of loose
// floats and pointers.
#ifndef ZANOVIEW_GL_WRAPPERS_H
#define ZANOVIEW_GL_WRAPPERS_H

#include "glext/glext.h"

#include "geometry/color.h"
#include "geometry/matrix.h"
#include "geometry/texcoord.h"
#include "geometry/vector.h"

namespace libgr {

void grColor(color3a_t const& c);
void grColor(color3aub_t const& c);
void grClearColor(color3a_t const& c);

void grLight(GLenum light, GLenum pname, color3a_t const& c);
// The position as a point: w is 1.
void grLightPos(GLenum light, position3_t const& p);
void grGetLightPos(GLenum light, vector3w_t& v);
void grGetLightPos(GLenum light, position3_t& p);
void grGetLightPos(GLenum light, direction3_t& d);

void grMaterial(GLenum face, GLenum pname, color3a_t const& c);
void grMaterial(GLenum face, GLenum pname, float value);
void grTexEnv(GLenum target, GLenum pname, color3a_t const& c);

// The current matrix named by `pname` (GL_MODELVIEW_MATRIX, ...).
void grGet(GLenum pname, matrix3w_t& m);
// The four rows of `m` into the program's local parameters index to index + 3.
void grProgramLocalParameterARB(GLenum target, GLuint index, matrix3w_t const& m);

void grVertexPointer(position2_t const* pointer, int stride);
void grTexCoordPointer(texcoord2_t const* pointer, int stride);
void grDrawElements(GLenum mode, int count, unsigned char const* indices);

}  // namespace libgr

#endif
