// The TGA codec on files written here byte by byte, so that each header
// field can lie, through round trips of our writer, and on the real files of
// the shared corpus, if present.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
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
        write("tga-8-gray.tga", with(good, 2, 3)),
        write("tga-24-topdown.tga", with(good, 17, 0x20)),
        write("tga-15.tga", with(good, 16, 15)),
        write("tga-24-w3-unpadded.tga", good.substr(0, 18 + 9 * 2)),  // 9-byte rows, 12 asked for
        write("tga-65283x65282.tga", with(with(good, 13, '\xFF'), 15, '\xFF')),  // 17 GB of rows
        write("tga-map-65280x255.tga", with(with(with(good, 1, 1), 6, '\xFF'), 7, '\xFF')),
        "/nonexistent/missing.tga",
    };
    for (std::string const& path : paths) {
        image2d_t image;
        EXPECT_FALSE(load(image, path)) << path;
        EXPECT_TRUE(image.empty()) << path;
    }
}

TEST_F(TgaWriter, RgbIsWrittenBlueFirstAndReadBack)
{
    image2d_t const image = picture(IMAGE_FORMAT_RGB, IMAGE_BITS_8);  // 5 wide: rows padded to 16
    std::string const path = write("out.tga", "");
    ASSERT_TRUE(save(image, path));
    std::string const file = read_file(path);
    ASSERT_EQ(file.size(), 18u + 16 * 3);
    // No id, no map, true colour; 5x3, bottom-up.
    EXPECT_EQ(file.substr(0, 3) + file.substr(12, 6), std::string("\0\0\2\5\0\3\0\x18\0", 9));
    image2d_t back;
    ASSERT_TRUE(load(back, path));
    EXPECT_TRUE(back.desc == (image_desc_t{IMAGE_FORMAT_BGR, IMAGE_TYPE_UINT, IMAGE_BITS_8}));
    for (std::uint64_t i = 0; i < 45; ++i) {
        std::uint64_t const y = i / 15, x = i / 3 % 5, c = i % 3;
        ASSERT_EQ(back.begin()[y * 16 + x * 3 + c], image.begin()[y * 16 + x * 3 + 2 - c]) << i;
    }
}

TEST_F(TgaWriter, OtherKindsAreRefusedAndNothingIsWritten)
{
    image2d_t compressed = picture(IMAGE_FORMAT_RGB, IMAGE_BITS_8);
    compressed.compressed = true;
    image2d_t const images[] = {
        picture(IMAGE_FORMAT_BGR, IMAGE_BITS_8), picture(IMAGE_FORMAT_RGB, IMAGE_BITS_16), compressed,
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
    for (auto const& entry : std::filesystem::recursive_directory_iterator(corpus)) {
        image2d_t image;
        if (entry.path().extension() == ".tga" && load(image, entry.path().string())) {
            EXPECT_LE(image.datasize(), image.size()) << entry.path();
        }
    }
    image2d_t image;
    EXPECT_TRUE(load(image, corpus + "/image-rs/utc24.tga"));  // rows of 384 bytes, behind an id
    EXPECT_FALSE(load(image, corpus + "/pillow/200x32_rgba_tl_raw.tga"));  // top-down
}
