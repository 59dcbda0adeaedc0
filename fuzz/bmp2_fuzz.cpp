// The viewer's BMP reader: the file mapped and looked into in place.
#include "codecs/bmp2.h"

#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    libgr::image_bmp2_t codec;
    zvfuzz::load_as_viewer(codec, data, size);
    return 0;
}
