// Pictures as the viewer's own image records, for the tests that write
// files with its codecs, and whole files as bytes, for the tests that then
// change them.
#ifndef ZANOVIEW_TESTS_SUPPORT_PICTURE_IMAGES_H
#define ZANOVIEW_TESTS_SUPPORT_PICTURE_IMAGES_H

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "image/image.h"
#include "tests/support/picture_files.h"

namespace zvtest {

using bytes_t = std::vector<unsigned char>;

// An 8-bit RGB record (`components` 3) or an opaque RGBA one (4) of
// `colour`, whose y = 0 is the top row; the record keeps its rows bottom-up.
// Empty when it can't be allocated.
inline libgr::image2d_t picture_image(int width, int height, pixel_fn const& colour = distinct_colour,
                                      int components = 3)
{
    libgr::image2d_t image;
    image.desc = {components == 4 ? libgr::IMAGE_FORMAT_RGBA : libgr::IMAGE_FORMAT_RGB, libgr::IMAGE_TYPE_UINT,
                  libgr::IMAGE_BITS_8};
    image.m_width = std::uint32_t(width);
    image.m_height = std::uint32_t(height);
    if (!image.allocate()) return libgr::image2d_t();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            std::uint32_t const c = colour(x, y);
            unsigned char* p = image.pixel(std::uint64_t(x), std::uint64_t(height - 1 - y));
            p[0] = (unsigned char)(c >> 16), p[1] = (unsigned char)(c >> 8), p[2] = (unsigned char)c;
            if (components == 4) p[3] = 255;
        }
    return image;
}

inline bytes_t read_bytes(std::string const& path)
{
    std::ifstream in(path, std::ios::binary);
    return bytes_t(std::istreambuf_iterator<char>(in), {});
}

inline bool write_bytes(std::string const& path, bytes_t const& bytes)
{
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<char const*>(bytes.data()), std::streamsize(bytes.size()));
    return bool(out);
}

}  // namespace zvtest

#endif
