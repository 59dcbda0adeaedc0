#include "gl/texture.h"

#include <cassert>
#include <iostream>

#include "utils/diag.h"

#include "gl/error.h"
#include "gl/pixelstore.h"

namespace libgr {

// ---- Targets

namespace {

// Indexed by dimension; a cube map counts its six faces.
GLenum const sizetable[7] = {
    GL_INVALID_VALUE, GL_TEXTURE_1D,    GL_TEXTURE_2D,       GL_TEXTURE_3D,
    GL_INVALID_VALUE, GL_INVALID_VALUE, GL_TEXTURE_CUBE_MAP,
};

}  // namespace

GLenum grTextureDimToEnum(unsigned long dim)
{
    return dim < sizeof sizetable / sizeof sizetable[0] ? sizetable[dim] : GL_INVALID_VALUE;
}

std::uint64_t grTextureEnumToDim(GLenum target)
{
    switch (target) {
    case GL_TEXTURE_1D: return 1;
    case GL_TEXTURE_2D: return 2;
    case GL_TEXTURE_3D: return 3;
    case GL_TEXTURE_CUBE_MAP: return 6;
    default: return 0;
    }
}

// ---- The name

grTextureMgr::~grTextureMgr()
{
    if (created) {
        glDeleteTextures(1, &name);
        created = false;
    }
}

std::uint64_t grTextureObject::Dimension() const
{
    return grTextureEnumToDim(m_target);
}

void grTextureObject::Preload(grTexturableImageGL const* image)
{
    assert(image);
    if (!m_mgr) m_mgr.create();
    // An image of unknown dimension gives GL_INVALID_VALUE, and GL reports
    // the bind below.
    m_target = grTextureDimToEnum(image->Dimension());
    if (!m_mgr->created) {
        glGenTextures(1, &m_mgr->name);
        m_mgr->created = true;
    }
    glBindTexture(m_target, m_mgr->name);
    image->Load();
    m_preloaded = true;
    m_image = image;
}

void grTextureObject::Load() const
{
    if (!m_mgr) return;
    grPrintError("grTextureObject::Load(0)");
    // From 3.0 on the bound texture alone decides; before, the target must
    // also be enabled. Unload disables it again.
    if (!is_GL_VERSION_3_0_supported) {
        glEnable(m_target);
        grPrintError("grTextureObject::Load(1)");
    }
    glBindTexture(m_target, m_mgr->name);
    grPrintError("grTextureObject::Load(2)");
}

void grTextureObject::Unload() const
{
    if (!m_mgr) return;
    if (!is_GL_VERSION_3_0_supported) glDisable(m_target);
    glBindTexture(m_target, 0);
}

void grTextureObject::Reload() const
{
    if (!m_preloaded) return;
    glBindTexture(m_target, m_mgr->name);
    m_image->Reload();
}

void grTextureObject::clear()
{
    if (!m_preloaded) return;
    m_mgr.release();
    m_target = GL_INVALID_VALUE;
    m_preloaded = false;
}

bool grTextureObject::isResident() const
{
    if (!m_mgr) return false;
    // GL writes the answer only when the texture is not resident, and leaves
    // it alone when all named textures are: so it starts out true.
    // NOTE: Mesa 22's EXT entry point misses its target on direct contexts:
    // it answers nothing and leaves GL_INVALID_ENUM pending, which the next
    // checkpoint reports. The answer then stays true, as Mesa's textures are.
    GLboolean result = GL_TRUE;
    glAreTexturesResidentEXT(1, &m_mgr->name, &result);
    return result == GL_TRUE;
}

void grTextureObject::BindImage(GLuint unit, GLint level, GLenum access) const
{
    if (!m_mgr) return;
    glBindImageTexture(unit, m_mgr->name, level, GL_FALSE /*layered*/, 0 /*layer*/, access,
                       m_image->GetInternalFormat());
}

void grTextureObject::UnbindImage(GLuint unit) const
{
    if (!m_mgr) return;
    glBindImageTexture(unit, 0 /*texture*/, 0 /*level*/, GL_FALSE /*layered*/, 0 /*layer*/,
                       GL_READ_ONLY, GL_R8);
}

// ---- Read-back

namespace {

// The two ways of reaching a texture's levels: by the binding of a target,
// or by name.
struct level_source_t {
    GLenum target;  // 0: by name
    GLuint name;
    GLint level;

    GLint parameter(GLenum pname) const
    {
        GLint value = 0;
        if (target)
            glGetTexLevelParameteriv(target, level, pname, &value);
        else
            glGetTextureLevelParameteriv(name, level, pname, &value);
        return value;
    }

    void pixels(GLenum type, image2d_t& img) const
    {
        if (target)
            glGetTexImage(target, level, GL_RGBA, type, img.begin());
        else
            glGetTextureImage(name, level, GL_RGBA, type, GLsizei(img.size()), img.begin());
    }
};

bool red_type_to_image_type(GLint red_type, e_image_type_t& type)
{
    switch (red_type) {
    case GL_INT: type = IMAGE_TYPE_SINT; return true;
    case GL_UNSIGNED_INT: type = IMAGE_TYPE_UINT; return true;
    case GL_FLOAT:
    case GL_UNSIGNED_NORMALIZED:
    case GL_SIGNED_NORMALIZED: type = IMAGE_TYPE_FLOAT; return true;
    default: return false;
    }
}

bool red_size_to_image_bits(GLint red_size, e_image_bits_t& bits)
{
    switch (red_size) {
    case 1: bits = IMAGE_BITS_1; return true;
    case 2: bits = IMAGE_BITS_2; return true;
    case 4: bits = IMAGE_BITS_4; return true;
    case 8: bits = IMAGE_BITS_8; return true;
    case 12: bits = IMAGE_BITS_12; return true;
    case 16: bits = IMAGE_BITS_16; return true;
    case 24: bits = IMAGE_BITS_24; return true;
    case 32: bits = IMAGE_BITS_32; return true;
    case 64: bits = IMAGE_BITS_64; return true;
    default: return false;
    }
}

bool read_level(level_source_t const& source, image2d_t& img)
{
    img.clear();
    img.m_width = std::uint32_t(source.parameter(GL_TEXTURE_WIDTH));
    grPrintError("get texture level parameter (width)");
    img.m_height = std::uint32_t(source.parameter(GL_TEXTURE_HEIGHT));
    grPrintError("get texture level parameter (height)");
    img.desc.format = IMAGE_FORMAT_RGBA;

    GLint const red_type = source.parameter(GL_TEXTURE_RED_TYPE);
    grPrintError("get texture level parameter (red_type)");
    if (!red_type_to_image_type(red_type, img.desc.type)) return false;

    GLint const red_size = source.parameter(GL_TEXTURE_RED_SIZE);
    grPrintError("get texture level parameter (red_size)");
    if (!red_size_to_image_bits(red_size, img.desc.bits)) {
        libutils::error();
        std::cerr << "red size is not recognized." << std::endl;
        return false;
    }

    img.compressed = false;
    if (!img.allocate()) {
        libutils::error();
        std::cerr << "grTextureObject::GetTextureImage() img allocate fail." << std::endl;
        return false;
    }
    // The record may be a window with its own alignment: GL writes where
    // the record reads.
    grPixelStorePack(img.store);
    grPixelStorePack(img.window);
    // NOTE: the queried red type goes to GL as the pixel type unchanged. For
    // normalised textures that is GL_UNSIGNED_NORMALIZED, which GL refuses:
    // such a read gives the record's size and description, not its texels.
    source.pixels(GLenum(red_type), img);
    return true;
}

}  // namespace

bool grTextureObject::GetTexImage(GLenum target, GLint level, image2d_t& img) const
{
    return read_level({target, 0, level}, img);
}

bool grTextureObject::GetTextureImage(GLint level, image2d_t& img) const
{
    if (!m_mgr) {
        img.clear();
        return false;
    }
    return read_level({0, m_mgr->name, level}, img);
}

// ---- Parameter records

void grTexParameter(texparameter1d_t const* parm)
{
    if (!parm) return;
    glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_MIN_FILTER, GLint(parm->minfilter));
    glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_MAG_FILTER, GLint(parm->magfilter));
    glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_WRAP_S, GLint(parm->wrap_s));
}

void grTexParameter(texparameter2d_t const* parm)
{
    if (!parm) return;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GLint(parm->minfilter));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GLint(parm->magfilter));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GLint(parm->wrap_s));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GLint(parm->wrap_t));
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, parm->anisotropy);
}

void grTexParameter(texparametercubemap_t const* parm)
{
    if (!parm) return;
    grPrintError("grTexParameter(cubemap) start");
    glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER, GLint(parm->minfilter));
    glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER, GLint(parm->magfilter));
    if (is_GL_EXT_texture_filter_anisotropic_supported)
        glTexParameterf(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAX_ANISOTROPY_EXT, parm->anisotropy);
    grPrintError("grTexParameter(cubemap) end");
}

void grTexParameter(texparameter3d_t const* parm)
{
    if (!parm) return;
    glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MIN_FILTER, GLint(parm->minfilter));
    glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MAG_FILTER, GLint(parm->magfilter));
    glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_WRAP_S, GLint(parm->wrap_s));
    glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_WRAP_T, GLint(parm->wrap_t));
    glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_WRAP_R, GLint(parm->wrap_r));
    if (is_GL_EXT_texture_filter_anisotropic_supported)
        glTexParameterf(GL_TEXTURE_3D, GL_TEXTURE_MAX_ANISOTROPY_EXT, parm->anisotropy);
}

void grTexParameter(GLenum target, color3a_t const* color)
{
    if (!color) return;
    glTexParameterfv(target, GL_TEXTURE_BORDER_COLOR, &color->r);
}

}  // namespace libgr
