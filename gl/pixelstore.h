// Sizes of GL's pixel formats and types, and the pixel-store parameters
// that let GL read or write an image record where it lies.
#ifndef ZANOVIEW_GL_PIXELSTORE_H
#define ZANOVIEW_GL_PIXELSTORE_H

#include "glext/glext.h"

#include "image/image.h"

namespace libgr {

// Components of a pixel of `format`: GL_RGB is 3, GL_LUMINANCE_ALPHA 2;
// GL_STENCIL_INDEX and unknown formats 0.
unsigned long grFormatToComponents(GLenum format);
// Bytes of one component of `type`: GL_UNSIGNED_SHORT is 2; GL_2_BYTES and
// the other multi-byte list types, packed types and unknown ones 0.
unsigned long grTypeToSize(GLenum type);
// The type with components of `size` bytes: 1 GL_UNSIGNED_BYTE, 2
// GL_UNSIGNED_SHORT, 4 GL_FLOAT, 8 GL_DOUBLE; any other size 0.
GLenum grSizeToType(unsigned long size);

// Unpacking (images going to GL). A null store leaves the parameters alone.
void grPixelStoreUnpack(image_store_t const* store);
void grPixelStoreUnpack(image_window1d_t const& window);
void grPixelStoreUnpack(image_window2d_t const& window);
void grPixelStoreUnpack(image_window3d_t const& window);

// Packing (images read back from GL).
void grPixelStorePack(image_store_t const* store);
void grPixelStorePack(image_window1d_t const& window);
void grPixelStorePack(image_window2d_t const& window);
void grPixelStorePack(image_window3d_t const& window);

}  // namespace libgr

#endif
