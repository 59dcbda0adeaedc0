// The Exif reader on TIFF blocks written here in both byte orders, each
// parsed from a guarded copy; then the first APP1 of every corpus file.
#include <gtest/gtest.h>

#include <map>

#include "metadata/exif.h"

#include "tests/support/exif_blocks.h"

using namespace zvtest;
using u16s = std::vector<std::uint16_t>;

namespace {

// A big-endian block whose 0th IFD is at 8; `more` adds to it.
template <class F>
bytes_t block(F more)
{
    tiff_builder b(true);
    more(b);
    return b.app1();
}

}  // namespace

TEST(ExifHeader, RefusesWhatIsNotATiffBlock)
{
    struct {
        std::string payload, err;
    } const cases[] = {
        {"", ""},
        {std::string("http://ns.adobe.com/xap/1.0/\0", 29), ""},
        {std::string("Exif\0", 5), "too few tiff header size.\n"},
        {std::string("Exif\0\0ii*\0\x08\0\0\0", 14), "byteorder mark not recognized.\n"},
        {std::string("Exif\0\0MM*\0\0\0\0\x08", 14), "not tiff(0x00, 0x2a).\n"},
    };
    for (auto const& c : cases) {
        cerr_capture err;
        EXPECT_FALSE(parsed_t(bytes_t(c.payload.begin(), c.payload.end())).ok) << c.payload;
        EXPECT_EQ(err.text(), c.err) << c.payload;
    }
}

TEST(ZerothIfd, OrientationIsReadBySizeNotByType)
{
    struct {
        char const* name;
        std::vector<entry_t> entries;
        u16s expected;
    } const cases[] = {
        {"SHORT", {short_entry(0x0112, 6)}, {6}},
        {"LONG, 4 bytes", {long_entry(0x0112, 6)}, {}},
        {"two BYTEs as one word", {{0x0112, BYTE, 2, 8, true}}, {8}},
        {"the second entry wins", {short_entry(0x0112, 3), short_entry(0x0112, 6)}, {6}},
        {"an unknown type is passed over", {{0x010F, 14, 1, 0}, short_entry(0x0112, 8)}, {8}},
    };
    // The 1st IFD holds Orientation 3 in every case: it is the thumbnail's.
    for (bool mm : {false, true})
        for (auto const& c : cases) {
            tiff_builder b(mm);
            b.ifd(8, c.entries, 100).ifd(100, {short_entry(0x0112, 3)});
            cerr_capture err;
            parsed_t p(b.app1());
            EXPECT_TRUE(p.ok && err.text().empty()) << mm << c.name << err.text();
            EXPECT_EQ(p.orientation(), c.expected) << mm << c.name;
        }
}

TEST(ZerothIfd, TextKeepsTheFileSizeAndStopsAtNul)
{
    parsed_t p(block([](tiff_builder& b) {
        b.ifd(8, {{0x010F, ASCII, 12, 100}, {0x0110, ASCII, 4, 0}}).text(100, "Canon\0junk..");
        b.text(30, "E-1!");  // inline and without a NUL: its last byte gives way
    }));
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p.tiff().m_tag_0th_ifd.Make, std::string("Canon\0\0\0\0\0\0\0", 12));
    EXPECT_EQ(p.tiff().m_tag_0th_ifd.Model, std::string("E-1\0", 4));
}

// Every block has Orientation 6 first: a later failure doesn't unread it,
// but the parse is false and the picture isn't turned.
TEST(IfdBounds, RefuseWithTheirLineOrPassOverWhatIsNotThere)
{
    entry_t const o6 = short_entry(0x0112, 6);
    auto exif = [&](std::vector<entry_t> const& entries) {
        return block([&](tiff_builder& b) { b.ifd(8, {o6, long_entry(0x8769, 40)}).ifd(40, entries); });
    };
    struct {
        char const* name;
        bytes_t payload;
        bool ok;
        std::string err;  // the start of it
    } const cases[] = {
        {"text offset past the block", block([&](tiff_builder& b) {
             b.ifd(8, {o6, {0x010F, ASCII, 10, 5000}});
         }),
         false, "value over, offset 5000 tiff size: 38"},
        {"Exif IFD at the block's end", block([&](tiff_builder& b) {
             b.ifd(8, {o6, long_entry(0x8769, 38)});
         }),
         false, "exif_ifd_offset size exceed: 38 > 38"},
        {"GPS IFD longer than the block", block([&](tiff_builder& b) {
             b.ifd(8, {o6, long_entry(0x8825, 38)}).u16(38, 9);
         }),
         false, "gps_ifd size exceed: 112 > 40"},
        {"GPS count outside the block: no entries", block([&](tiff_builder& b) {
             b.ifd(8, {o6, long_entry(0x8825, 0xFFFFFFF0)});
         }),
         true, ""},
        {"an unknown type ends the Exif IFD", exif({{0x829A, 99, 1, 9999}, {0x829A, RATIONAL, 1, 9999}}),
         true, ""},
    };
    for (auto const& c : cases) {
        cerr_capture err;
        parsed_t p(c.payload);
        EXPECT_EQ(p.ok, c.ok) << c.name;
        EXPECT_TRUE(error_begins(err.text(), c.err)) << c.name << err.text();
        EXPECT_EQ(p.orientation(), u16s{6}) << c.name;
        EXPECT_TRUE(p.tiff().m_tag_exif_ifd.DateTimeOriginal.empty()) << c.name;
    }
    // A 0th IFD that isn't in the block has no entries.
    parsed_t far(block([](tiff_builder& b) { b.u32(4, 4000).u32(8, 0); }));
    EXPECT_TRUE(far.ok && far.orientation().empty());
}

TEST(ExifRobustness, EveryCutAndEveryByteReadsWithinThePayload)
{
    // All parts at once: 0th, 1st, Exif and GPS IFDs, texts, a rational, a
    // thumbnail and an Olympus note. Under AddressSanitizer any read
    // outside the payload's copy stops the test.
    for (bool mm : {false, true}) {
        tiff_builder b(mm);
        b.ifd(8,
              {{0x010F, ASCII, 8, 200},
               short_entry(0x0112, 6),
               long_entry(0x8769, 100),
               long_entry(0x8825, 180)},
              64);
        b.ifd(64, {long_entry(0x0201, 260), long_entry(0x0202, 4)}).ifd(180, {short_entry(0x0000, 2)});
        b.ifd(100, {{0x829D, RATIONAL, 1, 210}, {0x9003, ASCII, 20, 218}, {0x927C, UNDEFINED, 38, 264}});
        b.text(200, "OLYMPUS\0").u32(210, 28).u32(214, 10).text(218, "2024:01:02 03:04:05\0");
        b.text(260, "\xFF\xD8\xFF\xD9")
            .text(264, "OLYMP\0\1\0")
            .ifd(272, {short_entry(0x100B, 1), {0x100C, RATIONAL, 1, 210}});
        bytes_t const good = b.app1();
        {
            parsed_t p(good);
            ASSERT_TRUE(p.ok && p.orientation() == u16s{6} && p.tiff().m_thumbnail.size() == 4) << mm;
            EXPECT_EQ(p.tiff().m_tag_exif_ifd.DateTimeOriginal, std::string("2024:01:02 03:04:05\0", 20));
            EXPECT_EQ(p.tiff().m_tag_exif_ifd.FNumber[0].denominator, 10u);
            EXPECT_EQ(p.tiff().m_tag_olympus_ifd.tag_100c[0].numerator, 28u);
        }
        cerr_capture quiet;
        for (std::size_t n = 0; n < good.size(); ++n)
            parsed_t(bytes_t(good.begin(), good.begin() + n));
        for (std::size_t i = 6; i < good.size(); ++i)
            for (unsigned char v : {0x00, 0x01, 0x7F, 0xFF}) {
                bytes_t bent = good;
                bent[i] = v;
                parsed_t p(bent);
            }
    }
}

TEST(ExifCorpus, EveryFileParsesAndOrientationMatchesTheIndex)
{
    // The index's Orientation column, by path, for the exif/ and large/ rows.
    std::map<std::string, std::string> index;
    std::ifstream in(testdata_dir() + "INDEX.md");
    for (std::string line, section; std::getline(in, line);) {
        if (line.rfind("## ", 0) == 0) section = line.substr(3);
        std::vector<std::string> cells;
        std::stringstream row(line);
        for (std::string cell; std::getline(row, cell, '|');)
            cells.push_back(cell.size() > 2 ? cell.substr(1, cell.size() - 2) : "");
        if ((section == "exif/" || section == "large/") && cells.size() > 5 && cells[1] != "file" &&
            cells[1].find_first_not_of("-:") != std::string::npos)
            index[section + cells[1]] = cells[5];
    }
    if (index.empty()) GTEST_SKIP() << "no corpus under " << testdata_dir();
    int checked = 0;
    cerr_capture quiet;
    for (auto const& [path, orientation] : index) {
        bytes_t payload;
        if (!first_app1(testdata_dir() + path, payload)) continue;
        parsed_t p(payload);
        if (orientation.empty() || orientation.find_first_not_of("0123456789") != std::string::npos) continue;
        ++checked;
        // Its Orientation is an SLONG: 4 bytes, which the size rule passes over.
        if (path == "exif/makernote/exif-py/Sony_alpha_a58.JPG")
            EXPECT_TRUE(p.orientation().empty());
        else
            EXPECT_EQ(p.orientation(), u16s{static_cast<std::uint16_t>(std::stoi(orientation))}) << path;
    }
    EXPECT_GT(checked, 50);
}
