// Texture sizes, the mipmap route test and the upload messages that all the
// texture image classes share. Private to gl/.
#ifndef ZANOVIEW_GL_TEXTURE_UPLOAD_H
#define ZANOVIEW_GL_TEXTURE_UPLOAD_H

#include <cstdint>
#include <iostream>

#include "glext/glext.h"
#include "utils/diag.h"

namespace libgr {
namespace texture_upload {

// The smallest power of two not below `x`, 0 for 0. Bit 31 is ignored, so
// that the answer always fits.
inline std::uint32_t pow2_at_least(std::uint32_t x)
{
    x &= 0x7fffffffu;
    if (x == 0) return 0;
    std::uint32_t p = 1;
    while (p < x) p <<= 1;
    return p;
}

// The side of the square texture a picture is put in: the power of two for
// `size`, the border coming on top of it. 300 gives 512; with a border, 258
// gives 258.
inline std::uint32_t real_max(std::uint32_t size, bool border)
{
    return border ? pow2_at_least(size - 2) + 2 : pow2_at_least(size);
}

// Internal formats that GL_GENERATE_MIPMAP_SGIS is trusted with; anything
// else goes to GLU.
inline bool sgis_can_generate(GLenum internalformat)
{
    switch (internalformat) {
    case GL_RGB5:
    case GL_RGB8:
    case GL_RGBA8:
    case GL_BGR:
    case GL_BGRA:
    case GL_RGB:
    case GL_RGBA:
        return true;
    default:
        return false;
    }
}

inline void log_compression_unsupported()
{
    libutils::error();
    std::cerr << "error, ARB_texture_compression unsupported when compressed image loading, skip."
              << std::endl;
}

inline void log_compressed_mipmap_fallback()
{
    libutils::error();
    std::cerr << "Compressed 'special format' image is ablen't to build mipmaps, fallback.\n"
              << std::flush;
}

}  // namespace texture_upload
}  // namespace libgr

#endif
