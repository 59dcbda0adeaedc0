// What the current GL context says of where it does its work.
#ifndef ZANOVIEW_GL_RENDERER_H
#define ZANOVIEW_GL_RENDERER_H

namespace libgr {

// True when the context draws on the CPU, so that its textures live in this
// process's own memory: a software rasteriser. Asked of the GLX renderer
// query where libGL offers it (GLX_MESA_query_renderer); false where it
// can't be told. Needs a current context; the answer is kept after the
// first call, as the program has one context for its whole life.
bool grRendersOnCpu();

}  // namespace libgr

#endif
