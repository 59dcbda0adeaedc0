#include "image/normalmap.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iostream>

#include "geometry/color.h"
#include "geometry/vector.h"
#include "utils/diag.h"

#include "image/convert.h"

namespace libgr {

namespace {

constexpr std::uint32_t kCubeSide = 256;  // pixels

// A writable look at an image's bytes as pixels of type T, with rows aligned
// to 4 from the first byte: the writing twin of image2d_reader_t.
template <class T>
struct image2d_editor_t {
    unsigned char* m_bytes = nullptr;
    pixel_layout_t m_rows;

    // Takes img's sizes and bytes, growing the bytes when img's own store
    // packs rows tighter than 4 would.
    bool setimage(image2d_t& img)
    {
        m_rows = {(sizeof(T) * img.m_width + 3) / 4 * 4, 8 * sizeof(T), 0, 0};
        std::uint64_t const need = m_rows.rowsize * img.m_height;
        if (img.size() < need && !img.resize(static_cast<unsigned long>(need), 0)) return false;
        m_bytes = img.begin();
        return true;
    }
    T* pixel(std::uint64_t x, std::uint64_t y) const
    {
        return reinterpret_cast<T*>(m_bytes + m_rows.offset(x, y));
    }
};
static_assert(sizeof(color3b_t) == 3, "a normal is three packed bytes");

bool same(float a, float b) { return std::fabs(a - b) < COMPARE_THRESHOLD; }

// v * 127, rounded half away from zero.
std::int8_t signed_byte(float v)
{
    return static_cast<std::int8_t>(v < 0.0f ? v * 127.0f - 0.5f : v * 127.0f + 0.5f);
}

// As a colour channel: NaN 255, below 0 nothing, above 1 full.
std::uint8_t unsigned_byte(float v)
{
    if (std::isnan(v)) return 255;
    if (v < 0.0f) return 0;
    return static_cast<std::uint8_t>(std::min(v, 1.0f) * 255.0f + 0.5f);
}

// The normal from the height here and one step right and up, each 0 to 255.
direction3_t normal_of(unsigned char here, unsigned char right, unsigned char up)
{
    float const c = 0.003921569f;  // 1/255
    float const dx = right * c + here * -c;
    float const dy = up * c + here * -c;
    // A full step of 255 makes 1 - d*d exactly 0; never let rounding take
    // it below.
    float const z = std::sqrt(std::max(0.0f, 1.0f - dy * dy)) +
                    std::sqrt(std::max(0.0f, 1.0f - dx * dx));
    direction3_t n = Normalize(direction3(dx, dy, z));
    if (same(n.x, 0.0f) && same(n.y, 0.0f) && same(n.z, 0.0f)) n.z = 1.0f;
    return n;
}

void make_signed_rgb(image2d_t& img, std::uint32_t width, std::uint32_t height)
{
    img.m_width = width;
    img.m_height = height;
    img.compressed = false;
    img.desc = {IMAGE_FORMAT_RGB, IMAGE_TYPE_SINT, IMAGE_BITS_8};
}

// The direction that pixel (i, j) of `face` stands for.
direction3_t cube_direction(int face, int i, int j)
{
    auto s = [](int n) { return static_cast<float>(n / 127.0 - 1.0); };
    switch (face) {
    case 0: return direction3(1.0f, s(-j), s(-i));
    case 1: return direction3(-1.0f, s(-j), s(i));
    case 2: return direction3(s(i), 1.0f, s(j));
    case 3: return direction3(s(i), 1.0f, s(-j));
    case 4: return direction3(s(i), s(-j), 1.0f);
    default: return direction3(s(-i), s(-j), -1.0f);
    }
}

}  // namespace

bool heightmap2normalmap(image2d_t& dst, image2d_t const& src, float /*scale*/)
{
    if (src.compressed) {
        libutils::error();
        std::cerr << "normalmap(): compressed format not supported." << std::endl;
        dst = src;
        return false;
    }
    bool const bytes = src.desc.bits == IMAGE_BITS_8 &&
                       (src.desc.type == IMAGE_TYPE_SINT || src.desc.type == IMAGE_TYPE_UINT);
    if (src.desc.format == IMAGE_FORMAT_RGB && bytes) {
        dst = src;
        return true;
    }
    // A record whose bytes fall short of its pixels is refused unread, as
    // one of another type.
    image2d_reader_t<unsigned char> heights;
    if (src.desc.format != IMAGE_FORMAT_GRAYSCALE || src.desc.type != IMAGE_TYPE_UINT ||
        src.desc.bits != IMAGE_BITS_8 || !heights.setimage(src) || !heights.holds_pixels()) {
        libutils::error();
        std::cerr << "normalmap(): image type not supported." << std::endl;
        dst = src;
        return false;
    }

    make_signed_rgb(dst, src.m_width, src.m_height);
    dst.store = src.store;
    image2d_editor_t<color3b_t> normals;
    if (!dst.allocate() || !normals.setimage(dst)) {
        libutils::error();
        std::cerr << "normalmap allocate() fail." << std::endl;
        return false;
    }

    std::uint64_t const w = heights.width;
    std::uint64_t const h = heights.height;
    for (std::uint64_t y = 0; y < h; ++y) {
        std::uint64_t const yu = y + 1 == h ? 0 : y + 1;
        for (std::uint64_t x = 0; x < w; ++x) {
            std::uint64_t const xr = x + 1 == w ? 0 : x + 1;
            direction3_t const n =
                normal_of(*heights.pixel(x, y), *heights.pixel(xr, y), *heights.pixel(x, yu));
            *normals.pixel(x, y) = {signed_byte(n.x), signed_byte(n.y), signed_byte(n.z)};
        }
    }
    return true;
}

bool makenormalcubemap(image2d_t* faces)
{
    // All faces get their bytes before any is filled.
    image2d_editor_t<color3ub_t> editors[6];
    for (int face = 0; face < 6; ++face) {
        make_signed_rgb(faces[face], kCubeSide, kCubeSide);
        if (!faces[face].allocate() || !editors[face].setimage(faces[face])) return false;
    }
    for (int face = 0; face < 6; ++face) {
        for (int j = 0; j < int(kCubeSide); ++j) {
            for (int i = 0; i < int(kCubeSide); ++i) {
                direction3_t const d = Normalize(cube_direction(face, i, j));
                *editors[face].pixel(i, j) = {unsigned_byte(d.x * 0.5f + 0.5f),
                                              unsigned_byte(d.y * 0.5f + 0.5f),
                                              unsigned_byte(d.z * 0.5f + 0.5f)};
            }
        }
    }
    return true;
}

}  // namespace libgr
