#include "gl/renderer.h"

#include "glext/glext.h"

namespace libgr {

namespace {

// From GLX_MESA_query_renderer, typed here so that no GLX header is needed.
using query_integer_t = int (*)(int attribute, unsigned int* value);
constexpr int kRendererAccelerated = 0x8186;  // GLX_RENDERER_ACCELERATED_MESA

}  // namespace

bool grRendersOnCpu()
{
    static int const answer = [] {
        auto const query =
            reinterpret_cast<query_integer_t>(__gl_GetProcAddress("glXQueryCurrentRendererIntegerMESA"));
        unsigned int accelerated = 1;
        return query && query(kRendererAccelerated, &accelerated) && accelerated == 0 ? 1 : 0;
    }();
    return answer != 0;
}

}  // namespace libgr
