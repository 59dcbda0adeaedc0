// The TGA reader, as the viewer calls it.
#include "codecs/tga.h"

#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    libgr::image_tga_t codec;
    zvfuzz::load_as_viewer(codec, data, size);
    return 0;
}
