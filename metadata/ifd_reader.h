// Reading of IFD words, entries and values that never goes outside a view,
// shared by the Exif IFD readers and the maker-note readers.
#ifndef ZANOVIEW_METADATA_IFD_READER_H
#define ZANOVIEW_METADATA_IFD_READER_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <variant>
#include <vector>

#include "metadata/exif.h"
#include "utils/byteorder.h"

#include "metadata/exif_tags.h"

namespace libgr {
namespace ifd_reader {

// `n` bytes from `at` lie whole within `view`. Positions come from 32-bit
// file words plus small sums, so the 64-bit sum can't wrap.
inline bool within(exif_view_t const& view, unsigned long long at, unsigned long long n)
{
    return at + n <= view.size();
}

// Reads a word in the file's byte order; false, with `out` untouched, when
// the word doesn't lie whole within the view.
inline bool read16(exif_view_t const& view, unsigned long long at, libutils::byteorder& order,
                   std::uint16_t& out)
{
    if (!within(view, at, 2)) return false;
    std::uint16_t raw;
    std::memcpy(&raw, view.begin() + at, 2);
    out = order.tohs(raw);
    return true;
}

inline bool read32(exif_view_t const& view, unsigned long long at, libutils::byteorder& order,
                   std::uint32_t& out)
{
    if (!within(view, at, 4)) return false;
    std::uint32_t raw;
    std::memcpy(&raw, view.begin() + at, 4);
    out = order.tohl(raw);
    return true;
}

// The bytes of `source` from `offset` on, `count` long. The start is
// clipped to the source's end and so is the length: a view shorter than
// asked for means the bytes aren't all there, and never reaches into what
// lies behind the source in the shared block.
inline exif_view_t subview(exif_view_t const& source, unsigned long long offset, unsigned long long count)
{
    exif_view_t view(source);
    unsigned long const avail = source.size();
    unsigned long const start = static_cast<unsigned long>(std::min<unsigned long long>(offset, avail));
    view.offset = source.offset + start;
    view.count = static_cast<unsigned long>(std::min<unsigned long long>(count, avail - start));
    return view;
}

struct entry_t {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint32_t count = 0;  // values of the type
    std::uint32_t word = 0;   // the value itself, or its offset when it doesn't fit
    unsigned long at = 0;     // bytes from the IFD's start to the entry
};

inline unsigned long entry_at(unsigned long i)
{
    return exif_tags::ifd_count_size + exif_tags::ifd_entry_size * i;
}

// Entry i, or false when its 12 bytes aren't all in the view.
inline bool read_entry(exif_view_t const& ifd, unsigned long i, libutils::byteorder& order, entry_t& e)
{
    e.at = entry_at(i);
    return within(ifd, e.at, exif_tags::ifd_entry_size) && read16(ifd, e.at, order, e.tag) &&
        read16(ifd, e.at + exif_tags::entry_type_at, order, e.type) &&
        read32(ifd, e.at + exif_tags::entry_count_at, order, e.count) &&
        read32(ifd, e.at + exif_tags::entry_value_at, order, e.word);
}

// count × the type's size, in 32 bits. A size that wraps does no harm: it
// is tested and read like any other size.
// The type must be known (at most type_last).
inline std::uint32_t value_size(entry_t const& e) { return e.count * ExifType::exiftypesize[e.type]; }

inline bool is_inline(std::uint32_t size) { return size <= exif_tags::inline_value_max; }

// The entry's value when it fits in the entry.
inline exif_view_t inline_value(exif_view_t const& ifd, entry_t const& e, std::uint32_t size)
{
    return subview(ifd, e.at + exif_tags::entry_value_at, size);
}

// ---- Storing values into records ----

template <class R>
using member_t = std::variant<std::vector<std::uint16_t> R::*, std::vector<std::uint32_t> R::*,
                              std::vector<ExifType::rational_t> R::*, std::vector<ExifType::srational_t> R::*,
                              std::string R::*, exif_view_t R::*>;

// One row of a reader's table: the tag, the size its value must have
// (any_size for texts and views) and where the value goes.
constexpr std::uint32_t any_size = 0xFFFFFFFF;

template <class R>
struct field_t {
    std::uint16_t tag;
    std::uint32_t size;  // bytes
    member_t<R> member;
};

inline std::uint16_t get16(unsigned char const* p, libutils::byteorder& order)
{
    std::uint16_t raw;
    std::memcpy(&raw, p, 2);
    return order.tohs(raw);
}

inline std::uint32_t get32(unsigned char const* p, libutils::byteorder& order)
{
    std::uint32_t raw;
    std::memcpy(&raw, p, 4);
    return order.tohl(raw);
}

// A value of n bytes becomes n / (element size) elements, which replace an
// earlier entry's: Orientation (2 bytes) is one u16, Olympus' 0x1015
// (4 bytes) two.
inline void decode(std::vector<std::uint16_t>& out, exif_view_t const& v, libutils::byteorder& order)
{
    out.clear();
    for (unsigned long i = 0; i + 2 <= v.size(); i += 2)
        out.push_back(get16(v.begin() + i, order));
}

inline void decode(std::vector<std::uint32_t>& out, exif_view_t const& v, libutils::byteorder& order)
{
    out.clear();
    for (unsigned long i = 0; i + 4 <= v.size(); i += 4)
        out.push_back(get32(v.begin() + i, order));
}

inline void decode(std::vector<ExifType::rational_t>& out, exif_view_t const& v, libutils::byteorder& order)
{
    out.clear();
    for (unsigned long i = 0; i + 8 <= v.size(); i += 8)
        out.push_back({get32(v.begin() + i, order), get32(v.begin() + i + 4, order)});
}

inline void decode(std::vector<ExifType::srational_t>& out, exif_view_t const& v, libutils::byteorder& order)
{
    out.clear();
    for (unsigned long i = 0; i + 8 <= v.size(); i += 8)
        out.push_back({static_cast<std::int32_t>(get32(v.begin() + i, order)),
                       static_cast<std::int32_t>(get32(v.begin() + i + 4, order))});
}

// The string keeps the value's size; the text is what comes before the
// first NUL, at most size - 1 bytes, and NULs fill the rest.
inline void decode(std::string& out, exif_view_t const& v, libutils::byteorder&)
{
    unsigned long const size = v.size();
    out.assign(size, '\0');
    if (size == 0) return;
    unsigned char const* p = v.begin();
    for (unsigned long i = 0; i + 1 < size && p[i] != 0; ++i)
        out[i] = static_cast<char>(p[i]);
}

inline void decode(exif_view_t& out, exif_view_t const& v, libutils::byteorder&) { out = v; }

// Stores the value of `tag` if the table has it and the size is the
// table's; any other tag or size is no error and is passed over. A value
// whose bytes aren't all in `value` (its offset was tested but not its end)
// is passed over too, as absent: that happens only where a file's value
// runs past the TIFF block, never for a file whose values are there.
template <class R, unsigned long N>
void store(R& record, field_t<R> const (&table)[N], std::uint16_t tag, std::uint32_t size,
           exif_view_t const& value, libutils::byteorder& order)
{
    for (field_t<R> const& f : table) {
        if (f.tag != tag) continue;
        if ((f.size != any_size && f.size != size) || value.size() < size) return;
        std::visit([&](auto member) { decode(record.*member, value, order); }, f.member);
        return;
    }
}

}  // namespace ifd_reader
}  // namespace libgr

#endif
