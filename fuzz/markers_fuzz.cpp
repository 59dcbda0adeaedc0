// The baseline marker segment readers (SOF0, DQT, DHT, DRI, SOS) on
// arbitrary payloads, each parse followed by its dump. The first byte picks
// the reader; the rest is the payload behind the segment's length field.
#include <iostream>
#include <sstream>

#include "metadata/markers.h"

#include "fuzz/fuzz_support.h"

namespace {

// One segment through its reader: the buffer given by the reader's own
// setter, then parse, dump and clear.
template <class M>
void read_segment(libgr::marker_payload_t const& payload, void (M::*set)(libgr::marker_payload_t const&))
{
    M marker;
    (marker.*set)(payload);
    marker.parse();
    marker.dump();
    marker.clear();
}

// A scan with its Huffman tables tied to it, as a caller would.
void read_scan(libgr::marker_payload_t const& payload)
{
    libgr::sos_marker_t scan;
    libgr::dht_marker_t tables;
    scan.set_sos_buffer(payload);
    scan.set_dht_marker(&tables);
    scan.parse();
    scan.dump();
    scan.clear();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size == 0) return 0;
    libgr::marker_payload_t const payload = zvfuzz::make_view(data + 1, size - 1);
    // dump() prints on standard output; the text is formatted, then dropped.
    std::ostringstream dumped;
    std::streambuf* const saved = std::cout.rdbuf(dumped.rdbuf());
    switch (data[0] % 5) {
    case 0: read_segment(payload, &libgr::sof0_marker_t::set_sof0_buffer); break;
    case 1: read_segment(payload, &libgr::dqt_marker_t::set_dqt_buffer); break;
    case 2: read_segment(payload, &libgr::dht_marker_t::set_dht_buffer); break;
    case 3: read_segment(payload, &libgr::dri_marker_t::set_dri_buffer); break;
    default: read_scan(payload); break;
    }
    std::cout.rdbuf(saved);
    return 0;
}
