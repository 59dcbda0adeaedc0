#include "gl/format.h"

#include <initializer_list>
#include <iostream>
#include <sstream>

#include <gtest/gtest.h>

#include "glext/glext.h"
#include "image/enums.h"

namespace {

using namespace libgr;

struct case_t {
    image_desc_t desc;
    gl_loading_format_t want;
};

// Catches std::cerr and puts back its buffer, its flags and the compression
// flag, so a refusal's lasting hexadecimal mode can't leak into other tests.
class Resolve : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_old_buf = std::cerr.rdbuf(m_err.rdbuf());
        m_old_flags = std::cerr.flags();
        m_old_compression = is_GL_ARB_texture_compression_supported;
        is_GL_ARB_texture_compression_supported = 0;
    }
    void TearDown() override
    {
        std::cerr.rdbuf(m_old_buf);
        std::cerr.flags(m_old_flags);
        is_GL_ARB_texture_compression_supported = m_old_compression;
    }

    static void expect(std::initializer_list<case_t> cases, bool compress = false)
    {
        for (case_t const& c : cases) {
            SCOPED_TRACE(::testing::Message() << c.desc.format << ' ' << c.desc.type << ' ' << c.desc.bits);
            gl_loading_format_t got{};
            ASSERT_TRUE(grConvertImageFormatToGlFormatFULL(&got, c.desc, compress));
            EXPECT_EQ(got.internalformat, c.want.internalformat);
            EXPECT_EQ(got.format, c.want.format);
            EXPECT_EQ(got.type, c.want.type);
        }
    }

    static bool accepted(e_image_format_t f, e_image_type_t t, e_image_bits_t b)
    {
        gl_loading_format_t out{};
        return grConvertImageFormatToGlFormatFULL(&out, {f, t, b}, false);
    }

    std::ostringstream m_err;
    std::streambuf* m_old_buf = nullptr;
    std::ios_base::fmtflags m_old_flags{};
    std::int32_t m_old_compression = 0;
};

constexpr e_image_type_t SINT = IMAGE_TYPE_SINT;
constexpr e_image_type_t UINT = IMAGE_TYPE_UINT;
constexpr e_image_type_t FLOAT = IMAGE_TYPE_FLOAT;

using Resolution = Resolve;

// What the decoders produce, then the type, size and packing choices.
TEST_F(Resolution, PicksTheRowByTypeAndBits)
{
    expect({
        {{IMAGE_FORMAT_RGB, UINT, IMAGE_BITS_8}, {GL_RGB8, GL_RGB, GL_UNSIGNED_BYTE}},
        {{IMAGE_FORMAT_BGR, UINT, IMAGE_BITS_8}, {GL_RGB, GL_BGR, GL_UNSIGNED_BYTE}},
        {{IMAGE_FORMAT_GRAYSCALE, UINT, IMAGE_BITS_8}, {GL_LUMINANCE8, GL_LUMINANCE, GL_UNSIGNED_BYTE}},
        {{IMAGE_FORMAT_RGB, SINT, IMAGE_BITS_8}, {GL_RGB8, GL_RGB, GL_BYTE}},
        {{IMAGE_FORMAT_BGR, SINT, IMAGE_BITS_R3G3B2}, {GL_R3_G3_B2, GL_BGR, GL_UNSIGNED_BYTE_2_3_3_REV}},
        // YCbCr is handed over unconverted, so it borrows the RGB and RGBA rows.
        {{IMAGE_FORMAT_YCbCr, FLOAT, IMAGE_BITS_16}, {GL_RGB16F, GL_RGB, GL_HALF_FLOAT}},
        {{IMAGE_FORMAT_YCbCrA, UINT, IMAGE_BITS_16}, {GL_RGBA16, GL_RGBA, GL_UNSIGNED_SHORT}},
    });
}

// These look like slips and must stay: they decide what some images become.
TEST_F(Resolution, KeepsTheOddRows)
{
    expect({
        {{IMAGE_FORMAT_GRAYSCALE_ALPHA, UINT, IMAGE_BITS_L12A4}, {GL_LUMINANCE12_ALPHA4, GL_LUMINANCE_ALPHA, GL_BITMAP}},
        {{IMAGE_FORMAT_DEPTH, FLOAT, IMAGE_BITS_24}, {GL_DEPTH_COMPONENT24, GL_DEPTH_COMPONENT, GL_DEPTH_COMPONENT}},
        {{IMAGE_FORMAT_BGRA, UINT, IMAGE_BITS_4}, {GL_RGB4, GL_BGRA, GL_UNSIGNED_SHORT_4_4_4_4_REV}},
        {{IMAGE_FORMAT_ALPHA, SINT, IMAGE_BITS_8}, {GL_ALPHA, GL_ALPHA, GL_BYTE}},
        {{IMAGE_FORMAT_ALPHA, SINT, IMAGE_BITS_16}, {GL_ALPHA16, GL_ALPHA, GL_SHORT}},
        {{IMAGE_FORMAT_GRAYSCALE, SINT, IMAGE_BITS_12}, {GL_LUMINANCE12, GL_LUMINANCE, GL_SHORT}},
        {{IMAGE_FORMAT_INTENSITY, UINT, IMAGE_BITS_12}, {GL_INTENSITY12, GL_INTENSITY, GL_UNSIGNED_SHORT}},
    });
}

using Refusal = Resolve;

TEST_F(Refusal, CoversFormatsAndCombinationsWithoutAnAcceptedRow)
{
    // RG and DEPTH_STENCIL have tables, yet never reach them.
    EXPECT_FALSE(accepted(IMAGE_FORMAT_RG, UINT, IMAGE_BITS_8));
    EXPECT_FALSE(accepted(IMAGE_FORMAT_DEPTH_STENCIL, UINT, IMAGE_BITS_D24S8));
    EXPECT_FALSE(accepted(static_cast<e_image_format_t>(40), UINT, IMAGE_BITS_8));
    EXPECT_FALSE(grConvertImageFormatToGlFormatFULL(nullptr, {IMAGE_FORMAT_RGB, UINT, IMAGE_BITS_8}, false));
    // 24 counts bits per component: a 24-bit RGB pixel is RGB/8.
    EXPECT_FALSE(accepted(IMAGE_FORMAT_RGB, UINT, IMAGE_BITS_24));
    // Twelve-bit luminance and intensity take opposite signs.
    EXPECT_FALSE(accepted(IMAGE_FORMAT_GRAYSCALE, UINT, IMAGE_BITS_12));
    EXPECT_FALSE(accepted(IMAGE_FORMAT_INTENSITY, SINT, IMAGE_BITS_12));
    // YCbCr422 has no table: it fails with only the pixel format written.
    gl_loading_format_t out{0, 0, 0};
    EXPECT_FALSE(grConvertImageFormatToGlFormatFULL(&out, {IMAGE_FORMAT_YCbCr422, UINT, IMAGE_BITS_8}, false));
    EXPECT_EQ(out.format, GLenum{GL_RGB});
    EXPECT_EQ(out.internalformat, 0u);
}

TEST_F(Refusal, WritesFourLinesAndLeavesTheStreamInHex)
{
    EXPECT_FALSE(accepted(IMAGE_FORMAT_RG, SINT, IMAGE_BITS_16));
    std::cerr << 255;
    EXPECT_EQ(m_err.str(),
              "Not supported image format!\n"
              "imgformat: IMAGE_FORMAT_RG\n"
              "imgtype: IMAGE_TYPE_SINT\n"
              "imgbits: IMAGE_BITS_16\n"
              "ff");
}

using InternalCompression = Resolve;

TEST_F(InternalCompression, AppliesToPlainAlphaOnlyWithTheExtension)
{
    is_GL_ARB_texture_compression_supported = 1;
    expect({
        {{IMAGE_FORMAT_ALPHA, UINT, IMAGE_BITS_8}, {GL_COMPRESSED_ALPHA, GL_ALPHA, GL_UNSIGNED_BYTE}},
        {{IMAGE_FORMAT_RGB, UINT, IMAGE_BITS_8}, {GL_RGB8, GL_RGB, GL_UNSIGNED_BYTE}},
    }, true);
    expect({{{IMAGE_FORMAT_ALPHA, UINT, IMAGE_BITS_8}, {GL_ALPHA, GL_ALPHA, GL_UNSIGNED_BYTE}}}, false);

    is_GL_ARB_texture_compression_supported = 0;
    expect({{{IMAGE_FORMAT_ALPHA, UINT, IMAGE_BITS_8}, {GL_ALPHA, GL_ALPHA, GL_UNSIGNED_BYTE}}}, true);
}

}  // namespace
