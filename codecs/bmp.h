// BMP files: the headers as they lie on disk, bmpimage_t (read through a
// stream into its own buffer, and the only BMP writer), the free reader
// BmpLoad, and image_bmp_t, the codec built on bmpimage_t.
#ifndef ZANOVIEW_CODECS_BMP_H
#define ZANOVIEW_CODECS_BMP_H

#include <cstdint>

#include "image/image.h"
#include "utils/alloc.h"

#include "codecs/image_object.h"

namespace libutils {

// The BMP headers byte for byte as on disk, in Intel order and without gaps,
// so that a view into a mapped file can be read as one at any offset,
// aligned or not (the info header starts at byte 14).
struct __attribute__((packed)) tagBITMAPFILEHEADER {
    std::uint16_t bfType;       // "BM"
    std::uint32_t bfSize;       // bytes of the whole file; never relied on
    std::uint16_t bfReserved1;
    std::uint16_t bfReserved2;
    std::uint32_t bfOffBits;    // bytes from the start of the file to the pixels
};
static_assert(sizeof(tagBITMAPFILEHEADER) == 14, "as on disk");

struct __attribute__((packed)) tagBITMAPINFOHEADER {
    std::uint32_t biSize;           // bytes of this header
    std::uint32_t biWidth;          // pixels
    std::uint32_t biHeight;         // rows, bottom to top; a top-down file's
                                    // negative height reads as a huge count
    std::uint16_t biPlanes;
    std::uint16_t biBitCount;       // bits per pixel
    std::uint32_t biCompression;    // 0: none, the only kind read
    std::uint32_t biSizeImage;      // bytes of pixel data
    std::uint32_t biXPelsPerMeter;
    std::uint32_t biYPelsPerMeter;
    std::uint32_t biClrUsed;        // palette entries; never read
    std::uint32_t biClrImportant;
};
static_assert(sizeof(tagBITMAPINFOHEADER) == 40, "as on disk");

struct __attribute__((packed)) tagRGBQUAD {
    std::uint8_t rgbBlue;
    std::uint8_t rgbGreen;
    std::uint8_t rgbRed;
    std::uint8_t rgbReserved;
};
static_assert(sizeof(tagRGBQUAD) == 4, "as on disk");

}  // namespace libutils

namespace libgr {

// A BMP file read through a stream into a buffer of its own. The palette is
// skipped on reading and never written, so pictures of 1, 4 and 8 bits come
// out as gray levels of their indices (what the photo frame's textures are).
struct bmpimage_t {
    libutils::tagBITMAPFILEHEADER m_fileheader{};
    libutils::tagBITMAPINFOHEADER m_infoheader{};
    image_bytes_t m_pixels;  // rows as in the file: bottom to top, padded to 4 bytes

    // Reads the headers and the pixel data. False for a file that can't be
    // opened, has incomplete headers, doesn't start with "BM" or puts its
    // pixels behind its end; the headers read so far stay in the record.
    // A file that ends early still loads with its missing rows zero, but a
    // header asking for more than twice the bytes the file holds is lying
    // rather than cut short, and is refused before anything is allocated.
    // NOTE: rows are counted in whole bytes rounded down: a 1-bit row of 33
    // pixels reads as 4 bytes where the file has 8, and such a picture comes
    // out sheared. The buffer is still as large as an image record of the
    // picture addresses, so nothing reads past it.
    bool load(char const* path, libutils::android_app* app);

    // Writes both headers (no palette, so bfOffBits is 54) and all of
    // m_pixels as they are. False when the file can't be written.
    bool save(char const* path, libutils::android_app* app);
};

// Shares the pixels of an uncompressed 1-, 4-, 8- or 24-bit file with
// `image`: GRAYSCALE of that many bits, or BGR of 8. False, with no message,
// for other kinds. The image's window and store are reset, since the bytes
// now have the file's layout.
bool convert(image2d_t& image, bmpimage_t const& bmp);

// Fills `bmp` for saving and shares the image's bytes, unchanged: rows must
// already be bottom to top and padded to 4 bytes. Only GRAYSCALE of 1, 4 or
// 8 bits and BGR of 8 can be written; others print a line on std::cerr and
// give false, so an RGB image must be turned into BGR first.
bool convert(bmpimage_t& bmp, image2d_t const& image);

// A reader of its own, for callers that know what the pixels are: `format`
// becomes the image's format as it stands, and 24-bit pixels are turned from
// BGR into RGB order. Refuses compressed files.
// NOTE: rows are read unpadded, while the turn steps by padded rows, so it
// suits pictures whose rows need no padding (a width that is a multiple of
// 4 for 24 bits). Pictures of 1 and 4 bits read no pixel bytes at all.
bool BmpLoad(image2d_t& image, char const* path, e_image_format_t format);

// The codec on bmpimage_t; the viewer uses image_bmp2_t instead.
class image_bmp_t : public image_object_t {
public:
    bool load(image2d_t& image, char const* path) override;
    bool save(image2d_t const& image, char const* path) override;

private:
    bmpimage_t m_bmp;
};

}  // namespace libgr

#endif
