// The window manager of the shim: holds the windows, runs the one event
// loop and draws a window only when something asked for it.
#ifndef ZANOVIEW_WINDOW_GLFWYMGR4_H
#define ZANOVIEW_WINDOW_GLFWYMGR4_H

#include <map>

#include "window/glutyapi.h"
#include "window/singleton.h"

struct GLFWwindow;

namespace wenk {

class glfwyMGR4 : public singleton<glfwyMGR4> {
public:
    // Creates a 640x480 window titled `title`, routes its events to `api`,
    // makes its context current and calls api->init(). Null when `api` is
    // null or GLFW can't make the window.
    GLFWwindow* addWindow(glutyAPI4* api, char const* title);

    // Sleeps in glfwWaitEvents and serves the windows until Exit() was called
    // or every window was closed. Never calls glfwTerminate.
    void MainLoop();

    // The key must be there: both look it up without a check.
    GLFWwindow* win(glutyAPI4* api) const { return windows.find(api)->second; }
    glutyAPI4* api(GLFWwindow* window) const { return apis.find(window)->second; }

    // Ends MainLoop at the bottom of its current pass.
    void Exit() { exit_requested = true; }
    // Asks for one redraw of every window, however often it is called
    // before the loop gets to it.
    void PostRedisplay();
    void SwapBuffers(glutyAPI4* api);

    void KeyRepeat(bool on) { key_repeat = on; }
    bool isKeyRepeat() const { return key_repeat; }
    void IdleOn() { idle_enabled = true; }
    void IdleOff() { idle_enabled = false; }

private:
    std::map<GLFWwindow*, glutyAPI4*> apis;
    std::map<glutyAPI4*, GLFWwindow*> windows;
    bool exit_requested = false;
    bool idle_enabled = true;
    bool key_repeat = false;
    bool redisplay_requested = false;

    friend struct callbacks;
};

}  // namespace wenk

#endif
