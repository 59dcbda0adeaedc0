// BMP file layout: magic numbers, header sizes and offsets. Reference:
// Microsoft's Windows GDI documentation of BITMAPFILEHEADER,
// BITMAPINFOHEADER, BITMAPV4HEADER and RGBQUAD (wingdi.h).
// Private to codecs/.
#ifndef ZANOVIEW_CODECS_BMP_LAYOUT_H
#define ZANOVIEW_CODECS_BMP_LAYOUT_H

#include <cstdint>

namespace libgr {
namespace bmp {

constexpr std::uint16_t kMagic = 0x4D42;  // "BM" read in Intel order: 19778

constexpr unsigned long kFileHeaderSize = 14;  // bytes
constexpr unsigned long kInfoHeaderSize = 40;  // bytes, the one header we write
constexpr unsigned long kInfoHeaderOffset = kFileHeaderSize;
constexpr unsigned long kHeadersEnd = kFileHeaderSize + kInfoHeaderSize;  // 54

// A file whose 40-byte header is followed by the colour space tag "sRGB"
// (stored backwards, "BGRs") is taken to have a 108-byte version 4 header,
// with the palette behind it; only when bfOffBits leaves room for all of it.
constexpr unsigned long kV4HeaderSize = 108;  // bytes
constexpr unsigned long kV4PaletteOffset = kFileHeaderSize + kV4HeaderSize;  // 122
constexpr unsigned long kV4TagOffset = kHeadersEnd;
constexpr char kV4Tag[4] = {'B', 'G', 'R', 's'};

constexpr std::uint32_t kCompressionNone = 0;  // BI_RGB
constexpr unsigned long kRowAlignment = 4;     // bytes

// What the writer puts in the fields a reader doesn't need.
constexpr std::uint16_t kPlanes = 1;
constexpr std::uint32_t kPixelsPerMeter = 72;

}  // namespace bmp
}  // namespace libgr

#endif
