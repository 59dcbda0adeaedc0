// The cube-map and rectangle texture image objects, checked by reading
// their uploads back from a real context.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "glext/glext.h"

#include "gl/texture.h"
#include "gl/texturecube.h"
#include "gl/texturerect.h"
#include "image/image.h"
#include "tests/support/gl_context.h"

using namespace libgr;

namespace {

// Rows of exactly 3 * width bytes.
image_store_t const s_packed{false, 1};
image_desc_t const s_rgb{IMAGE_FORMAT_RGB, IMAGE_TYPE_UINT, IMAGE_BITS_8};

// Texel n of a picture is (tag, n, 255 - n), so that a texel names its
// picture and its place.
template <class Image>
void fill_tagged(Image& img, std::uint8_t tag)
{
    img.desc = s_rgb;
    img.store = &s_packed;
    ASSERT_TRUE(img.resize(3 * 64, 0));
    for (unsigned n = 0; n < 64; ++n) {
        img.begin()[3 * n] = tag;
        img.begin()[3 * n + 1] = std::uint8_t(n);
        img.begin()[3 * n + 2] = std::uint8_t(255 - n);
    }
}

image2d_t face(std::uint8_t tag)
{
    image2d_t img;
    fill_tagged(img, tag);
    img.m_width = img.m_height = 4;
    return img;
}

GLint level_parameter(GLenum target, GLint level, GLenum pname)
{
    GLint value = 0;
    glGetTexLevelParameteriv(target, level, pname, &value);
    return value;
}

GLint min_filter(GLenum target)
{
    GLint value = 0;
    glGetTexParameteriv(target, GL_TEXTURE_MIN_FILTER, &value);
    return value;
}

// Level `level` of `target` read back as packed RGB.
std::vector<std::uint8_t> read_rgb(GLenum target, GLint level, std::size_t texels)
{
    std::vector<std::uint8_t> rgb(3 * texels);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(target, level, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
    return rgb;
}

std::vector<std::uint8_t> tagged_texels(std::uint8_t tag, unsigned first, unsigned count)
{
    std::vector<std::uint8_t> rgb;
    for (unsigned n = first; n < first + count; ++n)
        rgb.insert(rgb.end(), {tag, std::uint8_t(n), std::uint8_t(255 - n)});
    return rgb;
}

GLenum const s_faces[6] = {
    GL_TEXTURE_CUBE_MAP_POSITIVE_X, GL_TEXTURE_CUBE_MAP_NEGATIVE_X,
    GL_TEXTURE_CUBE_MAP_POSITIVE_Y, GL_TEXTURE_CUBE_MAP_NEGATIVE_Y,
    GL_TEXTURE_CUBE_MAP_POSITIVE_Z, GL_TEXTURE_CUBE_MAP_NEGATIVE_Z,
};

class TextureTargets : public zvtest::FreshGlTest {
protected:
    void TearDown() override
    {
        if (!m_names.empty()) glDeleteTextures(GLsizei(m_names.size()), m_names.data());
        FreshGlTest::TearDown();
    }

    // A fresh texture name bound to `target`.
    void bind_new(GLenum target)
    {
        m_names.push_back(0);
        glGenTextures(1, &m_names.back());
        glBindTexture(target, m_names.back());
    }

    std::vector<GLuint> m_names;
};

texparametercubemap_t const s_cube_parameters = texparametercubemap(GL_LINEAR, GL_NEAREST, 1.0f);

}  // namespace

TEST_F(TextureTargets, CubeMapFacesGoToTheirTargetsWithMipmaps)
{
    image2d_t const faces[6] = {face(10), face(11), face(12), face(13), face(14), face(15)};
    grTextureCubeMap cube;
    cube.setImage(faces, 0, 0);
    cube.setBuildMipmap(true);
    cube.setTextureParameter(&s_cube_parameters);
    grTextureObject object;
    object.Preload(&cube);
    for (int f = 0; f < 6; ++f) {
        EXPECT_EQ(read_rgb(s_faces[f], 0, 16), tagged_texels(std::uint8_t(10 + f), 0, 16)) << "face " << f;
        EXPECT_EQ(level_parameter(s_faces[f], 2, GL_TEXTURE_WIDTH), 1) << "face " << f;
    }
    EXPECT_EQ(min_filter(GL_TEXTURE_CUBE_MAP), GL_LINEAR);
}

TEST_F(TextureTargets, CubeMapWithoutMipmapsAtSizeZeroGivesTheFacesNoRoom)
{
    // The way the photo frame's normalisation map goes up: every face is
    // allocated 0 x 0, so GL refuses each picture, which the parameters'
    // first checkpoint reports; they are applied all the same.
    image2d_t const faces[6] = {face(1), face(2), face(3), face(4), face(5), face(6)};
    grTextureCubeMap cube;
    cube.setImage(faces, 0, 0);
    cube.setTextureParameter(&s_cube_parameters);
    bind_new(GL_TEXTURE_CUBE_MAP);
    testing::internal::CaptureStderr();
    cube.Load();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "grTexParameter(cubemap) start: Error 1281: invalid value\n");
    for (GLenum target : s_faces) EXPECT_EQ(level_parameter(target, 0, GL_TEXTURE_WIDTH), 0);
    EXPECT_EQ(min_filter(GL_TEXTURE_CUBE_MAP), GL_LINEAR);
}

// A rectangle sets its parameters on the 2-D target, and only once it has
// a picture.
TEST_F(TextureTargets, RectangleUploadReadsBackAndSetsTheTwoDimensionalParameters)
{
    texparameter2d_t const parameters =
        texparameter2d(GL_LINEAR, GL_LINEAR, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE, 1.0f);
    grTextureRectangle rectangle;
    rectangle.setTextureParameter(&parameters);
    bind_new(GL_TEXTURE_RECTANGLE);
    bind_new(GL_TEXTURE_2D);
    GLint const untouched = min_filter(GL_TEXTURE_2D);
    rectangle.Load();
    EXPECT_EQ(min_filter(GL_TEXTURE_2D), untouched);
    image2d_t picture;
    fill_tagged(picture, 5);
    picture.m_width = 8;
    picture.m_height = 2;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);  // no unpack state of its own
    rectangle.setImage(picture);
    rectangle.Load();
    EXPECT_EQ(read_rgb(GL_TEXTURE_RECTANGLE, 0, 16), tagged_texels(5, 0, 16));
    EXPECT_EQ(min_filter(GL_TEXTURE_2D), GL_LINEAR);
}
