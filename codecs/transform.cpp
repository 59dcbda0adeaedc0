#include "codecs/transform.h"

#include <algorithm>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iostream>

// jpeglib.h needs size_t and FILE declared before it.
#include <jpeglib.h>
#include <jerror.h>

#include "utils/diag.h"

#include "codecs/jpeg_io.h"
#include "codecs/jpeg_markers.h"

namespace libgr {

namespace {

// ---------------------------------------------------------- block geometry

// Every geometric operation is an optional transpose followed by optional
// mirrors of the output; a mirror flips the sign of the odd frequencies
// along its axis, which is the whole trick of the lossless turn.
struct geometry_t {
    bool swap;      // transpose: output (x, y) reads source (y, x)
    bool mirror_x;  // output left to right
    bool mirror_y;  // output top to bottom
};

geometry_t geometry_of(JXFORM_CODE code)
{
    switch (code) {
    case JXFORM_FLIP_H: return {false, true, false};
    case JXFORM_FLIP_V: return {false, false, true};
    case JXFORM_TRANSPOSE: return {true, false, false};
    case JXFORM_TRANSVERSE: return {true, true, true};
    case JXFORM_ROT_90: return {true, true, false};
    case JXFORM_ROT_180: return {false, true, true};
    case JXFORM_ROT_270: return {true, false, true};
    default: return {false, false, false};
    }
}

bool moves_blocks(JXFORM_CODE code)
{
    return code <= JXFORM_ROT_270;
}

unsigned int round_up(unsigned int n, unsigned int unit)
{
    return (n + unit - 1) / unit * unit;
}

// Only the luminance of a YCbCr picture whose luminance isn't subsampled
// can stand alone: its blocks then cover the picture at full size.
bool can_drop_chroma(j_decompress_ptr srcinfo)
{
    return srcinfo->num_components == 3 && srcinfo->jpeg_color_space == JCS_YCbCr &&
           srcinfo->comp_info[0].h_samp_factor == srcinfo->max_h_samp_factor &&
           srcinfo->comp_info[0].v_samp_factor == srcinfo->max_v_samp_factor;
}

// A component's sampling factors in the output, and its block grid there.
struct out_component_t {
    int h, v;                    // sampling factors
    unsigned int width, height;  // blocks in the virtual array, whole iMCUs
};

out_component_t out_component(j_decompress_ptr srcinfo, jpeg_transform_info const* info, int ci)
{
    jpeg_component_info const& comp = srcinfo->comp_info[ci];
    geometry_t const g = geometry_of(info->transform);
    bool const gray = info->num_components == 1 && srcinfo->num_components == 3;
    out_component_t out;
    out.h = gray ? 1 : g.swap ? comp.v_samp_factor : comp.h_samp_factor;
    out.v = gray ? 1 : g.swap ? comp.h_samp_factor : comp.v_samp_factor;
    unsigned int const max_h = gray ? 1 : g.swap ? srcinfo->max_v_samp_factor : srcinfo->max_h_samp_factor;
    unsigned int const max_v = gray ? 1 : g.swap ? srcinfo->max_h_samp_factor : srcinfo->max_v_samp_factor;
    auto blocks = [](unsigned long pixels, unsigned int factor, unsigned int max) {
        return static_cast<unsigned int>((pixels * factor + max * DCTSIZE - 1) / (max * DCTSIZE));
    };
    out.width = round_up(blocks(info->output_width, out.h, max_h), out.h);
    out.height = round_up(blocks(info->output_height, out.v, max_v), out.v);
    return out;
}

// Blocks in a source component's virtual array, as jpeg_read_coefficients
// sized it.
unsigned int src_array_width(jpeg_component_info const& comp)
{
    return round_up(comp.width_in_blocks, comp.h_samp_factor);
}

unsigned int src_array_height(jpeg_component_info const& comp)
{
    return round_up(comp.height_in_blocks, comp.v_samp_factor);
}

JBLOCKROW block_row(j_decompress_ptr cinfo, jvirt_barray_ptr array, unsigned int row, bool writable)
{
    return (*cinfo->mem->access_virt_barray)(reinterpret_cast<j_common_ptr>(cinfo), array, row, 1,
                                             writable ? TRUE : FALSE)[0];
}

// dst becomes src, transposed if asked, with the odd columns negated for a
// horizontal mirror and the odd rows for a vertical one.
void move_block(JCOEF* dst, JCOEF const* src, bool swap, bool mirror_x, bool mirror_y)
{
    for (int r = 0; r < DCTSIZE; ++r) {
        for (int c = 0; c < DCTSIZE; ++c) {
            JCOEF const v = swap ? src[c * DCTSIZE + r] : src[r * DCTSIZE + c];
            bool const negate = (mirror_x && (c & 1)) != (mirror_y && (r & 1));
            dst[r * DCTSIZE + c] = negate ? static_cast<JCOEF>(-v) : v;
        }
    }
}

// Fills the output arrays block by block, in the order libjpeg wants them
// written. Blocks in a partial iMCU at a mirrored edge have no place on the
// far side: they keep their position and are only transposed.
void execute_geometry(j_decompress_ptr srcinfo, jvirt_barray_ptr* src_coef_arrays,
                      jpeg_transform_info const* info)
{
    geometry_t const g = geometry_of(info->transform);
    // The whole transformed picture, which the mirrors act on; a crop only
    // picks a window out of it.
    unsigned long const full_w = g.swap ? srcinfo->image_height : srcinfo->image_width;
    unsigned long const full_h = g.swap ? srcinfo->image_width : srcinfo->image_height;
    for (int ci = 0; ci < info->num_components; ++ci) {
        jpeg_component_info const& comp = srcinfo->comp_info[ci];
        out_component_t const out = out_component(srcinfo, info, ci);
        unsigned int const whole_w = full_w / info->iMCU_sample_width * out.h;   // blocks
        unsigned int const whole_h = full_h / info->iMCU_sample_height * out.v;  // blocks
        unsigned int const src_w = src_array_width(comp);
        unsigned int const src_h = src_array_height(comp);
        unsigned int const x0 = info->x_crop_offset * out.h;
        unsigned int const y0 = info->y_crop_offset * out.v;
        for (unsigned int y = 0; y < out.height; ++y) {
            JBLOCKROW const dst = block_row(srcinfo, info->workspace_coef_arrays[ci], y, true);
            unsigned int const Y = y + y0;
            bool const flip_y = g.mirror_y && Y < whole_h;
            unsigned int const sy = flip_y ? whole_h - 1 - Y : Y;
            for (unsigned int x = 0; x < out.width; ++x) {
                unsigned int const X = x + x0;
                bool const flip_x = g.mirror_x && X < whole_w;
                unsigned int const sx = flip_x ? whole_w - 1 - X : X;
                unsigned int const col = g.swap ? sy : sx;
                unsigned int const row = g.swap ? sx : sy;
                // Only a crop grown to the iMCU grid reaches past the
                // source; pre-zeroing left those blocks blank.
                if (col >= src_w || row >= src_h) continue;
                JBLOCKROW const src = block_row(srcinfo, src_coef_arrays[ci], row, false);
                move_block(dst[x], src[col], g.swap, flip_x, flip_y);
            }
        }
    }
}

// Mirrors each block row within itself, for the one operation that needs
// no second array.
void execute_flip_h_in_place(j_decompress_ptr srcinfo, jvirt_barray_ptr* src_coef_arrays,
                             jpeg_transform_info const* info)
{
    for (int ci = 0; ci < info->num_components; ++ci) {
        jpeg_component_info const& comp = srcinfo->comp_info[ci];
        unsigned int const factor = info->num_components == 1 ? 1 : comp.h_samp_factor;
        unsigned int const whole_w = srcinfo->image_width / info->iMCU_sample_width * factor;
        for (unsigned int y = 0; y < src_array_height(comp); ++y) {
            JBLOCKROW const row = block_row(srcinfo, src_coef_arrays[ci], y, true);
            for (unsigned int x = 0; x < (whole_w + 1) / 2; ++x) {
                JBLOCK left;
                move_block(left, row[x], false, true, false);
                move_block(row[x], row[whole_w - 1 - x], false, true, false);
                std::memcpy(row[whole_w - 1 - x], left, sizeof left);
            }
        }
    }
}

// The blocks of component `ci` that a pixel region touches, clipped to the
// array.
struct block_range_t {
    unsigned int x0, y0, x1, y1;  // blocks, the ends excluded
};

block_range_t region_blocks(j_decompress_ptr srcinfo, jpeg_transform_info const* info, int ci,
                            unsigned long width, unsigned long height)
{
    jpeg_component_info const& comp = srcinfo->comp_info[ci];
    unsigned int const h = info->num_components == 1 ? 1 : comp.h_samp_factor;
    unsigned int const v = info->num_components == 1 ? 1 : comp.v_samp_factor;
    unsigned int const max_h = info->num_components == 1 ? 1 : srcinfo->max_h_samp_factor;
    unsigned int const max_v = info->num_components == 1 ? 1 : srcinfo->max_v_samp_factor;
    unsigned long const x = std::uint64_t(info->x_crop_offset) * info->iMCU_sample_width;
    unsigned long const y = std::uint64_t(info->y_crop_offset) * info->iMCU_sample_height;
    block_range_t r;
    r.x0 = info->x_crop_offset * h;
    r.y0 = info->y_crop_offset * v;
    r.x1 = std::min<unsigned long>((x + width) * h / max_h / DCTSIZE + ((x + width) * h % (max_h * DCTSIZE) != 0),
                                   src_array_width(comp));
    r.y1 = std::min<unsigned long>((y + height) * v / max_v / DCTSIZE + ((y + height) * v % (max_v * DCTSIZE) != 0),
                                   src_array_height(comp));
    return r;
}

// All coefficients zero: the level shift makes that mid-grey, and neutral
// in the colour components.
void execute_wipe(j_decompress_ptr srcinfo, jvirt_barray_ptr* src_coef_arrays, jpeg_transform_info const* info)
{
    for (int ci = 0; ci < info->num_components; ++ci) {
        block_range_t const r = region_blocks(srcinfo, info, ci, info->crop_width, info->crop_height);
        for (unsigned int y = r.y0; y < r.y1; ++y) {
            JBLOCKROW const row = block_row(srcinfo, src_coef_arrays[ci], y, true);
            for (unsigned int x = r.x0; x < r.x1; ++x) std::memset(row[x], 0, sizeof(JBLOCK));
        }
    }
}

// Copies the other picture's blocks in, brought to the main picture's
// quantisation, which the output keeps.
void execute_drop(j_decompress_ptr srcinfo, jvirt_barray_ptr* src_coef_arrays, jpeg_transform_info const* info)
{
    j_decompress_ptr const drop = info->drop_ptr;
    for (int ci = 0; ci < info->num_components; ++ci) {
        JQUANT_TBL const* const qs = srcinfo->comp_info[ci].quant_table;
        JQUANT_TBL const* const qd = drop->comp_info[ci].quant_table;
        if (!qs || !qd) ERREXIT1(srcinfo, JERR_NO_QUANT_TABLE, srcinfo->comp_info[ci].quant_tbl_no);
        block_range_t const r = region_blocks(srcinfo, info, ci, info->drop_width, info->drop_height);
        jpeg_component_info const& dcomp = drop->comp_info[ci];
        for (unsigned int y = r.y0; y < r.y1 && y - r.y0 < src_array_height(dcomp); ++y) {
            JBLOCKROW const row = block_row(srcinfo, src_coef_arrays[ci], y, true);
            JBLOCKROW const from = block_row(drop, info->drop_coef_arrays[ci], y - r.y0, false);
            for (unsigned int x = r.x0; x < r.x1 && x - r.x0 < src_array_width(dcomp); ++x) {
                for (int k = 0; k < DCTSIZE2; ++k) {
                    long const value = long(from[x - r.x0][k]) * qd->quantval[k];
                    long const q = qs->quantval[k];
                    long const rounded = value >= 0 ? (value + q / 2) / q : -((-value + q / 2) / q);
                    row[x][k] = static_cast<JCOEF>(rounded);
                }
            }
        }
    }
}

// Places the crop region on the iMCU grid of the transformed picture
// (full_w x full_h pixels). Refuses a region that isn't inside it.
void place_crop(j_decompress_ptr srcinfo, jpeg_transform_info* info, unsigned long full_w,
                unsigned long full_h)
{
    auto axis = [&](unsigned int size, JCROP_CODE size_set, unsigned int offset, JCROP_CODE offset_set,
                    unsigned long full, int unit, unsigned int* out_size, unsigned int* out_imcu) {
        unsigned long const from_edge = offset_set == JCROP_UNSET ? 0 : offset;
        if (from_edge > full) ERREXIT(srcinfo, JERR_BAD_CROP_SPEC);
        unsigned long length = size_set == JCROP_UNSET ? full - from_edge : size;
        if (length == 0 || length + from_edge > full) ERREXIT(srcinfo, JERR_BAD_CROP_SPEC);
        unsigned long const start = offset_set == JCROP_NEG ? full - from_edge - length : from_edge;
        // Grown to the left so the region still covers what was asked for.
        if (size_set != JCROP_FORCE) length += start % unit;
        *out_size = static_cast<unsigned int>(std::min(length, full - start / unit * unit));
        *out_imcu = static_cast<unsigned int>(start / unit);
    };
    axis(info->crop_width, info->crop_width_set, info->crop_xoffset, info->crop_xoffset_set, full_w,
         info->iMCU_sample_width, &info->crop_width, &info->x_crop_offset);
    axis(info->crop_height, info->crop_height_set, info->crop_yoffset, info->crop_yoffset_set, full_h,
         info->iMCU_sample_height, &info->crop_height, &info->y_crop_offset);
}

// ------------------------------------------------------------------ Exif

std::uint32_t get_u(unsigned char const* p, int n, bool big)
{
    std::uint32_t v = 0;
    for (int i = 0; i < n; ++i) v |= std::uint32_t(p[big ? i : n - 1 - i]) << (8 * (n - 1 - i));
    return v;
}

void put_u(unsigned char* p, int n, bool big, std::uint32_t v)
{
    for (int i = 0; i < n; ++i) p[big ? n - 1 - i : i] = static_cast<unsigned char>(v >> (8 * i));
}

// Sets the pixel width and height tags of the Exif IFD, if the block has
// them, so that they describe the transformed picture. A malformed block
// is left alone.
void rewrite_exif_size(unsigned char* block, unsigned int length, unsigned int width, unsigned int height)
{
    constexpr unsigned int kHeader = 6;  // "Exif\0\0"
    if (length < kHeader + 8 || std::memcmp(block, "Exif\0\0", kHeader) != 0) return;
    unsigned char* const tiff = block + kHeader;
    unsigned int const size = length - kHeader;
    bool big;
    if (std::memcmp(tiff, "II*\0", 4) == 0)
        big = false;
    else if (std::memcmp(tiff, "MM\0*", 4) == 0)
        big = true;
    else
        return;
    constexpr std::uint16_t kExifIfd = 0x8769, kPixelWidth = 0xA002, kPixelHeight = 0xA003;
    constexpr std::uint16_t kShort = 3, kLong = 4;
    constexpr unsigned int kEntry = 12;  // bytes
    auto entries = [&](std::uint32_t ifd, auto&& visit) {
        if (ifd > size - 2) return;
        unsigned int const count = get_u(tiff + ifd, 2, big);
        for (unsigned int i = 0; i < count; ++i) {
            std::uint64_t const at = ifd + 2 + std::uint64_t(i) * kEntry;
            if (at + kEntry > size) return;
            visit(tiff + at);
        }
    };
    std::uint32_t exif_ifd = 0;
    entries(get_u(tiff + 4, 4, big), [&](unsigned char* e) {
        if (get_u(e, 2, big) == kExifIfd) exif_ifd = get_u(e + 8, 4, big);
    });
    if (exif_ifd == 0) return;
    entries(exif_ifd, [&](unsigned char* e) {
        std::uint32_t const tag = get_u(e, 2, big);
        if (tag != kPixelWidth && tag != kPixelHeight) return;
        std::uint32_t const type = get_u(e + 2, 2, big);
        if ((type != kShort && type != kLong) || get_u(e + 4, 4, big) != 1) return;
        // The value field holds four bytes either way; a LONG fits any size.
        put_u(e + 2, 2, big, kLong);
        put_u(e + 8, 4, big, tag == kPixelWidth ? width : height);
    });
}

// Reads decimal digits into `value`; false when there are none or they
// don't fit.
bool read_number(char const*& p, unsigned int& value)
{
    if (*p < '0' || *p > '9') return false;
    std::uint64_t v = 0;
    while (*p >= '0' && *p <= '9') {
        v = v * 10 + unsigned(*p++ - '0');
        if (v > 0xFFFFFFFFu) return false;
    }
    value = static_cast<unsigned int>(v);
    return true;
}

bool read_size(char const*& p, unsigned int& value, JCROP_CODE& set)
{
    if (!read_number(p, value)) return false;
    set = JCROP_POS;
    if (*p == 'f' || *p == 'F') {
        set = JCROP_FORCE;
        ++p;
    } else if (*p == 'r' || *p == 'R') {
        set = JCROP_REFLECT;
        ++p;
    }
    return true;
}

bool read_offset(char const*& p, unsigned int& value, JCROP_CODE& set)
{
    set = *p++ == '-' ? JCROP_NEG : JCROP_POS;
    return read_number(p, value);
}

}  // namespace

// ------------------------------------------------------------------ family

bool jtransform_perfect_transform(unsigned int image_width, unsigned int image_height, int mcu_width,
                                  int mcu_height, JXFORM_CODE transform)
{
    bool const need_w = transform == JXFORM_FLIP_H || transform == JXFORM_TRANSVERSE ||
                        transform == JXFORM_ROT_180 || transform == JXFORM_ROT_270;
    bool const need_h = transform == JXFORM_FLIP_V || transform == JXFORM_TRANSVERSE ||
                        transform == JXFORM_ROT_180 || transform == JXFORM_ROT_90;
    if ((need_w && mcu_width <= 0) || (need_h && mcu_height <= 0)) return false;
    return (!need_w || image_width % unsigned(mcu_width) == 0) &&
           (!need_h || image_height % unsigned(mcu_height) == 0);
}

bool jtransform_request_workspace(jpeg_decompress_struct* srcinfo, jpeg_transform_info* info)
{
    geometry_t const g = geometry_of(info->transform);
    bool const gray = info->force_grayscale && can_drop_chroma(srcinfo);
    info->num_components = gray ? 1 : srcinfo->num_components;
    info->workspace_coef_arrays = nullptr;
    info->x_crop_offset = 0;
    info->y_crop_offset = 0;

    int const src_mcu_w = gray ? DCTSIZE : DCTSIZE * srcinfo->max_h_samp_factor;
    int const src_mcu_h = gray ? DCTSIZE : DCTSIZE * srcinfo->max_v_samp_factor;
    if (info->perfect && !jtransform_perfect_transform(srcinfo->image_width, srcinfo->image_height,
                                                       src_mcu_w, src_mcu_h, info->transform))
        return false;
    info->iMCU_sample_width = g.swap ? src_mcu_h : src_mcu_w;
    info->iMCU_sample_height = g.swap ? src_mcu_w : src_mcu_h;
    unsigned int const full_w = g.swap ? srcinfo->image_height : srcinfo->image_width;
    unsigned int const full_h = g.swap ? srcinfo->image_width : srcinfo->image_height;
    info->output_width = full_w;
    info->output_height = full_h;
    // Trimming drops the edge blocks a mirror can't move, unless nothing
    // would be left.
    if (info->trim && g.mirror_x && full_w >= unsigned(info->iMCU_sample_width))
        info->output_width = full_w / info->iMCU_sample_width * info->iMCU_sample_width;
    if (info->trim && g.mirror_y && full_h >= unsigned(info->iMCU_sample_height))
        info->output_height = full_h / info->iMCU_sample_height * info->iMCU_sample_height;

    if (info->transform == JXFORM_DROP) {
        jpeg_decompress_struct* const drop = info->drop_ptr;
        if (!drop || !info->drop_coef_arrays) ERREXIT(srcinfo, JERR_BAD_CROP_SPEC);
        if (drop->num_components < info->num_components) ERREXIT(srcinfo, JERR_CONVERSION_NOTIMPL);
        for (int ci = 0; ci < info->num_components; ++ci) {
            bool const same = gray || (drop->comp_info[ci].h_samp_factor == srcinfo->comp_info[ci].h_samp_factor &&
                                       drop->comp_info[ci].v_samp_factor == srcinfo->comp_info[ci].v_samp_factor);
            if (!same) ERREXIT(srcinfo, JERR_CONVERSION_NOTIMPL);
        }
        info->drop_width = drop->image_width;
        info->drop_height = drop->image_height;
    }
    if (info->crop || info->transform == JXFORM_WIPE) {
        place_crop(srcinfo, info, info->output_width, info->output_height);
    } else if (info->transform == JXFORM_DROP) {
        // Without a crop the other picture goes to the top left corner.
        info->crop_width = info->output_width;
        info->crop_height = info->output_height;
    }
    if (!moves_blocks(info->transform)) return true;  // WIPE and DROP work in place
    if (info->crop) {
        info->output_width = info->crop_width;
        info->output_height = info->crop_height;
    }

    bool const in_place = !info->crop && (info->transform == JXFORM_NONE ||
                                          (info->transform == JXFORM_FLIP_H && !info->slow_hflip));
    if (in_place) return true;
    j_common_ptr const common = reinterpret_cast<j_common_ptr>(srcinfo);
    void* const p = (*srcinfo->mem->alloc_small)(common, JPOOL_IMAGE,
                                                 sizeof(jvirt_barray_ptr) * info->num_components);
    info->workspace_coef_arrays = static_cast<jvirt_barray_ptr*>(p);
    for (int ci = 0; ci < info->num_components; ++ci) {
        out_component_t const out = out_component(srcinfo, info, ci);
        // Pre-zeroed: blocks a crop reaches beyond the source stay blank.
        info->workspace_coef_arrays[ci] = (*srcinfo->mem->request_virt_barray)(
            common, JPOOL_IMAGE, TRUE, out.width, out.height, static_cast<JDIMENSION>(out.v));
    }
    return true;
}

jvirt_barray_ptr* jtransform_adjust_parameters(jpeg_decompress_struct* srcinfo, jpeg_compress_struct* dstinfo,
                                               jvirt_barray_ptr* src_coef_arrays, jpeg_transform_info* info)
{
    geometry_t const g = geometry_of(info->transform);
    if (info->num_components == 1 && srcinfo->num_components == 3) {
        // jpeg_set_colorspace starts the component afresh; its table stays.
        int const table = dstinfo->comp_info[0].quant_tbl_no;
        jpeg_set_colorspace(dstinfo, JCS_GRAYSCALE);
        dstinfo->comp_info[0].quant_tbl_no = table;
    }
    dstinfo->image_width = info->output_width;
    dstinfo->image_height = info->output_height;
    if (g.swap) {
        for (int ci = 0; ci < dstinfo->num_components; ++ci)
            std::swap(dstinfo->comp_info[ci].h_samp_factor, dstinfo->comp_info[ci].v_samp_factor);
        // A transposed block's frequencies are quantised by the transposed
        // table; the compressor has its own copies of the tables.
        for (JQUANT_TBL* table : dstinfo->quant_tbl_ptrs) {
            if (!table) continue;
            for (int r = 0; r < DCTSIZE; ++r)
                for (int c = r + 1; c < DCTSIZE; ++c)
                    std::swap(table->quantval[r * DCTSIZE + c], table->quantval[c * DCTSIZE + r]);
        }
    }
    jpeg_saved_marker_ptr const first = srcinfo->marker_list;
    if (first && first->marker == jpeg::kAPP0 + 1)
        rewrite_exif_size(first->data, first->data_length, info->output_width, info->output_height);
    return info->workspace_coef_arrays ? info->workspace_coef_arrays : src_coef_arrays;
}

void jtransform_execute_transform(jpeg_decompress_struct* srcinfo, jpeg_compress_struct* /*dstinfo*/,
                                  jvirt_barray_ptr* src_coef_arrays, jpeg_transform_info* info)
{
    if (info->transform == JXFORM_WIPE) {
        execute_wipe(srcinfo, src_coef_arrays, info);
    } else if (info->transform == JXFORM_DROP) {
        execute_drop(srcinfo, src_coef_arrays, info);
    } else if (info->workspace_coef_arrays) {
        execute_geometry(srcinfo, src_coef_arrays, info);
    } else if (info->transform == JXFORM_FLIP_H) {
        execute_flip_h_in_place(srcinfo, src_coef_arrays, info);
    }
}

bool jtransform_parse_crop_spec(jpeg_transform_info* info, char const* text)
{
    info->crop = false;
    info->crop_width_set = info->crop_height_set = JCROP_UNSET;
    info->crop_xoffset_set = info->crop_yoffset_set = JCROP_UNSET;
    char const* p = text;
    if (*p >= '0' && *p <= '9' && !read_size(p, info->crop_width, info->crop_width_set)) return false;
    if ((*p == 'x' || *p == 'X') && !read_size(++p, info->crop_height, info->crop_height_set)) return false;
    if ((*p == '+' || *p == '-') && !read_offset(p, info->crop_xoffset, info->crop_xoffset_set)) return false;
    if ((*p == '+' || *p == '-') && !read_offset(p, info->crop_yoffset, info->crop_yoffset_set)) return false;
    if (*p != '\0' || p == text) return false;
    info->crop = true;
    return true;
}

void jcopy_markers_setup(jpeg_decompress_struct* srcinfo, JCOPY_OPTION option)
{
    if (option == JCOPYOPT_COMMENTS || option == JCOPYOPT_ALL || option == JCOPYOPT_ALL_EXCEPT_ICC)
        jpeg_save_markers(srcinfo, jpeg::kCOM, jpeg::kMarkerLengthLimit);
    for (unsigned int i = 0; i < jpeg::kAppCount; ++i) {
        bool const icc = i == 2;  // ICC profiles travel in APP2
        bool const keep = option == JCOPYOPT_ALL || (option == JCOPYOPT_ALL_EXCEPT_ICC && !icc) ||
                          (option == JCOPYOPT_ICC && icc);
        if (keep) jpeg_save_markers(srcinfo, jpeg::kAPP0 + i, jpeg::kMarkerLengthLimit);
    }
}

void jcopy_markers_execute(jpeg_decompress_struct* srcinfo, jpeg_compress_struct* dstinfo,
                           JCOPY_OPTION /*option*/)
{
    for (jpeg_saved_marker_ptr m = srcinfo->marker_list; m; m = m->next) {
        // The compressor writes these itself; a second copy would confuse
        // readers about the colour space.
        bool const jfif = dstinfo->write_JFIF_header && m->marker == jpeg::kAPP0 && m->data_length >= 5 &&
                          std::memcmp(m->data, "JFIF\0", 5) == 0;
        bool const adobe = dstinfo->write_Adobe_marker && m->marker == jpeg::kAPP0 + 14 &&
                           m->data_length >= 5 && std::memcmp(m->data, "Adobe", 5) == 0;
        if (jfif || adobe) continue;
        jpeg_write_marker(dstinfo, m->marker, m->data, m->data_length);
    }
}

// --------------------------------------------------------------- transform

bool transform(unsigned long rightrotatecount, jpegdata_t& out, jpegdata_t const& in)
{
    static JXFORM_CODE const s_codes[4] = {JXFORM_NONE, JXFORM_ROT_90, JXFORM_ROT_180, JXFORM_ROT_270};
    if (rightrotatecount > 3) {
        libutils::error();
        std::cerr << rightrotatecount << ": jpeg transform rightrotate count over." << std::endl;
        return false;
    }
    jpeg_transform_info info{};
    info.transform = s_codes[rightrotatecount];
    out.clear();

    jpeg_decompress_struct src;
    jpeg_compress_struct dst;
    std::memset(&src, 0, sizeof src);
    std::memset(&dst, 0, sizeof dst);
    std::jmp_buf back;
    jpeg_io::error_mgr_t src_err;
    jpeg_io::error_mgr_t dst_err;
    // Both name the input: that is the file the user knows.
    jpeg_io::set_error_mgr(src_err, in, back);
    jpeg_io::set_error_mgr(dst_err, in, back);
    // Whichever object failed, both go: destroying one never created is a
    // no-op, and nothing half-written is handed out.
    if (setjmp(back)) {
        jpeg_destroy_compress(&dst);
        jpeg_destroy_decompress(&src);
        out.clear();
        return false;
    }
    src.err = &src_err.pub;
    jpeg_create_decompress(&src);
    dst.err = &dst_err.pub;
    jpeg_create_compress(&dst);
    jpeg_io::attach_source(&src, in);
    jpeg_save_markers(&src, jpeg::kCOM, jpeg::kMarkerLengthLimit);
    jpeg_read_header(&src, TRUE);
    if (!jtransform_request_workspace(&src, &info)) {
        jpeg_destroy_compress(&dst);
        jpeg_destroy_decompress(&src);
        libutils::error();
        std::cerr << jpeg_io::name_of(&in) << ": transformation is not perfect" << std::endl;
        return false;
    }
    jvirt_barray_ptr* const src_coef = jpeg_read_coefficients(&src);
    // The whole input is read by now. Damaged, it can only give false (see
    // below): found out here, before the turn is worked out and encoded.
    if (src_err.pub.num_warnings != 0) {
        jpeg_destroy_compress(&dst);
        jpeg_destroy_decompress(&src);
        return false;
    }
    jpeg_copy_critical_parameters(&src, &dst);
    jvirt_barray_ptr* const dst_coef = jtransform_adjust_parameters(&src, &dst, src_coef, &info);
    jpeg_io::attach_destination(&dst, out);
    jpeg_write_coefficients(&dst, dst_coef);
    jtransform_execute_transform(&src, &dst, src_coef, &info);
    jpeg_finish_compress(&dst);
    jpeg_finish_decompress(&src);
    long const warnings = src_err.pub.num_warnings + dst_err.pub.num_warnings;
    jpeg_destroy_compress(&dst);
    jpeg_destroy_decompress(&src);
    // A warning, such as the one for a file that ends too soon, means the
    // input was damaged: what came out can't be trusted to be the picture
    // turned.
    if (warnings != 0) {
        out.clear();
        return false;
    }
    return true;
}

}  // namespace libgr
