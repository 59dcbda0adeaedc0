// The window's size and place from before it was blown up to the monitor's
// work area, kept by the start-up and by the "f" key so that "f" can put
// them back.
#ifndef ZANOVIEW_APP_WORKAREA_H
#define ZANOVIEW_APP_WORKAREA_H

#include <cstdint>

namespace zanoview2 {

// Screen coordinates; a zero width or height means nothing is kept.
extern std::int32_t winwidth;
extern std::int32_t winheight;
extern std::int32_t winx;
extern std::int32_t winy;

// Bit 1 of the wintype option: the window covers the monitor's work area.
// The value 1 (maximize) is deliberately without effect.
constexpr std::uint32_t kWorkAreaBit = 2;

}  // namespace zanoview2

#endif
