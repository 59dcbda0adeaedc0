// Conversion of file values in Intel and Motorola order to the host's.
#include <gtest/gtest.h>

#include <memory>

#include "utils/byteorder.h"

using namespace libutils;

// The host is taken to be little-endian: Intel values come back unchanged.
TEST(ByteOrder, MotorolaReversesTheBytesOfEachWidthIntelKeepsThem)
{
    std::unique_ptr<byteorder> const mm(new motorola_byteorder), ii(new intel_byteorder);
    EXPECT_EQ(mm->tohs(0x1234), 0x3412);
    EXPECT_EQ(mm->tohl(0x12345678u), 0x78563412u);
    EXPECT_EQ(mm->tohll(0x0102030405060708ull), 0x0807060504030201ull);
    EXPECT_EQ(mtohll(0x0102030405060708ull), 0x0807060504030201ull);
    EXPECT_EQ(ii->tohs(0x1234), 0x1234);
    EXPECT_EQ(ii->tohl(0x12345678u), 0x12345678u);
    EXPECT_EQ(ii->tohll(0x0102030405060708ull), 0x0102030405060708ull);
    EXPECT_EQ(itohs(0xabcd), 0xabcd);
    EXPECT_EQ(itohll(1ull << 63), 1ull << 63);
}
