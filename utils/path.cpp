#include "utils/path.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <initializer_list>
#include <list>

#include <strings.h>
#include <sys/stat.h>

#include "utils/token.h"

namespace libutils {

namespace {

constexpr size_t npos = static_cast<size_t>(-1);
// What "/" becomes in the system's own notation.
constexpr wchar_t kNativeSeparator = L'/';
// Room in each field of splitpath_t, less its NUL.
constexpr size_t kPartMax = sizeof(splitpath_t::drive) - 1;

bool is_separator(wchar_t c)
{
    return c == L'/' || c == L'\\';
}

// Decodes the character at `s` in the current locale: its bytes, and the
// character in `c`. A byte that starts no valid character stands for itself,
// so text in another encoding still splits at its ASCII separators.
size_t next_char(char const* s, size_t len, std::mbstate_t& state, wchar_t& c)
{
    size_t n = std::mbrtowc(&c, s, len, &state);
    if (n == static_cast<size_t>(-1) || n == static_cast<size_t>(-2) || n == 0) {
        c = static_cast<unsigned char>(*s);
        state = std::mbstate_t();
        n = 1;
    }
    return n;
}

// Where the parts of a path lie, as byte offsets into it.
struct layout_t {
    size_t name = 0;    // first byte of the file name, behind the last separator
    size_t dot = npos;  // the last "." of the file name, npos when it has none
    size_t end = 0;     // first byte behind the characters read
};

// Reads at most `limit` characters of `path`.
layout_t locate(char const* path, size_t limit)
{
    layout_t at;
    size_t const len = std::strlen(path);
    std::mbstate_t state = std::mbstate_t();
    size_t pos = 0;
    for (size_t chars = 0; chars < limit && pos < len; ++chars) {
        wchar_t c;
        size_t const n = next_char(path + pos, len - pos, state, c);
        if (is_separator(c)) {
            at.name = pos + n;
            at.dot = npos;
        } else if (c == L'.') {
            at.dot = pos;
        }
        pos += n;
    }
    at.end = pos;
    return at;
}

// The longest start of `s` (of `len` bytes) that has at most `room` bytes and
// ends between two characters.
size_t fit(char const* s, size_t len, size_t room)
{
    if (len <= room) return len;
    std::mbstate_t state = std::mbstate_t();
    size_t pos = 0;
    while (pos < len) {
        wchar_t c;
        size_t const n = next_char(s + pos, len - pos, state, c);
        if (pos + n > room) break;
        pos += n;
    }
    return pos;
}

// Writes what fits of `len` bytes of `s` into `size` bytes of `dst`, with a
// NUL behind when there is room for it. Returns the bytes written.
size_t put(char* dst, char const* s, size_t len, size_t size)
{
    size_t const n = fit(s, len, size);
    std::memcpy(dst, s, n);
    if (n < size) dst[n] = '\0';
    return n;
}

// Copies at most kPartMax bytes of `s` and a NUL into a splitpath_t field.
void put_part(char* dst, char const* s, size_t len)
{
    size_t const n = fit(s, len, kPartMax);
    std::memcpy(dst, s, n);
    dst[n] = '\0';
}

// `path` with every character `from` turned to `to`. Text that doesn't
// convert comes back as it is: "/" is ASCII and can only be there as itself.
std::string replace_char(std::string const& path, wchar_t from, wchar_t to)
{
    size_t const wlen = std::mbstowcs(nullptr, path.c_str(), 0);
    if (wlen == static_cast<size_t>(-1)) return path;
    std::wstring w(wlen + 1, L'\0');
    std::mbstowcs(&w[0], path.c_str(), wlen + 1);
    w.resize(wlen);
    std::replace(w.begin(), w.end(), from, to);
    size_t const len = std::wcstombs(nullptr, w.c_str(), 0);
    if (len == static_cast<size_t>(-1)) return path;
    std::string out(len + 1, '\0');
    std::wcstombs(&out[0], w.c_str(), len + 1);
    out.resize(len);
    return out;
}

}  // namespace

char const* baseptr(char const* path)
{
    return path + locate(path, npos).name;
}

std::string basename(std::string const& path)
{
    layout_t const at = locate(path.c_str(), npos);
    size_t const stop = at.dot != npos ? at.dot : at.end;
    return path.substr(at.name, stop - at.name);
}

std::string basename(char const* path)
{
    return basename(std::string(path));
}

size_t basename(char* dst, char const* src, size_t size)
{
    layout_t const at = locate(src, size);
    size_t const stop = at.dot != npos ? at.dot : at.end;
    return put(dst, src + at.name, stop - at.name, size);
}

std::string dirname(std::string const& path)
{
    return path.substr(0, locate(path.c_str(), npos).name);
}

std::string dirname(char const* path)
{
    return dirname(std::string(path));
}

size_t dirname(char* dst, char const* src, size_t size)
{
    return put(dst, src, locate(src, size).name, size);
}

int extcasecmp(std::string const& s, char const* ext)
{
    return extcasecmp(s.c_str(), s.size(), ext);
}

int extcasecmp(char const* s, size_t len, char const* ext)
{
    size_t const n = std::strlen(ext);
    if (n > len) return -1;
    return ::strncasecmp(s + len - n, ext, n);
}

void splitpath(char const* path, char* drive, char* dir, char* name, char* ext)
{
    drive[0] = dir[0] = name[0] = ext[0] = '\0';
    char const* rest = path;
    if (char const* colon = std::strchr(path, ':')) {
        put_part(drive, path, colon + 1 - path);
        rest = colon + 1;
    }
    layout_t const at = locate(rest, npos);
    put_part(dir, rest, at.name);
    if (at.dot != npos) {
        put_part(name, rest + at.name, at.dot - at.name);
        put_part(ext, rest + at.dot, at.end - at.dot);
    } else {
        put_part(name, rest + at.name, at.end - at.name);
    }
}

char* concatpath(char* dst, char const* a, char const* b, char const* c, char const* d)
{
    char* p = dst;
    for (char const* s : {a, b, c, d}) {
        if (!s) continue;
        size_t const n = std::strlen(s);
        std::memmove(p, s, n);
        p += n;
    }
    *p = '\0';
    return dst;
}

void split(splitpath_t& parts, char const* path)
{
    splitpath(path, parts.drive, parts.dir, parts.name, parts.ext);
}

char* concat(char* dst, splitpath_t const& parts)
{
    return concatpath(dst, parts.drive, parts.dir, parts.name, parts.ext);
}

std::string searchpath(std::string const& name, char const* extra)
{
    struct stat st;
    if (::stat(name.c_str(), &st) == 0) return name;

    std::list<std::string> dirs;
    if (char const* path = std::getenv("PATH")) separate_token(dirs, path, ":");
    dirs.push_front("./");
    if (extra) {
        splitpath_t parts;
        split(parts, extra);
        dirs.push_back(std::string(parts.drive) + parts.dir);
    }
    for (std::string const& dir : dirs) {
        // An empty entry would make "/<name>", a look in the root directory.
        if (dir.empty()) continue;
        std::string const candidate = dir + "/" + name;
        if (::stat(candidate.c_str(), &st) == 0) return candidate;
    }
    return name;
}

std::string delimconvert(std::string const& path)
{
    return replace_char(path, L'/', kNativeSeparator);
}

std::string deliminvert(std::string const& path)
{
    return replace_char(path, kNativeSeparator, L'/');
}

}  // namespace libutils
