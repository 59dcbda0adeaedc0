// Reading what the window shows into an image record.
#ifndef ZANOVIEW_GL_READPIXELS_H
#define ZANOVIEW_GL_READPIXELS_H

#include "image/image.h"

namespace libgr {

// The viewport of the front buffer, what has been shown, as RGB bytes; row 0
// is the bottom row. False, with no message, when no room could be had.
bool grReadPixelsRGB(image2d_t& image);
// The viewport's depth values. The record says 24 bits a pixel while GL
// delivers 32; the bytes hold GL's full 32-bit values.
bool grReadPixelsDepth(image2d_t& image);

}  // namespace libgr

#endif
