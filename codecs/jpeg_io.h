// The libjpeg plumbing both JPEG codec objects share: the error manager that
// unwinds to its owner's setjmp, and the in-memory source and destination
// managers over jpegdata_t. Private to codecs/.
#ifndef ZANOVIEW_CODECS_JPEG_IO_H
#define ZANOVIEW_CODECS_JPEG_IO_H

#include <csetjmp>
#include <cstddef>
#include <cstdio>

// jpeglib.h needs size_t and FILE declared before it.
#include <jpeglib.h>

#include "codecs/jpeg.h"

namespace libgr {
namespace jpeg_io {

// libjpeg's error record, then the way back into the function that owns the
// codec object, then the bytes whose name leads the messages.
struct error_mgr_t {
    jpeg_error_mgr pub;  // first: libjpeg sees only this part
    std::jmp_buf* back;
    jpegdata_t const* data;
};

// The name messages give `data`: "(unnamed)" for none.
char const* name_of(jpegdata_t const* data);

// Fills `err` so that libjpeg's messages go through the verbose gate and a
// fatal error prints "<name>: error detected." and longjmps to `back`. The
// caller's setjmp on `back` must stay live while the codec object is used.
void set_error_mgr(error_mgr_t& err, jpegdata_t const& data, std::jmp_buf& back);

// Reads `data` whole. Past its end libjpeg is given a warning and an EOI, so
// the scan in hand ends with its missing rest filled with zero coefficients.
// `data` must outlive the decompress object.
void attach_source(j_decompress_ptr cinfo, jpegdata_t const& data);

// True once libjpeg wanted more than the source attached above holds.
bool source_ran_out(j_decompress_ptr cinfo);

// Writes into `data`, grown in steps and cut to what was written at the end.
void attach_destination(j_compress_ptr cinfo, jpegdata_t& data);

}  // namespace jpeg_io
}  // namespace libgr

#endif
