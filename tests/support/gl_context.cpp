#include "tests/support/gl_context.h"

#include "glext/glext.h"
#include <GLFW/glfw3.h>

namespace zvtest {

// The window is shown: an unmapped window keeps no pixels, and read-back
// tests read what was shown. glfwTerminate is never called: it would unload the GL driver before the
// leak checker could tell the driver's allocations from ours.
GLFWwindow* gl_context_window(int width, int height)
{
    static GLFWwindow* window = [&] {
        if (!glfwInit()) return static_cast<GLFWwindow*>(nullptr);
        GLFWwindow* w = glfwCreateWindow(width, height, "zanoview test", nullptr, nullptr);
        if (w) {
            glfwMakeContextCurrent(w);
            gl_extloader_init();
        }
        return w;
    }();
    return window;
}

void FreshGlTest::SetUp()
{
    GlContextTest::SetUp();
    if (IsSkipped()) return;
    while (glGetError() != GL_NO_ERROR) {}
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    for (GLenum p : {GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_PIXELS, GL_UNPACK_SKIP_ROWS,
                     GL_UNPACK_IMAGE_HEIGHT, GL_UNPACK_SKIP_IMAGES})
        glPixelStorei(p, 0);
    glBindTexture(GL_TEXTURE_2D, 0);
}

void FreshGlTest::TearDown()
{
    if (IsSkipped()) return;
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << "GL error in normal use";
}

}  // namespace zvtest
