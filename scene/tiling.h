// Cutting a picture into square power-of-two tiles and drawing the tiles
// as one rectangle.
//
// The grid starts at the picture's first pixel, its bottom-left corner, and
// every tile has the same square texture size; the tiles of the right column
// and the top row are only partly filled, and their texture coordinates stop
// where the picture stops.
#ifndef ZANOVIEW_SCENE_TILING_H
#define ZANOVIEW_SCENE_TILING_H

#include <cstdint>
#include <functional>
#include <vector>

#include "geometry/vector.h"
#include "gl/texture.h"
#include "gl/texture2d.h"
#include "image/image.h"

namespace zanolib {

// The tile images of one picture.
struct multi_square_image_t {
    // Row by row from the bottom, left to right: index = row * m_cols + column.
    std::vector<libgr::image2d_t> m_squares;
    libgr::e_image_format_t m_format = libgr::e_image_format_t(0);
    libgr::e_image_type_t m_type = libgr::e_image_type_t(0);
    libgr::e_image_bits_t m_bits = libgr::e_image_bits_t(0);
    std::uint32_t m_cols = 0;
    std::uint32_t m_rows = 0;
    // The picture's size in tile sides: 600x300 in tiles of 256 is
    // (2.34375, 1.171875).
    libgr::direction2_t m_size{0.0f, 0.0f};

    // m_cols * m_rows empty tiles; false when they could not be had.
    bool allocate();
    // No tiles; m_size and the format fields stay.
    void clear();
};

// The tile textures of one picture, and their drawing.
struct multi_texture_object_t {
    std::vector<libgr::grTexture2D> m_textures;     // one per tile, same index
    std::vector<libgr::grTextureObject> m_texobjs;  // GL names; empty until Preload
    // Not owned: the picture's record, so that a change of its filters
    // reaches the tiles at the next compile of the display list.
    libgr::texparameter2d_t const* m_texparm = nullptr;
    std::uint32_t m_cols = 0;
    std::uint32_t m_rows = 0;
    libgr::direction2_t m_size{0.0f, 0.0f};  // tile sides, as in the tile images

    void setTexParm(libgr::texparameter2d_t const* parm) { m_texparm = parm; }
    // Creates and fills the GL textures; needs a current context. Names the
    // last Unload let go are filled again before new ones are made.
    void Preload();
    // The same, telling `rows_done` after each row of tiles how many of the
    // picture's rows, from the bottom, are now in textures.
    void Preload(std::function<void(std::uint32_t rows)> const& rows_done);
    // Unbinds the textures and hands their names, storage and all, to the
    // next Preload of any picture; that Preload deletes those it can't use.
    void Unload();
    // True when every preloaded texture is resident; textures not yet
    // preloaded don't count against it.
    bool isResident() const;
    // The tiles as one rectangle between the two corners, tile (0, 0) at the
    // bottom left, with textures replacing the colour.
    void draw_image(libgr::position2_t const& btm_lft, libgr::position2_t const& top_rit) const;
};

// Cuts `in` into square tiles of at most `maxsize` pixels a side. With
// `use_window` each tile is a window onto in's bytes (nothing is copied),
// otherwise each gets its own copy. 600x300 at 256: 3x2 tiles of 256, the
// right column 88 pixels wide, the top row 44 high. Compressed images are
// refused.
bool rectangle_to_squares(multi_square_image_t& out, libgr::image2d_t& in, unsigned long maxsize,
                          bool use_window);

// One 2-D texture description per tile, all of one square size, with
// mipmaps built on upload.
bool squares_to_texobjs(multi_texture_object_t& out, multi_square_image_t const& in);

}  // namespace zanolib

#endif
