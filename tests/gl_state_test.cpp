// The GL state keepers, the error report, the pixel-store setters and the
// read-back, on a real context.
#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <vector>

#include "glext/glext.h"
#include <GLFW/glfw3.h>

#include "gl/beginner.h"
#include "gl/error.h"
#include "gl/matrixmgr.h"
#include "gl/pixelstore.h"
#include "gl/readpixels.h"
#include "gl/wrappers.h"
#include "tests/support/gl_context.h"
#include "tests/support/scratch.h"

using namespace libgr;

namespace {

GLint get_integer(GLenum name)
{
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

matrix3w_t current(GLenum name)
{
    matrix3w_t m;
    grGet(name, m);
    return m;
}

bool same(matrix3w_t const& a, matrix3w_t const& b)
{
    for (int i = 0; i < 16; ++i)
        if (a.data()[i] != b.data()[i]) return false;
    return true;
}

using zvtest::Capture;

using GlState = zvtest::FreshGlTest;

}  // namespace

TEST_F(GlState, KeeperAndPusherRestoreTheMatrixAndTheMode)
{
    {
        grMatrixModeKeeper keep(GL_PROJECTION);
        EXPECT_EQ(get_integer(GL_MATRIX_MODE), GL_PROJECTION);
    }
    EXPECT_EQ(get_integer(GL_MATRIX_MODE), GL_MODELVIEW);
    glTranslatef(1, 2, 3);
    matrix3w_t const before = current(GL_MODELVIEW_MATRIX);
    {
        grMatrixPusher keep(GL_MODELVIEW);
        glScalef(2, 2, 2);
        EXPECT_FALSE(same(current(GL_MODELVIEW_MATRIX), before));
    }
    EXPECT_TRUE(same(current(GL_MODELVIEW_MATRIX), before));

    glMatrixMode(GL_MODELVIEW);
    {
        grMatrixPusher keep(GL_TEXTURE);
        glRotatef(30, 0, 0, 1);
        EXPECT_EQ(get_integer(GL_MATRIX_MODE), GL_TEXTURE);
    }
    EXPECT_EQ(get_integer(GL_MATRIX_MODE), GL_MODELVIEW);
    EXPECT_TRUE(same(current(GL_TEXTURE_MATRIX), Imtx)) << "the texture matrix was not popped";
    EXPECT_FALSE(grPrintError("pusher"));
}

// Nothing in the viewer nests that deep; one overflow shows the software
// stack takes over and gives the matrices back in order.
TEST_F(GlState, EnhancedPusherOverflowsIntoSoftware)
{
    grMatrixPusher::setEnhanceMode(true);
    GLint const limit = get_integer(GL_MAX_MODELVIEW_STACK_DEPTH);
    while (glGetError() != GL_NO_ERROR) {}  // the colour matrix stack is not offered
    std::vector<std::unique_ptr<grMatrixPusher>> pushers;
    std::vector<matrix3w_t> expected;
    for (GLint i = 0; i < limit + 2; ++i) {
        glTranslatef(1, 0, 0);
        expected.push_back(current(GL_MODELVIEW_MATRIX));
        pushers.push_back(std::make_unique<grMatrixPusher>(GL_MODELVIEW));
    }
    EXPECT_FALSE(grPrintError("overflow")) << "the stack overflowed in GL";
    while (!pushers.empty()) {
        glLoadIdentity();
        pushers.pop_back();
        EXPECT_TRUE(same(current(GL_MODELVIEW_MATRIX), expected[pushers.size()])) << pushers.size();
    }
    grMatrixPusher::setEnhanceMode(false);
}

TEST_F(GlState, UnknownMatrixModeFallsBackToModelview)
{
    Capture out(std::cout);
    EXPECT_EQ(&grMatrixPusher::getMatrixManager(0x1234), &grMatrixPusher::g_modelview_matrix);
    EXPECT_EQ(out.text(), "1234: unknown enum! fall back to modelview.\n");
    std::cout << std::dec;
}

TEST_F(GlState, PrintErrorReportsOneErrorUnderItsLabel)
{
    glMatrixMode(GL_LINE);  // invalid enum
    {
        Capture err(std::cerr);
        EXPECT_TRUE(grPrintError("after Draw()"));
        EXPECT_EQ(err.text(), "after Draw(): Error 1280: invalid enumerant\n");
    }
    Capture err(std::cerr);
    EXPECT_FALSE(grPrintError("clean"));
    EXPECT_EQ(err.text(), "");
}

TEST_F(GlState, PixelStoreTakesTheRecordsFields)
{
    image_store_t const store{true, 1};
    grPixelStoreUnpack(&store);
    grPixelStoreUnpack(image_window2d_t{300, 7, 9});
    EXPECT_EQ(get_integer(GL_UNPACK_ALIGNMENT), 1);
    EXPECT_EQ(get_integer(GL_UNPACK_SKIP_PIXELS), 7);
    grPixelStorePack(image_window3d_t{10, 20, 1, 2, 3});
    EXPECT_EQ(get_integer(GL_PACK_SKIP_IMAGES), 3);

    image_store_t const plain;
    grPixelStoreUnpack(&plain);
    grPixelStoreUnpack(image_window2d_t{});
    grPixelStorePack(image_window3d_t{});
    EXPECT_FALSE(grPrintError("pixel store"));
}

TEST(PixelTypes, SizesAndTypesGoBothWaysAndOtherSizesHaveNoType)
{
    for (unsigned long size : {1ul, 2ul, 4ul, 8ul}) EXPECT_EQ(grTypeToSize(grSizeToType(size)), size);
    for (unsigned long size : {0ul, 3ul, 9ul}) EXPECT_EQ(grSizeToType(size), 0u) << size;
}

// Reading the front buffer after a swap needs softpipe; the test runs
// with GALLIUM_DRIVER=softpipe.
TEST_F(GlState, ReadPixelsGivesTheFrontBufferBottomRowFirst)
{
    GLint viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    ASSERT_GT(viewport[2], 8);
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    // A red bottom half.
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glDisable(GL_TEXTURE_2D);
    glColor3f(1, 0, 0);
    {
        grBeginner quad(GL_QUADS);
        glVertex2f(-1, -1);
        glVertex2f(1, -1);
        glVertex2f(1, 0);
        glVertex2f(-1, 0);
    }
    glfwSwapBuffers(zvtest::gl_context_window());

    image2d_t image;
    ASSERT_TRUE(grReadPixelsRGB(image));
    EXPECT_EQ(image.m_width, std::uint32_t(viewport[2]));
    EXPECT_EQ(image.m_height, std::uint32_t(viewport[3]));
    EXPECT_EQ(image.desc, (image_desc_t{IMAGE_FORMAT_RGB, IMAGE_TYPE_UINT, IMAGE_BITS_8}));
    unsigned char const* bottom = image.begin();
    unsigned char const* top = image.pixel(0, image.m_height - 1);
    EXPECT_EQ(bottom[0], 255);
    EXPECT_EQ(top[0], 0);

    EXPECT_FALSE(grPrintError("read back"));
}
