// The rules of the plain mixes and transitions.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "common/rgb565.h"
#include "px/operations.h"

namespace {

constexpr int kValues = 65536;

std::vector<uint16_t> everyPixel() {
    std::vector<uint16_t> pixels(kValues);
    for (int i = 0; i < kValues; ++i) {
        pixels[static_cast<size_t>(i)] = static_cast<uint16_t>(i);
    }
    return pixels;
}

void mix(MixMode mode, uint16_t* out, const px::Layers& layers, int count) {
    px::plain().mixes[mode].pixels(out, layers, count);
}

uint16_t mixOne(MixMode mode, uint16_t bottom, uint16_t top) {
    uint16_t out = 0x5A5A;
    mix(mode, &out, {&bottom, &top, nullptr}, 1);
    return out;
}

// Keyed in place; black is the key when `alpha` is null.
void key(std::vector<uint16_t>& bottom, const std::vector<uint16_t>& top, const uint8_t* alpha) {
    mix(MODE_KEY, bottom.data(), {bottom.data(), top.data(), alpha}, static_cast<int>(top.size()));
}

// Every bottom value against a spread of top values that holds all fields' ends; `expected` is the
// rule for one field with its maximum.
template <typename Field>
void expectFieldwise(MixMode mode, Field expected) {
    std::vector<uint16_t> bottom = everyPixel();
    std::vector<uint16_t> out(kValues);
    for (int step = 0; step < 97; ++step) {
        const auto topValue = static_cast<uint16_t>(step * 683 & 0xFFFF);
        const std::vector<uint16_t> top(kValues, topValue);
        mix(mode, out.data(), {bottom.data(), top.data(), nullptr}, kValues);
        for (int i = 0; i < kValues; ++i) {
            const auto a = static_cast<uint16_t>(i);
            const int red = expected(a >> 11, topValue >> 11, 31);
            const int green = expected((a >> 5) & 63, (topValue >> 5) & 63, 63);
            const int blue = expected(a & 31, topValue & 31, 31);
            ASSERT_EQ(out[static_cast<size_t>(i)], red * 2048 + green * 32 + blue)
                << a << " with " << topValue;
        }
    }
}

TEST(Add, EveryField_IsASumHeldAtItsMaximum) {
    expectFieldwise(MODE_ADD, [](int a, int b, int most) { return std::min(a + b, most); });
}

TEST(Multiply, EveryField_IsAProductOverItsMaximum) {
    expectFieldwise(MODE_MULTIPLY, [](int a, int b, int most) { return a * b / most; });
}

TEST(Blend, EveryField_IsHalfOfEachRoundedDown) {
    expectFieldwise(MODE_BLEND, [](int a, int b, int) { return a / 2 + b / 2; });
}

TEST(Add, WhiteAndWhite_GiveWhite) {
    EXPECT_EQ(mixOne(MODE_ADD, 0xFFFF, 0xFFFF), 0xFFFF);
}

TEST(Add, FullBlueAndOneBlue_GiveFullBlue) {
    EXPECT_EQ(mixOne(MODE_ADD, 0x001F, 0x0001), 0x001F);
}

TEST(Add, TwoHalfReds_GiveFullRed) {
    EXPECT_EQ(mixOne(MODE_ADD, 0x8000, 0x8000), 0xF800);
}

TEST(Blend, WhiteAndBlack_GiveHalf) {
    EXPECT_EQ(mixOne(MODE_BLEND, 0xFFFF, 0x0000), 0x7BEF);
}

TEST(Multiply, WithWhite_GivesThePixelItself) {
    for (int i = 0; i < kValues; ++i) {
        ASSERT_EQ(mixOne(MODE_MULTIPLY, static_cast<uint16_t>(i), 0xFFFF), i);
    }
}

TEST(Multiply, WithBlack_GivesBlack) {
    for (int i = 0; i < kValues; ++i) {
        ASSERT_EQ(mixOne(MODE_MULTIPLY, static_cast<uint16_t>(i), 0), 0);
    }
}

TEST(KeyByBlack, NearlyBlackTop_IsOpaque) {
    EXPECT_EQ(mixOne(MODE_KEY, 0x1234, 0x0001), 0x0001);
}

TEST(KeyByBlack, EveryTopButPureBlack_IsOpaque) {
    const std::vector<uint16_t> top = everyPixel();
    std::vector<uint16_t> bottom(kValues, 0x5A5A);
    key(bottom, top, nullptr);
    EXPECT_EQ(bottom[0], 0x5A5A);
    for (size_t i = 1; i < kValues; ++i) {
        ASSERT_EQ(bottom[i], i);
    }
}

TEST(KeyByAlpha, Alpha15_GivesTheTopPixel) {
    const std::vector<uint16_t> top = everyPixel();
    std::vector<uint16_t> bottom(kValues, 0xA5C3);
    const std::vector<uint8_t> alpha(kValues, 15);
    key(bottom, top, alpha.data());
    EXPECT_EQ(bottom, top);
}

TEST(KeyByAlpha, Alpha0_LeavesTheBottomPixel) {
    std::vector<uint16_t> bottom = everyPixel();
    const std::vector<uint16_t> top(kValues, 0xFFFF);
    const std::vector<uint8_t> alpha(kValues, 0);
    key(bottom, top, alpha.data());
    EXPECT_EQ(bottom, everyPixel());
}

// Red 10 over red 20 at alpha 7: 10 * 7 / 15 = 4 and 20 * 8 / 15 = 10, each cut before the sum: 14,
// where cutting once would give 15 (230 / 15 = 15.3).
TEST(KeyByAlpha, Quotients_AreCutSeparately) {
    uint16_t bottom = px::pack(20, 40, 20);
    const uint16_t top = px::pack(10, 20, 10);
    const uint8_t alpha = 7;
    mix(MODE_KEY, &bottom, {&bottom, &top, &alpha}, 1);
    EXPECT_EQ(bottom >> 11, 14);
    EXPECT_EQ((bottom >> 5) & 63, 20 * 7 / 15 + 40 * 8 / 15);
    EXPECT_EQ(bottom & 31, 14);
}

TEST(KeyByAlpha, EveryLevelAndField_FollowsTheRule) {
    const std::vector<uint16_t> top = everyPixel();
    std::mt19937 random(20261);
    for (int level = 0; level <= 15; ++level) {
        const auto bottomValue = static_cast<uint16_t>(random() & 0xFFFF);
        std::vector<uint16_t> bottom(kValues, bottomValue);
        const std::vector<uint8_t> alpha(kValues, static_cast<uint8_t>(level));
        key(bottom, top, alpha.data());
        const auto field = [level](int over, int under) {
            return over * level / 15 + under * (15 - level) / 15;
        };
        for (int i = 0; i < kValues; ++i) {
            ASSERT_EQ(bottom[static_cast<size_t>(i)],
                      field(i >> 11, bottomValue >> 11) * 2048 +
                          field((i >> 5) & 63, (bottomValue >> 5) & 63) * 32 +
                          field(i & 31, bottomValue & 31))
                << "level " << level << " top " << i << " bottom " << bottomValue;
        }
    }
}

// 640 pixels of a row, columns 0 to 319 from the top layer.
TEST(HalfHalf, Row_IsTopToTheLeftAndBottomToTheRight) {
    std::vector<uint16_t> bottom(640, 0xF800);
    const std::vector<uint16_t> top(640, 0x001F);
    std::vector<uint16_t> out(640, 0x5A5A);
    const px::Layers layers = {bottom.data(), top.data(), nullptr};
    mix(MODE_HALF_HALF, out.data(), layers, 640);
    for (size_t x = 0; x < 640; ++x) {
        ASSERT_EQ(out[x], x < 320 ? 0x001F : 0xF800) << x;
        ASSERT_EQ(bottom[x], 0xF800);
    }
    mix(MODE_HALF_HALF, bottom.data(), layers, 640);
    EXPECT_EQ(bottom, out);
}

TEST(Flash, EveryPixelAndLevel_FollowsTheRule) {
    for (int k = 1; k <= 15; ++k) {
        std::vector<uint16_t> pixels = everyPixel();
        px::plain().flash(pixels.data(), kValues, k);
        for (int i = 0; i < kValues; ++i) {
            const int red = (31 * k + (15 - k) * (i >> 11)) / 15;
            const int green = (126 * k + (31 - 2 * k) * ((i >> 5) & 63)) / 31;
            const int blue = (31 * k + (15 - k) * (i & 31)) / 15;
            ASSERT_EQ(pixels[static_cast<size_t>(i)], red * 2048 + green * 32 + blue)
                << "level " << k << " pixel " << i;
        }
    }
}

// Red and blue are full; green is 126 * 15 / 31 = 60.
TEST(Flash, quirk_full_flash_leaves_green_at_60) {
    uint16_t black = 0;
    px::plain().flash(&black, 1, 15);
    EXPECT_EQ(black, 0xFF9F);
}

TEST(Fade, EveryPixelAndLevel_FollowsTheRule) {
    for (int level = 1; level <= 15; ++level) {
        const int k = 15 - level;
        std::vector<uint16_t> pixels = everyPixel();
        px::plain().fade(pixels.data(), kValues, level);
        for (int i = 0; i < kValues; ++i) {
            ASSERT_EQ(
                pixels[static_cast<size_t>(i)],
                k * (i >> 11) / 15 * 2048 + 2 * k * ((i >> 5) & 63) / 30 * 32 + k * (i & 31) / 15)
                << "level " << level << " pixel " << i;
        }
    }
}

TEST(Fade, Level15_IsBlack) {
    std::vector<uint16_t> pixels = everyPixel();
    px::plain().fade(pixels.data(), kValues, 15);
    EXPECT_EQ(pixels, std::vector<uint16_t>(kValues, 0));
}

// Odd counts and starts: nothing before or behind the run is touched.
TEST(Kernels, EveryLength_StaysInsideItsRun) {
    constexpr size_t kRoom = 80;
    std::vector<uint16_t> source = everyPixel();
    for (int start = 0; start < 9; ++start) {
        for (int count = 0; count < 40; ++count) {
            std::vector<uint16_t> out(kRoom, 0x5A5A);
            mix(MODE_ADD, out.data() + start, {source.data() + 7, source.data() + 2111, nullptr},
                count);
            for (size_t i = 0; i < kRoom; ++i) {
                const bool inside =
                    i >= static_cast<size_t>(start) && i < static_cast<size_t>(start + count);
                ASSERT_EQ(out[i] == 0x5A5A, !inside) << start << " " << count << " " << i;
            }
        }
    }
}

}  // namespace
