// Writes the seed corpus of every fuzzing target: small valid inputs of
// each kind the readers accept, and the deliberately odd ones beside them,
// each named after what it is (what an odd one gets wrong is said where it
// is made). Pictures are encoded by libjpeg and libpng themselves; BMP, TGA,
// Exif blocks, marker segments and text files are put together byte by byte.
//   zv_fuzz_seeds <output directory> [testdata directory]
// makes <output>/<target>/ for each target. With a testdata directory the
// first APP1 of each JPEG found there becomes an extra seed of the Exif
// target. The output is the same on every run.
#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <jpeglib.h>
#include <png.h>

#include "geometry/matrix.h"
#include "geometry/text.h"
#include "geometry/vector.h"
#include "options/option.h"
#include "options/userdefault.h"

namespace {

namespace fs = std::filesystem;

// ------------------------------------------------------------------- bytes

struct bytes_t : std::vector<std::uint8_t> {
    bool big = false;  // byte order of u16 and u32

    bytes_t& u8(unsigned v)
    {
        push_back(static_cast<std::uint8_t>(v));
        return *this;
    }
    bytes_t& u16(unsigned v)
    {
        return big ? u8(v >> 8).u8(v) : u8(v).u8(v >> 8);
    }
    bytes_t& u32(std::uint32_t v)
    {
        return big ? u16(v >> 16).u16(v) : u16(v).u16(v >> 16);
    }
    bytes_t& str(std::string const& s)
    {
        insert(end(), s.begin(), s.end());
        return *this;
    }
    bytes_t& cat(std::vector<std::uint8_t> const& b)
    {
        insert(end(), b.begin(), b.end());
        return *this;
    }
    bytes_t& fill(std::size_t n, unsigned v)
    {
        insert(end(), n, static_cast<std::uint8_t>(v));
        return *this;
    }
    void put16(std::size_t at, unsigned v)
    {
        bytes_t b;
        b.big = big;
        b.u16(v);
        std::copy(b.begin(), b.end(), begin() + at);
    }
    void put32(std::size_t at, std::uint32_t v)
    {
        bytes_t b;
        b.big = big;
        b.u32(v);
        std::copy(b.begin(), b.end(), begin() + at);
    }
};

bytes_t le() { return bytes_t{}; }
bytes_t be()
{
    bytes_t b;
    b.big = true;
    return b;
}

bytes_t text(std::string const& s)
{
    bytes_t b;
    b.str(s);
    return b;
}

fs::path g_out;

void put(char const* target, std::string const& name, std::vector<std::uint8_t> const& bytes)
{
    fs::path const dir = g_out / target;
    fs::create_directories(dir);
    std::ofstream file(dir / name, std::ios::binary);
    file.write(reinterpret_cast<char const*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file) {
        std::cerr << "zv_fuzz_seeds: can't write " << (dir / name).string() << std::endl;
        std::exit(1);
    }
}

bytes_t cut(bytes_t b, std::size_t keep)
{
    if (b.size() > keep) b.resize(keep);
    return b;
}

bytes_t flip(bytes_t b, std::size_t at, unsigned mask)
{
    if (at < b.size()) b[at] ^= static_cast<std::uint8_t>(mask);
    return b;
}

// A value that changes across the picture in every channel.
unsigned sample(unsigned x, unsigned y, unsigned c)
{
    return (x * 37 + y * 11 + c * 85) & 0xFF;
}

// --------------------------------------------------------------------- BMP

// An uncompressed bottom-up BMP; `colors` palette entries behind the
// header, which is the 108-byte version 4 one when `v4` is set.
bytes_t bmp(unsigned bits, std::int32_t width, std::int32_t height, unsigned colors, bool v4 = false,
            std::uint32_t compression = 0)
{
    std::uint32_t const header = v4 ? 108 : 40;
    std::uint32_t const offbits = 14 + header + 4 * colors;
    std::uint32_t const row = (bits * static_cast<std::uint32_t>(width) + 31) / 32 * 4;
    std::uint32_t const rows = height < 0 ? static_cast<std::uint32_t>(-height) : height;
    bytes_t b;
    b.str("BM").u32(offbits + row * rows).u16(0).u16(0).u32(offbits);
    b.u32(header).u32(width).u32(height).u16(1).u16(bits).u32(compression).u32(row * rows);
    b.u32(2835).u32(2835).u32(colors).u32(0);
    if (v4) {
        b.u32(0x00FF0000).u32(0x0000FF00).u32(0x000000FF).u32(0xFF000000);
        b.str("BGRs").fill(48, 0);  // the colour space "sRGB", end points and gammas
    }
    for (unsigned i = 0; i < colors; ++i) b.u8(i * 7).u8(i * 3).u8(255 - i).u8(0);
    for (std::uint32_t y = 0; y < rows; ++y)
        for (std::uint32_t x = 0; x < row; ++x) b.u8(sample(x, y, 0));
    return b;
}

void bmp_seeds(char const* target)
{
    put(target, "bmp-24-5x3.bmp", bmp(24, 5, 3, 0));  // rows padded from 15 to 16 bytes
    put(target, "bmp-32-4x4.bmp", bmp(32, 4, 4, 0));
    put(target, "bmp-8-palette-256.bmp", bmp(8, 7, 5, 256));
    put(target, "bmp-8-no-palette.bmp", bmp(8, 9, 3, 0));
    put(target, "bmp-4-palette-16.bmp", bmp(4, 13, 4, 16));
    put(target, "bmp-1-palette-2-33wide.bmp", bmp(1, 33, 3, 2));
    put(target, "bmp-8-v4-header.bmp", bmp(8, 6, 2, 4, true));
    put(target, "bmp-24-v4-header.bmp", bmp(24, 3, 3, 0, true));
    // Refused: compressed, 16 bits, a palette on 32-bit pixels.
    put(target, "bmp-8-rle.bmp", bmp(8, 4, 4, 4, false, 1));
    put(target, "bmp-16.bmp", bmp(16, 4, 4, 0));
    put(target, "bmp-32-palette.bmp", bmp(32, 2, 2, 2));
    // Lies: a top-down file's negative height, sizes far beyond the data,
    // pixels that start behind the end, a header cut short.
    put(target, "bmp-24-topdown.bmp", bmp(24, 4, -4, 0));
    bytes_t huge = bmp(24, 2, 2, 0);
    huge.put32(18, 65535);
    huge.put32(22, 65535);
    put(target, "bmp-65535x65535.bmp", huge);
    bytes_t past = bmp(8, 4, 4, 4);
    past.put32(10, 0x7FFFFFF0);
    put(target, "bmp-offbits-past-end.bmp", past);
    put(target, "bmp-24-truncated.bmp", cut(bmp(24, 16, 16, 0), 300));
    put(target, "bmp-headers-cut.bmp", cut(bmp(24, 2, 2, 0), 40));
    put(target, "bmp-not-bm.bmp", flip(bmp(24, 3, 3, 0), 0, 0x20));
}

// --------------------------------------------------------------------- TGA

// An uncompressed TGA laid out as the viewer's own writer lays it out, rows
// padded to 4 bytes.
bytes_t tga(unsigned depth, unsigned width, unsigned height, unsigned type = 2, unsigned descriptor = 0,
            std::string const& id = "", unsigned map_length = 0, unsigned map_entry = 0)
{
    bytes_t b;
    b.u8(id.size()).u8(map_length ? 1 : 0).u8(type).u16(0).u16(map_length).u8(map_entry);
    b.u16(0).u16(0).u16(width).u16(height).u8(depth).u8(descriptor);
    b.str(id);
    b.fill(std::size_t(map_length) * map_entry, 0x80);
    unsigned const row = (depth * width / 8 + 3) / 4 * 4;
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < row; ++x) b.u8(sample(x, y, 1));
    return b;
}

void tga_seeds()
{
    put("tga", "tga-24-4x3.tga", tga(24, 4, 3));
    put("tga", "tga-24-3x3-padded.tga", tga(24, 3, 3));
    put("tga", "tga-32-5x2.tga", tga(32, 5, 2));
    put("tga", "tga-16-3x3.tga", tga(16, 3, 3));
    put("tga", "tga-8-gray-7x2.tga", tga(8, 7, 2));
    put("tga", "tga-8-colormapped.tga", tga(8, 4, 4, 1, 0, "", 16, 3));
    put("tga", "tga-24-with-id.tga", tga(24, 2, 2, 2, 0, "seed!"));
    // Refused: run-length encoded, top-down, a depth of 15.
    put("tga", "tga-24-rle.tga", tga(24, 4, 4, 10));
    put("tga", "tga-24-topdown.tga", tga(24, 4, 4, 2, 0x20));
    put("tga", "tga-15.tga", tga(15, 4, 4));
    // Lies: sizes far beyond the data, a colour map longer than the file.
    bytes_t huge = tga(32, 2, 2);
    huge.put16(12, 65535);
    huge.put16(14, 65535);
    put("tga", "tga-65535x65535.tga", huge);
    bytes_t map = tga(8, 2, 2, 1, 0, "", 4, 3);
    map.put16(5, 65535);
    put("tga", "tga-colormap-past-end.tga", map);
    put("tga", "tga-truncated.tga", cut(tga(24, 16, 16), 200));
    put("tga", "tga-header-cut.tga", cut(tga(24, 2, 2), 10));
}

// --------------------------------------------------------------------- PNG

void png_write_to(png_structp png, png_bytep data, png_size_t length)
{
    auto* out = static_cast<bytes_t*>(png_get_io_ptr(png));
    out->insert(out->end(), data, data + length);
}

void png_flush_nothing(png_structp) {}

struct png_kind_t {
    int color_type;
    int depth;
    bool interlaced;
    bool transparency;
};

bytes_t png(unsigned width, unsigned height, png_kind_t kind)
{
    bytes_t out;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) {
        std::cerr << "zv_fuzz_seeds: libpng refused a seed" << std::endl;
        std::exit(1);
    }
    png_set_write_fn(png, &out, png_write_to, png_flush_nothing);
    png_set_IHDR(png, info, width, height, kind.depth, kind.color_type,
                 kind.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    // Counts that aren't powers of two where the depth allows: the reader
    // rounds the table up (5 entries to 8).
    int const entries = kind.depth == 1 ? 2 : kind.depth == 2 ? 3 : 5;
    if (kind.color_type == PNG_COLOR_TYPE_PALETTE) {
        png_color colors[5] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 0}, {9, 9, 9}};
        png_set_PLTE(png, info, colors, entries);
        if (kind.transparency) {
            png_byte alpha[2] = {0, 128};
            png_set_tRNS(png, info, alpha, 2, nullptr);
        }
    } else if (kind.transparency && !(kind.color_type & PNG_COLOR_MASK_ALPHA)) {
        png_color_16 key{};
        key.gray = key.red = 1;
        png_set_tRNS(png, info, nullptr, 0, &key);
    }
    png_text note{};
    note.compression = PNG_TEXT_COMPRESSION_NONE;
    note.key = const_cast<char*>("Comment");
    note.text = const_cast<char*>("a seed");
    png_set_text(png, info, &note, 1);
    png_write_info(png, info);
    int const passes = png_set_interlace_handling(png);
    png_uint_32 const rowbytes = png_get_rowbytes(png, info);
    std::vector<png_byte> row(rowbytes);
    int const top = kind.color_type == PNG_COLOR_TYPE_PALETTE ? entries : 256;
    for (int pass = 0; pass < passes; ++pass)
        for (unsigned y = 0; y < height; ++y) {
            for (png_uint_32 x = 0; x < rowbytes; ++x) row[x] = static_cast<png_byte>(sample(x, y, 2) % top);
            if (kind.depth < 8)
                for (png_uint_32 x = 0; x < rowbytes; ++x) row[x] &= kind.color_type == 3 ? 0x00 : 0xFF;
            png_write_row(png, row.data());
        }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return out;
}

void png_seeds()
{
    struct named_t {
        char const* name;
        png_kind_t kind;
    };
    named_t const kinds[] = {
        {"png-gray-1.png", {PNG_COLOR_TYPE_GRAY, 1, false, false}},
        {"png-gray-2.png", {PNG_COLOR_TYPE_GRAY, 2, false, false}},
        {"png-gray-4.png", {PNG_COLOR_TYPE_GRAY, 4, false, false}},
        {"png-gray-8-trns.png", {PNG_COLOR_TYPE_GRAY, 8, false, true}},
        {"png-gray-16.png", {PNG_COLOR_TYPE_GRAY, 16, false, false}},
        {"png-rgb-8.png", {PNG_COLOR_TYPE_RGB, 8, false, false}},
        {"png-rgb-16-interlaced.png", {PNG_COLOR_TYPE_RGB, 16, true, false}},
        {"png-palette-1.png", {PNG_COLOR_TYPE_PALETTE, 1, false, false}},
        {"png-palette-2.png", {PNG_COLOR_TYPE_PALETTE, 2, false, false}},
        {"png-palette-4-trns.png", {PNG_COLOR_TYPE_PALETTE, 4, false, true}},
        {"png-palette-8-interlaced.png", {PNG_COLOR_TYPE_PALETTE, 8, true, false}},
        {"png-gray-alpha-8.png", {PNG_COLOR_TYPE_GRAY_ALPHA, 8, false, false}},
        {"png-gray-alpha-16.png", {PNG_COLOR_TYPE_GRAY_ALPHA, 16, false, false}},
        {"png-rgba-8-interlaced.png", {PNG_COLOR_TYPE_RGB_ALPHA, 8, true, false}},
        {"png-rgba-16.png", {PNG_COLOR_TYPE_RGB_ALPHA, 16, false, false}},
    };
    for (named_t const& k : kinds) put("png", k.name, png(13, 7, k.kind));
    put("png", "png-rgb-8-1x1.png", png(1, 1, {PNG_COLOR_TYPE_RGB, 8, false, false}));

    bytes_t const good = png(13, 7, {PNG_COLOR_TYPE_RGB, 8, false, false});
    // Sizes far beyond what the data inflates to (the CRC is left wrong on
    // purpose in the second: libpng must refuse that too).
    bytes_t huge = good;
    huge.big = true;
    huge.put32(16, 65535);
    huge.put32(20, 65535);
    put("png", "png-65535x65535-bad-crc.png", huge);
    put("png", "png-truncated-in-idat.png", cut(good, good.size() - 30));
    put("png", "png-signature-only.png", cut(good, 8));
    put("png", "png-first-4-bytes.png", cut(good, 4));
    put("png", "png-idat-bit-flipped.png", flip(good, good.size() - 25, 0x10));
}

// -------------------------------------------------------------------- JPEG

struct jpeg_kind_t {
    int components;  // 1 gray, 3 RGB, 4 CMYK
    int h_factor;    // luminance sampling for 3 components: 2 2 is 4:2:0
    int v_factor;
    bool progressive;
    bool arithmetic;
    unsigned restart;  // MCU rows between restart markers, 0 for none
};

using segments_t = std::vector<std::pair<int, bytes_t>>;  // marker code, payload

bytes_t jpeg(unsigned width, unsigned height, jpeg_kind_t kind, segments_t const& markers = {})
{
    jpeg_compress_struct c;
    jpeg_error_mgr err;
    c.err = jpeg_std_error(&err);
    jpeg_create_compress(&c);
    unsigned char* buffer = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&c, &buffer, &size);
    c.image_width = width;
    c.image_height = height;
    c.input_components = kind.components;
    c.in_color_space = kind.components == 1 ? JCS_GRAYSCALE : kind.components == 3 ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&c);
    jpeg_set_quality(&c, 75, TRUE);
    if (kind.components == 3) {
        c.comp_info[0].h_samp_factor = kind.h_factor;
        c.comp_info[0].v_samp_factor = kind.v_factor;
    }
    if (kind.progressive) jpeg_simple_progression(&c);
    c.arith_code = kind.arithmetic ? TRUE : FALSE;
    c.restart_in_rows = static_cast<int>(kind.restart);
    jpeg_start_compress(&c, TRUE);
    for (auto const& m : markers)
        jpeg_write_marker(&c, m.first, m.second.data(), static_cast<unsigned>(m.second.size()));
    std::vector<JSAMPLE> row(width * kind.components);
    while (c.next_scanline < c.image_height) {
        for (unsigned i = 0; i < row.size(); ++i)
            row[i] = static_cast<JSAMPLE>(sample(i / kind.components, c.next_scanline, i % kind.components));
        JSAMPROW p = row.data();
        jpeg_write_scanlines(&c, &p, 1);
    }
    jpeg_finish_compress(&c);
    jpeg_destroy_compress(&c);
    bytes_t out;
    out.insert(out.end(), buffer, buffer + size);
    std::free(buffer);
    return out;
}

// ------------------------------------------------------ TIFF blocks, Exif

enum tiff_type_t : unsigned { BYTE = 1, ASCII = 2, SHORT = 3, LONG = 4, RATIONAL = 5, UNDEFINED = 7 };

struct entry_t {
    unsigned tag;
    unsigned type;
    std::uint32_t count;
    bytes_t value;  // in the block's byte order; up to 4 bytes stand in the entry
};

// Builds IFDs into one block whose offsets count from `base` bytes before
// the block's start (the TIFF header for Exif, the note's start for notes).
struct tiff_builder_t {
    bytes_t b;
    std::uint32_t base = 0;

    explicit tiff_builder_t(bool big) { b.big = big; }

    bytes_t order() const { return b.big ? be() : le(); }

    // Appends an IFD and its long values; returns its offset and where its
    // next-IFD word lies.
    std::uint32_t ifd(std::vector<entry_t> const& entries, std::size_t* next_at = nullptr)
    {
        std::uint32_t const at = base + static_cast<std::uint32_t>(b.size());
        std::uint32_t data = at + 2 + 12 * static_cast<std::uint32_t>(entries.size()) + 4;
        b.u16(static_cast<unsigned>(entries.size()));
        bytes_t extra = order();
        for (entry_t const& e : entries) {
            b.u16(e.tag).u16(e.type).u32(e.count);
            if (e.value.size() <= 4) {
                b.cat(e.value).fill(4 - e.value.size(), 0);
            } else {
                b.u32(data + static_cast<std::uint32_t>(extra.size()));
                extra.cat(e.value);
                if (extra.size() % 2) extra.u8(0);
            }
        }
        if (next_at) *next_at = b.size();
        b.u32(0);
        b.cat(extra);
        return at;
    }
};

entry_t short_entry(bytes_t const& order, unsigned tag, unsigned v)
{
    bytes_t b = order;
    b.u16(v);
    return {tag, SHORT, 1, b};
}

entry_t long_entry(bytes_t const& order, unsigned tag, std::uint32_t v)
{
    bytes_t b = order;
    b.u32(v);
    return {tag, LONG, 1, b};
}

entry_t rational_entry(bytes_t const& order, unsigned tag, std::uint32_t n, std::uint32_t d)
{
    bytes_t b = order;
    b.u32(n).u32(d);
    return {tag, RATIONAL, 1, b};
}

entry_t ascii_entry(unsigned tag, std::string const& s)
{
    bytes_t b = text(s);
    b.u8(0);
    return {tag, ASCII, static_cast<std::uint32_t>(b.size()), b};
}

// A maker note: its signature, then its IFD, with offsets counted from the
// note's start (`note_base`) or from the TIFF header at `tiff_at`.
enum note_kind_t { NOTE_NONE, NOTE_OLYMPUS, NOTE_OLYMPUS_UNSIGNED, NOTE_OM, NOTE_PENTAX };

bytes_t maker_note(bool big, note_kind_t kind, std::uint32_t note_at, bool signed_note = true)
{
    bytes_t const order = big ? be() : le();
    switch (kind) {
    case NOTE_OLYMPUS:
    case NOTE_OLYMPUS_UNSIGNED: {
        std::string const signature =
            kind == NOTE_OLYMPUS && signed_note ? std::string("OLYMP\0\x01\x00", 8) : "";
        tiff_builder_t t(big);
        t.base = note_at + static_cast<std::uint32_t>(signature.size());
        bytes_t pair = order;
        pair.u16(3).u16(4);
        t.ifd({short_entry(order, 0x100B, 1), rational_entry(order, 0x100C, 35, 10),
               short_entry(order, 0x100F, 2), {0x1015, SHORT, 2, pair}, short_entry(order, 0x1029, 0)});
        return text(signature).cat(t.b);
    }
    case NOTE_OM: {
        std::string const signature = signed_note ? std::string("OM SYSTEM\0\0\0II\x03\x00", 16) : "";
        tiff_builder_t t(big);
        t.base = static_cast<std::uint32_t>(signature.size());  // offsets from the note's start
        std::size_t const main_at = t.b.size();
        t.ifd({long_entry(order, 0x2010, 0), long_entry(order, 0x2020, 0), long_entry(order, 0x2050, 0)});
        std::uint32_t const equipment = t.ifd({ascii_entry(0x0203, "M.Zuiko 12-45mm")});
        std::uint32_t const settings = t.ifd({short_entry(order, 0x0500, 1), short_entry(order, 0x0501, 2),
                                              rational_entry(order, 0x0804, 1, 3)});
        std::uint32_t const focus = t.ifd({short_entry(order, 0x0209, 1), short_entry(order, 0x0300, 2),
                                           rational_entry(order, 0x0305, 100, 1), short_entry(order, 0x031B, 5)});
        t.b.put32(main_at + 2 + 8, equipment);
        t.b.put32(main_at + 2 + 12 + 8, settings);
        t.b.put32(main_at + 2 + 24 + 8, focus);
        return text(signature).cat(t.b);
    }
    case NOTE_PENTAX: {
        std::string const signature = !signed_note ? std::string()
                                      : big       ? std::string("PENTAX \0MM", 10)
                                                  : std::string("PENTAX \0II", 10);
        tiff_builder_t t(big);
        t.base = static_cast<std::uint32_t>(signature.size());
        bytes_t name = order;
        name.str("RICOH GR III").u8(0);
        t.ifd({short_entry(order, 0x000D, 1), short_entry(order, 0x0010, 2), short_entry(order, 0x0019, 3),
               short_entry(order, 0x001A, 4), {0x0229, ASCII, static_cast<std::uint32_t>(name.size()), name}});
        return text(signature).cat(t.b);
    }
    case NOTE_NONE: break;
    }
    return text("a note no reader reads");
}

// The APP1 payload: "Exif\0\0" and a TIFF block with a 0th IFD (Make and
// Orientation), an Exif IFD with a maker note, and a 1st IFD that points at
// a thumbnail.
bytes_t exif(bool big, unsigned orientation, std::string const& make, note_kind_t note, bool gps = false)
{
    bytes_t const order = big ? be() : le();
    tiff_builder_t t(big);
    t.b.str(big ? "MM" : "II").u16(42).u32(8);

    std::vector<entry_t> zeroth = {ascii_entry(0x010F, make), ascii_entry(0x0110, "Model 1"),
                                   short_entry(order, 0x0112, orientation),
                                   rational_entry(order, 0x011A, 72, 1), rational_entry(order, 0x011B, 72, 1),
                                   short_entry(order, 0x0128, 2), ascii_entry(0x0132, "2024:01:02 03:04:05"),
                                   long_entry(order, 0x8769, 0)};
    if (gps) zeroth.push_back(long_entry(order, 0x8825, 0));
    std::size_t next_at = 0;
    std::size_t const zeroth_at = t.b.size();
    t.ifd(zeroth, &next_at);

    // The note goes in with a stand-in first, to learn where its bytes land;
    // then the real one, whose offsets may count on that place.
    std::uint32_t const exif_at = static_cast<std::uint32_t>(t.b.size());
    bytes_t const sized = maker_note(big, note, 0);
    std::vector<entry_t> exif_entries = {rational_entry(order, 0x829A, 1, 250), rational_entry(order, 0x829D, 28, 10),
                                         short_entry(order, 0x8827, 200), ascii_entry(0x9003, "2024:01:02 03:04:05"),
                                         {0x927C, UNDEFINED, static_cast<std::uint32_t>(sized.size()), sized},
                                         short_entry(order, 0x9209, 0)};
    t.ifd(exif_entries);
    std::size_t const note_word = exif_at + 2 + 12 * 4 + 8;
    std::uint32_t const note_at = (t.b.big ? std::uint32_t(t.b[note_word]) << 24 | t.b[note_word + 1] << 16 |
                                                 t.b[note_word + 2] << 8 | t.b[note_word + 3]
                                           : std::uint32_t(t.b[note_word + 3]) << 24 | t.b[note_word + 2] << 16 |
                                                 t.b[note_word + 1] << 8 | t.b[note_word]);
    bytes_t const note_bytes = maker_note(big, note, note_at);
    std::copy(note_bytes.begin(), note_bytes.end(), t.b.begin() + note_at);
    t.b.put32(zeroth_at + 2 + 12 * 7 + 8, exif_at);

    if (gps) {
        std::uint32_t const gps_at = t.ifd({{0x0000, BYTE, 4, text(std::string("\x02\x02\x00\x00", 4))}});
        t.b.put32(zeroth_at + 2 + 12 * 8 + 8, gps_at);
    }
    std::uint32_t const first = t.ifd({long_entry(order, 0x0201, 0), long_entry(order, 0x0202, 4)});
    t.b.put32(next_at, first);
    t.b.put32(first + 2 + 8, static_cast<std::uint32_t>(t.b.size()));
    t.b.str(std::string("\xFF\xD8\xFF\xD9", 4));
    return text(std::string("Exif\0\0", 6)).cat(t.b);
}

void exif_seeds()
{
    put("exif", "exif-ii-orientation-6.bin", exif(false, 6, "Canon", NOTE_NONE));
    put("exif", "exif-mm-orientation-3-gps.bin", exif(true, 3, "NIKON", NOTE_NONE, true));
    put("exif", "exif-ii-olympus-signed.bin", exif(false, 8, "OLYMPUS CORPORATION", NOTE_OLYMPUS));
    put("exif", "exif-mm-olympus-unsigned.bin", exif(true, 1, "OLYMPUS OPTICAL CO.,LTD", NOTE_OLYMPUS_UNSIGNED));
    put("exif", "exif-ii-om-system.bin", exif(false, 6, "OM Digital Solutions", NOTE_OM));
    put("exif", "exif-mm-ricoh-pentax.bin", exif(true, 8, "RICOH IMAGING COMPANY, LTD.", NOTE_PENTAX));
    put("exif", "exif-ii-pentax-note-mm.bin", exif(false, 3, "RICOH IMAGING", NOTE_PENTAX));
    // Refused or cut short: a block of 7 bytes, a garbled byte order mark,
    // big-endian magic bytes in the wrong order, an entry count that runs
    // past the block, a note cut in its IFD.
    put("exif", "exif-block-7-bytes.bin", text(std::string("Exif\0\0II*\0\x08\0\0", 13)));
    put("exif", "exif-bad-byte-order.bin", flip(exif(false, 6, "Canon", NOTE_NONE), 6, 0x20));
    bytes_t magic = exif(true, 6, "Canon", NOTE_NONE);
    std::swap(magic[8], magic[9]);
    put("exif", "exif-mm-magic-swapped.bin", magic);
    bytes_t count = exif(false, 6, "Canon", NOTE_NONE);
    count[6 + 8] = 0xFF;
    count[6 + 9] = 0xFF;
    put("exif", "exif-0th-count-65535.bin", count);
    bytes_t const om = exif(false, 6, "OM Digital Solutions", NOTE_OM);
    put("exif", "exif-om-system-cut.bin", cut(om, om.size() - 40));
    put("exif", "exif-not-exif.bin", text("http://ns.adobe.com/xap/1.0/\0<x:xmpmeta/>"));
}

void makernote_seeds()
{
    // The selector's low three bits pick the reader, bit 3 the byte order.
    for (bool big : {false, true}) {
        unsigned const order = big ? 8 : 0;
        std::string const suffix = big ? "-mm.bin" : "-ii.bin";
        // Here the note is also the block the offsets count from, and its
        // IFD starts at its first byte: no signature.
        struct reader_note_t {
            unsigned selector;
            note_kind_t kind;
            char const* name;
        };
        reader_note_t const notes[] = {{0, NOTE_OLYMPUS, "olympus"}, {1, NOTE_OM, "olympus3"},
                                       {5, NOTE_PENTAX, "pentax5"}};
        for (reader_note_t const& r : notes) {
            bytes_t b;
            b.u8(r.selector | order).cat(maker_note(big, r.kind, 0, false));
            put("makernote", r.name + suffix, b);
        }

        bytes_t const o = big ? be() : le();
        tiff_builder_t t(big);
        t.ifd({ascii_entry(0x0203, "lens"), short_entry(o, 0x0500, 1), rational_entry(o, 0x0804, 1, 2),
               short_entry(o, 0x0209, 1), rational_entry(o, 0x0305, 3, 4), short_entry(o, 0x031B, 2),
               rational_entry(o, 0x829A, 1, 60), ascii_entry(0x9003, "2024:01:02 03:04:05"),
               long_entry(o, 0x0201, 8), long_entry(o, 0x0202, 16)});
        for (unsigned reader : {2u, 3u, 4u, 6u, 7u}) {
            bytes_t b;
            b.u8(reader | order).cat(t.b);
            put("makernote", "ifd-reader-" + std::to_string(reader) + suffix, b);
        }
    }
    // An entry count far beyond the note, and an offset behind its end.
    put("makernote", "count-past-end.bin", text(std::string("\x01\xFF\x7F\x10\x20\x04\x00", 7)));
    bytes_t far;
    far.u8(1).u16(1).u16(0x2010).u16(LONG).u32(1).u32(0x7FFFFFF0).u32(0);
    put("makernote", "subifd-past-end.bin", far);
    bytes_t last;
    last.u8(1).u16(1).u16(0x2020).u16(LONG).u32(1).u32(17).u32(0);
    put("makernote", "subifd-at-last-byte.bin", last);
}

// ------------------------------------------------------ marker segments

// The payloads of the segments `code` in a JPEG, up to the first scan's.
std::vector<bytes_t> segments(bytes_t const& file, unsigned code)
{
    std::vector<bytes_t> found;
    std::size_t i = 2;
    while (i + 4 <= file.size() && file[i] == 0xFF) {
        unsigned const marker = file[i + 1];
        std::size_t const length = std::size_t(file[i + 2]) << 8 | file[i + 3];
        if (length < 2 || i + 2 + length > file.size()) break;
        if (marker == code) found.push_back(bytes_t{}.cat({file.begin() + i + 4, file.begin() + i + 2 + length}));
        if (marker == 0xDA) break;
        i += 2 + length;
    }
    return found;
}

void marker_seeds()
{
    bytes_t const color = jpeg(32, 16, {3, 2, 2, false, false, 1});
    bytes_t const gray = jpeg(16, 16, {1, 1, 1, false, false, 0});
    struct reader_t {
        unsigned selector;
        unsigned code;
        char const* name;
    };
    reader_t const readers[] = {{0, 0xC0, "sof0"}, {1, 0xDB, "dqt"}, {2, 0xC4, "dht"}, {3, 0xDD, "dri"},
                                {4, 0xDA, "sos"}};
    for (reader_t const& r : readers) {
        int n = 0;
        for (bytes_t const* file : {&color, &gray})
            for (bytes_t const& payload : segments(*file, r.code)) {
                bytes_t b;
                b.u8(r.selector).cat(payload);
                put("markers", std::string(r.name) + "-" + std::to_string(n++) + ".bin", b);
            }
    }
    // Refusals: 12-bit precision, a factor of 0, a 16-bit table, a table
    // destination of 4, five tables, a stuffed byte in a value list, a
    // progressive scan, a restart segment of 4 bytes.
    put("markers", "sof0-precision-12.bin", bytes_t{}.u8(0).u8(12).u16(8).u16(8).u8(1).u8(1).u8(0x11).u8(0));
    put("markers", "sof0-factor-0.bin",
        bytes_t{}.u8(0).u8(8).u16(8).u16(8).u8(2).u8(1).u8(0x21).u8(0).u8(2).u8(0x00).u8(1));
    put("markers", "dqt-pq-1.bin", bytes_t{}.u8(1).u8(0x10).fill(64, 1));
    put("markers", "dqt-tq-4.bin", bytes_t{}.u8(1).u8(0x04).fill(64, 1));
    put("markers", "dqt-5-tables.bin", bytes_t{}.u8(1).fill(65 * 5, 0));
    bytes_t stuffed;
    stuffed.u8(2).u8(0x11).u8(0).u8(2).fill(14, 0).u8(0xFF).u8(0x00).u8(0x01);
    put("markers", "dht-stuffed-value.bin", stuffed);
    put("markers", "dht-value-0x10.bin", bytes_t{}.u8(2).u8(0x10).u8(1).fill(15, 0).u8(0x10));
    put("markers", "sos-progressive.bin", bytes_t{}.u8(4).u8(1).u8(1).u8(0x00).u8(0).u8(5).u8(0x02));
    put("markers", "dri-4-bytes.bin", bytes_t{}.u8(3).u32(16));
}

// --------------------------------------------------------- JPEG targets

void jpeg_seeds()
{
    segments_t const with_exif = {{0xE1, exif(false, 6, "OLYMPUS CORPORATION", NOTE_OLYMPUS)},
                                  {0xFE, text("a comment")}};
    struct named_t {
        char const* name;
        unsigned width, height;
        jpeg_kind_t kind;
        segments_t markers;
    };
    std::vector<named_t> const kinds = {
        {"jpeg-gray-16x16.jpg", 16, 16, {1, 1, 1, false, false, 0}, {}},
        {"jpeg-420-33x17.jpg", 33, 17, {3, 2, 2, false, false, 0}, {}},
        {"jpeg-444-8x8.jpg", 8, 8, {3, 1, 1, false, false, 0}, {}},
        {"jpeg-422-restart.jpg", 40, 24, {3, 2, 1, false, false, 1}, {}},
        {"jpeg-440-9x31.jpg", 9, 31, {3, 1, 2, false, false, 0}, {}},
        {"jpeg-420-progressive.jpg", 31, 21, {3, 2, 2, true, false, 0}, {}},
        {"jpeg-gray-progressive.jpg", 17, 9, {1, 1, 1, true, false, 0}, {}},
        {"jpeg-420-arithmetic.jpg", 24, 16, {3, 2, 2, false, true, 0}, {}},
        {"jpeg-cmyk.jpg", 8, 8, {4, 1, 1, false, false, 0}, {}},
        {"jpeg-1x1.jpg", 1, 1, {3, 2, 2, false, false, 0}, {}},
        {"jpeg-exif-olympus-orientation-6.jpg", 16, 8, {3, 2, 2, false, false, 0}, with_exif},
        {"jpeg-exif-om-system.jpg", 8, 16, {3, 1, 1, false, false, 0},
         {{0xE1, exif(true, 8, "OM Digital Solutions", NOTE_OM)}}},
        {"jpeg-exif-second-app1.jpg", 8, 8, {1, 1, 1, false, false, 0},
         {{0xE1, text("http://ns.adobe.com/xap/1.0/")}, {0xE1, exif(false, 3, "Canon", NOTE_NONE)}}},
    };
    for (named_t const& k : kinds) {
        bytes_t const file = jpeg(k.width, k.height, k.kind, k.markers);
        put("jpeg", k.name, file);
    }
    bytes_t const good = jpeg(48, 32, {3, 2, 2, false, false, 0});
    // A cut last third, a flipped bit in the scan, a header claiming
    // 65535 x 65535 (beyond libjpeg's limit) and 65500 x 65500 (within it).
    put("jpeg", "jpeg-cut-last-third.jpg", cut(good, good.size() * 2 / 3));
    put("jpeg", "jpeg-scan-bit-flipped.jpg", flip(good, good.size() - 40, 0x08));
    put("jpeg", "jpeg-header-only.jpg", cut(good, good.size() - 200));
    for (unsigned side : {65535u, 65500u}) {
        bytes_t huge = good;
        for (std::size_t i = 2; i + 9 < huge.size(); ++i)
            if (huge[i] == 0xFF && huge[i + 1] == 0xC0) {
                huge.big = true;
                huge.put16(i + 5, side);
                huge.put16(i + 7, side);
                break;
            }
        put("jpeg", "jpeg-" + std::to_string(side) + "x" + std::to_string(side) + ".jpg", huge);
    }

    // The turn: the count's byte, then the file.
    struct turn_t {
        unsigned count;
        char const* name;
        bytes_t file;
    };
    std::vector<turn_t> const turns = {
        {0, "turn-0-gray.bin", jpeg(16, 16, {1, 1, 1, false, false, 0})},
        {1, "turn-1-420.bin", jpeg(32, 16, {3, 2, 2, false, false, 0}, with_exif)},
        {2, "turn-2-odd-size.bin", jpeg(17, 9, {3, 2, 2, false, false, 0})},
        {3, "turn-3-progressive.bin", jpeg(24, 40, {3, 2, 1, true, false, 0})},
        {1, "turn-1-restart.bin", jpeg(16, 32, {3, 1, 1, false, false, 1})},
        {3, "turn-3-cut.bin", cut(good, good.size() / 2)},
        {4, "turn-4-refused.bin", jpeg(8, 8, {1, 1, 1, false, false, 0})},
    };
    for (turn_t const& t : turns) put("transform", t.name, bytes_t{}.u8(t.count).cat(t.file));
}

// ------------------------------------------------------------ text files

void text_seeds()
{
    // The user default file as the program writes it, and by hand.
    fs::path const saved = g_out / "userdefault" / "saved-by-option-save";
    fs::create_directories(saved.parent_path());
    zanolib::option_save(saved.c_str());
    put("userdefault", "hand-edited.txt",
        text("# my settings\n-winsize 1024x768\n-framecolor 255,0,0,128\n-VERBOSE+\n"
             "-image_ratio_of_window 1063256064\n-resizetype 0x2\n  -debug\n"));
    put("userdefault", "crlf-and-tabs.txt", text("-maxsize\t1920x1080\r\n-frametype 3\r\n-menu-\r\n"));
    // A valued option alone on its line has no value to read.
    put("userdefault", "value-missing.txt", text("-winsize\n-framecolor\n-doubleclick_interval\n"));
    put("userdefault", "numbers-not-numbers.txt", text("-winsize -5x\n-framewidth 0\n-framecolor 1,\n"));

    // The view state file as the program writes it, and the other text forms.
    std::ostringstream state;
    state << libgr::dir2l(libgr::position2l_t{800, 600}) << '\n' << libgr::Imtx << '\n';
    put("zvw", "written.zvw", text(state.str()));
    put("zvw", "forgiving.zvw", text("size (640 , 480)\nxyz (1;0;0;0;0;1;0;0;0;0;1;0;0;0;0;1\n"));
    put("zvw", "typed-values.txt",
        text("float(2.5) pos3(1, 2, 3) rot3(0.5, dir3(0, 1, 0)) srt3(1, dir3(1, 0, 0)) "
             "irt3(rev3(1, 2, 3), srt3(1, dir3(0, 0, 1))) pst3w(rot3(1, 2, 3), rot3(4, 5, 6), pos3(7, 8, 9)) "
             "box2(pos2(0, 0), pos2(1, 1)) box3(pos3(0, 0, 0), pos3(1, 1, 1)) col3aub(a,b,c,d) "
             "col1ub(x) dim2(3, 4) line3d(dir3(0,0,1), mtx3w(1), mtx3w(2)) projection(1,2,3,4,5,6) "
             "unknown(1, 2) qua(0, 0, 0, 1)"));
    put("zvw", "cut-in-matrix.zvw", text("dir2l(800, 600)\nmtx3w(\t1.000000, 0.000000,"));
    put("zvw", "empty.zvw", bytes_t{});

    put("message", "two-lines.msg", text("zanoview\nno picture\n"));
    put("message", "crlf.msg", text("zanoview\r\nno picture\r\n"));
    put("message", "lone-cr.msg", text("a\rb\nc\n"));
    put("message", "no-last-line-end.msg", text("zanoview\nno picture"));
    put("message", "empty.msg", bytes_t{});

    auto args = [](std::vector<std::string> const& words) {
        bytes_t b;
        for (std::string const& w : words) b.str(w).u8(0);
        return b;
    };
    put("cmdline", "sizes.bin", args({"-winsize", "1024x768", "-maxmargin", "10,32", "pic.jpg"}));
    put("cmdline", "flags.bin", args({"-VERBOSE", "-menu-", "-single+", "-debug", "-resetview", "a.png"}));
    put("cmdline", "values.bin",
        args({"-framecolor", "255,0,0,128", "-image_ratio_of_window", "1063256064", "-doubleclick_interval", "0"}));
    put("cmdline", "value-missing.bin", args({"-resizetype", "2", "-winsize"}));
    put("cmdline", "file-first.bin", args({"pic.jpg", "-verbose"}));
}

// ----------------------------------------------------- testdata extras

// The payload of the first APP1 in a file laid out as a JPEG, or nothing.
bytes_t first_app1(bytes_t const& file)
{
    std::vector<bytes_t> const app1 = segments(file, 0xE1);
    return app1.empty() ? bytes_t{} : app1.front();
}

void testdata_seeds(fs::path const& testdata)
{
    std::vector<fs::path> files;
    for (auto const& entry : fs::recursive_directory_iterator(testdata))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    int n = 0;
    for (fs::path const& path : files) {
        std::ifstream in(path, std::ios::binary);
        bytes_t file;
        file.insert(file.end(), std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        if (file.size() < 4 || file[0] != 0xFF || file[1] != 0xD8) continue;
        bytes_t const app1 = first_app1(file);
        if (!app1.empty()) put("exif", "testdata-" + std::to_string(n++) + ".bin", app1);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::cerr << "usage: zv_fuzz_seeds <output directory> [testdata directory]" << std::endl;
        return 2;
    }
    g_out = argv[1];
    bmp_seeds("bmp");
    bmp_seeds("bmp2");
    tga_seeds();
    png_seeds();
    jpeg_seeds();
    exif_seeds();
    makernote_seeds();
    marker_seeds();
    text_seeds();
    if (argc > 2 && fs::is_directory(argv[2])) testdata_seeds(argv[2]);
    return 0;
}
