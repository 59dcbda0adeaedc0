// PLACEHOLDER bodies, replaced by the commands.
#include "app/viewwindow.h"

namespace zanoview2 {

void ViewWindow::menu_edit_save_zvwfile() {}
void ViewWindow::menu_edit_delete_zvwfile() {}
void ViewWindow::menu_file_savejpeg() {}
void ViewWindow::menu_edit_writedefault() {}

}  // namespace zanoview2
