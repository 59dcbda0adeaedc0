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

    // ---- Paging (navigation.cpp). Counts are list entries.
    // Forward moves that don't fit are refused; backward ones are clamped
    // to the first entry. A picture that won't load is skipped.
    bool next_image(unsigned long n);
    bool back_image(unsigned long n);
    bool first_image();
    bool last_image();
    // A change of picture with all it entails, drawn at once.
    void forward(unsigned long n);
    void backward(unsigned long n);
    // The same for the ends of the list, drawn by a redisplay request.
    void first();
    void last();
    // Rebuilds the GL objects of the picture on screen.
    void reload();
    void update_title();
    // "path (index/count)" of the picture on screen, or "" without one.
    std::string getCurrentTitleName() const;

    // ---- Sizing policy (sizing.cpp): the window and the picture adapt to
    // each other when a picture comes up. All sizes in framebuffer pixels.
    bool residue(bool resize);
    bool residue_resume(bool resize);
    bool residue_new(bool resize);
    libgr::direction2l_t residue_calc_window_size(libgr::direction2l_t const& target,
                                                  libgr::direction2l_t const& current);
    bool residue_set_window_size(libgr::direction2l_t const& target, libgr::direction2l_t const& current,
                                 bool resize);
    // Fits the picture into seven eighths (image_ratio_of_window) of the window.
    void go_center();
    // The picture's size as it stands on screen: turned a quarter, its
    // width and height swap.
    libgr::direction2l_t getCurrentImageSize() const;
    void setScale(float s);
    void setMatrix(libgr::matrix3w_t const& m);

    // ---- Commands (commands.cpp); each does nothing without a picture, but
    // writedefault.
    void menu_edit_save_zvwfile();
    void menu_edit_delete_zvwfile();
    void menu_file_savejpeg();
    void menu_edit_writedefault();

    // ---- Input (input.cpp): one step of the picture for an arrow key.
    void cursor_move(int key);

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
    // Draws the picture on screen at once, without waiting for the loop.
    void draw_now();
    // Tries entries from `it` on, one way, up to but not including `stop`,
    // until one loads; `it` and `index` then name it (or stand at `stop`).
    bool try_entries(std::list<std::string>::iterator& it, unsigned long& index,
                     std::list<std::string>::iterator stop, bool backward);
    // Ends a paging step: the loaded entry becomes current, or, with none
    // loaded, the picture that was there is put back. Always true.
    bool settle(bool loaded, std::list<std::string>::iterator it, unsigned long index);

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
