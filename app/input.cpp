// The application window's answers to keys, buttons, the wheel and dropped
// files: every command of the viewer comes through here. Keys outside the
// two tables do nothing and ask for no redraw.
#include "app/viewwindow.h"

#include <iostream>

#include "glext/glext.h"
#include <GLFW/glfw3.h>

#include "geometry/vector.h"
#include "options/option.h"
#include "window/glfwymgr4.h"

#include "app/workarea.h"

namespace zanoview2 {

namespace {

// Characters the shim hands over for keys that have no printable form.
constexpr unsigned char kBackspace = 8;
constexpr unsigned char kEnter = 13;
constexpr unsigned char kEscape = 27;
constexpr unsigned char kDelete = 127;

constexpr float kRotateStep = 5.0f;      // degrees per key press
constexpr float kZoomStep = 0.25f;       // powers of two per key press or wheel notch
constexpr float kDigitZoomStep = 0.5f;   // powers of two per digit
constexpr float kCursorStep = 10.0f;     // scene units per arrow key press
constexpr float kDragZoomRate = 0.01f;   // powers of two per pixel
constexpr float kDragRotateRate = 0.25f; // degrees per pixel

wenk::glfwyMGR4& manager() { return wenk::glfwyMGR4::getSingleton(); }

// Asked of GLFW at the moment of the call rather than taken from the
// event's modifiers, so that a held Space keeps its step size while Shift
// is pressed or let go during the repeat.
bool shift_down(GLFWwindow* w)
{
    return glfwGetKey(w, GLFW_KEY_LEFT_SHIFT) == GLFW_PRESS || glfwGetKey(w, GLFW_KEY_RIGHT_SHIFT) == GLFW_PRESS;
}

}  // namespace

void ViewWindow::keyboard(unsigned char key, int, int)
{
    zanolib::option_t& option = zanolib::g_option;
    GLFWwindow* const w = window();
    bool redisplay = true;
    switch (key) {
    case kBackspace:
        backward(shift_down(w) ? 10 : 1);
        redisplay = false;
        break;
    case kEnter:
        go_center();
        break;
    case kEscape:
    case 'q':
        manager().Exit();
        redisplay = false;
        break;
    case ' ':
        forward(shift_down(w) ? 10 : 1);
        redisplay = false;
        break;
    case '*':
    case '\\':
        scene.Rotate(-kRotateStep, 0.0f);
        break;
    case '-':
        scene.clrRotate();
        break;
    case '/':
        scene.Rotate(kRotateStep, 0.0f);
        break;
    case '0': case '1': case '2': case '3': case '4':
    case '5': case '6': case '7': case '8': case '9': {
        // An absolute size, so that repeats don't add up: "0" is one picture
        // pixel per framebuffer pixel, each digit after it halves the area.
        float const v = float(key - '0') * kDigitZoomStep;
        if (option.debug) std::cout << "zoom value: " << v << std::endl;
        scene.clrZoom();
        scene.Zoom(-v, 0.0f);
        break;
    }
    case 'R':
        glfwIconifyWindow(w);
        glfwRestoreWindow(w);
        redisplay = false;
        break;
    case 'W':
        menu_edit_writedefault();
        redisplay = false;
        break;
    case 'd':
    case kDelete:
        menu_edit_delete_zvwfile();
        redisplay = false;
        break;
    case 'f': {
        int width = 0, height = 0, x = 0, y = 0;
        glfwGetWindowSize(w, &width, &height);
        glfwGetWindowPos(w, &x, &y);
        int area_x = 0, area_y = 0, area_width = 0, area_height = 0;
        glfwGetMonitorWorkarea(glfwGetPrimaryMonitor(), &area_x, &area_y, &area_width, &area_height);
        if (!(option.wintype & kWorkAreaBit)) {
            winwidth = width;
            winheight = height;
            winx = x;
            winy = y;
            option.wintype |= kWorkAreaBit;
            // The work area's own origin is not used: the window goes to 0,0.
            glfwSetWindowPos(w, 0, 0);
            glfwSetWindowSize(w, area_width, area_height);
        } else {
            option.wintype &= ~kWorkAreaBit;
            // With nothing kept only the flag changes.
            if (winwidth != 0 && winheight != 0) {
                glfwSetWindowSize(w, winwidth, winheight);
                glfwSetWindowPos(w, winx, winy);
            }
        }
        break;
    }
    case 'g':
        scene.toggleSmooth();
        break;
    case 'r':
        reload();
        redisplay = false;
        break;
    case 's':
        menu_file_savejpeg();
        redisplay = false;
        break;
    case 'w':
        menu_edit_save_zvwfile();
        redisplay = false;
        break;
    default:
        redisplay = false;
        break;
    }
    if (redisplay) manager().PostRedisplay();
}

void ViewWindow::specialkey(int key, int, int)
{
    switch (key) {
    case GLFW_KEY_INSERT:
        menu_edit_save_zvwfile();
        break;
    case GLFW_KEY_RIGHT:
    case GLFW_KEY_LEFT:
    case GLFW_KEY_DOWN:
    case GLFW_KEY_UP:
        cursor_move(key);
        manager().PostRedisplay();
        break;
    case GLFW_KEY_PAGE_UP:
        scene.Zoom(kZoomStep, 0.0f);
        manager().PostRedisplay();
        break;
    case GLFW_KEY_PAGE_DOWN:
        scene.Zoom(-kZoomStep, 0.0f);
        manager().PostRedisplay();
        break;
    case GLFW_KEY_HOME:
        first();
        break;
    case GLFW_KEY_END:
        last();
        break;
    case GLFW_KEY_F5:
        reload();
        break;
    default:
        break;
    }
}

void ViewWindow::cursor_move(int key)
{
    libgr::direction3_t step{0.0f, 0.0f, 0.0f};
    switch (key) {
    case GLFW_KEY_RIGHT: step = {kCursorStep, 0.0f, 0.0f}; break;
    case GLFW_KEY_LEFT: step = {-kCursorStep, 0.0f, 0.0f}; break;
    case GLFW_KEY_DOWN: step = {0.0f, -kCursorStep, 0.0f}; break;
    case GLFW_KEY_UP: step = {0.0f, kCursorStep, 0.0f}; break;
    default: break;
    }
    // As a camera the view moves with the arrow, so the picture moves
    // against it; panning moves the picture itself.
    if (zanolib::g_option.cursor_movement == 1) step = step * -1.0f;
    scene.Move(step, 0.0f);
}

void ViewWindow::mouse(int button, int state, int x, int y)
{
    int const px = x * pixelratio.x;
    int const py = y * pixelratio.y;
    if (zanolib::g_option.debug) std::cout << "mouse: button=" << button << ", state=" << state << std::endl;

    drag_t* drag = nullptr;
    switch (button) {
    case 0: drag = &move_drag; break;
    case 1: drag = &zoom_drag; break;
    case 2: drag = &rotate_drag; break;
    default: return;
    }
    if (state != 0) {
        drag->active = false;
    } else {
        drag->active = true;
        drag->x = float(px);
        drag->y = float(py);
    }
}

// Each held button acts on the same motion, in a fixed order, so that
// several can drag together.
void ViewWindow::motion(int x, int y)
{
    if (!move_drag.active && !zoom_drag.active && !rotate_drag.active) return;
    float const px = float(x * pixelratio.x);
    float const py = float(y * pixelratio.y);

    if (move_drag.active) {
        // The window's y axis points down, the scene's up.
        scene.Move({px - move_drag.x, -(py - move_drag.y), 0.0f}, 0.0f);
        move_drag.x = px;
        move_drag.y = py;
        manager().PostRedisplay();
    }
    if (zoom_drag.active) {
        // Dragging up enlarges.
        scene.Zoom((py - zoom_drag.y) * -kDragZoomRate, 0.0f);
        zoom_drag.x = px;
        zoom_drag.y = py;
        manager().PostRedisplay();
    }
    if (rotate_drag.active) {
        scene.Rotate((px - rotate_drag.x) * kDragRotateRate, 0.0f);
        rotate_drag.x = px;
        rotate_drag.y = py;
        manager().PostRedisplay();
    }
}

void ViewWindow::mousewheel(int wheel, int direction, int, int)
{
    if (wheel != 0) return;
    if (zanolib::g_option.debug) std::cout << "wheel: number=" << wheel << ", direction=" << direction << std::endl;
    // Turning the wheel forward shrinks the picture: the opposite of Page Up,
    // and meant so.
    if (direction == 1) {
        scene.Zoom(-kZoomStep, 0.0f);
    } else if (direction == -1) {
        scene.Zoom(kZoomStep, 0.0f);
    } else {
        return;
    }
    manager().PostRedisplay();
}

// Whatever was dropped replaces the list, even when none of it loads.
void ViewWindow::drop(int count, char const** paths)
{
    clear();
    for (int i = 0; i < count; ++i) setImagePath(paths[i]);
    if (!initial_load()) return;
    // first() loads the first picture over again, but it is also what
    // brings the sizing, the title, the graph and the redraw.
    first();
}

}  // namespace zanoview2
