#include "image/enums.h"

namespace libgr {

image_format_components_t const s_image_format_components_list[IMAGE_FORMAT_MAX] = {
    {IMAGE_FORMAT_GRAYSCALE, 1},
    {IMAGE_FORMAT_GRAYSCALE_ALPHA, 2},
    {IMAGE_FORMAT_INTENSITY, 1},
    {IMAGE_FORMAT_RED, 1},
    {IMAGE_FORMAT_GREEN, 1},
    {IMAGE_FORMAT_BLUE, 1},
    {IMAGE_FORMAT_ALPHA, 1},
    {IMAGE_FORMAT_RG, 2},
    {IMAGE_FORMAT_RGB, 3},
    {IMAGE_FORMAT_RGBA, 4},
    {IMAGE_FORMAT_BGR, 3},
    {IMAGE_FORMAT_BGRA, 4},
    {IMAGE_FORMAT_DEPTH, 1},
    {IMAGE_FORMAT_DEPTH_STENCIL, 2},
    {IMAGE_FORMAT_YCbCr, 3},
    {IMAGE_FORMAT_YCbCrA, 4},
    {IMAGE_FORMAT_YCbCr422, 2},
    {IMAGE_FORMAT_INDEX, 1},
};

// Sixteen rows of room, fifteen filled: the last stays zero (see the header).
image_bits_row_t const s_image_bits_list[IMAGE_BITS_MAX] = {
    {IMAGE_BITS_1, 1, 0},
    {IMAGE_BITS_2, 2, 0},
    {IMAGE_BITS_4, 4, 0},
    {IMAGE_BITS_8, 8, 0},
    {IMAGE_BITS_12, 12, 0},
    {IMAGE_BITS_16, 16, 0},
    {IMAGE_BITS_24, 24, 0},
    {IMAGE_BITS_32, 32, 0},
    {IMAGE_BITS_64, 64, 0},
    {IMAGE_BITS_R3G3B2, 0, 8},
    {IMAGE_BITS_R5G6B5, 0, 16},
    {IMAGE_BITS_R5G5B5A1, 0, 16},
    {IMAGE_BITS_R10G10B10A2, 0, 32},
    {IMAGE_BITS_L6A2, 0, 8},
    {IMAGE_BITS_L12A4, 0, 16},
};

#define ZV_NAME(e) {e, #e}

image_enum_name_t<e_image_format_t> const image_format_string[IMAGE_FORMAT_MAX + 1] = {
    ZV_NAME(IMAGE_FORMAT_GRAYSCALE),
    ZV_NAME(IMAGE_FORMAT_GRAYSCALE_ALPHA),
    ZV_NAME(IMAGE_FORMAT_INTENSITY),
    ZV_NAME(IMAGE_FORMAT_RED),
    ZV_NAME(IMAGE_FORMAT_GREEN),
    ZV_NAME(IMAGE_FORMAT_BLUE),
    ZV_NAME(IMAGE_FORMAT_ALPHA),
    ZV_NAME(IMAGE_FORMAT_RG),
    ZV_NAME(IMAGE_FORMAT_RGB),
    ZV_NAME(IMAGE_FORMAT_RGBA),
    ZV_NAME(IMAGE_FORMAT_BGR),
    ZV_NAME(IMAGE_FORMAT_BGRA),
    ZV_NAME(IMAGE_FORMAT_DEPTH),
    ZV_NAME(IMAGE_FORMAT_DEPTH_STENCIL),
    ZV_NAME(IMAGE_FORMAT_YCbCr),
    ZV_NAME(IMAGE_FORMAT_YCbCrA),
    ZV_NAME(IMAGE_FORMAT_YCbCr422),
    ZV_NAME(IMAGE_FORMAT_INDEX),
    ZV_NAME(IMAGE_FORMAT_MAX),
};

image_enum_name_t<e_image_type_t> const image_type_string[IMAGE_TYPE_MAX + 1] = {
    ZV_NAME(IMAGE_TYPE_SINT),
    ZV_NAME(IMAGE_TYPE_UINT),
    ZV_NAME(IMAGE_TYPE_FLOAT),
    ZV_NAME(IMAGE_TYPE_MAX),
};

image_enum_name_t<e_image_bits_t> const image_bits_string[IMAGE_BITS_MAX + 1] = {
    ZV_NAME(IMAGE_BITS_1),
    ZV_NAME(IMAGE_BITS_2),
    ZV_NAME(IMAGE_BITS_4),
    ZV_NAME(IMAGE_BITS_8),
    ZV_NAME(IMAGE_BITS_12),
    ZV_NAME(IMAGE_BITS_16),
    ZV_NAME(IMAGE_BITS_24),
    ZV_NAME(IMAGE_BITS_32),
    ZV_NAME(IMAGE_BITS_64),
    ZV_NAME(IMAGE_BITS_R3G3B2),
    ZV_NAME(IMAGE_BITS_R5G6B5),
    ZV_NAME(IMAGE_BITS_R5G5B5A1),
    ZV_NAME(IMAGE_BITS_R10G10B10A2),
    ZV_NAME(IMAGE_BITS_L6A2),
    ZV_NAME(IMAGE_BITS_L12A4),
    ZV_NAME(IMAGE_BITS_D24S8),
    ZV_NAME(IMAGE_BITS_MAX),
};

#undef ZV_NAME

std::uint64_t image_format_components(e_image_format_t format)
{
    return format < IMAGE_FORMAT_MAX ? s_image_format_components_list[format].components : 0;
}

namespace {

// Values come from records and are not checked on the way in, so one that is
// out of range is named as such here rather than read past the table.
template <class E, std::size_t N>
std::ostream& put_name(std::ostream& os, image_enum_name_t<E> const (&table)[N], E value)
{
    if (value < N) return os << table[value].name;
    return os << "unknown: " << static_cast<std::uint32_t>(value);
}

}  // namespace

std::ostream& operator<<(std::ostream& os, e_image_format_t format)
{
    return put_name(os, image_format_string, format);
}

std::ostream& operator<<(std::ostream& os, e_image_type_t type)
{
    return put_name(os, image_type_string, type);
}

std::ostream& operator<<(std::ostream& os, e_image_bits_t bits)
{
    return put_name(os, image_bits_string, bits);
}

}  // namespace libgr
