// BMP files read in place: bmpimage2_t maps the file and looks into the
// mapping as headers, palette and pixels, and image_bmp2_t, the viewer's BMP
// codec, hands the mapped pixels to the image without a copy.
#ifndef ZANOVIEW_CODECS_BMP2_H
#define ZANOVIEW_CODECS_BMP2_H

#include "image/image.h"
#include "utils/alloc.h"
#include "utils/refvector2.h"

#include "codecs/bmp.h"
#include "codecs/image_object.h"

namespace libgr {

// Four views sharing one read-only mapping of the file; it lives as long as
// any of them, or any image that took the pixels.
struct bmpimage2_t {
    libutils::ofsvector<libutils::tagBITMAPFILEHEADER, libutils::alloc_mmap_unix> m_fileheader;  // byte 0
    libutils::ofsvector<libutils::tagBITMAPINFOHEADER, libutils::alloc_mmap_unix> m_infoheader;  // byte 14
    // Byte 54, or 122 behind a version 4 header, up to the pixels.
    // NOTE: its count is the palette's length in bytes, not in quads, so the
    // view reaches up to four times as far, into the pixels when the file is
    // long enough, and convert() takes it all: an 8-bit file with 256 colours
    // can give a palette of 1024 entries. Only the first 256 are ever indexed.
    libutils::ofsvector<libutils::tagRGBQUAD, libutils::alloc_mmap_unix> m_palette;
    image_bytes_t m_pixels;  // from bfOffBits to the end of the file

    // Maps the file and points the views into it. Beyond needing both
    // headers to be there, nothing is checked here, not even "BM": convert()
    // goes by the fields it needs. A view whose offset lies behind the end of
    // the file is left empty.
    bool load(char const* path, libutils::android_app* app);
};

// Shares the mapped pixels with `image`. Uncompressed files only: 1, 4 and
// 8 bits give INDEX with a palette, GRAYSCALE without one; 24 bits give BGR
// (a palette is dropped); 32 bits give BGRA, but only without a palette.
// A picture whose rows the file doesn't hold whole is refused, since they
// would be read past the end of the mapping; so are top-down files, whose
// negative height reads as a huge row count. The image's window and store
// are reset to the file's layout.
bool convert(image2d_t& image, bmpimage2_t const& bmp);

// The viewer's BMP codec. The image may outlive it: it holds the mapping.
class image_bmp2_t : public image_object_t {
public:
    bool load(image2d_t& image, char const* path) override;

private:
    bmpimage2_t m_bmp;
};

}  // namespace libgr

#endif
