#include "gl/texturecube.h"

#include <algorithm>

#include "glext/glu.h"

#include "gl/error.h"
#include "gl/format.h"
#include "gl/pixelstore.h"
#include "gl/texture2d.h"
#include "gl/texture_upload.h"

namespace libgr {

using namespace texture_upload;

namespace {

constexpr int kFaces = 6;

// The target of face `face` (0 to 5) of any level.
GLenum face_target(std::size_t face)
{
    static GLenum const s_gl_cube_map_targets[kFaces] = {
        GL_TEXTURE_CUBE_MAP_POSITIVE_X, GL_TEXTURE_CUBE_MAP_NEGATIVE_X,
        GL_TEXTURE_CUBE_MAP_POSITIVE_Y, GL_TEXTURE_CUBE_MAP_NEGATIVE_Y,
        GL_TEXTURE_CUBE_MAP_POSITIVE_Z, GL_TEXTURE_CUBE_MAP_NEGATIVE_Z,
    };
    return s_gl_cube_map_targets[face];
}

GLsizei width_of(image2d_t const& img) { return GLsizei(img.m_width); }
GLsizei height_of(image2d_t const& img) { return GLsizei(img.m_height); }
void const* pixels_of(image2d_t const& img) { return img.begin(); }

void upload_compressed(image2d_t const& img, GLenum target, GLint level, GLenum internalformat)
{
    if (!is_GL_ARB_texture_compression_supported) {
        log_compression_unsupported();
        return;
    }
    glCompressedTexImage2DARB(target, level, internalformat, width_of(img), height_of(img),
                              0 /*border*/, GLsizei(img.size()), pixels_of(img));
}

// Level 0 of one face, for the routes that generate the levels below it.
void upload_face(image2d_t const& img, GLenum target, gl_loading_format_t const& lf,
                 std::uint32_t size)
{
    if (img.compressed) {
        upload_compressed(img, target, 0 /*level*/, lf.internalformat);
    } else if (size == 0) {
        glTexImage2D(target, 0 /*level*/, GLint(lf.internalformat), width_of(img), height_of(img),
                     0 /*border*/, lf.format, lf.type, pixels_of(img));
    } else {
        GLsizei const side = GLsizei(pow2_at_least(size));
        glTexImage2D(target, 0 /*level*/, GLint(lf.internalformat), side, side, 0 /*border*/,
                     lf.format, lf.type, nullptr);
        glTexSubImage2D(target, 0 /*level*/, 0 /*x*/, 0 /*y*/, width_of(img), height_of(img),
                        lf.format, lf.type, pixels_of(img));
    }
}

}  // namespace

void grTextureCubeMap::setImage(image2d_t const (&faces)[6], unsigned int size, unsigned long level)
{
    m_images.resize(kFaces * level + kFaces);
    std::uint32_t largest = size;
    for (int face = 0; face < kFaces; ++face) {
        m_images[kFaces * level + face] = faces[face];
        largest = std::max(largest, longest_side(faces[face]));
    }
    m_size = size == 0 ? 0 : largest;
}

void grTextureCubeMap::setImages(std::vector<cubefaces_t> const& levels, unsigned int size,
                                 unsigned long level)
{
    std::size_t const needed = kFaces * (levels.size() + level);
    if (m_images.size() < needed) m_images.resize(needed);
    std::uint32_t largest = size;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        for (int face = 0; face < kFaces; ++face) {
            image2d_t const& img = levels[i][face];
            m_images[kFaces * (level + i) + face] = img;
            largest = std::max(largest, longest_side(img));
        }
    }
    m_size = size == 0 ? 0 : largest;
}

GLenum grTextureCubeMap::GetInternalFormat() const
{
    return internal_format_of(m_images);
}

void grTextureCubeMap::Load() const
{
    if (m_images.empty()) return;
    image2d_t const& base = m_images[0];
    grPalette palette;
    if (base.desc.format == IMAGE_FORMAT_INDEX) palette.Load(base.palette);

    gl_loading_format_t lf;
    if (!m_buildmipmap) {
        // Whole levels only: a cube with fewer than six faces uploads nothing.
        std::size_t const levels = m_images.size() / kFaces;
        for (std::size_t level = 0; level < levels; ++level) {
            for (int face = 0; face < kFaces; ++face) {
                image2d_t const& img = m_images[kFaces * level + face];
                GLenum const target = face_target(face);
                if (!grConvertImageFormatToGlFormatFULL(&lf, img.desc, m_internalcompression))
                    continue;
                unpack(img);
                if (img.compressed) {
                    upload_compressed(img, target, GLint(level), lf.internalformat);
                    continue;
                }
                bool const bordered = level == 0 && m_border;
                std::uint32_t side = pow2_at_least(bordered ? m_size - 2 : m_size);
                if (bordered) side += 2;
                glTexImage2D(target, GLint(level), GLint(lf.internalformat), GLsizei(side),
                             GLsizei(side), GLint(bordered), lf.format, lf.type, nullptr);
                // NOTE: level 0, whatever the level in hand; see the class
                // comment.
                glTexSubImage2D(target, 0 /*level*/, 0 /*x*/, 0 /*y*/, width_of(img),
                                height_of(img), lf.format, lf.type, pixels_of(img));
            }
        }
    } else {
        if (!grConvertImageFormatToGlFormatFULL(&lf, base.desc, m_internalcompression)) return;
        // Level 0 of each face; further levels in the records are left out.
        std::size_t const faces = std::min<std::size_t>(kFaces, m_images.size());
        // For the routes where GL makes the lower levels from these.
        auto upload_faces = [&] {
            for (std::size_t face = 0; face < faces; ++face) {
                image2d_t const& img = m_images[face];
                if (!grConvertImageFormatToGlFormatFULL(&lf, img.desc, m_internalcompression))
                    continue;
                unpack(img);
                upload_face(img, face_target(face), lf, m_size);
            }
        };
        if (is_GL_VERSION_3_0_supported) {
            upload_faces();
            grPrintError("before-generate_mipmap");
            glGenerateMipmap(GL_TEXTURE_CUBE_MAP);
            grPrintError("after-generate_mipmap");
        } else if (is_GL_SGIS_generate_mipmap_supported && sgis_can_generate(lf.internalformat)) {
            glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_GENERATE_MIPMAP_SGIS, GL_TRUE);
            grPrintError("after-texparameter_cubemap-sgis-true");
            upload_faces();
            grPrintError("before-texparameter_cubemap-sgis-false");
            glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_GENERATE_MIPMAP_SGIS, GL_FALSE);
            grPrintError("after-texparameter_cubemap-sgis-false");
        } else {
            for (std::size_t face = 0; face < faces; ++face) {
                image2d_t const& img = m_images[face];
                GLenum const target = face_target(face);
                if (!grConvertImageFormatToGlFormatFULL(&lf, img.desc, m_internalcompression))
                    continue;
                unpack(img);
                grPrintError("after-unpack_window_subset");
                if (!img.compressed) {
                    gluBuild2DMipmaps(target, GLint(lf.internalformat), width_of(img),
                                      height_of(img), lf.format, lf.type, pixels_of(img));
                    grPrintError("after-gluBuild2DMipmaps");
                } else {
                    log_compressed_mipmap_fallback();
                    upload_compressed(img, target, 0 /*level*/, lf.internalformat);
                }
            }
        }
    }

    grTexParameter(m_texparameter);
}

}  // namespace libgr
