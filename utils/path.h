// Picking apart and putting together file paths. Both "/" and "\" separate,
// on every system, and the text is read in the locale's multibyte encoding
// so that a byte inside a character is never taken for a separator. Text
// that is invalid in the locale is read byte by byte instead.
#ifndef ZANOVIEW_UTILS_PATH_H
#define ZANOVIEW_UTILS_PATH_H

#include <cstddef>
#include <string>

namespace libutils {

// A path in four parts; concatenated they give the path back.
// splitpath("c:\\x/y.z") gives "c:", "\\x/", "y", ".z".
struct splitpath_t {
    char drive[1024];  // through the first ":", or empty
    char dir[1024];    // through the last separator, or empty
    char name[1024];   // the file's stem
    char ext[1024];    // from the last "." of the file name, dot included
};

// NOTE: call these as libutils::basename and libutils::dirname. glibc
// declares a ::basename(char const*) that an unqualified call with a string
// literal would pick; the char const* forms here make such a call ambiguous
// (a compile error) instead of silently glibc's.

// Points just behind the last separator of `path`, or at `path` itself:
// baseptr("/a/b.jpg") points at "b.jpg".
char const* baseptr(char const* path);

// The file's stem: the name behind the last separator, up to and without its
// last ".". "/a/b/c.tar.gz" gives "c.tar", "/a/b/c" gives "c", ".hidden" and
// "/a/b/" give "", and "a.d/b" gives "b".
std::string basename(std::string const& path);
std::string basename(char const* path);
// As above, into `dst`. Reads at most `size` characters of `src` and writes at
// most `size` bytes, never part of a character; there is a closing NUL only
// when the stem is shorter than `size` bytes, so callers that need one pass
// one less than their buffer. Returns the stem's length in bytes.
size_t basename(char* dst, char const* src, size_t size);

// The text through the last separator, separator included, so a file name
// can be appended directly: "/a/b/c.jpg" gives "/a/b/", "/a" gives "/",
// "c.jpg" gives "".
std::string dirname(std::string const& path);
std::string dirname(char const* path);
// As above, into `dst`, limited as the char form of basename.
size_t dirname(char* dst, char const* src, size_t size);

// 0 when `s` ends in `ext` (dot included) whatever the case, -1 when `ext` is
// longer than `s`, else the order of the two endings:
// extcasecmp("a.JPG", ".jpg") is 0; "picture.jpeg" does not match ".jpg".
int extcasecmp(std::string const& s, char const* ext);
int extcasecmp(char const* s, size_t len, char const* ext);

// Splits `path` into the four parts of splitpath_t; each output needs room
// for 1024 bytes and takes at most 1023 and a NUL.
void splitpath(char const* path, char* drive, char* dir, char* name, char* ext);
// `dst` = a, b, c, d in a row (a null one counts as empty); returns `dst`.
// `dst` must have room for all of them and a NUL.
char* concatpath(char* dst, char const* a, char const* b, char const* c, char const* d);
void split(splitpath_t& parts, char const* path);
// `dst` needs room for 4 x 1023 bytes and a NUL.
char* concat(char* dst, splitpath_t const& parts);

// Where the file `name` is: `name` itself when it exists, else the first of
// "./", the directories of PATH and the directory of `extra` (a program
// path, may be null) that holds it, as "<dir>/<name>". When there is none,
// `name` as it stands: the caller finds out on opening it.
std::string searchpath(std::string const& name, char const* extra);

// The text with its separators turned to the system's native one, and back.
// "/" is native here, so both give the text unchanged.
std::string delimconvert(std::string const& path);
std::string deliminvert(std::string const& path);

}  // namespace libutils

#endif
