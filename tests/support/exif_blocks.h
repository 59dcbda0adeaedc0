// Exif test material: TIFF blocks written field by field in either byte
// order, parses of a copy whose surroundings AddressSanitizer guards, and
// the first APP1 payload of a corpus file.
#ifndef ZANOVIEW_TESTS_SUPPORT_EXIF_BLOCKS_H
#define ZANOVIEW_TESTS_SUPPORT_EXIF_BLOCKS_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(p, n) ((void)(p), (void)(n))
#define ASAN_UNPOISON_MEMORY_REGION(p, n) ((void)(p), (void)(n))
#endif

#include "metadata/exif.h"
#include "tests/support/scratch.h"

namespace zvtest {

using bytes_t = std::vector<unsigned char>;
enum : std::uint16_t { BYTE = 1, ASCII = 2, SHORT = 3, LONG = 4, RATIONAL = 5, UNDEFINED = 7, IFD = 13 };

struct entry_t {
    std::uint16_t tag, type;
    std::uint32_t count, value;  // value: an offset, or the value itself
    bool is_short = false;       // a 16-bit value in the word's first two bytes
};
inline entry_t short_entry(std::uint16_t tag, std::uint16_t v) { return {tag, SHORT, 1, v, true}; }
inline entry_t long_entry(std::uint16_t tag, std::uint32_t v) { return {tag, LONG, 1, v}; }

// A TIFF block or a maker note; writes grow it, positions are absolute.
struct tiff_builder {
    explicit tiff_builder(bool mm, bool header = true) : mm(mm)
    {
        if (header) text(0, mm ? "MM" : "II").u16(2, 42).u32(4, 8);
    }
    tiff_builder& u8(std::size_t at, unsigned v)
    {
        if (bytes.size() <= at) bytes.resize(at + 1, 0);
        bytes[at] = static_cast<unsigned char>(v);
        return *this;
    }
    tiff_builder& u16(std::size_t at, unsigned v)
    {
        return mm ? u8(at, v >> 8).u8(at + 1, v) : u8(at, v).u8(at + 1, v >> 8);
    }
    tiff_builder& u32(std::size_t at, std::uint32_t v)
    {
        return mm ? u16(at, v >> 16).u16(at + 2, v) : u16(at, v).u16(at + 2, v >> 16);
    }
    template <class Bytes>
    tiff_builder& text(std::size_t at, Bytes const& s)  // NULs too, if the string has them
    {
        for (unsigned char c : std::string(std::begin(s), std::end(s) - std::is_array<Bytes>::value))
            u8(at++, c);
        return *this;
    }
    // Count, 12-byte entries, next-IFD offset.
    tiff_builder& ifd(std::size_t at, std::vector<entry_t> const& entries, std::uint32_t next = 0)
    {
        u16(at, static_cast<unsigned>(entries.size()));
        for (entry_t const& e : entries) {
            u16(at + 2, e.tag).u16(at + 4, e.type).u32(at + 6, e.count);
            e.is_short ? u16(at + 10, e.value).u16(at + 12, 0) : u32(at + 10, e.value);
            at += 12;
        }
        return u32(at + 2, next);
    }
    bytes_t app1() const  // "Exif", NUL, pad, the block
    {
        bytes_t out(6 + bytes.size(), 0);
        std::memcpy(out.data(), "Exif", 4);
        std::copy(bytes.begin(), bytes.end(), out.begin() + 6);
        return out;
    }
    bool mm;
    bytes_t bytes;
};

// Parses a copy of `payload` that has poisoned guard bytes on both sides,
// so that under AddressSanitizer any read outside it stops the test.
struct parsed_t {
    explicit parsed_t(bytes_t const& payload)
    {
        std::size_t const n = payload.size();
        if (!block.allocate(n + 2 * margin, nullptr, libutils::PROTECT_READWRITE, 0) || !block.begin())
            return;
        std::copy(payload.begin(), payload.end(), block.begin() + margin);
        ASAN_POISON_MEMORY_REGION(block.begin(), margin);
        ASAN_POISON_MEMORY_REGION(block.begin() + margin + n, margin);
        libgr::exif_view_t view(block);
        view.offset = margin;
        view.count = n;
        marker.set_app1_buffer(view);
        ok = marker.parse();
    }
    ~parsed_t()
    {
        if (block.begin()) ASAN_UNPOISON_MEMORY_REGION(block.begin(), block.size());
    }
    libgr::app1_marker_t::tiff_header_t& tiff() { return marker.m_tiff_header; }
    std::vector<std::uint16_t> const& orientation() { return tiff().m_tag_0th_ifd.Orientation; }

    static constexpr std::size_t margin = 64;
    libgr::exif_view_t block;
    libgr::app1_marker_t marker;
    bool ok = false;
};

// Collects what is written on std::cerr until destruction.
struct cerr_capture : Capture {
    cerr_capture() : Capture(std::cerr) {}
};

// Whether `err`, all a parse wrote, begins with `start`, and is empty when
// `start` is.
inline bool error_begins(std::string const& err, std::string const& start)
{
    return err.compare(0, start.size(), start) == 0 && start.empty() == err.empty();
}

inline std::string testdata_dir() { return ZV_SOURCE_DIR "/../shared/testdata/"; }

// The first APP1 payload before the scan of a JPEG file, or of an Exiv2
// metadata container (0xFF 0x01 "Exiv2", then segments as in a JPEG).
inline bool first_app1(std::string const& path, bytes_t& payload)
{
    std::ifstream in(path, std::ios::binary);
    bytes_t const f{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    std::size_t p = f.size() >= 2 && f[0] == 0xFF && f[1] == 0xD8                          ? 2
        : f.size() >= 7 && f[0] == 0xFF && f[1] == 0x01 && !std::memcmp(&f[2], "Exiv2", 5) ? 7
                                                                                           : f.size();
    while (p + 4 <= f.size() && f[p] == 0xFF) {
        unsigned const marker = f[p + 1];
        if (marker == 0xFF) {  // fill byte
            ++p;
            continue;
        }
        if (marker == 0xD9 || marker == 0xDA) return false;  // EOI, SOS
        std::size_t const length = f[p + 2] << 8 | f[p + 3];
        if (length < 2 || p + 2 + length > f.size()) return false;
        if (marker == 0xE1) {
            payload.assign(f.begin() + p + 4, f.begin() + p + 2 + length);
            return true;
        }
        p += 2 + length;
    }
    return false;
}

}  // namespace zvtest

#endif
