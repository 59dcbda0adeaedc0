// The mipmap levels of a picture that sits in the lower left corner of a
// square power-of-two texture, averaged here on the CPU, and the texels of
// level 0 that lie beyond the picture. No GL.
//
// The square's texels beyond the picture continue its last column and its
// last row, so that every level, however far it averages, sees only the
// picture's own colours: a light photo keeps light edges when it is
// minified, instead of a dark hairline where undefined texels were mixed in.
#ifndef ZANOVIEW_IMAGE_MIPMAP_H
#define ZANOVIEW_IMAGE_MIPMAP_H

#include <cstdint>
#include <vector>

#include "image/image.h"

namespace libgr {

// Bytes of one pixel of `img` when each of its components is one byte that
// can be averaged on its own: 1 to 4 for 8-bit gray, gray with alpha, RGB,
// BGR, RGBA and BGRA. 0 for anything else (packed, wider or compressed
// pixels, indices, YCbCr422), and for a record whose window reaches past
// its bytes, so that nothing outside them is ever read.
unsigned averageable_pixel_bytes(image2d_t const& img);

// A square level in a buffer of its own: `side` rows of `side` pixels,
// each row padded to the alignment it was made with.
struct square_level_t {
    std::uint32_t side = 0;  // pixels
    unsigned char const* bytes = nullptr;
};

// Levels 1 and down to the 1 x 1 level of the square of side `side` (a
// power of two, at least as large as `img`'s width and height) that holds
// `img` in its lower left corner, continued beyond it. Each texel is the
// rounded mean of the 2 x 2 texels under it. `pixel` is
// averageable_pixel_bytes(img), which must not be 0; rows are padded to
// `alignment` (1, 2, 4 or 8). The levels point into `storage`, which is
// reused from call to call so that a picture's tiles need no fresh memory;
// empty when `pixel` is out of range or the picture doesn't fit the square.
std::vector<square_level_t> average_levels(image2d_t const& img, std::uint32_t side,
                                                  unsigned pixel, unsigned alignment,
                                                  std::vector<unsigned char>& storage);

// The part of level 0 beyond the picture, as two rectangles of the
// picture's own pixel bytes: `right` the columns from `img.m_width` to
// `side` beside the picture's rows, `top` whole rows of the square above
// them. Either may be empty (0 wide or 0 high). Rows padded to `alignment`.
struct edge_strips_t {
    std::uint32_t right_width = 0, right_height = 0;  // pixels
    std::uint32_t top_width = 0, top_height = 0;      // pixels
    unsigned char const* right = nullptr;
    unsigned char const* top = nullptr;
};

// Any whole-byte pixel will do here: the bytes are repeated, not averaged.
// Nothing (both strips empty) when the picture fills the square, has no
// whole-byte pixels, or its window reaches past its bytes.
edge_strips_t continue_edges(image2d_t const& img, std::uint32_t side, unsigned alignment,
                             std::vector<unsigned char>& storage);

}  // namespace libgr

#endif
