// PLACEHOLDER bodies, replaced by the paging.
#include "app/viewwindow.h"

namespace zanoview2 {

bool ViewWindow::next_image(unsigned long) { return false; }
bool ViewWindow::back_image(unsigned long) { return false; }
bool ViewWindow::first_image() { return false; }
bool ViewWindow::last_image() { return false; }
void ViewWindow::forward(unsigned long) {}
void ViewWindow::backward(unsigned long) {}
void ViewWindow::first() {}
void ViewWindow::last() {}
void ViewWindow::reload() {}
void ViewWindow::update_title() {}
std::string ViewWindow::getCurrentTitleName() const { return ""; }
void ViewWindow::draw_now() {}

}  // namespace zanoview2
