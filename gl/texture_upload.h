// Texture sizes, the mipmap route test, the unpack and level bookkeeping and
// the upload messages that all the texture image classes share. Private to gl/.
#ifndef ZANOVIEW_GL_TEXTURE_UPLOAD_H
#define ZANOVIEW_GL_TEXTURE_UPLOAD_H

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <vector>

#include "glext/glext.h"
#include "image/image.h"
#include "utils/diag.h"

#include "gl/format.h"
#include "gl/pixelstore.h"
#include "gl/texture2d.h"

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

// The longest side of a picture, which the texture's size must cover.
inline std::uint32_t longest_side(image1d_t const& img) { return img.m_width; }
inline std::uint32_t longest_side(image2d_t const& img) { return std::max(img.m_width, img.m_height); }
inline std::uint32_t longest_side(image3d_t const& img)
{
    return std::max({img.m_width, img.m_height, img.m_depth});
}

// Puts `img` at `level`, dropping any level above it, and returns the
// texture size for it: 0 stays 0, any other `size` grows to the longest side.
template <typename Image>
std::uint32_t store_level(std::vector<Image>& images, Image const& img, std::uint32_t size,
                          unsigned long level)
{
    images.resize(level + 1);
    images[level] = img;
    return size == 0 ? 0 : std::max(size, longest_side(img));
}

// Puts `imgs` at levels `level` on, growing `images` as needed, and returns
// the texture size for them: 0 stays 0 (each level at its own size), any
// other `size` grows to the longest side given.
template <typename Image>
std::uint32_t store_levels(std::vector<Image>& images, std::vector<Image> const& imgs,
                           std::uint32_t size, unsigned long level)
{
    if (images.size() < imgs.size() + level) images.resize(imgs.size() + level);
    std::uint32_t largest = size;
    for (std::size_t i = 0; i < imgs.size(); ++i) {
        images[level + i] = imgs[i];
        largest = std::max(largest, longest_side(imgs[i]));
    }
    return size == 0 ? 0 : largest;
}

// The internal format of the first level's stored bytes, by the record's
// own compressed flag rather than the compression setting;
// GL_INVALID_VALUE with no level or no GL format for it.
template <typename Image>
GLenum internal_format_of(std::vector<Image> const& images)
{
    if (images.empty()) return GL_INVALID_VALUE;
    gl_loading_format_t lf;
    if (!grConvertImageFormatToGlFormatFULL(&lf, images[0].desc, images[0].compressed))
        return GL_INVALID_VALUE;
    return lf.internalformat;
}

// Tells GL where the record's pixels lie inside its bytes, so that a window
// into a larger picture goes up without a copy. Nothing is restored: the
// next level sets its own.
template <typename Image>
void unpack(Image const& img)
{
    grPixelStoreUnpack(img.store);
    grPixelStoreUnpack(img.window);
}

// Sets GL_GENERATE_MIPMAP_SGIS on the bound texture of `target` for a
// scope, so that the upload inside it makes the lower levels.
class sgis_generate_scope {
public:
    explicit sgis_generate_scope(GLenum target) : m_target(target)
    {
        glTexParameteri(m_target, GL_GENERATE_MIPMAP_SGIS, GL_TRUE);
    }
    ~sgis_generate_scope() { glTexParameteri(m_target, GL_GENERATE_MIPMAP_SGIS, GL_FALSE); }
    sgis_generate_scope(sgis_generate_scope const&) = delete;
    sgis_generate_scope& operator=(sgis_generate_scope const&) = delete;

private:
    GLenum m_target;
};

// The steps of one target's upload that differ from the others'; made from
// lambdas by upload_steps_of and run in order by upload_levels.
//   compress(level, mipmaps): the conversion's compression argument;
//   level(img, i, lf): level i without mipmaps;
//   with_levels(img, lf): the first level, with the levels below it made;
//   given_level(img, i, lf): a given level above the first, with mipmaps;
//   parameters(): last of all.
template <class Compress, class Level, class WithLevels, class GivenLevel, class Parameters>
struct upload_steps {
    Compress compress;
    Level level;
    WithLevels with_levels;
    GivenLevel given_level;
    Parameters parameters;
};

template <class Compress, class Level, class WithLevels, class GivenLevel, class Parameters>
upload_steps<Compress, Level, WithLevels, GivenLevel, Parameters> upload_steps_of(
    Compress compress, Level level, WithLevels with_levels, GivenLevel given_level, Parameters parameters)
{
    return {compress, level, with_levels, given_level, parameters};
}

// The order of every target's upload, whatever its target, sizes and odd
// rules: nothing without images; the first level's palette serves all
// levels while the upload lasts; without mipmaps every level goes up by
// itself, with them the first level goes up with the levels below it made
// from it, and the levels given above it are put over those; the target's
// parameters come last. Each level is converted and unpacked before its
// step; one whose description the GL can't take is left out.
template <class Image, class Steps>
void upload_levels(std::vector<Image> const& images, bool buildmipmap, Steps const& steps)
{
    if (images.empty()) return;
    Image const& base = images[0];
    grPalette palette;
    if (base.desc.format == IMAGE_FORMAT_INDEX) palette.Load(base.palette);

    gl_loading_format_t lf;
    auto const ready = [&](std::size_t i) {
        if (!grConvertImageFormatToGlFormatFULL(&lf, images[i].desc, steps.compress(i, buildmipmap)))
            return false;
        unpack(images[i]);
        return true;
    };
    if (!buildmipmap) {
        for (std::size_t i = 0; i < images.size(); ++i)
            if (ready(i)) steps.level(images[i], GLint(i), lf);
    } else {
        if (ready(0)) steps.with_levels(base, lf);
        for (std::size_t i = 1; i < images.size(); ++i)
            if (ready(i)) steps.given_level(images[i], GLint(i), lf);
    }
    steps.parameters();
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
    std::cerr << "Compressed 'special format' image is ablen't to build mipmaps, fallback."
              << std::endl;
}

}  // namespace texture_upload
}  // namespace libgr

#endif
