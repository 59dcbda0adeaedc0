#include "image/scaledown.h"

#include <algorithm>
#include <cassert>
#include <climits>
#include <cstdint>
#include <iostream>

#include "utils/diag.h"

namespace libgr {

namespace {

// A sample of a Bayer cell: its row (0 for r0, 1 for r1) and its byte
// offset from the start of the cell in that row.
struct tap_t {
    unsigned row;
    unsigned at;
};

struct mosaic_t {
    tap_t red, green0, green1, blue;
};

// Offsets into a pair of 3-byte pixels: a colour at pixel p sits at 3p plus
// its channel.
constexpr mosaic_t kGRBG{{0, 3}, {0, 1}, {1, 4}, {1, 2}};
constexpr mosaic_t kGBRG{{1, 0}, {0, 1}, {1, 4}, {0, 5}};
constexpr mosaic_t kRGGB{{0, 0}, {0, 4}, {1, 1}, {1, 5}};
constexpr mosaic_t kBGGR{{1, 3}, {0, 4}, {1, 1}, {0, 2}};

// Bytes of one pixel for the formats a reduction takes, 0 for the others.
unsigned pixel_bytes(e_image_format_t format, bool bayer)
{
    switch (format) {
    case IMAGE_FORMAT_GRAYSCALE: return 1;
    case IMAGE_FORMAT_RGB: return 3;
    case IMAGE_FORMAT_RGBA: return 4;
    case IMAGE_FORMAT_BGR: return bayer ? 0 : 3;
    case IMAGE_FORMAT_BGRA: return bayer ? 0 : 4;
    default: return 0;
    }
}

// The record's rows and window at `bytes` a pixel: the reduction counts 8
// bits a component, whatever `bits` says.
pixel_layout_t byte_layout(image2d_t const& img, std::uint64_t bytes)
{
    pixel_layout_t rows = img.layout();
    rows.pixelbits = 8 * bytes;
    return rows;
}

// Room for every pixel dst addresses. allocate() sizes a record by its rows
// only, so a window kept from earlier use, with skippixels set, would reach
// past the last row. A record without pixels gets nothing: an empty mapping
// can't be made, and it needs none.
bool make_room(image2d_t& dst)
{
    std::uint64_t const bytes =
        std::max(dst.datasize(), byte_layout(dst, image_format_components(dst.desc.format))
                                     .end(dst.m_width, dst.m_height));
    if (bytes == 0) return true;
    if (bytes > ULONG_MAX) return false;
    return dst.resize(static_cast<unsigned long>(bytes), 0);
}

// The steps all five share: dst described and sized after src, then the
// format checked. Returns the bytes of one pixel, 0 after a refusal.
unsigned start(image2d_t& dst, image2d_t const& src, bool bayer)
{
    assert(&dst != &src);
    dst.clear();
    dst.desc = src.desc;
    dst.compressed = false;
    dst.m_width = src.m_width / 2;
    dst.m_height = src.m_height / 2;
    if (!make_room(dst)) {
        libutils::error();
        std::cerr << "scaledown(): allocate() fail." << std::endl;
        return 0;
    }
    unsigned const bytes = pixel_bytes(src.desc.format, bayer);
    if (bytes == 0) {
        libutils::error();
        std::cerr << "scaledown(): " << src.desc.format << ": unsupported format." << std::endl;
    }
    return bytes;
}

void box(image2d_t& dst, image2d_t const& src, unsigned bytes)
{
    // Colour pixels are read in pairs of 6 or 8 bytes, the second pixel 3
    // bytes in whatever the pixel size; gray steps one byte at a time.
    unsigned const step = bytes == 1 ? 1 : 2 * bytes;
    unsigned const second = bytes == 1 ? 1 : 3;
    pixel_layout_t const in = byte_layout(src, bytes), to = byte_layout(dst, bytes);
    for (std::uint64_t y = 0; y < dst.m_height; ++y) {
        unsigned char const* r0 = src.begin() + in.offset(0, 2 * y);
        unsigned char const* r1 = src.begin() + in.offset(0, 2 * y + 1);
        unsigned char* out = dst.begin() + to.offset(0, y);
        for (std::uint64_t x = 0; x < dst.m_width; ++x, r0 += step, r1 += step, out += bytes)
            for (unsigned c = 0; c < bytes; ++c)
                out[c] = static_cast<unsigned char>(
                    (r0[c] + r0[second + c] + r1[c] + r1[second + c]) >> 2);
    }
}

void bayer(image2d_t& dst, image2d_t const& src, unsigned bytes, mosaic_t const& m)
{
    unsigned const step = 2 * bytes;
    pixel_layout_t const in = byte_layout(src, bytes), to = byte_layout(dst, bytes);
    for (std::uint64_t y = 0; y < dst.m_height; ++y) {
        unsigned char const* rows[2] = {src.begin() + in.offset(0, 2 * y),
                                        src.begin() + in.offset(0, 2 * y + 1)};
        unsigned char* out = dst.begin() + to.offset(0, y);
        for (std::uint64_t x = 0; x < dst.m_width; ++x, out += bytes) {
            std::uint64_t const b = step * x;
            auto const at = [&](tap_t t) -> unsigned { return rows[t.row][b + t.at]; };
            out[0] = static_cast<unsigned char>(at(m.red));
            out[1] = static_cast<unsigned char>((at(m.green0) + at(m.green1)) >> 1);
            out[2] = static_cast<unsigned char>(at(m.blue));
            if (bytes == 4) {
                unsigned char const* r0 = rows[0] + b;
                unsigned char const* r1 = rows[1] + b;
                out[3] = static_cast<unsigned char>((r0[3] + r0[6] + r1[3] + r1[6]) >> 2);
            }
        }
    }
}

// A Bayer reduction when `mosaic` is given, else the box filter.
bool reduce(image2d_t& dst, image2d_t const& src, mosaic_t const* mosaic)
{
    unsigned const bytes = start(dst, src, mosaic != nullptr);
    if (bytes == 0) return false;
    if (dst.m_width == 0 || dst.m_height == 0) return true;
    // Every read lies within the first 2 * width pixels of the first
    // 2 * height rows.
    if (byte_layout(src, bytes).end(2ull * dst.m_width, 2ull * dst.m_height) > src.size())
        return false;
    if (mosaic && bytes != 1)
        bayer(dst, src, bytes, *mosaic);
    else
        box(dst, src, bytes);
    return true;
}

}  // namespace

bool scaledown(image2d_t& dst, image2d_t const& src) { return reduce(dst, src, nullptr); }
bool scaledownGRBG(image2d_t& dst, image2d_t const& src) { return reduce(dst, src, &kGRBG); }
bool scaledownGBRG(image2d_t& dst, image2d_t const& src) { return reduce(dst, src, &kGBRG); }
bool scaledownRGGB(image2d_t& dst, image2d_t const& src) { return reduce(dst, src, &kRGGB); }
bool scaledownBGGR(image2d_t& dst, image2d_t const& src) { return reduce(dst, src, &kBGGR); }

}  // namespace libgr
