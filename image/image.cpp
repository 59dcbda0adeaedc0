#include "image/image.h"

#include <limits>

#include <unistd.h>

namespace libgr {

// -------------------------------------------------------------- image_desc_t

std::uint64_t image_desc_t::getPixelBits() const
{
    if (bits >= IMAGE_BITS_MAX) return 0;
    if (bits >= IMAGE_BITS_R3G3B2) return s_image_bits_list[bits].pixel;
    return image_format_components(format) * s_image_bits_list[bits].component;
}

bool operator==(image_desc_t const& a, image_desc_t const& b)
{
    return a.format == b.format && a.type == b.type && a.bits == b.bits;
}

bool operator!=(image_desc_t const& a, image_desc_t const& b)
{
    return !(a == b);
}

// ------------------------------------------------------------ pixel_layout_t

std::uint64_t pixel_layout_t::offset(std::uint64_t x, std::uint64_t y) const
{
    return rowsize * (skiprows + y) + pixelbits * (skippixels + x) / 8;
}

std::uint64_t pixel_layout_t::end(std::uint64_t width, std::uint64_t height) const
{
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
    if (width == 0 || height == 0) return 0;
    std::uint64_t const last = skiprows + height - 1;
    // The last pixel's final byte counts whole, even when the pixel ends in it.
    std::uint64_t const tail = (pixelbits * (skippixels + width) + 7) / 8;
    if (rowsize != 0 && last > (kMost - tail) / rowsize) return kMost;
    return rowsize * last + tail;
}

// ----------------------------------------------------------------- palette_t

bool palette_t::resize(unsigned long n)
{
    size = n;
    if (red.resize(n) && green.resize(n) && blue.resize(n)) return n != 0;
    clear();
    return false;
}

void palette_t::clear()
{
    size = 0;
    red.clear();
    green.clear();
    blue.clear();
}

// ----------------------------------------------------------------- image1d_t

unsigned char* image1d_t::operator[](unsigned int i)
{
    return begin() + i + window.skippixels;
}

unsigned char const* image1d_t::operator[](unsigned int i) const
{
    return begin() + i + window.skippixels;
}

// ----------------------------------------------------------------- image2d_t

std::uint64_t image2d_t::rowlength() const
{
    return window.rowlength != 0 ? window.rowlength : m_width;
}

std::uint64_t image2d_t::rowsize() const
{
    // A row that ends inside a byte still takes the whole byte.
    std::uint64_t const bits = desc.getPixelBits() * rowlength();
    std::uint64_t const bytes = (bits + 7) / 8;
    // OpenGL's default alignment, also for a store that leaves it at 0.
    std::uint64_t const align = store && store->alignment != 0 ? store->alignment : 4;
    return (bytes + align - 1) / align * align;
}

std::uint64_t image2d_t::rowbyte() const
{
    return desc.getPixelBits() * m_width / 8;
}

std::uint64_t image2d_t::datasize() const
{
    std::uint64_t const rows = std::uint64_t(window.skiprows) + m_height;
    std::uint64_t const row = rowsize();
    // Saturated, so that a record with absurd sizes asks for more than can
    // be had instead of a wrapped-around small block.
    if (row != 0 && rows > std::numeric_limits<std::uint64_t>::max() / row)
        return std::numeric_limits<std::uint64_t>::max();
    return row * rows;
}

pixel_layout_t image2d_t::layout() const
{
    return {rowsize(), desc.getPixelBits(), window.skippixels, window.skiprows};
}

unsigned char* image2d_t::pixel(std::uint64_t x, std::uint64_t y)
{
    return begin() + layout().offset(x, y);
}

unsigned char const* image2d_t::pixel(std::uint64_t x, std::uint64_t y) const
{
    return begin() + layout().offset(x, y);
}

bool image2d_t::holds_pixels() const
{
    return !compressed && layout().end(m_width, m_height) <= size();
}

bool image2d_t::allocate()
{
    if (datasize() > max_image_bytes()) return false;
    return resize(datasize(), 0);
}

void image2d_t::clear()
{
    image_bytes_t::clear();
    palette.clear();
    m_width = 0;
    m_height = 0;
}

// ------------------------------------------------------------------- limits

namespace {

std::uint64_t s_max_image_bytes = 0;  // 0: the machine's

std::uint64_t half_the_memory()
{
    long const pages = ::sysconf(_SC_PHYS_PAGES);
    long const page = ::sysconf(_SC_PAGE_SIZE);
    // A system that won't say gets no limit from here.
    if (pages <= 0 || page <= 0) return std::numeric_limits<std::uint64_t>::max();
    return std::uint64_t(pages) * std::uint64_t(page) / 2;
}

}  // namespace

std::uint64_t max_image_bytes()
{
    static std::uint64_t const machine = half_the_memory();
    return s_max_image_bytes != 0 ? s_max_image_bytes : machine;
}

void set_max_image_bytes(std::uint64_t bytes)
{
    s_max_image_bytes = bytes;
}

}  // namespace libgr
