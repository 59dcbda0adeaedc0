// Readers of a JPEG's baseline marker segments (SOF0, DQT, DHT, DRI, SOS),
// a strict inspector beside the decoder: each reads one segment's payload,
// refuses what a baseline-only reader can't take, and prints what it read.
#ifndef ZANOVIEW_METADATA_MARKERS_H
#define ZANOVIEW_METADATA_MARKERS_H

#include <array>
#include <cstdint>
#include <vector>

#include "utils/alloc.h"
#include "utils/refvector2.h"

namespace libgr {

// A segment's payload: the bytes after its two-byte length field, usually a
// window onto the mapped file.
using marker_payload_t = libutils::ofsvector<unsigned char, libutils::alloc_mmap_unix>;

// Common to the five readers:
// - the set_*_buffer call shares the given bytes with their offset and count;
// - parse() is true for a good segment. A refusal writes one line on the
//   error stream ("broken JPEG data." for a payload of the wrong size) and
//   keeps the fields read so far; nothing is read outside the payload;
// - dump() prints the fields on standard output, one item a line;
// - clear() drops the bytes (offset 0, count to the end) and the fields.
// Multi-byte values are big-endian.

// Baseline frame header.
class sof0_marker_t : public marker_payload_t {
public:
    struct element_t {
        std::uint8_t component_id;
        std::uint8_t horiz_factor;  // sampling factor, 1 to 15
        std::uint8_t verts_factor;
        // NOTE: the byte 4 on in the component's record, which is the next
        // component's factors (0x11 for 1 x 1); 0 for the last component.
        std::uint8_t quatable_sel;
    };

    void set_sof0_buffer(marker_payload_t const& payload);
    // Refuses a precision other than 8, writing it as one raw character
    // ("not support JPEG data. sample_precision=\x0c" for 12), and a
    // component whose factors, 0 included, don't divide the largest
    // ("invalid JPEG data.").
    bool parse();
    void dump() const;
    void clear() override;

    std::uint8_t sample_precision() const { return m_sample_precision; }
    std::uint16_t lines() const { return m_lines; }      // pixels, the height
    std::uint16_t samples() const { return m_samples; }  // pixels, the width
    std::uint8_t colors() const { return m_colors; }
    std::vector<element_t> const& components() const { return m_components; }
    std::uint16_t max_horiz() const { return m_max_horiz; }
    std::uint16_t max_verts() const { return m_max_verts; }

private:
    std::uint8_t m_sample_precision = 0;
    std::uint16_t m_lines = 0;
    std::uint16_t m_samples = 0;
    std::uint8_t m_colors = 0;
    std::vector<element_t> m_components;
    std::uint16_t m_max_horiz = 0;
    std::uint16_t m_max_verts = 0;
};

// Quantisation tables, held by destination in natural (row by row) order.
class dqt_marker_t : public marker_payload_t {
public:
    using table_t = std::array<std::uint8_t, 64>;

    void set_dqt_buffer(marker_payload_t const& payload);
    // Takes one to four 65-byte units. Refuses 16-bit tables ("not support
    // JPEG data. DQT pq=1") and destinations from 4 on ("invalid JPEG data.").
    bool parse();
    // "dqt n: ", then each of the four tables on a line, ", " behind each value.
    void dump() const;
    void clear() override;

    std::uint8_t n() const { return m_n; }
    table_t const& table(unsigned tq) const { return m_tables.at(tq); }

private:
    std::uint8_t m_n = 0;
    std::array<table_t, 4> m_tables{};
};

// Huffman tables with their canonical codes.
class dht_marker_t : public marker_payload_t {
public:
    struct entry_t {
        std::uint16_t code;  // the low `length` bits
        std::uint8_t data_bits;
        std::uint8_t run_length;
    };
    struct table_t {
        std::array<std::uint8_t, 16> counts{};  // codes of length 1 to 16
        std::vector<entry_t> entries;           // by length, then in file order
    };
    struct table_id_t {
        std::uint8_t tc;  // 0 DC, 1 AC
        std::uint8_t th;  // destination
    };

    void set_dht_buffer(marker_payload_t const& payload);
    // Reads tables until the payload ends; a stuffed 0xFF 0x00 counts as one
    // byte. Refuses classes other than 0 and 1 and destinations from 2 on
    // ("broken JPEG data."), and a value with a run below 15 and no data
    // bits other than 0x00 ("huffman table error: run_length=1,
    // data_bits=0" for 0x10).
    bool parse();
    void dump() const;
    void clear() override;

    // NOTE: the payload doesn't hold its own length and nothing sets this;
    // dump prints it, as 0.
    std::uint16_t length() const { return m_length; }
    // The tables in file order; a later table for the same class and
    // destination replaces the earlier one's contents.
    std::vector<table_id_t> const& ids() const { return m_ids; }
    table_t const& dc(unsigned th) const { return m_dc.at(th); }
    table_t const& ac(unsigned th) const { return m_ac.at(th); }

private:
    std::uint16_t m_length = 0;
    std::vector<table_id_t> m_ids;
    std::array<table_t, 2> m_dc;
    std::array<table_t, 2> m_ac;
};

// Restart interval.
class dri_marker_t : public marker_payload_t {
public:
    void set_dri_buffer(marker_payload_t const& payload);
    // A payload of exactly 2 bytes.
    bool parse();
    void dump() const;
    void clear() override;

    std::uint16_t intervals() const { return m_intervals; }  // MCUs

private:
    std::uint16_t m_intervals = 0;
};

// Scan header of a sequential scan.
class sos_marker_t : public marker_payload_t {
public:
    struct element_t {
        std::uint8_t selector;  // the component's id in the frame
        std::uint8_t dc_sel;    // Huffman destinations, 0 or 1
        std::uint8_t ac_sel;
    };

    void set_sos_buffer(marker_payload_t const& payload);
    // Refuses a size other than 4 + 2 ns ("broken JPEG data."), table
    // selectors above 1 ("invalid JPEG data."), and anything but Ss 0, Se
    // 63, Ah 0, Al 0, such as a progressive scan: "constant value illegal.
    // ss=0, se=5, ah=0, al=2".
    bool parse();
    void dump() const;
    void clear() override;

    // Ties the scan to its Huffman tables; not owned, kept by clear().
    void set_dht_marker(dht_marker_t* dht) { m_dht = dht; }
    dht_marker_t* dht_marker() const { return m_dht; }

    std::uint8_t ns() const { return m_ns; }
    std::vector<element_t> const& components() const { return m_components; }
    std::uint8_t ss() const { return m_ss; }
    std::uint8_t se() const { return m_se; }
    std::uint8_t ah() const { return m_ah; }
    std::uint8_t al() const { return m_al; }

private:
    std::uint8_t m_ns = 0;
    std::vector<element_t> m_components;
    std::uint8_t m_ss = 0;
    std::uint8_t m_se = 0;
    std::uint8_t m_ah = 0;
    std::uint8_t m_al = 0;
    dht_marker_t* m_dht = nullptr;
};

}  // namespace libgr

#endif
