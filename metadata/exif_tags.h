// Format constants of the Exif block and of the maker notes it may carry.
// References: Exif 2.3 (JEITA CP-3451C / CIPA DC-008-2012) for the APP1
// wrapper, the IFD tags and the types; TIFF 6.0 (Adobe, 1992) for the header
// and the IFD layout. The maker notes are the cameras' own: their signatures,
// layouts and the two sub-IFD schemes come from files of those cameras.
#ifndef ZANOVIEW_METADATA_EXIF_TAGS_H
#define ZANOVIEW_METADATA_EXIF_TAGS_H

#include <cstdint>

namespace libgr {
namespace exif_tags {

// APP1 payload: "Exif", NUL, a pad byte, then the TIFF block.
constexpr char app1_signature[] = "Exif";  // with its NUL: 5 bytes
constexpr unsigned long app1_signature_size = 5;
constexpr unsigned long app1_header_size = 6;

// TIFF header: byte-order mark, 42, offset of the 0th IFD.
constexpr unsigned long tiff_header_size = 8;
constexpr unsigned long tiff_magic_at = 2;
constexpr unsigned long tiff_ifd0_at = 4;
constexpr std::uint16_t tiff_magic = 42;

// IFD: a 16-bit entry count, 12-byte entries (tag, type, count, value or
// offset), a 32-bit offset of the next IFD.
constexpr unsigned long ifd_count_size = 2;
constexpr unsigned long ifd_entry_size = 12;
constexpr unsigned long entry_type_at = 2;
constexpr unsigned long entry_count_at = 4;
constexpr unsigned long entry_value_at = 8;
constexpr unsigned long inline_value_max = 4;  // bytes that fit in the entry itself
constexpr std::uint16_t type_last = 13;        // IFD; a higher type code is unknown

// 0th IFD.
constexpr std::uint16_t tag_image_description = 0x010E;
constexpr std::uint16_t tag_make = 0x010F;
constexpr std::uint16_t tag_model = 0x0110;
constexpr std::uint16_t tag_orientation = 0x0112;
constexpr std::uint16_t tag_x_resolution = 0x011A;
constexpr std::uint16_t tag_y_resolution = 0x011B;
constexpr std::uint16_t tag_resolution_unit = 0x0128;
constexpr std::uint16_t tag_software = 0x0131;
constexpr std::uint16_t tag_date_time = 0x0132;
constexpr std::uint16_t tag_ycbcr_positioning = 0x0213;
constexpr std::uint16_t tag_exif_ifd_pointer = 0x8769;
constexpr std::uint16_t tag_gps_info_ifd_pointer = 0x8825;

// 1st IFD.
constexpr std::uint16_t tag_jpeg_interchange_format = 0x0201;
constexpr std::uint16_t tag_jpeg_interchange_format_length = 0x0202;

// Exif IFD.
constexpr std::uint16_t tag_exposure_time = 0x829A;
constexpr std::uint16_t tag_f_number = 0x829D;
constexpr std::uint16_t tag_exposure_program = 0x8822;
constexpr std::uint16_t tag_iso_speed_ratings = 0x8827;
constexpr std::uint16_t tag_standard_output_sensitivity = 0x8831;
constexpr std::uint16_t tag_iso_speed = 0x8833;
constexpr std::uint16_t tag_date_time_original = 0x9003;
constexpr std::uint16_t tag_date_time_digitized = 0x9004;
constexpr std::uint16_t tag_aperture_value = 0x9202;
constexpr std::uint16_t tag_exposure_bias_value = 0x9204;
constexpr std::uint16_t tag_max_aperture_value = 0x9205;
constexpr std::uint16_t tag_metering_mode = 0x9207;
constexpr std::uint16_t tag_flash = 0x9209;
constexpr std::uint16_t tag_focal_length = 0x920A;
constexpr std::uint16_t tag_maker_note = 0x927C;
constexpr std::uint16_t tag_color_space = 0xA001;
constexpr std::uint16_t tag_white_balance = 0xA403;
constexpr std::uint16_t tag_focal_length_in_35mm_film = 0xA405;
constexpr std::uint16_t tag_contrast = 0xA408;
constexpr std::uint16_t tag_saturation = 0xA409;
constexpr std::uint16_t tag_sharpness = 0xA40A;

// A date and time "YYYY:MM:DD HH:MM:SS" with its NUL.
constexpr std::uint32_t date_time_size = 20;

// Maker notes, told by the Make that begins with the first text (in any
// case) and the note that begins with the second (exactly). The IFD starts
// that many bytes into the note.
constexpr char olympus_make[] = "OLYMPUS";
constexpr char olympus_signature[] = "OLYMP";  // "OLYMP\0" and "OLYMPUS\0II" alike
constexpr unsigned long olympus_ifd_at = 8;
constexpr char omds_make[] = "OM Digital Solutions";
constexpr char omds_signature[] = "OM SYSTEM";  // then three NULs and "II" or "MM"
constexpr unsigned long omds_ifd_at = 16;
constexpr char ricoh_make[] = "RICOH";
constexpr char pentax_signature[] = "PENTAX";  // "PENTAX \0" and "MM" or "II"
constexpr unsigned long pentax_ifd_at = 10;

// The OM Digital Solutions note's main IFD holds only pointers, counted
// from the note's start, to these sub-IFDs. The value tags of all the notes
// have no names beyond their numbers: they stand in makernote.cpp's tables.
constexpr std::uint16_t tag_olympus3_equipment = 0x2010;
constexpr std::uint16_t tag_olympus3_camerasettings = 0x2020;
constexpr std::uint16_t tag_olympus3_focusinfo = 0x2050;

}  // namespace exif_tags
}  // namespace libgr

#endif
