// A rectangle of a picture that shares its bytes, as the tiler cuts them, for
// the tests that read or upload pictures through windows.
#ifndef ZANOVIEW_TESTS_SUPPORT_PIXEL_WINDOW_H
#define ZANOVIEW_TESTS_SUPPORT_PIXEL_WINDOW_H

#include <cstdint>

#include "image/image.h"

namespace zvtest {

// The rectangle (x, y, width, height) of `picture`, in pixels from its
// bottom-left corner. Nothing is clipped: a window that reaches past the
// picture is for the tests of what readers refuse.
inline libgr::image2d_t window_of(libgr::image2d_t const& picture, std::uint32_t x, std::uint32_t y,
                                  std::uint32_t width, std::uint32_t height)
{
    libgr::image2d_t w = picture;
    w.window.rowlength = std::uint32_t(picture.rowlength());
    w.window.skippixels = x;
    w.window.skiprows = y;
    w.m_width = width;
    w.m_height = height;
    return w;
}

}  // namespace zvtest

#endif
