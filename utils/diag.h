// Helpers for the program's diagnostic lines: the error hook, a guard for
// stream format flags, and inserters for repeated characters, raw bytes and
// hexadecimal bytes.
#ifndef ZANOVIEW_UTILS_DIAG_H
#define ZANOVIEW_UTILS_DIAG_H

#include <ios>
#include <ostream>

namespace libutils {

// Called by every failure path just before it writes to the error stream.
// It does nothing: it is the one place to set a breakpoint on any failure.
void error();

// Puts the stream's format flags back as they were at construction, so an
// operator can set std::fixed and the like for its own text only.
class keepflag {
public:
    explicit keepflag(std::ostream& os) : stream(os), flags(os.flags()) {}
    keepflag(keepflag const&) = delete;
    keepflag& operator=(keepflag const&) = delete;
    ~keepflag() { stream.flags(flags); }

    std::ostream& stream;
    std::ios_base::fmtflags flags;
};

// `os << putspace(3)` writes three blanks; putspace(0) writes nothing.
struct _putspace {
    unsigned long n;
};
_putspace putspace(unsigned long n);
std::ostream& operator<<(std::ostream& os, _putspace const& s);

// `os << putcn('-', 3)` writes "---"; a count of 0 writes nothing.
struct _putcn {
    char c;
    unsigned long n;
};
_putcn putcn(char c, unsigned long n);
std::ostream& operator<<(std::ostream& os, _putcn const& s);

// `os << _putn{text, n}` writes exactly n bytes of `text`, NULs included.
struct _putn {
    char const* text;
    unsigned long n;
};
std::ostream& operator<<(std::ostream& os, _putn const& s);

// `os << _puthex<T>{v}` writes "0x" when the stream has showbase, then `v`
// in hexadecimal with fill "0" and width 2, and leaves the stream's flags
// and fill as they were.
// NOTE: _puthex<unsigned char> is inserted as a character, so the output is
// the byte itself padded to two with "0": _puthex<unsigned char>{'A'} writes
// "0A". The typed text form relies on exactly these bytes.
template <class T>
struct _puthex {
    T value;
};

template <class T>
std::ostream& operator<<(std::ostream& os, _puthex<T> const& h)
{
    std::ios_base::fmtflags const flags = os.flags();
    char const fill = os.fill();
    if (flags & std::ios_base::showbase) {
        os << "0x";
        // The prefix is written; a second one from the stream would double it.
        os.unsetf(std::ios_base::showbase);
    }
    os.setf(std::ios_base::hex, std::ios_base::basefield);
    os.fill('0');
    os.width(2);
    os << h.value;
    os.fill(fill);
    os.flags(flags);
    return os;
}

}  // namespace libutils

#endif
