// The one application object: owns the picture list and the scene, and
// answers every event of the viewer's window.
#ifndef ZANOVIEW_APP_VIEWWINDOW_H
#define ZANOVIEW_APP_VIEWWINDOW_H

#include <list>
#include <string>

#include "geometry/matrix.h"
#include "geometry/vector.h"
#include "scene/viewscene.h"
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

    // Empties the picture state: no picture in the scene, an empty list.
    void clear();
    // The framebuffer's size, in pixels rather than screen coordinates.
    libgr::direction2l_t get_window_size() const;
    libgr::matrix3w_t const& getMatrix() const { return scene.getMatrix(); }

    // Adds a picture file, or the pictures of a directory sorted by byte
    // value, to the end of the list. An empty path is ".". False, with the
    // list as it was, for a file with no picture extension or a directory
    // with no picture in it. A file's existence is not tested here.
    bool setImagePath(char const* path);
    // Loads the first entry of the list that loads. False when none does.
    bool initial_load();

private:
    // A button held down: where the cursor was last taken into account.
    struct drag_t {
        bool active = false;
        float x = 0;  // framebuffer pixels
        float y = 0;  // framebuffer pixels
    };

    GLFWwindow* window() const;
    // Records the framebuffer size and sets the scene's viewport for it.
    void set_shape();

    char prog[1024];  // the program's stem: "zanoview" for /usr/bin/zanoview
    char dir[1024];   // the program's directory with its closing "/", or ""
    drag_t move_drag;    // left button
    drag_t zoom_drag;    // middle button
    drag_t rotate_drag;  // right button
    zanolib::ViewScene scene;
    std::list<std::string> imagelist;  // the pictures, in paging order
    std::list<std::string>::iterator current;
    unsigned long current_index = 0;
    unsigned long image_count = 0;
    libgr::direction2l_t oldwinsize{0, 0};  // framebuffer pixels at the last reshape
    // Framebuffer pixels per window coordinate, per axis; the mouse handlers
    // scale cursor positions by it.
    libgr::direction2l_t pixelratio{1, 1};
};

}  // namespace zanoview2

#endif
