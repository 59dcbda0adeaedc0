#include "options/message.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sys/stat.h>
#include <vector>

#include "options/option.h"
#include "options/sitedir.h"
#include "utils/diag.h"
#include "utils/path.h"

namespace zanolib {

namespace {

char const kNotLoaded[] = "message not loaded.";

// A message file holds a few short lines. Anything this large is no message
// file, and allocating for it could fail.
constexpr off_t kMaxMessageFileSize = 1 << 20;  // bytes

// The whole loaded file, its line ends overwritten with NULs.
std::vector<char> s_msgbuf;
// Entry i points at line i inside s_msgbuf; empty until a file is loaded.
std::vector<char const*> s_tablebuf;

// Reads the file at `path` into `buffer`, resized to fit. False when there is
// no regular file there or it can't be read whole: a directory or a FIFO is
// passed over, never opened.
bool load_message(std::vector<char>& buffer, char const* path)
{
    struct stat st;
    if (::stat(path, &st) != 0) return false;
    if (!S_ISREG(st.st_mode) || st.st_size > kMaxMessageFileSize) return false;
    buffer.resize(std::size_t(st.st_size));
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    in.read(buffer.data(), std::streamsize(buffer.size()));
    return in.gcount() == std::streamsize(buffer.size());
}

// The number of LF bytes: a last line without one is not counted.
unsigned long count_lines(std::vector<char> const& buffer)
{
    return static_cast<unsigned long>(std::count(buffer.begin(), buffer.end(), '\n'));
}

// Points table[i] at line i of `buffer` for the first `lines` lines, ending
// each with a NUL in place of its CR, LF or CR LF. Should the buffer end
// before all `lines` lines are closed, the table stops at the last closed
// one, so that no entry runs off the end of the buffer.
void make_message_table(std::vector<char const*>& table, std::vector<char>& buffer,
                        unsigned long lines)
{
    table.resize(lines);
    std::size_t const size = buffer.size();
    std::size_t pos = 0;
    for (unsigned long i = 0; i < lines; ++i) {
        table[i] = buffer.data() + pos;
        while (pos < size && buffer[pos] != '\r' && buffer[pos] != '\n') ++pos;
        if (pos == size) {
            table.resize(i);
            return;
        }
        if (buffer[pos] == '\r') buffer[pos++] = '\0';
        if (pos < size && buffer[pos] == '\n') buffer[pos++] = '\0';
    }
}

// Loads the first of `name` in the working directory, in `dir` and in the
// site directory into s_msgbuf; `found` is the path it came from. The line
// that the last failure writes to the error stream is a debug line, unless
// `last_always`: the last search of all is the one the user should hear of.
bool search_message(std::string& found, char const* dir, std::string const& name, bool last_always)
{
    found = name;
    if (load_message(s_msgbuf, found.c_str())) return true;

    if (dir[0] != '\0') {
        found = dir + name;
    } else {
        if (g_option.debug) std::cout << dir << ": dirpath." << std::endl;
        found = libutils::searchpath(name, nullptr);
    }
    if (load_message(s_msgbuf, found.c_str())) return true;
    if (g_option.debug) std::cout << found << ": warning can't load message file." << std::endl;

    found = kSiteDirectory + name;
    if (load_message(s_msgbuf, found.c_str())) return true;
    if (last_always || g_option.debug) {
        libutils::error();
        std::cerr << found << ": can't load message file." << std::endl;
    }
    return false;
}

}  // namespace

std::string init_message(char const* dir, char const* prog)
{
    std::setlocale(LC_ALL, "");
    char const* const lang = std::getenv("LANG");
    if (!prog) prog = "";
    if (!dir) dir = "";
    std::string const plain = std::string(prog) + ".msg";
    std::string const suffixed = lang ? std::string(prog) + '.' + lang + ".msg" : plain;

    if (g_option.debug) std::cerr << "init_message() entering." << std::endl;
    // The old table points into the buffer that the search overwrites.
    s_tablebuf.clear();
    std::string path;
    if (!search_message(path, dir, suffixed, false) && !search_message(path, dir, plain, true)) {
        return std::string();
    }
    if (g_option.debug) std::cerr << "path: " << path << std::endl;
    make_message_table(s_tablebuf, s_msgbuf, count_lines(s_msgbuf));
    if (g_option.debug) std::cerr << "init_message() leaving." << std::endl;
    return path;
}

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
