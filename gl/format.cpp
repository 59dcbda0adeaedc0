#include "gl/format.h"

#include <cstddef>
#include <cstdint>
#include <iostream>

#include "glext/glext.h"
#include "image/enums.h"
#include "utils/diag.h"

namespace libgr {

namespace {

// ---------------------------------------------------------------------------
// Tables

struct format_row_t {
    e_image_format_t format;
    GLenum glformat;
};

// The pixel format for each image format that has one. YCbCr goes up as RGB:
// nothing converts it on the way, so the texture holds the values as they are.
format_row_t const s_image_format_to_glformat_list[] = {
    {IMAGE_FORMAT_GRAYSCALE, GL_LUMINANCE},
    {IMAGE_FORMAT_GRAYSCALE_ALPHA, GL_LUMINANCE_ALPHA},
    {IMAGE_FORMAT_INTENSITY, GL_INTENSITY},
    {IMAGE_FORMAT_RED, GL_RED},
    {IMAGE_FORMAT_GREEN, GL_GREEN},
    {IMAGE_FORMAT_BLUE, GL_BLUE},
    {IMAGE_FORMAT_ALPHA, GL_ALPHA},
    {IMAGE_FORMAT_RGB, GL_RGB},
    {IMAGE_FORMAT_RGBA, GL_RGBA},
    {IMAGE_FORMAT_BGR, GL_BGR},
    {IMAGE_FORMAT_BGRA, GL_BGRA},
    {IMAGE_FORMAT_DEPTH, GL_DEPTH_COMPONENT},
    {IMAGE_FORMAT_YCbCr, GL_RGB},
    {IMAGE_FORMAT_YCbCrA, GL_RGBA},
    {IMAGE_FORMAT_YCbCr422, GL_RGB},
    {IMAGE_FORMAT_INDEX, GL_COLOR_INDEX},
};

// Row number in s_image_format_to_glformat_list for each format value, -1
// where there is none (RG, DEPTH_STENCIL).
constexpr int s_image_format_to_glformat_index[IMAGE_FORMAT_MAX] = {
    0, 1, 2, 3, 4, 5, 6, -1, 7, 8, 9, 10, 11, -1, 12, 13, 14, 15,
};

// The formats that may become textures at all, one bit per format value.
// RG and DEPTH_STENCIL stay out although their tables below are filled in:
// no load path has been tried with them, and the tables stay so that letting
// one in is a change of one bit.
constexpr std::uint32_t s_accepted_formats = 0x3DF7F;

// Marks a combination a table knows of but refuses; it behaves as a missing row.
constexpr GLenum kRefused = GL_INVALID_VALUE;

struct typebits_row_t {
    e_image_type_t type;
    e_image_bits_t bits;
    GLenum internalformat;
    GLenum gltype;
};

// One table per format family, searched in order for the first row whose
// type and bits match.
//
// Some rows look wrong and are kept on purpose, since they decide which
// images load and how they come out: GL_BITMAP as the pixel type of UINT
// L12A4 grayscale-alpha; GL_DEPTH_COMPONENT as the pixel type of every depth
// row; GL_RGB4 for four-bit BGRA; plain GL_ALPHA for eight-bit alpha; unsized
// formats for BGR and BGRA; no SINT rows for index images. Twelve-bit
// luminance loads with SINT only, twelve-bit intensity with UINT only.

typebits_row_t const s_GRAYSCALE_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_SINT, IMAGE_BITS_4, GL_LUMINANCE4, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_8, GL_LUMINANCE8, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_12, GL_LUMINANCE12, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_16, GL_LUMINANCE16, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_32, GL_LUMINANCE, GL_INT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_1, GL_LUMINANCE, GL_BITMAP},
    {IMAGE_TYPE_UINT, IMAGE_BITS_4, GL_LUMINANCE4, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_LUMINANCE8, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_12, GL_LUMINANCE12, kRefused},  // SINT takes it, UINT not
    {IMAGE_TYPE_UINT, IMAGE_BITS_16, GL_LUMINANCE16, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_32, GL_LUMINANCE, GL_UNSIGNED_INT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_16, GL_LUMINANCE16F_ARB, GL_HALF_FLOAT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_32, GL_LUMINANCE32F_ARB, GL_FLOAT},
};

typebits_row_t const s_GRAYSCALE_ALPHA_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_SINT, IMAGE_BITS_4, GL_LUMINANCE4_ALPHA4, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_L6A2, GL_LUMINANCE6_ALPHA2, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_8, GL_LUMINANCE8_ALPHA8, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_L12A4, GL_LUMINANCE12_ALPHA4, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_16, GL_LUMINANCE16_ALPHA16, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_32, GL_LUMINANCE_ALPHA, GL_INT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_1, GL_LUMINANCE_ALPHA, GL_BITMAP},
    {IMAGE_TYPE_UINT, IMAGE_BITS_4, GL_LUMINANCE4_ALPHA4, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_L6A2, GL_LUMINANCE6_ALPHA2, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_LUMINANCE8_ALPHA8, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_L12A4, GL_LUMINANCE12_ALPHA4, GL_BITMAP},  // GL_BITMAP: odd, kept
    {IMAGE_TYPE_UINT, IMAGE_BITS_12, GL_LUMINANCE12_ALPHA12, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_16, GL_LUMINANCE16_ALPHA16, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_24, GL_LUMINANCE_ALPHA, GL_UNSIGNED_INT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_32, GL_LUMINANCE_ALPHA, GL_UNSIGNED_INT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_16, GL_LUMINANCE_ALPHA16F_ARB, GL_HALF_FLOAT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_32, GL_LUMINANCE_ALPHA32F_ARB, GL_FLOAT},
};

typebits_row_t const s_INTENSITY_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_SINT, IMAGE_BITS_4, GL_INTENSITY4, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_8, GL_INTENSITY8, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_12, GL_INTENSITY12, kRefused},  // UINT takes it, SINT not
    {IMAGE_TYPE_SINT, IMAGE_BITS_16, GL_INTENSITY16, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_32, GL_INTENSITY, GL_INT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_1, GL_INTENSITY, GL_BITMAP},
    {IMAGE_TYPE_UINT, IMAGE_BITS_4, GL_INTENSITY4, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_INTENSITY8, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_12, GL_INTENSITY12, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_16, GL_INTENSITY16, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_32, GL_INTENSITY, GL_UNSIGNED_INT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_16, GL_INTENSITY16F_ARB, GL_HALF_FLOAT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_32, GL_INTENSITY32F_ARB, GL_FLOAT},
};

typebits_row_t const s_RED_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_SINT, IMAGE_BITS_8, GL_R8I, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_16, GL_R16I, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_32, GL_R32I, GL_INT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_1, GL_RED, GL_BITMAP},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_R8UI, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_16, GL_R16UI, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_32, GL_R32UI, GL_UNSIGNED_INT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_16, GL_R16F, GL_HALF_FLOAT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_32, GL_R32F, GL_FLOAT},
};

typebits_row_t const s_GREEN_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_SINT, IMAGE_BITS_8, GL_GREEN, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_16, GL_GREEN, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_32, GL_GREEN, GL_INT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_1, GL_GREEN, GL_BITMAP},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_GREEN, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_16, GL_GREEN, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_32, GL_GREEN, GL_UNSIGNED_INT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_16, GL_GREEN, GL_HALF_FLOAT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_32, GL_GREEN, GL_FLOAT},
};

typebits_row_t const s_BLUE_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_SINT, IMAGE_BITS_8, GL_BLUE, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_16, GL_BLUE, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_32, GL_BLUE, GL_INT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_1, GL_BLUE, GL_BITMAP},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_BLUE, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_16, GL_BLUE, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_32, GL_BLUE, GL_UNSIGNED_INT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_16, GL_BLUE, GL_HALF_FLOAT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_32, GL_BLUE, GL_FLOAT},
};

typebits_row_t const s_ALPHA_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_SINT, IMAGE_BITS_4, GL_ALPHA4, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_8, GL_ALPHA, GL_BYTE},  // unsized: odd, kept
    {IMAGE_TYPE_SINT, IMAGE_BITS_12, GL_ALPHA12, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_16, GL_ALPHA16, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_32, GL_ALPHA, GL_INT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_1, GL_ALPHA, GL_BITMAP},
    {IMAGE_TYPE_UINT, IMAGE_BITS_4, GL_ALPHA4, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_ALPHA, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_12, GL_ALPHA12, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_16, GL_ALPHA16, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_32, GL_ALPHA, GL_UNSIGNED_INT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_16, GL_ALPHA16F_ARB, GL_HALF_FLOAT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_32, GL_ALPHA32F_ARB, GL_FLOAT},
};

typebits_row_t const s_RG_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_SINT, IMAGE_BITS_8, GL_RG8, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_16, GL_RG16, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_32, GL_RG, GL_INT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_1, GL_RG, GL_BITMAP},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_RG8, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_16, GL_RG16, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_32, GL_RG, GL_UNSIGNED_INT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_16, GL_RG16F, GL_HALF_FLOAT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_32, GL_RG32F, GL_FLOAT},
};

typebits_row_t const s_RGB_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_SINT, IMAGE_BITS_R3G3B2, GL_R3_G3_B2, GL_UNSIGNED_BYTE_2_3_3_REV},
    {IMAGE_TYPE_SINT, IMAGE_BITS_4, GL_RGB4, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_R5G6B5, GL_RGB5, GL_UNSIGNED_SHORT_5_6_5_REV},
    {IMAGE_TYPE_SINT, IMAGE_BITS_8, GL_RGB8, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_12, GL_RGB12, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_16, GL_RGB16, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_32, GL_RGB, GL_INT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_1, GL_RGB, GL_BITMAP},
    {IMAGE_TYPE_UINT, IMAGE_BITS_R3G3B2, GL_R3_G3_B2, GL_UNSIGNED_BYTE_2_3_3_REV},
    {IMAGE_TYPE_UINT, IMAGE_BITS_4, GL_RGB4, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_R5G6B5, GL_RGB5, GL_UNSIGNED_SHORT_5_6_5_REV},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_RGB8, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_12, GL_RGB12, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_16, GL_RGB16, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_24, kRefused, kRefused},  // 24 bits a component, not a pixel
    {IMAGE_TYPE_UINT, IMAGE_BITS_32, GL_RGB, GL_UNSIGNED_INT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_16, GL_RGB16F, GL_HALF_FLOAT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_32, GL_RGB32F, GL_FLOAT},
};

typebits_row_t const s_RGBA_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_SINT, IMAGE_BITS_4, GL_RGBA4, GL_UNSIGNED_SHORT_4_4_4_4_REV},
    {IMAGE_TYPE_SINT, IMAGE_BITS_R5G5B5A1, GL_RGB5_A1, GL_UNSIGNED_SHORT_1_5_5_5_REV},
    {IMAGE_TYPE_SINT, IMAGE_BITS_R10G10B10A2, GL_RGB10_A2, GL_UNSIGNED_INT_2_10_10_10_REV},
    {IMAGE_TYPE_SINT, IMAGE_BITS_8, GL_RGBA8, GL_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_12, GL_RGBA12, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_16, GL_RGBA16, GL_SHORT},
    {IMAGE_TYPE_SINT, IMAGE_BITS_32, GL_RGBA, GL_INT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_1, GL_RGBA, GL_BITMAP},
    {IMAGE_TYPE_UINT, IMAGE_BITS_4, GL_RGBA4, GL_UNSIGNED_SHORT_4_4_4_4_REV},
    {IMAGE_TYPE_UINT, IMAGE_BITS_R5G5B5A1, GL_RGB5_A1, GL_UNSIGNED_SHORT_1_5_5_5_REV},
    {IMAGE_TYPE_UINT, IMAGE_BITS_R10G10B10A2, GL_RGB10_A2, GL_UNSIGNED_INT_2_10_10_10_REV},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_RGBA8, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_12, GL_RGBA12, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_16, GL_RGBA16, GL_UNSIGNED_SHORT},
    {IMAGE_TYPE_UINT, IMAGE_BITS_32, GL_RGBA, GL_UNSIGNED_INT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_16, GL_RGBA16F, GL_HALF_FLOAT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_32, GL_RGBA32F, GL_FLOAT},
};

typebits_row_t const s_BGR_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_SINT, IMAGE_BITS_8, GL_RGB, GL_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_RGB, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_R3G3B2, GL_R3_G3_B2, GL_UNSIGNED_BYTE_2_3_3_REV},
    {IMAGE_TYPE_UINT, IMAGE_BITS_R3G3B2, GL_R3_G3_B2, GL_UNSIGNED_BYTE_2_3_3_REV},
    {IMAGE_TYPE_SINT, IMAGE_BITS_R5G6B5, GL_RGB5, GL_UNSIGNED_SHORT_5_6_5_REV},
    {IMAGE_TYPE_UINT, IMAGE_BITS_R5G6B5, GL_RGB5, GL_UNSIGNED_SHORT_5_6_5_REV},
};

typebits_row_t const s_BGRA_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_SINT, IMAGE_BITS_8, GL_RGBA, GL_BYTE},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_RGBA, GL_UNSIGNED_BYTE},
    {IMAGE_TYPE_SINT, IMAGE_BITS_R5G5B5A1, GL_RGB5_A1, GL_UNSIGNED_SHORT_1_5_5_5_REV},
    {IMAGE_TYPE_UINT, IMAGE_BITS_R5G5B5A1, GL_RGB5_A1, GL_UNSIGNED_SHORT_1_5_5_5_REV},
    {IMAGE_TYPE_SINT, IMAGE_BITS_4, GL_RGB4, GL_UNSIGNED_SHORT_4_4_4_4_REV},  // GL_RGB4: odd, kept
    {IMAGE_TYPE_UINT, IMAGE_BITS_4, GL_RGB4, GL_UNSIGNED_SHORT_4_4_4_4_REV},
    {IMAGE_TYPE_SINT, IMAGE_BITS_R10G10B10A2, GL_RGB10_A2, GL_UNSIGNED_INT_2_10_10_10_REV},
    {IMAGE_TYPE_UINT, IMAGE_BITS_R10G10B10A2, GL_RGB10_A2, GL_UNSIGNED_INT_2_10_10_10_REV},
};

typebits_row_t const s_DEPTH_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_16, GL_DEPTH_COMPONENT16, GL_DEPTH_COMPONENT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_24, GL_DEPTH_COMPONENT24, GL_DEPTH_COMPONENT},
    {IMAGE_TYPE_FLOAT, IMAGE_BITS_32, GL_DEPTH_COMPONENT32, GL_DEPTH_COMPONENT},
};

typebits_row_t const s_DEPTH_STENCIL_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_UINT, IMAGE_BITS_D24S8, GL_DEPTH24_STENCIL8, GL_UNSIGNED_INT_24_8},
};

typebits_row_t const s_INDEX_typebits_to_glintfmttype_list[] = {
    {IMAGE_TYPE_UINT, IMAGE_BITS_1, GL_COLOR_INDEX, GL_BITMAP},
    {IMAGE_TYPE_UINT, IMAGE_BITS_8, GL_COLOR_INDEX, GL_UNSIGNED_BYTE},
};


struct typebits_table_t {
    typebits_row_t const* rows;
    std::size_t count;
};

template <std::size_t N>
constexpr typebits_table_t table_of(typebits_row_t const (&rows)[N])
{
    return {rows, N};
}

// The table for `format`; {nullptr, 0} for YCbCr422, which has none.
typebits_table_t table_for(e_image_format_t format)
{
    switch (format) {
    case IMAGE_FORMAT_GRAYSCALE: return table_of(s_GRAYSCALE_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_GRAYSCALE_ALPHA: return table_of(s_GRAYSCALE_ALPHA_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_INTENSITY: return table_of(s_INTENSITY_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_RED: return table_of(s_RED_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_GREEN: return table_of(s_GREEN_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_BLUE: return table_of(s_BLUE_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_ALPHA: return table_of(s_ALPHA_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_RG: return table_of(s_RG_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_RGB: return table_of(s_RGB_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_RGBA: return table_of(s_RGBA_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_BGR: return table_of(s_BGR_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_BGRA: return table_of(s_BGRA_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_DEPTH: return table_of(s_DEPTH_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_DEPTH_STENCIL: return table_of(s_DEPTH_STENCIL_typebits_to_glintfmttype_list);
    // The components are handed over unconverted, so they share RGB's rows.
    case IMAGE_FORMAT_YCbCr: return table_of(s_RGB_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_YCbCrA: return table_of(s_RGBA_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_INDEX: return table_of(s_INDEX_typebits_to_glintfmttype_list);
    case IMAGE_FORMAT_YCbCr422:
    case IMAGE_FORMAT_MAX:
        break;
    }
    return {nullptr, 0};
}

// The one report of a refused description.
bool refuse(image_desc_t desc)
{
    libutils::error();
    std::cerr << "Not supported image format!" << std::endl;
    std::cerr << "imgformat: " << desc.format << std::endl;
    std::cerr << "imgtype: " << desc.type << std::endl;
    // NOTE: hexadecimal stays set on std::cerr after this line; see the header.
    std::cerr << std::hex << "imgbits: " << desc.bits << std::endl;
    return false;
}

}  // namespace

bool grConvertImageFormatToGlFormatFULL(gl_loading_format_t* out, image_desc_t desc, bool compress)
{
    if (out == nullptr || desc.format >= IMAGE_FORMAT_MAX
        || (s_accepted_formats & (std::uint32_t{1} << desc.format)) == 0)
        return refuse(desc);

    int const index = s_image_format_to_glformat_index[desc.format];
    if (index < 0)
        return refuse(desc);
    out->format = s_image_format_to_glformat_list[index].glformat;

    // YCbCr422 fails here, after `out->format` is written; callers may see it.
    typebits_table_t const table = table_for(desc.format);
    typebits_row_t const* row = nullptr;
    for (std::size_t i = 0; i < table.count; ++i) {
        if (table.rows[i].type == desc.type && table.rows[i].bits == desc.bits) {
            row = &table.rows[i];
            break;
        }
    }
    if (row == nullptr || row->internalformat == kRefused || row->gltype == kRefused)
        return refuse(desc);

    out->internalformat = row->internalformat;
    out->type = row->gltype;

    // Compression loses detail: pictures keep their exact texels, and only
    // plain alpha masks are worth the saving.
    if (compress && is_GL_ARB_texture_compression_supported != 0 && out->internalformat == GL_ALPHA)
        out->internalformat = GL_COMPRESSED_ALPHA;
    return true;
}

}  // namespace libgr
