// PNG files through libpng, in the file's own pixel layout: palettes stay
// indices, samples of 1, 2 and 4 bits stay packed, 16-bit samples stay
// big-endian, and neither transparency nor gamma is applied. image_png_t is
// the codec; the free functions are its steps.
#ifndef ZANOVIEW_CODECS_PNG_H
#define ZANOVIEW_CODECS_PNG_H

#include <cstddef>

#include "image/image.h"
#include "utils/alloc.h"

#include "codecs/image_object.h"

// libpng's read struct, named here so that its users need not see png.h.
struct png_struct_def;

namespace libgr {

// Clears `image`, then reads the file into it. False for another libpng
// than the one we were built with, a file that can't be opened, isn't PNG
// or is broken; the rows read before a break stay in the image.
bool loader_png(image2d_t& image, char const* path, libutils::android_app* app);

// Writes `image` (rows bottom to top) with no title. False for another
// libpng, a file that can't be opened, and errors from libpng, saving an
// INDEX image among them (no palette is written).
// NOTE: a description PNG has no colour type and depth for (BGR, float,
// packed pixels) writes nothing and still gives true: callers turn BGR into
// RGB themselves.
bool saver_png(image2d_t const& image, char const* path, libutils::android_app* app);

// Whether the libpng we run with is the one whose header we were built
// with. If not, three lines go to std::cerr: "libpng version different.",
// "  header: " and our version, "  source: " and the library's.
bool check_png_version();

// The read proper: 0 done; -1 the file can't be opened or isn't PNG; -2 or
// -3 libpng's read or info struct couldn't be had; -4 libpng found an error,
// or the pixels couldn't be allocated (then "FAIL" goes to std::cerr).
// GRAYSCALE, RGB, INDEX, GRAYSCALE_ALPHA or RGBA by colour type, of
// IMAGE_BITS_1 to IMAGE_BITS_16 by depth, all IMAGE_TYPE_UINT. A palette of
// n entries becomes one of the next power of two (5 gives 8), the extra
// entries zero. The image's window and store are kept and honoured.
int loadpng(char const* path, image2d_t& image, libutils::android_app* app);

// The write proper: 0 done, or nothing done for a description without a
// PNG colour type and depth; -1 the file can't be opened; -2 or -3 libpng's
// write or info struct couldn't be had; -4 libpng found an error ("FAIL"
// goes to std::cerr). A `title`, when given, becomes a "Title" text chunk.
int savepng(char const* path, image2d_t const& image, char const* title,
            libutils::android_app* app);

// Opens `path` into `stream` and tells whether its first 4 bytes are those
// of PNG's signature, leaving the stream behind them. A file that can't be
// opened writes "<path>: file open error, <reason>" to std::cerr; a shorter
// one is closed. Defined for std::ifstream only.
template <class S>
bool check_if_png(char const* path, S& stream);

// libpng's read callback: `length` bytes from the std::istream that is the
// read struct's io pointer. A stream that ends early raises libpng's error.
void png_read(png_struct_def* png, unsigned char* data, std::size_t length);

// The PNG codec; stateless.
class image_png_t : public image_object_t {
public:
    bool load(image2d_t& image, char const* path) override;
    bool save(image2d_t const& image, char const* path) override;
};

}  // namespace libgr

#endif
