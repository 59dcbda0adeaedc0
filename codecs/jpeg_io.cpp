#include "codecs/jpeg_io.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <iostream>

#include <jerror.h>

#include "options/option.h"
#include "utils/diag.h"

#include "codecs/jpeg_markers.h"

namespace libgr {
namespace jpeg_io {

namespace {

// ------------------------------------------------------------ error manager

// libjpeg's own text, for those who asked to see what the program does.
void output_message(j_common_ptr cinfo)
{
    if (!zanolib::g_option.verbose) return;
    char text[JMSG_LENGTH_MAX];
    (*cinfo->err->format_message)(cinfo, text);
    std::cerr << text << std::endl;
}

// libjpeg can't go on: report, then unwind into the function that owns the
// codec object. Nothing with a destructor lives in the frames skipped.
[[noreturn]] void error_exit(j_common_ptr cinfo)
{
    error_mgr_t* const err = reinterpret_cast<error_mgr_t*>(cinfo->err);
    libutils::error();
    std::cerr << name_of(err->data) << ": error detected." << std::endl;
    (*cinfo->err->output_message)(cinfo);
    std::longjmp(*err->back, 1);
}

// ----------------------------------------------------------- source manager

struct source_mgr_t {
    jpeg_source_mgr pub;  // first: libjpeg sees only this part
    jpegdata_t const* data;
    bool delivered;  // the file's bytes have been handed over
    bool ran_out;    // libjpeg wanted more than the file holds
};

// What libjpeg reads once the file is used up: it ends the scan in hand.
unsigned char const s_fake_eoi[2] = {jpeg::kMarkerPrefix, jpeg::kEOI};

source_mgr_t* source_of(j_decompress_ptr cinfo)
{
    return reinterpret_cast<source_mgr_t*>(cinfo->src);
}

void src_init(j_decompress_ptr cinfo)
{
    source_mgr_t* const src = source_of(cinfo);
    src->pub.next_input_byte = nullptr;
    src->pub.bytes_in_buffer = 0;
    src->delivered = false;
    src->ran_out = false;
}

// The first call hands over the whole file; any later one means the data
// has run out.
boolean src_fill_input_buff(j_decompress_ptr cinfo)
{
    source_mgr_t* const src = source_of(cinfo);
    if (!src->delivered && !src->data->empty()) {
        src->delivered = true;
        src->pub.next_input_byte = src->data->begin();
        src->pub.bytes_in_buffer = src->data->size();
        return TRUE;
    }
    src->ran_out = true;
    WARNMS(cinfo, JWRN_JPEG_EOF);
    src->pub.next_input_byte = s_fake_eoi;
    src->pub.bytes_in_buffer = sizeof s_fake_eoi;
    return TRUE;
}

// A skip that runs past the end of the file stops there: the next read
// then finds the data used up. Never a step outside the mapping.
void src_skip_input_data(j_decompress_ptr cinfo, long count)
{
    if (count <= 0) return;
    jpeg_source_mgr* const src = cinfo->src;
    std::size_t const n = std::min(static_cast<std::size_t>(count), src->bytes_in_buffer);
    src->next_input_byte += n;
    src->bytes_in_buffer -= n;
}

void src_term(j_decompress_ptr /*cinfo*/)
{
}

// ------------------------------------------------------ destination manager

struct dest_mgr_t {
    jpeg_destination_mgr pub;  // first: libjpeg sees only this part
    jpegdata_t* data;
};

dest_mgr_t* dest_of(j_compress_ptr cinfo)
{
    return reinterpret_cast<dest_mgr_t*>(cinfo->dest);
}

void dest_init(j_compress_ptr cinfo)
{
    dest_mgr_t* const dest = dest_of(cinfo);
    if (!dest->data->resize(jpeg::kOutputStep, 0)) ERREXIT1(cinfo, JERR_OUT_OF_MEMORY, 0);
    dest->pub.next_output_byte = dest->data->begin();
    dest->pub.free_in_buffer = dest->data->size();
}

// libjpeg calls this only with the buffer full, so all of it is output.
boolean dest_empty_buff(j_compress_ptr cinfo)
{
    dest_mgr_t* const dest = dest_of(cinfo);
    unsigned long const used = dest->data->size();
    if (!dest->data->resize(used + jpeg::kOutputStep, 0)) ERREXIT1(cinfo, JERR_OUT_OF_MEMORY, 1);
    dest->pub.next_output_byte = dest->data->begin() + used;
    dest->pub.free_in_buffer = jpeg::kOutputStep;
    return TRUE;
}

void dest_term(j_compress_ptr cinfo)
{
    dest_mgr_t* const dest = dest_of(cinfo);
    unsigned long const size = dest->data->size();
    unsigned long const used = size - std::min<unsigned long>(dest->pub.free_in_buffer, size);
    if (used != size && !dest->data->resize(used, 0)) ERREXIT1(cinfo, JERR_OUT_OF_MEMORY, 2);
    dest->pub.next_output_byte = nullptr;
    dest->pub.free_in_buffer = 0;
    cinfo->dest = nullptr;
}

}  // namespace

char const* name_of(jpegdata_t const* data)
{
    return data && data->name ? data->name : "(unnamed)";
}

void set_error_mgr(error_mgr_t& err, jpegdata_t const& data, std::jmp_buf& back)
{
    jpeg_std_error(&err.pub);
    err.pub.error_exit = error_exit;
    err.pub.output_message = output_message;
    err.back = &back;
    err.data = &data;
}

void attach_source(j_decompress_ptr cinfo, jpegdata_t const& data)
{
    void* const p = (*cinfo->mem->alloc_small)(reinterpret_cast<j_common_ptr>(cinfo),
                                               JPOOL_PERMANENT, sizeof(source_mgr_t));
    source_mgr_t* const src = static_cast<source_mgr_t*>(p);
    src->pub.init_source = src_init;
    src->pub.fill_input_buffer = src_fill_input_buff;
    src->pub.skip_input_data = src_skip_input_data;
    src->pub.resync_to_restart = jpeg_resync_to_restart;
    src->pub.term_source = src_term;
    src->pub.next_input_byte = nullptr;
    src->pub.bytes_in_buffer = 0;
    src->data = &data;
    src->delivered = false;
    src->ran_out = false;
    cinfo->src = &src->pub;
    // libjpeg's own buffers, such as the coefficients of a picture in
    // several scans, stay within the images' limit: beyond it libjpeg
    // fails with an error instead of allocating a header's claim.
    std::uint64_t const limit = std::min<std::uint64_t>(max_image_bytes(), LONG_MAX);
    cinfo->mem->max_memory_to_use = static_cast<long>(limit);
}

bool source_ran_out(j_decompress_ptr cinfo)
{
    return source_of(cinfo)->ran_out;
}

void attach_destination(j_compress_ptr cinfo, jpegdata_t& data)
{
    void* const p = (*cinfo->mem->alloc_small)(reinterpret_cast<j_common_ptr>(cinfo),
                                               JPOOL_PERMANENT, sizeof(dest_mgr_t));
    dest_mgr_t* const dest = static_cast<dest_mgr_t*>(p);
    dest->pub.init_destination = dest_init;
    dest->pub.empty_output_buffer = dest_empty_buff;
    dest->pub.term_destination = dest_term;
    dest->pub.next_output_byte = nullptr;
    dest->pub.free_in_buffer = 0;
    dest->data = &data;
    cinfo->dest = &dest->pub;
}

}  // namespace jpeg_io
}  // namespace libgr
