// The PNG reader, as the viewer calls it: libpng behind our own checks of
// the header's sizes.
#include "codecs/png.h"

#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    libgr::image_png_t codec;
    zvfuzz::load_as_viewer(codec, data, size);
    return 0;
}
