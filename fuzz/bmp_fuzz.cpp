// The stream BMP readers: bmpimage_t, behind image_bmp_t, which reads the
// photo frame's pictures, and the free-standing BmpLoad.
#include <string>

#include "codecs/bmp.h"

#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    libgr::image_bmp_t codec;
    zvfuzz::load_as_viewer(codec, data, size);

    std::string const path = zvfuzz::input_path("picture");
    libgr::image2d_t image;
    if (libgr::BmpLoad(image, path.c_str(), libgr::IMAGE_FORMAT_RGB)) zvfuzz::read_record(image);
    return 0;
}
