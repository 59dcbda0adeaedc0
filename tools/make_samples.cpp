// Writes the JPEG, PNG and TGA pictures of samples/ through our own
// writers, so that the samples also show those writers at work: hills.jpg,
// a photo-like landscape with smooth skies and fine detail; flowers.png, an
// RGBA picture whose flowers fade into a transparent background over a few
// pixels; and gradient.tga, a 24-bit colour gradient. Run by hand:
//   zv_make_samples [directory]    (the repository's samples/ by default)
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <string>
#include <vector>

#include "image/image.h"

#include "codecs/jpeg.h"
#include "codecs/png.h"
#include "codecs/tga.h"

namespace {

using libgr::image2d_t;

struct colour_t {
    float r, g, b;  // 0 to 1
};

// A disc, or a capsule when the two ends differ, with an edge that fades
// out over `soft` pixels.
struct shape_t {
    float x0, y0, x1, y1;  // pixels, y up
    float radius;          // pixels
    colour_t colour;
};

constexpr float kSoft = 3.0f;  // pixels

float distance_to_segment(shape_t const& s, float x, float y)
{
    float const dx = s.x1 - s.x0;
    float const dy = s.y1 - s.y0;
    float const len2 = dx * dx + dy * dy;
    float const along = len2 > 0 ? ((x - s.x0) * dx + (y - s.y0) * dy) / len2 : 0.0f;
    float const t = std::clamp(along, 0.0f, 1.0f);
    return std::hypot(x - (s.x0 + t * dx), y - (s.y0 + t * dy));
}

// How much of pixel (x, y) the shape covers, 0 to 1, with a smooth edge.
float coverage(shape_t const& s, float x, float y)
{
    float const inside = s.radius - distance_to_segment(s, x, y);  // pixels
    float const t = std::clamp(inside / kSoft + 0.5f, 0.0f, 1.0f);
    return t * t * (3 - 2 * t);
}

// One flower: a stem, six petals around a heart.
void add_flower(std::vector<shape_t>& shapes, float x, float y, float size, colour_t petal)
{
    shapes.push_back({x, y, x + size * 0.3f, 0.0f, size * 0.12f, {0.25f, 0.55f, 0.2f}});
    for (int i = 0; i < 6; ++i) {
        float const a = static_cast<float>(i) * 3.14159265f / 3;
        float const px = x + std::cos(a) * size * 0.55f;
        float const py = y + std::sin(a) * size * 0.55f;
        shapes.push_back({px, py, px, py, size * 0.42f, petal});
    }
    shapes.push_back({x, y, x, y, size * 0.3f, {0.98f, 0.82f, 0.2f}});
}

// Shapes painted one over the other onto a transparent background, with
// straight (not premultiplied) alpha, as PNG keeps it.
image2d_t flowers(std::uint32_t width, std::uint32_t height)
{
    std::vector<shape_t> shapes;
    add_flower(shapes, 70, 150, 38, {0.9f, 0.3f, 0.45f});
    add_flower(shapes, 165, 95, 46, {0.45f, 0.4f, 0.95f});
    add_flower(shapes, 255, 170, 34, {0.98f, 0.55f, 0.15f});
    add_flower(shapes, 120, 200, 22, {0.95f, 0.95f, 0.98f});
    add_flower(shapes, 280, 70, 26, {0.8f, 0.2f, 0.85f});

    image2d_t image;
    image.desc = {libgr::IMAGE_FORMAT_RGBA, libgr::IMAGE_TYPE_UINT, libgr::IMAGE_BITS_8};
    image.m_width = width;
    image.m_height = height;
    if (!image.allocate()) return image2d_t();
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x) {
            float r = 0, g = 0, b = 0, alpha = 0;
            for (shape_t const& s : shapes) {
                float const a = coverage(s, x + 0.5f, y + 0.5f);
                float const out = a + alpha * (1 - a);
                if (out <= 0) continue;
                r = (s.colour.r * a + r * alpha * (1 - a)) / out;
                g = (s.colour.g * a + g * alpha * (1 - a)) / out;
                b = (s.colour.b * a + b * alpha * (1 - a)) / out;
                alpha = out;
            }
            unsigned char* const p = image.begin() + image.rowsize() * y + 4 * x;
            p[0] = static_cast<unsigned char>(std::lround(r * 255));
            p[1] = static_cast<unsigned char>(std::lround(g * 255));
            p[2] = static_cast<unsigned char>(std::lround(b * 255));
            p[3] = static_cast<unsigned char>(std::lround(alpha * 255));
        }
    return image;
}

// Red grows to the right, green upwards, blue falls to the right.
image2d_t gradient(std::uint32_t width, std::uint32_t height)
{
    image2d_t image;
    image.desc = {libgr::IMAGE_FORMAT_RGB, libgr::IMAGE_TYPE_UINT, libgr::IMAGE_BITS_8};
    image.m_width = width;
    image.m_height = height;
    if (!image.allocate()) return image2d_t();
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x) {
            unsigned char* const p = image.begin() + image.rowsize() * y + 3 * x;
            p[0] = static_cast<unsigned char>(x * 255 / (width - 1));
            p[1] = static_cast<unsigned char>(y * 255 / (height - 1));
            p[2] = static_cast<unsigned char>(255 - x * 191 / (width - 1));
        }
    return image;
}

// Rolling hills under an evening sky, with a sun and rows of trees: a
// picture with the tones and edges of a photo. Row 0 is the bottom.
image2d_t hills(std::uint32_t width, std::uint32_t height)
{
    image2d_t image;
    image.desc = {libgr::IMAGE_FORMAT_RGB, libgr::IMAGE_TYPE_UINT, libgr::IMAGE_BITS_8};
    image.m_width = width;
    image.m_height = height;
    if (!image.allocate()) return image2d_t();
    float const w = float(width), h = float(height);
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x) {
            float const fx = float(x), fy = float(y);
            // Sky: deep blue above, warm near the horizon.
            float const t = fy / h;
            float r = 0.95f - 0.75f * t, g = 0.70f - 0.35f * t, b = 0.55f + 0.35f * t;
            float const sun = std::hypot(fx - 0.72f * w, fy - 0.62f * h) / (0.07f * h);
            if (sun < 1.0f) r = 1.0f, g = 0.93f, b = 0.70f;
            else if (sun < 2.5f) {
                float const glow = (2.5f - sun) / 1.5f * 0.35f;
                r += glow, g += glow * 0.8f, b += glow * 0.3f;
            }
            // Two ranges of hills, the nearer one darker and with trees.
            float const far = h * (0.42f + 0.06f * std::sin(fx / w * 7.0f) + 0.03f * std::sin(fx / w * 23.0f));
            float const near = h * (0.28f + 0.08f * std::sin(fx / w * 4.0f + 1.3f) + 0.02f * std::sin(fx / w * 41.0f));
            if (fy < far) r = 0.35f, g = 0.45f + 0.1f * fy / far, b = 0.45f;
            if (fy < near) {
                float const shade = 0.6f + 0.4f * fy / near;
                bool const tree = std::fmod(fx, 9.0f) < 4.0f && fy > near - 6.0f - 4.0f * std::sin(fx * 0.7f);
                r = (tree ? 0.10f : 0.25f) * shade;
                g = (tree ? 0.30f : 0.50f) * shade;
                b = (tree ? 0.12f : 0.18f) * shade;
            }
            unsigned char* const p = image.begin() + image.rowsize() * y + 3 * x;
            p[0] = static_cast<unsigned char>(std::lround(std::min(r, 1.0f) * 255));
            p[1] = static_cast<unsigned char>(std::lround(std::min(g, 1.0f) * 255));
            p[2] = static_cast<unsigned char>(std::lround(std::min(b, 1.0f) * 255));
        }
    return image;
}

}  // namespace

int main(int argc, char** argv)
{
    std::string const dir = argc > 1 ? argv[1] : ZV_SAMPLES_DIR;
    std::string const jpg = dir + "/hills.jpg";
    std::string const png = dir + "/flowers.png";
    std::string const tga = dir + "/gradient.tga";
    bool const jpg_ok = libgr::image_jpeg1_t().save(hills(640, 400), jpg.c_str());
    bool const png_ok = libgr::image_png_t().save(flowers(320, 240), png.c_str());
    bool const tga_ok = libgr::image_tga_t().save(gradient(256, 160), tga.c_str());
    if (!jpg_ok) std::cerr << jpg << ": not written" << std::endl;
    if (!png_ok) std::cerr << png << ": not written" << std::endl;
    if (!tga_ok) std::cerr << tga << ": not written" << std::endl;
    return jpg_ok && png_ok && tga_ok ? 0 : 1;
}
