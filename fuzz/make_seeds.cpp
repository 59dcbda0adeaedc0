// Writes the seed corpus of every fuzzing target: small valid inputs of
// each kind the readers accept, and beside them deliberately odd ones, most
// of them a good file with a field changed or its end cut off. Each is named
// after what it is; what an odd one gets wrong is said where it is made.
// BMP and JPEG files come from the tests' writers, PNG files from libpng;
// TGA files, Exif blocks, marker segments and text files are put together
// byte by byte. libFuzzer mutates the seeds anyway: one seed per parser
// branch is enough.
//   zv_fuzz_seeds <output directory> [testdata directory]
// makes <output>/<target>/ for each target. With a testdata directory the
// first APP1 of each JPEG found there becomes an extra seed of the Exif
// target. The output is the same on every run.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <png.h>

#include "geometry/matrix.h"
#include "geometry/text.h"
#include "geometry/vector.h"
#include "options/option.h"
#include "options/userdefault.h"
#include "tests/support/jpeg_encode.h"
#include "tests/support/picture_files.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

fs::path g_out;

[[noreturn]] void fail(std::string const& what)
{
    std::cerr << "zv_fuzz_seeds: " << what << std::endl;
    std::exit(1);
}

void put(char const* target, std::string const& name, std::string const& bytes)
{
    fs::create_directories(g_out / target);
    std::ofstream file(g_out / target / name, std::ios::binary);
    if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()))) fail("can't write " + name);
}

std::string slurp(fs::path const& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// `n` bytes of `v`, the most significant first when `big`.
std::string word(std::uint64_t v, int n, bool big = false)
{
    std::string bytes;
    for (int i = 0; i < n; ++i) bytes += static_cast<char>(v >> 8 * (big ? n - 1 - i : i));
    return bytes;
}

// `n` bytes at `at` set to `v`.
struct patch_t {
    std::size_t at;
    int n;
    std::uint64_t v;
};

std::string patched(std::string file, std::vector<patch_t> const& patches, bool big = false)
{
    for (patch_t const& p : patches) file.replace(p.at, p.n, word(p.v, p.n, big));
    return file;
}

std::string flipped(std::string file, std::size_t at)
{
    file[at] ^= 0x20;
    return file;
}

// A value that changes across the picture in every channel.
unsigned char sample(int x, int y, int c)
{
    return static_cast<unsigned char>(x * 37 + y * 11 + c * 85);
}

// ---------------------------------------------------------------- pictures

void bmp_seeds(char const* target)
{
    zvtest::TempDir dir;
    std::vector<std::uint32_t> palette;
    for (int i = 0; i < 16; ++i) palette.push_back(zvtest::distinct_colour(i, 0));
    if (!zvtest::write_bmp24(dir.file("24"), 4, 3, zvtest::distinct_colour) ||
        !zvtest::write_bmp8(dir.file("8"), 7, 5, palette, [](int x, int y) { return (x + y) % 16; }))
        fail("can't write a BMP");
    std::string const rgb = slurp(dir.file("24")), mapped = slurp(dir.file("8"));
    // The fields changed: pixel offset at 10, header size 14, width 18,
    // height 22, bits 28, compression 30; the colour space at 54.
    put(target, "bmp-24-4x3.bmp", rgb);
    put(target, "bmp-8-palette-16.bmp", mapped);
    put(target, "bmp-32-3x3.bmp", patched(rgb, {{18, 4, 3}, {28, 2, 32}}));
    put(target, "bmp-8-no-palette.bmp", patched(rgb, {{28, 2, 8}}));
    put(target, "bmp-4-palette.bmp", patched(mapped, {{28, 2, 4}}));
    put(target, "bmp-1-palette.bmp", patched(mapped, {{28, 2, 1}}));
    put(target, "bmp-8-v4-header.bmp", patched(mapped, {{14, 4, 108}, {54, 4, 0x73524742 /* "BGRs" */}}));
    // Refused: compressed, 16 bits, a palette on 32-bit pixels.
    put(target, "bmp-8-rle.bmp", patched(mapped, {{30, 4, 1}}));
    put(target, "bmp-16.bmp", patched(rgb, {{28, 2, 16}}));
    put(target, "bmp-32-palette.bmp", patched(mapped, {{28, 2, 32}}));
    // Lies: a top-down file's negative height, sizes far beyond the data,
    // pixels that start behind the end, pixels or headers cut short.
    put(target, "bmp-24-topdown.bmp", patched(rgb, {{22, 4, static_cast<std::uint32_t>(-3)}}));
    put(target, "bmp-65535x65535.bmp", patched(rgb, {{18, 4, 65535}, {22, 4, 65535}}));
    put(target, "bmp-offbits-past-end.bmp", patched(mapped, {{10, 4, 0x7FFFFFF0}}));
    put(target, "bmp-24-truncated.bmp", rgb.substr(0, 70));
    put(target, "bmp-headers-cut.bmp", rgb.substr(0, 40));
    put(target, "bmp-not-bm.bmp", flipped(rgb, 0));
}

// An uncompressed bottom-up TGA with `map` colour map entries of 3 bytes
// (the header's entry size counted in bytes, as the reader takes it), its
// rows padded to 4 bytes as the viewer's own writer pads them.
std::string tga(unsigned type, unsigned depth, unsigned width, unsigned height, unsigned map = 0,
                std::string const& id = "")
{
    std::string file = word(id.size(), 1) + word(map != 0, 1) + word(type, 1) +
                       word(0, 2) + word(map, 2) + word(map ? 3 : 0, 1) + word(0, 4) + word(width, 2) +
                       word(height, 2) + word(depth, 1) + word(0, 1) + id + std::string(map * 3, '\x80');
    unsigned const row = (depth * width / 8 + 3) / 4 * 4;
    for (unsigned i = 0; i < row * height; ++i) file += static_cast<char>(sample(i % row, i / row, 1));
    return file;
}

void tga_seeds()
{
    std::string const rgb = tga(2, 24, 3, 3, 0, "seed!"), mapped = tga(1, 8, 4, 4, 16);
    put("tga", "tga-24-3x3-with-id.tga", rgb);
    put("tga", "tga-8-colormapped.tga", mapped);
    put("tga", "tga-32-5x2.tga", tga(2, 32, 5, 2));
    put("tga", "tga-16-3x3.tga", tga(2, 16, 3, 3));
    put("tga", "tga-8-gray-7x2.tga", tga(2, 8, 7, 2));
    // Refused: run-length encoded, a depth of 15, top-down.
    put("tga", "tga-24-rle.tga", tga(10, 24, 4, 4));
    put("tga", "tga-15.tga", tga(2, 15, 4, 4));
    put("tga", "tga-24-topdown.tga", patched(rgb, {{17, 1, 0x20}}));
    // Lies: sizes far beyond the data, a colour map longer than the file;
    // pixels and a header cut short.
    put("tga", "tga-65535x65535.tga", patched(rgb, {{12, 2, 65535}, {14, 2, 65535}}));
    put("tga", "tga-colormap-past-end.tga", patched(mapped, {{5, 2, 65535}}));
    put("tga", "tga-truncated.tga", rgb.substr(0, 40));
    put("tga", "tga-header-cut.tga", rgb.substr(0, 10));
}

// A 13 x 7 PNG written by libpng: 16-bit samples in the linear formats, and
// a colour map of `entries` colours as a palette of as few bits as hold
// them. The reader rounds counts like 3 and 5 up to a power of two.
std::string png(png_uint_32 format, png_uint_32 entries = 0)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = 13;
    image.height = 7;
    image.format = format;
    image.colormap_entries = entries;
    // Any bytes make a picture; an index must stay within the colour map.
    std::vector<png_byte> pixels(PNG_IMAGE_SIZE(image)), colormap(3 * entries);
    for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = entries ? i % entries : sample(int(i), 0, 2);
    for (std::size_t i = 0; i < colormap.size(); ++i) colormap[i] = sample(int(i), 0, 0);
    png_alloc_size_t size = 0;
    png_image_write_get_memory_size(image, size, 0, pixels.data(), 0, colormap.data());
    std::string out(size, '\0');
    if (!png_image_write_to_memory(&image, out.data(), &size, 0, pixels.data(), 0, colormap.data()))
        fail("libpng refused a seed");
    return out;
}

void png_seeds()
{
    std::string const good = png(PNG_FORMAT_RGB);
    put("png", "png-rgb-8.png", good);
    put("png", "png-gray-16.png", png(PNG_FORMAT_LINEAR_Y));
    std::pair<int, png_uint_32> const palettes[] = {{1, 2}, {2, 3}, {4, 5}, {8, 17}};  // bits, entries
    for (auto const& [bits, entries] : palettes)
        put("png", "png-palette-" + std::to_string(bits) + ".png", png(PNG_FORMAT_RGB_COLORMAP, entries));
    put("png", "png-gray-alpha-8.png", png(PNG_FORMAT_GA));
    put("png", "png-rgba-16.png", png(PNG_FORMAT_LINEAR_RGB_ALPHA));
    // Sizes far beyond what the data inflates to, the header's CRC left
    // wrong (libpng must refuse that too); files cut in the pixels, after
    // the signature and within it; a changed bit in the pixels.
    put("png", "png-65535x65535-bad-crc.png", patched(good, {{16, 4, 65535}, {20, 4, 65535}}, true));
    put("png", "png-truncated-in-idat.png", good.substr(0, good.size() - 30));
    put("png", "png-signature-only.png", good.substr(0, 8));
    put("png", "png-first-4-bytes.png", good.substr(0, 4));
    put("png", "png-idat-bit-flipped.png", flipped(good, good.size() - 25));
}

// ------------------------------------------------------ TIFF blocks, Exif

enum : unsigned { BYTE = 1, ASCII = 2, SHORT = 3, LONG = 4, RATIONAL = 5, UNDEFINED = 7 };

struct entry_t {
    unsigned tag, type;
    std::vector<std::uint32_t> numbers = {};  // SHORT and LONG values, or numerator and denominator
    std::string text = {};                    // ASCII (ended by a NUL here), BYTE and UNDEFINED values
};

// IFDs written one after the other into a block, each followed by its
// values that don't fit in their entries. Offsets count from `base` bytes
// before the block's start.
struct tiff_t {
    bool big;
    std::size_t base = 0;
    std::string block = {};

    std::string w(std::uint64_t v, int n) const { return word(v, n, big); }

    // Appends an IFD and returns its offset.
    std::uint32_t ifd(std::vector<entry_t> const& entries, std::uint32_t next = 0)
    {
        std::size_t const at = base + block.size(), behind = at + 6 + 12 * entries.size();
        std::string values;
        block += w(entries.size(), 2);
        for (entry_t const& e : entries) {
            std::string v = e.type == ASCII ? e.text + '\0' : e.text;
            for (std::uint32_t n : e.numbers) v += w(n, e.type == SHORT ? 2 : 4);
            std::size_t const count = e.numbers.empty() ? v.size() : e.numbers.size() / (e.type == RATIONAL ? 2 : 1);
            block += w(e.tag, 2) + w(e.type, 2) + w(count, 4);
            if (v.size() <= 4) {
                block += v + std::string(4 - v.size(), '\0');
            } else {
                block += w(behind + values.size(), 4);
                values += v + std::string(v.size() % 2, '\0');
            }
        }
        block += w(next, 4) + values;
        return static_cast<std::uint32_t>(at);
    }
};

enum note_t { NO_NOTE, OLYMPUS, OLYMPUS_UNSIGNED, OM, PENTAX };

// A maker note starting `at` bytes into the block its offsets count from:
// the TIFF block for Olympus, the note itself for the others.
std::string maker_note(bool big, note_t note, std::size_t at, bool with_signature = true)
{
    std::string const signature = !with_signature        ? ""
                                  : note == OLYMPUS      ? "OLYMP\0\x01\x00"s
                                  : note == OM           ? "OM SYSTEM\0\0\0II\x03\x00"s
                                  : note == PENTAX       ? "PENTAX \0"s + (big ? "MM" : "II")
                                                         : "";
    tiff_t t{big, signature.size()};
    switch (note) {
    case OLYMPUS:
    case OLYMPUS_UNSIGNED:
        t.base += at;
        t.ifd({{0x100B, SHORT, {1}}, {0x100C, RATIONAL, {35, 10}}, {0x100F, SHORT, {2}}, {0x1015, SHORT, {3, 4}},
               {0x1029, SHORT, {0}}});
        break;
    case OM: {
        // The main IFD points at the equipment, settings and focus IFDs
        // behind it.
        t.ifd({{0x2010, LONG, {0}}, {0x2020, LONG, {0}}, {0x2050, LONG, {0}}});
        std::vector<entry_t> const subs[] = {
            {{0x0203, ASCII, {}, "M.Zuiko 12-45mm"}},
            {{0x0500, SHORT, {1}}, {0x0501, SHORT, {2}}, {0x0804, RATIONAL, {1, 3}}},
            {{0x0209, SHORT, {1}}, {0x0300, SHORT, {2}}, {0x0305, RATIONAL, {100, 1}}, {0x031B, SHORT, {5}}}};
        for (int i = 0; i < 3; ++i) t.block.replace(2 + 12 * i + 8, 4, t.w(t.ifd(subs[i]), 4));
        break;
    }
    case PENTAX:
        t.ifd({{0x000D, SHORT, {1}}, {0x0010, SHORT, {2}}, {0x0019, SHORT, {3}}, {0x001A, SHORT, {4}},
               {0x0229, ASCII, {}, "RICOH GR III"}});
        break;
    case NO_NOTE: return "a note no reader reads";
    }
    return signature + t.block;
}

// The APP1 payload: "Exif\0\0" and a TIFF block laid out as cameras lay it
// out: the 0th IFD (Make and Orientation among others) at offset 8, then the
// Exif IFD with the maker note, the GPS IFD, and the 1st IFD followed by its
// thumbnail. Each pointer of the 0th IFD is set once what it points at is
// written.
std::string exif(bool big, unsigned orientation, std::string const& make, note_t note, bool gps = false)
{
    tiff_t t{big};
    t.block = (big ? "MM" : "II") + t.w(42, 2) + t.w(8, 4);
    std::vector<entry_t> zeroth = {{0x010F, ASCII, {}, make},    {0x0110, ASCII, {}, "Model 1"},
                                   {0x0112, SHORT, {orientation}}, {0x011A, RATIONAL, {72, 1}},
                                   {0x011B, RATIONAL, {72, 1}},    {0x0128, SHORT, {2}},
                                   {0x0132, ASCII, {}, "2024:01:02 03:04:05"}, {0x8769, LONG, {0}}};
    if (gps) zeroth.push_back({0x8825, LONG, {0}});
    t.ifd(zeroth);
    auto point = [&](std::size_t word_at, std::uint32_t to) { t.block.replace(8 + word_at, 4, t.w(to, 4)); };
    std::vector<entry_t> exif_ifd = {{0x927C, UNDEFINED},         {0x829A, RATIONAL, {1, 250}},
                                     {0x829D, RATIONAL, {28, 10}}, {0x8827, SHORT, {200}},
                                     {0x9003, ASCII, {}, "2024:01:02 03:04:05"}, {0x9209, SHORT, {0}}};
    // The note is the first value behind its IFD.
    exif_ifd[0].text = maker_note(big, note, t.block.size() + 6 + 12 * exif_ifd.size());
    point(2 + 12 * 7 + 8, t.ifd(exif_ifd));
    if (gps) point(2 + 12 * 8 + 8, t.ifd({{0x0000, BYTE, {}, "\x02\x02\x00\x00"s}}));
    // The 1st IFD's two entries and next-IFD word take 30 bytes.
    std::uint32_t const thumbnail = static_cast<std::uint32_t>(t.block.size() + 30);
    point(2 + 12 * zeroth.size(), t.ifd({{0x0201, LONG, {thumbnail}}, {0x0202, LONG, {4}}}));
    return "Exif\0\0"s + t.block + "\xFF\xD8\xFF\xD9";
}

void exif_seeds()
{
    std::string const canon = exif(false, 6, "Canon", NO_NOTE);
    put("exif", "exif-ii-orientation-6.bin", canon);
    put("exif", "exif-mm-orientation-3-gps.bin", exif(true, 3, "NIKON", NO_NOTE, true));
    put("exif", "exif-ii-olympus-signed.bin", exif(false, 8, "OLYMPUS CORPORATION", OLYMPUS));
    put("exif", "exif-mm-olympus-unsigned.bin", exif(true, 1, "OLYMPUS OPTICAL CO.,LTD", OLYMPUS_UNSIGNED));
    put("exif", "exif-ii-om-system.bin", exif(false, 6, "OM Digital Solutions", OM));
    put("exif", "exif-mm-ricoh-pentax.bin", exif(true, 8, "RICOH IMAGING COMPANY, LTD.", PENTAX));
    // Refused or cut short: a block of 7 bytes, a garbled byte order mark,
    // big-endian magic bytes in the wrong order, a 0th IFD that counts 65535
    // entries, a maker note longer than the block, a block cut in the Exif
    // IFD's values; no Exif at all.
    put("exif", "exif-block-7-bytes.bin", "Exif\0\0II*\0\x08\0\0"s);
    put("exif", "exif-bad-byte-order.bin", flipped(canon, 6));
    put("exif", "exif-mm-magic-swapped.bin", patched(exif(true, 6, "Canon", NO_NOTE), {{8, 2, 0x2A00}}, true));
    put("exif", "exif-0th-count-65535.bin", patched(canon, {{6 + 8, 2, 65535}}));
    put("exif", "exif-note-past-end.bin", patched(canon, {{canon.find("\x7C\x92\x07\x00") + 4, 4, 65535}}));
    put("exif", "exif-cut-in-exif-values.bin", canon.substr(0, canon.size() - 40));
    put("exif", "exif-not-exif.bin", "http://ns.adobe.com/xap/1.0/\0<x:xmpmeta/>"s);
}

void makernote_seeds()
{
    // The first byte picks the reader (its low three bits) and the byte
    // order (bit 3). The note is also the block its offsets count from,
    // its IFD at its first byte: no signature.
    for (bool big : {false, true}) {
        std::string const order = big ? "-mm.bin" : "-ii.bin";
        std::pair<unsigned, note_t> const notes[] = {{0, OLYMPUS}, {1, OM}, {5, PENTAX}};
        for (auto const& [reader, note] : notes)
            put("makernote", "reader-" + std::to_string(reader) + order,
                word(reader | big << 3, 1) + maker_note(big, note, 0, false));
        // One IFD with tags of all the sub-IFD and Exif readers.
        tiff_t t{big};
        t.ifd({{0x0203, ASCII, {}, "lens"}, {0x0500, SHORT, {1}}, {0x0804, RATIONAL, {1, 2}}, {0x0209, SHORT, {1}},
               {0x0305, RATIONAL, {3, 4}}, {0x031B, SHORT, {2}}, {0x829A, RATIONAL, {1, 60}},
               {0x9003, ASCII, {}, "2024:01:02 03:04:05"}, {0x0201, LONG, {8}}, {0x0202, LONG, {16}}});
        for (unsigned reader : {2u, 3u, 4u, 6u, 7u})
            put("makernote", "reader-" + std::to_string(reader) + order, word(reader | big << 3, 1) + t.block);
    }
    // An entry count far beyond the note; a sub-IFD behind its end, and one
    // at its last byte.
    put("makernote", "count-past-end.bin", "\x01\xFF\x7F\x10\x20\x04\x00"s);
    for (std::uint32_t at : {0x7FFFFFF0u, 17u}) {
        tiff_t t{false};
        t.ifd({{0x2010, LONG, {at}}});
        put("makernote", at == 17 ? "subifd-at-last-byte.bin" : "subifd-past-end.bin", word(1, 1) + t.block);
    }
}

// -------------------------------------------------------------------- JPEG

// The payloads of the segments `code` in a JPEG, up to its first scan.
std::vector<std::string> segments(std::string const& file, unsigned code)
{
    std::vector<std::string> found;
    for (std::size_t i = 2; i + 4 <= file.size() && file[i] == '\xFF';) {
        auto byte = [&](std::size_t at) { return static_cast<unsigned char>(file[at]); };
        unsigned const marker = byte(i + 1);
        std::size_t const length = byte(i + 2) << 8 | byte(i + 3);
        if (length < 2 || i + 2 + length > file.size()) break;
        if (marker == code) found.push_back(file.substr(i + 4, length - 2));
        if (marker == 0xDA) break;
        i += 2 + length;
    }
    return found;
}

// RGB is stored as 4:2:0.
std::string jpeg(int width, int height, int components, zvtest::jpeg_markers_t const& markers = {},
                 bool progressive = false, bool arithmetic = false)
{
    zvtest::jpeg_bytes_t const file =
        zvtest::jpeg_encode(sample, width, height, components, markers, progressive, arithmetic);
    return std::string(file.begin(), file.end());
}

void jpeg_seeds()
{
    zvtest::jpeg_markers_t const olympus = {{0xE1, exif(false, 6, "OLYMPUS CORPORATION", OLYMPUS)},
                                            {0xFE, "a comment"}};
    put("jpeg", "jpeg-gray-16x16.jpg", jpeg(16, 16, 1));
    put("jpeg", "jpeg-rgb-33x17.jpg", jpeg(33, 17, 3));
    put("jpeg", "jpeg-rgb-progressive.jpg", jpeg(31, 21, 3, {}, true));
    put("jpeg", "jpeg-gray-progressive.jpg", jpeg(17, 9, 1, {}, true));
    put("jpeg", "jpeg-rgb-arithmetic.jpg", jpeg(24, 16, 3, {}, false, true));
    put("jpeg", "jpeg-cmyk.jpg", jpeg(8, 8, 4));
    put("jpeg", "jpeg-1x1.jpg", jpeg(1, 1, 3));
    put("jpeg", "jpeg-exif-olympus-orientation-6.jpg", jpeg(16, 8, 3, olympus));
    put("jpeg", "jpeg-exif-om-system.jpg", jpeg(8, 16, 3, {{0xE1, exif(true, 8, "OM Digital Solutions", OM)}}));
    put("jpeg", "jpeg-exif-second-app1.jpg",
        jpeg(8, 8, 1, {{0xE1, "http://ns.adobe.com/xap/1.0/"}, {0xE1, exif(false, 3, "Canon", NO_NOTE)}}));
    // Cut in its last third and in its first scan, a changed bit in the
    // scan, a header claiming 65535 x 65535 (beyond libjpeg's limit) and
    // 65500 x 65500 (within it).
    std::string const good = jpeg(48, 32, 3);
    put("jpeg", "jpeg-cut-last-third.jpg", good.substr(0, good.size() * 2 / 3));
    put("jpeg", "jpeg-header-only.jpg", good.substr(0, good.size() - 200));
    put("jpeg", "jpeg-scan-bit-flipped.jpg", flipped(good, good.size() - 40));
    std::size_t const sof = good.find("\xFF\xC0");
    for (unsigned side : {65535u, 65500u})
        put("jpeg", "jpeg-" + std::to_string(side) + "x" + std::to_string(side) + ".jpg",
            patched(good, {{sof + 5, 2, side}, {sof + 7, 2, side}}, true));

    // The turn: the count's byte, then the file; 4 is refused.
    put("transform", "turn-0-gray.bin", word(0, 1) + jpeg(16, 16, 1));
    put("transform", "turn-1-exif.bin", word(1, 1) + jpeg(32, 16, 3, olympus));
    put("transform", "turn-2-odd-size.bin", word(2, 1) + jpeg(17, 9, 3));
    put("transform", "turn-3-progressive.bin", word(3, 1) + jpeg(24, 40, 3, {}, true));
    put("transform", "turn-3-cut.bin", word(3, 1) + good.substr(0, good.size() / 2));
    put("transform", "turn-4-refused.bin", word(4, 1) + jpeg(8, 8, 1));

    // The segment readers, the first byte picking one, on the segments of
    // a colour and a gray file; a restart interval is written by hand.
    char const* const names[] = {"sof0", "dqt", "dht", "dri", "sos"};
    unsigned const codes[] = {0xC0, 0xDB, 0xC4, 0xDD, 0xDA};
    for (unsigned r = 0; r < 5; ++r) {
        int n = 0;
        for (std::string const& file : {good, jpeg(16, 16, 1)})
            for (std::string const& payload : segments(file, codes[r]))
                put("markers", names[r] + ("-" + std::to_string(n++)) + ".bin", word(r, 1) + payload);
    }
    put("markers", "dri-1.bin", "\x03\x00\x01"s);
    // Refused: 12-bit precision, a factor of 0, a 16-bit table, a table
    // destination of 4, five tables, a stuffed byte in a value list, a value
    // past the table, a progressive scan, a restart segment of 4 bytes.
    put("markers", "sof0-precision-12.bin", "\x00\x0C\x00\x08\x00\x08\x01\x01\x11\x00"s);
    put("markers", "sof0-factor-0.bin", "\x00\x08\x00\x08\x00\x08\x02\x01\x21\x00\x02\x00\x01"s);
    put("markers", "dqt-pq-1.bin", "\x01\x10"s + std::string(64, 1));
    put("markers", "dqt-tq-4.bin", "\x01\x04"s + std::string(64, 1));
    put("markers", "dqt-5-tables.bin", "\x01"s + std::string(65 * 5, 0));
    put("markers", "dht-stuffed-value.bin", "\x02\x11\x00\x02"s + std::string(14, 0) + "\xFF\x00\x01"s);
    put("markers", "dht-value-0x10.bin", "\x02\x10\x01"s + std::string(15, 0) + "\x10");
    put("markers", "sos-progressive.bin", "\x04\x01\x01\x00\x00\x05\x02"s);
    put("markers", "dri-4-bytes.bin", "\x03\x00\x00\x00\x10"s);
}

// ------------------------------------------------------------ text files

// Arguments as the harness cuts them from its input, each ended by a NUL.
std::string args(std::vector<std::string> const& words)
{
    std::string bytes;
    for (std::string const& w : words) bytes += w + '\0';
    return bytes;
}

void text_seeds()
{
    // The user default file as the program writes it, and by hand; a
    // valued option alone on its line has no value to read.
    fs::path const saved = g_out / "userdefault" / "saved-by-option-save";
    fs::create_directories(saved.parent_path());
    zanolib::option_save(saved.c_str());
    put("userdefault", "hand-edited.txt",
        "# my settings\n-winsize 1024x768\n-framecolor 255,0,0,128\n-VERBOSE+\n"
        "-image_ratio_of_window 1063256064\n-resizetype 0x2\n  -debug\n");
    put("userdefault", "crlf-and-tabs.txt", "-maxsize\t1920x1080\r\n-frametype 3\r\n-menu-\r\n");
    put("userdefault", "value-missing.txt", "-winsize\n-framecolor\n-doubleclick_interval\n");
    put("userdefault", "numbers-not-numbers.txt", "-winsize -5x\n-framewidth 0\n-framecolor 1,\n");

    // The view state file as the program writes it, and the other text forms.
    std::ostringstream state;
    state << libgr::dir2l(libgr::position2l_t{800, 600}) << '\n' << libgr::Imtx << '\n';
    put("zvw", "written.zvw", state.str());
    put("zvw", "forgiving.zvw", "size (640 , 480)\nxyz (1;0;0;0;0;1;0;0;0;0;1;0;0;0;0;1\n");
    put("zvw", "typed-values.txt",
        "float(2.5) pos3(1, 2, 3) rot3(0.5, dir3(0, 1, 0)) srt3(1, dir3(1, 0, 0)) "
        "irt3(rev3(1, 2, 3), srt3(1, dir3(0, 0, 1))) pst3w(rot3(1, 2, 3), rot3(4, 5, 6), pos3(7, 8, 9)) "
        "box2(pos2(0, 0), pos2(1, 1)) box3(pos3(0, 0, 0), pos3(1, 1, 1)) col3aub(a,b,c,d) "
        "col1ub(x) dim2(3, 4) line3d(dir3(0,0,1), mtx3w(1), mtx3w(2)) projection(1,2,3,4,5,6) "
        "unknown(1, 2) qua(0, 0, 0, 1)");
    put("zvw", "cut-in-matrix.zvw", "dir2l(800, 600)\nmtx3w(\t1.000000, 0.000000,");

    put("message", "two-lines.msg", "zanoview\nno picture\n");
    put("message", "crlf.msg", "zanoview\r\nno picture\r\n");
    put("message", "lone-cr.msg", "a\rb\nc\n");
    put("message", "no-last-line-end.msg", "zanoview\nno picture");

    put("cmdline", "sizes.bin", args({"-winsize", "1024x768", "-maxmargin", "10,32", "pic.jpg"}));
    put("cmdline", "flags.bin", args({"-VERBOSE", "-menu-", "-single+", "-debug", "-resetview", "a.png"}));
    put("cmdline", "values.bin",
        args({"-framecolor", "255,0,0,128", "-image_ratio_of_window", "1063256064", "-doubleclick_interval", "0"}));
    put("cmdline", "value-missing.bin", args({"-resizetype", "2", "-winsize"}));
    put("cmdline", "file-first.bin", args({"pic.jpg", "-verbose"}));
}

// The first APP1 of each JPEG below `testdata`, as Exif seeds.
void testdata_seeds(fs::path const& testdata)
{
    std::vector<fs::path> files;
    for (auto const& entry : fs::recursive_directory_iterator(testdata))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    int n = 0;
    for (fs::path const& path : files) {
        std::string const file = slurp(path);
        if (file.compare(0, 2, "\xFF\xD8") != 0) continue;
        std::vector<std::string> const app1 = segments(file, 0xE1);
        if (!app1.empty()) put("exif", "testdata-" + std::to_string(n++) + ".bin", app1.front());
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
    exif_seeds();
    makernote_seeds();
    jpeg_seeds();
    text_seeds();
    if (argc > 2 && fs::is_directory(argv[2])) testdata_seeds(argv[2]);
    return 0;
}
