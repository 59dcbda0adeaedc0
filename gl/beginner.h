// A glBegin/glEnd pair as a scope, so that no primitive is left open.
#ifndef ZANOVIEW_GL_BEGINNER_H
#define ZANOVIEW_GL_BEGINNER_H

#include "glext/glext.h"

namespace libgr {

// Only vertex, colour and texture-coordinate calls may run while one lives.
class grBeginner {
public:
    explicit grBeginner(GLenum mode) { glBegin(mode); }
    ~grBeginner() { glEnd(); }
    grBeginner(grBeginner const&) = delete;
    grBeginner& operator=(grBeginner const&) = delete;
};

}  // namespace libgr

#endif
