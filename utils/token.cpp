#include "utils/token.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <cwchar>

namespace libutils {

void separate_token(std::list<std::string>& out, std::string const& text, char const* delimiters)
{
    size_t start = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        // strchr also finds the delimiters' own NUL, so a NUL byte in the
        // text splits it as well.
        if (std::strchr(delimiters, text[i])) {
            out.push_back(text.substr(start, i - start));
            start = i + 1;
        }
    }
    if (start < text.size()) out.push_back(text.substr(start));
}

bool separate_first_token(std::pair<std::string, std::string>& out, std::string const& text,
                          char delimiter)
{
    char const* s = text.c_str();
    char const* hit = std::strchr(s, delimiter);
    if (!hit) return false;
    size_t const pos = static_cast<size_t>(hit - s);
    out.first = text.substr(0, pos);
    // A NUL delimiter is found at the very end, with nothing behind it.
    out.second = pos < text.size() ? text.substr(pos + 1) : std::string();
    return true;
}

void concatenate_token(std::string& out, std::list<std::string>& tokens, char const* separator)
{
    out.clear();
    bool first = true;
    for (std::string const& token : tokens) {
        if (!first && separator) out += separator;
        out += token;
        first = false;
    }
}

void copy(std::vector<std::string>& out, std::list<std::string>& in)
{
    out.assign(in.begin(), in.end());
}

void cat(std::vector<std::string>& out, std::list<std::string> const& in)
{
    out.insert(out.end(), in.begin(), in.end());
}

void makecharptrarray(std::vector<char const*>& out, std::list<std::string> const& in)
{
    out.resize(in.size());
    std::transform(in.begin(), in.end(), out.begin(), [](std::string const& s) { return s.c_str(); });
}

void chop(std::string& line)
{
    size_t const keep = line.find_last_not_of("\r\n");
    line.erase(keep == std::string::npos ? 0 : keep + 1);
}

void chop2(std::string& line)
{
    // The NUL is spelled out: a string literal would stop before it.
    static std::string const trailing(" \t\n\r\0", 5);
    size_t const keep = line.find_last_not_of(trailing);
    line.erase(keep == std::string::npos ? 0 : keep + 1);
}

int stringcmp(char const* a, char const* b)
{
    return std::strncmp(a, b, std::strlen(b));
}

std::wstring str2wstr(std::string const& s)
{
    // Never more wide characters than bytes.
    std::wstring w(s.size() + 1, L'\0');
    size_t const n = std::mbstowcs(&w[0], s.c_str(), w.size());
    if (n != static_cast<size_t>(-1)) {
        w.resize(n);
        return w;
    }
    // Not text of this locale: keep every byte, as one character each.
    w.clear();
    for (char c : s) {
        if (c == '\0') break;
        w.push_back(static_cast<unsigned char>(c));
    }
    return w;
}

std::string wstr2str(std::wstring const& w)
{
    size_t const per_char = std::max<size_t>(4, MB_CUR_MAX);
    std::string s(w.size() * per_char + 1, '\0');
    size_t const n = std::wcstombs(&s[0], w.c_str(), s.size());
    if (n != static_cast<size_t>(-1)) {
        s.resize(n);
        return s;
    }
    // A character the locale can't write: write the others, and "?" for it.
    s.clear();
    std::mbstate_t state = std::mbstate_t();
    char buf[MB_LEN_MAX];
    for (wchar_t c : w) {
        if (c == L'\0') break;
        size_t const k = std::wcrtomb(buf, c, &state);
        if (k == static_cast<size_t>(-1)) {
            state = std::mbstate_t();
            s.push_back('?');
        } else {
            s.append(buf, k);
        }
    }
    return s;
}

}  // namespace libutils
