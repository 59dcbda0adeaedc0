// The viewer's entry point: starts GLFW, makes the one application window
// and runs the event loop until the user quits.
#include <clocale>
#include <cstdlib>
#include <iostream>

#include <GLFW/glfw3.h>

#include "app/viewwindow.h"
#include "utils/diag.h"
#include "window/glfwymgr4.h"

int main(int argc, char** argv)
{
    std::setlocale(LC_ALL, "");
    if (!glfwInit()) {
        libutils::error();
        std::cerr << "glfwInit() failed." << std::endl;
        return EXIT_FAILURE;
    }

    zanoview2::ViewWindow view(&argc, argv);
    wenk::glfwyMGR4& manager = wenk::glfwyMGR4::getSingleton();
    // A window that can't be made leaves the loop nothing to serve: the
    // program then ends quietly.
    manager.addWindow(&view, "zanoview3");
    manager.MainLoop();

    // GLFW goes first and the view after it, at the end of this scope, so
    // nothing in the view's destruction may need a window or a context.
    glfwTerminate();
    return EXIT_SUCCESS;
}
