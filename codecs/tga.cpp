#include "codecs/tga.h"

#include <fstream>
#include <istream>

#include "image/convert.h"
#include "utils/diag.h"

#include "codecs/tga_layout.h"

namespace libgr {

namespace {

std::uint16_t get16(unsigned char const* p)
{
    return static_cast<std::uint16_t>(p[0] | p[1] << 8);
}

void put16(unsigned char* p, std::uint16_t value)
{
    p[0] = static_cast<unsigned char>(value);
    p[1] = static_cast<unsigned char>(value >> 8);
}

// Bytes in the stream, or 0 when it can't tell.
std::uint64_t stream_size(std::istream& in)
{
    in.seekg(0, std::ios::end);
    std::streamoff const end = in.tellg();
    in.seekg(0, std::ios::beg);
    return end > 0 ? static_cast<std::uint64_t>(end) : 0;
}

bool read_bytes(std::istream& in, unsigned char* data, std::uint64_t n)
{
    in.read(reinterpret_cast<char*>(data), static_cast<std::streamsize>(n));
    return static_cast<std::uint64_t>(in.gcount()) == n;
}

// Bytes of one row of pixels in our files: a row that ends inside a byte is
// cut there, and every row is padded to 4.
std::uint64_t file_row(std::uint64_t depth, std::uint64_t width)
{
    std::uint64_t const bytes = depth * width >> 3;
    return (bytes + tga::kRowAlignment - 1) / tga::kRowAlignment * tga::kRowAlignment;
}

// An image of the three kinds written, with the depth it is written at.
struct written_kind_t {
    e_image_format_t format;
    e_image_bits_t bits;
    std::uint8_t depth;  // bits
    bool turned;         // whether rgb2bgr turns it; packed pixels it passes on
};

constexpr written_kind_t kWrittenKinds[] = {
    {IMAGE_FORMAT_RGBA, IMAGE_BITS_8, 32, true},
    {IMAGE_FORMAT_RGB, IMAGE_BITS_8, 24, true},
    {IMAGE_FORMAT_RGBA, IMAGE_BITS_R5G5B5A1, 16, false},
};

// Whether `image` holds its pixels as a file's rows of `row` bytes lie, from
// its first byte on, so that its bytes can be written as they are.
bool has_file_layout(image2d_t const& image, std::uint64_t row)
{
    bool const swapped = image.store && image.store->swapbytes;
    return !swapped && image.window.skippixels == 0 && image.window.skiprows == 0 &&
           image.rowsize() == row && image.size() >= row * image.m_height;
}

}  // namespace

// ---------------------------------------------------------------- tgaimage_t

bool tgaimage_t::load(char const* path, libutils::android_app* /*app*/)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        libutils::error();
        return false;
    }
    std::uint64_t const filesize = stream_size(in);
    unsigned char header[tga::kHeaderSize];
    if (!read_bytes(in, header, sizeof header)) {
        libutils::error();
        return false;
    }
    m_idlength = header[tga::kIdLengthOffset];
    m_colormaptype = header[tga::kColorMapTypeOffset];
    m_imagetype = header[tga::kImageTypeOffset];
    m_colormapfirst = get16(header + tga::kColorMapFirstOffset);
    m_colormaplength = get16(header + tga::kColorMapLengthOffset);
    m_colormapentrysize = header[tga::kColorMapEntryOffset];
    m_xorigin = get16(header + tga::kXOriginOffset);
    m_yorigin = get16(header + tga::kYOriginOffset);
    m_width = get16(header + tga::kWidthOffset);
    m_height = get16(header + tga::kHeightOffset);
    m_pixeldepth = header[tga::kPixelDepthOffset];
    m_descriptor = header[tga::kDescriptorOffset];
    std::uint64_t left = filesize - tga::kHeaderSize;

    if (m_idlength != 0) {
        m_id.resize(m_idlength);
        if (!read_bytes(in, m_id.data(), m_id.size())) {
            libutils::error();
            return false;
        }
        left -= m_id.size();
    }

    if (m_colormaptype != tga::kColorMapNone) {
        std::uint64_t const bytes =
            (std::uint64_t(m_colormapfirst) + m_colormaplength) * m_colormapentrysize;
        // Up to 33 MB on the header's word: the file must hold them.
        if (bytes > left) {
            libutils::error();
            return false;
        }
        m_colormap.resize(bytes);
        if (!read_bytes(in, m_colormap.data(), bytes)) {
            libutils::error();
            return false;
        }
        left -= bytes;
    }

    std::uint64_t const bytes = file_row(m_pixeldepth, m_width) * m_height;
    // A file that lacks rows fails all the same; this way before the header's
    // claim of up to 136 GB is allocated.
    if (bytes > left) {
        libutils::error();
        return false;
    }
    // An empty picture has no bytes, and an anonymous mapping can't be empty.
    if (bytes == 0) {
        m_pixels.clear();
        return true;
    }
    image_bytes_t pixels;
    if (!pixels.resize(bytes, 0)) {
        libutils::error();
        return false;
    }
    m_pixels = pixels;
    if (!read_bytes(in, m_pixels.begin(), bytes)) {
        libutils::error();
        return false;
    }
    return true;
}

bool tgaimage_t::save(char const* path, libutils::android_app* /*app*/)
{
    // The id length is one byte, the colour map length 16 bits, and a map
    // must at least hold the entries before its first.
    std::uint64_t const entries =
        m_colormapentrysize != 0 ? m_colormap.size() / m_colormapentrysize : 0;
    if (m_id.size() > 0xFF || entries > 0xFFFF + std::uint64_t(m_colormapfirst) ||
        (m_colormapentrysize != 0 && entries < m_colormapfirst)) {
        libutils::error();
        return false;
    }
    m_idlength = static_cast<std::uint8_t>(m_id.size());
    if (!m_colormap.empty()) m_colormaptype = tga::kColorMapPresent;
    if (m_colormapentrysize != 0)
        m_colormaplength = static_cast<std::uint16_t>(entries - m_colormapfirst);

    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) {
        libutils::error();
        return false;
    }
    unsigned char header[tga::kHeaderSize];
    header[tga::kIdLengthOffset] = m_idlength;
    header[tga::kColorMapTypeOffset] = m_colormaptype;
    header[tga::kImageTypeOffset] = m_imagetype;
    put16(header + tga::kColorMapFirstOffset, m_colormapfirst);
    put16(header + tga::kColorMapLengthOffset, m_colormaplength);
    header[tga::kColorMapEntryOffset] = m_colormapentrysize;
    put16(header + tga::kXOriginOffset, m_xorigin);
    put16(header + tga::kYOriginOffset, m_yorigin);
    put16(header + tga::kWidthOffset, m_width);
    put16(header + tga::kHeightOffset, m_height);
    header[tga::kPixelDepthOffset] = m_pixeldepth;
    header[tga::kDescriptorOffset] = m_descriptor;
    out.write(reinterpret_cast<char const*>(header), sizeof header);
    if (out.tellp() != std::streampos(tga::kHeaderSize)) {
        libutils::error();
        return false;
    }
    out.write(reinterpret_cast<char const*>(m_id.data()),
              static_cast<std::streamsize>(m_id.size()));
    out.write(reinterpret_cast<char const*>(m_colormap.data()),
              static_cast<std::streamsize>(m_colormap.size()));
    out.write(reinterpret_cast<char const*>(m_pixels.begin()),
              static_cast<std::streamsize>(m_pixels.size()));
    // Closed here, so that a failure to flush the last bytes counts.
    out.close();
    if (!out) {
        libutils::error();
        return false;
    }
    return true;
}

// ------------------------------------------------------------------ converts

bool convert(image2d_t& image, tgaimage_t const& tga)
{
    if ((tga.m_imagetype != tga::kTypeColorMapped && tga.m_imagetype != tga::kTypeTrueColor) ||
        (tga.m_descriptor & tga::kDescriptorTopDown) != 0) {
        libutils::error();
        return false;
    }
    image2d_t out = image;
    switch (tga.m_pixeldepth) {
    case 8: out.desc = {IMAGE_FORMAT_GRAYSCALE, IMAGE_TYPE_UINT, IMAGE_BITS_8}; break;
    case 16: out.desc = {IMAGE_FORMAT_BGRA, IMAGE_TYPE_UINT, IMAGE_BITS_R5G5B5A1}; break;
    case 24: out.desc = {IMAGE_FORMAT_BGR, IMAGE_TYPE_UINT, IMAGE_BITS_8}; break;
    case 32: out.desc = {IMAGE_FORMAT_BGRA, IMAGE_TYPE_UINT, IMAGE_BITS_8}; break;
    default:
        libutils::error();
        return false;
    }
    out.m_width = tga.m_width;
    out.m_height = tga.m_height;
    out.compressed = false;
    out.store = nullptr;
    out.window = image_window2d_t();
    out.palette.clear();
    static_cast<image_bytes_t&>(out) = tga.m_pixels;
    // A record filled other than by load may promise more rows than it holds.
    if (!out.holds_pixels()) {
        libutils::error();
        return false;
    }
    image = out;
    return true;
}

bool convert(tgaimage_t& tga, image2d_t const& image)
{
    if (image.compressed) {
        libutils::error();
        return false;
    }
    // NOTE: images already in the file's blue-first order (BGR, BGRA, and
    // gray) are refused like every other kind: callers hand over RGB or RGBA.
    written_kind_t const* kind = nullptr;
    for (written_kind_t const& k : kWrittenKinds)
        if (k.format == image.desc.format && k.bits == image.desc.bits) kind = &k;
    if (!kind || image.m_width > 0xFFFF || image.m_height > 0xFFFF) {
        libutils::error();
        return false;
    }
    image2d_t turned;
    // A 16-bit image comes back shared and unturned, with false, and is
    // written as it stands if its rows lie as the file's do.
    bool const done = rgb2bgr(turned, image);
    std::uint64_t const row = file_row(kind->depth, image.m_width);
    if ((kind->turned && !done) || !has_file_layout(turned, row)) {
        libutils::error();
        return false;
    }
    tga.m_pixels = static_cast<image_bytes_t const&>(turned);
    tga.m_pixels.count = static_cast<unsigned long>(row * image.m_height);

    tga.m_id.clear();
    tga.m_colormap.clear();
    tga.m_idlength = 0;
    tga.m_colormaptype = tga::kColorMapNone;
    tga.m_imagetype = tga::kTypeTrueColor;
    tga.m_colormapfirst = 0;
    tga.m_colormaplength = 0;
    tga.m_colormapentrysize = 0;
    tga.m_xorigin = 0;
    tga.m_yorigin = 0;
    tga.m_width = static_cast<std::uint16_t>(image.m_width);
    tga.m_height = static_cast<std::uint16_t>(image.m_height);
    tga.m_pixeldepth = kind->depth;
    tga.m_descriptor = 0;
    return true;
}

// --------------------------------------------------------------- image_tga_t

bool image_tga_t::load(image2d_t& image, char const* path)
{
    tgaimage_t tga;
    return tga.load(path, nullptr) && convert(image, tga);
}

bool image_tga_t::save(image2d_t const& image, char const* path)
{
    tgaimage_t tga;
    return convert(tga, image) && tga.save(path, nullptr);
}

}  // namespace libgr
