// The stream helpers of diagnostic lines.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "utils/diag.h"

using namespace libutils;

TEST(Repeaters, WriteCountCharactersAndNothingForZero)
{
    std::ostringstream os;
    os << '[' << putspace(0) << putcn('-', 0) << ']' << putspace(2) << putcn('=', 3);
    EXPECT_EQ(os.str(), "[]  ===");
    os << _putn{"a\0bcd", 3};
    EXPECT_EQ(os.str(), std::string("[]  ===a\0b", 10));
}

TEST(Puthex, ByteIsItselfPaddedWithZeroWiderTypesAreHexWithOnePrefix)
{
    std::ostringstream os;
    os.fill('*');
    os << _puthex<unsigned char>{'A'} << ' ' << _puthex<int>{0xf} << ' ' << std::showbase
       << _puthex<unsigned char>{'A'} << ' ' << _puthex<unsigned>{0x1ab} << ' ';
    os.width(4);
    os << 10;  // the stream's fill and width are left as found
    EXPECT_EQ(os.str(), "0A 0f 0x0A 0x1ab **10");
}
