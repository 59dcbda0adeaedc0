#include "geometry/color.h"

namespace libgr {

namespace {

constexpr float per_byte = 0.003921569f;    // 1 / 255
constexpr float per_chroma = 0.007874016f;  // 1 / 127

// Truncation after adding 0.5 rounds half away from zero, on each side of 0.
std::uint8_t chroma_byte(float v)
{
    int const s = v < 0.0f ? static_cast<int>(v * 127 - 0.5) : static_cast<int>(v * 127 + 0.5);
    // Flipping the top bit of a two's-complement byte adds 128.
    return static_cast<std::uint8_t>(s + 128);
}

float chroma_value(std::uint8_t byte)
{
    return static_cast<float>(static_cast<int>(byte) - 128) * per_chroma;
}

std::uint8_t clamped_byte(float v)
{
    if (v < 0.0f) v = 0.0f;
    if (v > 1.0f) v = 1.0f;
    return static_cast<std::uint8_t>(v * 255 + 0.5);
}

}  // namespace

ycbcrub_t ycbcrub(color3ub_t const& c)
{
    vector3w_t const rgb{c.r * per_byte, c.g * per_byte, c.b * per_byte, 1.0f};
    vector3w_t const ycc = rgb * matrix_rgb2ycbcr;
    return {static_cast<std::uint8_t>(ycc.x * 255 + 0.5), chroma_byte(ycc.y), chroma_byte(ycc.z)};
}

color3ub_t color3ub(ycbcrub_t const& c)
{
    vector3w_t const ycc{c.y * per_byte, chroma_value(c.cb), chroma_value(c.cr), 1.0f};
    vector3w_t const rgb = ycc * matrix_ycbcr2rgb;
    return {clamped_byte(rgb.x), clamped_byte(rgb.y), clamped_byte(rgb.z)};
}

}  // namespace libgr
