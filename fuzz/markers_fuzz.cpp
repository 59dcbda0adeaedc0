// The baseline marker segment readers (SOF0, DQT, DHT, DRI, SOS) on
// arbitrary payloads, each parse followed by its dump. The first byte picks
// the reader; the rest is the payload behind the segment's length field.
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <sstream>

#include "metadata/markers.h"

#include "fuzz/fuzz_support.h"

namespace {

template <class M>
void parse_and_dump(M& marker)
{
    marker.parse();
    marker.dump();
    marker.clear();
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
    case 0: {
        libgr::sof0_marker_t m;
        m.set_sof0_buffer(payload);
        parse_and_dump(m);
        break;
    }
    case 1: {
        libgr::dqt_marker_t m;
        m.set_dqt_buffer(payload);
        parse_and_dump(m);
        break;
    }
    case 2: {
        libgr::dht_marker_t m;
        m.set_dht_buffer(payload);
        parse_and_dump(m);
        break;
    }
    case 3: {
        libgr::dri_marker_t m;
        m.set_dri_buffer(payload);
        parse_and_dump(m);
        break;
    }
    default: {
        libgr::sos_marker_t m;
        libgr::dht_marker_t tables;
        m.set_sos_buffer(payload);
        m.set_dht_marker(&tables);
        parse_and_dump(m);
        break;
    }
    }
    std::cout.rdbuf(saved);
    return 0;
}
