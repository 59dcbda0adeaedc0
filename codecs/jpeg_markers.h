// The JPEG codec's fixed sizes and settings; the marker codes are in
// metadata/jpeg_codes.h. Reference: libjpeg's doc/libjpeg.txt on source and
// destination managers and saved markers. Private to codecs/.
#ifndef ZANOVIEW_CODECS_JPEG_MARKERS_H
#define ZANOVIEW_CODECS_JPEG_MARKERS_H

#include "metadata/jpeg_codes.h"

namespace libgr {
namespace jpeg {

// A marker's length field counts itself: 65535 keeps any APPn or COM whole.
constexpr unsigned int kMarkerLengthLimit = 65535;  // bytes
// Used only when reading the header alone, where nothing is decoded and a
// segment of any length may be kept whole.
constexpr unsigned int kUnlimitedLength = 0xFFFFFFFF;

// The encoder's output grows by this much whenever libjpeg fills it.
constexpr unsigned long kOutputStep = 0x100000;  // bytes, 1 MiB

// What the viewer's save writes: near-lossless, readable by any decoder.
constexpr int kSaveQuality = 95;
constexpr bool kSaveForceBaseline = true;

}  // namespace jpeg
}  // namespace libgr

#endif
