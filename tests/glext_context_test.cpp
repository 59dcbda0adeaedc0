// The loader on a real context (llvmpipe under Xvfb): the flags the program
// reads, pointers that reach the driver, and GLU working beside our globals.
#include "glext/glext.h"
#include "glext/glu.h"

#include <dlfcn.h>

#include <gtest/gtest.h>

#include <GLFW/glfw3.h>

#include "tests/support/gl_context.h"

namespace {

using LoadedContext = zvtest::GlContextTest;
using GluBesideLoader = LoadedContext;

TEST_F(LoadedContext, SetsTheFlagsTheProgramReads)
{
    EXPECT_EQ(is_gl_extloader_inited, 1);
    EXPECT_EQ(is_GL_VERSION_3_0_supported, 1);
    EXPECT_EQ(is_GL_ARB_fragment_program_supported, 1);
    EXPECT_EQ(is_GL_ARB_vertex_program_supported, 1);
    EXPECT_EQ(is_GL_ARB_multitexture_supported, 1);
    EXPECT_EQ(is_GL_ARB_texture_cube_map_supported, 1);
    EXPECT_EQ(is_GL_ARB_texture_env_combine_supported, 1);
    EXPECT_EQ(is_GL_ARB_texture_env_dot3_supported, 1);
    EXPECT_EQ(is_GL_EXT_bgra_supported, 1);
    EXPECT_EQ(is_GL_SGIS_generate_mipmap_supported, 1);
    // llvmpipe leaves out the imaging subset, and nothing sets 1.0.
    EXPECT_EQ(is_GL_ARB_imaging_supported, 0);
    EXPECT_EQ(is_GL_VERSION_1_0_supported, 0);
}

TEST_F(LoadedContext, ResolvesOnlyWhatTheContextOffers)
{
    EXPECT_NE(glBegin, nullptr);
    EXPECT_NE(glGetStringi, nullptr);
    EXPECT_NE(glMultiTexCoord3f, nullptr);
    EXPECT_NE(glActiveTextureARB, nullptr);
    EXPECT_NE(glProgramStringARB, nullptr);
    EXPECT_NE(glGetTextureImage, nullptr);  // 4.5, which llvmpipe offers
    // No driver of ours offers 3dfx's buffer masks.
    ASSERT_EQ(is_GL_3DFX_tbuffer_supported, 0);
    EXPECT_EQ(glTbufferMask3DFX, nullptr);
}

TEST_F(GluBesideLoader, BuildsMipmapsThroughLibGL)
{
    GLubyte image[4 * 4 * 4];
    for (int i = 0; i < 16; ++i) {
        image[4 * i + 0] = 200;
        image[4 * i + 1] = 100;
        image[4 * i + 2] = 50;
        image[4 * i + 3] = 255;
    }
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    ASSERT_EQ(gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, 4, 4, GL_RGBA, GL_UNSIGNED_BYTE, image),
              0);

    GLint width = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 2 /*level*/, GL_TEXTURE_WIDTH, &width);
    EXPECT_EQ(width, 1);
    GLubyte texel[4] = {};
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 2 /*level*/, GL_RGBA, GL_UNSIGNED_BYTE, texel);
    EXPECT_EQ(texel[0], 200);
    EXPECT_EQ(texel[1], 100);
    EXPECT_EQ(texel[2], 50);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    glDeleteTextures(1, &texture);
}

TEST_F(GluBesideLoader, SeesLibGLFunctionsNotOurPointers)
{
    // libGLU's references to glBegin and glTexImage2D make the linker export
    // a global of that name from the executable, unless it is hidden.
    EXPECT_NE(dlsym(RTLD_DEFAULT, "glBegin"), reinterpret_cast<void*>(&glBegin));
    EXPECT_NE(dlsym(RTLD_DEFAULT, "glTexImage2D"), reinterpret_cast<void*>(&glTexImage2D));
}

}  // namespace
