// The cube-map texture image object: six square faces per mipmap level.
#ifndef ZANOVIEW_GL_TEXTURECUBE_H
#define ZANOVIEW_GL_TEXTURECUBE_H

#include <array>
#include <cstdint>
#include <vector>

#include "glext/glext.h"

#include "geometry/color.h"
#include "gl/texture.h"
#include "image/image.h"

namespace libgr {

// Six faces, in the order of GL's face targets: +X, -X, +Y, -Y, +Z, -Z.
using cubefaces_t = std::array<image2d_t, 6>;

// The faces of a cube map, six consecutive records a level (element
// 6 * level + face), sent into the texture bound to GL_TEXTURE_CUBE_MAP.
// With mipmaps, level 0 is uploaded and the rest generated (GL 3.0, then
// GL_SGIS_generate_mipmap, then GLU); given levels above 0 are left out.
// The border colour is never applied.
// NOTE: without mipmaps, level i of each face is allocated as a square of
// the power of two for the size (0 for a size of 0), and the picture is then
// sent into level 0 whatever i is. So with a size of 0 the faces have no
// room and GL refuses the pictures, the texture staying incomplete. The
// photo frame's normalisation map goes up exactly this way; kept so that
// its combiner path keeps the look it has always had.
class grTextureCubeMap : public grTexturableImageGL {
public:
    grTextureCubeMap() = default;
    grTextureCubeMap(grTextureCubeMap const&) = default;
    grTextureCubeMap& operator=(grTextureCubeMap const&) = default;
    ~grTextureCubeMap() override = default;

    std::uint64_t Dimension() const override { return 6; }
    void Load() const override;
    GLenum GetInternalFormat() const override;

    // The faces become level `level`: the records end exactly after them,
    // missing levels below left empty. `size` 0: each face its exact size;
    // otherwise the largest of `size` and all sides of the six.
    void setImage(image2d_t const (&faces)[6], unsigned int size, unsigned long level);
    // The sets become levels `level` on; the records only grow, as in 2-D.
    void setImages(std::vector<cubefaces_t> const& levels, unsigned int size, unsigned long level);
    void setInternalCompression(bool on) { m_internalcompression = on; }
    void setBuildMipmap(bool on) { m_buildmipmap = on; }
    void setBorder(bool on) { m_border = on; }
    // Not owned. Null: none.
    void setTextureParameter(texparametercubemap_t const* parm) { m_texparameter = parm; }
    // Kept, though no upload applies it.
    void setBorderColor(color3a_t const* color) { m_bordercolor = color; }
    void clear() { m_images.clear(); }

    std::vector<image2d_t> const& getImages() const { return m_images; }
    std::uint32_t getSize() const { return m_size; }

private:
    std::vector<image2d_t> m_images;  // element 6 * level + face
    std::uint32_t m_size = 0;         // pixels; 0: the exact size of each face
    bool m_internalcompression = false;
    bool m_buildmipmap = false;
    bool m_border = false;
    texparametercubemap_t const* m_texparameter = nullptr;  // not owned
    color3a_t const* m_bordercolor = nullptr;               // not owned, never applied
};

}  // namespace libgr

#endif
