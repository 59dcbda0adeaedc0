// Scopes that select a matrix mode, or save a matrix, for their lifetime;
// the save can outgrow the GL's own matrix stacks.
#ifndef ZANOVIEW_GL_MATRIXMGR_H
#define ZANOVIEW_GL_MATRIXMGR_H

#include <vector>

#include "glext/glext.h"

#include "geometry/matrix.h"

namespace libgr {

// Selects `mode` (0: leave the mode in force) and puts the old mode back at
// the end of the scope, with no GL call at all when it was already selected.
class grMatrixModeKeeper {
public:
    explicit grMatrixModeKeeper(GLenum mode);
    ~grMatrixModeKeeper();
    grMatrixModeKeeper(grMatrixModeKeeper const&) = delete;
    grMatrixModeKeeper& operator=(grMatrixModeKeeper const&) = delete;

private:
    GLenum m_savedmode = 0;  // 0: nothing to restore
};

// Saves the current matrix of `mode` (0: the mode in force) and restores it
// at the end of the scope. Scopes must end in reverse order of their start:
//   { grMatrixPusher keep(GL_MODELVIEW); glMultMatrixf(m); list.Draw(); }
// With enhancement on, a stack that is full no longer overflows: the matrix
// is kept in software and loaded back instead of popped.
class grMatrixPusher : public grMatrixModeKeeper {
public:
    // The bookkeeping of one matrix stack.
    struct grMatrixManager {
        GLenum m_mode;
        GLenum m_maxdepth_name;
        GLenum m_depth_name;
        GLenum m_matrix_name;
        GLint m_limit = 0;  // stack depth to stop pushing at; 0: never stop
        std::vector<matrix3w_t> m_overflow;  // saved in software, last pushed last

        bool canPush() const;
    };

    explicit grMatrixPusher(GLenum mode);
    ~grMatrixPusher();

    // With on, every stack is used to its last level and the overflow goes
    // to software; needs a current context. The viewer leaves it off.
    static void setEnhanceMode(bool on);
    static bool getEnhanceMode() { return g_enhance; }
    // The manager of a matrix mode; 0 means the mode in force. An unknown
    // mode is reported on standard output and gets the modelview manager.
    static grMatrixManager& getMatrixManager(GLenum mode);

    static grMatrixManager g_modelview_matrix;
    static grMatrixManager g_projection_matrix;
    static grMatrixManager g_texture_matrix;
    static grMatrixManager g_color_matrix;

private:
    static bool g_enhance;

    grMatrixManager* m_manager;
    bool m_pushed = false;  // false: the matrix went to m_manager->m_overflow
};

}  // namespace libgr

#endif
