// TGA file layout: header offsets and sizes, image types, descriptor bits.
// Reference: Truevision, "Truevision TGA File Format", version 2.0 (1991),
// the header table and the image type codes.
// Private to codecs/.
#ifndef ZANOVIEW_CODECS_TGA_LAYOUT_H
#define ZANOVIEW_CODECS_TGA_LAYOUT_H

#include <cstdint>

namespace libgr {
namespace tga {

// Field offsets of the 18-byte header, all little-endian.
constexpr unsigned long kIdLengthOffset = 0;        // 8 bits
constexpr unsigned long kColorMapTypeOffset = 1;    // 8 bits
constexpr unsigned long kImageTypeOffset = 2;       // 8 bits
constexpr unsigned long kColorMapFirstOffset = 3;   // 16 bits
constexpr unsigned long kColorMapLengthOffset = 5;  // 16 bits
constexpr unsigned long kColorMapEntryOffset = 7;   // 8 bits
constexpr unsigned long kXOriginOffset = 8;         // 16 bits
constexpr unsigned long kYOriginOffset = 10;        // 16 bits
constexpr unsigned long kWidthOffset = 12;          // 16 bits
constexpr unsigned long kHeightOffset = 14;         // 16 bits
constexpr unsigned long kPixelDepthOffset = 16;     // 8 bits
constexpr unsigned long kDescriptorOffset = 17;     // 8 bits
constexpr unsigned long kHeaderSize = 18;           // bytes

// Image types. Only the uncompressed colour-mapped and true-colour ones are
// read, and only true-colour is written.
constexpr std::uint8_t kTypeColorMapped = 1;
constexpr std::uint8_t kTypeTrueColor = 2;
constexpr std::uint8_t kTypeGray = 3;
constexpr std::uint8_t kTypeRleColorMapped = 9;
constexpr std::uint8_t kTypeRleTrueColor = 10;
constexpr std::uint8_t kTypeRleGray = 11;

constexpr std::uint8_t kColorMapNone = 0;
constexpr std::uint8_t kColorMapPresent = 1;

// Descriptor bit 5: rows run top to bottom. Bits 0-3 (alpha bits) and 4
// (right to left) are not looked at.
constexpr std::uint8_t kDescriptorTopDown = 0x20;

// Unlike plain TGA, our files pad every row to 4 bytes, so that the pixels
// have the image record's layout and need no copy.
constexpr unsigned long kRowAlignment = 4;  // bytes

}  // namespace tga
}  // namespace libgr

#endif
