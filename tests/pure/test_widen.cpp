// Pixels as 24-bit displays store them: the plain function against values worked out by hand, every
// other way against the plain one.
#include "px/widen.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "bench/ways.h"

namespace {

constexpr int kValues = 65536;
constexpr int kSurfaceWidth = 1280;

using Pixels = std::vector<uint16_t>;
using Wide = std::vector<uint32_t>;

Pixels noise(unsigned seed, int count) {
    std::mt19937 random(seed);
    Pixels pixels(static_cast<size_t>(count));
    for (uint16_t& pixel : pixels) {
        pixel = static_cast<uint16_t>(random());
    }
    return pixels;
}

int count(const Pixels& pixels) {
    return static_cast<int>(pixels.size());
}

template <typename Check>
void atEveryWay(Check check) {
    for (const px::Operations* way : fastWays()) {
        SCOPED_TRACE(way->name);
        check(*way);
    }
}

// Each field times 8 or 4 is its byte: 31 x 8 = 0xF8, 63 x 4 = 0xFC.
TEST(Widen, Colours_FieldsAtTheTopOfTheirBytes) {
    const Pixels pixels = {0x0000, 0xFFFF, 0xF800, 0x07E0, 0x001F, 0x0800, 0x0020, 0x0001, 0x8410};
    Wide wide(pixels.size(), 0x12345678);
    EXPECT_TRUE(px::widenChanged(wide.data(), pixels.data(), count(pixels)));
    EXPECT_EQ(wide, (Wide{0x000000, 0xF8FCF8, 0xF80000, 0x00FC00, 0x0000F8, 0x080000, 0x000400,
                          0x000008, 0x808080}));
}

TEST(Widen, SameAlready_SaysSo) {
    const Pixels pixels = {0xFFFF, 0x0020};
    Wide wide = {0xF8FCF8, 0x000400};
    EXPECT_FALSE(px::widenChanged(wide.data(), pixels.data(), 2));
    wide[1] = 0x000401;
    EXPECT_TRUE(px::widenChanged(wide.data(), pixels.data(), 2));
    EXPECT_EQ(wide, (Wide{0xF8FCF8, 0x000400}));
    EXPECT_FALSE(px::widenChanged(wide.data(), pixels.data(), 0));
}

TEST(WidenWays, EveryPixel_AsThePlainOne) {
    Pixels pixels(kValues);
    for (int i = 0; i < kValues; ++i) {
        pixels[static_cast<size_t>(i)] = static_cast<uint16_t>(i);
    }
    Wide expected(kValues);
    px::widenChanged(expected.data(), pixels.data(), kValues);
    atEveryWay([&](const px::Operations& way) {
        Wide wide(kValues, 0xFFFFFFFF);
        EXPECT_TRUE(way.widenChanged(wide.data(), pixels.data(), kValues));
        EXPECT_EQ(wide, expected);
        EXPECT_FALSE(way.widenChanged(wide.data(), pixels.data(), kValues));
        EXPECT_EQ(wide, expected);
    });
}

TEST(WidenWays, EveryLength_NothingBeyondItIsTouched) {
    const Pixels pixels = noise(1, 300);
    atEveryWay([&](const px::Operations& way) {
        for (int length = 0; length <= count(pixels) - 1; ++length) {
            const auto end = static_cast<size_t>(length);
            Wide expected(pixels.size(), 0xFFFFFFFF);
            px::widenChanged(expected.data(), pixels.data(), length);
            Wide wide(pixels.size(), 0xFFFFFFFF);
            EXPECT_EQ(way.widenChanged(wide.data(), pixels.data(), length), length > 0);
            EXPECT_EQ(wide, expected) << length;
            // One more pixel differs, and is not looked at.
            EXPECT_FALSE(way.widenChanged(wide.data(), pixels.data(), length)) << length;
            EXPECT_EQ(wide[end], 0xFFFFFFFF);
        }
    });
}

// One pixel and one bit of it, at every place of a row.
TEST(WidenWays, OneChange_FoundAtEveryPlace) {
    const Pixels before = noise(2, kSurfaceWidth);
    Wide shown(before.size());
    px::widenChanged(shown.data(), before.data(), kSurfaceWidth);
    atEveryWay([&](const px::Operations& way) {
        for (size_t place = 0; place < before.size(); ++place) {
            Pixels now = before;
            now[place] = static_cast<uint16_t>(now[place] ^ 1 << place % 16);
            Wide expected = shown;
            expected[place] = px::widened(now[place]);
            Wide wide = shown;
            EXPECT_TRUE(way.widenChanged(wide.data(), now.data(), kSurfaceWidth)) << place;
            EXPECT_EQ(wide, expected) << place;
        }
    });
}

}  // namespace
