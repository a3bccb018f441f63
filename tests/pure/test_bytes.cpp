#include "common/bytes.h"

#include <gtest/gtest.h>

namespace {

TEST(Bytes, LittleEndian_LowByteFirst) {
    const uint8_t bytes[] = {0x01, 0x80, 0xFE, 0xFF};
    EXPECT_EQ(le16(bytes), 0x8001);
    EXPECT_EQ(le32(bytes), 0xFFFE8001u);
    EXPECT_EQ(be16(bytes), 0x0180);
}

TEST(Bytes, Put_WritesWhatLeReads) {
    uint8_t bytes[6] = {9, 9, 9, 9, 9, 9};
    putLe16(bytes + 1, 0xA1B2);
    EXPECT_EQ(bytes[0], 9);
    EXPECT_EQ(bytes[1], 0xB2);
    EXPECT_EQ(bytes[2], 0xA1);
    EXPECT_EQ(bytes[3], 9);
    putLe32(bytes + 1, 0x89ABCDEFu);
    EXPECT_EQ(bytes[1], 0xEF);
    EXPECT_EQ(bytes[2], 0xCD);
    EXPECT_EQ(bytes[3], 0xAB);
    EXPECT_EQ(bytes[4], 0x89);
    EXPECT_EQ(bytes[5], 9);
}

}  // namespace
