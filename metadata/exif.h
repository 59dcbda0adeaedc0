// The Exif block of a JPEG's APP1 segment: the TIFF header, its IFDs and the
// plain records their tags are read into, of which the viewer uses only the
// 0th IFD's Orientation.
#ifndef ZANOVIEW_METADATA_EXIF_H
#define ZANOVIEW_METADATA_EXIF_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "utils/alloc.h"
#include "utils/byteorder.h"
#include "utils/refvector2.h"

namespace libgr {

using exif_view_t = libutils::ofsvector<unsigned char, libutils::alloc_mmap_unix>;

// The record types the IFD readers fill. In a record a value that may be
// absent is a vector of 0 or 1 elements: empty means the tag wasn't in the
// file. A text keeps the size the file gave it, so it may run on past its
// NUL. clear() empties every member, ready for the next file.
class ExifType {
public:
    struct rational_t {
        std::uint32_t numerator;
        std::uint32_t denominator;
    };
    struct srational_t {
        std::int32_t numerator;
        std::int32_t denominator;
    };

    // Bytes of one value of each TIFF type code 0..13. SBYTE, FLOAT and
    // DOUBLE count as 0 on purpose: such a value then matches no tag's
    // size and is skipped.
    static constexpr std::uint32_t exiftypesize[14] = {0, 1, 1, 2, 4, 8, 0, 1, 2, 4, 8, 0, 0, 4};

    struct tag_0th_ifd {
        std::string ImageDescription;
        std::string Make;
        std::string Model;
        std::vector<std::uint16_t> Orientation;  // 1..8; 3, 6 and 8 are turns
        std::vector<rational_t> XResolution;
        std::vector<rational_t> YResolution;
        std::vector<std::uint16_t> ResolutionUnit;
        std::string Software;
        std::string DateTime;
        std::vector<std::uint16_t> YCbCrPositioning;
        std::vector<std::uint32_t> ExifIFDPointer;     // bytes from the TIFF header
        std::vector<std::uint32_t> GPSInfoIFDPointer;  // bytes from the TIFF header
        void clear();
    };

    struct tag_exif_ifd {
        std::vector<rational_t> ExposureTime;  // seconds
        std::vector<rational_t> FNumber;
        std::vector<std::uint16_t> ExposureProgram;
        std::vector<std::uint16_t> ISOSpeedRatings;
        std::vector<std::uint32_t> StandardOutputSensitivity;
        std::vector<std::uint32_t> ISOSpeed;
        std::string DateTimeOriginal;                // "YYYY:MM:DD HH:MM:SS"
        std::string DateTimeDigitized;               // "YYYY:MM:DD HH:MM:SS"
        std::vector<rational_t> ApertureValue;       // APEX
        std::vector<srational_t> ExposureBiasValue;  // APEX
        std::vector<rational_t> MaxApertureValue;    // APEX
        std::vector<std::uint16_t> MeteringMode;
        std::vector<std::uint16_t> Flash;
        std::vector<rational_t> FocalLength;  // millimetres
        exif_view_t MakerNote;                // the note's bytes in the TIFF block
        std::vector<std::uint16_t> ColorSpace;
        std::vector<std::uint16_t> WhiteBalance;
        std::vector<std::uint16_t> FocalLengthIn35mmFilm;  // millimetres
        std::vector<std::uint16_t> Contrast;
        std::vector<std::uint16_t> Saturation;
        std::vector<std::uint16_t> Sharpness;
        void clear();
    };

    // Nothing fills it: the GPS IFD is located but not read.
    struct tag_gps_ifd {
        std::vector<std::uint8_t> GPSVersionID;  // four bytes when present
        std::string GPSLatitudeRef;              // "N" or "S"
        std::vector<rational_t> GPSLatitude;     // degrees, minutes, seconds
        std::string GPSLongitudeRef;             // "E" or "W"
        std::vector<rational_t> GPSLongitude;    // degrees, minutes, seconds
        std::vector<std::uint8_t> GPSAltitudeRef;
        std::vector<rational_t> GPSAltitude;  // metres
        void clear();
    };

    // The thumbnail's IFD has the 0th IFD's tags and two more; it is read
    // for those two only, the thumbnail's place.
    struct tag_1st_ifd : tag_0th_ifd {
        std::vector<std::uint32_t> JPEGInterchangeFormat;        // bytes from the TIFF header
        std::vector<std::uint32_t> JPEGInterchangeFormatLength;  // bytes
        void clear();
    };

    // The maker notes' fields have no names but their tag numbers.
    struct tag_olympus_ifd {
        std::vector<std::uint16_t> tag_100b;
        std::vector<rational_t> tag_100c;
        std::vector<std::uint16_t> tag_100f;
        std::vector<std::uint16_t> tag_1015;  // two values
        std::vector<std::uint16_t> tag_1029;
        void clear();
    };
    struct tag_olympus3_equipment_ifd {
        std::string tag_0203;
        void clear();
    };
    struct tag_olympus3_camerasettings_ifd {
        std::vector<std::uint16_t> tag_0500;
        std::vector<std::uint16_t> tag_0501;
        std::vector<rational_t> tag_0804;
        void clear();
    };
    struct tag_olympus3_focusinfo_ifd {
        std::vector<std::uint16_t> tag_0209;
        std::vector<std::uint16_t> tag_0300;
        std::vector<std::uint16_t> tag_0301;
        std::vector<std::uint16_t> tag_0303;
        std::vector<std::uint16_t> tag_0304;
        std::vector<rational_t> tag_0305;
        std::vector<std::uint16_t> tag_0308;
        std::vector<std::uint16_t> tag_031b;
        void clear();
    };
    struct tag_pentax5_ifd {
        std::vector<std::uint16_t> tag_000d;
        std::vector<std::uint16_t> tag_0010;
        std::vector<std::uint16_t> tag_0019;
        std::vector<std::uint16_t> tag_001a;
        void clear();
    };
};

// The payload of an APP1 segment that holds Exif: "Exif", a NUL, a pad byte
// and then the TIFF block. Give it the payload with set_app1_buffer, call
// parse, then look at m_tiff_header.m_tag_0th_ifd.Orientation, but only
// when parse was true: a failed parse may have read a value all the same.
class app1_marker_t : public exif_view_t {
public:
    // The TIFF block: "II" or "MM", 42, the 0th IFD's offset, and the IFDs,
    // whose offsets all count from the block's first byte.
    class tiff_header_t : public exif_view_t {
    public:
        tiff_header_t() = default;
        tiff_header_t(tiff_header_t const&) = delete;
        tiff_header_t& operator=(tiff_header_t const&) = delete;

        // Takes the block and drops the IFD views of an earlier one, all but
        // the maker note's, which the next parse replaces when it finds one.
        void set_tiff_buffer(exif_view_t& buffer);
        // Reads the header, the 0th IFD and what it points to, and the 1st
        // IFD. False when a bound test fails there, in the Exif IFD or in a
        // maker note, which writes one line on the error stream; a maker
        // note shorter than its header or its own IFD fails without one.
        bool parse();
        bool is_intel() const;
        bool is_motorola() const;
        void byteorderclear();
        void clear() override;

        // Each reader takes the view of one IFD: a 16-bit entry count, 12-byte
        // entries, a 32-bit offset of the next IFD.
        bool parse_0th_ifd(exif_view_t& ifd);
        bool parse_1st_ifd(exif_view_t& ifd);
        bool parse_exif_ifd(exif_view_t& ifd);
        bool parse_gps_ifd(exif_view_t& ifd);

        // The maker-note readers. `ifd` starts at the note's IFD; `note` is the
        // whole note, from which the OM Digital Solutions and Ricoh/Pentax
        // notes count their offsets (Olympus counts from the TIFF block).
        bool parse_olympus_ifd(exif_view_t& ifd);
        bool parse_olympus3_ifd(exif_view_t& ifd, exif_view_t& note);
        bool parse_olympus3_equipment_ifd(exif_view_t& ifd, exif_view_t& note);
        bool parse_olympus3_camerasettings_ifd(exif_view_t& ifd, exif_view_t& note);
        bool parse_olympus3_focusinfo_ifd(exif_view_t& ifd, exif_view_t& note);
        bool parse_pentax5_ifd(exif_view_t& ifd, exif_view_t& note);

        std::unique_ptr<libutils::byteorder> m_byteorder;  // made by parse
        exif_view_t m_0th_ifd;
        exif_view_t m_exif_ifd;
        exif_view_t m_gps_ifd;
        exif_view_t m_1st_ifd;
        exif_view_t m_makernote_ifd;
        exif_view_t m_thumbnail;  // the embedded JPEG
        exif_view_t m_olympus3_equipment_ifd;
        exif_view_t m_olympus3_camerasettings_ifd;
        exif_view_t m_olympus3_focusinfo_ifd;

        ExifType::tag_0th_ifd m_tag_0th_ifd;
        ExifType::tag_exif_ifd m_tag_exif_ifd;
        ExifType::tag_gps_ifd m_tag_gps_ifd;
        ExifType::tag_1st_ifd m_tag_1st_ifd;
        ExifType::tag_olympus_ifd m_tag_olympus_ifd;
        ExifType::tag_olympus3_equipment_ifd m_tag_olympus3_equipment_ifd;
        ExifType::tag_olympus3_camerasettings_ifd m_tag_olympus3_camerasettings_ifd;
        ExifType::tag_olympus3_focusinfo_ifd m_tag_olympus3_focusinfo_ifd;
        ExifType::tag_pentax5_ifd m_tag_pentax5_ifd;

    private:
        // Runs the reader that the Make and the note's signature call for.
        bool parse_makernote();
    };

    app1_marker_t() = default;
    app1_marker_t(app1_marker_t const&) = delete;
    app1_marker_t& operator=(app1_marker_t const&) = delete;

    // Shares the payload's block and window; nothing is copied.
    void set_app1_buffer(exif_view_t& buffer);
    // The payload begins with "Exif" and a NUL.
    bool is_exif() const;
    // False, silently, for a payload that isn't Exif; otherwise the TIFF
    // header's parse.
    bool parse();
    void clear() override;

    tiff_header_t m_tiff_header;
};

}  // namespace libgr

#endif
