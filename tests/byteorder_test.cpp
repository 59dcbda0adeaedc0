// Conversion of file values in Intel and Motorola order to the host's.
#include <gtest/gtest.h>

#include <memory>

#include "utils/byteorder.h"

using namespace libutils;

TEST(MotorolaOrder, ReversesTheBytesOfEachWidth)
{
    std::unique_ptr<byteorder> order(new motorola_byteorder);
    EXPECT_EQ(order->tohs(0x1234), 0x3412);
    EXPECT_EQ(order->tohl(0x12345678u), 0x78563412u);
    EXPECT_EQ(order->tohll(0x0102030405060708ull), 0x0807060504030201ull);
    EXPECT_EQ(mtohll(0x0102030405060708ull), 0x0807060504030201ull);
}

TEST(IntelOrder, ReturnsValuesUnchanged)
{
    std::unique_ptr<byteorder> order(new intel_byteorder);
    EXPECT_EQ(order->tohs(0x1234), 0x1234);
    EXPECT_EQ(order->tohl(0x12345678u), 0x12345678u);
    EXPECT_EQ(order->tohll(0x0102030405060708ull), 0x0102030405060708ull);
    EXPECT_EQ(itohs(0xabcd), 0xabcd);
    EXPECT_EQ(itohll(1ull << 63), 1ull << 63);
}
