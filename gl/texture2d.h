// The 2-D texture image object, which every tile of every picture goes through.
//
// Also the guard that lends an index image's palette to GL's pixel maps for
// one upload.
#ifndef ZANOVIEW_GL_TEXTURE2D_H
#define ZANOVIEW_GL_TEXTURE2D_H

#include <cstdint>
#include <vector>

#include "glext/glext.h"

#include "geometry/color.h"
#include "gl/texture.h"
#include "image/image.h"

namespace libgr {

// The pictures of a 2-D texture, one record a mipmap level, and every way of
// sending them into the texture bound to GL_TEXTURE_2D: exact size or the
// lower left corner of a power-of-two square, with mipmaps made by GL 3.0,
// by GL_SGIS_generate_mipmap or by GLU, in that order of preference.
//
// Pixels are never copied on the way: a record that is a window into a
// larger picture goes up from where it lies, told to GL by the unpack
// parameters of its store and window. Those parameters are left as the last
// level set them, so a record without a store takes the alignment of the
// last record that had one.
class grTexture2D : public grTexturableImageGL {
public:
    grTexture2D() = default;
    // Copies share the pictures' bytes, as record copies do.
    grTexture2D(grTexture2D const&) = default;
    grTexture2D& operator=(grTexture2D const&) = default;
    ~grTexture2D() override = default;

    std::uint64_t Dimension() const override { return 2; }
    // Creates storage and pixels in the texture bound to GL_TEXTURE_2D, then
    // applies the parameter record (and the border colour, with a border).
    // A level whose description GL can't take is left out, reported on the
    // error stream; nothing is returned.
    void Load() const override;
    // Sends the pixels into the storage a Load made, allocating nothing; the
    // records must have kept their sizes. With mipmaps, the levels are made
    // again (on the GLU route, with new storage).
    void Reload() const override;
    GLenum GetInternalFormat() const override;

    // `img` becomes level `level`; levels above it are dropped, missing ones
    // below it are left empty. `size` 0: the texture is exactly the picture.
    // Otherwise the texture is a square of the smallest power of two that
    // holds `size` and the picture's sides, and the picture lies in its lower
    // left corner, the rest undefined: a 300x200 picture with size 256 goes
    // into a 512x512 texture.
    void setImage(image2d_t const& img, unsigned int size, unsigned long level);
    // The pictures become levels `level` on; the vector only grows, so old
    // levels above them stay. `size` as for setImage, over all of them.
    void setImages(std::vector<image2d_t> const& imgs, unsigned int size, unsigned long level);
    // Internal compression of plain alpha pictures, where GL offers it.
    void setInternalCompression(bool on) { m_internalcompression = on; }
    // Generate the levels below level 0; given levels above 0 replace them.
    void setBuildMipmap(bool on) { m_buildmipmap = on; }
    // A border of one texel around the texture.
    void setBorder(bool on) { m_border = on; }
    // Not owned; applied after each upload. Null: none.
    void setTextureParameter(texparameter2d_t const* parm) { m_texparameter = parm; }
    // Not owned; applied after each upload when there is a border. Null: none.
    void setBorderColor(color3a_t const* color) { m_bordercolor = color; }
    // Drops the pictures (and with them their bytes, unless shared); the GL
    // texture stays filled and the settings stay.
    void clear() { m_images.clear(); }

    std::vector<image2d_t> const& getImages() const { return m_images; }
    // 0, or the side the square is made for before rounding up: 300 for a
    // 300x200 picture given size 256.
    std::uint32_t getSize() const { return m_size; }

private:
    // The filter record and, with a border, its colour, after an upload.
    void parameters() const;

    std::vector<image2d_t> m_images;  // element i is level i
    std::uint32_t m_size = 0;         // pixels; 0: the exact size of the picture
    bool m_internalcompression = false;
    bool m_buildmipmap = false;
    bool m_border = false;
    texparameter2d_t const* m_texparameter = nullptr;  // not owned
    color3a_t const* m_bordercolor = nullptr;          // not owned
};

// Lends a palette to GL's index-to-RGB pixel maps and turns GL_MAP_COLOR on
// for its lifetime, so that an index image uploads as colours:
//   { grPalette keep; keep.Load(img.palette); glTexImage2D(...); }
class grPalette {
public:
    grPalette() = default;
    grPalette(grPalette const&) = delete;
    grPalette& operator=(grPalette const&) = delete;
    // Turns GL_MAP_COLOR off again if Load turned it on.
    ~grPalette();

    // Sets the red, green and blue index maps from `palette` and turns
    // GL_MAP_COLOR on. An empty palette changes nothing.
    void Load(palette_t const& palette);

    bool loaded = false;
};

}  // namespace libgr

#endif
