#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "metadata/markers.h"

using namespace libgr;

namespace {

using bytes_t = std::vector<int>;
using parse_t = bool (*)(marker_payload_t const&);

constexpr unsigned long kPad = 8;
constexpr unsigned char kPoison = 0xEE;

// The bytes as a window in the middle of a larger block whose other bytes
// are kPoison, so that a read past either end of the payload shows.
marker_payload_t segment(bytes_t const& bytes)
{
    marker_payload_t block;
    EXPECT_TRUE(block.resize(bytes.size() + 2 * kPad, 0));
    std::fill(block.begin(), block.end(), kPoison);
    std::copy(bytes.begin(), bytes.end(), block.begin() + kPad);
    block.offset = kPad;
    block.count = bytes.size();
    return block;
}

// A unit with the given first byte, its values 0 to 63 in zigzag order.
bytes_t dqt_unit(int first)
{
    bytes_t unit{first};
    for (int i = 0; i < 64; ++i) unit.push_back(i);
    return unit;
}

// `n` units for destinations 0, 1, 2, 3, 0, ...
bytes_t dqt_units(int n)
{
    bytes_t all;
    for (int i = 0; i < n; ++i) {
        bytes_t const unit = dqt_unit(i % 4);
        all.insert(all.end(), unit.begin(), unit.end());
    }
    return all;
}

// Frame 227 x 149, three components sampled 2 x 2, 1 x 1, 1 x 1.
bytes_t const kSof0 = {8, 0, 149, 0, 227, 3, 1, 0x22, 0, 2, 0x11, 1, 3, 0x11, 1};
// A DC table (0) with codes of 2 and 3 bits, then an AC table (1) whose
// values hold a stuffed 0xFF 0x00, the end of block and the run of 16 zeros.
bytes_t const kDht = {0x00, 0, 3, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x00, 0x01, 0x02, 0x0B,
                      0x11, 1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x00, 0xFF, 0x00, 0xF0};
bytes_t const kSos = {3, 1, 0x00, 2, 0x11, 3, 0x11, 0, 63, 0};

template <class M, void (M::*set)(marker_payload_t const&)>
bool parse_as(marker_payload_t const& payload)
{
    M m;
    (m.*set)(payload);
    return m.parse();
}

parse_t const sof0 = parse_as<sof0_marker_t, &sof0_marker_t::set_sof0_buffer>;
parse_t const dqt = parse_as<dqt_marker_t, &dqt_marker_t::set_dqt_buffer>;
parse_t const dht = parse_as<dht_marker_t, &dht_marker_t::set_dht_buffer>;
parse_t const dri = parse_as<dri_marker_t, &dri_marker_t::set_dri_buffer>;
parse_t const sos = parse_as<sos_marker_t, &sos_marker_t::set_sos_buffer>;

std::string const kBroken = "broken JPEG data.\n";
std::string const kInvalid = "invalid JPEG data.\n";

}  // namespace

TEST(MarkerRefusals, EachReaderRefusesWithItsOneLine)
{
    bytes_t dht_values_cut(kDht.begin(), kDht.begin() + 19);
    bytes_t dht_256 = {0x00};
    for (int i = 0; i < 16; ++i) dht_256.push_back(16);
    dht_256.resize(17 + 256, 0);
    struct case_t {
        char const* what;
        parse_t parse;
        bytes_t bytes;
        std::string line;  // empty: accepted
    } const cases[] = {
        {"baseline frame", sof0, kSof0, ""},
        {"12-bit samples", sof0, {12, 0, 1, 0, 1, 1, 1, 0x11, 0},
         "not support JPEG data. sample_precision=\x0c\n"},
        {"2 not a multiple of 3", sof0, {8, 0, 1, 0, 1, 2, 1, 0x21, 0, 2, 0x31, 0}, kInvalid},
        {"horizontal factor 0", sof0, {8, 0, 1, 0, 1, 2, 1, 0x11, 0, 2, 0x01, 0}, kInvalid},
        {"header cut", sof0, {8, 0, 1, 0, 1}, kBroken},
        {"four tables", dqt, dqt_units(4), ""},
        {"no table", dqt, {}, kBroken},
        {"five tables", dqt, dqt_units(5), kBroken},
        {"16-bit table", dqt, dqt_unit(0x10), "not support JPEG data. DQT pq=1\n"},
        {"destination 4", dqt, dqt_unit(0x04), kInvalid},
        {"two tables", dht, kDht, ""},
        {"destination 2", dht, {0x02}, kBroken},
        {"run 1 without bits", dht, {0x10, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x10},
         "huffman table error: run_length=1, data_bits=0\n"},
        {"values cut", dht, dht_values_cut, kBroken},
        {"256 values", dht, dht_256, kBroken},
        {"interval", dri, {0, 4}, ""},
        {"4 bytes", dri, {0, 4, 0, 0}, kBroken},
        {"three components", sos, kSos, ""},
        {"3 bytes", sos, {0, 0, 63}, kBroken},
        {"DC table 2", sos, {1, 1, 0x20, 0, 63, 0}, kInvalid},
        {"Se 62", sos, {1, 1, 0x00, 0, 62, 0}, "constant value illegal. ss=0, se=62, ah=0, al=0\n"},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        testing::internal::CaptureStderr();
        EXPECT_EQ(c.parse(segment(c.bytes)), c.line.empty());
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.line);
    }
}

TEST(MarkerFields, CanonicalCodesTheNextComponentsFactorsAndTablesInRowOrder)
{
    dht_marker_t huff;
    huff.set_dht_buffer(segment(kDht));
    ASSERT_TRUE(huff.parse());
    auto codes = [](dht_marker_t::table_t const& t) {
        bytes_t all;
        for (auto const& e : t.entries) all.insert(all.end(), {e.code, e.run_length, e.data_bits});
        return all;
    };
    EXPECT_EQ(codes(huff.dc(0)), (bytes_t{0, 0, 0, 1, 0, 1, 2, 0, 2, 6, 0, 11}));
    EXPECT_EQ(codes(huff.ac(1)), (bytes_t{0, 0, 0, 2, 15, 15, 3, 15, 0})) << "stuffed bytes read as one";

    // A selector is read 4 bytes into its component: the next component's
    // factors, then 0 for the byte behind the payload (kPoison if it were read).
    sof0_marker_t sof;
    sof.set_sof0_buffer(segment({8, 0, 2, 1, 0, 2, 1, 0x21, 0, 2, 0x11, 0}));
    ASSERT_TRUE(sof.parse());
    EXPECT_EQ(sof.components()[0].quatable_sel, 0x11);
    EXPECT_EQ(sof.components()[1].quatable_sel, 0);

    // Each value of the unit is its zigzag position.
    dqt_marker_t quant;
    quant.set_dqt_buffer(segment(dqt_unit(0)));
    ASSERT_TRUE(quant.parse());
    EXPECT_EQ(bytes_t(quant.table(0).begin(), quant.table(0).end()),
              (bytes_t{0,  1,  5,  6,  14, 15, 27, 28, 2,  4,  7,  13, 16, 26, 29, 42,
                       3,  8,  12, 17, 25, 30, 41, 43, 9,  11, 18, 24, 31, 40, 44, 53,
                       10, 19, 23, 32, 39, 45, 52, 54, 20, 22, 33, 38, 46, 51, 55, 60,
                       21, 34, 37, 47, 50, 56, 59, 61, 35, 36, 48, 49, 57, 58, 62, 63}));
}

TEST(MarkerDump, PrintsOneItemALine)
{
    sof0_marker_t sof;
    sof.set_sof0_buffer(segment({8, 0, 2, 1, 0, 2, 1, 0x21, 0, 2, 0x11, 0}));
    dri_marker_t restart;
    restart.set_dri_buffer(segment({1, 2}));
    ASSERT_TRUE(sof.parse() && restart.parse());

    testing::internal::CaptureStdout();
    sof.dump();
    restart.dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "precision: 8\nlines: 2, samples: 256\ncolors: 2\n"
              "component_id: 1\nhoriz_factor: 2\nverts_factor: 1\nquatable_sel: 17\n"
              "component_id: 2\nhoriz_factor: 1\nverts_factor: 1\nquatable_sel: 0\n"
              "max_horiz: 2\nmax_verts: 1\n"
              "dri intervals: 258\n");
}

TEST(MarkerClear, DropsBytesAndFieldsButKeepsTheScansTables)
{
    dht_marker_t tables;
    sos_marker_t scan;
    scan.set_sos_buffer(segment(kSos));
    scan.set_dht_marker(&tables);
    ASSERT_TRUE(scan.parse());
    scan.clear();
    EXPECT_TRUE(scan.components().empty());
    EXPECT_EQ(scan.dht_marker(), &tables);
}

// ------------------------------------------------------------ shared corpus

namespace {

std::string const kCorpus = ZV_SOURCE_DIR "/../shared/testdata/jpeg";

struct scanned_t {
    bool baseline = false;  // has SOF0
    bool parsed = true;     // every segment handed over parsed
    sof0_marker_t frame;
};

// Walks SOI, then the length-prefixed segments up to SOS, handing each
// SOF0, DQT, DHT, DRI and SOS payload to its reader as a window onto the
// file. Bytes that aren't a marker are skipped, as decoders do; a length
// past the end stops the walk.
scanned_t scan_file(std::string const& path)
{
    std::map<unsigned, parse_t> const readers = {{0xDB, dqt}, {0xC4, dht}, {0xDD, dri}, {0xDA, sos}};
    scanned_t s;
    marker_payload_t file;
    EXPECT_TRUE(file.load(0, path.c_str(), libutils::PROTECT_READ, 0, false, nullptr));
    unsigned char const* p = file.begin();
    unsigned long const size = file.size();
    if (size < 2 || p[0] != 0xFF || p[1] != 0xD8) return s;
    for (unsigned long pos = 2; pos + 4 <= size;) {
        unsigned const code = p[pos + 1];
        if (p[pos] != 0xFF || code < 0xC0 || code == 0xFF || (code >= 0xD0 && code <= 0xD9)) {
            ++pos;  // junk, fill, or a marker without a segment
            continue;
        }
        unsigned long const length = p[pos + 2] << 8 | p[pos + 3];
        if (length < 2 || pos + 2 + length > size) break;
        marker_payload_t payload = file;
        payload.offset = pos + 4;
        payload.count = length - 2;
        if (code == 0xC0) {
            s.baseline = true;
            s.frame.set_sof0_buffer(payload);
            s.parsed = s.frame.parse() && s.parsed;
        } else if (readers.count(code)) {
            s.parsed = readers.at(code)(payload) && s.parsed;
        }
        if (code == 0xDA) break;
        pos += 2 + length;
    }
    return s;
}

}  // namespace

TEST(MarkerCorpus, BaselineFilesParseAndNoFileIsReadPast)
{
    if (!std::filesystem::is_directory(kCorpus)) GTEST_SKIP() << kCorpus << " is absent";
    int baseline = 0;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(kCorpus)) {
        if (entry.path().extension() != ".jpg") continue;
        SCOPED_TRACE(entry.path());
        testing::internal::CaptureStderr();
        scanned_t const s = scan_file(entry.path().string());
        std::string const err = testing::internal::GetCapturedStderr();
        baseline += s.baseline;
        EXPECT_TRUE(!s.baseline || s.parsed) << err;
    }
    EXPECT_GT(baseline, 30);

    // 4:1:0 sampling; 16-bit quantisation tables (not baseline).
    EXPECT_EQ(scan_file(kCorpus + "/zune-image/fox410.jpg").frame.max_horiz(), 4);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(scan_file(kCorpus + "/pillow/hopper_16bit_qtables.jpg").parsed);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "broken JPEG data.\nbroken JPEG data.\n");
}
