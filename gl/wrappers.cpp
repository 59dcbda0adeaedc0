#include "gl/wrappers.h"

namespace libgr {

namespace {

// The colour types are plain runs of their components, as GL reads them.
GLfloat const* floats(color3a_t const& c) { return &c.r; }

}  // namespace

void grColor(color3a_t const& c) { glColor4fv(floats(c)); }
void grColor(color3aub_t const& c) { glColor4ubv(&c.r); }
void grClearColor(color3a_t const& c) { glClearColor(c.r, c.g, c.b, c.a); }

void grLight(GLenum light, GLenum pname, color3a_t const& c) { glLightfv(light, pname, floats(c)); }

void grLightPos(GLenum light, position3_t const& p)
{
    GLfloat const position[4] = {p.x, p.y, p.z, 1.0f};
    glLightfv(light, GL_POSITION, position);
}

void grGetLightPos(GLenum light, vector3w_t& v) { glGetLightfv(light, GL_POSITION, &v.x); }

void grGetLightPos(GLenum light, position3_t& p)
{
    vector3w_t v;
    grGetLightPos(light, v);
    p = SpecializeToPos(v);
}

void grGetLightPos(GLenum light, direction3_t& d)
{
    vector3w_t v;
    grGetLightPos(light, v);
    d = SpecializeToDir(v);
}

void grMaterial(GLenum face, GLenum pname, color3a_t const& c) { glMaterialfv(face, pname, floats(c)); }
void grMaterial(GLenum face, GLenum pname, float value) { glMaterialf(face, pname, value); }
void grTexEnv(GLenum target, GLenum pname, color3a_t const& c) { glTexEnvfv(target, pname, floats(c)); }

void grGet(GLenum pname, matrix3w_t& m) { glGetFloatv(pname, m.data()); }

void grProgramLocalParameterARB(GLenum target, GLuint index, matrix3w_t const& m)
{
    for (GLuint r = 0; r < 4; ++r) glProgramLocalParameter4fvARB(target, index + r, &m.m[r].x);
}

void grVertexPointer(position2_t const* pointer, int stride) { glVertexPointer(2, GL_FLOAT, stride, pointer); }
void grTexCoordPointer(texcoord2_t const* pointer, int stride) { glTexCoordPointer(2, GL_FLOAT, stride, pointer); }

void grDrawElements(GLenum mode, int count, unsigned char const* indices)
{
    glDrawElements(mode, count, GL_UNSIGNED_BYTE, indices);
}

}  // namespace libgr
