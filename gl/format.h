// Which image descriptions can become textures, and the OpenGL formats they load as.
#ifndef ZANOVIEW_GL_FORMAT_H
#define ZANOVIEW_GL_FORMAT_H

#include "glext/glext.h"
#include "image/image.h"

namespace libgr {

// The three enumerants glTexImage2D and its relatives take for one image.
// Lives on the caller's stack.
struct gl_loading_format_t {
    GLenum internalformat;  // how the texture stores texels
    GLenum format;          // which components the pixels carry
    GLenum type;            // how each component or packed pixel is stored
};

// Fills `out` for an image of description `desc`; returns true when `out` is
// valid. RGB/UINT/8 gives {GL_RGB8, GL_RGB, GL_UNSIGNED_BYTE}; BGR/UINT/8
// gives {GL_RGB, GL_BGR, GL_UNSIGNED_BYTE}. YCbCr images go up as plain RGB,
// values unchanged.
//
// `compress` asks for internal compression; with GL_ARB_texture_compression
// present it changes GL_ALPHA to GL_COMPRESSED_ALPHA and nothing else.
//
// A refused description (RG, DEPTH_STENCIL, YCbCr422, RGB/UINT/24, ...)
// writes four lines to std::cerr and returns false with `out` partly written:
// `out->format` may already be set.
// NOTE: the last of those lines switches std::cerr to hexadecimal and leaves
// it so: numbers written to std::cerr afterwards come out in hexadecimal.
// Deliberate; don't restore the flags.
bool grConvertImageFormatToGlFormatFULL(gl_loading_format_t* out, image_desc_t desc, bool compress);

}  // namespace libgr

#endif
