#include "options/message.h"

#include <vector>

namespace zanolib {

namespace {

char const kNotLoaded[] = "message not loaded.";

// Entry i points at line i of the loaded file; empty until a file is loaded.
std::vector<char const*> s_tablebuf;

}  // namespace

char const* getmsg(e_message_t id)
{
    return id < s_tablebuf.size() ? s_tablebuf[id] : kNotLoaded;
}

std::string make_title(char const* a, char const* b)
{
    std::string title;
    make_title2(title, a, b);
    return title;
}

void make_title2(std::string& out, char const* a, char const* b)
{
    out = a;
    out += " - ";
    out += b;
}

}  // namespace zanolib
