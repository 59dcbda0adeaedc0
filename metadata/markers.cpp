#include "metadata/markers.h"

#include <algorithm>
#include <iostream>

#include "utils/diag.h"

#include "metadata/jpeg_markers.h"

namespace libgr {

namespace {

char const kBroken[] = "broken JPEG data.";
char const kInvalid[] = "invalid JPEG data.";

// The refusal shared by the readers whose line carries no value.
bool refuse(char const* line)
{
    libutils::error();
    std::cerr << line << std::endl;
    return false;
}

std::uint16_t be16(unsigned char const* p)
{
    return static_cast<std::uint16_t>(p[0] << 8 | p[1]);
}

unsigned low_nibble(unsigned char byte) { return byte & 0x0Fu; }
unsigned high_nibble(unsigned char byte) { return byte >> 4; }

// A cursor over entropy-coded bytes that reads a stuffed 0xFF 0x00 as the
// one byte 0xFF, and that stops at the end of the payload instead of
// running on into whatever follows it.
class stuffed_cursor {
public:
    stuffed_cursor(unsigned char const* p, unsigned char const* end) : m_p(p), m_end(end) {}

    bool before_end() const { return m_p < m_end; }

    // Takes the byte under the cursor; false, with nothing read, at the end.
    bool read(std::uint8_t& value)
    {
        if (m_p >= m_end) return false;
        value = *m_p++;
        if (value == jpeg::kMarkerPrefix && m_p < m_end && *m_p == jpeg::kStuffedZero) ++m_p;
        return true;
    }

private:
    unsigned char const* m_p;
    unsigned char const* m_end;
};

}  // namespace

// ------------------------------------------------------------------- SOF0

void sof0_marker_t::set_sof0_buffer(marker_payload_t const& payload)
{
    marker_payload_t::operator=(payload);
}

bool sof0_marker_t::parse()
{
    using namespace jpeg;
    unsigned long const size = this->size();
    unsigned char const* p = begin();
    if (size < kSofComponents) return refuse(kBroken);
    m_sample_precision = p[kSofPrecision];
    m_lines = be16(p + kSofLines);
    m_samples = be16(p + kSofSamples);
    m_colors = p[kSofColors];
    if (m_sample_precision != kBaselinePrecision) {
        libutils::error();
        // NOTE: the precision goes out as a raw byte, not as digits: 12
        // writes the byte 0x0C. Readers of this line match it byte for byte.
        std::cerr << "not support JPEG data. sample_precision="
                  << static_cast<char>(m_sample_precision) << std::endl;
        return false;
    }
    if (size < kSofComponents + kSofComponentSize * m_colors) return refuse(kBroken);

    m_components.assign(m_colors, element_t{});
    m_max_horiz = 0;
    m_max_verts = 0;
    for (unsigned i = 0; i < m_colors; ++i) {
        unsigned long const at = kSofComponents + kSofComponentSize * i;
        element_t& e = m_components[i];
        e.component_id = p[at + kSofComponentId];
        e.horiz_factor = static_cast<std::uint8_t>(high_nibble(p[at + kSofFactors]));
        e.verts_factor = static_cast<std::uint8_t>(low_nibble(p[at + kSofFactors]));
        e.quatable_sel = at + kSofQuantSelector < size ? p[at + kSofQuantSelector] : 0;
        m_max_horiz = std::max<std::uint16_t>(m_max_horiz, e.horiz_factor);
        m_max_verts = std::max<std::uint16_t>(m_max_verts, e.verts_factor);
    }
    // Each component must sample a whole fraction of the largest factors;
    // a factor of 0 samples nothing at all.
    for (element_t const& e : m_components) {
        if (e.horiz_factor == 0 || e.verts_factor == 0 || m_max_horiz % e.horiz_factor != 0 ||
            m_max_verts % e.verts_factor != 0)
            return refuse(kInvalid);
    }
    return true;
}

void sof0_marker_t::dump() const
{
    std::cout << "precision: " << unsigned(m_sample_precision) << std::endl;
    std::cout << "lines: " << m_lines << ", samples: " << m_samples << std::endl;
    std::cout << "colors: " << unsigned(m_colors) << std::endl;
    for (element_t const& e : m_components) {
        std::cout << "component_id: " << unsigned(e.component_id) << std::endl;
        std::cout << "horiz_factor: " << unsigned(e.horiz_factor) << std::endl;
        std::cout << "verts_factor: " << unsigned(e.verts_factor) << std::endl;
        std::cout << "quatable_sel: " << unsigned(e.quatable_sel) << std::endl;
    }
    std::cout << "max_horiz: " << m_max_horiz << std::endl;
    std::cout << "max_verts: " << m_max_verts << std::endl;
}

void sof0_marker_t::clear()
{
    *this = sof0_marker_t();
}

// -------------------------------------------------------------------- DQT

void dqt_marker_t::set_dqt_buffer(marker_payload_t const& payload)
{
    marker_payload_t::operator=(payload);
}

bool dqt_marker_t::parse()
{
    using namespace jpeg;
    unsigned long const size = this->size();
    if (size == 0) return refuse(kBroken);
    if (size % kDqtUnitSize != 0) return refuse(kBroken);
    // Checked before it is narrowed: 256 units must not pass as 0.
    unsigned long const n = size / kDqtUnitSize;
    if (n > kDqtDestinations) return refuse(kBroken);
    m_n = static_cast<std::uint8_t>(n);

    unsigned char const* unit = begin();
    for (unsigned long u = 0; u < n; ++u, unit += kDqtUnitSize) {
        if (unit[0] >= kDqt16BitTables) {
            libutils::error();
            std::cerr << "not support JPEG data. DQT pq=" << high_nibble(unit[0]) << std::endl;
            return false;
        }
        unsigned const tq = low_nibble(unit[0]);
        if (tq >= kDqtDestinations) return refuse(kInvalid);
        for (unsigned i = 0; i < kBlockSize; ++i) m_tables[tq][zigzag_to_array[i]] = unit[1 + i];
    }
    return true;
}

void dqt_marker_t::dump() const
{
    std::cout << "dqt n: " << unsigned(m_n) << std::endl;
    for (table_t const& table : m_tables) {
        for (std::uint8_t v : table) std::cout << unsigned(v) << ", ";
        std::cout << std::endl;
    }
}

void dqt_marker_t::clear()
{
    *this = dqt_marker_t();
}

// -------------------------------------------------------------------- DHT

void dht_marker_t::set_dht_buffer(marker_payload_t const& payload)
{
    marker_payload_t::operator=(payload);
}

bool dht_marker_t::parse()
{
    using namespace jpeg;
    stuffed_cursor it(begin(), end());
    while (it.before_end()) {
        std::uint8_t id = 0;
        it.read(id);
        unsigned const tc = high_nibble(id);
        unsigned const th = low_nibble(id);
        if (th >= kDhtBaselineDestinations) return refuse(kBroken);
        if (tc > 1) return refuse(kBroken);
        m_ids.push_back({static_cast<std::uint8_t>(tc), static_cast<std::uint8_t>(th)});

        table_t& table = tc == 0 ? m_dc[th] : m_ac[th];
        unsigned total = 0;
        for (std::uint8_t& count : table.counts) {
            if (!it.read(count)) return refuse(kBroken);
            total += count;
        }
        // The entry count is an 8-bit sum: a table of more values would
        // outgrow it, and is refused rather than cut short.
        if (total > kDhtMaxCodes) return refuse(kBroken);
        table.entries.assign(total, entry_t{});

        // Canonical codes: consecutive within a length, doubled from one
        // length to the next.
        std::uint16_t code = 0;
        auto entry = table.entries.begin();
        for (std::uint8_t count : table.counts) {
            for (unsigned j = 0; j < count; ++j, ++entry, ++code) {
                std::uint8_t value = 0;
                if (!it.read(value)) return refuse(kBroken);
                *entry = {code, static_cast<std::uint8_t>(low_nibble(value)),
                          static_cast<std::uint8_t>(high_nibble(value))};
                // Without data bits a value means something only as the end
                // of block (0x00) or as the run of 16 zeros (0xF0).
                if (value > 15 && entry->run_length < kDhtZeroRun && entry->data_bits == 0) {
                    libutils::error();
                    std::cerr << "huffman table error" << ": run_length="
                              << unsigned(entry->run_length) << ", data_bits="
                              << unsigned(entry->data_bits) << std::endl;
                    return false;
                }
            }
            code = static_cast<std::uint16_t>(code << 1);
        }
    }
    return true;
}

void dht_marker_t::dump() const
{
    std::cout << "dht length: " << m_length << std::endl;
    for (table_id_t const& id : m_ids) {
        std::cout << "tc: " << unsigned(id.tc) << ", th: " << unsigned(id.th) << std::endl;
        table_t const& table = id.tc == 0 ? m_dc[id.th] : m_ac[id.th];
        std::cout << "entries: ";
        for (std::size_t i = 0; i < table.counts.size(); ++i)
            std::cout << (i ? ", " : "") << unsigned(table.counts[i]);
        std::cout << std::endl;
    }
}

void dht_marker_t::clear()
{
    *this = dht_marker_t();
}

// -------------------------------------------------------------------- DRI

void dri_marker_t::set_dri_buffer(marker_payload_t const& payload)
{
    marker_payload_t::operator=(payload);
}

bool dri_marker_t::parse()
{
    if (size() != jpeg::kDriSize) return refuse(kBroken);
    m_intervals = be16(begin());
    return true;
}

void dri_marker_t::dump() const
{
    std::cout << "dri intervals: " << m_intervals << std::endl;
}

void dri_marker_t::clear()
{
    *this = dri_marker_t();
}

// -------------------------------------------------------------------- SOS

void sos_marker_t::set_sos_buffer(marker_payload_t const& payload)
{
    marker_payload_t::operator=(payload);
}

bool sos_marker_t::parse()
{
    using namespace jpeg;
    unsigned long const size = this->size();
    if (size < kSosMinSize) return refuse(kBroken);
    unsigned char const* p = begin();
    m_ns = p[0];
    if (size != kSosMinSize + kSosComponentSize * m_ns) return refuse(kBroken);

    m_components.assign(m_ns, element_t{});
    for (unsigned i = 0; i < m_ns; ++i) {
        unsigned char const* c = p + 1 + kSosComponentSize * i;
        element_t& e = m_components[i];
        e.selector = c[0];
        e.dc_sel = static_cast<std::uint8_t>(high_nibble(c[1]));
        e.ac_sel = static_cast<std::uint8_t>(low_nibble(c[1]));
        if (e.dc_sel > 1 || e.ac_sel > 1) return refuse(kInvalid);
    }
    unsigned char const* tail = p + 1 + kSosComponentSize * m_ns;
    m_ss = tail[0];
    m_se = tail[1];
    m_ah = static_cast<std::uint8_t>(high_nibble(tail[2]));
    m_al = static_cast<std::uint8_t>(low_nibble(tail[2]));
    // Only a sequential scan covers the whole band in one pass.
    if (m_ss != 0 || m_se != kSosLastCoefficient || m_ah != 0 || m_al != 0) {
        libutils::error();
        std::cerr << "constant value illegal. ss=" << unsigned(m_ss) << ", se=" << unsigned(m_se)
                  << ", ah=" << unsigned(m_ah) << ", al=" << unsigned(m_al) << std::endl;
        return false;
    }
    return true;
}

void sos_marker_t::dump() const
{
    std::cout << "ns: " << unsigned(m_ns) << std::endl;
    for (element_t const& e : m_components) {
        std::cout << "scan element selector: " << unsigned(e.selector) << std::endl;
        std::cout << "dc huffman table selector: " << unsigned(e.dc_sel) << std::endl;
        std::cout << "ac huffman table selector: " << unsigned(e.ac_sel) << std::endl;
    }
}

void sos_marker_t::clear()
{
    dht_marker_t* const dht = m_dht;
    *this = sos_marker_t();
    m_dht = dht;
}

}  // namespace libgr
