// Image records: a share of pixel bytes and what is needed to read them,
// laid out as OpenGL unpacks pixels, so that a record goes from a decoder to
// the tile cutter and to a texture without a copy. Row 0 is the bottom row.
#ifndef ZANOVIEW_IMAGE_IMAGE_H
#define ZANOVIEW_IMAGE_IMAGE_H

#include <cstdint>

#include "utils/alloc.h"
#include "utils/refvector.h"
#include "utils/refvector2.h"

#include "image/enums.h"

namespace libgr {

// What the bytes mean. A small value: pass and copy it by value.
struct image_desc_t {
    e_image_format_t format;
    e_image_type_t type;
    e_image_bits_t bits;

    // Bits of one pixel. A packed `bits` decides alone, whatever the format:
    // RGB with IMAGE_BITS_R5G6B5 is 16, RGB with IMAGE_BITS_8 is 24, and
    // DEPTH_STENCIL with IMAGE_BITS_D24S8 is 0. Values out of range give 0.
    std::uint64_t getPixelBits() const;
};

// All three fields: RGB/UINT/8 differs from RGB/UINT/16.
bool operator==(image_desc_t const& a, image_desc_t const& b);
bool operator!=(image_desc_t const& a, image_desc_t const& b);

// How rows are packed in memory; the fields become GL_UNPACK_SWAP_BYTES and
// GL_UNPACK_ALIGNMENT. Records only point at one, and it must outlive them:
// use a static instance.
struct image_store_t {
    bool swapbytes = false;       // multi-byte components in the other byte order
    std::uint32_t alignment = 4;  // bytes; each row starts on a multiple; 0 means 4
};

// A record's pixels as a rectangle of a wider picture. Each field is the
// OpenGL unpack parameter of the same name; a `rowlength` of 0 means the
// record's own width. All zero: the record is the whole picture.
struct image_window1d_t {
    std::uint32_t skippixels = 0;  // pixels
};

struct image_window2d_t {
    std::uint32_t rowlength = 0;   // pixels
    std::uint32_t skippixels = 0;  // pixels
    std::uint32_t skiprows = 0;    // rows
};

struct image_window3d_t {
    std::uint32_t rowlength = 0;    // pixels
    std::uint32_t imageheight = 0;  // rows
    std::uint32_t skippixels = 0;   // pixels
    std::uint32_t skiprows = 0;     // rows
    std::uint32_t skipimages = 0;   // images
};

// The colour table of an IMAGE_FORMAT_INDEX image: one plane per channel so
// that each goes straight to one glPixelMapusv table. Entries are full-range
// 16-bit values (a byte v is v * 257). Copies share the planes.
struct palette_t {
    std::uint64_t size = 0;  // entries
    libutils::refvector<unsigned short, libutils::alloc_new> red;
    libutils::refvector<unsigned short, libutils::alloc_new> green;
    libutils::refvector<unsigned short, libutils::alloc_new> blue;

    // `n` entries in each plane, as many old ones kept as fit; 0 releases the
    // planes. Returns n != 0. Should a plane not be had, the palette is left
    // empty and false returned, so that `size` never promises more entries
    // than the planes hold.
    bool resize(unsigned long n);
    void clear();
};

// The byte store of every image: a window onto a shared block, which may be
// anonymous memory or a mapped file.
using image_bytes_t = libutils::ofsvector<unsigned char, libutils::alloc_mmap_unix>;

// Where the pixels of a row-by-row picture lie in its bytes: the one home of
// the address arithmetic, for the records and for the typed views that
// pixel operations lay over them. Rows are `rowsize` bytes apart; a window
// starts `skiprows` rows and `skippixels` pixels in.
struct pixel_layout_t {
    std::uint64_t rowsize = 0;     // bytes
    std::uint64_t pixelbits = 0;   // bits
    std::uint64_t skippixels = 0;  // pixels
    std::uint64_t skiprows = 0;    // rows

    // Where pixel (x, y) begins, in bytes from the first:
    //   rowsize * (skiprows + y) + pixelbits * (skippixels + x) / 8
    // A pixel that starts inside a byte gives that byte.
    std::uint64_t offset(std::uint64_t x, std::uint64_t y) const;
    // Bytes from the first to the end of pixel (width - 1, height - 1), the
    // last one a reader of `width` x `height` pixels touches: the bytes that
    // must be there. No padding after the last pixel counts. 0 without
    // pixels; the largest value when that doesn't fit in 64 bits.
    std::uint64_t end(std::uint64_t width, std::uint64_t height) const;
};

// Copies and assignments share the bytes and the palette: writing through
// one record shows through the other. A deep copy is a separate operation.

struct image1d_t : image_bytes_t {
    image_desc_t desc{};
    image_store_t const* store = nullptr;  // not owned; null: alignment 4, no swap
    image_window1d_t window;
    std::uint32_t m_width = 0;  // pixels
    bool compressed = false;    // bytes are a compressed texture image
    palette_t palette;

    // Byte `i + window.skippixels` of the data. `i` counts bytes, whatever
    // the pixel size; there is no bounds check.
    unsigned char* operator[](unsigned int i);
    unsigned char const* operator[](unsigned int i) const;
};

// Pixel (x, y) begins at byte
//   rowsize() * (window.skiprows + y) + getPixelBits() * (window.skippixels + x) / 8
// of the data (see layout()). With `compressed` set, rows, windows and pixel
// sizes don't describe the bytes: they are a compressed texture image of
// size() bytes.
struct image2d_t : image_bytes_t {
    image_desc_t desc{};
    image_store_t const* store = nullptr;  // not owned; null: alignment 4, no swap
    image_window2d_t window;
    std::uint32_t m_width = 0;   // pixels per row of this record
    std::uint32_t m_height = 0;  // rows of this record
    bool compressed = false;
    palette_t palette;  // for IMAGE_FORMAT_INDEX, else empty

    // Pixels from one row to the next: window.rowlength, or m_width when 0.
    std::uint64_t rowlength() const;
    // Bytes from one row to the next, padded to the store's alignment.
    // RGB, 8 bits, width 5, no store: 16. Grayscale, 1 bit, width 33: 8.
    std::uint64_t rowsize() const;
    // Bytes of this record's own pixels in one row, unpadded and rounded
    // down: RGB, 8 bits, width 5 gives 15. Pixel operations copy rowbyte()
    // bytes a row and step rowsize().
    std::uint64_t rowbyte() const;
    // Bytes the record asks for: rowsize() * (window.skiprows + m_height),
    // or the largest value when that doesn't fit in 64 bits.
    std::uint64_t datasize() const;

    // The record's rows, pixel size and window as a layout.
    pixel_layout_t layout() const;
    // The first byte of pixel (x, y), window included; no bounds check.
    unsigned char* pixel(std::uint64_t x, std::uint64_t y);
    unsigned char const* pixel(std::uint64_t x, std::uint64_t y) const;
    // Whether every pixel the record addresses lies in its bytes: the test
    // before any reading or writing of them. A window of a window, one set
    // past the width, or a record filled by hand can reach behind its block.
    // Padding after the last pixel need not be there, as for OpenGL's
    // unpacking. A compressed record holds no pixels.
    bool holds_pixels() const;

    // Makes room for datasize() bytes. The pixels are not cleared. Returns
    // false, with the bytes as they were, when the room can't be had or is
    // more than max_image_bytes().
    bool allocate();
    // Lets go of the bytes and the palette and sets the sizes to 0; desc,
    // store, window and compressed stay for the next allocate().
    void clear() override;
};

// The most bytes image2d_t::allocate() makes room for: half the machine's
// memory, so that a picture whose pixels and their textures couldn't both
// be held is refused at once, before a header's claim of 65500 x 65500
// pixels is allocated and decoded into.
std::uint64_t max_image_bytes();
// Sets that limit; 0 brings back the machine's. The fuzzing harnesses
// lower it, as a fuzzer can't spend seconds on one input.
void set_max_image_bytes(std::uint64_t bytes);

struct image3d_t : image_bytes_t {
    image_desc_t desc{};
    image_store_t const* store = nullptr;  // not owned; null: alignment 4, no swap
    image_window3d_t window;
    std::uint32_t m_width = 0;   // pixels
    std::uint32_t m_height = 0;  // rows
    std::uint32_t m_depth = 0;   // images
    bool compressed = false;
    palette_t palette;
};

}  // namespace libgr

#endif
