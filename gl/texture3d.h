// The 3-D texture image object: a stack of pictures per mipmap level.
#ifndef ZANOVIEW_GL_TEXTURE3D_H
#define ZANOVIEW_GL_TEXTURE3D_H

#include <cstdint>
#include <vector>

#include "glext/glext.h"

#include "geometry/color.h"
#include "gl/texture.h"
#include "image/image.h"

namespace libgr {

// The pictures of a 3-D texture, one record a level, sent into the texture
// bound to GL_TEXTURE_3D. Works as grTexture2D does, with these
// differences: mipmaps come from GL_GENERATE_MIPMAP_SGIS or GLU (never GL
// 3.0's glGenerateMipmap), and a size makes a cube of side real_max on all
// three axes.
// NOTE: two oddities are kept as they have always been, with no caller in
// the viewer to mind them. Without mipmaps and with a size, each level is
// allocated with sides of 0 (2 at level 0 for a zero size with a border),
// so that the sub-image that follows has no room. And the border colour is
// applied, with or without a border, to GL_TEXTURE_CUBE_MAP rather than to
// GL_TEXTURE_3D.
class grTexture3D : public grTexturableImageGL {
public:
    grTexture3D() = default;
    grTexture3D(grTexture3D const&) = default;
    grTexture3D& operator=(grTexture3D const&) = default;
    ~grTexture3D() override = default;

    std::uint64_t Dimension() const override { return 3; }
    void Load() const override;
    GLenum GetInternalFormat() const override;

    // As grTexture2D::setImage and setImages, with the size from widths,
    // heights and depths.
    void setImage(image3d_t const& img, unsigned int size, unsigned long level);
    void setImages(std::vector<image3d_t> const& imgs, unsigned int size, unsigned long level);
    void setInternalCompression(bool on) { m_internalcompression = on; }
    void setBuildMipmap(bool on) { m_buildmipmap = on; }
    void setBorder(bool on) { m_border = on; }
    // Not owned. Null: none.
    void setTextureParameter(texparameter3d_t const* parm) { m_texparameter = parm; }
    void setBorderColor(color3a_t const* color) { m_bordercolor = color; }
    void clear() { m_images.clear(); }

    std::vector<image3d_t> const& getImages() const { return m_images; }
    std::uint32_t getSize() const { return m_size; }

private:
    std::vector<image3d_t> m_images;  // element i is level i
    std::uint32_t m_size = 0;         // pixels; 0: the exact size of the picture
    bool m_internalcompression = false;
    bool m_buildmipmap = false;
    bool m_border = false;
    texparameter3d_t const* m_texparameter = nullptr;  // not owned
    color3a_t const* m_bordercolor = nullptr;          // not owned
};

}  // namespace libgr

#endif
