// Texture image objects, the GL texture names that hold them, and filter records.
//
// A texture comes in two halves: an image object knows its pictures and
// uploads them into whatever texture is bound, and a texture object owns a
// GL name, binds it and has the image object fill it.
//
// The scene keeps both side by side: it sets the images, calls
// grTextureObject::Preload once, and brackets each draw with Load and Unload.
// Everything here needs a current GL context, destruction of the last share
// of a name included.
#ifndef ZANOVIEW_GL_TEXTURE_H
#define ZANOVIEW_GL_TEXTURE_H

#include <cstdint>

#include "glext/glext.h"

#include "geometry/color.h"
#include "utils/refobject.h"
#include "image/image.h"

namespace libgr {

// ---- The class family

// Anything that can be made the texture of the next draw.
class grTexturable {
public:
    // 1, 2, 3, or 6 for a cube map; 0 when unknown.
    virtual std::uint64_t Dimension() const = 0;
    virtual void Load() const = 0;
    // Sends the pixels again; by default a fresh Load.
    virtual void Reload() const { Load(); }
    virtual ~grTexturable() = default;
};

class grTexturableImage : public grTexturable {};

// The images side: pictures and how to upload them into the texture bound
// at the moment of the call. Holds no GL name.
class grTexturableImageGL : public grTexturableImage {
public:
    // The internal format the first image loads as; GL_INVALID_VALUE when
    // there is no image or its description can't become a texture.
    virtual GLenum GetInternalFormat() const = 0;
};

// The name side: a GL texture name that can be bound for drawing.
class grTexturableObject : public grTexturable {
public:
    virtual bool isPreload() const = 0;
    virtual void Unload() const = 0;
};

// ---- Targets

// 1 GL_TEXTURE_1D, 2 GL_TEXTURE_2D, 3 GL_TEXTURE_3D, 6 GL_TEXTURE_CUBE_MAP;
// every other dimension, 0, 4, 5 and above 6, GL_INVALID_VALUE.
GLenum grTextureDimToEnum(unsigned long dim);
// The inverse: GL_TEXTURE_CUBE_MAP is 6; any other value 0.
std::uint64_t grTextureEnumToDim(GLenum target);

// ---- The name

// Owns one GL texture name, deleted with the manager once generated. Shared
// through libutils::refobject, so that copies of a texture object use one
// texture.
struct grTextureMgr {
    GLuint name = 0;  // 0 until generated
    bool created = false;

    grTextureMgr() = default;
    grTextureMgr(grTextureMgr const&) = delete;
    grTextureMgr& operator=(grTextureMgr const&) = delete;
    ~grTextureMgr();
};

// A GL texture name bound to the target of the image object it was
// preloaded with. Copies share the name; the last one to go deletes it.
class grTextureObject : public grTexturableObject {
public:
    grTextureObject() = default;
    grTextureObject(grTextureObject const& other) = default;
    grTextureObject& operator=(grTextureObject const& other) = default;
    ~grTextureObject() override = default;

    // Dimension of the target; 0 before Preload.
    std::uint64_t Dimension() const override;
    // Binds the name to its target for drawing, and enables the target where
    // GL is older than 3.0. Uploads nothing; does nothing before Preload.
    void Load() const override;
    // Uploads the image again into the same name and storage, so that an
    // image of the same size replaces the pixels. Nothing before Preload.
    void Reload() const override;
    bool isPreload() const override { return m_preloaded; }
    // Binds 0 to the target, and disables it where GL is older than 3.0.
    void Unload() const override;

    // Makes a name on first use, binds it and has `image` upload into it.
    // Preloading again keeps the name and uploads afresh. Not owned:
    // `image` must outlive this object and its copies.
    void Preload(grTexturableImageGL const* image);
    // Lets go of this share of the name; a copy keeps it alive. An object
    // never preloaded is left alone.
    void clear();

    // False without a name. Drivers that never evict say true.
    bool isResident() const;
    // The name as an image unit's image, in the image object's internal
    // format; nothing without a name.
    void BindImage(GLuint unit, GLint level, GLenum access) const;
    void UnbindImage(GLuint unit) const;

    // A level read back as RGBA in the type of the texture's red channel
    // (FLOAT for normalised textures), into `img` as its window and store
    // say. GetTexImage reads the texture bound to `target`, GetTextureImage
    // this object's own name (GL 4.5). False, with `img` emptied, for a red
    // type that is neither integer nor float, a red size that has no
    // IMAGE_BITS_ value, or no room.
    bool GetTexImage(GLenum target, GLint level, image2d_t& img) const;
    bool GetTextureImage(GLint level, image2d_t& img) const;

private:
    libutils::refobject<grTextureMgr> m_mgr;
    GLenum m_target = GL_INVALID_VALUE;  // until Preload
    bool m_preloaded = false;
    grTexturableImageGL const* m_image = nullptr;  // not owned
};

// ---- Parameter records
//
// Plain values applied to the texture bound at the moment; holders keep a
// pointer to one, usually a constant of static lifetime.

struct texparameter1d_t {
    GLenum minfilter;
    GLenum magfilter;
    GLenum wrap_s;
};

struct texparameter2d_t {
    GLenum minfilter;
    GLenum magfilter;
    GLenum wrap_s;
    GLenum wrap_t;
    float anisotropy;  // 1.0: none
};

struct texparametercubemap_t {
    GLenum minfilter;
    GLenum magfilter;
    float anisotropy;
};

struct texparameter3d_t {
    GLenum minfilter;
    GLenum magfilter;
    GLenum wrap_s;
    GLenum wrap_t;
    GLenum wrap_r;
    float anisotropy;
};

constexpr texparameter1d_t texparameter1d(GLenum minfilter, GLenum magfilter, GLenum wrap_s)
{
    return {minfilter, magfilter, wrap_s};
}
constexpr texparameter2d_t texparameter2d(GLenum minfilter, GLenum magfilter, GLenum wrap_s,
                                          GLenum wrap_t, float anisotropy)
{
    return {minfilter, magfilter, wrap_s, wrap_t, anisotropy};
}
constexpr texparametercubemap_t texparametercubemap(GLenum minfilter, GLenum magfilter,
                                                    float anisotropy)
{
    return {minfilter, magfilter, anisotropy};
}
constexpr texparameter3d_t texparameter3d(GLenum minfilter, GLenum magfilter, GLenum wrap_s,
                                          GLenum wrap_t, GLenum wrap_r, float anisotropy)
{
    return {minfilter, magfilter, wrap_s, wrap_t, wrap_r, anisotropy};
}

// Each applies its record to the texture bound to its target: filters, then
// wraps, then anisotropy. A null record does nothing. The 1-D record has no
// anisotropy and the cube map no wrap.
// NOTE: the 2-D overload sets anisotropy without asking for
// GL_EXT_texture_filter_anisotropic, so a driver without it reports an
// error on every tile; the cube-map and 3-D overloads ask first.
void grTexParameter(texparameter1d_t const* parm);
void grTexParameter(texparameter2d_t const* parm);
void grTexParameter(texparametercubemap_t const* parm);
void grTexParameter(texparameter3d_t const* parm);
// The border colour of the texture bound to `target`; a null colour does
// nothing.
void grTexParameter(GLenum target, color3a_t const* color);

}  // namespace libgr

#endif
