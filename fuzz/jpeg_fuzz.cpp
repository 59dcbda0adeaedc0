// The JPEG reader, as the viewer calls it: libjpeg through our source and
// error managers, the saved markers, and the Exif orientation of the first
// APP1 turned into quarter turns.
#include "codecs/jpeg.h"

#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    libgr::image_jpeg1_t codec;
    zvfuzz::load_as_viewer(codec, data, size);
    return 0;
}
