#include "utils/diag.h"

namespace libutils {

void error()
{
}

_putspace putspace(unsigned long n)
{
    return _putspace{n};
}

std::ostream& operator<<(std::ostream& os, _putspace const& s)
{
    for (unsigned long i = 0; i < s.n; ++i) os.put(' ');
    return os;
}

_putcn putcn(char c, unsigned long n)
{
    return _putcn{c, n};
}

std::ostream& operator<<(std::ostream& os, _putcn const& s)
{
    for (unsigned long i = 0; i < s.n; ++i) os.put(s.c);
    return os;
}

std::ostream& operator<<(std::ostream& os, _putn const& s)
{
    for (unsigned long i = 0; i < s.n; ++i) os.put(s.text[i]);
    return os;
}

}  // namespace libutils
