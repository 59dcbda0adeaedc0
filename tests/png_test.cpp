// The PNG codec on files that libpng itself writes here in every colour type
// and depth, through round trips of our writer, on broken files, and on the
// real files of the shared corpus, if present.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <png.h>
#include <zlib.h>

#include "codecs/png.h"
#include "tests/support/scratch.h"

using namespace libgr;

namespace {

struct kind_t {
    int colortype, depth, channels;
    e_image_format_t format;
    e_image_bits_t bits;
    int colours;          // palette entries in the file
    unsigned long table;  // palette entries after loading
};

// Each colour type and each depth at least once, rows that end
// inside a byte; palettes of 1 and 16 entries and one that grows.
kind_t const kKinds[] = {
    {PNG_COLOR_TYPE_RGB, 8, 3, IMAGE_FORMAT_RGB, IMAGE_BITS_8, 0, 0},
    {PNG_COLOR_TYPE_GRAY, 1, 1, IMAGE_FORMAT_GRAYSCALE, IMAGE_BITS_1, 0, 0},
    {PNG_COLOR_TYPE_GRAY, 4, 1, IMAGE_FORMAT_GRAYSCALE, IMAGE_BITS_4, 0, 0},
    {PNG_COLOR_TYPE_GRAY, 16, 1, IMAGE_FORMAT_GRAYSCALE, IMAGE_BITS_16, 0, 0},
    {PNG_COLOR_TYPE_GRAY_ALPHA, 8, 2, IMAGE_FORMAT_GRAYSCALE_ALPHA, IMAGE_BITS_8, 0, 0},
    {PNG_COLOR_TYPE_RGB_ALPHA, 16, 4, IMAGE_FORMAT_RGBA, IMAGE_BITS_16, 0, 0},
    {PNG_COLOR_TYPE_PALETTE, 1, 1, IMAGE_FORMAT_INDEX, IMAGE_BITS_1, 1, 1},
    {PNG_COLOR_TYPE_PALETTE, 2, 1, IMAGE_FORMAT_INDEX, IMAGE_BITS_2, 3, 4},
    {PNG_COLOR_TYPE_PALETTE, 8, 1, IMAGE_FORMAT_INDEX, IMAGE_BITS_8, 16, 16},
};
kind_t const& kRgb8 = kKinds[0];

image_desc_t desc_of(kind_t const& k) { return {k.format, IMAGE_TYPE_UINT, k.bits}; }

// Rows top first, as in the file, 5 pixels wide so that rows end inside a
// byte or get padded; the bits behind the last pixel are zero.
std::vector<std::string> pattern(kind_t const& k, std::uint32_t height = 3)
{
    std::uint64_t const bits = std::uint64_t(k.channels) * k.depth * 5;
    std::vector<std::string> rows(height, std::string((bits + 7) / 8, '\0'));
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::size_t i = 0; i < rows[y].size(); ++i) rows[y][i] = char(y * 31 + i * 7 + 1);
        if (bits % 8) rows[y].back() = char(rows[y].back() & (0xFF << (8 - bits % 8)));
    }
    return rows;
}

png_color colour(int i) { return {png_byte(i), png_byte(255 - i), png_byte(i * 3)}; }

// A PNG 5 pixels wide as libpng writes it.
void write_fixture(std::string const& path, kind_t const& k, std::vector<std::string> const& rows,
                   bool interlaced = false)
{
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    ASSERT_NE(file, nullptr);
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_set_IHDR(png, info, 5, rows.size(), k.depth, k.colortype,
                 interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    std::vector<png_color> palette;
    for (int i = 0; i < k.colours; ++i) palette.push_back(colour(i));
    if (k.colours) png_set_PLTE(png, info, palette.data(), k.colours);
    // The pattern's indices may lie past a short palette: only tables matter.
    png_set_check_for_invalid_index(png, 0);
    png_write_info(png, info);
    std::vector<png_bytep> pointers;
    for (std::string const& row : rows) pointers.push_back(png_bytep(row.data()));
    png_write_image(png, pointers.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    std::fclose(file);
}

// Each image row against the file row it stands for: row 0 is the bottom.
void expect_rows(image2d_t const& image, std::vector<std::string> const& rows)
{
    ASSERT_EQ(image.m_height, rows.size());
    for (std::size_t y = 0; y < rows.size(); ++y) {
        unsigned char const* const row = image.pixel(0, y);
        EXPECT_EQ(std::string(row, row + rows[0].size()), rows[rows.size() - 1 - y]) << "row " << y;
    }
}

// The image record of the rows, bottom up.
image2d_t record_of(image_desc_t desc, std::vector<std::string> const& rows)
{
    image2d_t image;
    image.desc = desc;
    image.m_width = 5;
    image.m_height = rows.size();
    if (image.allocate())
        for (std::size_t y = 0; y < rows.size(); ++y)
            std::copy(rows[y].begin(), rows[y].end(),
                      image.pixel(0, rows.size() - 1 - y));
    return image;
}

using zvtest::read_file;

// The codec's results, and what they wrote on the error stream into `err`.
bool load(image2d_t& image, std::string const& path, std::string& err)
{
    testing::internal::CaptureStderr();
    bool const ok = image_png_t().load(image, path.c_str());
    err = testing::internal::GetCapturedStderr();
    return ok;
}

bool save(image2d_t const& image, std::string const& path, std::string& err)
{
    testing::internal::CaptureStderr();
    bool const ok = image_png_t().save(image, path.c_str());
    err = testing::internal::GetCapturedStderr();
    return ok;
}

bool ends_in_fail(std::string const& err)
{
    return err.size() >= 5 && err.substr(err.size() - 5) == "FAIL\n";
}

using Files = zvtest::ScratchFiles;

struct PngReader : Files {};
struct PngWriter : Files {};

}  // namespace

TEST_F(PngReader, EachColourTypeAndDepthKeepsTheFileLayoutWithRowsBottomUp)
{
    for (kind_t const& k : kKinds)
        for (bool const interlaced : {false, true}) {
            SCOPED_TRACE(testing::Message() << "type " << k.colortype << ", depth " << k.depth
                                            << (interlaced ? ", interlaced" : ""));
            std::vector<std::string> const rows = pattern(k);
            write_fixture(path("in.png"), k, rows, interlaced);
            image2d_t image;
            std::string err;
            ASSERT_TRUE(load(image, path("in.png"), err));
            EXPECT_EQ(err, "");  // no warning either
            EXPECT_TRUE(image.desc == desc_of(k));
            EXPECT_EQ(image.m_width, 5u);
            EXPECT_EQ(image.store, nullptr);  // 16-bit samples stay big-endian
            expect_rows(image, rows);
            // A palette grows to a power of two, the new entries zero.
            ASSERT_EQ(image.palette.size, k.table);
            for (unsigned long i = 0; i < k.table; ++i) {
                png_color const want = int(i) < k.colours ? colour(int(i)) : png_color{0, 0, 0};
                EXPECT_EQ(image.palette.red[i], want.red * 257) << i;
                EXPECT_EQ(image.palette.green[i], want.green * 257) << i;
                EXPECT_EQ(image.palette.blue[i], want.blue * 257) << i;
            }
        }
}

TEST_F(PngReader, BrokenFilesAreRefusedWithTheirLines)
{
    write_fixture(path("good.png"), kRgb8, pattern(kRgb8, 40));
    std::string const good = read_file(path("good.png"));
    std::string crc = good;
    crc[good.find("IDAT") + 8] ^= 0x55;  // the chunk's CRC no longer holds
    // 30000x30000 with a valid CRC: 2.7 GB of rows in a file of 300 bytes.
    std::string lying = good;
    lying[18] = lying[22] = 0x75, lying[19] = lying[23] = 0x30;
    std::uint32_t const sum = crc32(0, reinterpret_cast<Bytef const*>(lying.data() + 12), 17);
    for (int i = 0; i < 4; ++i) lying[29 + i] = char(sum >> (24 - 8 * i));

    std::string const libpng = "libpng error: ";  // then its reason, then "FAIL"
    struct case_t { char const* name; std::string data, err; };
    case_t const cases[] = {
        {"empty.png", "", ""},
        // Only 4 bytes are looked at before libpng takes over.
        {"png-signature-4-right.png", good.substr(0, 4) + std::string(60, 'x'), libpng},
        {"png-idat-crc.png", crc, libpng},
        {"png-30000x30000.png", lying, "FAIL\n"},
    };
    for (case_t const& c : cases) {
        image2d_t image;
        std::string err;
        EXPECT_FALSE(load(image, write(c.name, c.data), err)) << c.name;
        if (c.err == libpng)
            EXPECT_TRUE(err.rfind(libpng, 0) == 0 && ends_in_fail(err)) << c.name << ": " << err;
        else
            EXPECT_EQ(err, c.err) << c.name;
    }
    image2d_t image;
    std::string err;
    EXPECT_FALSE(load(image, path("missing.png"), err));
    EXPECT_EQ(err, path("missing.png") + ": file open error, No such file or directory\n");
}

TEST_F(PngWriter, RgbRoundTripsWithRowsBottomUp)
{
    std::string err;
    std::vector<std::string> const rows = pattern(kRgb8);
    ASSERT_TRUE(save(record_of(desc_of(kRgb8), rows), path("out.png"), err));
    EXPECT_EQ(err, "");
    image2d_t back;
    ASSERT_TRUE(load(back, path("out.png"), err));
    EXPECT_TRUE(back.desc == desc_of(kRgb8));
    expect_rows(back, rows);
}

TEST_F(PngWriter, KindsWithoutAPngFormAreDoneUnwrittenOthersFail)
{
    auto record = [](e_image_format_t format, e_image_bits_t bits) {
        return record_of({format, IMAGE_TYPE_UINT, bits}, std::vector<std::string>(3));
    };
    image2d_t past = record(IMAGE_FORMAT_GRAYSCALE, IMAGE_BITS_8);
    past.window.skippixels = 4;  // the top row runs past the bytes
    struct case_t { char const* what; image2d_t image; bool saved, written; };
    case_t const cases[] = {
        {"BGR", record(IMAGE_FORMAT_BGR, IMAGE_BITS_8), true, false},
        {"INDEX, no palette to write", record(IMAGE_FORMAT_INDEX, IMAGE_BITS_8), false, true},
        {"window past the bytes", past, false, true},
    };
    std::string err;
    for (case_t const& c : cases) {
        std::filesystem::remove(path("out.png"));
        EXPECT_EQ(save(c.image, path("out.png"), err), c.saved) << c.what;
        EXPECT_EQ(std::filesystem::exists(path("out.png")), c.written) << c.what;
        EXPECT_EQ(ends_in_fail(err), !c.saved) << c.what << ": " << err;
    }
    EXPECT_FALSE(save(record(IMAGE_FORMAT_RGB, IMAGE_BITS_8), path("no/such/dir.png"), err));
    EXPECT_EQ(err, "");
}

TEST(PngCorpus, BrokenFilesAreRefusedOthersLoad)
{
    std::string const corpus = ZV_SOURCE_DIR "/../shared/testdata/png";
    if (!std::filesystem::is_directory(corpus)) GTEST_SKIP() << corpus << " is absent";
    for (auto const& entry : std::filesystem::recursive_directory_iterator(corpus)) {
        if (entry.path().extension() != ".png") continue;
        image2d_t image;
        std::string err;
        // The suite's files whose names begin with "x" are broken on purpose.
        bool const broken = entry.path().filename().string()[0] == 'x';
        EXPECT_EQ(load(image, entry.path().string(), err), !broken) << entry.path() << ": " << err;
        EXPECT_TRUE(broken || image.datasize() <= image.size()) << entry.path();
    }
}
