#include "gl/texture1d.h"

#include "glext/glu.h"

#include "gl/format.h"
#include "gl/pixelstore.h"
#include "gl/texture2d.h"
#include "gl/texture_upload.h"

namespace libgr {

using namespace texture_upload;

namespace {

GLsizei width_of(image1d_t const& img) { return GLsizei(img.m_width); }
void const* pixels_of(image1d_t const& img) { return img.begin(); }

void upload_compressed(image1d_t const& img, GLint level, GLenum internalformat, bool border)
{
    if (!is_GL_ARB_texture_compression_supported) {
        log_compression_unsupported();
        return;
    }
    glCompressedTexImage1DARB(GL_TEXTURE_1D, level, internalformat, width_of(img), GLint(border),
                              GLsizei(img.size()), pixels_of(img));
}

// Storage of `width` texels at `level`, then the picture at its start.
void upload_into(image1d_t const& img, GLint level, gl_loading_format_t const& lf, GLsizei width,
                 bool border)
{
    glTexImage1D(GL_TEXTURE_1D, level, GLint(lf.internalformat), width, GLint(border), lf.format,
                 lf.type, nullptr);
    glTexSubImage1D(GL_TEXTURE_1D, level, 0 /*x*/, width_of(img), lf.format, lf.type,
                    pixels_of(img));
}

void full_upload(image1d_t const& img, gl_loading_format_t const& lf, std::uint32_t size,
                 bool border)
{
    if (img.compressed) {
        upload_compressed(img, 0 /*level*/, lf.internalformat, border);
        return;
    }
    if (size == 0) {
        glTexImage1D(GL_TEXTURE_1D, 0 /*level*/, GLint(lf.internalformat), width_of(img),
                     GLint(border), lf.format, lf.type, pixels_of(img));
        return;
    }
    upload_into(img, 0 /*level*/, lf, GLsizei(real_max(size, border)), border);
}

}  // namespace

void grTexture1D::setImage(image1d_t const& img, unsigned int size, unsigned long level)
{
    m_size = store_level(m_images, img, size, level);
}

void grTexture1D::setImages(std::vector<image1d_t> const& imgs, unsigned int size,
                            unsigned long level)
{
    m_size = store_levels(m_images, imgs, size, level);
}

GLenum grTexture1D::GetInternalFormat() const
{
    return internal_format_of(m_images);
}

void grTexture1D::Load() const
{
    // Only a mipmapped first level may be compressed by the conversion.
    auto const compress = [this](std::size_t i, bool mipmaps) { return mipmaps && i == 0 && m_internalcompression; };
    auto const level = [this](image1d_t const& img, GLint i, gl_loading_format_t const& lf) {
        if (img.compressed) {
            upload_compressed(img, i, lf.internalformat, m_border);
        } else if (m_size == 0) {
            glTexImage1D(GL_TEXTURE_1D, i, GLint(lf.internalformat), width_of(img),
                         i == 0 ? GLint(m_border) : 0, lf.format, lf.type, pixels_of(img));
        } else {
            // NOTE: not the picture's width; see the class comment.
            GLsizei width = 0;
            if (i == 0 && m_border) width += 2;
            if (std::uint32_t(i) == img.m_width) width += 2 * GLsizei(m_border);
            upload_into(img, i, lf, width, m_border);
        }
    };
    auto const with_levels = [this](image1d_t const& base, gl_loading_format_t const& lf) {
        if (is_GL_SGIS_generate_mipmap_supported && sgis_can_generate(lf.internalformat)) {
            sgis_generate_scope generate(GL_TEXTURE_1D);
            full_upload(base, lf, m_size, m_border);
        } else if (!base.compressed) {
            gluBuild1DMipmaps(GL_TEXTURE_1D, GLint(lf.internalformat), width_of(base), lf.format,
                              lf.type, pixels_of(base));
        } else {
            // GLU can't scale compressed texels: level 0 alone.
            upload_compressed(base, 0 /*level*/, lf.internalformat, m_border);
        }
    };
    auto const given_level = [this](image1d_t const& img, GLint i, gl_loading_format_t const& lf) {
        if (img.compressed) {
            upload_compressed(img, i, lf.internalformat, m_border);
        } else if (m_size == 0) {
            glTexImage1D(GL_TEXTURE_1D, i, GLint(lf.internalformat), width_of(img), 0 /*border*/,
                         lf.format, lf.type, pixels_of(img));
        } else {
            upload_into(img, i, lf, GLsizei(real_max(m_size, m_border)), m_border);
        }
    };
    auto const parameters = [this] {
        grTexParameter(m_texparameter);
        grTexParameter(GL_TEXTURE_1D, m_bordercolor);
    };
    upload_levels(m_images, m_buildmipmap, upload_steps_of(compress, level, with_levels, given_level, parameters));
}

}  // namespace libgr
