// The commands that write files on a key press: the view state file, the
// snapshot and the user default file. None of them changes the screen.
#include "app/viewwindow.h"

#include "app/zvwfile.h"
#include "options/userdefault.h"

namespace zanoview2 {

void ViewWindow::menu_edit_save_zvwfile()
{
    if (current == imagelist.end()) return;
    zvwfile_t state;
    state.size = get_window_size();
    state.matrix = getMatrix();
    state.save(current->c_str());
}

// The present view stays; only the next showing of the picture changes.
void ViewWindow::menu_edit_delete_zvwfile()
{
    if (current == imagelist.end()) return;
    zvwfile_t().del(current->c_str());
}

void ViewWindow::menu_file_savejpeg()
{
    if (current == imagelist.end()) return;
    if (zanolib::ViewObject* const picture = scene.getCurrentObject()) picture->saveImage(current->c_str());
}

// Runs with or without a picture: the options don't depend on one.
void ViewWindow::menu_edit_writedefault() { zanolib::option_save_user_default(prog, dir); }

}  // namespace zanoview2
