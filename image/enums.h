// What an image record's bytes mean: the component layout, the number type
// and the bits of a component or packed pixel, with their tables and names.
#ifndef ZANOVIEW_IMAGE_ENUMS_H
#define ZANOVIEW_IMAGE_ENUMS_H

#include <cstdint>
#include <ostream>

namespace libgr {

// The components of a pixel, in memory order. Values are stored in image
// records and must stay as numbered: the tables below are indexed by them.
enum e_image_format_t : std::uint32_t {
    IMAGE_FORMAT_GRAYSCALE = 0,        // luminance
    IMAGE_FORMAT_GRAYSCALE_ALPHA = 1,  // luminance, alpha
    IMAGE_FORMAT_INTENSITY = 2,
    IMAGE_FORMAT_RED = 3,
    IMAGE_FORMAT_GREEN = 4,
    IMAGE_FORMAT_BLUE = 5,
    IMAGE_FORMAT_ALPHA = 6,
    IMAGE_FORMAT_RG = 7,
    IMAGE_FORMAT_RGB = 8,
    IMAGE_FORMAT_RGBA = 9,
    IMAGE_FORMAT_BGR = 10,
    IMAGE_FORMAT_BGRA = 11,
    IMAGE_FORMAT_DEPTH = 12,
    IMAGE_FORMAT_DEPTH_STENCIL = 13,
    IMAGE_FORMAT_YCbCr = 14,
    IMAGE_FORMAT_YCbCrA = 15,
    IMAGE_FORMAT_YCbCr422 = 16,  // two components a pixel: Y and Cb or Cr in turn
    IMAGE_FORMAT_INDEX = 17,     // an index into the record's palette
    IMAGE_FORMAT_MAX = 18,       // end mark, never stored in a record
};

enum e_image_type_t : std::uint32_t {
    IMAGE_TYPE_SINT = 0,
    IMAGE_TYPE_UINT = 1,
    IMAGE_TYPE_FLOAT = 2,
    IMAGE_TYPE_MAX = 3,  // end mark
};

// Up to IMAGE_BITS_64 the size of one component; from IMAGE_BITS_R3G3B2 on
// a whole packed pixel, whatever the format says.
enum e_image_bits_t : std::uint32_t {
    IMAGE_BITS_1 = 0,
    IMAGE_BITS_2 = 1,
    IMAGE_BITS_4 = 2,
    IMAGE_BITS_8 = 3,
    IMAGE_BITS_12 = 4,
    IMAGE_BITS_16 = 5,
    IMAGE_BITS_24 = 6,
    IMAGE_BITS_32 = 7,
    IMAGE_BITS_64 = 8,
    IMAGE_BITS_R3G3B2 = 9,
    IMAGE_BITS_R5G6B5 = 10,
    IMAGE_BITS_R5G5B5A1 = 11,
    IMAGE_BITS_R10G10B10A2 = 12,
    IMAGE_BITS_L6A2 = 13,
    IMAGE_BITS_L12A4 = 14,
    IMAGE_BITS_D24S8 = 15,
    IMAGE_BITS_MAX = 16,  // end mark
};

struct image_format_components_t {
    e_image_format_t format;
    std::uint64_t components;  // per pixel
};

// One row per format, in value order: IMAGE_FORMAT_YCbCr422 has 2.
extern image_format_components_t const s_image_format_components_list[IMAGE_FORMAT_MAX];

struct image_bits_row_t {
    std::uint64_t value;      // the e_image_bits_t
    std::uint64_t component;  // bits of one component, 0 for packed pixels
    std::uint64_t pixel;      // bits of one packed pixel, 0 for components
};

// One row per value, in value order.
// NOTE: the IMAGE_BITS_D24S8 row is all zero, so such an image has pixels of
// 0 bits and rows of 0 bytes. That result is relied on: don't fill the row in.
extern image_bits_row_t const s_image_bits_list[IMAGE_BITS_MAX];

template <class E>
struct image_enum_name_t {
    E value;
    char const* name;
};

// The enumerators' names, in value order, end marks included.
extern image_enum_name_t<e_image_format_t> const image_format_string[IMAGE_FORMAT_MAX + 1];
extern image_enum_name_t<e_image_type_t> const image_type_string[IMAGE_TYPE_MAX + 1];
extern image_enum_name_t<e_image_bits_t> const image_bits_string[IMAGE_BITS_MAX + 1];

// Components per pixel of `format`; 0 for the end mark and beyond.
std::uint64_t image_format_components(e_image_format_t format);

// The enumerator's name: IMAGE_FORMAT_BGR writes "IMAGE_FORMAT_BGR". A value
// beyond the end mark writes "unknown: " and the number, "unknown: 19".
std::ostream& operator<<(std::ostream& os, e_image_format_t format);
std::ostream& operator<<(std::ostream& os, e_image_type_t type);
std::ostream& operator<<(std::ostream& os, e_image_bits_t bits);

}  // namespace libgr

#endif
