// The Exif reader on an APP1 payload, reached as the JPEG loader reaches it:
// the payload saved as the file's first APP1, then its orientation asked for.
#include <cstdlib>

#include "codecs/jpeg.h"
#include "codecs/orientation.h"

#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    libgr::jpeginfo_t info;
    libgr::marker_t app1;
    app1.code = 0xE1;
    app1.payload = zvfuzz::make_view(data, size);
    info.markers.push_back(app1);
    std::uint64_t count = 0;
    libgr::apply_exif_orientation(info, count);
    if (count > 3) std::abort();
    return 0;
}
