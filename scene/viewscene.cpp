#include "scene/viewscene.h"

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <iterator>

#include "glext/glext.h"

#include "geometry/color.h"
#include "geometry/rotation.h"
#include "geometry/text.h"
#include "gl/error.h"
#include "gl/wrappers.h"
#include "options/option.h"

namespace zanolib {

using libgr::grPrintError;

// ---- One picture ---------------------------------------------------------

ViewScene::obj_t::obj_t(obj_t const& other)
    : viewobj(other.viewobj),
      objdspl(other.objdspl),
      viewframe(other.viewframe),
      objcontainer(other.objcontainer),
      objtransformer(other.objtransformer),
      graph_made(other.graph_made)
{
}

ViewScene::obj_t::~obj_t() { free_graph(); }

bool ViewScene::obj_t::load(char const* path, char const* datapath)
{
    if (!viewobj.setImage(path, datapath)) return false;
    viewframe.setFrameType(e_frametype_t(g_option.frametype));
    viewframe.setSize(libgr::direction2(viewobj.getImageSize()), g_option.framewidth);
    // The frame first, so that the picture lies over it.
    objcontainer.addObject(&viewframe);
    objcontainer.addObject(&objdspl);
    objtransformer.setObject(&objcontainer);
    return true;
}

void ViewScene::obj_t::make_graph(char const* datapath)
{
    if (graph_made) return;
    grPrintError("ViewScene::obj_t::make_graph() - before viewobj.load_texture().");
    viewobj.load_texture();
    grPrintError("ViewScene::obj_t::make_graph() - after viewobj.load_texture().");
    objdspl.Preload(&viewobj);
    grPrintError("ViewScene::obj_t::make_graph() - after objdspl.Preload().");
    viewframe.make_graph(datapath);
    grPrintError("ViewScene::obj_t::make_graph() - after viewframe.make_graph().");
    graph_made = true;
}

void ViewScene::obj_t::free_graph()
{
    if (!graph_made) return;
    viewframe.free_graph();
    objdspl.Unload();
    viewobj.free_texture();
    graph_made = false;
}

// ---- The scene -----------------------------------------------------------

void ViewScene::Init(char const* datapath)
{
    if (g_option.debug) std::cout << "gl_init" << std::endl;
    // No depth test: the order of drawing decides what lies on top.
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glDisable(GL_ALPHA_TEST);
    glDisable(GL_STENCIL_TEST);
    glDisable(GL_BLEND);
    glHint(GL_POINT_SMOOTH_HINT, GL_FASTEST);
    glHint(GL_LINE_SMOOTH_HINT, GL_FASTEST);
    glHint(GL_POLYGON_SMOOTH_HINT, GL_FASTEST);
    glShadeModel(GL_SMOOTH);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    // A picture turned away from the viewer is not drawn.
    glFrontFace(GL_CCW);
    glCullFace(GL_BACK);
    glEnable(GL_CULL_FACE);
    libgr::grClearColor(libgr::gray18);
    glClearDepth(1.0);
    grPrintError("end ViewScene::Init()");
    ViewFrame::init(datapath);
    grPrintError("end ViewFrame::init()");
}

void ViewScene::Destroy() { ViewFrame::destroy(); }

bool ViewScene::addImage(char const* path, char const* datapath)
{
    struct stat st;
    if (stat(path, &st) != 0) {
        std::cerr << path << ": image file not found." << std::endl;
        return false;
    }
    m_objlist.emplace_back();
    auto const element = std::prev(m_objlist.end());
    if (!element->load(path, datapath)) {
        m_objlist.erase(element);
        return false;
    }
    m_container.addObject(&element->objtransformer);
    if (!has_current()) m_current = m_objlist.begin();
    // The file's orientation turns the view, never the pixels. Right only
    // because the new picture has become current: the shell deletes the old
    // one first.
    Rotate(float(rightrotatecount()) * -90.0f, 0);
    return true;
}

bool ViewScene::delImage()
{
    if (!has_current()) return false;
    auto const doomed = m_current++;
    m_objlist.erase(doomed);
    if (m_current == m_objlist.end() && m_current != m_objlist.begin()) --m_current;
    return true;
}

void ViewScene::setCurrent(unsigned long n)
{
    m_current = m_objlist.begin();
    std::advance(m_current, std::min<unsigned long>(n, m_objlist.size()));
}

void ViewScene::make_graph(char const* datapath)
{
    unsigned long index = 0;
    for (obj_t& element : m_objlist) {
        if (g_option.debug) std::cout << "ViewScene::make_graph() count= " << index << std::endl;
        element.make_graph(datapath);
        ++index;
    }
}

void ViewScene::free_graph()
{
    for (obj_t& element : m_objlist) element.free_graph();
}

bool ViewScene::is_resident() const
{
    return std::all_of(m_objlist.begin(), m_objlist.end(),
                       [](obj_t const& element) { return element.viewobj.is_resident(); });
}

void ViewScene::Rotate(float degrees, float)
{
    if (has_current()) matrix() *= libgr::getRotateMatrix(libgr::rotation3(degrees, {0.0f, 0.0f, 1.0f}));
}

void ViewScene::Zoom(float zoom, float)
{
    float const s = std::pow(2.0f, zoom);
    if (has_current()) matrix() *= libgr::getScaleMatrix(s, s, s);
}

void ViewScene::Scale(float factor, float)
{
    if (has_current()) matrix() *= libgr::getScaleMatrix(factor, factor, factor);
}

void ViewScene::Move(libgr::direction3_t const& d, float)
{
    if (has_current()) matrix() *= libgr::getTranslateMatrix(d);
}

void ViewScene::Matrix(libgr::matrix3w_t const& m)
{
    if (has_current()) matrix() *= m;
}

namespace {

// The uniform scale of a matrix made of turns, zooms and moves: the cube
// root of its determinant.
float uniform_scale(libgr::matrix3w_t const& m) { return std::pow(libgr::Determinant(m), 0.33333334f); }

}  // namespace

void ViewScene::clrZoom()
{
    if (!has_current()) return;
    float const s = uniform_scale(matrix());
    // On the right, so the offset from the centre shrinks or grows with it.
    matrix() *= libgr::getScaleMatrix(1.0f / s, 1.0f / s, 1.0f / s);
}

void ViewScene::clrRotate()
{
    if (!has_current()) return;
    float const s = uniform_scale(matrix());
    libgr::matrix3w_t const unscaled = matrix() * libgr::getScaleMatrix(1.0f / s, 1.0f / s, 1.0f / s);
    // Half the turn, by design of getRotation3: upright comes by halves.
    libgr::rotation3_t const inv = libgr::Invert(libgr::getRotation3(unscaled));
    libgr::matrix3w_t const r = libgr::getRotateMatrix(inv);
    if (g_option.debug) {
        std::cout << "inv_rot: " << inv << std::endl;
        std::cout << "inv_mtx: " << std::endl << r << std::endl;
    }
    matrix() *= r;
}

void ViewScene::clrMove()
{
    libgr::position3_t const t = libgr::getTranslateVector(matrix());
    matrix() *= libgr::getTranslateMatrix(libgr::direction3_t{-t.x, -t.y, -t.z});
}

void ViewScene::Origin()
{
    if (!has_current()) return;
    matrix() = libgr::Imtx;
    Rotate(float(rightrotatecount()) * -90.0f, 0);
}

libgr::matrix3w_t const& ViewScene::getMatrix() const
{
    return has_current() ? m_current->objtransformer.m_matrix : libgr::Imtx;
}

bool ViewScene::toggleSmooth()
{
    if (!has_current()) return false;
    ViewObject& picture = m_current->viewobj;
    picture.setMagSmooth(!picture.getMagSmooth());
    // The filter is recorded inside the display list.
    m_current->objdspl.Preload(&picture);
    return picture.getMagSmooth();
}

libgr::direction2l_t ViewScene::getCurrentImageSize() const
{
    return has_current() ? m_current->viewobj.getImageSize() : libgr::direction2l_t{0, 0};
}

unsigned long ViewScene::rightrotatecount() const { return m_current->viewobj.rightrotatecount(); }

void ViewScene::Display() const
{
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    // Lighting stays off; only the frame's lit paths use this light. Given
    // while the modelview matrix is the identity, it lies in eye coordinates.
    glEnable(GL_LIGHT0);
    libgr::grLightPos(GL_LIGHT0, {-50.0f, 50.0f, 50.0f});
    libgr::grLight(GL_LIGHT0, GL_AMBIENT, libgr::gray18);
    libgr::grLight(GL_LIGHT0, GL_DIFFUSE, libgr::gray18);
    libgr::grLight(GL_LIGHT0, GL_SPECULAR, libgr::gray18);
    // Takes the first component, 1.0.
    libgr::grLight(GL_LIGHT0, GL_LINEAR_ATTENUATION, libgr::white);
    // The camera stands 1000 units before the picture's plane.
    glTranslatef(0.0f, 0.0f, -1000.0f);
    if (!has_current()) return;
    grPrintError("before Draw()");
    m_current->objtransformer.Draw();
    grPrintError("after Draw()");
}

void ViewScene::Reshape(unsigned long width, unsigned long height)
{
    if (g_option.debug) std::cout << "ViewScene::Reshape()" << std::endl;
    GLint max_dims[2] = {0, 0};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, max_dims);
    unsigned long const w = std::min<unsigned long>(width, max_dims[0]);
    unsigned long const h = std::min<unsigned long>(height, max_dims[1]);
    glViewport(0, 0, GLsizei(w), GLsizei(h));
    float const half_x = float(w) * 0.5f;
    float const half_y = float(h) * 0.5f;

    // When the window and the picture can't both be centred on a pixel
    // boundary, half a pixel puts the texels on the window's pixels.
    libgr::position2_t offset = libgr::datum2;
    if (has_current()) {
        libgr::direction2l_t const image = getCurrentImageSize();
        if ((w ^ (unsigned long)image.x) & 1) offset.x = -0.5f;
        if ((h ^ (unsigned long)image.y) & 1) offset.y = -0.5f;
    }
    if (g_option.verbose) std::cout << "viewofs: " << offset << std::endl;

    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(offset.x - half_x, offset.x + half_x, offset.y - half_y, offset.y + half_y, 0.0, 10000.0);
}

}  // namespace zanolib
