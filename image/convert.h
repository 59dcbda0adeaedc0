// Pixel conversions between image records: channel order, alpha, palette
// expansion, deep copy, colour fills, gray, quarter turns and windows. No GL.
#ifndef ZANOVIEW_IMAGE_CONVERT_H
#define ZANOVIEW_IMAGE_CONVERT_H

#include <cstdint>

#include "geometry/color.h"
#include "image/image.h"

namespace libgr {

// Every function takes the destination first and returns true on success.
// The destination must be another record than the source: the conversions
// read the source while they give the destination new bytes. Where a
// conversion has nothing to do, or can't do it, the destination often just
// shares the source (dst = src) and the result says which it was, so a
// caller that ignores it still goes on with a usable, unconverted image.
// Records whose window reaches past their bytes, and compressed records,
// are refused rather than read.

// BGR and BGRA with 8-bit integer components become RGB and RGBA. dst rows
// are packed at the source's row bytes rounded up to 4, whatever dst's
// window and store say. A source already RGB or RGBA is shared, with true;
// BGR with 16 bits, or any other format, is shared with false.
bool bgr2rgb(image2d_t& dst, image2d_t const& src);
// The mirror image. A three-component result points at a private store of
// alignment 4; a four-component one keeps the store dst had.
bool rgb2bgr(image2d_t& dst, image2d_t const& src);

// RGB to RGBA with alpha 255, and back with the alpha dropped; both for
// 8-bit integer components, with rows at dst.rowsize() and a private store
// of alignment 4. A source already in the wanted format is shared (true).
bool rgb2rgba(image2d_t& dst, image2d_t const& src);
bool rgba2rgb(image2d_t& dst, image2d_t const& src);

// An IMAGE_FORMAT_INDEX image of 1, 4 or 8 bits to RGB/UINT/8 through its
// palette, taking the high byte of each 16-bit entry: 0x12AB gives 0x12.
// 1-bit rows are read from the top bit down, 4-bit rows high half first.
// An index the palette doesn't hold gives black: a file that counts 16
// colours and uses 200 still opens. Anything not indexed is shared, with
// true; 2-bit indices fail.
bool index2rgb(image2d_t& dst, image2d_t const& src);

// The deep copy: dst gets its own bytes, the source's description, sizes
// and store, no window, rowbyte() bytes a row with the padding zeroed. The
// palette stays behind. A compressed source fails and leaves dst alone.
bool copy(image2d_t& dst, image2d_t const& src);

// Sets every pixel of `img` (of its window only) to `color`; RGB and RGBA,
// UINT, 8 bits. A channel becomes a byte as min(v, 1) * 255 + 0.5,
// truncated; below 0 gives 0 and NaN gives 255: 2.0 is 255, -1.0 is 0.
// Works in place, so the bytes must be writable: not a picture still in a
// read-only file mapping. Refusals are written to the error stream.
bool fillcolor(image2d_t& img, color3a_t const& color);
// Adds `color` to the colour channels of every pixel, in the 0-to-1 range
// and clamped as above: 255 plus 0.5 stays 255, a negative colour darkens.
// Alpha is never touched.
bool addcolor(image2d_t& img, color3a_t const& color);

// RGB/UINT/8 to 8-bit gray as 0.299 R + 0.587 G + 0.114 B, truncated:
// (255, 0, 0) gives 76. The source is read from its first byte with rows
// aligned to 4, so a windowed source is read as if it had no window. Any
// other source is named on the error stream: "IMAGE_FORMAT_BGR: image
// format is not RGB.".
bool monochrome(image2d_t& dst, image2d_t const& src);

// Turns by `count` quarter turns clockwise (0 to 3; 4 and up fail and leave
// dst alone). Rows being bottom-up, count 1 takes the top left corner to the
// top right, and 1 and 3 swap width and height: 3 x 2 gives 2 x 3. 0 shares
// the source. Pixels under 8 bits are not moved, and the palette is dropped.
bool rotate(unsigned long count, image2d_t& dst, image2d_t const& src);

// dst becomes a window onto src's bytes, no copy: its origin is (x, y) from
// src's own window origin, and it is clipped to src's width and height
// measured from the new origin. On a 600 x 300 picture, (512, 0, 256, 256)
// gives a window 88 x 256. The sums are unsigned 32-bit arithmetic: an
// origin beyond the width wraps the clip around and the given width stays,
// and a window of a window clips against the outer window's own width.
// src is not const because its block gains a holder. Compressed: false.
bool makewindow(image2d_t& dst, image2d_t& src, int x, int y, unsigned int width,
                unsigned int height);

// A read-only look at an image's bytes with rows aligned to 4 from the first
// byte, knowing no window or store: what monochrome reads through.
template <class T>
struct image2d_reader_t {
    libutils::ofsvector<T, libutils::alloc_mmap_unix> m_data;
    std::uint64_t width = 0;   // pixels
    std::uint64_t height = 0;  // rows
    image_desc_t desc{};

    // Shares img's bytes and takes its sizes and description. A compressed
    // image empties the reader and gives false.
    bool setimage(image2d_t const& img);
    // Bytes from one row to the next: 3 x 8-bit, width 5 gives 16.
    std::uint64_t rowsize() const;
    // Those rows with the description's pixel size and no window.
    pixel_layout_t layout() const;
    // Whether every pixel the reader can address lies in its bytes.
    bool holds_pixels() const;
    // The first byte of pixel (x, y); no bounds check.
    T const* pixel(std::uint64_t x, std::uint64_t y) const;
};

extern template struct image2d_reader_t<unsigned char>;

}  // namespace libgr

#endif
