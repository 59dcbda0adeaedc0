// The JPEG codec against libjpeg itself: pictures encoded here are decoded
// both ways and must agree byte for byte; then damaged and unsupported
// files, saving, the Exif turn, and the real files of the shared corpus.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <jpeglib.h>

#include "codecs/jpeg.h"
#include "codecs/orientation.h"
#include "tests/support/jpeg_encode.h"
#include "tests/support/scratch.h"

using namespace libgr;
using bytes_t = std::vector<unsigned char>;

namespace {

using markers_t = zvtest::jpeg_markers_t;

// Smooth up to 64x48; larger pictures wrap into sharp edges, which cost bytes.
unsigned char sample(int x, int y, int c) { return static_cast<unsigned char>(x + y * 2 + c * 40); }

// `components` 1 is gray, 3 RGB, 4 CMYK.
bytes_t encode(int w, int h, int components = 3, markers_t const& markers = {}, bool progressive = false,
               bool arithmetic = false)
{
    return zvtest::jpeg_encode(sample, w, h, components, markers, progressive, arithmetic);
}

// libjpeg's own decode, rows top to bottom, no padding.
bytes_t reference(bytes_t const& jpg, int* stride)
{
    jpeg_decompress_struct d;
    jpeg_error_mgr err;
    d.err = jpeg_std_error(&err);
    jpeg_create_decompress(&d);
    jpeg_mem_src(&d, jpg.data(), jpg.size());
    jpeg_read_header(&d, TRUE);
    jpeg_start_decompress(&d);
    *stride = d.output_width * d.output_components;
    bytes_t px(std::size_t(*stride) * d.output_height);
    while (d.output_scanline < d.output_height) {
        JSAMPROW p = px.data() + std::size_t(*stride) * d.output_scanline;
        jpeg_read_scanlines(&d, &p, 1);
    }
    jpeg_finish_decompress(&d);
    jpeg_destroy_decompress(&d);
    return px;
}

// The first `n` bytes of a file, at most, under `name` in the scratch directory.
struct JpegFiles : zvtest::ScratchFiles {
    std::string write(std::string const& name, bytes_t const& bytes, std::size_t n = -1)
    {
        return ScratchFiles::write(name, std::string(bytes.begin(), bytes.begin() + std::min(n, bytes.size())));
    }
};

// Row y of the record is row h - 1 - y of libjpeg's decode, exactly.
void expect_rows(image2d_t const& image, bytes_t const& ref, int stride, int from, int to)
{
    for (int y = from; y < to; ++y)
        ASSERT_EQ(0, std::memcmp(image.pixel(0, y),
                                 ref.data() + std::size_t(stride) * (image.m_height - 1 - y), stride))
            << "row " << y;
}

std::string app1_exif(unsigned char orientation)
{
    // Big-endian TIFF with one IFD entry: Orientation, SHORT, count 1.
    char const tiff[] = "MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0?\0\0\0\0\0\0";
    std::string s("Exif\0\0", 6);
    s.append(tiff, sizeof tiff - 1);
    s[6 + 19] = static_cast<char>(orientation);
    return s;
}

}  // namespace

TEST_F(JpegFiles, DecodeMatchesLibjpegBottomRowFirst)
{
    // Gray, colour 4:2:0, progressive, arithmetic-coded.
    bytes_t const files[] = {encode(37, 23, 1), encode(37, 23), encode(37, 23, 3, {}, true),
                             encode(37, 23, 3, {}, false, true)};
    for (bytes_t const& jpg : files) {
        SCOPED_TRACE(&jpg - files);
        image2d_t image;
        ASSERT_TRUE(image_jpeg1_t().load(image, write("a.jpg", jpg).c_str()));
        EXPECT_EQ(&jpg == files ? IMAGE_FORMAT_GRAYSCALE : IMAGE_FORMAT_RGB, image.desc.format);
        ASSERT_EQ(37u, image.m_width);
        ASSERT_EQ(23u, image.m_height);
        ASSERT_GE(image.size(), image.datasize());
        int stride = 0;
        bytes_t const ref = reference(jpg, &stride);
        expect_rows(image, ref, stride, 0, 23);
    }
}

TEST_F(JpegFiles, MarkersKeptWholeInFileOrder)
{
    markers_t const m = {{JPEG_COM, "first"}, {JPEG_APP0 + 1, "one"}, {JPEG_APP0 + 1, "two"}, {JPEG_COM, ""}};
    jpegdata_t data;
    ASSERT_TRUE(data.load(write("m.jpg", encode(8, 8, 3, m)).c_str(), nullptr));
    jpeginfo_t info;
    image2d_t image;
    ASSERT_TRUE(info.decompress(image, data, 0, false, white3ub));
    ASSERT_EQ(4u, info.markers.size());  // JFIF APP0, COM, two APP1; the empty COM is dropped
    image_bytes_t const app1 = info.get_marker(MARKER_NUM_APP1);
    EXPECT_EQ("one", std::string(app1.begin(), app1.end()));
    EXPECT_TRUE(info.get_marker(MARKER_NUM_APP5).empty());
}

TEST_F(JpegFiles, SquareUnitPadsWithZeros)
{
    jpegdata_t data;
    ASSERT_TRUE(data.load(write("s.jpg", encode(37, 23)).c_str(), nullptr));
    jpeginfo_t info;
    image2d_t image;
    ASSERT_TRUE(info.decompress(image, data, 16, false, white3ub));
    ASSERT_EQ(48u, image.window.rowlength);
    ASSERT_EQ(image.rowsize() * 48, image.size());
    EXPECT_EQ(0, image.pixel(37, 22)[0]);  // right of the picture
    EXPECT_EQ(0, image.pixel(1, 47)[2]);   // above it
}

TEST_F(JpegFiles, UnsupportedLayoutsRefused)
{
    image2d_t image;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(image_jpeg1_t().load(image, write("cmyk.jpg", encode(16, 16, 4)).c_str()));
    EXPECT_FALSE(image_jpeg1_t().load(image, write("empty.jpg", bytes_t()).c_str()));
    EXPECT_EQ("", testing::internal::GetCapturedStderr());  // both without a word

    testing::internal::CaptureStderr();
    EXPECT_FALSE(image_jpeg1_t().load(image, write("text.jpg", {'n', 'o', 't', 'a', 'j', 'p', 'g'}).c_str()));
    std::string const err = testing::internal::GetCapturedStderr();
    EXPECT_NE(std::string::npos, err.find("text.jpg: error detected.\n"));
    EXPECT_NE(std::string::npos, err.find("text.jpg: jpeg decompress fail, stop.\n"));
}

TEST_F(JpegFiles, DamagedDataShowsWhatDecoded)
{
    // Cut at 8 KiB, the end of a page: a read past the mapping would fault.
    bytes_t const jpg = encode(600, 300);
    ASSERT_GT(jpg.size(), 8192u);
    int stride = 0;
    bytes_t const ref = reference(jpg, &stride);

    image2d_t image;
    testing::internal::CaptureStderr();
    ASSERT_TRUE(image_jpeg1_t().load(image, write("cut.jpg", jpg, 8192).c_str()));
    EXPECT_NE(std::string::npos, testing::internal::GetCapturedStderr().find("cut.jpg: decompress fail.\n"));
    expect_rows(image, ref, stride, 300 - 16, 300);  // the first MCU row is whole

    // Every cut and a spray of bad bytes: a header cut fails, nothing crashes.
    bytes_t bad = jpg;
    for (std::size_t i = jpg.size() / 2; i < jpg.size(); i += 97) bad[i] = static_cast<unsigned char>(i);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(image_jpeg1_t().load(image, write("bad.jpg", bad).c_str()));
    for (std::size_t n = 1; n < jpg.size(); n += jpg.size() / 40) image_jpeg1_t().load(image, write("c.jpg", jpg, n).c_str());
    EXPECT_FALSE(image_jpeg1_t().load(image, write("c.jpg", jpg, 300).c_str()));
    testing::internal::GetCapturedStderr();
}

TEST_F(JpegFiles, SaveThenLoadKeepsPictureUpright)
{
    image2d_t original;
    ASSERT_TRUE(image_jpeg1_t().load(original, write("o.jpg", encode(64, 48)).c_str()));
    image_jpeg1_t codec;  // the loaded file's markers go into what it saves
    image2d_t other;
    ASSERT_TRUE(codec.load(other, write("m.jpg", encode(8, 8, 3, {{JPEG_COM, "kept"}})).c_str()));
    std::string const out = m_dir + "/saved.jpg";
    ASSERT_TRUE(codec.save(original, out.c_str()));

    image2d_t back;
    ASSERT_TRUE(image_jpeg1_t().load(back, out.c_str()));
    ASSERT_EQ(48u, back.m_height);
    long diff = 0;
    for (std::uint64_t y = 0; y < 48; ++y)
        for (std::uint64_t i = 0; i < 64 * 3; ++i)
            diff += std::abs(back.pixel(0, y)[i] - original.pixel(0, y)[i]);
    EXPECT_LT(diff / (64 * 48 * 3), 2);  // quality 95, and no row flipped

    jpegdata_t saved;
    jpeginfo_t header;
    ASSERT_TRUE(saved.load(out.c_str(), nullptr) && header.analyze_markers(saved));
    image_bytes_t const com = header.get_marker(MARKER_NUM_COM);
    EXPECT_EQ("kept", std::string(com.begin(), com.end()));

    original.desc.format = IMAGE_FORMAT_BGR;
    EXPECT_FALSE(image_jpeg1_t().save(original, out.c_str()));
}

TEST(Orientation, MixTurnsOnlyByTheTurningValues)
{
    // Orientation 0 to 9 from count 0 and from count 3; the mirrored ones don't turn.
    std::uint64_t const from0[] = {0, 0, 0, 2, 0, 0, 1, 0, 3, 0}, from3[] = {3, 3, 3, 1, 3, 3, 0, 3, 2, 3};
    for (std::uint64_t o = 0; o < 10; ++o) {
        EXPECT_EQ(from0[o], mixorientandrightrotatecount(0, o)) << o;
        EXPECT_EQ(from3[o], mixorientandrightrotatecount(3, o)) << o;
    }
    EXPECT_EQ(7u, mixorientandrightrotatecount(7, 1));  // not reduced
}

TEST_F(JpegFiles, OrientationFromFirstApp1Only)
{
    image2d_t image;
    image_jpeg1_t turned;
    ASSERT_TRUE(turned.load(image, write("six.jpg", encode(8, 8, 3, {{JPEG_APP0 + 1, app1_exif(6)}})).c_str()));
    EXPECT_EQ(1u, turned.rightrotatecount());

    markers_t const xmp_first = {{JPEG_APP0 + 1, "http://ns.adobe.com/xap/1.0/"}, {JPEG_APP0 + 1, app1_exif(8)}};
    image_jpeg1_t unturned;
    ASSERT_TRUE(unturned.load(image, write("xmp.jpg", encode(8, 8, 3, xmp_first)).c_str()));
    EXPECT_EQ(0u, unturned.rightrotatecount());
}

// Every JPEG that INDEX.md lists: loads as its header says (8-bit gray or
// colour) or is refused, never crashes, and turns as its Orientation says.
TEST(JpegCorpus, EveryFileAsIndexed)
{
    std::string const root = ZV_SOURCE_DIR "/../shared/testdata";
    std::ifstream index(root + "/INDEX.md");
    if (!index) GTEST_SKIP() << root << " is absent";
    std::string section, line;
    int files = 0;
    testing::internal::CaptureStderr();
    while (std::getline(index, line)) {
        if (line.rfind("## ", 0) == 0) section = line.substr(3);
        // | file | size | format | Make | Orientation | ...
        std::vector<std::string> c;
        std::istringstream cells(line);
        for (std::string cell; std::getline(cells, cell, '|');) {
            std::size_t const b = cell.find_first_not_of(' '), e = cell.find_last_not_of(' ');
            c.push_back(b == std::string::npos ? "" : cell.substr(b, e - b + 1));
        }
        std::size_t const dot = c.size() > 5 ? c[1].rfind('.') : std::string::npos;
        if ((section != "jpeg/" && section != "exif/" && section != "large/") || dot == std::string::npos ||
            !std::strchr("jJ", c[1][dot + 1]))
            continue;
        std::string const& name = c[1], &orient = c[5];
        // "no SOF found" leaves all four 0: no picture at all.
        unsigned width = 0, height = 0, bits = 0, components = 0;
        if (char const* x = std::strpbrk(c[3].c_str(), "0123456789"))
            std::sscanf(x, "%ux%u, %u-bit, %u comp", &width, &height, &bits, &components);
        std::string const path = root + "/" + section + name;
        SCOPED_TRACE(path);
        bool const decodable = bits == 8 && (components == 1 || components == 3);
        image2d_t image;
        image_jpeg1_t codec;
        ASSERT_EQ(decodable, codec.load(image, path.c_str()));
        ++files;
        if (!decodable) continue;
        EXPECT_EQ(width, image.m_width);
        EXPECT_EQ(height, image.m_height);
        // "?": the index's own reader couldn't get through the Exif block.
        if (orient != "?") {
            EXPECT_EQ(mixorientandrightrotatecount(0, std::atoi(orient.c_str())), codec.rightrotatecount());
        }
    }
    testing::internal::GetCapturedStderr();
    EXPECT_GE(files, 159);
}
