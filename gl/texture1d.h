// The 1-D texture image object: a row of texels per mipmap level.
#ifndef ZANOVIEW_GL_TEXTURE1D_H
#define ZANOVIEW_GL_TEXTURE1D_H

#include <cstdint>
#include <vector>

#include "glext/glext.h"

#include "geometry/color.h"
#include "gl/texture.h"
#include "image/image.h"

namespace libgr {

// The pictures of a 1-D texture, one record a level, sent into the texture
// bound to GL_TEXTURE_1D. Works as grTexture2D does, with these differences:
// mipmaps come from GL_GENERATE_MIPMAP_SGIS or GLU (never GL 3.0's
// glGenerateMipmap); only level 0 of a mipmapped texture is converted with
// internal compression; no GL error checkpoints; and the border colour is
// applied whether or not there is a border.
// NOTE: without mipmaps and with a size, level i is allocated with a width
// of 2 at level 0 with a border, plus 2 more with a border when i equals
// the picture's width, else 0: not the picture's width. Kept as it has
// always been; nothing in the viewer asks for it.
class grTexture1D : public grTexturableImageGL {
public:
    grTexture1D() = default;
    grTexture1D(grTexture1D const&) = default;
    grTexture1D& operator=(grTexture1D const&) = default;
    ~grTexture1D() override = default;

    std::uint64_t Dimension() const override { return 1; }
    void Load() const override;
    GLenum GetInternalFormat() const override;

    // As grTexture2D::setImage and setImages, with the size from widths.
    void setImage(image1d_t const& img, unsigned int size, unsigned long level);
    void setImages(std::vector<image1d_t> const& imgs, unsigned int size, unsigned long level);
    void setInternalCompression(bool on) { m_internalcompression = on; }
    void setBuildMipmap(bool on) { m_buildmipmap = on; }
    void setBorder(bool on) { m_border = on; }
    // Not owned. Null: none.
    void setTextureParameter(texparameter1d_t const* parm) { m_texparameter = parm; }
    void setBorderColor(color3a_t const* color) { m_bordercolor = color; }
    void clear() { m_images.clear(); }

    std::vector<image1d_t> const& getImages() const { return m_images; }
    std::uint32_t getSize() const { return m_size; }

private:
    std::vector<image1d_t> m_images;  // element i is level i
    std::uint32_t m_size = 0;         // pixels; 0: the exact width of the picture
    bool m_internalcompression = false;
    bool m_buildmipmap = false;
    bool m_border = false;
    texparameter1d_t const* m_texparameter = nullptr;  // not owned
    color3a_t const* m_bordercolor = nullptr;          // not owned
};

}  // namespace libgr

#endif
