// The scale factors of the window sizing policy, apart from the window: each
// is a ratio of sizes in framebuffer pixels, and each guards against the
// sides of 0 that plain float division would turn into NaN or infinity in
// the picture's view matrix.
#ifndef ZANOVIEW_APP_SIZING_H
#define ZANOVIEW_APP_SIZING_H

#include <cstdint>

#include "geometry/vector.h"

namespace zanoview2 {

// The factor that carries a view stored with a window of `stored` to the
// present `window`: the smaller ratio of present to stored side, so that
// (800, 600) from (400, 200) is 2. A stored side of 0 gives no ratio and is
// left out: (800, 600) and (800, 0) from (400, 0) are both 2. `stored` must
// not be 0,0, which has nothing to scale against.
float stored_view_scale(libgr::direction2l_t const& window, libgr::direction2l_t const& stored);

// The factor that keeps a picture's share of the window's height through a
// resize from `old_height` to `height`: 600 to 300 is 0.5, equal heights are
// exactly 1. A height of 0 shows nothing and has no share to keep, so to or
// from 0 the factor is 1: a window that goes to 0 and comes back leaves the
// picture as it was.
float reshape_scale(std::int32_t height, std::int32_t old_height);

}  // namespace zanoview2

#endif
