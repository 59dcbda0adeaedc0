// Makes the manual page from its template at build time, so that its option
// list is the program's option table itself: name, form of the value,
// comment and built-in value of every row, in table order. A new option, or
// a changed comment or default, reaches the manual with the next build.
//   make_man_page <template> <output> <version>
// In the template the line "@OPTIONS@" becomes the list, and "@VERSION@" and
// "@SITE_DIR@" anywhere become the version and the site directory.
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "options/option.h"
#include "options/sitedir.h"

namespace {

using zanolib::option_entity_t;

// Text as roff reads it literally: backslashes and minus signs escaped, and
// a line that would begin with a control character guarded.
std::string roff_text(char const* text)
{
    std::string out = (text[0] == '.' || text[0] == '\'') ? "\\&" : "";
    for (char const* p = text; *p; ++p) {
        if (*p == '\\') out += "\\e";
        else if (*p == '-') out += "\\-";
        else out += *p;
    }
    return out;
}

// The tag line of a row: the option in bold, its value's parts in italics.
std::string tag_line(option_entity_t const& row)
{
    std::string const name = "\\fB\\-" + roff_text(row.name) + "\\fR";
    switch (row.type) {
    case zanolib::OPTION_TYPE_BOOL: return name + "[\\fB+\\fR|\\fB\\-\\fR]";
    case zanolib::OPTION_TYPE_ENUM: return name + " \\fIn\\fR";
    case zanolib::OPTION_TYPE_PERCENT: return name + " \\fIbits\\fR";
    case zanolib::OPTION_TYPE_ULONG: return name + " \\fIn\\fR";
    case zanolib::OPTION_TYPE_FLOAT: return name + " \\fIx\\fR";
    case zanolib::OPTION_TYPE_XY: return name + " \\fIX\\fBx\\fIY\\fR";
    case zanolib::OPTION_TYPE_RGB:
        return name + " \\fIR\\fB,\\fIG\\fB,\\fIB\\fR[\\fB,\\fIA\\fR]";
    }
    return name;
}

// What a row's value means beyond its comment, with the built-in value read
// from the option record before anything has changed it; one sentence a
// line, as roff wants them.
std::string value_sentence(option_entity_t const& row)
{
    std::ostringstream out;
    void const* const target = row.target;
    switch (row.type) {
    case zanolib::OPTION_TYPE_BOOL:
        out << "Default: " << (*static_cast<bool const*>(target) ? "on" : "off") << '.';
        break;
    case zanolib::OPTION_TYPE_ENUM:
        out << "Default: " << *static_cast<int32_t const*>(target) << '.';
        break;
    case zanolib::OPTION_TYPE_PERCENT: {
        float const value = *static_cast<float const*>(target);
        uint32_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        out << "The value is the bit pattern of a 32\\-bit float, written as an unsigned "
               "integer.\nDefault: " << bits << ", the float " << value << '.';
        break;
    }
    case zanolib::OPTION_TYPE_ULONG:
        out << "A 0 is refused.\nDefault: " << *static_cast<uint32_t const*>(target) << '.';
        break;
    case zanolib::OPTION_TYPE_FLOAT:
        out << "Default: " << *static_cast<float const*>(target) << '.';
        break;
    case zanolib::OPTION_TYPE_XY: {
        auto const& xy = *static_cast<zanolib::option_xy_t const*>(target);
        out << "A negative number leaves its part as it was.\nDefault: " << xy.x << 'x' << xy.y
            << '.';
        break;
    }
    case zanolib::OPTION_TYPE_RGB: {
        auto const& c = *static_cast<zanolib::option_color_t const*>(target);
        out << "Each part 0 to 255; the fourth is alpha.\nDefault: " << int(c.r) << ','
            << int(c.g) << ',' << int(c.b) << ',' << int(c.a) << '.';
        break;
    }
    }
    return out.str();
}

std::string option_list()
{
    std::string out;
    for (option_entity_t const& row : zanolib::option_entity_table) {
        out += ".TP\n" + tag_line(row) + '\n' + roff_text(row.comment) + '\n' +
               value_sentence(row) + '\n';
    }
    return out;
}

void replace_all(std::string& text, std::string const& from, std::string const& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

bool fail(std::string const& what)
{
    std::cerr << "make_man_page: " << what << std::endl;
    return false;
}

bool make(char const* template_path, char const* output_path, char const* version)
{
    std::ifstream in(template_path);
    if (!in) return fail(std::string(template_path) + ": can't read.");
    std::ostringstream page;
    int lists = 0;
    for (std::string line; std::getline(in, line);) {
        if (line == "@OPTIONS@") {
            page << option_list();
            ++lists;
        } else {
            page << line << '\n';
        }
    }
    if (lists != 1) return fail(std::string(template_path) + ": needs one line @OPTIONS@.");
    std::string text = page.str();
    replace_all(text, "@VERSION@", version);
    replace_all(text, "@SITE_DIR@", zanolib::kSiteDirectory);
    std::ofstream out(output_path);
    out << text;
    out.close();
    if (!out) return fail(std::string(output_path) + ": can't write.");
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::cerr << "usage: make_man_page <template> <output> <version>" << std::endl;
        return 2;
    }
    return make(argv[1], argv[2], argv[3]) ? 0 : 1;
}
