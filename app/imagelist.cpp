// The picture list of the application window: building it from the
// arguments and the first load.
#include "app/viewwindow.h"

#include <dirent.h>

#include <algorithm>
#include <iostream>
#include <list>
#include <string>

#include "options/option.h"
#include "utils/path.h"

namespace zanoview2 {

namespace {

// What may enter the list, tested in this order. The codec is chosen later,
// by the scene.
char const* const kPictureExtensions[] = {".jpg", ".jpeg", ".bmp", ".png", ".tga"};

bool has_picture_extension(std::string const& name)
{
    return std::any_of(std::begin(kPictureExtensions), std::end(kPictureExtensions),
                       [&](char const* ext) { return libutils::extcasecmp(name, ext) == 0; });
}

}  // namespace

bool ViewWindow::setImagePath(char const* given)
{
    std::string const path = (given && *given) ? given : ".";
    zanolib::option_t const& option = zanolib::g_option;
    if (option.verbose) std::cout << "srchpath: " << path << std::endl;

    if (DIR* const directory = opendir(path.c_str())) {
        if (option.debug) std::cout << "dir: " << path << std::endl;
        std::string const prefix = path.back() == '/' ? path : path + "/";
        std::list<std::string> found;
        // Only the names count: hidden files and subdirectories with a
        // picture extension come in too, and no subdirectory is entered.
        while (dirent const* entry = readdir(directory)) {
            std::string const name = entry->d_name;
            if (!has_picture_extension(name)) {
                if (option.verbose) std::cout << "skip: " << name << std::endl;
                continue;
            }
            if (option.debug) std::cout << "file add: " << name << std::endl;
            found.push_back(prefix + name);
        }
        closedir(directory);
        if (found.empty()) return false;
        // By byte value: "B.jpg" before "a.jpg", "img10.jpg" before "img9.jpg".
        found.sort();
        imagelist.splice(imagelist.end(), found);
    } else {
        if (!has_picture_extension(path)) return false;
        if (option.debug) std::cout << "file add: " << path << std::endl;
        imagelist.push_back(path);
    }
    current = imagelist.begin();
    return true;
}

bool ViewWindow::initial_load()
{
    current_index = 0;
    image_count = imagelist.size();
    current = imagelist.begin();
    // A picture that won't load is skipped without a word.
    for (; current != imagelist.end(); ++current, ++current_index) {
        if (scene.addImage(current->c_str(), dir)) {
            if (zanolib::g_option.verbose) std::cout << std::endl << "display image: " << *current << std::endl;
            return true;
        }
    }
    return false;
}

}  // namespace zanoview2
