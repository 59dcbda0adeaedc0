#include "image/convert.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <iostream>
#include <limits>

#include "utils/diag.h"

namespace libgr {

namespace {

std::uint64_t round_up4(std::uint64_t bytes)
{
    return (bytes + 3) / 4 * 4;
}

// Grows the record's bytes to at least `bytes`. allocate() sizes a record by
// its own window and store; a destination left with a window or store from
// earlier use can address more than that, and is given the room.
bool make_room(image2d_t& img, std::uint64_t bytes)
{
    if (img.size() >= bytes) return true;
    if (bytes > std::numeric_limits<unsigned long>::max()) return false;
    return img.resize(static_cast<unsigned long>(bytes), 0);
}

// Room for every pixel the record addresses, by its own layout.
bool make_room(image2d_t& img)
{
    return make_room(img, img.layout().end(img.m_width, img.m_height));
}

bool bytes_of_integers(image_desc_t const& desc)
{
    return (desc.type == IMAGE_TYPE_SINT || desc.type == IMAGE_TYPE_UINT) &&
           desc.bits == IMAGE_BITS_8;
}

void take_sizes(image2d_t& dst, image2d_t const& src)
{
    dst.m_width = src.m_width;
    dst.m_height = src.m_height;
}

// The one body of bgr2rgb and rgb2bgr: `from3` and `from4` become `to3` and
// `to4`. `store3` (may be null) goes to a three-component result.
bool swap_red_blue(image2d_t& dst, image2d_t const& src, e_image_format_t from3,
                   e_image_format_t from4, e_image_format_t to3, e_image_format_t to4,
                   image_store_t const* store3)
{
    e_image_format_t const format = src.desc.format;
    if (format == to3 || format == to4) {
        dst = src;
        return true;
    }
    if ((format != from3 && format != from4) || !bytes_of_integers(src.desc) ||
        !src.holds_pixels()) {
        dst = src;
        return false;
    }
    bool const four = format == from4;
    dst.desc = {four ? to4 : to3, src.desc.type, IMAGE_BITS_8};
    dst.compressed = false;
    take_sizes(dst, src);
    if (!four && store3) dst.store = store3;
    if (src.m_height == 0) return true;

    // Rows padded to four from the first byte, whatever dst's store and
    // window say.
    pixel_layout_t const out{round_up4(src.rowbyte()), four ? 32u : 24u, 0, 0};
    if (!dst.allocate() || !make_room(dst, out.end(src.m_width, src.m_height))) return false;
    for (std::uint64_t y = 0; y < src.m_height; ++y) {
        for (std::uint64_t x = 0; x < src.m_width; ++x) {
            unsigned char const* s = src.pixel(x, y);
            unsigned char* d = dst.begin() + out.offset(x, y);
            d[0] = s[2];
            d[1] = s[1];
            d[2] = s[0];
            if (four) d[3] = s[3];
        }
    }
    return true;
}

// The one body of rgb2rgba and rgba2rgb.
bool change_alpha(image2d_t& dst, image2d_t const& src, e_image_format_t from,
                  e_image_format_t to, image_store_t const* store)
{
    bool const convertible = bytes_of_integers(src.desc) && !src.compressed;
    if (convertible && src.desc.format == to) {
        dst = src;
        return true;
    }
    if (!convertible || src.desc.format != from || !src.holds_pixels()) {
        dst = src;
        return false;
    }
    dst.store = store;
    dst.desc = {to, src.desc.type, IMAGE_BITS_8};
    take_sizes(dst, src);
    dst.compressed = false;
    if (!dst.allocate()) return false;

    std::uint64_t const in = from == IMAGE_FORMAT_RGBA ? 4 : 3;
    std::uint64_t const out = to == IMAGE_FORMAT_RGBA ? 4 : 3;
    // dst's rows from its first byte: a window kept from earlier use is not
    // honoured.
    pixel_layout_t const rows{dst.rowsize(), 8 * out, 0, 0};
    if (!make_room(dst, rows.end(src.m_width, src.m_height))) return false;
    for (std::uint64_t y = 0; y < src.m_height; ++y) {
        for (std::uint64_t x = 0; x < src.m_width; ++x) {
            unsigned char const* s = src.pixel(x, y);
            unsigned char* d = dst.begin() + rows.offset(x, y);
            std::memcpy(d, s, std::min(in, out));
            if (out == 4) d[3] = 255;
        }
    }
    return true;
}

// The colours an index can reach: no more than the palette claims, nor than
// any of its planes holds.
std::uint64_t palette_entries(palette_t const& palette)
{
    auto held = [](auto const& plane) { return std::uint64_t(plane.end() - plane.begin()); };
    return std::min({palette.size, held(palette.red), held(palette.green), held(palette.blue)});
}

unsigned char channel_byte(float v)
{
    if (std::isnan(v)) return 255;
    if (v < 0.0f) return 0;
    return static_cast<unsigned char>(std::min(v, 1.0f) * 255.0f + 0.5f);
}

// The checks fillcolor and addcolor share, with their messages.
bool colour_target(image2d_t const& img)
{
    if (img.desc.type != IMAGE_TYPE_UINT) {
        libutils::error();
        std::cerr << "not support image type." << std::endl;
        return false;
    }
    if (img.desc.bits != IMAGE_BITS_8) {
        libutils::error();
        std::cerr << "not support image bits." << std::endl;
        return false;
    }
    if (img.desc.format != IMAGE_FORMAT_RGB && img.desc.format != IMAGE_FORMAT_RGBA) {
        libutils::error();
        std::cerr << "not support format." << std::endl;
        return false;
    }
    return true;
}

}  // namespace

// ------------------------------------------------------------ channel order

bool bgr2rgb(image2d_t& dst, image2d_t const& src)
{
    assert(&dst != &src);
    return swap_red_blue(dst, src, IMAGE_FORMAT_BGR, IMAGE_FORMAT_BGRA, IMAGE_FORMAT_RGB,
                         IMAGE_FORMAT_RGBA, nullptr);
}

bool rgb2bgr(image2d_t& dst, image2d_t const& src)
{
    assert(&dst != &src);
    static image_store_t const imgstore{false, 4};
    return swap_red_blue(dst, src, IMAGE_FORMAT_RGB, IMAGE_FORMAT_RGBA, IMAGE_FORMAT_BGR,
                         IMAGE_FORMAT_BGRA, &imgstore);
}

// -------------------------------------------------------------------- alpha

bool rgb2rgba(image2d_t& dst, image2d_t const& src)
{
    assert(&dst != &src);
    static image_store_t const imgstore{false, 4};
    return change_alpha(dst, src, IMAGE_FORMAT_RGB, IMAGE_FORMAT_RGBA, &imgstore);
}

bool rgba2rgb(image2d_t& dst, image2d_t const& src)
{
    assert(&dst != &src);
    static image_store_t const imgstore{false, 4};
    return change_alpha(dst, src, IMAGE_FORMAT_RGBA, IMAGE_FORMAT_RGB, &imgstore);
}

// ---------------------------------------------------------------- palette

bool index2rgb(image2d_t& dst, image2d_t const& src)
{
    assert(&dst != &src);
    if (src.desc.format != IMAGE_FORMAT_INDEX) {
        dst = src;
        return true;
    }
    dst.clear();
    dst.desc = {IMAGE_FORMAT_RGB, IMAGE_TYPE_UINT, IMAGE_BITS_8};
    take_sizes(dst, src);
    dst.compressed = false;
    if (!dst.allocate()) return false;

    std::uint64_t bits = 0;
    switch (src.desc.bits) {
    case IMAGE_BITS_1: bits = 1; break;
    case IMAGE_BITS_4: bits = 4; break;
    case IMAGE_BITS_8: bits = 8; break;
    default: return false;
    }
    if (!src.holds_pixels() || !make_room(dst)) return false;

    palette_t const& palette = src.palette;
    std::uint64_t const entries = palette_entries(palette);
    for (std::uint64_t y = 0; y < src.m_height; ++y) {
        for (std::uint64_t x = 0; x < src.m_width; ++x) {
            // The pixel's place in its byte is counted in bits, so that a
            // window starting inside a byte still reads its own first pixel.
            std::uint64_t const bit = bits * (src.window.skippixels + x) % 8;
            unsigned char const byte = *src.pixel(x, y);
            unsigned index = byte;
            if (bits == 1) index = (byte >> (7 - bit)) & 1u;
            if (bits == 4) index = bit == 0 ? byte >> 4 : byte & 0x0Fu;

            unsigned char* d = dst.pixel(x, y);
            if (index < entries) {
                d[0] = static_cast<unsigned char>(palette.red[index] >> 8);
                d[1] = static_cast<unsigned char>(palette.green[index] >> 8);
                d[2] = static_cast<unsigned char>(palette.blue[index] >> 8);
            } else {
                d[0] = d[1] = d[2] = 0;
            }
        }
    }
    return true;
}

// -------------------------------------------------------------- deep copy

bool copy(image2d_t& dst, image2d_t const& src)
{
    assert(&dst != &src);
    if (!src.holds_pixels()) return false;
    dst.desc = src.desc;
    take_sizes(dst, src);
    dst.store = src.store;
    dst.compressed = false;
    dst.window = image_window2d_t{};
    if (!dst.allocate()) return false;

    std::uint64_t const bytes = src.rowbyte();
    std::uint64_t const row = dst.rowsize();
    for (std::uint64_t y = 0; y < src.m_height; ++y) {
        unsigned char* d = dst.pixel(0, y);
        std::memcpy(d, src.pixel(0, y), bytes);
        // Padding too, so that two copies of one picture are equal bytes.
        if (row != bytes) std::memset(d + bytes, 0, row - bytes);
    }
    return true;
}

// ------------------------------------------------------------------ colour

bool fillcolor(image2d_t& img, color3a_t const& color)
{
    if (!colour_target(img)) return false;
    if (img.m_height == 0) return true;
    if (!img.holds_pixels()) return false;

    bool const alpha = img.desc.format == IMAGE_FORMAT_RGBA;
    unsigned char const value[4] = {channel_byte(color.r), channel_byte(color.g),
                                    channel_byte(color.b), channel_byte(color.a)};
    for (std::uint64_t y = 0; y < img.m_height; ++y)
        for (std::uint64_t x = 0; x < img.m_width; ++x)
            std::memcpy(img.pixel(x, y), value, alpha ? 4 : 3);
    return true;
}

bool addcolor(image2d_t& img, color3a_t const& color)
{
    if (!colour_target(img)) return false;
    if (img.m_height == 0) return true;
    if (!img.holds_pixels()) return false;

    float const add[3] = {color.r, color.g, color.b};
    for (std::uint64_t y = 0; y < img.m_height; ++y) {
        for (std::uint64_t x = 0; x < img.m_width; ++x) {
            unsigned char* p = img.pixel(x, y);
            for (int c = 0; c < 3; ++c) p[c] = channel_byte(p[c] * 0.003921569f + add[c]);
        }
    }
    return true;
}

// ------------------------------------------------------------------- gray

bool monochrome(image2d_t& dst, image2d_t const& src)
{
    assert(&dst != &src);
    if (src.desc.format != IMAGE_FORMAT_RGB) {
        libutils::error();
        std::cerr << src.desc.format << ": image format is not RGB." << std::endl;
        return false;
    }
    if (src.desc.type != IMAGE_TYPE_UINT) {
        libutils::error();
        std::cerr << src.desc.type << ": image type is not UINT." << std::endl;
        return false;
    }
    if (src.desc.bits != IMAGE_BITS_8) {
        libutils::error();
        std::cerr << src.desc.bits << ": image bits is not 8." << std::endl;
        return false;
    }
    dst.desc = {IMAGE_FORMAT_GRAYSCALE, IMAGE_TYPE_UINT, IMAGE_BITS_8};
    take_sizes(dst, src);
    dst.compressed = false;
    // After a failed allocate dst may still hold a block shared with
    // another record: never write into that.
    if (!dst.allocate()) return false;

    image2d_reader_t<unsigned char> reader;
    if (!reader.setimage(src) || !reader.holds_pixels() || !make_room(dst))
        return false;
    for (std::uint64_t y = 0; y < reader.height; ++y) {
        for (std::uint64_t x = 0; x < reader.width; ++x) {
            unsigned char const* s = reader.pixel(x, y);
            float const gray = 0.299f * s[0] + 0.587f * s[1] + 0.114f * s[2];
            *dst.pixel(x, y) = static_cast<unsigned char>(gray);
        }
    }
    return true;
}

// ---------------------------------------------------------------- rotation

bool rotate(unsigned long count, image2d_t& dst, image2d_t const& src)
{
    assert(&dst != &src);
    if (count == 0) {
        dst = src;
        return true;
    }
    if (count > 3 || !src.holds_pixels()) return false;

    dst.clear();
    dst.desc = src.desc;
    dst.compressed = false;
    bool const sideways = count != 2;
    dst.m_width = sideways ? src.m_height : src.m_width;
    dst.m_height = sideways ? src.m_width : src.m_height;
    if (!dst.allocate() || !make_room(dst)) return false;

    std::uint64_t const W = dst.m_width;
    std::uint64_t const H = dst.m_height;
    std::uint64_t const bytes = src.desc.getPixelBits() / 8;
    for (std::uint64_t y = 0; y < src.m_height; ++y) {
        for (std::uint64_t x = 0; x < src.m_width; ++x) {
            std::uint64_t dx = y, dy = H - 1 - x;  // a quarter turn to the right
            if (count == 2) {
                dx = W - 1 - x;
                dy = H - 1 - y;
            } else if (count == 3) {
                dx = W - 1 - y;
                dy = x;
            }
            std::memcpy(dst.pixel(dx, dy), src.pixel(x, y), bytes);
        }
    }
    return true;
}

// ----------------------------------------------------------------- windows

bool makewindow(image2d_t& dst, image2d_t& src, int x, int y, unsigned int width,
                unsigned int height)
{
    assert(&dst != &src);
    if (src.compressed) return false;
    static_cast<image_bytes_t&>(dst) = static_cast<image_bytes_t const&>(src);
    dst.desc = src.desc;
    dst.store = src.store;
    dst.window.rowlength = static_cast<std::uint32_t>(src.rowlength());
    dst.window.skippixels = static_cast<std::uint32_t>(x) + src.window.skippixels;
    dst.window.skiprows = static_cast<std::uint32_t>(y) + src.window.skiprows;
    dst.compressed = false;
    // Against src's own width, so the clip only holds for a window of the
    // whole picture; the tiler never windows a window.
    dst.m_width = std::min<std::uint32_t>(width, src.m_width - dst.window.skippixels);
    dst.m_height = std::min<std::uint32_t>(height, src.m_height - dst.window.skiprows);
    dst.palette = src.palette;
    return true;
}

// ------------------------------------------------------------------ reader

template <class T>
bool image2d_reader_t<T>::setimage(image2d_t const& img)
{
    if (img.compressed) {
        m_data.clear();
        width = 0;
        height = 0;
        desc = image_desc_t{};
        return false;
    }
    m_data = static_cast<image_bytes_t const&>(img);
    width = img.m_width;
    height = img.m_height;
    desc = img.desc;
    return true;
}

template <class T>
std::uint64_t image2d_reader_t<T>::rowsize() const
{
    return round_up4((desc.getPixelBits() * width + 7) / 8);
}

template <class T>
pixel_layout_t image2d_reader_t<T>::layout() const
{
    return {rowsize(), desc.getPixelBits(), 0 /*skippixels*/, 0 /*skiprows*/};
}

template <class T>
bool image2d_reader_t<T>::holds_pixels() const
{
    return layout().end(width, height) <= m_data.size() * sizeof(T);
}

template <class T>
T const* image2d_reader_t<T>::pixel(std::uint64_t x, std::uint64_t y) const
{
    auto const* bytes = reinterpret_cast<unsigned char const*>(m_data.begin());
    return reinterpret_cast<T const*>(bytes + layout().offset(x, y));
}

template struct image2d_reader_t<unsigned char>;

}  // namespace libgr
