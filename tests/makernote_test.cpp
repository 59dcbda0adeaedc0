// The maker-note readers through the whole Exif parse: a note that reads
// keeps the picture's orientation, a broken one voids it. Notes are written
// here in both byte orders; then the notes of the corpus.
#include <gtest/gtest.h>

#include <functional>

#include "metadata/exif.h"

#include "tests/support/exif_blocks.h"

using namespace zvtest;
using u16s = std::vector<std::uint16_t>;
using note_fn = std::function<void(tiff_builder&)>;

namespace {

constexpr std::uint32_t note_at = 100;  // in the TIFF block, whose last part it is

// A payload with Make, Orientation 6 and an Exif IFD whose MakerNote is the
// note that `write` makes.
bytes_t with_note(bool mm, std::string const& make, note_fn const& write, std::size_t cut = ~std::size_t(0))
{
    tiff_builder note(mm, false);
    write(note);
    note.bytes.resize(std::min(cut, note.bytes.size()));
    tiff_builder b(mm);
    b.ifd(8,
          {{0x010F, ASCII, static_cast<std::uint32_t>(make.size() + 1), 68},
           short_entry(0x0112, 6),
           long_entry(0x8769, 50)});
    b.ifd(50, {{0x927C, UNDEFINED, static_cast<std::uint32_t>(note.bytes.size()), note_at}}).text(68, make);
    for (std::size_t i = 0; i < note.bytes.size(); ++i)
        b.u8(note_at + i, note.bytes[i]);
    return b.app1();
}

struct note_case {
    char const* name;
    note_fn write;
    bool ok;
    std::string err;  // the start of it
};

// Each case in both byte orders; `check` looks at the records of good ones.
// The tests give each Make in another case than cameras write it: the Make
// is compared in any case.
void run_cases(std::string const& make, std::vector<note_case> const& cases,
               std::function<void(parsed_t&)> const& check)
{
    for (bool mm : {false, true})
        for (note_case const& c : cases) {
            cerr_capture err;
            parsed_t p(with_note(mm, make, c.write));
            std::string const what = (mm ? "MM " : "II ") + std::string(c.name) + ": " + err.text();
            EXPECT_EQ(p.ok, c.ok) << what;
            EXPECT_TRUE(error_begins(err.text(), c.err)) << what;
            EXPECT_EQ(p.orientation(), u16s{6}) << what;
            if (p.ok) check(p);
        }
}

// An OM Digital Solutions note: header, main IFD at 16 pointing to the three
// sub-IFDs; `bend` may change it. Offsets count from the note's start.
note_fn omds(note_fn const& bend = [](tiff_builder&) {})
{
    return [bend](tiff_builder& n) {
        n.text(0, "OM SYSTEM\0\0\0II\3\0");
        n.ifd(16,
              {{0x2010, IFD, 1, 72}, {0x2020, IFD, 1, 90}, {0x2050, IFD, 1, 140}, short_entry(0x0104, 1)});
        n.ifd(72, {{0x0203, ASCII, 8, 180}}).ifd(90, {short_entry(0x0500, 3), {0x0804, RATIONAL, 1, 190}});
        n.ifd(140, {{0x0305, RATIONAL, 1, 190}, short_entry(0x031B, 5)});
        n.text(180, "M.12-40\0").u32(190, 7).u32(194, 8);
        bend(n);
    };
}

}  // namespace

TEST(OlympusNote, ReadsOrVoidsTheParse)
{
    // Out-of-line values count from the TIFF block.
    auto note = [](std::vector<entry_t> const& entries) {
        return [entries](tiff_builder& n) { n.text(0, "OLYMP\0\1\0").ifd(8, entries).u32(50, 1).u32(54, 2); };
    };
    std::vector<note_case> const cases = {
        {"signed, from 8",
         note({short_entry(0x100B, 2), {0x1015, SHORT, 2, 0x50007}, {0x100C, RATIONAL, 1, note_at + 50}}),
         true, ""},
        {"bare, from 0", [](tiff_builder& n) { n.ifd(0, {short_entry(0x100B, 2)}); }, true, ""},
        {"entries past the note's end",
         [](tiff_builder& n) { n.text(0, "OLYMP\0\1\0").u16(8, 1).u32(14, 0); }, false,
         "olympus ifd: 1: size 14 over than ifd.size(10)."},
        {"new style: at 8 the count is \"II\"",
         [](tiff_builder& n) { n.text(0, "OLYMPUS\0II\3\0").ifd(12, {short_entry(0x100B, 2)}); }, false, ""},
        {"unknown type", note({short_entry(0x100B, 2), {0x100F, 14, 1, 0}}), false, ""},
    };
    run_cases("olympus optical co.,ltd", cases, [](parsed_t& p) {
        auto const& rec = p.tiff().m_tag_olympus_ifd;
        EXPECT_EQ(rec.tag_100b, u16s{2});
        EXPECT_TRUE(rec.tag_100c.empty() || (rec.tag_100c[0].denominator == 2 && rec.tag_1015.size() == 2));
    });
    run_cases("Canon", {{"another maker's broken note", note({}), true, ""}}, [](parsed_t&) {});
}

TEST(OmdsNote, ReadsSubIfdsOrVoidsTheParse)
{
    std::vector<note_case> const cases = {
        {"whole", omds(), true, ""},
        {"settings value past the note", omds([](tiff_builder& n) { n.u32(90 + 2 + 12 + 8, 197); }), false,
         "olympus3 camerasettings ifd: 2: [1]: 197, 8: app1 size: 198 over."},
        {"focus info count on the last byte: no entries",
         omds([](tiff_builder& n) { n.u32(16 + 2 + 24 + 8, 197); }), true, ""},
        {"unknown type ends equipment",
         omds([](tiff_builder& n) { n.u16(72, 2).u16(72 + 14, 0).u16(72 + 16, 99); }), true, ""},
    };
    run_cases("om digital solutions", cases, [](parsed_t& p) {
        auto const& t = p.tiff();
        EXPECT_EQ(t.m_tag_olympus3_equipment_ifd.tag_0203, std::string("M.12-40\0", 8));
        EXPECT_EQ(t.m_tag_olympus3_camerasettings_ifd.tag_0500, u16s{3});
        EXPECT_TRUE(t.m_tag_olympus3_focusinfo_ifd.tag_031b == u16s{5} ||
                    t.m_tag_olympus3_focusinfo_ifd.tag_031b.empty());
    });
}

TEST(PentaxNote, ReadsOrVoidsTheParse)
{
    // Out-of-line values count from the note's start.
    auto note = [](std::uint16_t count, std::uint32_t value_at) {
        return [=](tiff_builder& n) {
            n.text(0, "PENTAX \0MM")
                .ifd(10, {short_entry(0x000D, 1), {0x0099, RATIONAL, 1, value_at}})
                .u16(10, count);
        };
    };
    std::vector<note_case> const cases = {
        {"whole", note(2, 30), true, ""},
        {"value past the note", note(2, 36), false, "pentax5 ifd: 2: [1]: 36, 8: app1 size: 40 over."},
    };
    run_cases("Ricoh Imaging", cases,
              [](parsed_t& p) { EXPECT_EQ(p.tiff().m_tag_pentax5_ifd.tag_000d, u16s{1}); });
}

TEST(MakerNoteRobustness, EveryNoteCutAndByteReadsWithinTheNote)
{
    // The note ends the payload: a read past its end leaves the guarded copy.
    std::pair<char const*, note_fn> const notes[] = {
        {"OLYMPUS",
         [](tiff_builder& n) {
             n.text(0, "OLYMP\0\1\0").ifd(8, {{0x100C, RATIONAL, 1, note_at + 28}}).u32(32, 1);
         }},
        {"OM Digital Solutions", omds()},
        {"RICOH",
         [](tiff_builder& n) {
             n.text(0, "PENTAX \0MM").ifd(10, {{0x0099, RATIONAL, 1, 28}}).u32(32, 0);
         }},
    };
    cerr_capture quiet;
    for (bool mm : {false, true})
        for (auto const& [make, write] : notes) {
            std::size_t const size = with_note(mm, make, write).size() - 6 - note_at;
            for (std::size_t n = 0; n <= size; ++n)
                parsed_t(with_note(mm, make, write, n));
            for (std::size_t i = 0; i < size; ++i)
                for (unsigned char v : {0x00, 0x01, 0x7F, 0xFF})
                    parsed_t(with_note(mm, make, [&](tiff_builder& n) {
                        write(n);
                        n.u8(i, v);
                    }));
        }
}

TEST(MakerNoteCorpus, OldOlympusAndOmNotesReadNewOlympusNotesVoid)
{
    std::pair<char const*, bool> const files[] = {
        // "OLYMP\0": read from 8.
        {"exif/exv/exiv2/Olympus_u10D.exv", true},
        // "OLYMPUS\0II": the first five letters fit, and at 8 the count is "II".
        {"exif/makernote/exiftool/Olympus2.jpg", false},
        // "OM SYSTEM": read under an OM Digital Solutions Make, not an Olympus one.
        {"exif/exv/exiv2/test_issue_2126.exv", true},
        {"exif/exv/exiv2/poc_2542.exv", false},
        // Ricoh's own notes aren't read.
        {"exif/makernote/exiftool/Ricoh.jpg", true},
    };
    int ran = 0;
    cerr_capture quiet;
    for (auto const& [path, ok] : files) {
        bytes_t payload;
        if (!first_app1(testdata_dir() + path, payload)) continue;
        ++ran;
        parsed_t p(payload);
        EXPECT_EQ(p.ok, ok) << path;
        EXPECT_EQ(p.orientation(), u16s{1}) << path;
    }
    if (ran == 0) GTEST_SKIP() << "no corpus under " << testdata_dir();
}
