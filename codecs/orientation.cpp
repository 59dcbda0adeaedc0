#include "codecs/orientation.h"

#include "metadata/exif.h"

#include "codecs/jpeg.h"

namespace libgr {

namespace {

// Exif Orientation values that are pure turns.
constexpr std::uint64_t kUpsideDown = 3;
constexpr std::uint64_t kStoredLeft = 6;   // stored a quarter turn left of upright
constexpr std::uint64_t kStoredRight = 8;  // stored a quarter turn right of upright

}  // namespace

std::uint64_t mixorientandrightrotatecount(std::uint64_t count, std::uint64_t orientation)
{
    switch (orientation) {
    case kUpsideDown: return (count + 2) % 4;
    case kStoredLeft: return (count + 1) % 4;
    case kStoredRight: return (count - 1) % 4;  // unsigned: 0 gives 3
    default: return count;
    }
}

bool apply_exif_orientation(jpeginfo_t const& info, std::uint64_t& count)
{
    exif_view_t payload = info.get_marker(MARKER_NUM_APP1);
    if (payload.empty()) return false;
    app1_marker_t app1;
    app1.set_app1_buffer(payload);
    // A broken Exif block never costs the picture, only its turn.
    if (!app1.parse()) return false;
    auto const& orientation = app1.m_tiff_header.m_tag_0th_ifd.Orientation;
    if (orientation.empty()) return false;
    count = mixorientandrightrotatecount(0, orientation[0]);
    return true;
}

}  // namespace libgr
