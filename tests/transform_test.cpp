// The lossless turn against libjpeg's own coefficients and pixels: pictures
// encoded here are turned, read back block by block and decoded.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <jpeglib.h>

#include "codecs/jpeg.h"
#include "codecs/transform.h"
#include "image/convert.h"
#include "tests/support/jpeg_encode.h"

using namespace libgr;
using bytes_t = std::vector<unsigned char>;

namespace {

// Textured enough that every coefficient position carries something, with
// no symmetry that would hide a misplaced block.
unsigned char sample(int x, int y, int c)
{
    return static_cast<unsigned char>(x * 5 + y * 3 + c * 60 + (x * x + 3 * y * y + x * y) % 29);
}

// With a comment, which the turn must drop.
bytes_t encode(int w, int h, int components)
{
    return zvtest::jpeg_encode(sample, w, h, components, {{JPEG_COM, "note"}});
}

// One component's real blocks (no iMCU padding), row by row.
struct plane_t {
    unsigned int w, h;         // blocks
    int hs, vs;                // sampling factors
    std::vector<JCOEF> coef;   // 64 a block
    JCOEF const* block(unsigned int x, unsigned int y) const { return &coef[(std::size_t(y) * w + x) * DCTSIZE2]; }
};

struct coefs_t {
    unsigned int width, height;  // pixels
    int max_h, max_v;
    std::vector<plane_t> planes;
    bool has_com;
};

coefs_t coefficients(bytes_t const& jpg)
{
    jpeg_decompress_struct d;
    jpeg_error_mgr err;
    d.err = jpeg_std_error(&err);
    jpeg_create_decompress(&d);
    jpeg_mem_src(&d, jpg.data(), jpg.size());
    jpeg_save_markers(&d, JPEG_COM, 0xFFFF);
    jpeg_read_header(&d, TRUE);
    jvirt_barray_ptr* arrays = jpeg_read_coefficients(&d);
    coefs_t r{d.image_width, d.image_height, d.max_h_samp_factor, d.max_v_samp_factor, {}, d.marker_list != nullptr};
    for (int ci = 0; ci < d.num_components; ++ci) {
        jpeg_component_info const& comp = d.comp_info[ci];
        plane_t p{comp.width_in_blocks, comp.height_in_blocks, comp.h_samp_factor, comp.v_samp_factor, {}};
        for (unsigned int y = 0; y < p.h; ++y) {
            JBLOCKROW row = (*d.mem->access_virt_barray)(reinterpret_cast<j_common_ptr>(&d), arrays[ci], y, 1, FALSE)[0];
            for (unsigned int x = 0; x < p.w; ++x) p.coef.insert(p.coef.end(), row[x], row[x] + DCTSIZE2);
        }
        r.planes.push_back(p);
    }
    jpeg_finish_decompress(&d);
    jpeg_destroy_decompress(&d);
    return r;
}

jpegdata_t data_of(bytes_t const& bytes)
{
    jpegdata_t data;
    if (!bytes.empty() && data.resize(bytes.size(), 0)) std::memcpy(data.begin(), bytes.data(), bytes.size());
    data.name = "in.jpg";
    return data;
}

bytes_t turned(unsigned long count, bytes_t const& jpg)
{
    jpegdata_t out;
    EXPECT_TRUE(transform(count, out, data_of(jpg)));
    return bytes_t(out.begin(), out.end());
}

image2d_t decode(bytes_t const& jpg)
{
    jpegdata_t data = data_of(jpg);
    image2d_t image;
    EXPECT_TRUE(jpeginfo_t().decompress(image, data, 0, false, white3ub));
    return image;
}

// Samples may differ by `slack`, no more.
void expect_same_pixels(image2d_t const& a, image2d_t const& b, int slack)
{
    ASSERT_EQ(a.m_width, b.m_width);
    ASSERT_EQ(a.m_height, b.m_height);
    std::size_t const bytes = a.m_width * (a.desc.getPixelBits() / 8);
    for (unsigned int y = 0; y < a.m_height; ++y) {
        for (std::size_t i = 0; i < bytes; ++i) {
            int const pa = a.pixel(0, y)[i], pb = b.pixel(0, y)[i];
            ASSERT_LE(std::abs(pa - pb), slack) << "row " << y << " byte " << i;
        }
    }
}

struct picture_t {
    char const* what;
    int w, h, components;
};

// Whole iMCUs: 8 pixels for gray, 16 for 4:2:0.
picture_t const s_whole[] = {{"gray 32x24", 32, 24, 1}, {"4:2:0 48x32", 48, 32, 3}};
// Partial iMCUs on both edges, and partial blocks inside them.
picture_t const s_partial[] = {{"gray 27x13", 27, 13, 1}, {"4:2:0 45x37", 45, 37, 3}};

}  // namespace

TEST(QuarterTurn, DecodesAsTheTurnedPixelsAndAFullTurnGivesBackTheCoefficients)
{
    for (picture_t const& p : s_whole) {
        SCOPED_TRACE(p.what);
        bytes_t const jpg = encode(p.w, p.h, p.components);
        image2d_t const original = decode(jpg);
        coefs_t const coefs = coefficients(jpg);
        for (unsigned long count = 1; count <= 3; ++count) {
            SCOPED_TRACE(count);
            bytes_t const once = turned(count, jpg);
            image2d_t expected;
            ASSERT_TRUE(rotate(count, expected, original));
            // libjpeg's integer IDCT rounds its row and column passes
            // differently, and 4:2:0 upsampling biases alternate, so a turned
            // block decodes within a step or three of the turned pixels; a
            // misplaced block or a wrong sign is off by far more.
            expect_same_pixels(expected, decode(once), p.components == 1 ? 1 : 3);
            coefs_t const back = coefficients(turned(4 - count, once));
            ASSERT_EQ(coefs.planes.size(), back.planes.size());
            for (std::size_t ci = 0; ci < back.planes.size(); ++ci)
                EXPECT_EQ(coefs.planes[ci].coef, back.planes[ci].coef) << "plane " << ci;
        }
    }
}

TEST(QuarterTurn, ZeroKeepsPixelsAndDropsMarkers)
{
    for (picture_t const& p : s_partial) {
        SCOPED_TRACE(p.what);
        bytes_t const jpg = encode(p.w, p.h, p.components);
        ASSERT_TRUE(coefficients(jpg).has_com);
        bytes_t const copy = turned(0, jpg);
        EXPECT_FALSE(coefficients(copy).has_com);
        expect_same_pixels(decode(jpg), decode(copy), 0);
    }
}

// The partial iMCU at a mirrored edge can't move to the far side: it stays
// where it is and is only transposed. Checked block by block against the
// rules written out per turn.
TEST(EdgeBlocks, StayInPlaceOnPartialIMcus)
{
    for (picture_t const& p : s_partial) {
        SCOPED_TRACE(p.what);
        bytes_t const jpg = encode(p.w, p.h, p.components);
        coefs_t const src = coefficients(jpg);
        for (unsigned long count = 1; count <= 3; ++count) {
            SCOPED_TRACE(count);
            coefs_t const dst = coefficients(turned(count, jpg));
            bool const swap = count != 2;
            ASSERT_EQ(swap ? src.height : src.width, dst.width);
            ASSERT_EQ(swap ? src.width : src.height, dst.height);
            for (std::size_t ci = 0; ci < dst.planes.size(); ++ci) {
                plane_t const& s = src.planes[ci];
                plane_t const& d = dst.planes[ci];
                ASSERT_EQ(swap ? s.h : s.w, d.w);
                ASSERT_EQ(swap ? s.w : s.h, d.h);
                ASSERT_EQ(swap ? s.vs : s.hs, d.hs);
                // Output width and height in blocks, down to whole iMCUs.
                unsigned int const W = dst.width / (8 * dst.max_h) * d.hs;
                unsigned int const H = dst.height / (8 * dst.max_v) * d.vs;
                for (unsigned int y = 0; y < d.h; ++y) {
                    for (unsigned int x = 0; x < d.w; ++x) {
                        JCOEF const* got = d.block(x, y);
                        for (int i = 0; i < 8; ++i) {
                            for (int j = 0; j < 8; ++j) {
                                // got(row j, column i)
                                int want = 0;
                                if (count == 1) {
                                    want = x < W ? s.block(y, W - 1 - x)[i * 8 + j] * (i % 2 ? -1 : 1)
                                                 : s.block(y, x)[i * 8 + j];
                                } else if (count == 3) {
                                    want = y < H ? s.block(H - 1 - y, x)[i * 8 + j] * (j % 2 ? -1 : 1)
                                                 : s.block(y, x)[i * 8 + j];
                                } else {
                                    int const r = j, c = i;
                                    bool const mx = x < W, my = y < H;
                                    want = s.block(mx ? W - 1 - x : x, my ? H - 1 - y : y)[r * 8 + c];
                                    if ((mx && c % 2) != (my && r % 2)) want = -want;
                                }
                                ASSERT_EQ(want, got[j * 8 + i])
                                    << "plane " << ci << " block " << x << "," << y << " coef " << j << "," << i;
                            }
                        }
                    }
                }
            }
        }
    }
}

// Run under the sanitizer build: every refusal must free both codec objects.
TEST(TransformRefuses, CountsOfFourOrMoreAndDamagedOrForeignInput)
{
    bytes_t const jpg = encode(48, 32, 3);
    bytes_t const cut_data(jpg.begin(), jpg.begin() + jpg.size() * 2 / 3);  // a warning, not an error
    bytes_t const cut_header(jpg.begin(), jpg.begin() + 40);
    bytes_t bad_sof = jpg;
    for (std::size_t i = 0; i + 1 < bad_sof.size(); ++i)
        if (bad_sof[i] == 0xFF && bad_sof[i + 1] == 0xC0) bad_sof[i + 5] = bad_sof[i + 6] = 0;  // height 0
    bytes_t const* const inputs[] = {&cut_data, &cut_header, &bad_sof, &jpg};
    for (bytes_t const* const& b : inputs) {
        SCOPED_TRACE(&b - inputs);
        jpegdata_t out;
        testing::internal::CaptureStderr();
        bool const ok = transform(1, out, data_of(*b));
        testing::internal::GetCapturedStderr();
        EXPECT_EQ(b == &jpg, ok);
        EXPECT_EQ(b == &jpg, !out.empty());
    }
    jpegdata_t out;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(transform(2, out, jpegdata_t()));
    EXPECT_NE(std::string::npos, testing::internal::GetCapturedStderr().find("(unnamed): error detected.\n"));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(transform(4, out, data_of(jpg)));
    EXPECT_EQ("4: jpeg transform rightrotate count over.\n", testing::internal::GetCapturedStderr());
}

TEST(PerfectTransform, CountsOnlyTheSidesAMirrorMoves)
{
    EXPECT_TRUE(jtransform_perfect_transform(17, 16, 16, 16, JXFORM_ROT_90));
    EXPECT_FALSE(jtransform_perfect_transform(17, 16, 16, 16, JXFORM_ROT_270));
    EXPECT_FALSE(jtransform_perfect_transform(16, 17, 16, 16, JXFORM_ROT_180));
    EXPECT_TRUE(jtransform_perfect_transform(17, 17, 16, 16, JXFORM_TRANSPOSE));
    EXPECT_TRUE(jtransform_perfect_transform(17, 17, 16, 16, JXFORM_DROP));
}

TEST(CropText, ReadsEachPartOptionally)
{
    jpeg_transform_info info{};
    ASSERT_TRUE(jtransform_parse_crop_spec(&info, "64x48f+8-16"));
    EXPECT_TRUE(info.crop);
    EXPECT_EQ(64u, info.crop_width);
    EXPECT_EQ(JCROP_FORCE, info.crop_height_set);
    EXPECT_EQ(JCROP_NEG, info.crop_yoffset_set);
    EXPECT_EQ(16u, info.crop_yoffset);
    ASSERT_TRUE(jtransform_parse_crop_spec(&info, "x7r"));
    EXPECT_EQ(JCROP_UNSET, info.crop_width_set);
    EXPECT_EQ(JCROP_REFLECT, info.crop_height_set);
    for (char const* bad : {"", "64x", "+1+2+3", "99999999999"})
        EXPECT_FALSE(jtransform_parse_crop_spec(&info, bad)) << bad;
}
