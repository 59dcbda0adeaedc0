// PLACEHOLDER bodies, replaced by the sizing policy.
#include "app/viewwindow.h"

namespace zanoview2 {

bool ViewWindow::residue(bool) { return false; }
bool ViewWindow::residue_resume(bool) { return false; }
bool ViewWindow::residue_new(bool) { return false; }
libgr::direction2l_t ViewWindow::residue_calc_window_size(libgr::direction2l_t const&, libgr::direction2l_t const& c) { return c; }
bool ViewWindow::residue_set_window_size(libgr::direction2l_t const&, libgr::direction2l_t const&, bool) { return false; }
void ViewWindow::go_center() {}
libgr::direction2l_t ViewWindow::getCurrentImageSize() const { return scene.getCurrentImageSize(); }
void ViewWindow::setScale(float s) { scene.Scale(s, 0.0f); }
void ViewWindow::setMatrix(libgr::matrix3w_t const& m) { scene.Matrix(m); }

}  // namespace zanoview2
