// The one application object: owns the picture list and the scene, and
// answers every event of the viewer's window.
#ifndef ZANOVIEW_APP_VIEWWINDOW_H
#define ZANOVIEW_APP_VIEWWINDOW_H

#include <list>
#include <string>

#include "window/glutyapi.h"

struct GLFWwindow;

namespace zanoview2 {

class ViewWindow : public wenk::glutyAPI4 {
public:
    // Takes the options out of the arguments (printing the help and exiting
    // on -h) and lists the pictures of the rest. The window doesn't exist yet.
    ViewWindow(int* argc, char** argv);

    void reshape(int width, int height) override;
    void display() override;
    void keyboard(unsigned char key, int x, int y) override;
    void specialkey(int key, int x, int y) override;
    void mouse(int button, int state, int x, int y) override;
    void motion(int x, int y) override;
    // Called once with the GL context current.
    void init() override;
    ~ViewWindow() override;
    void mousewheel(int wheel, int direction, int x, int y) override;
    void drop(int count, char const** paths) override;

    char const* program_name() const { return prog; }
    char const* program_dir() const { return dir; }

private:
    // A button held down: where the cursor was last taken into account.
    struct drag_t {
        bool active = false;
        float x = 0;  // framebuffer pixels
        float y = 0;  // framebuffer pixels
    };

    GLFWwindow* window() const;

    char prog[1024];  // the program's stem: "zanoview" for /usr/bin/zanoview
    char dir[1024];   // the program's directory with its closing "/", or ""
    drag_t move_drag;    // left button
    drag_t zoom_drag;    // middle button
    drag_t rotate_drag;  // right button
    std::list<std::string> imagelist;  // the pictures, in paging order
    std::list<std::string>::iterator current;
    unsigned long current_index = 0;
    unsigned long image_count = 0;
};

}  // namespace zanoview2

#endif
