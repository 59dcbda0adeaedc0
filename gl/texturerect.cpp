#include "gl/texturerect.h"

#include "gl/format.h"
#include "gl/texture2d.h"

namespace libgr {

GLenum grTextureRectangle::GetInternalFormat() const
{
    if (m_image.empty()) return GL_INVALID_VALUE;
    gl_loading_format_t lf;
    if (!grConvertImageFormatToGlFormatFULL(&lf, m_image.desc, m_image.compressed))
        return GL_INVALID_VALUE;
    return lf.internalformat;
}

void grTextureRectangle::Load() const { upload(false); }

void grTextureRectangle::Reload() const { upload(true); }

void grTextureRectangle::upload(bool update) const
{
    if (m_image.empty()) return;
    grPalette palette;
    if (m_image.desc.format == IMAGE_FORMAT_INDEX) palette.Load(m_image.palette);

    gl_loading_format_t lf;
    if (!grConvertImageFormatToGlFormatFULL(&lf, m_image.desc, m_image.compressed)) return;
    GLsizei const width = GLsizei(m_image.m_width);
    GLsizei const height = GLsizei(m_image.m_height);
    if (update)
        glTexSubImage2D(GL_TEXTURE_RECTANGLE, 0 /*level*/, 0 /*x*/, 0 /*y*/, width, height,
                        lf.format, lf.type, m_image.begin());
    else
        glTexImage2D(GL_TEXTURE_RECTANGLE, 0 /*level*/, GLint(lf.internalformat), width, height,
                     0 /*border*/, lf.format, lf.type, m_image.begin());
    // NOTE: a 2-D record, so GL_TEXTURE_2D's parameters; see the class
    // comment.
    grTexParameter(m_texparameter);
}

}  // namespace libgr
