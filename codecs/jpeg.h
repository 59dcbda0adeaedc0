// The JPEG codec: jpegdata_t holds a file's compressed bytes, jpeginfo_t
// decodes them into an image record (bottom row first) and encodes a record
// back, keeping the file's APPn and COM markers, and image_jpeg1_t is the
// viewer's JPEG codec. libjpeg itself is seen only in jpeg.cpp.
#ifndef ZANOVIEW_CODECS_JPEG_H
#define ZANOVIEW_CODECS_JPEG_H

#include <cstdint>
#include <vector>

#include "geometry/color.h"
#include "image/enums.h"
#include "image/image.h"
#include "utils/alloc.h"

#include "codecs/image_object.h"

namespace libgr {

// The markers that are kept, numbered as the rows of marker_array.
enum e_marker_num_t : std::uint32_t {
    MARKER_NUM_APP0 = 0,
    MARKER_NUM_APP1 = 1,  // Exif
    MARKER_NUM_APP2 = 2,
    MARKER_NUM_APP3 = 3,
    MARKER_NUM_APP4 = 4,
    MARKER_NUM_APP5 = 5,
    MARKER_NUM_APP6 = 6,
    MARKER_NUM_APP7 = 7,
    MARKER_NUM_APP8 = 8,
    MARKER_NUM_APP9 = 9,
    MARKER_NUM_APP10 = 10,
    MARKER_NUM_APP11 = 11,
    MARKER_NUM_APP12 = 12,
    MARKER_NUM_APP13 = 13,
    MARKER_NUM_APP14 = 14,
    MARKER_NUM_APP15 = 15,
    MARKER_NUM_COM = 16,
    MARKER_NUM_MAX = 17,  // end mark
};

struct marker_array_t {
    std::uint32_t num;   // e_marker_num_t
    std::uint32_t code;  // the byte behind 0xFF: APP1 is 0xE1, COM 0xFE
};

// One row per number, in number order.
extern marker_array_t const marker_array[MARKER_NUM_MAX];

// An image description that JPEG can carry, and libjpeg's name for it.
struct jpeg_info_desc_t {
    e_image_format_t format;
    e_image_type_t type;
    e_image_bits_t bits;
    std::uint32_t color_space;  // libjpeg's J_COLOR_SPACE
    std::uint32_t components;   // per pixel
};

// RGB, YCbCr and GRAYSCALE, all 8-bit unsigned, in that order.
extern jpeg_info_desc_t const jpeg_info_desc_table[3];

// A file's compressed bytes: a read-only mapping of the whole file after
// load, or the encoder's output after jpeginfo_t::compress.
struct jpegdata_t : image_bytes_t {
    using image_bytes_t::load;

    // Maps the whole file; nothing is copied. False when the file can't be
    // mapped, an empty file among others.
    bool load(char const* path, libutils::android_app* app);
    // Writes the bytes to `path`, first unlinking what is there, so that a
    // hard link to the old file keeps the old bytes and a read-only file in a
    // writable folder doesn't block the save. False when the file can't be
    // opened or written; a failed close still counts as saved.
    bool save(char const* path, libutils::android_app* app);
    // Shares `bytes` (nothing is copied), so that memory can be decoded
    // under a name of the caller's.
    void setvector(image_bytes_t& bytes, char const* name);

    char const* name = nullptr;  // not owned; leads every message about these bytes
};

// One saved APPn or COM segment.
struct marker_t {
    unsigned char code = 0;  // 0xE0 to 0xEF, or 0xFE
    image_bytes_t payload;   // a copy of the bytes behind the length field
};

// The codec calls and what they learn of a file.
struct jpeginfo_t {
    // Decodes `data` into `image`, rows bottom to top, and keeps the file's
    // APPn and COM segments that fitted whole in `markers`. Gray files give
    // GRAYSCALE, three-component files RGB; four-component (CMYK, YCCK)
    // files are refused without a message. True also when the data breaks
    // off or turns bad after the header: the rows decoded by then stay and
    // the others keep what allocating gave them. False, with a message,
    // when the header can't be read.
    // With a `square_unit` u above 0 the buffer is a square whose side is
    // the larger of width and height rounded up to a multiple of u, the
    // rest cleared to zero. With `border`, window.skiprows is 1 and a frame
    // of `border_color` is painted around the picture's place; the rows
    // themselves go where they would go without it. The viewer passes 0,
    // false, white3ub.
    bool decompress(image2d_t& image, jpegdata_t& data, unsigned short square_unit, bool border,
                    color3ub_t const& border_color);
    // Encodes `image` (RGB, YCbCr or GRAYSCALE, 8-bit unsigned) into `data`
    // upright, whichever way up the record's rows run, and writes `markers`
    // behind the header. Another description is refused without a message.
    // `quality` is libjpeg's 0 to 100.
    bool compress(jpegdata_t& data, image2d_t const& image, int quality, bool force_baseline);
    // Reads the header only: width, height and every APPn and COM segment,
    // whatever its length.
    bool analyze_markers(jpegdata_t& data);
    // The first saved marker of that number, sharing its payload; an empty
    // view when there is none or `num` is MARKER_NUM_MAX or above.
    image_bytes_t get_marker(e_marker_num_t num) const;

    // Colour files decode as RGBA with alpha 255 instead of RGB: a pixel a
    // 32-bit word, which GL drivers store textures in, so that they take
    // the rows as they are instead of widening every pixel themselves.
    // Gray files stay gray. Off unless asked for.
    bool rgba_output = false;

    std::uint64_t width = 0;   // pixels, from the last header read
    std::uint64_t height = 0;  // pixels, from the last header read
    std::vector<marker_t> markers;  // in file order
};

// A cursor over entropy-coded bytes that reads a stuffed 0xFF 0x00 pair as
// the one byte 0xFF. It never looks at or behind `end`: a 0xFF as the last
// byte steps one.
class jpeg_iterator {
public:
    jpeg_iterator() = default;
    jpeg_iterator(unsigned char const* p, unsigned char const* end) : m_p(p), m_end(end) {}

    // Moves within the same bytes; the end stays.
    jpeg_iterator& operator=(unsigned char const* p)
    {
        m_p = p;
        return *this;
    }
    jpeg_iterator& operator++();
    unsigned char operator*() const { return *m_p; }
    unsigned char const* get() const { return m_p; }

private:
    unsigned char const* m_p = nullptr;
    unsigned char const* m_end = nullptr;
};

inline bool operator<(jpeg_iterator const& it, unsigned char const* end)
{
    return it.get() < end;
}

// The viewer's JPEG codec. After a load, a save through the same object
// writes the loaded file's APPn and COM segments with the new picture.
class image_jpeg1_t : public image_object_t {
public:
    // Decodes the file and takes the turn from its Exif orientation. True
    // when the picture could be decoded, also in part.
    bool load(image2d_t& image, char const* path) override;
    // Colour pictures load as RGBA with alpha 255 from now on, rather than
    // as RGB; see jpeginfo_t::rgba_output.
    void setRGBA(bool on);
    // Writes `image` at quality 95, baseline.
    bool save(image2d_t const& image, char const* path) override;

private:
    jpegdata_t m_data;
    jpeginfo_t m_info;
};

}  // namespace libgr

#endif
