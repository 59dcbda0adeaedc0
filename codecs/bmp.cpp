#include "codecs/bmp.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <utility>

#include "utils/byteorder.h"
#include "utils/diag.h"

#include "codecs/bmp_layout.h"

namespace libgr {

using libutils::tagBITMAPFILEHEADER;
using libutils::tagBITMAPINFOHEADER;

namespace {

// ------------------------------------------------------------ stream fields

// Fields go through the stream one at a time, so that the records' layout
// never matters to it.
template <class T>
T get(std::istream& in)
{
    T value = 0;
    in.read(reinterpret_cast<char*>(&value), sizeof value);
    return value;
}

std::uint16_t get16(std::istream& in)
{
    return libutils::itohs(get<std::uint16_t>(in));
}

std::uint32_t get32(std::istream& in)
{
    return libutils::itohl(get<std::uint32_t>(in));
}

void put16(std::ostream& out, std::uint16_t value)
{
    value = libutils::itohs(value);
    out.write(reinterpret_cast<char const*>(&value), sizeof value);
}

void put32(std::ostream& out, std::uint32_t value)
{
    value = libutils::itohl(value);
    out.write(reinterpret_cast<char const*>(&value), sizeof value);
}

// Bytes in the stream, or 0 when it can't tell.
std::uint64_t stream_size(std::istream& in)
{
    in.seekg(0, std::ios::end);
    std::streamoff const end = in.tellg();
    in.seekg(0, std::ios::beg);
    return end > 0 ? static_cast<std::uint64_t>(end) : 0;
}

// Reads both headers and leaves the stream at the pixels. False for headers
// that the file doesn't hold whole, a file that isn't "BM", or pixels that
// would start behind the end of the file.
bool read_headers(std::istream& in, std::uint64_t filesize, tagBITMAPFILEHEADER& file,
                  tagBITMAPINFOHEADER& info, bool uncompressed_only)
{
    file.bfType = get16(in);
    file.bfSize = get32(in);
    file.bfReserved1 = get16(in);
    file.bfReserved2 = get16(in);
    file.bfOffBits = get32(in);
    if (in.tellg() != std::streampos(bmp::kFileHeaderSize)) return false;

    info.biSize = get32(in);
    info.biWidth = get32(in);
    info.biHeight = get32(in);
    info.biPlanes = get16(in);
    info.biBitCount = get16(in);
    info.biCompression = get32(in);
    info.biSizeImage = get32(in);
    info.biXPelsPerMeter = get32(in);
    info.biYPelsPerMeter = get32(in);
    info.biClrUsed = get32(in);
    info.biClrImportant = get32(in);
    if (in.tellg() != std::streampos(bmp::kHeadersEnd)) return false;
    if (file.bfType != bmp::kMagic) return false;
    if (uncompressed_only && info.biCompression != bmp::kCompressionNone) return false;

    // A file stream seeks past its end without complaint.
    if (file.bfOffBits > filesize) return false;
    in.seekg(file.bfOffBits, std::ios::beg);
    return in.tellg() == std::streampos(file.bfOffBits);
}

// ------------------------------------------------------------ size checks

// True when `rows` rows of `row` bytes are no more than twice the `present`
// bytes: a file cut short still loads, a header that lies about its size is
// refused before its claim is allocated.
bool backed_by_file(std::uint64_t row, std::uint64_t rows, std::uint64_t present)
{
    return row == 0 || rows <= 2 * present / row;
}

// Bytes of a row padded as the file pads it, a row that ends inside a byte
// taking the whole byte.
std::uint64_t padded_row(std::uint64_t bits_per_pixel, std::uint64_t width)
{
    return (bits_per_pixel * width + 31) / 32 * bmp::kRowAlignment;
}

void write_headers(std::ostream& out, tagBITMAPFILEHEADER const& file,
                   tagBITMAPINFOHEADER const& info)
{
    put16(out, file.bfType);
    put32(out, file.bfSize);
    put16(out, file.bfReserved1);
    put16(out, file.bfReserved2);
    put32(out, file.bfOffBits);

    put32(out, info.biSize);
    put32(out, info.biWidth);
    put32(out, info.biHeight);
    put16(out, info.biPlanes);
    put16(out, info.biBitCount);
    put32(out, info.biCompression);
    put32(out, info.biSizeImage);
    put32(out, info.biXPelsPerMeter);
    put32(out, info.biYPelsPerMeter);
    put32(out, info.biClrUsed);
    put32(out, info.biClrImportant);
}

}  // namespace

// --------------------------------------------------------------- bmpimage_t

bool bmpimage_t::load(char const* path, libutils::android_app* /*app*/)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        libutils::error();
        return false;
    }
    std::uint64_t const filesize = stream_size(in);
    if (!read_headers(in, filesize, m_fileheader, m_infoheader, false)) {
        libutils::error();
        return false;
    }

    std::uint64_t const bits = m_infoheader.biBitCount;
    std::uint64_t const width = m_infoheader.biWidth;
    std::uint64_t const height = m_infoheader.biHeight;
    // The rows as read: whole bytes rounded down, then padded to 4.
    std::uint64_t const bytes = bits * width >> 3;
    std::uint64_t const row = (bytes + bmp::kRowAlignment - 1) / bmp::kRowAlignment * bmp::kRowAlignment;
    // The rows an image record of the picture addresses; wider than `row`
    // when a row ends inside a byte.
    std::uint64_t const record_row = padded_row(bits, width);
    if (!backed_by_file(record_row, height, filesize - m_fileheader.bfOffBits)) {
        libutils::error();
        return false;
    }
    image_bytes_t pixels;
    if (!pixels.resize(record_row * height, 0)) {
        libutils::error();
        return false;
    }
    // A file that ends early leaves the rest of the fresh buffer zero.
    in.read(reinterpret_cast<char*>(pixels.begin()), static_cast<std::streamsize>(row * height));
    m_pixels = pixels;
    return true;
}

bool bmpimage_t::save(char const* path, libutils::android_app* /*app*/)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) {
        libutils::error();
        return false;
    }
    std::uint64_t const data = m_pixels.size();
    m_fileheader.bfType = bmp::kMagic;
    m_fileheader.bfSize = static_cast<std::uint32_t>(data + bmp::kHeadersEnd);
    m_fileheader.bfReserved1 = 0;
    m_fileheader.bfReserved2 = 0;
    m_fileheader.bfOffBits = bmp::kHeadersEnd;
    m_infoheader.biSize = bmp::kInfoHeaderSize;
    write_headers(out, m_fileheader, m_infoheader);
    out.write(reinterpret_cast<char const*>(m_pixels.begin()), static_cast<std::streamsize>(data));
    // Closed here, so that a failure to flush the last bytes counts.
    out.close();
    return !out.fail();
}

// ---------------------------------------------------------------- converts

bool convert(image2d_t& image, bmpimage_t const& bmp)
{
    if (bmp.m_infoheader.biCompression != bmp::kCompressionNone) {
        libutils::error();
        return false;
    }
    image2d_t out = image;
    switch (bmp.m_infoheader.biBitCount) {
    case 1: out.desc = {IMAGE_FORMAT_GRAYSCALE, IMAGE_TYPE_UINT, IMAGE_BITS_1}; break;
    case 4: out.desc = {IMAGE_FORMAT_GRAYSCALE, IMAGE_TYPE_UINT, IMAGE_BITS_4}; break;
    case 8: out.desc = {IMAGE_FORMAT_GRAYSCALE, IMAGE_TYPE_UINT, IMAGE_BITS_8}; break;
    case 24: out.desc = {IMAGE_FORMAT_BGR, IMAGE_TYPE_UINT, IMAGE_BITS_8}; break;
    default:
        libutils::error();
        return false;
    }
    out.m_width = bmp.m_infoheader.biWidth;
    out.m_height = bmp.m_infoheader.biHeight;
    out.compressed = false;
    out.store = nullptr;
    out.window = image_window2d_t();
    static_cast<image_bytes_t&>(out) = bmp.m_pixels;
    // A record filled other than by load may promise more rows than it holds.
    if (!out.holds_pixels()) {
        libutils::error();
        return false;
    }
    image = out;
    return true;
}

bool convert(bmpimage_t& bmp, image2d_t const& image)
{
    if (image.compressed) {
        libutils::error();
        return false;
    }
    std::uint16_t bits = 0;
    if (image.desc.type == IMAGE_TYPE_SINT || image.desc.type == IMAGE_TYPE_UINT) {
        if (image.desc.format == IMAGE_FORMAT_GRAYSCALE) {
            if (image.desc.bits == IMAGE_BITS_1) bits = 1;
            if (image.desc.bits == IMAGE_BITS_4) bits = 4;
            if (image.desc.bits == IMAGE_BITS_8) bits = 8;
        } else if (image.desc.format == IMAGE_FORMAT_BGR && image.desc.bits == IMAGE_BITS_8) {
            bits = 24;
        }
    }
    if (bits == 0) {
        libutils::error();
        std::cerr << "convert(to bmp): not supported format." << std::endl;
        return false;
    }
    bmp.m_infoheader.biWidth = image.m_width;
    bmp.m_infoheader.biHeight = image.m_height;
    bmp.m_infoheader.biPlanes = bmp::kPlanes;
    bmp.m_infoheader.biBitCount = bits;
    bmp.m_infoheader.biCompression = bmp::kCompressionNone;
    bmp.m_infoheader.biSizeImage = static_cast<std::uint32_t>(image.size());
    bmp.m_infoheader.biXPelsPerMeter = bmp::kPixelsPerMeter;
    bmp.m_infoheader.biYPelsPerMeter = bmp::kPixelsPerMeter;
    bmp.m_infoheader.biClrUsed = 0;
    bmp.m_infoheader.biClrImportant = 0;
    bmp.m_pixels = static_cast<image_bytes_t const&>(image);
    return true;
}

// ------------------------------------------------------------------ BmpLoad

bool BmpLoad(image2d_t& image, char const* path, e_image_format_t format)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        libutils::error();
        return false;
    }
    std::uint64_t const filesize = stream_size(in);
    tagBITMAPFILEHEADER file{};
    tagBITMAPINFOHEADER info{};
    if (!read_headers(in, filesize, file, info, true)) {
        libutils::error();
        return false;
    }

    image2d_t out = image;
    out.m_width = info.biWidth;
    out.m_height = info.biHeight;
    out.desc.format = format;
    out.desc.type = IMAGE_TYPE_UINT;
    if (info.biBitCount == 1) out.desc.bits = IMAGE_BITS_1;
    if (info.biBitCount == 4) out.desc.bits = IMAGE_BITS_4;
    if (info.biBitCount == 8 || info.biBitCount == 24) out.desc.bits = IMAGE_BITS_8;
    out.compressed = false;

    // Whole bytes per pixel and no row padding.
    std::uint64_t const row = std::uint64_t(info.biBitCount >> 3) * out.m_width;
    std::uint64_t const present = filesize - file.bfOffBits;
    if (!backed_by_file(row, out.m_height, present)) {
        libutils::error();
        return false;
    }
    std::uint64_t const data = row * out.m_height;
    // Room for what the image addresses, too, which the read may not fill.
    std::uint64_t const room = std::max(data, out.datasize());
    if (room > 2 * present) {
        libutils::error();
        return false;
    }
    image_bytes_t pixels;
    if (!pixels.resize(room, 0)) {
        libutils::error();
        return false;
    }
    in.read(reinterpret_cast<char*>(pixels.begin()), static_cast<std::streamsize>(data));

    if (info.biBitCount == 24) {
        std::uint64_t const step = padded_row(24, out.m_width);
        unsigned char* const p = pixels.begin();
        for (std::uint64_t y = 0; y < out.m_height; ++y) {
            // Padded steps over unpadded rows run out before the rows do.
            if (y * step + 3 * std::uint64_t(out.m_width) > room) break;
            for (std::uint64_t x = 0; x < out.m_width; ++x) {
                unsigned char* const pixel = p + y * step + 3 * x;
                std::swap(pixel[0], pixel[2]);
            }
        }
    }
    static_cast<image_bytes_t&>(out) = pixels;
    image = out;
    return true;
}

// -------------------------------------------------------------- image_bmp_t

bool image_bmp_t::load(image2d_t& image, char const* path)
{
    return m_bmp.load(path, nullptr) && convert(image, m_bmp);
}

bool image_bmp_t::save(image2d_t const& image, char const* path)
{
    bmpimage_t bmp;
    return convert(bmp, image) && bmp.save(path, nullptr);
}

}  // namespace libgr
