// Turning and mirroring a JPEG without decoding it: the 8x8 blocks of
// quantised coefficients are moved and sign-flipped, so nothing is lost.
// transform() is the one-call quarter turn; the jtransform_* family below
// is the machinery, driven through libjpeg's coefficient interface.
#ifndef ZANOVIEW_CODECS_TRANSFORM_H
#define ZANOVIEW_CODECS_TRANSFORM_H

#include "codecs/jpeg.h"

// libjpeg's own types, declared here so that the header doesn't drag
// jpeglib.h (which needs <cstdio> first) into every user.
struct jpeg_decompress_struct;
struct jpeg_compress_struct;
typedef struct jvirt_barray_control* jvirt_barray_ptr;

namespace libgr {

// Turns `in` by `rightrotatecount` quarter turns clockwise (0 to 3) into
// `out`. Partial iMCUs at the picture's edges can't move to the far side,
// so for 1 to 3 only pictures of whole iMCUs (8 pixels for gray, 16 for
// 4:2:0) come out exactly turned; see JXFORM_ROT_90 for the rest. The
// output carries no APPn or COM segment: a stale Exif orientation can't
// turn it a second time. False on a count of 4 or more, on any libjpeg
// error, and when libjpeg warned (a truncated file, say); `out` is then
// empty.
bool transform(unsigned long rightrotatecount, jpegdata_t& out, jpegdata_t const& in);

// What to do to the picture. The comment says which output side must be
// a whole number of iMCUs for nothing to stay behind at the edge; see
// jtransform_perfect_transform.
enum JXFORM_CODE {
    JXFORM_NONE = 0,       // copy, or crop only; perfect always
    JXFORM_FLIP_H = 1,     // mirror left to right; needs the width
    JXFORM_FLIP_V = 2,     // mirror top to bottom; needs the height
    JXFORM_TRANSPOSE = 3,  // mirror on the main diagonal; perfect always
    JXFORM_TRANSVERSE = 4, // mirror on the other diagonal; needs both
    JXFORM_ROT_90 = 5,     // clockwise; needs the height
    JXFORM_ROT_180 = 6,    // needs both
    JXFORM_ROT_270 = 7,    // clockwise, a quarter turn left; needs the width
    JXFORM_WIPE = 8,       // blank the crop region out, mid-grey
    JXFORM_DROP = 9,       // put another picture in at the crop offset
};

// How a crop size or offset was given.
enum JCROP_CODE {
    JCROP_UNSET = 0,
    JCROP_POS = 1,      // an offset from the left or top
    JCROP_NEG = 2,      // an offset from the right or bottom
    JCROP_FORCE = 3,    // a size taken as given, not grown to the iMCU grid
    JCROP_REFLECT = 4,  // accepted and treated as JCROP_POS
};

// The request, and what jtransform_request_workspace works out from it.
// Value-initialise it (`jpeg_transform_info info{};`) and set what you need.
struct jpeg_transform_info {
    JXFORM_CODE transform;
    bool perfect;          // refuse when edge blocks would stay behind
    bool trim;             // drop the edge blocks that would stay behind
    bool force_grayscale;  // keep only the luminance of a YCbCr picture
    bool crop;             // the crop_* fields are set
    bool slow_hflip;       // no in-place mirror (it changes the source arrays)

    // The crop region, in the transformed picture's pixels. For WIPE and
    // DROP it is the region that changes, not the output.
    unsigned int crop_width;
    JCROP_CODE crop_width_set;
    unsigned int crop_height;
    JCROP_CODE crop_height_set;
    unsigned int crop_xoffset;
    JCROP_CODE crop_xoffset_set;
    unsigned int crop_yoffset;
    JCROP_CODE crop_yoffset_set;

    // JXFORM_DROP: a decompressor whose coefficients have been read, with
    // the same components and sampling factors as the main picture.
    jpeg_decompress_struct* drop_ptr;
    jvirt_barray_ptr* drop_coef_arrays;
    unsigned int drop_width;   // pixels, set by jtransform_request_workspace
    unsigned int drop_height;  // pixels, set by jtransform_request_workspace

    // Worked out by jtransform_request_workspace.
    int num_components;                       // components written
    jvirt_barray_ptr* workspace_coef_arrays;  // null when done in place
    unsigned int output_width;                // pixels
    unsigned int output_height;               // pixels
    unsigned int x_crop_offset;               // iMCUs
    unsigned int y_crop_offset;               // iMCUs
    int iMCU_sample_width;                    // pixels, of the output
    int iMCU_sample_height;                   // pixels, of the output
};

// Which saved markers go into the output.
enum JCOPY_OPTION {
    JCOPYOPT_NONE = 0,
    JCOPYOPT_COMMENTS = 1,
    JCOPYOPT_ALL = 2,
    JCOPYOPT_ALL_EXCEPT_ICC = 3,
    JCOPYOPT_ICC = 4,
};

// After jpeg_read_header, before jpeg_read_coefficients: sizes the output
// and requests the arrays the operation writes into. False only when
// `perfect` is set and edge blocks would stay behind. A crop region outside
// the picture raises libjpeg's JERR_BAD_CROP_SPEC.
bool jtransform_request_workspace(jpeg_decompress_struct* srcinfo, jpeg_transform_info* info);

// After jpeg_copy_critical_parameters: gives the compressor the output's
// size, sampling factors and quantisation tables (transposed for the
// swapping operations) and returns the arrays it is to write. A first saved
// marker that is Exif gets its pixel width and height tags rewritten.
jvirt_barray_ptr* jtransform_adjust_parameters(jpeg_decompress_struct* srcinfo,
                                               jpeg_compress_struct* dstinfo,
                                               jvirt_barray_ptr* src_coef_arrays,
                                               jpeg_transform_info* info);

// After jpeg_write_coefficients (which only stores the array pointers):
// fills the output arrays.
void jtransform_execute_transform(jpeg_decompress_struct* srcinfo, jpeg_compress_struct* dstinfo,
                                  jvirt_barray_ptr* src_coef_arrays, jpeg_transform_info* info);

// Whether `transform` leaves no edge block behind for a picture of this
// size (pixels) and iMCU (pixels): jtransform_perfect_transform(17, 16, 16,
// 16, JXFORM_ROT_90) is true, as only the height counts there, and false
// with JXFORM_ROT_270. WIPE, DROP and any code above give true.
bool jtransform_perfect_transform(unsigned int image_width, unsigned int image_height,
                                  int mcu_width, int mcu_height, JXFORM_CODE transform);

// Reads "WxH+X+Y" into the crop fields and sets `crop`; every part is
// optional ("+8+0", "x48"), sizes may end in f/F (JCROP_FORCE) or r/R
// (JCROP_REFLECT), and "-" before an offset counts it from the far edge.
// False on anything else, "" included; `info` may then be half filled.
bool jtransform_parse_crop_spec(jpeg_transform_info* info, char const* text);

// Before jpeg_read_header: asks libjpeg to keep the markers `option` copies.
void jcopy_markers_setup(jpeg_decompress_struct* srcinfo, JCOPY_OPTION option);

// After jpeg_write_coefficients: writes the kept markers in file order,
// except a JFIF APP0 or Adobe APP14 that the compressor writes itself.
void jcopy_markers_execute(jpeg_decompress_struct* srcinfo, jpeg_compress_struct* dstinfo,
                           JCOPY_OPTION option);

}  // namespace libgr

#endif
