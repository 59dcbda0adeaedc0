#include "app/zvwfile.h"

#include <unistd.h>

#include <fstream>
#include <iostream>
#include <locale>

#include "geometry/text.h"
#include "options/option.h"
#include "utils/path.h"

namespace zanoview2 {

namespace {

// Room for the picture's directory and its stem, as characters taken from
// the path; anything longer is cut without a word.
constexpr size_t kDirLimit = 1025;
constexpr size_t kStemLimit = 256;

}  // namespace

std::string make_zvwpath(char const* picture)
{
    // The char forms write no NUL when they fill the limit: one byte more
    // holds it.
    char dir[kDirLimit + 1];
    dir[libutils::dirname(dir, picture, kDirLimit)] = '\0';
    char stem[kStemLimit + 1];
    stem[libutils::basename(stem, picture, kStemLimit)] = '\0';
    return std::string(dir) + stem + ".zvw";
}

bool zvwfile_t::load(char const* picture)
{
    std::string const path = make_zvwpath(picture);
    std::ifstream in(path);
    if (!in) return false;
    // Numbers in the C form whatever the user's locale, as they were written.
    in.imbue(std::locale::classic());
    // At the end of the text each reader fails and leaves its value alone,
    // so an empty or cut file reads as far as it goes.
    in >> size >> matrix;
    in.close();
    zanolib::option_t const& option = zanolib::g_option;
    if (option.debug) std::cout << size << std::endl;
    if (option.verbose) std::cout << path << ": zvwfile loaded." << std::endl;
    return true;
}

bool zvwfile_t::save(char const* picture) const
{
    std::string const path = make_zvwpath(picture);
    std::ofstream out(path, std::ios::out | std::ios::trunc);
    if (!out) return false;
    out.imbue(std::locale::classic());
    out << size << '\n' << matrix << '\n';
    // Closed before "saved" is told, so that a failure to flush the last
    // bytes (a full disk) counts as a failed save.
    out.close();
    if (!out) return false;
    if (zanolib::g_option.verbose) std::cout << path << ": zvwfile saved." << std::endl;
    return true;
}

bool zvwfile_t::del(char const* picture) const
{
    return ::unlink(make_zvwpath(picture).c_str()) == 0;
}

}  // namespace zanoview2
