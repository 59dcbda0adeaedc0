// The lossless quarter turn of a JPEG, on arbitrary bytes. The first byte
// picks the count, 0 to 4 (4 being refused); the rest is the file.
#include "codecs/transform.h"

#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size == 0) return 0;
    unsigned long const count = data[0] % 5;
    libgr::image_bytes_t bytes = zvfuzz::make_view(data + 1, size - 1);
    libgr::jpegdata_t in;
    in.setvector(bytes, "fuzz.jpg");
    libgr::jpegdata_t out;
    if (libgr::transform(count, out, in)) {
        // What was written is a JPEG of its own: it must decode.
        libgr::jpeginfo_t info;
        libgr::image2d_t image;
        if (info.decompress(image, out, 0, false, libgr::white3ub)) zvfuzz::read_record(image);
    }
    return 0;
}
