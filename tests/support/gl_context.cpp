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

}  // namespace zvtest
