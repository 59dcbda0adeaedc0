#include "gl/texture2d.h"

#include <iostream>
#include <vector>

#include "glext/glu.h"
#include "image/mipmap.h"
#include "utils/diag.h"

#include "gl/error.h"
#include "gl/format.h"
#include "gl/pixelstore.h"
#include "gl/texture_upload.h"

namespace libgr {

using namespace texture_upload;

namespace {

GLsizei width_of(image2d_t const& img) { return GLsizei(img.m_width); }
GLsizei height_of(image2d_t const& img) { return GLsizei(img.m_height); }
void const* pixels_of(image2d_t const& img) { return img.begin(); }
// A compressed picture is all the bytes the record sees.
GLsizei byte_size_of(image2d_t const& img) { return GLsizei(img.size()); }

void upload_compressed(image2d_t const& img, GLint level, GLenum internalformat, bool border)
{
    if (!is_GL_ARB_texture_compression_supported) {
        log_compression_unsupported();
        return;
    }
    glCompressedTexImage2DARB(GL_TEXTURE_2D, level, internalformat, width_of(img), height_of(img),
                              GLint(border), byte_size_of(img), pixels_of(img));
}

void update_compressed(image2d_t const& img, GLint level, GLenum internalformat)
{
    if (!is_GL_ARB_texture_compression_supported) {
        log_compression_unsupported();
        return;
    }
    glCompressedTexSubImage2DARB(GL_TEXTURE_2D, level, 0 /*x*/, 0 /*y*/, width_of(img),
                                 height_of(img), internalformat, byte_size_of(img),
                                 pixels_of(img));
}

void update_level(image2d_t const& img, GLint level, gl_loading_format_t const& lf)
{
    glTexSubImage2D(GL_TEXTURE_2D, level, 0 /*x*/, 0 /*y*/, width_of(img), height_of(img),
                    lf.format, lf.type, pixels_of(img));
}

// Level 0 into the lower left corner of a square of side `side`, with the
// checkpoints around it. A failure gets the values that went into the calls
// on extra lines: a refused size or format is then plain from the log.
void update_corner(image2d_t const& img, gl_loading_format_t const& lf, std::uint32_t side,
                   bool border)
{
    if (grPrintError("before-tex-sub-image2d")) {
        std::cerr << "internalformat: " << lf.internalformat << std::endl;
        std::cerr << "m_border: " << border << std::endl;
        std::cerr << "format: " << lf.format << std::endl;
        std::cerr << "type: " << lf.type << std::endl;
    }
    update_level(img, 0 /*level*/, lf);
    if (grPrintError("after-tex-sub-image2d")) {
        std::cerr << "real_max: " << side << std::endl;
        std::cerr << "m_width: " << img.m_width << std::endl;
        std::cerr << "m_height: " << img.m_height << std::endl;
        std::cerr << "format: " << lf.format << std::endl;
        std::cerr << "type: " << lf.type << std::endl;
    }
}

// Storage and pixels of level 0: the picture's own size when `size` is 0,
// else a power-of-two square with the picture in its lower left corner.
void full_upload(image2d_t const& img, gl_loading_format_t const& lf, std::uint32_t size,
                 bool border)
{
    if (img.compressed) {
        upload_compressed(img, 0 /*level*/, lf.internalformat, border);
        return;
    }
    if (size == 0) {
        glTexImage2D(GL_TEXTURE_2D, 0 /*level*/, GLint(lf.internalformat), width_of(img),
                     height_of(img), GLint(border), lf.format, lf.type, pixels_of(img));
        return;
    }
    std::uint32_t const side = real_max(size, border);
    glTexImage2D(GL_TEXTURE_2D, 0 /*level*/, GLint(lf.internalformat), GLsizei(side),
                 GLsizei(side), GLint(border), lf.format, lf.type, nullptr);
    update_corner(img, lf, side, border);
}

// Working memory of the square route, kept from tile to tile: a picture's
// hundreds of tiles then cost no fresh pages.
std::vector<unsigned char> s_edge_bytes;
std::vector<unsigned char> s_level_bytes;

GLint unpack_alignment()
{
    GLint alignment = 4;
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    return alignment;
}

// Level 0 beyond the picture, in a square of side `side`: the picture's last
// column and row go on to the square's edges, so that filtering and the
// lower levels never mix in texels the picture didn't define (a dark line
// along the top and right of a light photo, or, in reused storage, an
// earlier picture). The bytes come in the picture's own format, so the
// unpack state for them differs from the picture's only in its window.
void continue_edges_upload(image2d_t const& img, gl_loading_format_t const& lf,
                           std::uint32_t side)
{
    edge_strips_t const strips = continue_edges(img, side, unsigned(unpack_alignment()), s_edge_bytes);
    if (!strips.right && !strips.top) return;
    grPixelStoreUnpack(image_window2d_t{});
    if (strips.right)
        glTexSubImage2D(GL_TEXTURE_2D, 0 /*level*/, GLint(img.m_width), 0 /*y*/,
                        GLsizei(strips.right_width), GLsizei(strips.right_height), lf.format,
                        lf.type, strips.right);
    if (strips.top)
        glTexSubImage2D(GL_TEXTURE_2D, 0 /*level*/, 0 /*x*/, GLint(img.m_height),
                        GLsizei(strips.top_width), GLsizei(strips.top_height), lf.format, lf.type,
                        strips.top);
    grPixelStoreUnpack(img.window);
}

// Levels 1 and down, averaged here from the picture and its continued edges
// rather than rendered by the GL: on a driver that rasterises on the CPU,
// generating hundreds of tiles' levels costs several times the averaging.
void upload_averaged_levels(image2d_t const& img, gl_loading_format_t const& lf,
                            std::uint32_t side, unsigned pixel)
{
    std::vector<square_level_t> const levels =
        average_levels(img, side, pixel, unsigned(unpack_alignment()), s_level_bytes);
    grPixelStoreUnpack(image_window2d_t{});
    GLint level = 1;
    for (square_level_t const& l : levels)
        glTexImage2D(GL_TEXTURE_2D, level++, GLint(lf.internalformat), GLsizei(l.side),
                     GLsizei(l.side), 0 /*border*/, lf.format, lf.type, l.bytes);
    grPixelStoreUnpack(img.window);
}

void build_mipmaps_with_glu(image2d_t const& img, gl_loading_format_t const& lf)
{
    // GLU scales on the CPU to powers of two, so the square size and the
    // border have no say here. It reads the window through the unpack state.
    gluBuild2DMipmaps(GL_TEXTURE_2D, GLint(lf.internalformat), width_of(img), height_of(img),
                      lf.format, lf.type, pixels_of(img));
}

}  // namespace

// ---- Pictures

void grTexture2D::setImage(image2d_t const& img, unsigned int size, unsigned long level)
{
    m_size = store_level(m_images, img, size, level);
}

void grTexture2D::setImages(std::vector<image2d_t> const& imgs, unsigned int size,
                            unsigned long level)
{
    m_size = store_levels(m_images, imgs, size, level);
}

GLenum grTexture2D::GetInternalFormat() const
{
    return internal_format_of(m_images);
}

// ---- Upload

void grTexture2D::Load() const
{
    auto const compress = [this](std::size_t, bool) { return m_internalcompression; };
    auto const level = [this](image2d_t const& img, GLint i, gl_loading_format_t const& lf) {
        GLint const border = i == 0 ? GLint(m_border) : 0;
        if (img.compressed) {
            upload_compressed(img, i, lf.internalformat, m_border);
        } else if (m_size == 0) {
            grPrintError("before-teximage2d(not-mipmap)");
            glTexImage2D(GL_TEXTURE_2D, i, GLint(lf.internalformat), width_of(img), height_of(img),
                         border, lf.format, lf.type, pixels_of(img));
            grPrintError("after-teximage2d(not-mipmap)");
        } else {
            // NOTE: this side is not real_max: it comes out 0 at level 0
            // without a border, and the sub-image then has no room. Kept as
            // it is for compatibility; nothing asks for a square without
            // mipmaps (tiles always build them).
            GLsizei side = 0;
            if (i < 32 && std::uint32_t(i) == (m_size >> i)) side += 2 * GLsizei(m_border);
            if (i == 0 && m_border) side += 2;
            glTexImage2D(GL_TEXTURE_2D, i, GLint(lf.internalformat), side, side, border, lf.format,
                         lf.type, nullptr);
            update_level(img, i, lf);
        }
    };
    auto const with_levels = [this](image2d_t const& base, gl_loading_format_t const& lf) {
        // A picture in the corner of a larger square: the routes below
        // continue its edges into the rest of level 0.
        bool const square = m_size != 0 && !m_border && !base.compressed;
        std::uint32_t const side = square ? real_max(m_size, false) : 0;
        // Where the GL would render the levels, they are averaged here.
        unsigned const pixel = square && is_GL_VERSION_3_0_supported ? averageable_pixel_bytes(base) : 0;
        if (pixel != 0) {
            // A mipmap filter before the storage is made has drivers make
            // room for all the levels at once; otherwise some allocate level
            // 0 alone and move it once the others come, holding both
            // meanwhile. Tiles are drawn with it anyway.
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
            full_upload(base, lf, m_size, m_border);
            continue_edges_upload(base, lf, side);
            upload_averaged_levels(base, lf, side, pixel);
        } else if (is_GL_VERSION_3_0_supported) {
            full_upload(base, lf, m_size, m_border);
            if (square) continue_edges_upload(base, lf, side);
            glGenerateMipmap(GL_TEXTURE_2D);
        } else if (is_GL_SGIS_generate_mipmap_supported && sgis_can_generate(lf.internalformat)) {
            sgis_generate_scope generate(GL_TEXTURE_2D);
            full_upload(base, lf, m_size, m_border);
            if (square) continue_edges_upload(base, lf, side);
        } else if (!base.compressed) {
            build_mipmaps_with_glu(base, lf);
        } else {
            log_compressed_mipmap_fallback();
            upload_compressed(base, 0 /*level*/, lf.internalformat, m_border);
        }
    };
    // Given levels replace what was generated for them. Every level gets a
    // square of the same power of two as level 0.
    auto const given_level = [this](image2d_t const& img, GLint i, gl_loading_format_t const& lf) {
        if (img.compressed) {
            upload_compressed(img, i, lf.internalformat, m_border);
        } else if (m_size == 0) {
            glTexImage2D(GL_TEXTURE_2D, i, GLint(lf.internalformat), width_of(img), height_of(img),
                         0 /*border*/, lf.format, lf.type, pixels_of(img));
        } else {
            GLsizei const side = GLsizei(pow2_at_least(m_size));
            glTexImage2D(GL_TEXTURE_2D, i, GLint(lf.internalformat), side, side, 0 /*border*/,
                         lf.format, lf.type, nullptr);
            update_level(img, i, lf);
        }
    };
    upload_levels(m_images, m_buildmipmap,
                  upload_steps_of(compress, level, with_levels, given_level, [this] { parameters(); }));
}

void grTexture2D::Reload() const
{
    auto const update = [](image2d_t const& img, GLint i, gl_loading_format_t const& lf) {
        if (img.compressed)
            update_compressed(img, i, lf.internalformat);
        else
            update_level(img, i, lf);
    };
    auto const with_levels = [this](image2d_t const& base, gl_loading_format_t const& lf) {
        if (is_GL_VERSION_3_0_supported) {
            if (base.compressed)
                update_compressed(base, 0 /*level*/, lf.internalformat);
            else if (m_size == 0)
                update_level(base, 0 /*level*/, lf);
            else
                update_corner(base, lf, real_max(m_size, m_border), m_border);
            glGenerateMipmap(GL_TEXTURE_2D);
        } else if (is_GL_SGIS_generate_mipmap_supported && sgis_can_generate(lf.internalformat)) {
            sgis_generate_scope generate(GL_TEXTURE_2D);
            if (base.compressed)
                update_compressed(base, 0 /*level*/, lf.internalformat);
            else
                update_level(base, 0 /*level*/, lf);
        } else if (!base.compressed) {
            build_mipmaps_with_glu(base, lf);
        } else {
            log_compressed_mipmap_fallback();
            update_compressed(base, 0 /*level*/, lf.internalformat);
        }
    };
    upload_levels(m_images, m_buildmipmap,
                  upload_steps_of([this](std::size_t, bool) { return m_internalcompression; }, update,
                                  with_levels, update, [this] { parameters(); }));
}

void grTexture2D::parameters() const
{
    grTexParameter(m_texparameter);
    if (m_border) grTexParameter(GL_TEXTURE_2D, m_bordercolor);
}

// ---- Palette

void grPalette::Load(palette_t const& palette)
{
    if (palette.size == 0) return;
    glPixelTransferi(GL_MAP_COLOR, GL_TRUE);
    GLsizei const n = GLsizei(palette.size);
    glPixelMapusv(GL_PIXEL_MAP_I_TO_R, n, palette.red.begin());
    glPixelMapusv(GL_PIXEL_MAP_I_TO_G, n, palette.green.begin());
    glPixelMapusv(GL_PIXEL_MAP_I_TO_B, n, palette.blue.begin());
    loaded = true;
}

grPalette::~grPalette()
{
    if (loaded) glPixelTransferi(GL_MAP_COLOR, GL_FALSE);
}

}  // namespace libgr
