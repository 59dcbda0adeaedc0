#include "utils/byteorder.h"

// Intel order is taken to be the host's: a big-endian host would need the
// roles of the two classes swapped.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "byte order readers assume a little-endian host");

namespace libutils {

namespace {

unsigned short swap16(unsigned short v)
{
    return static_cast<unsigned short>((v >> 8) | (v << 8));
}

unsigned int swap32(unsigned int v)
{
    return (v >> 24) | ((v >> 8) & 0x0000ff00u) | ((v << 8) & 0x00ff0000u) | (v << 24);
}

unsigned long long swap64(unsigned long long v)
{
    return (static_cast<unsigned long long>(swap32(static_cast<unsigned int>(v))) << 32) |
           swap32(static_cast<unsigned int>(v >> 32));
}

}  // namespace

byteorder::~byteorder() = default;

unsigned short intel_byteorder::tohs(unsigned short value) { return value; }
unsigned int intel_byteorder::tohl(unsigned int value) { return value; }
unsigned long long intel_byteorder::tohll(unsigned long long value) { return value; }

unsigned short motorola_byteorder::tohs(unsigned short value) { return swap16(value); }
unsigned int motorola_byteorder::tohl(unsigned int value) { return swap32(value); }
unsigned long long motorola_byteorder::tohll(unsigned long long value) { return swap64(value); }

unsigned long long mtohll(unsigned long long value)
{
    return swap64(value);
}

}  // namespace libutils
