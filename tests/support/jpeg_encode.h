// Pictures encoded by libjpeg itself, for the tests that hold the viewer's
// JPEG code against libjpeg's own results.
#ifndef ZANOVIEW_TESTS_SUPPORT_JPEG_ENCODE_H
#define ZANOVIEW_TESTS_SUPPORT_JPEG_ENCODE_H

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <jpeglib.h>

namespace zvtest {

using jpeg_bytes_t = std::vector<unsigned char>;
using jpeg_markers_t = std::vector<std::pair<int, std::string>>;  // code, payload

// `components` 1 is gray, 3 RGB (stored as YCbCr 4:2:0, libjpeg's default),
// 4 CMYK; `sample` gives component c of pixel (x, y), y = 0 the top row.
inline jpeg_bytes_t jpeg_encode(unsigned char (*sample)(int x, int y, int c), int w, int h, int components,
                                jpeg_markers_t const& markers = {}, bool progressive = false,
                                bool arithmetic = false)
{
    jpeg_compress_struct c;
    jpeg_error_mgr err;
    c.err = jpeg_std_error(&err);
    jpeg_create_compress(&c);
    unsigned char* out = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&c, &out, &size);
    c.image_width = w;
    c.image_height = h;
    c.input_components = components;
    c.in_color_space = components == 1 ? JCS_GRAYSCALE : components == 3 ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&c);
    if (progressive) jpeg_simple_progression(&c);
    c.arith_code = arithmetic;
    jpeg_start_compress(&c, TRUE);
    for (auto const& m : markers)
        jpeg_write_marker(&c, m.first, reinterpret_cast<JOCTET const*>(m.second.data()), m.second.size());
    jpeg_bytes_t row(w * components);
    while (c.next_scanline < c.image_height) {
        for (int i = 0; i < w * components; ++i) row[i] = sample(i / components, c.next_scanline, i % components);
        JSAMPROW p = row.data();
        jpeg_write_scanlines(&c, &p, 1);
    }
    jpeg_finish_compress(&c);
    jpeg_bytes_t result(out, out + size);
    std::free(out);
    jpeg_destroy_compress(&c);
    return result;
}

}  // namespace zvtest

#endif
