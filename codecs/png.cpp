#include "codecs/png.h"

#include <cerrno>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <istream>
#include <vector>

#include <png.h>

#include "utils/bits.h"
#include "utils/diag.h"

namespace libgr {

namespace {

// Bytes of the signature that check_if_png reads before libpng takes over.
constexpr int kSignatureChecked = 4;

// Deflate puts at most 1032 bytes into one, so a file can't hold more than
// this many times its size in rows: a header claiming more is refused
// before its claim is allocated.
constexpr std::uint64_t kMaxInflateRatio = 1032;

struct color_type_t {
    int png;  // PNG_COLOR_TYPE_*
    e_image_format_t format;
};

constexpr color_type_t kColorTypes[] = {
    {PNG_COLOR_TYPE_GRAY, IMAGE_FORMAT_GRAYSCALE},
    {PNG_COLOR_TYPE_RGB, IMAGE_FORMAT_RGB},
    {PNG_COLOR_TYPE_PALETTE, IMAGE_FORMAT_INDEX},
    {PNG_COLOR_TYPE_GRAY_ALPHA, IMAGE_FORMAT_GRAYSCALE_ALPHA},
    {PNG_COLOR_TYPE_RGB_ALPHA, IMAGE_FORMAT_RGBA},
};

struct depth_t {
    int png;  // bits of a sample
    e_image_bits_t bits;
};

constexpr depth_t kDepths[] = {
    {1, IMAGE_BITS_1}, {2, IMAGE_BITS_2}, {4, IMAGE_BITS_4}, {8, IMAGE_BITS_8}, {16, IMAGE_BITS_16},
};

// One pointer for each row, top row first, as libpng takes them. The table
// lives with the caller of the functions that may longjmp, which skips
// destructors.
using row_table_t = std::vector<png_bytep>;

// No exception may unwind through libpng's frames: a table that can't be
// had is told by the result.
bool make_row_table(row_table_t& rows, std::uint64_t n) noexcept
{
    try {
        rows.assign(n, nullptr);
    } catch (std::exception const&) {
        return false;
    }
    return true;
}

// Where PNG row `i`, counted from the top, lies in the image: in its row
// height - 1 - i, so that the picture stands bottom up.
std::uint64_t row_offset(image2d_t const& image, std::uint64_t i)
{
    return image.layout().offset(0, image.m_height - 1 - i);
}

// Whether every PNG row of `rowbytes` bytes lies within the image's bytes
// where row_offset puts it. The image holding its pixels is enough when
// libpng counts a row as the image does; the top row is checked against
// libpng's own count all the same.
bool rows_fit(image2d_t const& image, std::uint64_t rowbytes)
{
    return image.m_height != 0 && image.holds_pixels() &&
           row_offset(image, 0) + rowbytes <= image.size();
}

// Palette entries widen to 16 bits (v becomes v * 257); the table grows to
// the next power of two, the extra entries zero.
bool take_palette(png_structp png, png_infop info, palette_t& palette)
{
    png_colorp colors = nullptr;
    int count = 0;
    png_get_PLTE(png, info, &colors, &count);
    unsigned long const n = count > 0 ? static_cast<unsigned long>(count) : 0;
    unsigned long const size = libutils::Is_2nSize(n) ? n : 1ul << libutils::Get_TopBitPos(n);
    if (!palette.resize(size)) return false;
    for (unsigned long i = 0; i < size; ++i) {
        png_color const c = i < n ? colors[i] : png_color{0, 0, 0};
        palette.red[i] = static_cast<unsigned short>(c.red * 257);
        palette.green[i] = static_cast<unsigned short>(c.green * 257);
        palette.blue[i] = static_cast<unsigned short>(c.blue * 257);
    }
    return true;
}

// ------------------------------------------------ the functions that longjmp

// Reads the PNG behind the signature from `in` into `image`. libpng's
// errors longjmp back to the setjmp here, so nothing with a destructor may
// live in this frame: the stream and the row table are the caller's.
int read_png(std::istream& in, std::uint64_t filesize, image2d_t& image, row_table_t& rows)
{
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    if (!png) {
        libutils::error();
        return -2;
    }
    png_set_read_fn(png, &in, png_read);
    // The picture is IHDR, PLTE and IDAT alone, and nothing else changes
    // what is read: every other chunk but tRNS is passed over unread. So a
    // text chunk that claims a gigabyte is skipped up to the file's end
    // instead of being made room for and cleared first.
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_infop info = png_create_info_struct(png);
    if (!info) {
        png_destroy_read_struct(&png, nullptr, nullptr);
        libutils::error();
        return -3;
    }
    if (setjmp(png_jmpbuf(png))) {
        libutils::error();
        std::cerr << "FAIL" << std::endl;
        png_destroy_read_struct(&png, &info, nullptr);
        return -4;
    }

    png_set_sig_bytes(png, kSignatureChecked);
    png_read_info(png, info);
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    int depth = 0;
    int colortype = 0;
    png_get_IHDR(png, info, &width, &height, &depth, &colortype, nullptr, nullptr, nullptr);
    // Not a change of the pixels: it asks png_read_image for the combined
    // passes of an interlaced file, which it would otherwise take on itself
    // with a warning for each such file.
    png_set_interlace_handling(png);
    png_read_update_info(png, info);

    image.clear();
    image.m_width = width;
    image.m_height = height;
    for (color_type_t const& c : kColorTypes)
        if (c.png == colortype) image.desc.format = c.format;
    if (colortype == PNG_COLOR_TYPE_PALETTE && !take_palette(png, info, image.palette))
        png_longjmp(png, 1);
    image.desc.type = IMAGE_TYPE_UINT;
    for (depth_t const& d : kDepths)
        if (d.png == depth) image.desc.bits = d.bits;
    image.compressed = false;

    std::uint64_t const rowbytes = png_get_rowbytes(png, info);
    if (rowbytes == 0 || height > filesize * kMaxInflateRatio / rowbytes || !image.allocate() ||
        !rows_fit(image, rowbytes) || !make_row_table(rows, height))
        png_longjmp(png, 1);
    for (std::uint64_t i = 0; i < height; ++i) rows[i] = image.begin() + row_offset(image, i);
    png_read_image(png, rows.data());
    png_destroy_read_struct(&png, &info, nullptr);
    return 0;
}

// Writes `image` to `file` as a PNG of `colortype` and `depth`. As in
// read_png, libpng's errors longjmp back here: the row table is the
// caller's, and so is the file.
int write_png(std::FILE* file, image2d_t const& image, int colortype, int depth,
              char const* title, row_table_t& rows)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    if (!png) {
        libutils::error();
        return -2;
    }
    png_infop info = png_create_info_struct(png);
    if (!info) {
        png_destroy_write_struct(&png, nullptr);
        libutils::error();
        return -3;
    }
    if (setjmp(png_jmpbuf(png))) {
        libutils::error();
        std::cerr << "FAIL" << std::endl;
        png_destroy_write_struct(&png, &info);
        return -4;
    }

    png_init_io(png, file);
    png_set_IHDR(png, info, image.m_width, image.m_height, depth, colortype, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    // Every bit of each channel that exists counts; a palette's entries are
    // left without.
    if (colortype != PNG_COLOR_TYPE_PALETTE) {
        png_color_8 significant{};
        png_byte const bits = static_cast<png_byte>(depth);
        if (colortype & PNG_COLOR_MASK_COLOR)
            significant.red = significant.green = significant.blue = bits;
        else
            significant.gray = bits;
        if (colortype & PNG_COLOR_MASK_ALPHA) significant.alpha = bits;
        png_set_sBIT(png, info, &significant);
    }
    png_text text{};
    if (title) {
        text.compression = PNG_TEXT_COMPRESSION_NONE;
        text.key = const_cast<char*>("Title");
        text.text = const_cast<char*>(title);
        png_set_text(png, info, &text, 1);
    }
    png_write_info(png, info);

    std::uint64_t const rowbytes = png_get_rowbytes(png, info);
    if (!rows_fit(image, rowbytes) || !make_row_table(rows, image.m_height))
        png_longjmp(png, 1);
    // libpng copies each row before it works on it: the image is only read.
    unsigned char* const pixels = const_cast<unsigned char*>(image.begin());
    for (std::uint64_t i = 0; i < image.m_height; ++i) rows[i] = pixels + row_offset(image, i);
    png_write_image(png, rows.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return 0;
}

}  // namespace

// ------------------------------------------------------------------ reading

void png_read(png_struct_def* png, unsigned char* data, std::size_t length)
{
    std::istream* const in = static_cast<std::istream*>(png_get_io_ptr(png));
    in->read(reinterpret_cast<char*>(data), static_cast<std::streamsize>(length));
    if (static_cast<std::size_t>(in->gcount()) != length) png_error(png, "unexpected end of file");
}

template <class S>
bool check_if_png(char const* path, S& stream)
{
    stream.open(path, std::ios::binary);
    if (!stream) {
        int const reason = errno;
        libutils::error();
        std::cerr << path << ": file open error, " << std::strerror(reason) << std::endl;
        return false;
    }
    png_byte signature[kSignatureChecked];
    stream.read(reinterpret_cast<char*>(signature), sizeof signature);
    if (stream.gcount() != sizeof signature) {
        stream.close();
        libutils::error();
        return false;
    }
    if (png_sig_cmp(signature, 0, sizeof signature) != 0) {
        libutils::error();
        return false;
    }
    return true;
}

template bool check_if_png<std::ifstream>(char const* path, std::ifstream& stream);

int loadpng(char const* path, image2d_t& image, libutils::android_app* /*app*/)
{
    std::ifstream in;
    if (!check_if_png(path, in)) return -1;
    in.seekg(0, std::ios::end);
    std::streamoff const end = in.tellg();
    in.seekg(kSignatureChecked, std::ios::beg);
    std::uint64_t const filesize = end > 0 ? static_cast<std::uint64_t>(end) : 0;
    row_table_t rows;
    return read_png(in, filesize, image, rows);
}

bool check_png_version()
{
    char const* const library = png_get_header_ver(nullptr);
    if (std::strcmp(library, PNG_LIBPNG_VER_STRING) == 0) return true;
    libutils::error();
    std::cerr << "libpng version different." << std::endl
              << "  header: " << PNG_LIBPNG_VER_STRING << std::endl
              << "  source: " << library << std::endl;
    return false;
}

bool loader_png(image2d_t& image, char const* path, libutils::android_app* app)
{
    image.clear();
    return check_png_version() && loadpng(path, image, app) == 0;
}

// ------------------------------------------------------------------ writing

int savepng(char const* path, image2d_t const& image, char const* title,
            libutils::android_app* /*app*/)
{
    int colortype = -1;
    int depth = 0;
    for (color_type_t const& c : kColorTypes)
        if (c.format == image.desc.format) colortype = c.png;
    for (depth_t const& d : kDepths)
        if (d.bits == image.desc.bits) depth = d.png;
    // NOTE: a kind PNG can't hold counts as done, with nothing written.
    if (colortype < 0 || depth == 0) return 0;

    std::FILE* const file = std::fopen(path, "wb");
    if (!file) {
        libutils::error();
        return -1;
    }
    row_table_t rows;
    int const status = write_png(file, image, colortype, depth, title, rows);
    // The last bytes reach the file only as it closes: a close that fails is
    // a write that failed.
    if (std::fclose(file) != 0 && status == 0) {
        libutils::error();
        return -4;
    }
    return status;
}

bool saver_png(image2d_t const& image, char const* path, libutils::android_app* app)
{
    return check_png_version() && savepng(path, image, nullptr, app) == 0;
}

// --------------------------------------------------------------- image_png_t

bool image_png_t::load(image2d_t& image, char const* path)
{
    return loader_png(image, path, nullptr);
}

bool image_png_t::save(image2d_t const& image, char const* path)
{
    return saver_png(image, path, nullptr);
}

}  // namespace libgr
