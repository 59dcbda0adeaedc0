// TGA files: tgaimage_t, an uncompressed TGA file as a record, the two
// converts that join it to an image record, and image_tga_t, the codec.
// Rows in our files are padded to 4 bytes, unlike plain TGA, so that pixels
// pass between file and image record without a copy; the reader is made for
// what the writer produces and knows no RLE.
#ifndef ZANOVIEW_CODECS_TGA_H
#define ZANOVIEW_CODECS_TGA_H

#include <cstdint>
#include <vector>

#include "image/image.h"
#include "utils/alloc.h"

#include "codecs/image_object.h"

namespace libgr {

struct tgaimage_t {
    // The header's twelve fields, in file order.
    std::uint8_t m_idlength = 0;           // bytes of m_id
    std::uint8_t m_colormaptype = 0;       // 1 with a colour map, else 0
    std::uint8_t m_imagetype = 0;          // 1 colour-mapped, 2 true colour; others not read
    std::uint16_t m_colormapfirst = 0;     // entries
    std::uint16_t m_colormaplength = 0;    // entries
    std::uint8_t m_colormapentrysize = 0;  // taken as bytes, though TGA counts bits
    std::uint16_t m_xorigin = 0;           // pixels
    std::uint16_t m_yorigin = 0;           // pixels
    std::uint16_t m_width = 0;             // pixels
    std::uint16_t m_height = 0;            // rows
    std::uint8_t m_pixeldepth = 0;         // bits: 8, 16, 24 or 32
    std::uint8_t m_descriptor = 0;         // bit 5 set: rows run top to bottom

    std::vector<unsigned char> m_id;
    // (m_colormapfirst + m_colormaplength) * m_colormapentrysize bytes:
    // with the entry size in bytes, a file from elsewhere that gives it in
    // bits asks for eight times its map, and fails or shears.
    std::vector<unsigned char> m_colormap;
    // Rows bottom to top, each padded to 4 bytes.
    image_bytes_t m_pixels;

    // Reads header, id, colour map and pixels. False when the file can't be
    // opened or ends before any of them does; what was read stays in the
    // record. A plain TGA whose rows aren't a multiple of 4 bytes therefore
    // fails for want of data, or loads sheared when trailing bytes make up
    // the difference.
    bool load(char const* path, libutils::android_app* app);

    // Writes the header, id, colour map and pixels as they are. The id
    // length and colour map fields follow the two vectors. False when the
    // file can't be written.
    bool save(char const* path, libutils::android_app* app);
};

// Shares the pixels of an uncompressed bottom-to-top file with `image`, by
// depth: 8 GRAYSCALE, 16 BGRA of IMAGE_BITS_R5G5B5A1, 24 BGR, 32 BGRA. A
// colour-mapped file (type 1) is read as if it were true colour; its map is
// not looked at. False for RLE and other types, top-down files, other
// depths (15 included), and pixels fewer than the header promises. The
// image's window and store are reset to the file's layout.
bool convert(image2d_t& image, tgaimage_t const& tga);

// Fills `tga` for saving an RGB or RGBA image of 8 bits (depth 24 or 32),
// with the pixels turned to the file's blue-first order in a new buffer, or
// an RGBA image of IMAGE_BITS_R5G5B5A1 (depth 16), whose pixels rgb2bgr
// passes on as they are. Only those: an image already in BGR order, a gray
// one and all others give false, as do compressed images, images wider or
// higher than 65535 pixels, and a 16-bit image whose rows aren't laid out
// as the file's.
bool convert(tgaimage_t& tga, image2d_t const& image);

// The TGA codec: a tgaimage_t for each call, joined through convert.
class image_tga_t : public image_object_t {
public:
    bool load(image2d_t& image, char const* path) override;
    bool save(image2d_t const& image, char const* path) override;
};

}  // namespace libgr

#endif
