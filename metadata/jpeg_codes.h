// The byte codes of a JPEG stream, shared by the marker parsers here and by
// the codec in codecs/. Reference: ITU-T T.81 (ISO/IEC 10918-1), Table B.1
// "Marker code assignments" and B.1.1.5 on byte stuffing.
#ifndef ZANOVIEW_METADATA_JPEG_CODES_H
#define ZANOVIEW_METADATA_JPEG_CODES_H

namespace libgr {
namespace jpeg {

// Every marker is this byte followed by its code; inside entropy-coded data
// a data byte of this value is followed by a stuffed zero instead.
constexpr unsigned char kMarkerPrefix = 0xFF;
constexpr unsigned char kStuffedZero = 0x00;

constexpr unsigned char kSOF0 = 0xC0;  // baseline frame
constexpr unsigned char kDHT = 0xC4;   // Huffman tables
constexpr unsigned char kSOI = 0xD8;   // start of image
constexpr unsigned char kEOI = 0xD9;   // end of image
constexpr unsigned char kSOS = 0xDA;   // start of scan
constexpr unsigned char kDQT = 0xDB;   // quantisation tables
constexpr unsigned char kDRI = 0xDD;   // restart interval
constexpr unsigned char kAPP0 = 0xE0;  // APP0 to APP15 follow in order
constexpr unsigned char kCOM = 0xFE;   // comment
constexpr unsigned int kAppCount = 16;

}  // namespace jpeg
}  // namespace libgr

#endif
