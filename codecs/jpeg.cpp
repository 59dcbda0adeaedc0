#include "codecs/jpeg.h"

#include <algorithm>
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>

#include <unistd.h>

// jpeglib.h needs size_t and FILE declared before it.
#include <jpeglib.h>

#include "utils/diag.h"

#include "codecs/jpeg_io.h"
#include "codecs/jpeg_markers.h"
#include "codecs/orientation.h"

namespace libgr {

marker_array_t const marker_array[MARKER_NUM_MAX] = {
    {MARKER_NUM_APP0, jpeg::kAPP0 + 0},   {MARKER_NUM_APP1, jpeg::kAPP0 + 1},
    {MARKER_NUM_APP2, jpeg::kAPP0 + 2},   {MARKER_NUM_APP3, jpeg::kAPP0 + 3},
    {MARKER_NUM_APP4, jpeg::kAPP0 + 4},   {MARKER_NUM_APP5, jpeg::kAPP0 + 5},
    {MARKER_NUM_APP6, jpeg::kAPP0 + 6},   {MARKER_NUM_APP7, jpeg::kAPP0 + 7},
    {MARKER_NUM_APP8, jpeg::kAPP0 + 8},   {MARKER_NUM_APP9, jpeg::kAPP0 + 9},
    {MARKER_NUM_APP10, jpeg::kAPP0 + 10}, {MARKER_NUM_APP11, jpeg::kAPP0 + 11},
    {MARKER_NUM_APP12, jpeg::kAPP0 + 12}, {MARKER_NUM_APP13, jpeg::kAPP0 + 13},
    {MARKER_NUM_APP14, jpeg::kAPP0 + 14}, {MARKER_NUM_APP15, jpeg::kAPP0 + 15},
    {MARKER_NUM_COM, jpeg::kCOM},
};

jpeg_info_desc_t const jpeg_info_desc_table[3] = {
    {IMAGE_FORMAT_RGB, IMAGE_TYPE_UINT, IMAGE_BITS_8, JCS_RGB, 3},
    {IMAGE_FORMAT_YCbCr, IMAGE_TYPE_UINT, IMAGE_BITS_8, JCS_YCbCr, 3},
    {IMAGE_FORMAT_GRAYSCALE, IMAGE_TYPE_UINT, IMAGE_BITS_8, JCS_GRAYSCALE, 1},
};

namespace {

constexpr int kNoRow = -1;

// Every decoded image packs its rows the same way, so they share one store.
image_store_t const s_image_store{false, 4};

// Points a freshly created decompress object at `data` and reads up to the
// first scan, keeping COM and APPn markers (APPn up to `app_limit` bytes).
// May exit through the error manager: call it under the owner's setjmp.
void read_header(j_decompress_ptr cinfo, jpegdata_t const& data, unsigned int app_limit)
{
    jpeg_io::attach_source(cinfo, data);
    jpeg_save_markers(cinfo, jpeg::kCOM, jpeg::kMarkerLengthLimit);
    for (unsigned int i = 0; i < jpeg::kAppCount; ++i)
        jpeg_save_markers(cinfo, jpeg::kAPP0 + i, app_limit);
    jpeg_read_header(cinfo, TRUE);
}

// The line a decode that yields no picture ends with; the caller has
// destroyed its decompress object already.
bool report_stop(jpegdata_t const& data)
{
    libutils::error();
    std::cerr << jpeg_io::name_of(&data) << ": jpeg decompress fail, stop." << std::endl;
    return false;
}

// Copies libjpeg's saved markers; with `whole_only`, those cut short by the
// length limit, and empty ones, are left out. Runs where no error exit can
// happen, so the records it makes are never skipped by one.
void keep_markers(j_decompress_ptr cinfo, std::vector<marker_t>& markers, bool whole_only)
{
    for (jpeg_saved_marker_ptr m = cinfo->marker_list; m; m = m->next) {
        if (whole_only && (m->data_length == 0 || m->data_length != m->original_length)) continue;
        marker_t kept;
        kept.code = static_cast<unsigned char>(m->marker);
        if (m->data_length != 0) {
            if (!kept.payload.resize(m->data_length, 0)) continue;
            std::memcpy(kept.payload.begin(), m->data, m->data_length);
        }
        markers.push_back(kept);
    }
}

// The row of jpeg_info_desc_table for the colour layout libjpeg will give.
int pick_desc_row(j_decompress_ptr cinfo)
{
    if (cinfo->num_components == 1 && cinfo->out_color_space == JCS_GRAYSCALE) return 2;
    if (cinfo->num_components == 3 && cinfo->out_color_space == JCS_RGB) return 0;
    if (cinfo->num_components == 3 && cinfo->out_color_space == JCS_YCbCr) return 1;
    return kNoRow;
}

// Paints the frame around the picture's place: rows 0 and height + 1, and
// columns 0 and width + 1 between them, one pixel's bytes at a time taken
// from `color` (only the red byte for gray, an opaque alpha for RGBA).
void paint_border(image2d_t& image, color3ub_t const& color)
{
    std::uint64_t const pixel = image.desc.getPixelBits() / 8;  // bytes
    std::uint64_t const rowsize = image.rowsize();
    std::uint64_t const width = image.m_width;
    std::uint64_t const height = image.m_height;
    unsigned char const bytes[4] = {color.r, color.g, color.b, 0xff};
    unsigned char* const base = image.begin();
    auto put = [&](std::uint64_t x, std::uint64_t y) {
        std::memcpy(base + rowsize * y + pixel * x, bytes, pixel);
    };
    for (std::uint64_t x = 0; x <= width + 1; ++x) {
        put(x, 0);
        put(x, height + 1);
    }
    for (std::uint64_t y = 1; y <= height; ++y) {
        put(0, y);
        put(width + 1, y);
    }
}

// Makes room for the pixels in the layout `unit` and `border` ask for (see
// jpeginfo_t::decompress). False when the room can't be had, or when the
// layout wouldn't hold the picture: a side that wraps past 16 bits, or a
// tall picture framed without a unit, whose row count follows the width.
bool allocate_pixels(image2d_t& image, unsigned short unit, bool border, color3ub_t const& color)
{
    image.window = image_window2d_t();
    if (!border && unit == 0) return image.allocate();

    std::uint32_t const width = image.m_width;
    std::uint32_t const height = image.m_height;
    std::uint32_t const side = std::max(width, height);
    // The unit is 16 bits wide and so is the rounded side: one that wraps
    // is refused below rather than allocated too small.
    std::uint16_t rounded = 0;
    if (unit != 0) {
        unsigned const rest = static_cast<std::uint16_t>(side) % unit;
        rounded = static_cast<std::uint16_t>(side + (rest ? unit - rest : 0));
    }
    std::uint64_t rows = 0;
    if (border) {
        image.window.skiprows = 1;
        image.window.rowlength = unit != 0 ? static_cast<std::uint16_t>(rounded + 2) : width + 2;
        rows = unit != 0 ? image.window.rowlength : std::uint64_t(width) + 2;
        if (image.window.rowlength < std::uint64_t(width) + 2 || rows < std::uint64_t(height) + 2)
            return false;
    } else {
        image.window.rowlength = rounded;
        rows = rounded;
        if (rounded < side) return false;
    }
    std::uint64_t const rowsize = image.rowsize();
    if (rowsize * rows > max_image_bytes() || !image.resize(rowsize * rows, 0)) return false;

    if (border) {
        paint_border(image, color);
        return true;
    }
    unsigned char* const base = image.begin();
    std::uint64_t const used = image.rowbyte();  // bytes of the picture in a row
    for (std::uint64_t y = 0; y < height; ++y)
        std::memset(base + rowsize * y + used, 0, rowsize - used);
    std::memset(base + rowsize * height, 0, rowsize * (rows - height));
    return true;
}

// Whether libjpeg may hold the whole picture's coefficients, as it does for
// a picture in several scans (progressive among others) before its first
// row comes out: they count against the images' limit too.
bool coefficients_fit(j_decompress_ptr cinfo)
{
    if (!jpeg_has_multiple_scans(cinfo)) return true;
    std::uint64_t bytes = 0;
    for (int i = 0; i < cinfo->num_components; ++i) {
        jpeg_component_info const& c = cinfo->comp_info[i];
        bytes += std::uint64_t(c.width_in_blocks) * c.height_in_blocks * sizeof(JBLOCK);
    }
    return bytes <= max_image_bytes();
}

// Decodes the rows top to bottom into their places bottom to top. False
// when the data gave out before the last row.
bool read_rows(j_decompress_ptr cinfo, image2d_t& image)
{
    unsigned char* const base = image.begin();
    std::uint64_t const rowsize = image.rowsize();
    while (cinfo->output_scanline < cinfo->output_height) {
        std::uint64_t const target = cinfo->output_height - 1 - cinfo->output_scanline;
        JSAMPROW row = base + rowsize * target;
        if (jpeg_read_scanlines(cinfo, &row, 1) == 0 || jpeg_io::source_ran_out(cinfo)) return false;
    }
    return true;
}

}  // namespace

// ------------------------------------------------------------------ jpegdata_t

bool jpegdata_t::load(char const* path, libutils::android_app* app)
{
    if (!image_bytes_t::load(0 /*whole file*/, path, libutils::PROTECT_READ, 0, false, app)) {
        libutils::error();
        return false;
    }
    name = path;
    return true;
}

bool jpegdata_t::save(char const* path, libutils::android_app* /*app*/)
{
    ::unlink(path);
    std::ofstream file(path, std::ios::binary);
    if (!file) {
        libutils::error();
        return false;
    }
    if (!empty()) file.write(reinterpret_cast<char const*>(begin()), size());
    // Closed before the check, so that a failure to flush the last bytes counts.
    file.close();
    if (!file) {
        libutils::error();
        return false;
    }
    name = path;
    return true;
}

void jpegdata_t::setvector(image_bytes_t& bytes, char const* label)
{
    static_cast<image_bytes_t&>(*this) = bytes;
    name = label;
}

// ------------------------------------------------------------------ jpeginfo_t

bool jpeginfo_t::decompress(image2d_t& image, jpegdata_t& data, unsigned short square_unit,
                            bool border, color3ub_t const& border_color)
{
    markers.clear();
    jpeg_decompress_struct cinfo;
    std::memset(&cinfo, 0, sizeof cinfo);
    std::jmp_buf back;
    jpeg_io::error_mgr_t err;
    jpeg_io::set_error_mgr(err, data, back);
    if (setjmp(back)) {
        jpeg_destroy_decompress(&cinfo);
        return report_stop(data);
    }
    cinfo.err = &err.pub;
    jpeg_create_decompress(&cinfo);
    read_header(&cinfo, data, jpeg::kMarkerLengthLimit);

    width = cinfo.image_width;
    height = cinfo.image_height;
    // Only a guess: jpeg_start_decompress computes them anew.
    cinfo.output_width = cinfo.image_width;
    cinfo.output_height = cinfo.image_height;
    cinfo.out_color_components = cinfo.num_components;
    cinfo.output_components = cinfo.num_components;
    cinfo.rec_outbuf_height = 1;
    image.m_width = cinfo.image_width;
    image.m_height = cinfo.image_height;
    image.compressed = false;
    image.store = &s_image_store;

    int const row = pick_desc_row(&cinfo);
    // CMYK and YCCK among others: nothing here shows them, and no one needs
    // to be told.
    if (row == kNoRow) {
        (*cinfo.src->term_source)(&cinfo);
        jpeg_destroy_decompress(&cinfo);
        libutils::error();
        return false;
    }
    image.desc = {jpeg_info_desc_table[row].format, jpeg_info_desc_table[row].type,
                  jpeg_info_desc_table[row].bits};
#ifdef JCS_ALPHA_EXTENSIONS
    if (rgba_output && cinfo.out_color_space == JCS_RGB) {
        // libjpeg-turbo fills the fourth byte with 255 as it converts.
        cinfo.out_color_space = JCS_EXT_RGBA;
        image.desc.format = IMAGE_FORMAT_RGBA;
    }
#endif
    image.palette.clear();
    if (!coefficients_fit(&cinfo) || !allocate_pixels(image, square_unit, border, border_color)) {
        jpeg_destroy_decompress(&cinfo);
        return report_stop(data);
    }
    keep_markers(&cinfo, markers, true);

    // From here on what is decoded is worth showing, whatever comes after.
    if (setjmp(back)) {
        jpeg_destroy_decompress(&cinfo);
        libutils::error();
        std::cerr << jpeg_io::name_of(&data) << ": jpeg decompress fail, but continue." << std::endl;
        return true;
    }
    jpeg_start_decompress(&cinfo);
    if (!read_rows(&cinfo, image)) {
        libutils::error();
        std::cerr << jpeg_io::name_of(&data) << ": decompress fail." << std::endl;
    }
    // libjpeg refuses to finish with rows left unread; there is nothing
    // more to learn from the file then.
    if (cinfo.output_scanline == cinfo.output_height) jpeg_finish_decompress(&cinfo);
    jpeg_destroy_decompress(&cinfo);
    return true;
}

bool jpeginfo_t::compress(jpegdata_t& data, image2d_t const& image, int quality,
                          bool force_baseline)
{
    jpeg_compress_struct cinfo;
    std::memset(&cinfo, 0, sizeof cinfo);
    data.clear();
    std::jmp_buf back;
    jpeg_io::error_mgr_t err;
    jpeg_io::set_error_mgr(err, data, back);
    // Unlike a damaged file, a picture that can't be written has nothing
    // worth keeping: the partial output is dropped.
    if (setjmp(back)) {
        jpeg_destroy_compress(&cinfo);
        data.clear();
        return false;
    }
    cinfo.err = &err.pub;
    jpeg_create_compress(&cinfo);
    jpeg_io::attach_destination(&cinfo, data);
    cinfo.image_width = image.m_width;
    cinfo.image_height = image.m_height;

    int row = kNoRow;
    for (int i = 0; i < 3 && row == kNoRow; ++i) {
        jpeg_info_desc_t const& r = jpeg_info_desc_table[i];
        if (image.desc == image_desc_t{r.format, r.type, r.bits}) row = i;
    }
    // Rows the record promises but doesn't hold would be read from outside it.
    if (row == kNoRow || !image.holds_pixels()) {
        (*cinfo.dest->term_destination)(&cinfo);
        jpeg_destroy_compress(&cinfo);
        libutils::error();
        return false;
    }
    cinfo.input_components = static_cast<int>(jpeg_info_desc_table[row].components);
    cinfo.in_color_space = static_cast<J_COLOR_SPACE>(jpeg_info_desc_table[row].color_space);
    jpeg_set_defaults(&cinfo);
    jpeg_set_quality(&cinfo, quality, force_baseline ? TRUE : FALSE);
    jpeg_start_compress(&cinfo, TRUE);
    for (marker_t const& m : markers)
        jpeg_write_marker(&cinfo, m.code, m.payload.begin(), static_cast<unsigned int>(m.payload.size()));
    // The record's last row is the picture's top: it goes first.
    while (cinfo.next_scanline < cinfo.image_height) {
        JSAMPROW line = const_cast<unsigned char*>(image.pixel(0, image.m_height - 1 - cinfo.next_scanline));
        jpeg_write_scanlines(&cinfo, &line, 1);
    }
    jpeg_finish_compress(&cinfo);
    jpeg_destroy_compress(&cinfo);
    return true;
}

bool jpeginfo_t::analyze_markers(jpegdata_t& data)
{
    markers.clear();
    jpeg_decompress_struct cinfo;
    std::memset(&cinfo, 0, sizeof cinfo);
    std::jmp_buf back;
    jpeg_io::error_mgr_t err;
    jpeg_io::set_error_mgr(err, data, back);
    if (setjmp(back)) {
        jpeg_destroy_decompress(&cinfo);
        return report_stop(data);
    }
    cinfo.err = &err.pub;
    jpeg_create_decompress(&cinfo);
    read_header(&cinfo, data, jpeg::kUnlimitedLength);
    width = cinfo.image_width;
    height = cinfo.image_height;
    keep_markers(&cinfo, markers, false);
    jpeg_destroy_decompress(&cinfo);
    return true;
}

image_bytes_t jpeginfo_t::get_marker(e_marker_num_t num) const
{
    if (num >= MARKER_NUM_MAX) return image_bytes_t();
    for (marker_t const& m : markers)
        if (m.code == marker_array[num].code) return m.payload;
    return image_bytes_t();
}

// -------------------------------------------------------------- jpeg_iterator

jpeg_iterator& jpeg_iterator::operator++()
{
    bool const stuffed = *m_p == jpeg::kMarkerPrefix && m_p + 1 < m_end && m_p[1] == jpeg::kStuffedZero;
    m_p += stuffed ? 2 : 1;
    return *this;
}

// --------------------------------------------------------------- image_jpeg1_t

void image_jpeg1_t::setRGBA(bool on)
{
    m_info.rgba_output = on;
}

bool image_jpeg1_t::load(image2d_t& image, char const* path)
{
    if (!m_data.load(path, nullptr)) return false;
    if (!m_info.decompress(image, m_data, 0, false, white3ub)) return false;
    apply_exif_orientation(m_info, m_rightrotatecount);
    return true;
}

bool image_jpeg1_t::save(image2d_t const& image, char const* path)
{
    return m_info.compress(m_data, image, jpeg::kSaveQuality, jpeg::kSaveForceBaseline) &&
           m_data.save(path, nullptr);
}

}  // namespace libgr
