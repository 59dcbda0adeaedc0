// Half-size reductions of 8-bit images: a 2 x 2 box filter, and the reading
// of a Bayer mosaic as one full-colour pixel for each 2 x 2 cell, which gives
// a half-size colour picture without demosaicing.
#ifndef ZANOVIEW_IMAGE_SCALEDOWN_H
#define ZANOVIEW_IMAGE_SCALEDOWN_H

#include "image/image.h"

namespace libgr {

// All five take the destination first and return true on success.
//
// dst is rebuilt: it takes src's description, half its width and height
// (rounded down: 5 x 3 gives 2 x 1, the last column and the top row unused;
// 1 x 1 gives 0 x 0 and true), and new bytes; its store and window stay.
// Components are summed as integers and shifted, with no rounding term.
// Type and bits aren't looked at: every component is taken to be a byte.
// A refused format writes "scaledown(): <format>: unsupported format." on
// the error stream, after dst has been given its (undefined) pixels; a
// failed allocation writes "scaledown(): allocate() fail.". A source whose
// window reaches past its bytes is refused without a word, unread.
// dst and src must be different records.

// The box filter, for GRAYSCALE, RGB, BGR, RGBA and BGRA: an RGB quad whose
// channel holds 1, 2, 3, 4 gives 2.
// NOTE: two reads look wrong and are meant; byte-exact tests pin them, so
// don't "fix" them. With four components the second pixel of a pair is read
// 3 bytes on, as for three: output byte c of pixel x is the sum of bytes
// 8x + c and 8x + 3 + c of both rows, >> 2. In grayscale the window slides
// one source pixel a step, so output x sums pixels x and x + 1 of both rows
// and the output shows the left half of the source.
bool scaledown(image2d_t& dst, image2d_t const& src);

// The Bayer cells, named by their colours on the first row in memory (the
// lower one in the picture) then the second: GRBG is G R over B G. They
// take RGB and RGBA, with the sample of each cell position in the channel
// that position carries, and give red, green (the mean of the two greens,
// truncated: 255 and 254 give 254) and blue; GRAYSCALE goes through the box
// filter. Anything else is refused, BGR included.
// NOTE: RGBA is read at the byte offsets of the RGB case within 8-byte
// pairs, and its alpha is the box filter's fourth component; pinned like
// the box filter's reads.
bool scaledownGRBG(image2d_t& dst, image2d_t const& src);
bool scaledownGBRG(image2d_t& dst, image2d_t const& src);
bool scaledownRGGB(image2d_t& dst, image2d_t const& src);
bool scaledownBGGR(image2d_t& dst, image2d_t const& src);

}  // namespace libgr

#endif
