// The rectangle texture image object: one picture of any size, addressed in
// texels rather than from 0 to 1.
#ifndef ZANOVIEW_GL_TEXTURERECT_H
#define ZANOVIEW_GL_TEXTURERECT_H

#include <cstdint>

#include "glext/glext.h"

#include "gl/texture.h"
#include "image/image.h"

namespace libgr {

// One picture sent into the texture bound to GL_TEXTURE_RECTANGLE, exactly
// as it lies: no mipmaps, no compression route, no unpack parameters, so the
// record must be a whole picture with the alignment GL is set to.
// NOTE: Dimension() is 2, so grTextureObject::Preload binds its name to
// GL_TEXTURE_2D while the upload goes to whatever GL_TEXTURE_RECTANGLE has
// bound, and the parameter record, being a 2-D one, is applied to
// GL_TEXTURE_2D. Kept as it has always been; nothing in the viewer uses
// this class.
class grTextureRectangle : public grTexturableImageGL {
public:
    grTextureRectangle() = default;
    grTextureRectangle(grTextureRectangle const&) = default;
    grTextureRectangle& operator=(grTextureRectangle const&) = default;
    ~grTextureRectangle() override = default;

    std::uint64_t Dimension() const override { return 2; }
    // Storage and pixels, then the parameters; nothing at all for a picture
    // without bytes, or one whose description GL can't take.
    void Load() const override;
    // The pixels into the storage Load made, then the parameters.
    void Reload() const override;
    GLenum GetInternalFormat() const override;

    void setImage(image2d_t const& img) { m_image = img; }
    // Not owned. Null: none.
    void setTextureParameter(texparameter2d_t const* parm) { m_texparameter = parm; }
    void clear() { m_image.clear(); }

    image2d_t const& getImage() const { return m_image; }

private:
    // The one body of Load and Reload: `update` replaces the pixels only.
    void upload(bool update) const;

    image2d_t m_image;
    texparameter2d_t const* m_texparameter = nullptr;  // not owned
};

}  // namespace libgr

#endif
