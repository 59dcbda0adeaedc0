// Paging through the picture list: one picture in the scene at a time, each
// step swapping the old one out for the next that loads.
#include "app/viewwindow.h"

#include <iostream>
#include <iterator>
#include <list>
#include <string>

#include "glext/glext.h"
#include <GLFW/glfw3.h>

#include "app/messages.h"
#include "options/message.h"
#include "options/option.h"
#include "window/glfwymgr4.h"

namespace zanoview2 {

namespace {

wenk::glfwyMGR4& manager() { return wenk::glfwyMGR4::getSingleton(); }

void report_displayed(std::string const& path)
{
    if (zanolib::g_option.verbose) std::cout << std::endl << "display image: " << path << std::endl;
}

// When no entry would load, the picture that was there comes back, so that
// a failed step never leaves the window empty. With nothing on screen to
// begin with there is nothing to put back.
void put_back(zanolib::ViewScene& scene, std::list<std::string> const& list,
              std::list<std::string>::const_iterator current, char const* dir)
{
    if (current == list.end()) return;
    report_displayed(*current);
    scene.addImage(current->c_str(), dir);
}

}  // namespace

bool ViewWindow::next_image(unsigned long n)
{
    if (imagelist.empty()) return false;

    auto it = current;
    unsigned long index = current_index;
    for (unsigned long step = 0; step < n && it != imagelist.end(); ++step, ++index) ++it;
    // No wrap-around, and a step that would run off the end is refused
    // whole rather than cut short: only the backward step is clamped.
    if (it == imagelist.end()) return false;

    scene.delImage();
    bool loaded = try_entries(it, index, imagelist.end(), false);
    if (!loaded) {
        // Nothing behind loads: turn round and take the nearest one before,
        // which may well be the picture we came from.
        --it;
        --index;
        loaded = try_entries(it, index, imagelist.begin(), true);
    }
    return settle(loaded, it, index);
}

bool ViewWindow::back_image(unsigned long n)
{
    if (imagelist.empty() || current == imagelist.begin()) return false;

    auto it = current;
    unsigned long index = current_index;
    for (unsigned long step = 0; step < n && it != imagelist.begin(); ++step, --index) --it;

    scene.delImage();
    bool loaded = try_entries(it, index, imagelist.begin(), true);
    if (!loaded) {
        // The first entry is only reached here, at the start of the search
        // back toward the end.
        it = imagelist.begin();
        index = 0;
        loaded = try_entries(it, index, imagelist.end(), false);
    }
    return settle(loaded, it, index);
}

bool ViewWindow::first_image()
{
    if (imagelist.empty()) return false;

    scene.delImage();
    auto it = imagelist.begin();
    unsigned long index = 0;
    bool const loaded = try_entries(it, index, imagelist.end(), false);
    return settle(loaded, it, index);
}

bool ViewWindow::last_image()
{
    if (imagelist.empty()) return false;

    scene.delImage();
    auto it = std::prev(imagelist.end());
    unsigned long index = image_count - 1;
    // The search stops short of the first entry, which is tried last.
    bool const loaded = try_entries(it, index, imagelist.begin(), true) ||
                        scene.addImage(it->c_str(), dir);
    return settle(loaded, it, index);
}

bool ViewWindow::try_entries(std::list<std::string>::iterator& it, unsigned long& index,
                             std::list<std::string>::iterator stop, bool backward)
{
    for (; it != stop; backward ? (--it, --index) : (++it, ++index))
        if (scene.addImage(it->c_str(), dir)) return true;
    return false;
}

bool ViewWindow::settle(bool loaded, std::list<std::string>::iterator it, unsigned long index)
{
    if (!loaded) {
        put_back(scene, imagelist, current, dir);
        return true;
    }
    current = it;
    current_index = index;
    report_displayed(*current);
    return true;
}

void ViewWindow::forward(unsigned long n)
{
    if (!next_image(n)) return;
    scene.free_graph();
    residue(true);
    update_title();
    scene.make_graph(dir);
    // Drawn here and now: a held key must show each picture before the next
    // event is taken, not once the loop gets round to it.
    draw_now();
}

void ViewWindow::backward(unsigned long n)
{
    if (!back_image(n)) return;
    scene.free_graph();
    residue(true);
    update_title();
    scene.make_graph(dir);
    draw_now();
}

// Unlike forward(), the graph goes first and the step's result is not
// looked at: with an empty list this still retitles and redraws the empty
// window. Keep this order.
void ViewWindow::first()
{
    scene.free_graph();
    first_image();
    residue(true);
    update_title();
    scene.make_graph(dir);
    manager().PostRedisplay();
}

void ViewWindow::last()
{
    scene.free_graph();
    last_image();
    residue(true);
    update_title();
    scene.make_graph(dir);
    manager().PostRedisplay();
}

// The window goes down and comes up again around the rebuild; that is part
// of the command as the user sees it.
void ViewWindow::reload()
{
    scene.free_graph();
    glfwIconifyWindow(window());
    set_shape();
    glfwRestoreWindow(window());
    scene.make_graph(dir);
}

void ViewWindow::update_title()
{
    std::string const name = getCurrentTitleName();
    std::string title;
    if (name.empty())
        zanolib::make_title2(title, getmsg(MSG_APPLICATION_NAME), getmsg(MSG_NO_IMAGE));
    else
        zanolib::make_title2(title, name.c_str(), getmsg(MSG_APPLICATION_NAME));
    glfwSetWindowTitle(window(), title.c_str());
}

std::string ViewWindow::getCurrentTitleName() const
{
    if (current == imagelist.end()) return "";
    return *current + " (" + std::to_string(current_index + 1) + "/" + std::to_string(image_count) + ")";
}

void ViewWindow::draw_now()
{
    display();
    manager().SwapBuffers(this);
}

}  // namespace zanoview2
