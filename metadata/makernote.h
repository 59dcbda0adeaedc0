// Which camera maker's note the Exif reader reads, and where in the note
// its IFD starts; the readers themselves are members of
// app1_marker_t::tiff_header_t.
#ifndef ZANOVIEW_METADATA_MAKERNOTE_H
#define ZANOVIEW_METADATA_MAKERNOTE_H

#include <string>

#include "metadata/exif.h"

namespace libgr {

enum e_makernote_t {
    MAKERNOTE_NONE,      // not read: the parse doesn't depend on it
    MAKERNOTE_OLYMPUS,   // parse_olympus_ifd
    MAKERNOTE_OLYMPUS3,  // parse_olympus3_ifd (OM Digital Solutions)
    MAKERNOTE_PENTAX5,   // parse_pentax5_ifd (Ricoh)
};

struct makernote_layout_t {
    e_makernote_t reader;
    unsigned long ifd_at;  // bytes from the note's start to its IFD
    bool has_signature;    // the note begins with its maker's signature
};

// The Make is compared in any case, the note's signature exactly:
//   Make "OLYMPUS CORPORATION", note "OLYMP\0..."      -> OLYMPUS at 8, signed
//   Make "Olympus Optical", note without a signature   -> OLYMPUS at 0, unsigned
//   Make "OLYMPUS ...", note "OLYMPUS\0II..."          -> OLYMPUS at 8 (the first
//                                                          five letters match)
//   Make "OM Digital Solutions", note "OM SYSTEM\0..." -> OLYMPUS3 at 16
//   Make "RICOH IMAGING", note "PENTAX \0..."          -> PENTAX5 at 10
//   any other pair                                     -> NONE
makernote_layout_t choose_makernote(std::string const& make, exif_view_t const& note);

}  // namespace libgr

#endif
