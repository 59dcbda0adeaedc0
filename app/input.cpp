// The application window's answers to keys, buttons, the wheel and dropped
// files: every command of the viewer comes through here.
#include "app/viewwindow.h"

#include "window/glfwymgr4.h"

namespace zanoview2 {

namespace {

wenk::glfwyMGR4& manager() { return wenk::glfwyMGR4::getSingleton(); }

}  // namespace

void ViewWindow::keyboard(unsigned char key, int, int)
{
    switch (key) {
    case 27:   // Escape
    case 'q':
        manager().Exit();
        break;
    default:
        break;
    }
}

void ViewWindow::specialkey(int, int, int) {}
void ViewWindow::mouse(int, int, int, int) {}
void ViewWindow::motion(int, int) {}
void ViewWindow::mousewheel(int, int, int, int) {}
void ViewWindow::drop(int, char const**) {}

}  // namespace zanoview2
