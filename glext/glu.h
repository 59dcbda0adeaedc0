// The GLU routines the program calls, declared without the system's GL headers.
#ifndef ZANOVIEW_GLEXT_GLU_H
#define ZANOVIEW_GLEXT_GLU_H

#include "glext/glext.h"

extern "C" {

GLubyte const* gluErrorString(GLenum error);

// Each uploads `data` as level 0 of the bound texture and every smaller
// level down to 1x1, scaling first to powers of two; 0 on success, else a
// GLU error code for gluErrorString.
GLint gluBuild1DMipmaps(GLenum target, GLint internalFormat, GLsizei width, GLenum format,
                        GLenum type, void const* data);
GLint gluBuild2DMipmaps(GLenum target, GLint internalFormat, GLsizei width, GLsizei height,
                        GLenum format, GLenum type, void const* data);
GLint gluBuild3DMipmaps(GLenum target, GLint internalFormat, GLsizei width, GLsizei height,
                        GLsizei depth, GLenum format, GLenum type, void const* data);

}  // extern "C"

#endif  // ZANOVIEW_GLEXT_GLU_H
