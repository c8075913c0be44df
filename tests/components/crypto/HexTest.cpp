#include "components/crypto/Hex.h"

#include <gtest/gtest.h>

TEST(HexTest, EveryByteIsTwoDigits) {
    const std::string bytes("\x00\x0F\xA5\xFF", 4);
    EXPECT_EQ(CapitalHexOf(bytes), "000FA5FF");
    EXPECT_EQ(LowerHexOf(bytes), "000fa5ff");
    EXPECT_EQ(CapitalHexOf(""), "");
}
