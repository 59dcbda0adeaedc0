// The TGA codec on files written here byte by byte, so that each header
// field can lie, through round trips of our writer, and on the real files of
// the shared corpus, if present.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <iostream>
#include <string>

#include "codecs/tga.h"
#include "tests/support/scratch.h"

using namespace libgr;

namespace {

// A true-colour or colour-mapped file of 3x2 pixels, rows padded to 4 bytes;
// a colour map's entries are taken as 1 byte each.
std::string tga_file(int type, int depth, std::string const& id = "", std::string const& map = "")
{
    std::string out = {char(id.size()), char(!map.empty()), char(type), 0, 0};
    out += {char(map.size()), char(map.size() >> 8), char(map.empty() ? 0 : 1)};
    out += {0, 0, 0, 0, 3, 0, 2, 0, char(depth), 0};
    out += id + map;
    for (int i = 0; i < (depth * 3 / 8 + 3) / 4 * 4 * 2; ++i) out += char(i * 7 + 1);
    return out;
}

std::string with(std::string s, std::size_t at, char value)
{
    s[at] = value;
    return s;
}

using zvtest::read_file;

std::string content(image2d_t const& image) { return std::string(image.begin(), image.end()); }
bool load(image2d_t& image, std::string const& p) { return image_tga_t().load(image, p.c_str()); }
bool save(image2d_t const& im, std::string const& p) { return image_tga_t().save(im, p.c_str()); }

image2d_t picture(e_image_format_t format, e_image_bits_t bits, std::uint32_t width = 5)
{
    image2d_t image;
    image.desc = {format, IMAGE_TYPE_UINT, bits};
    image.m_width = width;
    image.m_height = 3;
    if (image.allocate())
        for (unsigned long i = 0; i < image.size(); ++i)
            image.begin()[i] = static_cast<unsigned char>(i * 5 + 3);
    return image;
}

using Files = zvtest::ScratchFiles;

struct TgaReader : Files {};
struct TgaWriter : Files {};

}  // namespace

TEST_F(TgaReader, EachDepthSharesThePaddedRowsAsTheFileHoldsThem)
{
    struct kind_t { int type, depth; e_image_format_t format; e_image_bits_t bits; };
    kind_t const kinds[] = {
        {2, 8, IMAGE_FORMAT_GRAYSCALE, IMAGE_BITS_8},
        {2, 16, IMAGE_FORMAT_BGRA, IMAGE_BITS_R5G5B5A1},
        {2, 24, IMAGE_FORMAT_BGR, IMAGE_BITS_8},
        {2, 32, IMAGE_FORMAT_BGRA, IMAGE_BITS_8},
        {1, 8, IMAGE_FORMAT_GRAYSCALE, IMAGE_BITS_8},  // the map skipped, indices as gray
    };
    for (kind_t const& k : kinds) {
        SCOPED_TRACE(k.depth);
        std::string const map = k.type == 1 ? "rgbrgb" : "";
        std::string const file = tga_file(k.type, k.depth, "made here", map);
        image2d_t image;
        image.window.skiprows = 9;  // left from an earlier picture
        ASSERT_TRUE(load(image, write("tga.tga", file)));
        EXPECT_TRUE(image.desc == (image_desc_t{k.format, IMAGE_TYPE_UINT, k.bits}));
        EXPECT_EQ(image.m_width, 3u);
        EXPECT_EQ(image.m_height, 2u);
        EXPECT_EQ(image.window.skiprows, 0u);
        std::uint64_t const row = (k.depth * 3 / 8 + 3) / 4 * 4;
        EXPECT_EQ(image.rowsize(), row);
        EXPECT_EQ(content(image), file.substr(file.size() - row * 2));
    }
}

TEST_F(TgaReader, RefusesWhatItDoesNotReadAndHeadersTheFileDoesNotBack)
{
    std::string const good = tga_file(2, 24);
    std::string const paths[] = {
        write("tga-8-rle.tga", with(good, 2, 9)),
        write("tga-24-rle.tga", with(good, 2, 10)),
        write("tga-8-rle-gray.tga", with(good, 2, 11)),
        write("tga-8-gray.tga", with(good, 2, 3)),
        write("tga-24-topdown.tga", with(good, 17, 0x20)),
        write("tga-15.tga", with(good, 16, 15)),
        write("tga-24-w3-unpadded.tga", good.substr(0, 18 + 9 * 2)),  // 9-byte rows, 12 asked for
        write("tga-65283x65282.tga", with(with(good, 13, '\xFF'), 15, '\xFF')),  // 17 GB of rows
        write("tga-map-65280x255.tga", with(with(with(good, 1, 1), 6, '\xFF'), 7, '\xFF')),
        write("tga-header-cut.tga", good.substr(0, 17)),
        write("empty.tga", ""),
        "/nonexistent/missing.tga",
    };
    for (std::string const& path : paths) {
        image2d_t image;
        EXPECT_FALSE(load(image, path)) << path;
        EXPECT_TRUE(image.empty()) << path;
    }
}

TEST_F(TgaWriter, RgbAndRgbaAreWrittenBlueFirstAndReadBack)
{
    struct kind_t { e_image_format_t format, back; e_image_bits_t bits; int depth; bool swapped; };
    kind_t const kinds[] = {
        {IMAGE_FORMAT_RGB, IMAGE_FORMAT_BGR, IMAGE_BITS_8, 24, true},
        {IMAGE_FORMAT_RGBA, IMAGE_FORMAT_BGRA, IMAGE_BITS_8, 32, true},
        {IMAGE_FORMAT_RGBA, IMAGE_FORMAT_BGRA, IMAGE_BITS_R5G5B5A1, 16, false},  // as it stands
    };
    for (kind_t const& k : kinds) {
        SCOPED_TRACE(k.depth);
        image2d_t const image = picture(k.format, k.bits);  // 5 wide: rows padded
        std::string const path = write("out.tga", "");
        ASSERT_TRUE(save(image, path));
        std::string const file = read_file(path);
        std::uint64_t const pixel = k.depth / 8, row = (pixel * 5 + 3) / 4 * 4;
        ASSERT_EQ(file.size(), 18 + row * 3);
        // No id, no map, true colour; 5x3, bottom-up.
        EXPECT_EQ(file.substr(0, 3) + file.substr(12, 6),
                  std::string("\0\0\2\5\0\3\0", 7) + char(k.depth) + '\0');

        image2d_t back;
        ASSERT_TRUE(load(back, path));
        EXPECT_TRUE(back.desc == (image_desc_t{k.back, IMAGE_TYPE_UINT, k.bits}));
        for (std::uint64_t i = 0; i < 15 * pixel; ++i) {
            std::uint64_t const y = i / (5 * pixel), c = i % pixel, x = i / pixel % 5;
            std::uint64_t const from = k.swapped && c < 3 ? 2 - c : c;
            ASSERT_EQ(back.begin()[y * row + x * pixel + c],
                      image.begin()[y * row + x * pixel + from]) << i;
        }
    }
}

TEST_F(TgaWriter, OtherKindsAreRefusedAndNothingIsWritten)
{
    image2d_t compressed = picture(IMAGE_FORMAT_RGB, IMAGE_BITS_8);
    compressed.compressed = true;
    image2d_t const images[] = {
        picture(IMAGE_FORMAT_BGR, IMAGE_BITS_8),       picture(IMAGE_FORMAT_BGRA, IMAGE_BITS_8),
        picture(IMAGE_FORMAT_GRAYSCALE, IMAGE_BITS_8), picture(IMAGE_FORMAT_RGB, IMAGE_BITS_16),
        compressed,
        picture(IMAGE_FORMAT_RGB, IMAGE_BITS_8, 70000),  // wider than the 16-bit field
    };
    for (image2d_t const& image : images) {
        std::string const path = m_dir + "/out.tga";
        EXPECT_FALSE(save(image, path)) << image.desc.format;
        EXPECT_FALSE(std::filesystem::exists(path));
    }
}

TEST(TgaCorpus, UncompressedBottomUpFilesLoadOthersAreRefusedNoneIsReadPast)
{
    std::string const corpus = ZV_SOURCE_DIR "/../shared/testdata/tga";
    if (!std::filesystem::is_directory(corpus)) GTEST_SKIP() << corpus << " is absent";
    int files = 0;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(corpus)) {
        if (entry.path().extension() != ".tga") continue;
        ++files;
        image2d_t image;
        if (load(image, entry.path().string())) {
            EXPECT_LE(image.datasize(), image.size()) << entry.path();
        }
    }
    std::cout << files << " corpus files read\n";

    struct known_t { char const* path; bool loads; };
    known_t const known[] = {
        {"image-rs/utc24.tga", true},  // rows of 384 bytes, behind an id
        {"image-rs/utc16.tga", true},
        {"pillow/200x32_rgba_bl_raw.tga", true},
        {"pillow/200x32_rgba_tl_raw.tga", false},  // top-down
        {"image-rs/ctc24.tga", false},             // RLE
        {"pillow/1x1_l_bl_raw.tga", false},        // gray, type 3
        {"pillow/p_8.tga", false},                 // the header alone
        {"pillow/200x32_p_bl_raw.tga", false},     // a map of 256 x 24 taken as bytes
    };
    for (known_t const& k : known) {
        image2d_t image;
        EXPECT_EQ(load(image, corpus + "/" + k.path), k.loads) << k.path;
    }
}
