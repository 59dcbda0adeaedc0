#include "metadata/makernote.h"

#include <cstring>
#include <iostream>

#include "utils/diag.h"

#include "metadata/exif_tags.h"
#include "metadata/ifd_reader.h"

namespace libgr {

namespace {

using namespace exif_tags;
using ifd_reader::any_size;
using ifd_reader::entry_t;
using ifd_reader::field_t;

using tag_olympus = ExifType::tag_olympus_ifd;
using tag_equipment = ExifType::tag_olympus3_equipment_ifd;
using tag_camerasettings = ExifType::tag_olympus3_camerasettings_ifd;
using tag_focusinfo = ExifType::tag_olympus3_focusinfo_ifd;
using tag_pentax5 = ExifType::tag_pentax5_ifd;

field_t<tag_olympus> const fields_olympus[] = {
    {0x100B, 2, &tag_olympus::tag_100b}, {0x100C, 8, &tag_olympus::tag_100c},
    {0x100F, 2, &tag_olympus::tag_100f}, {0x1015, 4, &tag_olympus::tag_1015},
    {0x1029, 2, &tag_olympus::tag_1029},
};

field_t<tag_equipment> const fields_equipment[] = {
    {0x0203, any_size, &tag_equipment::tag_0203},
};

field_t<tag_camerasettings> const fields_camerasettings[] = {
    {0x0500, 2, &tag_camerasettings::tag_0500},
    {0x0501, 2, &tag_camerasettings::tag_0501},
    {0x0804, 8, &tag_camerasettings::tag_0804},
};

field_t<tag_focusinfo> const fields_focusinfo[] = {
    {0x0209, 2, &tag_focusinfo::tag_0209}, {0x0300, 2, &tag_focusinfo::tag_0300},
    {0x0301, 2, &tag_focusinfo::tag_0301}, {0x0303, 2, &tag_focusinfo::tag_0303},
    {0x0304, 2, &tag_focusinfo::tag_0304}, {0x0305, 8, &tag_focusinfo::tag_0305},
    {0x0308, 2, &tag_focusinfo::tag_0308}, {0x031B, 2, &tag_focusinfo::tag_031b},
};

field_t<tag_pentax5> const fields_pentax5[] = {
    {0x000D, 2, &tag_pentax5::tag_000d},
    {0x0010, 2, &tag_pentax5::tag_0010},
    {0x0019, 2, &tag_pentax5::tag_0019},
    {0x001A, 2, &tag_pentax5::tag_001a},
};

// Bytes a note's IFD of n entries must have: count and entries. The notes
// are held to that, not to the next-IFD word that follows.
unsigned long long note_ifd_size(unsigned long long n) { return ifd_count_size + ifd_entry_size * n; }

bool begins_with_nocase(std::string const& text, char const* prefix)
{
    unsigned long const n = std::strlen(prefix);
    if (text.size() < n) return false;
    for (unsigned long i = 0; i < n; ++i) {
        // ASCII only: the locale the viewer runs in mustn't change a Make.
        auto lower = [](unsigned char c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c; };
        if (lower(text[i]) != lower(prefix[i])) return false;
    }
    return true;
}

bool begins_with(exif_view_t const& view, char const* prefix)
{
    unsigned long const n = std::strlen(prefix);
    return view.size() >= n && std::memcmp(view.begin(), prefix, n) == 0;
}

// How the walk treats the two faults an entry can have; the readers differ
// in this only.
struct walk_rules_t {
    char const* name;        // leads each line, "olympus ifd: "
    bool pass_far_values;    // a value past the base's end is passed over, silently
    bool unknown_type_ends;  // an unknown type ends the IFD with success
};

// The walk all six note readers share. `base` is what an out-of-line
// value's offset counts from; `take(entry, size, value)` gets each entry
// whose value lies within reach.
template <class Take>
bool walk(exif_view_t const& ifd, exif_view_t const& base, libutils::byteorder& order,
          walk_rules_t const& rules, Take take)
{
    // A view too short for its count reads as 0 entries, and fails the size
    // test below all the same.
    std::uint16_t n = 0;
    ifd_reader::read16(ifd, 0, order, n);
    if (ifd.size() < note_ifd_size(n)) {
        libutils::error();
        std::cerr << rules.name << n << ": size " << note_ifd_size(n) << " over than ifd.size(" << ifd.size()
                  << ")." << std::endl;
        return false;
    }
    for (unsigned long i = 0; i < n; ++i) {
        entry_t e;
        ifd_reader::read_entry(ifd, i, order, e);
        if (e.type > type_last) {
            if (rules.unknown_type_ends) return true;
            libutils::error();
            return false;
        }
        std::uint32_t const size = ifd_reader::value_size(e);
        exif_view_t value;
        if (ifd_reader::is_inline(size)) {
            value = ifd_reader::inline_value(ifd, e, size);
        } else if (static_cast<unsigned long long>(e.word) + size <= base.size()) {
            value = ifd_reader::subview(base, e.word, size);
        } else if (rules.pass_far_values) {
            continue;
        } else {
            libutils::error();
            std::cerr << rules.name << n << ": [" << i << "]: " << e.word << ", " << size
                      << ": app1 size: " << base.size() << " over." << std::endl;
            return false;
        }
        take(e, size, value);
    }
    return true;
}

// The view of the sub-IFD at the offset `value` holds. One whose count
// isn't whole in the note is an IFD of no entries, and stays empty: there
// is nothing to read and no fault.
exif_view_t sub_ifd(exif_view_t const& note, exif_view_t const& value, libutils::byteorder& order)
{
    std::uint32_t at = 0;
    std::uint16_t count = 0;
    if (!ifd_reader::read32(value, 0, order, at) || !ifd_reader::read16(note, at, order, count)) return {};
    return ifd_reader::subview(note, at, note_ifd_size(count));
}

}  // namespace

makernote_layout_t choose_makernote(std::string const& make, exif_view_t const& note)
{
    if (begins_with_nocase(make, olympus_make)) {
        bool const has_signature = begins_with(note, olympus_signature);
        return {MAKERNOTE_OLYMPUS, has_signature ? olympus_ifd_at : 0, has_signature};
    }
    if (begins_with_nocase(make, omds_make) && begins_with(note, omds_signature))
        return {MAKERNOTE_OLYMPUS3, omds_ifd_at, true};
    if (begins_with_nocase(make, ricoh_make) && begins_with(note, pentax_signature))
        return {MAKERNOTE_PENTAX5, pentax_ifd_at, true};
    return {MAKERNOTE_NONE, 0, false};
}

bool app1_marker_t::tiff_header_t::parse_makernote()
{
    exif_view_t& note = m_tag_exif_ifd.MakerNote;
    libutils::byteorder& order = *m_byteorder;
    makernote_layout_t const layout = choose_makernote(m_tag_0th_ifd.Make, note);
    if (layout.reader == MAKERNOTE_NONE) return true;

    // An OM Digital Solutions or Pentax note must hold more than its header.
    if (layout.reader != MAKERNOTE_OLYMPUS && note.size() <= layout.ifd_at) {
        libutils::error();
        return false;
    }
    // A count that isn't whole in the note reads as 0. A size test below,
    // or the reader's own, then refuses the note, as it would for whatever
    // count stood there: the note ends within two bytes of the IFD's start.
    std::uint16_t n = 0;
    ifd_reader::read16(note, layout.ifd_at, order, n);
    unsigned long long const ifd_bytes = note_ifd_size(n);

    switch (layout.reader) {
    case MAKERNOTE_OLYMPUS: {
        // A signed note is refused when its IFD is empty or longer than the
        // whole note; an unsigned one isn't tested here.
        if (layout.has_signature && (ifd_bytes <= olympus_ifd_at || note.size() < ifd_bytes)) {
            libutils::error();
            return false;
        }
        // The reader gets its own copy of the IFD. Only the bytes the note
        // has are copied: an IFD that runs past the note's end then fails
        // the reader's own size test, and a whole one is copied whole.
        unsigned long const at = std::min(layout.ifd_at, note.size());
        unsigned long const bytes =
            static_cast<unsigned long>(std::min<unsigned long long>(ifd_bytes, note.size() - at));
        m_makernote_ifd.clear();
        if (bytes > 0 && m_makernote_ifd.allocate(bytes, nullptr, libutils::PROTECT_READWRITE, 0))
            std::memcpy(m_makernote_ifd.begin(), note.begin() + at, bytes);
        return parse_olympus_ifd(m_makernote_ifd);
    }
    case MAKERNOTE_OLYMPUS3:
    case MAKERNOTE_PENTAX5:
        if (note.size() < layout.ifd_at + ifd_bytes) {
            libutils::error();
            return false;
        }
        m_makernote_ifd = ifd_reader::subview(note, layout.ifd_at, note.size() - layout.ifd_at);
        return layout.reader == MAKERNOTE_OLYMPUS3 ? parse_olympus3_ifd(m_makernote_ifd, note)
                                                   : parse_pentax5_ifd(m_makernote_ifd, note);
    case MAKERNOTE_NONE:
        break;
    }
    return true;
}

// ---- Readers ----

bool app1_marker_t::tiff_header_t::parse_olympus_ifd(exif_view_t& ifd)
{
    libutils::byteorder& order = *m_byteorder;
    // This note's offsets count from the TIFF block, as plain Exif's do.
    return walk(ifd, *this, order, {"olympus ifd: ", true, false},
                [&](entry_t const& e, std::uint32_t size, exif_view_t const& value) {
                    ifd_reader::store(m_tag_olympus_ifd, fields_olympus, e.tag, size, value, order);
                });
}

bool app1_marker_t::tiff_header_t::parse_olympus3_ifd(exif_view_t& ifd, exif_view_t& note)
{
    libutils::byteorder& order = *m_byteorder;
    m_olympus3_equipment_ifd.clear();
    m_olympus3_camerasettings_ifd.clear();
    m_olympus3_focusinfo_ifd.clear();
    auto take = [&](entry_t const& e, std::uint32_t size, exif_view_t const& value) {
        if (size != 4) return;
        if (e.tag == tag_olympus3_equipment) m_olympus3_equipment_ifd = sub_ifd(note, value, order);
        if (e.tag == tag_olympus3_camerasettings) m_olympus3_camerasettings_ifd = sub_ifd(note, value, order);
        if (e.tag == tag_olympus3_focusinfo) m_olympus3_focusinfo_ifd = sub_ifd(note, value, order);
    };
    bool const ok = walk(ifd, note, order, {"olympus3 ifd: ", false, false}, take);
    if (!ok) return false;
    if (!m_olympus3_equipment_ifd.empty() && !parse_olympus3_equipment_ifd(m_olympus3_equipment_ifd, note))
        return false;
    if (!m_olympus3_camerasettings_ifd.empty() &&
        !parse_olympus3_camerasettings_ifd(m_olympus3_camerasettings_ifd, note))
        return false;
    if (!m_olympus3_focusinfo_ifd.empty() && !parse_olympus3_focusinfo_ifd(m_olympus3_focusinfo_ifd, note))
        return false;
    return true;
}

bool app1_marker_t::tiff_header_t::parse_olympus3_equipment_ifd(exif_view_t& ifd, exif_view_t& note)
{
    libutils::byteorder& order = *m_byteorder;
    return walk(ifd, note, order, {"olympus3 equipment ifd: ", false, true},
                [&](entry_t const& e, std::uint32_t size, exif_view_t const& value) {
                    ifd_reader::store(m_tag_olympus3_equipment_ifd, fields_equipment, e.tag, size, value,
                                      order);
                });
}

bool app1_marker_t::tiff_header_t::parse_olympus3_camerasettings_ifd(exif_view_t& ifd, exif_view_t& note)
{
    libutils::byteorder& order = *m_byteorder;
    return walk(ifd, note, order, {"olympus3 camerasettings ifd: ", false, false},
                [&](entry_t const& e, std::uint32_t size, exif_view_t const& value) {
                    ifd_reader::store(m_tag_olympus3_camerasettings_ifd, fields_camerasettings, e.tag, size,
                                      value, order);
                });
}

bool app1_marker_t::tiff_header_t::parse_olympus3_focusinfo_ifd(exif_view_t& ifd, exif_view_t& note)
{
    libutils::byteorder& order = *m_byteorder;
    return walk(ifd, note, order, {"olympus3 focusinfo ifd: ", false, false},
                [&](entry_t const& e, std::uint32_t size, exif_view_t const& value) {
                    ifd_reader::store(m_tag_olympus3_focusinfo_ifd, fields_focusinfo, e.tag, size, value,
                                      order);
                });
}

bool app1_marker_t::tiff_header_t::parse_pentax5_ifd(exif_view_t& ifd, exif_view_t& note)
{
    libutils::byteorder& order = *m_byteorder;
    return walk(ifd, note, order, {"pentax5 ifd: ", false, false},
                [&](entry_t const& e, std::uint32_t size, exif_view_t const& value) {
                    ifd_reader::store(m_tag_pentax5_ifd, fields_pentax5, e.tag, size, value, order);
                });
}

// ---- Records ----

void ExifType::tag_olympus_ifd::clear() { *this = tag_olympus_ifd(); }
void ExifType::tag_olympus3_equipment_ifd::clear() { *this = tag_olympus3_equipment_ifd(); }
void ExifType::tag_olympus3_camerasettings_ifd::clear() { *this = tag_olympus3_camerasettings_ifd(); }
void ExifType::tag_olympus3_focusinfo_ifd::clear() { *this = tag_olympus3_focusinfo_ifd(); }
void ExifType::tag_pentax5_ifd::clear() { *this = tag_pentax5_ifd(); }

}  // namespace libgr
