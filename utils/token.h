// Cutting lines of text into tokens and back, trimming line ends, and the
// conversion between multibyte and wide text.
#ifndef ZANOVIEW_UTILS_TOKEN_H
#define ZANOVIEW_UTILS_TOKEN_H

#include <list>
#include <string>
#include <utility>
#include <vector>

namespace libutils {

// Appends the pieces of `text` between the characters of `delimiters` to
// `out`. Empty pieces count, except at the very end: "a  b" at " \t" gives
// "a", "", "b"; ",a," at "," gives "", "a"; "" gives nothing. A NUL byte in
// `text` is a delimiter too.
void separate_token(std::list<std::string>& out, std::string const& text, char const* delimiters);

// Cuts `text` at the first `delimiter`: "k=v=w" at '=' gives "k" and "v=w".
// False, with `out` untouched, when there is none.
bool separate_first_token(std::pair<std::string, std::string>& out, std::string const& text,
                          char delimiter);

// `out` = the tokens with `separator` between them; "" for none.
void concatenate_token(std::string& out, std::list<std::string>& tokens, char const* separator);

// `out` takes the list's strings, replacing what it held.
void copy(std::vector<std::string>& out, std::list<std::string>& in);
// The list's strings are appended to `out`.
void cat(std::vector<std::string>& out, std::list<std::string> const& in);
// `out` takes the strings' C pointers, with no null behind the last; they
// stay valid while the list's strings live unchanged.
void makecharptrarray(std::vector<char const*>& out, std::list<std::string> const& in);

// Removes trailing CR and LF.
void chop(std::string& line);
// Removes trailing blanks, tabs, LF, CR and NUL.
void chop2(std::string& line);

// 0 when `a` begins with `b`: stringcmp("-verbose+", "-verbose") is 0.
int stringcmp(char const* a, char const* b);

// Multibyte text of the current locale to wide text and back. Bytes invalid
// in the locale become one wide character each; wide characters that the
// locale can't write become "?".
std::wstring str2wstr(std::string const& s);
std::string wstr2str(std::wstring const& w);

}  // namespace libutils

#endif
