// How far a picture must be turned to stand upright: the right-rotate count
// (clockwise quarter turns, 0 to 3) and how a JPEG's Exif orientation
// becomes one. Pixels are never turned; the scene turns the picture.
#ifndef ZANOVIEW_CODECS_ORIENTATION_H
#define ZANOVIEW_CODECS_ORIENTATION_H

#include <cstdint>

namespace libgr {

struct jpeginfo_t;

// `count` turned further by what an Exif Orientation value demands: 3 adds
// a half turn, 6 a quarter turn right, 8 a quarter turn left, each modulo 4.
// Any other value, the mirrored 2, 4, 5 and 7 included, leaves `count` as
// it is, not even reduced: (7, 1) gives 7. (3, 6) gives 0, (0, 8) gives 3.
std::uint64_t mixorientandrightrotatecount(std::uint64_t count, std::uint64_t orientation);

// Sets `count` from the Orientation of the 0th IFD in the file's first
// APP1, and returns true, when that APP1 is Exif that parses and has the
// tag; otherwise leaves `count` alone. A later APP1 is never looked at.
bool apply_exif_orientation(jpeginfo_t const& info, std::uint64_t& count);

}  // namespace libgr

#endif
