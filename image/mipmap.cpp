#include "image/mipmap.h"

#include <algorithm>
#include <cstring>

namespace libgr {

namespace {

std::uint64_t padded(std::uint64_t bytes, unsigned alignment)
{
    return (bytes + alignment - 1) / alignment * alignment;
}

// Bytes of one pixel when pixels are whole bytes, else 0.
unsigned whole_pixel_bytes(image2d_t const& img)
{
    if (img.compressed) return 0;
    std::uint64_t const bits = img.desc.getPixelBits();
    return bits != 0 && bits % 8 == 0 ? unsigned(bits / 8) : 0;
}

// The window lies within its rows, and its pixels within the bytes.
bool holds_window(image2d_t const& img)
{
    return img.rowlength() >= std::uint64_t(img.window.skippixels) + img.m_width && img.holds_pixels();
}

// One output row of a halved level: pixel i is the rounded mean of pixels
// 2i and 2i + 1 of rows `r0` and `r1`, for the `pairs` pairs the rows hold
// whole; the rest of the `out_width` pixels repeat the mean of the last
// pixel of both rows, as if that pixel went on to the right.
template <unsigned N>
void halve_row(unsigned char* out, unsigned char const* r0, unsigned char const* r1,
               std::uint32_t pairs, std::uint32_t last, std::uint32_t out_width)
{
    std::uint32_t const whole = std::min(pairs, out_width);
    for (std::uint32_t i = 0; i < whole; ++i) {
        unsigned char const* a = r0 + 2 * N * i;
        unsigned char const* b = r1 + 2 * N * i;
        for (unsigned c = 0; c < N; ++c)
            out[N * i + c] = static_cast<unsigned char>((a[c] + a[N + c] + b[c] + b[N + c] + 2) >> 2);
    }
    if (whole == out_width) return;
    unsigned char edge[N];
    for (unsigned c = 0; c < N; ++c)
        edge[c] = static_cast<unsigned char>((r0[N * last + c] + r1[N * last + c] + 1) >> 1);
    for (std::uint32_t i = whole; i < out_width; ++i) std::memcpy(out + N * i, edge, N);
}

template <unsigned N>
void halve_picture(unsigned char* out, std::uint64_t out_stride, image2d_t const& img,
                   std::uint32_t half)
{
    std::uint32_t const w = img.m_width;
    std::uint32_t const h = img.m_height;
    for (std::uint32_t j = 0; j < half; ++j) {
        unsigned char* const row = out + out_stride * j;
        // Above the picture every row averages its last row with itself.
        if (j > 0 && 2 * std::uint64_t(j) >= std::uint64_t(h) + 1) {
            std::memcpy(row, row - out_stride, out_stride);
            continue;
        }
        std::uint32_t const y0 = std::min(2 * j, h - 1);
        std::uint32_t const y1 = std::min(2 * j + 1, h - 1);
        halve_row<N>(row, img.pixel(0, y0), img.pixel(0, y1), w / 2, w - 1, half);
    }
}

template <unsigned N>
void halve_square(unsigned char* out, std::uint64_t out_stride, unsigned char const* in,
                  std::uint64_t in_stride, std::uint32_t half)
{
    for (std::uint32_t j = 0; j < half; ++j) {
        unsigned char const* const r0 = in + in_stride * (2 * std::uint64_t(j));
        halve_row<N>(out + out_stride * j, r0, r0 + in_stride, half, 2 * half - 1, half);
    }
}

using picture_halver = void (*)(unsigned char*, std::uint64_t, image2d_t const&, std::uint32_t);
using square_halver = void (*)(unsigned char*, std::uint64_t, unsigned char const*, std::uint64_t,
                               std::uint32_t);

picture_halver const s_picture_halvers[4] = {halve_picture<1>, halve_picture<2>,
                                             halve_picture<3>, halve_picture<4>};
square_halver const s_square_halvers[4] = {halve_square<1>, halve_square<2>, halve_square<3>,
                                           halve_square<4>};

}  // namespace

unsigned averageable_pixel_bytes(image2d_t const& img)
{
    if (img.desc.type != IMAGE_TYPE_UINT && img.desc.type != IMAGE_TYPE_SINT) return 0;
    if (img.desc.bits != IMAGE_BITS_8) return 0;
    switch (img.desc.format) {
    case IMAGE_FORMAT_GRAYSCALE:
    case IMAGE_FORMAT_GRAYSCALE_ALPHA:
    case IMAGE_FORMAT_RGB:
    case IMAGE_FORMAT_BGR:
    case IMAGE_FORMAT_RGBA:
    case IMAGE_FORMAT_BGRA:
        break;
    default:
        return 0;
    }
    // Signed bytes would need signed means; no picture file gives them.
    if (img.desc.type == IMAGE_TYPE_SINT) return 0;
    if (img.m_width == 0 || img.m_height == 0 || !holds_window(img)) return 0;
    return whole_pixel_bytes(img);
}

std::vector<square_level_t> average_levels(image2d_t const& img, std::uint32_t side,
                                           unsigned pixel, unsigned alignment,
                                           std::vector<unsigned char>& storage)
{
    std::vector<square_level_t> levels;
    if (pixel == 0 || pixel > 4 || side < 2 || img.m_width > side || img.m_height > side)
        return levels;

    std::uint64_t total = 0;
    for (std::uint32_t s = side / 2; s >= 1; s /= 2) total += padded(std::uint64_t(s) * pixel, alignment) * s;
    if (storage.size() < total) storage.resize(total);

    unsigned char* at = storage.data();
    std::uint32_t s = side / 2;
    std::uint64_t stride = padded(std::uint64_t(s) * pixel, alignment);
    s_picture_halvers[pixel - 1](at, stride, img, s);
    levels.push_back({s, at});
    while (s > 1) {
        unsigned char const* const in = at;
        std::uint64_t const in_stride = stride;
        at += stride * s;
        s /= 2;
        stride = padded(std::uint64_t(s) * pixel, alignment);
        s_square_halvers[pixel - 1](at, stride, in, in_stride, s);
        levels.push_back({s, at});
    }
    return levels;
}

edge_strips_t continue_edges(image2d_t const& img, std::uint32_t side, unsigned alignment,
                             std::vector<unsigned char>& storage)
{
    edge_strips_t strips;
    unsigned const pixel = whole_pixel_bytes(img);
    std::uint32_t const w = img.m_width;
    std::uint32_t const h = img.m_height;
    if (pixel == 0 || w == 0 || h == 0 || w > side || h > side || !holds_window(img)) return strips;
    if (w == side && h == side) return strips;

    std::uint64_t const right_stride = padded(std::uint64_t(side - w) * pixel, alignment);
    std::uint64_t const top_stride = padded(std::uint64_t(side) * pixel, alignment);
    std::uint64_t const right_bytes = right_stride * h;
    std::uint64_t const top_bytes = top_stride * (side - h);
    if (storage.size() < right_bytes + top_bytes) storage.resize(right_bytes + top_bytes);
    unsigned char* const right = storage.data();
    unsigned char* const top = right + right_bytes;

    // Repeats the pixel at `from` over `count` pixels at `to`.
    auto repeat = [pixel](unsigned char* to, unsigned char const* from, std::uint32_t count) {
        for (std::uint32_t i = 0; i < count; ++i) std::memcpy(to + std::uint64_t(pixel) * i, from, pixel);
    };
    if (w < side) {
        for (std::uint32_t y = 0; y < h; ++y)
            repeat(right + right_stride * y, img.pixel(0, y) + std::uint64_t(pixel) * (w - 1), side - w);
        strips.right_width = side - w;
        strips.right_height = h;
        strips.right = right;
    }
    if (h < side) {
        unsigned char const* const last = img.pixel(0, h - 1);
        std::memcpy(top, last, std::uint64_t(pixel) * w);
        repeat(top + std::uint64_t(pixel) * w, last + std::uint64_t(pixel) * (w - 1), side - w);
        for (std::uint32_t y = 1; y < side - h; ++y) std::memcpy(top + top_stride * y, top, top_stride);
        strips.top_width = side;
        strips.top_height = side - h;
        strips.top = top;
    }
    return strips;
}

}  // namespace libgr
