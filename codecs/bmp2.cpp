#include "codecs/bmp2.h"

#include <algorithm>
#include <cstring>

#include "utils/byteorder.h"
#include "utils/diag.h"

#include "codecs/bmp_layout.h"

namespace libgr {

bool bmpimage2_t::load(char const* path, libutils::android_app* app)
{
    libutils::refvector2<unsigned char, libutils::alloc_mmap_unix> file;
    if (!file.load(0 /*whole file*/, path, libutils::PROTECT_READ, 0, false, app)) {
        libutils::error();
        return false;
    }
    unsigned long const filesize = file.size();
    // The headers are read below and in convert() without further checks.
    if (filesize < bmp::kHeadersEnd) {
        libutils::error();
        return false;
    }

    m_fileheader = file;
    m_fileheader.count = 1;
    m_infoheader = file;
    m_infoheader.offset = bmp::kInfoHeaderOffset;
    m_infoheader.count = 1;

    unsigned long const offbits = libutils::itohl(m_fileheader->bfOffBits);
    unsigned long palette = bmp::kHeadersEnd;
    if (offbits >= bmp::kV4PaletteOffset && filesize >= bmp::kV4TagOffset + sizeof bmp::kV4Tag &&
        std::memcmp(file.begin() + bmp::kV4TagOffset, bmp::kV4Tag, sizeof bmp::kV4Tag) == 0)
        palette = bmp::kV4PaletteOffset;

    m_palette = file;
    m_palette.offset = std::min(palette, filesize);
    // Pixels that start inside the headers leave no room for a palette.
    m_palette.count = offbits > palette ? offbits - palette : 0;
    m_pixels = file;
    m_pixels.offset = std::min(offbits, filesize);
    return true;
}

bool convert(image2d_t& image, bmpimage2_t const& bmp)
{
    // Never loaded: there are no headers to read.
    if (bmp.m_fileheader.empty() || bmp.m_infoheader.empty()) {
        libutils::error();
        return false;
    }
    libutils::tagBITMAPINFOHEADER const& info = *bmp.m_infoheader.begin();
    if (libutils::itohl(info.biCompression) != bmp::kCompressionNone) {
        libutils::error();
        return false;
    }

    image2d_t out = image;
    out.palette.clear();
    // The view holds what is left of the mapping behind its offset in whole
    // quads, at most `count` of them: that many entries.
    unsigned long const entries = bmp.m_palette.size();
    if (entries != 0 && !out.palette.resize(entries)) {
        libutils::error();
        return false;
    }
    libutils::tagRGBQUAD const* const quads = bmp.m_palette.begin();
    for (unsigned long i = 0; i < entries; ++i) {
        // Full range: a byte v becomes v * 256 + v.
        out.palette.red[i] = static_cast<unsigned short>(quads[i].rgbRed * 257);
        out.palette.green[i] = static_cast<unsigned short>(quads[i].rgbGreen * 257);
        out.palette.blue[i] = static_cast<unsigned short>(quads[i].rgbBlue * 257);
    }

    bool const indexed = out.palette.size != 0;
    e_image_format_t const small = indexed ? IMAGE_FORMAT_INDEX : IMAGE_FORMAT_GRAYSCALE;
    switch (libutils::itohs(info.biBitCount)) {
    case 1: out.desc = {small, IMAGE_TYPE_UINT, IMAGE_BITS_1}; break;
    case 4: out.desc = {small, IMAGE_TYPE_UINT, IMAGE_BITS_4}; break;
    case 8: out.desc = {small, IMAGE_TYPE_UINT, IMAGE_BITS_8}; break;
    case 24:
        out.palette.clear();
        out.desc = {IMAGE_FORMAT_BGR, IMAGE_TYPE_UINT, IMAGE_BITS_8};
        break;
    case 32:
        // Nothing says what a palette would mean to pixels of four bytes.
        if (indexed) {
            libutils::error();
            return false;
        }
        out.desc = {IMAGE_FORMAT_BGRA, IMAGE_TYPE_UINT, IMAGE_BITS_8};
        break;
    default:
        libutils::error();
        return false;
    }

    out.m_width = libutils::itohl(info.biWidth);
    out.m_height = libutils::itohl(info.biHeight);
    out.compressed = false;
    out.store = nullptr;
    out.window = image_window2d_t();
    static_cast<image_bytes_t&>(out) = bmp.m_pixels;
    // The pixels stay in the mapping, so every pixel the image addresses must
    // be in the file.
    if (out.m_width == 0 || out.m_height == 0 || !out.holds_pixels()) {
        libutils::error();
        return false;
    }
    image = out;
    return true;
}

bool image_bmp2_t::load(image2d_t& image, char const* path)
{
    return m_bmp.load(path, nullptr) && convert(image, m_bmp);
}

}  // namespace libgr
