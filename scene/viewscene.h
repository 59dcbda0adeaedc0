// The viewer's drawable world: the loaded pictures, each with its view
// matrix, and the fixed GL state, viewport and projection they are drawn in.
//
// The view matrix holds every turn, zoom and move of a picture. Operations
// append on the right (M becomes M * X), so the newest acts last, in screen
// axes about the window centre. World units are picture pixels; angles are
// degrees, counter-clockwise on the screen.
#ifndef ZANOVIEW_SCENE_VIEWSCENE_H
#define ZANOVIEW_SCENE_VIEWSCENE_H

#include <list>

#include "geometry/matrix.h"
#include "geometry/vector.h"
#include "gl/dsplist.h"
#include "gl/nodes.h"

#include "scene/viewframe.h"
#include "scene/viewobj.h"

namespace zanolib {

class ViewScene {
public:
    // One loaded picture and the small node tree that draws it.
    struct obj_t {
        ViewObject viewobj;
        libgr::grDspList objdspl;          // viewobj's drawing, compiled
        ViewFrame viewframe;               // the photo frame around the picture
        libgr::grContainer objcontainer;   // viewframe, then objdspl over it
        libgr::grTransformer objtransformer;  // the view matrix, over objcontainer
        bool graph_made = false;           // the GL resources exist

        obj_t() = default;
        obj_t(obj_t const& other);
        ~obj_t();

        bool load(char const* path, char const* datapath);
        void make_graph(char const* datapath);
        void free_graph();
    };

    ViewScene() : m_current(m_objlist.end()) {}
    ViewScene(ViewScene const&) = delete;
    ViewScene& operator=(ViewScene const&) = delete;

    // Fixed GL state and the frame's shared pictures, whose data files are
    // also looked for behind `datapath`; needs a current context.
    void Init(char const* datapath);
    // Drops the frame's shared pictures.
    void Destroy();

    // Loads a picture to the end of the list; it becomes current when there
    // was none, and is turned as its file asks. False, with the list as it
    // was, when the file is missing or can't be loaded.
    bool addImage(char const* path, char const* datapath);
    // Removes the current picture; the next one, or else the last, becomes
    // current. False when there was none.
    bool delImage();
    // The n-th picture becomes current; n at or past the end leaves none.
    void setCurrent(unsigned long n);

    void make_graph(char const* datapath);
    void free_graph();
    bool is_resident() const;

    // View operations on the current picture; nothing without one. The
    // trailing float is ignored.
    void Rotate(float degrees, float);
    // The picture grows by 2 to the power `zoom`.
    void Zoom(float zoom, float);
    void Scale(float factor, float);
    void Move(libgr::direction3_t const& d, float);
    // Composes: M becomes M * m.
    void Matrix(libgr::matrix3w_t const& m);
    // Takes the zoom out of M; the move scales along.
    void clrZoom();
    // Takes away HALF of the current turn: repeated calls close in on
    // upright by halves.
    void clrRotate();
    void clrMove();
    // Back to the file's own orientation, unzoomed and centred.
    void Origin();

    // The current picture's M, or the identity without one.
    libgr::matrix3w_t const& getMatrix() const;
    // Flips smooth magnification and compiles the drawing again; the new
    // state, false without a picture.
    bool toggleSmooth();
    // Pixels of the current picture as stored, before any turn; (0, 0)
    // without one.
    libgr::direction2l_t getCurrentImageSize() const;
    // Only with a current picture.
    unsigned long rightrotatecount() const;
    // The current picture, or null without one.
    ViewObject* getCurrentObject() { return has_current() ? &m_current->viewobj : nullptr; }

    // Clears and draws the current picture; the caller swaps buffers.
    void Display() const;
    // Viewport and projection for a framebuffer of this size, in pixels.
    void Reshape(unsigned long width, unsigned long height);

private:
    bool has_current() const { return m_current != m_objlist.end(); }
    libgr::matrix3w_t& matrix() { return m_current->objtransformer.m_matrix; }

    std::list<obj_t> m_objlist;  // element addresses stay put: the graph points into them
    // Every picture that loaded, ever; nothing draws it and nothing removes
    // from it.
    libgr::grContainer m_container;
    std::list<obj_t>::iterator m_current;
};

}  // namespace zanolib

#endif
