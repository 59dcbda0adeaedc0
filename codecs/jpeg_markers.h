// JPEG marker codes and the codec's fixed sizes. Reference: ITU-T T.81
// (ISO/IEC 10918-1), Table B.1 "Marker code assignments"; libjpeg's
// doc/libjpeg.txt on source and destination managers and saved markers.
// Private to codecs/.
#ifndef ZANOVIEW_CODECS_JPEG_MARKERS_H
#define ZANOVIEW_CODECS_JPEG_MARKERS_H

namespace libgr {
namespace jpeg {

// Every marker is this byte followed by its code; inside entropy-coded data
// a data byte of this value is followed by a stuffed zero instead.
constexpr unsigned char kMarkerPrefix = 0xFF;
constexpr unsigned char kStuffedZero = 0x00;

constexpr unsigned char kSOI = 0xD8;   // start of image
constexpr unsigned char kEOI = 0xD9;   // end of image
constexpr unsigned char kAPP0 = 0xE0;  // APP0 to APP15 follow in order
constexpr unsigned char kCOM = 0xFE;   // comment
constexpr unsigned int kAppCount = 16;

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
