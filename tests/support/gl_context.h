// A current OpenGL context for tests that call GL in-process: one window,
// made once, with every entry point loaded.
#ifndef ZANOVIEW_TESTS_SUPPORT_GL_CONTEXT_H
#define ZANOVIEW_TESTS_SUPPORT_GL_CONTEXT_H

#include <gtest/gtest.h>

struct GLFWwindow;

namespace zvtest {

// The window whose context is current, or null without an X display or an
// OpenGL context on it. The first call makes it and runs gl_extloader_init.
GLFWwindow* gl_context_window(int width = 64, int height = 64);

// Skips the test when there is no context to be had.
class GlContextTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!gl_context_window()) GTEST_SKIP() << "no X display, or no OpenGL context on it";
    }
};

// The tests of one context share its state: each starts with no error
// pending, the identity on the modelview stack, the unpack state at its
// defaults (uploads leave their windows in it) and no 2-D texture bound,
// and fails if it leaves a GL error behind.
class FreshGlTest : public GlContextTest {
protected:
    void SetUp() override;
    void TearDown() override;
};

}  // namespace zvtest

#endif
