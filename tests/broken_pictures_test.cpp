// The real viewer paging through a directory where a few good pictures
// stand between dozens of broken ones: cut short, bit-flipped, with sizes
// and offsets that lie, of every kind it reads. It must skip every broken
// one, show every good one, and neither crash nor hang nor report a fault.
#include <gtest/gtest.h>

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "codecs/jpeg.h"
#include "codecs/png.h"
#include "codecs/tga.h"
#include "tests/support/picture_images.h"
#include "tests/support/viewer_process.h"

namespace {

using zvtest::bytes_t;

bytes_t cut(bytes_t b, std::size_t keep)
{
    b.resize(std::min(b.size(), keep));
    return b;
}

// `with` written over the bytes from `at` on, as far as the file goes.
bytes_t patch(bytes_t b, std::size_t at, bytes_t const& with)
{
    for (std::size_t i = 0; i < with.size() && at + i < b.size(); ++i) b[at + i] = with[i];
    return b;
}

bytes_t le32(std::uint32_t v)
{
    return {(unsigned char)v, (unsigned char)(v >> 8), (unsigned char)(v >> 16), (unsigned char)(v >> 24)};
}

bytes_t be32(std::uint32_t v)
{
    return {(unsigned char)(v >> 24), (unsigned char)(v >> 16), (unsigned char)(v >> 8), (unsigned char)v};
}

// The CRC of a PNG chunk, so that a lying IHDR is read for its sizes and not
// refused for its checksum.
std::uint32_t png_crc(bytes_t const& b, std::size_t from, std::size_t to)
{
    return std::uint32_t(crc32(0, b.data() + from, uInt(to - from)));
}

// Where a JPEG's frame header's height lies, behind its SOF0 marker.
std::size_t sof0_height(bytes_t const& b)
{
    for (std::size_t i = 2; i + 1 < b.size(); ++i)
        if (b[i] == 0xFF && b[i + 1] == 0xC0) return i + 5;
    ADD_FAILURE() << "no SOF0 marker";
    return 0;
}

class BrokenPictures : public ::testing::Test {
protected:
    // Entries are named so that they sort in the order they are made.
    std::string name(std::string const& what, std::string const& ext)
    {
        char number[8];
        std::snprintf(number, sizeof number, "%02d-", int(entries.size()));
        entries.push_back(std::string(number) + what + ext);
        return dir.file(entries.back());
    }
    void good(std::string const& what, std::string const& ext, bytes_t const& bytes)
    {
        ASSERT_TRUE(zvtest::write_bytes(name(what, ext), bytes));
        goods.push_back(int(entries.size()));
    }
    void broken(std::string const& what, std::string const& ext, bytes_t const& bytes)
    {
        ASSERT_TRUE(zvtest::write_bytes(name(what, ext), bytes));
    }

    // Sends `key` and waits for the title of good picture `g`.
    ::testing::AssertionResult shows(std::string const& key, std::size_t g)
    {
        if (!key.empty()) viewer->key(key);
        int const index = goods.at(g);
        std::string const wanted = dir.file(entries[index - 1]) + " (" + std::to_string(index) + "/" +
                                   std::to_string(entries.size()) + ")";
        std::string title;
        if (zvtest::eventually([&] { return (title = viewer->title()).rfind(wanted, 0) == 0; }, 20))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "after key '" << key << "' the title is \"" << title
                                             << "\", expected it to begin \"" << wanted << "\"";
    }

    zvtest::TempDir home;
    zvtest::TempDir dir;
    std::vector<std::string> entries;
    std::vector<int> goods;  // list indices, from 1, of the good pictures
    std::unique_ptr<zvtest::ViewerProcess> viewer;
};

}  // namespace

TEST_F(BrokenPictures, PagingSkipsEveryBrokenOneAndShowsEveryGoodOne)
{
    std::string const scratch = home.file("scratch");

    // BMP: the rows must all be in the file, since they stay in its mapping.
    ASSERT_TRUE(zvtest::write_bmp24(scratch, 21, 13, zvtest::distinct_colour));
    bytes_t const bmp = zvtest::read_bytes(scratch);
    good("good", ".bmp", bmp);
    broken("bmp-empty", ".bmp", {});
    broken("bmp-headers-cut", ".bmp", cut(bmp, 30));
    broken("bmp-pixels-cut", ".bmp", cut(bmp, bmp.size() / 2));
    broken("bmp-offbits-past-end", ".bmp", patch(bmp, 10, le32(0x7FFFFFF0)));
    broken("bmp-65535x65535", ".bmp", patch(patch(bmp, 18, le32(65535)), 22, le32(65535)));
    broken("bmp-topdown", ".bmp", patch(bmp, 22, le32(std::uint32_t(-13))));
    broken("bmp-rle8", ".bmp", patch(bmp, 30, le32(1)));
    broken("bmp-bits-16", ".bmp", patch(bmp, 28, {16, 0}));

    // JPEG: a file cut in its scan still shows what it holds, so these are
    // broken before the first row.
    ASSERT_TRUE(libgr::image_jpeg1_t().save(zvtest::picture_image(33, 17), scratch.c_str()));
    bytes_t const jpeg = zvtest::read_bytes(scratch);
    good("good", ".jpg", jpeg);
    broken("jpeg-empty", ".jpg", {});
    broken("jpeg-soi-only", ".jpg", cut(jpeg, 2));
    broken("jpeg-cut-in-header", ".jpg", cut(jpeg, 100));
    broken("jpeg-65535x65535", ".jpg", patch(jpeg, sof0_height(jpeg), {0xFF, 0xFF, 0xFF, 0xFF}));
    broken("jpeg-height-0", ".jpg", patch(jpeg, sof0_height(jpeg), {0, 0}));
    broken("jpeg-sof-flipped-to-lossless", ".jpg", patch(jpeg, sof0_height(jpeg) - 4, {0xC3}));
    broken("jpeg-not-a-jpeg", ".jpeg", {'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0});

    // PNG: libpng checks every chunk's CRC; the lying sizes carry a right one.
    ASSERT_TRUE(libgr::image_png_t().save(zvtest::picture_image(19, 11), scratch.c_str()));
    bytes_t const png = zvtest::read_bytes(scratch);
    bytes_t huge = patch(png, 16, be32(65535));
    huge = patch(huge, 20, be32(65535));
    huge = patch(huge, 29, be32(png_crc(huge, 12, 29)));
    good("good", ".png", png);
    broken("png-empty", ".png", {});
    broken("png-signature-only", ".png", cut(png, 8));
    broken("png-cut-in-idat", ".png", cut(png, png.size() - 20));
    broken("png-idat-bit-flipped", ".png", patch(png, png.size() - 24, {(unsigned char)(png[png.size() - 24] ^ 0x40)}));
    broken("png-65535x65535", ".png", huge);
    // A text chunk claiming a gigabyte, the file ending right after it.
    bytes_t text = cut(png, 33);
    for (unsigned char c : bytes_t{0x40, 0, 0, 0, 't', 'E', 'X', 't', 'a', 0, 'b'}) text.push_back(c);
    broken("png-text-chunk-claims-1gb", ".png", text);

    // TGA: the rows are padded to 4 bytes, as our writer writes them.
    ASSERT_TRUE(libgr::image_tga_t().save(zvtest::picture_image(10, 7), scratch.c_str()));
    bytes_t const tga = zvtest::read_bytes(scratch);
    good("good", ".tga", tga);
    broken("tga-empty", ".tga", {});
    broken("tga-header-cut", ".tga", cut(tga, 12));
    broken("tga-pixels-cut", ".tga", cut(tga, tga.size() - 5));
    broken("tga-65535x65535", ".tga", patch(tga, 12, {0xFF, 0xFF, 0xFF, 0xFF}));
    broken("tga-rle", ".tga", patch(tga, 2, {10}));
    broken("tga-topdown", ".tga", patch(tga, 17, {0x20}));
    broken("tga-depth-15", ".tga", patch(tga, 16, {15}));
    broken("tga-colormap-past-end", ".tga", patch(patch(tga, 1, {1}), 5, {0xFF, 0xFF, 4}));

    ASSERT_TRUE(zvtest::write_bmp24(scratch, 8, 30, zvtest::distinct_colour));
    good("good-last", ".bmp", zvtest::read_bytes(scratch));
    std::remove(scratch.c_str());

    viewer.reset(new zvtest::ViewerProcess({dir.path()}, {"HOME=" + home.path()}));
    ASSERT_TRUE(viewer->wait_window());
    EXPECT_TRUE(shows("", 0));
    for (std::size_t g = 1; g < goods.size(); ++g) EXPECT_TRUE(shows("space", g)) << "good picture " << g;
    EXPECT_TRUE(shows("Home", 0));
    EXPECT_TRUE(shows("End", goods.size() - 1));
    EXPECT_TRUE(shows("BackSpace", goods.size() - 2));
    EXPECT_TRUE(shows("Home", 0));

    viewer->key("q");
    EXPECT_EQ(viewer->wait_exit(), 0);
    std::string const err = viewer->err();
    EXPECT_EQ(err.find("AddressSanitizer"), std::string::npos) << err;
    EXPECT_EQ(err.find("runtime error"), std::string::npos) << err;
}
