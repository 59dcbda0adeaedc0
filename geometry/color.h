// Colours as floats from 0 to 1 and as bytes, the named colours of the
// scene, and the conversions between RGB and YCbCr bytes that JPEG needs.
#ifndef ZANOVIEW_GEOMETRY_COLOR_H
#define ZANOVIEW_GEOMETRY_COLOR_H

#include <cstdint>

#include "geometry/matrix.h"
#include "utils/bits.h"

namespace libgr {

struct color3_t {
    float r, g, b;
};
// Also goes to GL as four floats (glColor4fv, glClearColor's arguments).
struct color3a_t {
    float r, g, b, a;
};
struct color3ub_t {
    std::uint8_t r, g, b;
};
struct color3aub_t {
    std::uint8_t r, g, b, a;
};
// Gray.
struct color1ub_t {
    std::uint8_t l;
};
// Gray and alpha.
struct color1aub_t {
    std::uint8_t l, a;
};
struct color3b_t {
    std::int8_t r, g, b;
};
// A JPEG sample. The chroma bytes hold a signed value plus 128 (the two's
// complement with its top bit flipped), so neutral gray has cb = cr = 128.
struct ycbcrub_t {
    std::uint8_t y, cb, cr;
};
static_assert(sizeof(color3a_t) == 16 && sizeof(color3aub_t) == 4 && sizeof(color3ub_t) == 3,
              "colours are packed channels");

constexpr color3_t color3(float r, float g, float b) { return {r, g, b}; }
constexpr color3a_t color3a(float r, float g, float b, float a) { return {r, g, b, a}; }
constexpr color3a_t color3a(color3_t const& c, float a) { return {c.r, c.g, c.b, a}; }
// Each byte times 1/255 (libutils::uc2f): 255 gives a hair above 1.
inline color3a_t color3a(color3aub_t const& c)
{
    return {libutils::uc2f(c.r), libutils::uc2f(c.g), libutils::uc2f(c.b),
            libutils::uc2f(c.a)};
}
constexpr color3ub_t color3ub(std::uint8_t r, std::uint8_t g, std::uint8_t b)
{
    return {r, g, b};
}
constexpr color3aub_t color3aub(std::uint8_t r, std::uint8_t g, std::uint8_t b, std::uint8_t a)
{
    return {r, g, b, a};
}

// All four channels, alpha too: white * 0.18f is (0.18, 0.18, 0.18, 0.18).
constexpr color3a_t operator*(color3a_t const& c, float f)
{
    return {c.r * f, c.g * f, c.b * f, c.a * f};
}

// RGB to JPEG YCbCr. Luma rounds to nearest; chroma is scaled by 127, not
// 128, so that its range is symmetric: chroma 1.0 is 127 above the offset.
// White gives (255, 128, 128).
ycbcrub_t ycbcrub(color3ub_t const& c);
// Back to RGB, each channel clamped to [0, 1] before it becomes a byte.
color3ub_t color3ub(ycbcrub_t const& c);

inline constexpr color3a_t white{1.0f, 1.0f, 1.0f, 1.0f};
inline constexpr color3a_t black{0.0f, 0.0f, 0.0f, 1.0f};
inline constexpr color3a_t gray{0.5f, 0.5f, 0.5f, 1.0f};
inline constexpr color3a_t gray75{0.75f, 0.75f, 0.75f, 1.0f};
// The background: a photographer's 18% gray card.
inline constexpr color3a_t gray18{0.18f, 0.18f, 0.18f, 1.0f};
inline constexpr color3a_t magenta{1.0f, 0.0f, 1.0f, 1.0f};
inline constexpr color3a_t yellow{1.0f, 1.0f, 0.0f, 1.0f};
inline constexpr color3a_t cyan{0.0f, 1.0f, 1.0f, 1.0f};
inline constexpr color3a_t brown{0.375f, 0.25f, 0.0f, 1.0f};
inline constexpr color3_t red{1.0f, 0.0f, 0.0f};
inline constexpr color3_t green{0.0f, 1.0f, 0.0f};
inline constexpr color3_t blue{0.0f, 0.0f, 1.0f};
inline constexpr color3aub_t white3aub{255, 255, 255, 255};
inline constexpr color3aub_t black3aub{0, 0, 0, 255};
inline constexpr color3aub_t gray3aub{127, 127, 127, 255};
inline constexpr color3ub_t white3ub{255, 255, 255};
inline constexpr color3ub_t black3ub{0, 0, 0};
inline constexpr color3ub_t gray3ub{127, 127, 127};

// Colour transforms for row vectors (r, g, b, 1) * M. The YCbCr pair is
// JPEG's (BT.601 weights, chroma from -0.5 to 0.5); YPbPr has the BT.709
// weights.
inline constexpr matrix3w_t matrix_rgb2ycbcr{{{0.299f, -0.16874f, 0.5f, 0.0f},
                                              {0.587f, -0.33126f, -0.41869f, 0.0f},
                                              {0.114f, 0.5f, -0.08131f, 0.0f},
                                              {0.0f, 0.0f, 0.0f, 1.0f}}};
inline constexpr matrix3w_t matrix_ycbcr2rgb{{{1.0f, 1.0f, 1.0f, 0.0f},
                                              {0.0f, -0.34414f, 1.772f, 0.0f},
                                              {1.402f, -0.71414f, 0.0f, 0.0f},
                                              {0.0f, 0.0f, 0.0f, 1.0f}}};
inline constexpr matrix3w_t matrix_rgb2ypbpr{{{0.2126f, -0.1146f, 0.5f, 0.0f},
                                              {0.7152f, -0.3854f, -0.4542f, 0.0f},
                                              {0.0722f, 0.5f, -0.0458f, 0.0f},
                                              {0.0f, 0.0f, 0.0f, 1.0f}}};

}  // namespace libgr

#endif
