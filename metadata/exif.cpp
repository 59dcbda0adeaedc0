#include "metadata/exif.h"

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

using tag_0th = ExifType::tag_0th_ifd;
using tag_1st = ExifType::tag_1st_ifd;
using tag_exif = ExifType::tag_exif_ifd;

field_t<tag_0th> const fields_0th[] = {
    {tag_image_description, any_size, &tag_0th::ImageDescription},
    {tag_make, any_size, &tag_0th::Make},
    {tag_model, any_size, &tag_0th::Model},
    {tag_orientation, 2, &tag_0th::Orientation},
    {tag_x_resolution, 8, &tag_0th::XResolution},
    {tag_y_resolution, 8, &tag_0th::YResolution},
    {tag_resolution_unit, 2, &tag_0th::ResolutionUnit},
    {tag_software, any_size, &tag_0th::Software},
    {tag_date_time, any_size, &tag_0th::DateTime},
    {tag_ycbcr_positioning, 2, &tag_0th::YCbCrPositioning},
    {tag_exif_ifd_pointer, 4, &tag_0th::ExifIFDPointer},
    {tag_gps_info_ifd_pointer, 4, &tag_0th::GPSInfoIFDPointer},
};

field_t<tag_1st> const fields_1st[] = {
    {tag_jpeg_interchange_format, 4, &tag_1st::JPEGInterchangeFormat},
    {tag_jpeg_interchange_format_length, 4, &tag_1st::JPEGInterchangeFormatLength},
};

field_t<tag_exif> const fields_exif[] = {
    {tag_exposure_time, 8, &tag_exif::ExposureTime},
    {tag_f_number, 8, &tag_exif::FNumber},
    {tag_exposure_program, 2, &tag_exif::ExposureProgram},
    {tag_iso_speed_ratings, 2, &tag_exif::ISOSpeedRatings},
    {tag_standard_output_sensitivity, 4, &tag_exif::StandardOutputSensitivity},
    {tag_iso_speed, 4, &tag_exif::ISOSpeed},
    {tag_date_time_original, date_time_size, &tag_exif::DateTimeOriginal},
    {tag_date_time_digitized, date_time_size, &tag_exif::DateTimeDigitized},
    {tag_aperture_value, 8, &tag_exif::ApertureValue},
    {tag_exposure_bias_value, 8, &tag_exif::ExposureBiasValue},
    {tag_max_aperture_value, 8, &tag_exif::MaxApertureValue},
    {tag_metering_mode, 2, &tag_exif::MeteringMode},
    {tag_flash, 2, &tag_exif::Flash},
    {tag_focal_length, 8, &tag_exif::FocalLength},
    {tag_maker_note, any_size, &tag_exif::MakerNote},
    {tag_color_space, 2, &tag_exif::ColorSpace},
    {tag_white_balance, 2, &tag_exif::WhiteBalance},
    {tag_focal_length_in_35mm_film, 2, &tag_exif::FocalLengthIn35mmFilm},
    {tag_contrast, 2, &tag_exif::Contrast},
    {tag_saturation, 2, &tag_exif::Saturation},
    {tag_sharpness, 2, &tag_exif::Sharpness},
};

// The size an IFD of n entries is held to and its view given: the count,
// the entries and two bytes more. The next-IFD word thus ends two bytes
// behind the view, and is read from the block.
unsigned long long ifd_size(unsigned long long n) { return ifd_entry_size * n + 4; }

// Where the next-IFD word of an IFD of n entries begins.
unsigned long long next_ifd_at(unsigned long long n) { return ifd_count_size + ifd_entry_size * n; }

bool begins_with(exif_view_t const& view, char const* text, unsigned long n)
{
    return view.size() >= n && std::memcmp(view.begin(), text, n) == 0;
}

}  // namespace

// ---- Records ----

void ExifType::tag_0th_ifd::clear() { *this = tag_0th_ifd(); }
void ExifType::tag_exif_ifd::clear() { *this = tag_exif_ifd(); }
void ExifType::tag_gps_ifd::clear() { *this = tag_gps_ifd(); }
void ExifType::tag_1st_ifd::clear() { *this = tag_1st_ifd(); }

// ---- APP1 payload ----

void app1_marker_t::set_app1_buffer(exif_view_t& buffer) { exif_view_t::operator=(buffer); }

bool app1_marker_t::is_exif() const
{
    return !empty() && begins_with(*this, app1_signature, app1_signature_size);
}

bool app1_marker_t::parse()
{
    if (!is_exif()) return false;
    unsigned long const n = size();
    exif_view_t tiff =
        ifd_reader::subview(*this, app1_header_size, n > app1_header_size ? n - app1_header_size : 0);
    m_tiff_header.set_tiff_buffer(tiff);
    return m_tiff_header.parse();
}

void app1_marker_t::clear()
{
    exif_view_t::clear();
    m_tiff_header.clear();
}

// ---- TIFF header ----

void app1_marker_t::tiff_header_t::set_tiff_buffer(exif_view_t& buffer)
{
    m_0th_ifd.clear();
    m_exif_ifd.clear();
    m_gps_ifd.clear();
    m_1st_ifd.clear();
    exif_view_t::operator=(buffer);
}

bool app1_marker_t::tiff_header_t::is_intel() const { return begins_with(*this, "II", 2); }

bool app1_marker_t::tiff_header_t::is_motorola() const { return begins_with(*this, "MM", 2); }

void app1_marker_t::tiff_header_t::byteorderclear() { m_byteorder.reset(); }

void app1_marker_t::tiff_header_t::clear()
{
    exif_view_t::clear();
    byteorderclear();
    for (exif_view_t* view :
         {&m_0th_ifd, &m_exif_ifd, &m_gps_ifd, &m_1st_ifd, &m_makernote_ifd, &m_thumbnail,
          &m_olympus3_equipment_ifd, &m_olympus3_camerasettings_ifd, &m_olympus3_focusinfo_ifd})
        view->clear();
    m_tag_0th_ifd.clear();
    m_tag_exif_ifd.clear();
    m_tag_gps_ifd.clear();
    m_tag_1st_ifd.clear();
    m_tag_olympus_ifd.clear();
    m_tag_olympus3_equipment_ifd.clear();
    m_tag_olympus3_camerasettings_ifd.clear();
    m_tag_olympus3_focusinfo_ifd.clear();
    m_tag_pentax5_ifd.clear();
}

bool app1_marker_t::tiff_header_t::parse()
{
    if (size() < tiff_header_size) {
        libutils::error();
        std::cerr << "too few tiff header size." << std::endl;
        return false;
    }
    byteorderclear();
    if (is_intel()) {
        m_byteorder.reset(new libutils::intel_byteorder);
    } else if (is_motorola()) {
        m_byteorder.reset(new libutils::motorola_byteorder);
    } else {
        libutils::error();
        std::cerr << "byteorder mark not recognized." << std::endl;
        return false;
    }
    libutils::byteorder& order = *m_byteorder;

    std::uint16_t magic = 0;
    ifd_reader::read16(*this, tiff_magic_at, order, magic);
    if (magic != tiff_magic) {
        libutils::error();
        std::cerr << "not tiff(0x00, 0x2a)." << std::endl;
        return false;
    }

    std::uint32_t ifd0 = 0;
    ifd_reader::read32(*this, tiff_ifd0_at, order, ifd0);
    // A count that doesn't lie whole in the block reads as 0: no IFD can be
    // there. A 0th IFD within the block is read by its own count.
    std::uint16_t n = 0;
    ifd_reader::read16(*this, ifd0, order, n);
    m_0th_ifd = ifd_reader::subview(*this, ifd0, ifd_size(n));
    if (!parse_0th_ifd(m_0th_ifd)) return false;

    if (size() < ifd_size(n)) return true;
    // The 0th IFD's view ends two bytes into its next-IFD word, so the word
    // is read from the block. A word not all there reads as 0, the end of
    // the chain: nothing can follow a cut-off IFD.
    std::uint32_t ifd1 = 0;
    unsigned long long const next_at = std::min<unsigned long long>(ifd0, size()) + next_ifd_at(n);
    ifd_reader::read32(*this, next_at, order, ifd1);
    if (ifd1 == 0) return true;

    std::uint16_t n1 = 0;
    ifd_reader::read16(*this, ifd1, order, n1);
    m_1st_ifd = ifd_reader::subview(*this, ifd1, ifd_size(n1));
    parse_1st_ifd(m_1st_ifd);
    return true;
}

// ---- IFDs ----

bool app1_marker_t::tiff_header_t::parse_0th_ifd(exif_view_t& ifd)
{
    libutils::byteorder& order = *m_byteorder;
    std::uint16_t n = 0;
    ifd_reader::read16(ifd, 0, order, n);
    for (unsigned long i = 0; i < n; ++i) {
        entry_t e;
        // The view is sized from the count and the block may end sooner.
        // An entry that isn't all there fails as its inline value would:
        // its value word is at or past the end of the view, which the
        // inline test refuses, and no entry of a whole IFD is affected.
        if (!ifd_reader::read_entry(ifd, i, order, e)) {
            libutils::error();
            std::cerr << "value over, offset: " << ifd_reader::entry_at(i) + entry_value_at
                      << " ifd size: " << ifd.size() << std::endl;
            return false;
        }
        if (e.type > type_last) continue;
        std::uint32_t const size = ifd_reader::value_size(e);
        exif_view_t value;
        if (ifd_reader::is_inline(size)) {
            value = ifd_reader::inline_value(ifd, e, size);
        } else {
            if (e.word > this->size()) {
                libutils::error();
                std::cerr << "value over, offset " << e.word << " tiff size: " << this->size() << std::endl;
                return false;
            }
            value = ifd_reader::subview(*this, e.word, size);
        }
        ifd_reader::store(m_tag_0th_ifd, fields_0th, e.tag, size, value, order);
    }

    if (!m_tag_0th_ifd.ExifIFDPointer.empty()) {
        unsigned long long const o = m_tag_0th_ifd.ExifIFDPointer[0];
        if (size() <= o) {
            libutils::error();
            std::cerr << "exif_ifd_offset size exceed: " << o << " > " << size() << std::endl;
            return false;
        }
        // At the block's last byte the count can't be read whole; as 0 it
        // still fails the test below, as any count there would.
        std::uint16_t c = 0;
        ifd_reader::read16(*this, o, order, c);
        if (size() < o + ifd_size(c)) {
            libutils::error();
            std::cerr << "exif ifd size exceed: " << o + ifd_size(c) << " > " << size() << std::endl;
            return false;
        }
        m_exif_ifd = ifd_reader::subview(*this, o, ifd_size(c));
        if (!parse_exif_ifd(m_exif_ifd)) return false;
    }

    if (!m_tag_0th_ifd.GPSInfoIFDPointer.empty()) {
        // A count outside the block reads as 0, no entries: the GPS IFD is
        // only located, and one within the block keeps its own count.
        std::uint32_t const o = m_tag_0th_ifd.GPSInfoIFDPointer[0];
        std::uint16_t c = 0;
        ifd_reader::read16(*this, o, order, c);
        if (size() < ifd_size(c)) {
            libutils::error();
            std::cerr << "gps_ifd size exceed: " << ifd_size(c) << " > " << size() << std::endl;
            return false;
        }
        m_gps_ifd = ifd_reader::subview(*this, o, ifd_size(c));
    }

    if (m_tag_exif_ifd.MakerNote.empty()) return true;
    return parse_makernote();
}

bool app1_marker_t::tiff_header_t::parse_exif_ifd(exif_view_t& ifd)
{
    libutils::byteorder& order = *m_byteorder;
    std::uint16_t n = 0;
    ifd_reader::read16(ifd, 0, order, n);
    for (unsigned long i = 0; i < n; ++i) {
        unsigned long const end = ifd_reader::entry_at(i) + ifd_entry_size;
        entry_t e;
        if (!ifd_reader::read_entry(ifd, i, order, e)) {
            libutils::error();
            std::cerr << "too few ifd area" << end << " > " << ifd.size() << std::endl;
            return false;
        }
        // Unlike the 0th IFD, an unknown type ends this IFD, and what was
        // read so far stands.
        if (e.type > type_last) return true;
        std::uint32_t const size = ifd_reader::value_size(e);
        exif_view_t value;
        if (ifd_reader::is_inline(size)) {
            value = ifd_reader::inline_value(ifd, e, size);
        } else {
            if (static_cast<unsigned long long>(e.word) + size > this->size()) {
                libutils::error();
                std::cerr << "offset+size over: " << e.word << ", " << size << ", tiff size: " << this->size()
                          << std::endl;
                return false;
            }
            value = ifd_reader::subview(*this, e.word, size);
        }
        ifd_reader::store(m_tag_exif_ifd, fields_exif, e.tag, size, value, order);
    }
    return true;
}

bool app1_marker_t::tiff_header_t::parse_gps_ifd(exif_view_t&) { return true; }

bool app1_marker_t::tiff_header_t::parse_1st_ifd(exif_view_t& ifd)
{
    // Only the thumbnail's place is read here, and nothing depends on it:
    // an entry or a value that isn't all there ends the walk or is passed
    // over as absent, rather than refusing a picture for its thumbnail.
    libutils::byteorder& order = *m_byteorder;
    std::uint16_t n = 0;
    ifd_reader::read16(ifd, 0, order, n);
    for (unsigned long i = 0; i < n; ++i) {
        entry_t e;
        if (!ifd_reader::read_entry(ifd, i, order, e) || e.type > type_last) break;
        std::uint32_t const size = ifd_reader::value_size(e);
        exif_view_t const value = ifd_reader::is_inline(size) ? ifd_reader::inline_value(ifd, e, size)
                                                              : ifd_reader::subview(*this, e.word, size);
        ifd_reader::store(m_tag_1st_ifd, fields_1st, e.tag, size, value, order);
    }
    if (!m_tag_1st_ifd.JPEGInterchangeFormat.empty() && !m_tag_1st_ifd.JPEGInterchangeFormatLength.empty())
        m_thumbnail = ifd_reader::subview(*this, m_tag_1st_ifd.JPEGInterchangeFormat[0],
                                          m_tag_1st_ifd.JPEGInterchangeFormatLength[0]);
    return true;
}

}  // namespace libgr
