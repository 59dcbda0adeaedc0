// The BMP readers and writer on files written here field by field, so that
// each field can lie; then the real files of the shared corpus, if present.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "codecs/bmp.h"
#include "codecs/bmp2.h"
#include "tests/support/scratch.h"

using namespace libgr;

namespace {

// What to write; the defaults make a valid 24-bit file of 4x2 pixels.
struct bmp_t {
    bmp_t(std::uint16_t bits = 24, std::uint32_t colours = 0) : bits(bits), colours(colours) {}
    std::int32_t width = 4;
    std::int32_t height = 2;  // negative: top-down
    std::uint16_t bits;
    std::uint32_t colours;  // palette entries; colour i is red 3i, green 2i, blue i
    std::uint32_t compression = 0;
    char const* magic = "BM";
    std::int64_t offbits = -1;  // -1: right behind the palette
    std::string gap;            // bytes between the 40-byte header and the palette
    std::size_t data = -1;      // pixel bytes written, at most
};

std::uint64_t stride(bmp_t const& b) { return (b.bits * std::uint64_t(b.width) + 31) / 32 * 4; }
unsigned char pixel(std::uint64_t i) { return static_cast<unsigned char>(i * 7 + 1); }

std::string bytes(bmp_t const& b)
{
    std::string out = b.magic;
    auto put = [&](std::uint32_t v, int n) {
        for (int i = 0; i < n; ++i) out += static_cast<char>(v >> 8 * i);
    };
    std::uint32_t const offbits = b.offbits >= 0 ? b.offbits : 54 + b.gap.size() + 4 * b.colours;
    put(0, 4), put(0, 4), put(offbits, 4);
    put(40, 4), put(b.width, 4), put(b.height, 4), put(1, 2), put(b.bits, 2);
    put(b.compression, 4), put(0, 4), put(2835, 4), put(2835, 4), put(b.colours, 4), put(0, 4);
    out += b.gap;
    for (std::uint32_t i = 0; i < b.colours; ++i) put((i % 256) * 0x030201u, 4);
    out.resize(offbits, '\0');
    std::uint64_t const data = std::min<std::uint64_t>(stride(b) * std::abs(std::int64_t(b.height)), b.data);
    for (std::uint64_t i = 0; i < data; ++i) out += static_cast<char>(pixel(i));
    return out;
}

std::string content(image2d_t const& image) { return std::string(image.begin(), image.end()); }

// Codecs live for one call, as in the viewer: images must outlive them.
bool load2(image2d_t& image, std::string const& path) { return image_bmp2_t().load(image, path.c_str()); }
bool load1(image2d_t& image, std::string const& path) { return image_bmp_t().load(image, path.c_str()); }

struct Files : zvtest::ScratchFiles {
    using ScratchFiles::write;
    std::string write(char const* name, bmp_t const& b) { return write(name, bytes(b)); }
};

struct AllReaders : Files {};
struct MappedReader : Files {};
struct StreamReader : Files {};
struct BmpWriter : Files {};

}  // namespace

TEST_F(MappedReader, PixelsStayInTheFileAndFormatFollowsBitsAndPalette)
{
    struct kind_t { std::uint16_t bits; std::uint32_t colours; e_image_format_t format; };
    kind_t const kinds[] = {{1, 2, IMAGE_FORMAT_INDEX}, {8, 256, IMAGE_FORMAT_INDEX},
                            {8, 0, IMAGE_FORMAT_GRAYSCALE}, {24, 0, IMAGE_FORMAT_BGR}, {32, 0, IMAGE_FORMAT_BGRA}};
    for (kind_t const& k : kinds) {
        SCOPED_TRACE(k.bits);
        bmp_t b(k.bits, k.colours);
        b.width = 5;  // rows padded at every depth
        image2d_t image;
        image.window.skiprows = 9;  // left from an earlier picture
        ASSERT_TRUE(load2(image, write("bmp.bmp", b)));
        EXPECT_EQ(image.desc.format, k.format);
        EXPECT_EQ(image.desc.getPixelBits(), k.bits);
        EXPECT_EQ(image.m_width, 5u);
        EXPECT_EQ(image.window.skiprows, 0u);
        EXPECT_EQ(content(image), bytes(b).substr(54 + 4 * k.colours));
        if (!k.colours) continue;
        // The palette widens to 16 bits, and its bytes count as entries: the
        // view runs on to the end of the file, whole entries only.
        EXPECT_EQ(image.palette.size, (bytes(b).size() / 4 * 4 - 54) / 4);
        EXPECT_EQ(image.palette.red[1], 3 * 257);
        EXPECT_EQ(image.palette.blue[1], 1 * 257);
    }
}

TEST_F(MappedReader, SeesAVersionFourHeaderAndNoPaletteForThirtyTwoBits)
{
    bmp_t v4(8, 256);
    v4.gap = "BGRs" + std::string(64, '\0');  // a 108-byte header in all
    v4.gap[10] = 9;                          // colour 2 if the tag went unseen
    image2d_t image;
    ASSERT_TRUE(load2(image, write("bmp-8-v4.bmp", v4)));
    EXPECT_EQ(image.palette.red[2], 6 * 257);
    EXPECT_FALSE(load2(image, write("bmp-32-pal.bmp", bmp_t(32, 2))));
}

// Headers that every reader must refuse before it allocates or reads rows.
TEST_F(AllReaders, RefuseCompressionTopDownAndHeadersThatPointPastTheFile)
{
    bmp_t rle(8), topdown, offpast;
    rle.compression = 1;
    topdown.height = -2;  // reads as 4294967294 rows
    offpast.offbits = 4096;
    for (std::string const& path :
         {write("bmp-8-rle.bmp", rle), write("bmp-24-topdown.bmp", topdown),
          write("bmp-offbits-past-end.bmp", bytes(offpast).substr(0, 80)),
          write("bmp-headers-cut.bmp", bytes(bmp_t()).substr(0, 50)), write("empty.bmp", ""),
          m_dir + "/missing.bmp"}) {
        image2d_t image;
        EXPECT_FALSE(load1(image, path)) << path;
        EXPECT_FALSE(load2(image, path)) << path;
        EXPECT_FALSE(BmpLoad(image, path.c_str(), IMAGE_FORMAT_RGB)) << path;
        EXPECT_TRUE(image.empty());
    }
}

TEST_F(MappedReader, RefusesKindsItCantShowAndFilesThatDontHoldTheirRows)
{
    bmp_t cut, wide;
    cut.data = 23;                         // the last row's padding is missing
    wide.width = 1 << 30, wide.data = 64;  // rows of 3 GB in a file of 118 bytes
    image2d_t image;
    EXPECT_FALSE(load2(image, write("bmp-16.bmp", bmp_t(16))));
    EXPECT_FALSE(load2(image, write("bmp-24-cut-1.bmp", cut)));
    EXPECT_FALSE(load2(image, write("bmp-24-width-2e30.bmp", wide)));
}

TEST_F(StreamReader, SkipsThePaletteAndGivesGrayLevelsOrBgr)
{
    for (std::uint16_t bits : {1, 8, 24}) {
        bmp_t b(bits, bits == 24 ? 0 : 1u << bits);
        b.width = 8;  // whole bytes a row at every depth
        std::string const file = bytes(b);
        image2d_t image;
        ASSERT_TRUE(load1(image, write("bmp.bmp", file))) << bits;
        EXPECT_EQ(image.desc.format, bits == 24 ? IMAGE_FORMAT_BGR : IMAGE_FORMAT_GRAYSCALE);
        EXPECT_EQ(image.desc.getPixelBits(), bits);
        EXPECT_EQ(content(image), file.substr(file.size() - stride(b) * 2)) << bits;
    }
    bmp_t odd(1);
    odd.width = 33;  // 8 bytes a row in the file, 4 as read: sheared, but inside the buffer
    std::string const file = bytes(odd);
    image2d_t image;
    ASSERT_TRUE(load1(image, write("bmp-1-33x2.bmp", file)));
    EXPECT_EQ(content(image), file.substr(54, 8) + std::string(8, '\0'));
    EXPECT_EQ(image.datasize(), image.size());
}

TEST_F(StreamReader, ShortFileLoadsButALyingOneIsRefused)
{
    bmp_t cut, tall, magic;
    cut.data = 14;
    image2d_t image;
    ASSERT_TRUE(load1(image, write("bmp-cut.bmp", cut)));
    EXPECT_EQ(content(image).substr(14), std::string(10, '\0'));

    tall.height = 1000, tall.data = 24;  // 12000 bytes claimed, 24 there
    magic.magic = "MB";
    EXPECT_FALSE(load1(image, write("bmp-24-height-1000.bmp", tall)));
    EXPECT_FALSE(load1(image, write("bmp-magic-mb.bmp", magic)));
    EXPECT_FALSE(load1(image, write("bmp-32.bmp", bmp_t(32))));
}

TEST_F(StreamReader, FreeReaderTurnsTwentyFourBitPixelsIntoTheGivenFormat)
{
    bmp_t rows4, odd;
    odd.width = 5;  // padded steps over unpadded rows
    image2d_t image;
    ASSERT_TRUE(BmpLoad(image, write("bmp-24-4x2.bmp", rows4).c_str(), IMAGE_FORMAT_RGB));
    EXPECT_TRUE(image.desc == (image_desc_t{IMAGE_FORMAT_RGB, IMAGE_TYPE_UINT, IMAGE_BITS_8}));
    EXPECT_EQ(image.begin()[0], pixel(2));
    EXPECT_EQ(image.begin()[23], pixel(21));
    ASSERT_TRUE(BmpLoad(image, write("bmp-24-5x2.bmp", odd).c_str(), IMAGE_FORMAT_RGB));
    EXPECT_LE(image.datasize(), image.size());
}

TEST_F(BmpWriter, RoundTripsBgrThroughBothReadersAndRefusesRgb)
{
    image2d_t image;
    image.desc = {IMAGE_FORMAT_BGR, IMAGE_TYPE_UINT, IMAGE_BITS_8};
    image.m_width = 5;  // padded rows
    image.m_height = 3;
    ASSERT_TRUE(image.allocate());
    for (unsigned long i = 0; i < image.size(); ++i) image.begin()[i] = pixel(i);
    std::string const path = write("out.bmp", "");
    ASSERT_TRUE(image_bmp_t().save(image, path.c_str()));
    EXPECT_EQ(zvtest::read_file(path).size(), 54u + image.size());  // no palette
    for (auto load : {load1, load2}) {
        image2d_t back;
        ASSERT_TRUE(load(back, path));
        EXPECT_TRUE(back.desc == image.desc);
        EXPECT_EQ(content(back), content(image));
    }
    image.desc.format = IMAGE_FORMAT_RGB;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(image_bmp_t().save(image, write("out.bmp", "").c_str()));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "convert(to bmp): not supported format.\n");
}

// ------------------------------------------------------------ shared corpus

namespace {

std::string const kCorpus = ZV_SOURCE_DIR "/../shared/testdata/bmp";

// Reads every byte the image addresses, so that the sanitizers see any read
// past the buffer or the mapping.
void touch(image2d_t const& image)
{
    EXPECT_LE(image.datasize(), image.size());
    volatile unsigned char sink = 0;
    for (std::uint64_t i = 0; i < image.datasize() && i < image.size(); ++i) sink = sink ^ image.begin()[i];
}

}  // namespace

TEST(BmpCorpus, GoodFilesLoadWithTheirSizeOthersAreRefusedAndNoneIsReadPast)
{
    if (!std::filesystem::is_directory(kCorpus)) GTEST_SKIP() << kCorpus << " is absent";
    for (auto const& entry : std::filesystem::recursive_directory_iterator(kCorpus)) {
        if (entry.path().extension() != ".bmp") continue;
        std::string const path = entry.path().string();
        SCOPED_TRACE(path);
        image2d_t a, b, c;
        if (load1(a, path)) touch(a);
        if (load2(b, path)) touch(b);
        if (BmpLoad(c, path.c_str(), IMAGE_FORMAT_BGR)) touch(c);
    }
    // A good file, and files with run-length, bit fields and 16 bits.
    image2d_t image;
    ASSERT_TRUE(load2(image, kCorpus + "/image-rs/V4_24_Bit.bmp"));
    EXPECT_EQ(image.m_width, 435u);
    for (char const* bad : {"g/pal8rle.bmp", "g/rgb32bf.bmp", "b/reallybig.bmp"})
        EXPECT_FALSE(load2(image, kCorpus + "/bmpsuite/" + bad)) << bad;
}
