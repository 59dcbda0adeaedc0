#include "window/glfwymgr4.h"

#include <GLFW/glfw3.h>

#include "window/keymap.h"

namespace wenk {

// The one manager, alive from before main to process exit.
static glfwyMGR4 s_manager;

// GLFW's callbacks. Each makes its window's context current first, so
// that several windows can share the loop, then calls the application.
struct callbacks {
    static glutyAPI4* enter(GLFWwindow* window)
    {
        glfwMakeContextCurrent(window);
        return glfwyMGR4::getSingleton().api(window);
    }

    static void cursor(GLFWwindow* window, int& x, int& y)
    {
        double cx = 0, cy = 0;
        glfwGetCursorPos(window, &cx, &cy);
        x = static_cast<int>(cx);
        y = static_cast<int>(cy);
    }

    static void display(GLFWwindow* window)
    {
        enter(window)->display();
        glfwSwapBuffers(window);
    }

    static void idle(GLFWwindow* window) { enter(window)->idle(); }

    // width and height are in screen coordinates, not framebuffer pixels.
    static void reshape(GLFWwindow* window, int width, int height)
    {
        enter(window)->reshape(width, height);
        glfwyMGR4::getSingleton().PostRedisplay();
    }

    static void keyboard(GLFWwindow* window, int key, int /*scancode*/, int action, int mods)
    {
        glutyAPI4* const app = enter(window);
        int x, y;
        cursor(window, x, y);
        bool const repeat_on = glfwyMGR4::getSingleton().isKeyRepeat();
        int const k = translate_key(key);
        if (is_special_key(k)) {
            if (action == GLFW_RELEASE) app->specialkeyup(k, x, y);
            else if (action == GLFW_PRESS || repeat_on) app->specialkey(k, x, y);
            return;
        }
        unsigned char const c = key_character(k, mods);
        if (action == GLFW_RELEASE) app->keyboardup(c, x, y);
        else if (action == GLFW_PRESS || repeat_on) app->keyboard(c, x, y);
    }

    static void mouse(GLFWwindow* window, int button, int action, int /*mods*/)
    {
        glutyAPI4* const app = enter(window);
        int x, y;
        cursor(window, x, y);
        if (button <= 2) {
            app->mouse(glut_button(button), action == GLFW_PRESS ? 0 : 1, x, y);
        } else if (action == GLFW_PRESS) {
            // Buttons 3 and 4 are the wheel 0 up and down, 5 and 6 wheel 1.
            app->mousewheel((button - 3) / 2, (button % 2) ? 1 : -1, x, y);
        }
    }

    static void wheel(GLFWwindow* window, double /*dx*/, double dy)
    {
        glutyAPI4* const app = enter(window);
        int x, y;
        cursor(window, x, y);
        app->mousewheel(0, dy < 0 ? -1 : dy > 0 ? 1 : 0, x, y);
    }

    // Reported whether a button is down or not; passivemotion is never used.
    static void motion(GLFWwindow* window, double x, double y)
    {
        enter(window)->motion(static_cast<int>(x), static_cast<int>(y));
    }

    static void drop(GLFWwindow* window, int count, char const** paths)
    {
        enter(window)->drop(count, paths);
    }

    static void bind(GLFWwindow* window)
    {
        glfwSetWindowRefreshCallback(window, display);
        glfwSetWindowSizeCallback(window, reshape);
        glfwSetKeyCallback(window, keyboard);
        glfwSetMouseButtonCallback(window, mouse);
        glfwSetScrollCallback(window, wheel);
        glfwSetCursorPosCallback(window, motion);
        glfwSetDropCallback(window, drop);
    }
};

GLFWwindow* glfwyMGR4::addWindow(glutyAPI4* app, char const* title)
{
    if (!app) return nullptr;
    GLFWwindow* const window = glfwCreateWindow(640, 480, title, nullptr, nullptr);
    if (!window) return nullptr;
    // Both maps are filled before init: init and the callbacks it sets off
    // look the window up.
    apis[window] = app;
    windows[app] = window;
    callbacks::bind(window);
    glfwMakeContextCurrent(window);
    app->init();
    return window;
}

void glfwyMGR4::MainLoop()
{
    while (!exit_requested) {
        for (auto it = apis.begin(); it != apis.end();) {
            GLFWwindow* const window = it->first;
            if (glfwWindowShouldClose(window)) {
                glfwDestroyWindow(window);
                windows.erase(it->second);
                it = apis.erase(it);
                continue;
            }
            if (idle_enabled) callbacks::idle(window);
            if (redisplay_requested) callbacks::display(window);
            ++it;
        }
        if (apis.empty()) return;
        redisplay_requested = false;
        glfwWaitEvents();
    }
}

void glfwyMGR4::PostRedisplay()
{
    redisplay_requested = true;
    // Wakes a sleeping glfwWaitEvents so that the request is seen.
    glfwPostEmptyEvent();
}

void glfwyMGR4::SwapBuffers(glutyAPI4* app)
{
    glfwSwapBuffers(win(app));
}

}  // namespace wenk
