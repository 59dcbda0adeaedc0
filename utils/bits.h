// Small arithmetic helpers for sizes and bit counts: power-of-two tests and
// alignment for texture and tile sizes, and byte-to-float colour values.
#ifndef ZANOVIEW_UTILS_BITS_H
#define ZANOVIEW_UTILS_BITS_H

#include <type_traits>

namespace libutils {

template <class T>
inline T max2(T a, T b)
{
    return a < b ? b : a;
}

template <class T>
inline T min2(T a, T b)
{
    return b < a ? b : a;
}

// Exactly one bit set: Is_2nSize(256) is true, Is_2nSize(0) and
// Is_2nSize(96) are false.
template <class T>
inline bool Is_2nSize(T value)
{
    static_assert(std::is_integral<T>::value, "bit test of an integer");
    return value != 0 && (value & (value - 1)) == 0;
}

// The highest set bit counted from 1: Get_TopBitPos(1) is 1,
// Get_TopBitPos(256) is 9, Get_TopBitPos(0) is 0.
template <class T>
inline int Get_TopBitPos(T value)
{
    static_assert(std::is_integral<T>::value, "bit position of an integer");
    // Unsigned, so that a negative value has its sign bit counted and the
    // shift ends.
    auto bits = static_cast<std::make_unsigned_t<T>>(value);
    int pos = 0;
    for (; bits != 0; bits >>= 1) ++pos;
    return pos;
}

// `value` brought up to a multiple of 2 to the power `bits`:
// UpAlignBits(13, 2) is 16, UpAlignBits(16, 2) is 16.
template <class T>
inline T UpAlignBits(T value, int bits)
{
    static_assert(std::is_integral<T>::value, "alignment of an integer");
    T const mask = static_cast<T>((static_cast<T>(1) << bits) - 1);
    return static_cast<T>((value + mask) & ~mask);
}

// A colour byte as a float in [0, 1]; 255 gives a hair above 1.
inline float uc2f(unsigned char c)
{
    return static_cast<float>(c) * 0.003921569f;
}

}  // namespace libutils

#endif
