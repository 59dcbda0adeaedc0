// The maker-note readers called directly on arbitrary notes, so that each
// is reached without the Exif block around it having to be right. The first
// byte picks the reader (low bits) and the byte order (bit 3); the rest is
// the note, which for the Olympus reader is also the TIFF block its offsets
// count from.
#include <memory>

#include "metadata/exif.h"
#include "utils/byteorder.h"

#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size == 0) return 0;
    unsigned const reader = data[0] % 8;
    bool const motorola = (data[0] & 8) != 0;
    libgr::exif_view_t note = zvfuzz::make_view(data + 1, size - 1);

    libgr::app1_marker_t::tiff_header_t tiff;
    tiff.set_tiff_buffer(note);
    if (motorola)
        tiff.m_byteorder = std::make_unique<libutils::motorola_byteorder>();
    else
        tiff.m_byteorder = std::make_unique<libutils::intel_byteorder>();

    // The readers take the IFD as a view of its own; here it is the whole note.
    libgr::exif_view_t ifd = note;
    switch (reader) {
    case 0: tiff.parse_olympus_ifd(ifd); break;
    case 1: tiff.parse_olympus3_ifd(ifd, note); break;
    case 2: tiff.parse_olympus3_equipment_ifd(ifd, note); break;
    case 3: tiff.parse_olympus3_camerasettings_ifd(ifd, note); break;
    case 4: tiff.parse_olympus3_focusinfo_ifd(ifd, note); break;
    case 5: tiff.parse_pentax5_ifd(ifd, note); break;
    case 6: tiff.parse_exif_ifd(ifd); break;
    default: tiff.parse_1st_ifd(ifd); break;
    }
    return 0;
}
