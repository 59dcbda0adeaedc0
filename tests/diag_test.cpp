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

TEST(Puthex, ByteIsWrittenAsItselfPaddedWithZero)
{
    std::ostringstream os;
    os << _puthex<unsigned char>{'A'};
    EXPECT_EQ(os.str(), "0A");
    os.str("");
    os << std::showbase << _puthex<unsigned char>{'A'};
    EXPECT_EQ(os.str(), "0x0A");
}

TEST(Puthex, WiderTypesAreHexWithOnePrefixAndStreamIsLeftAsFound)
{
    std::ostringstream os;
    os.fill('*');
    os << _puthex<int>{0xf} << ' ' << std::showbase << _puthex<unsigned>{0x1ab} << ' ';
    os.width(4);
    os << 10;
    EXPECT_EQ(os.str(), "0f 0x1ab **10");
}

TEST(Keepflag, RestoresNotationAfterGuardedInsertion)
{
    std::ostringstream os;
    {
        keepflag keep(os);
        os << std::fixed << std::hex << 1.5 << ' ' << 255;
    }
    os << ' ' << 1.5 << ' ' << 255;
    EXPECT_EQ(os.str(), "1.500000 ff 1.5 255");
}
