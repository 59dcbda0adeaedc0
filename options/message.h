// The texts of the window title that depend on the user's language, fetched
// by line number from an outside message file.
#ifndef ZANOVIEW_OPTIONS_MESSAGE_H
#define ZANOVIEW_OPTIONS_MESSAGE_H

#include <string>

namespace zanolib {

// A line number of the message file, counted from 0.
typedef unsigned long e_message_t;

// Line `id` of the loaded message file, or "message not loaded." when the
// file has no such line or none was loaded. Valid until the next load.
char const* getmsg(e_message_t id);

// The title form "a - b": make_title("x.jpg (1/3)", "zanoview") is
// "x.jpg (1/3) - zanoview".
std::string make_title(char const* a, char const* b);
void make_title2(std::string& out, char const* a, char const* b);

}  // namespace zanolib

#endif
