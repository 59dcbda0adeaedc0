// The texts of the window title that depend on the user's language, fetched
// by line number from an outside message file.
#ifndef ZANOVIEW_OPTIONS_MESSAGE_H
#define ZANOVIEW_OPTIONS_MESSAGE_H

#include <string>

namespace zanolib {

// A line number of the message file, counted from 0.
typedef unsigned long e_message_t;

// Finds and loads the message file of the program with the stem `prog`, and
// returns the path it was loaded from, or "" when there is none. The file is
// "<prog>.<LANG>.msg" ("zanoview.ja_JP.UTF-8.msg"), or "<prog>.msg" when no
// file of that name is found or LANG is not set. Each name is tried in the
// working directory, then in `dir` (the program's directory, closing "/"
// included; when `dir` is empty, through libutils::searchpath), then in
// the site directory, kSiteDirectory ("/usr/site/share/zanolib/"). So a
// suffixed file anywhere wins over a plain one in the working directory.
// When nothing is found, the error stream gets "/usr/site/share/zanolib/
// <prog>.msg: can't load message file." and every text reads "message not
// loaded.". Sets the locale from the environment.
// A file must end in a line end: an unfinished last line is not a message.
// Lines end in LF or CR LF; a lone CR ends a line too but isn't counted as
// one, so the file's last line is lost: "a\rb\nc\n" gives "a" and "b".
std::string init_message(char const* dir, char const* prog);

// Line `id` of the loaded message file, or "message not loaded." when the
// file has no such line or none was loaded. Valid until the next load.
char const* getmsg(e_message_t id);

// The title form "a - b": make_title("x.jpg (1/3)", "zanoview") is
// "x.jpg (1/3) - zanoview".
std::string make_title(char const* a, char const* b);
void make_title2(std::string& out, char const* a, char const* b);

}  // namespace zanolib

#endif
