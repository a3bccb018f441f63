#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "common/limits.h"
#include "common/rgb565.h"
#include "px/fx.h"
#include "px/operations.h"

namespace {

using Frame = std::vector<uint16_t>;

Frame solid(uint16_t value) {
    return Frame(kFramePixels, value);
}

Frame noise(unsigned seed) {
    std::mt19937 random(seed);
    Frame frame(kFramePixels);
    for (uint16_t& pixel : frame) {
        pixel = static_cast<uint16_t>(random() & 0xFFFF);
    }
    return frame;
}

// Every pixel value, then again from the start.
Frame everyPixel() {
    Frame frame(kFramePixels);
    for (size_t i = 0; i < frame.size(); ++i) {
        frame[i] = static_cast<uint16_t>(i & 0xFFFF);
    }
    return frame;
}

uint16_t at(const Frame& frame, int x, int y) {
    return frame[static_cast<size_t>(y * kFrameWidth + x)];
}

void apply(FilterId id, Frame& frame, int direction = 0) {
    px::plain().effects[id](frame.data(), {direction, 0, nullptr});
}

void snow(Frame& frame, const uint8_t (&table)[7]) {
    px::plain().effects[FILTER_SNOW](frame.data(), {3, 0, table});
}

TEST(Invert, EveryPixel_IsItsNegative) {
    Frame frame = everyPixel();
    apply(FILTER_INVERT, frame);
    for (size_t i = 0; i < 65536; ++i) {
        ASSERT_EQ(frame[i], 65535 - i);
    }
}

TEST(Invert, Twice_GivesBackTheFrame) {
    Frame frame = noise(1);
    apply(FILTER_INVERT, frame);
    apply(FILTER_INVERT, frame);
    EXPECT_EQ(frame, noise(1));
}

// L of pure blue is 62.
TEST(Burned, PureBlueInDirection1_IsBlack) {
    Frame frame = solid(0x001F);
    apply(FILTER_BURNED, frame, 1);
    EXPECT_EQ(frame, solid(0));
}

TEST(Burned, WhiteInDirection1_IsRed) {
    Frame frame = solid(0xFFFF);
    apply(FILTER_BURNED, frame, 1);
    EXPECT_EQ(frame, solid(0xF800));
}

TEST(Burned, EveryPixelAndDirection_FollowsTheThreshold) {
    const uint16_t colours[] = {0xF79E, 0xF800, 0x07E0, 0xFFE0, 0x0000};
    for (int direction = 0; direction < 5; ++direction) {
        Frame frame = everyPixel();
        apply(FILTER_BURNED, frame, direction);
        for (int p = 0; p < 65536; ++p) {
            const int weight = 2 * (p >> 11) + ((p >> 5) & 63) + 2 * (p & 31);
            ASSERT_EQ(frame[static_cast<size_t>(p)], weight < 90 ? 0 : colours[direction]) << p;
        }
    }
}

TEST(GameBoy, Black_IsTheDarkestShade) {
    Frame frame = solid(0);
    apply(FILTER_GAME_BOY, frame);
    EXPECT_EQ(frame, solid(0x39E0));
}

TEST(GameBoy, White_IsTheLightestShade) {
    Frame frame = solid(0xFFFF);
    apply(FILTER_GAME_BOY, frame);
    EXPECT_EQ(frame, solid(0xFFFD));
}

TEST(GameBoy, EveryPixel_FollowsItsWeight) {
    Frame frame = everyPixel();
    apply(FILTER_GAME_BOY, frame);
    for (int p = 0; p < 65536; ++p) {
        const int weight = 2 * (p >> 11) + ((p >> 5) & 63) + 2 * (p & 31);
        const int shade = weight <= 45    ? 0x39E0
                          : weight <= 90  ? 0x6304
                          : weight <= 135 ? 0xAD4D
                                          : 0xFFFD;
        ASSERT_EQ(frame[static_cast<size_t>(p)], shade) << p;
    }
}

TEST(Hue, EveryPixelAndDirection_FollowsItsIntensity) {
    for (int direction = 0; direction < 4; ++direction) {
        Frame frame = everyPixel();
        apply(FILTER_HUE, frame, direction);
        for (int p = 0; p < 65536; ++p) {
            const int s = (p >> 11) + (((p >> 5) & 63) >> 1) + (p & 31);
            const int m = std::min(s, 31);
            const int h = (s - m) / 2;
            const int third = std::min(s / 3, 31);
            const int n = std::min(s / 2, 31);
            const int expected[] = {third * 2048 + 2 * third * 32 + third,
                                    m * 2048 + 2 * h * 32 + h, h * 2048 + 2 * m * 32 + h,
                                    n * 2048 + 2 * n * 32 + (s - 2 * n)};
            ASSERT_EQ(frame[static_cast<size_t>(p)], expected[direction])
                << "direction " << direction << " pixel " << p;
        }
    }
}

TEST(Mirror, RedLeftAndBlueRightInDirection1_IsAllRed) {
    Frame frame(kFramePixels);
    for (int i = 0; i < kFramePixels; ++i) {
        frame[static_cast<size_t>(i)] = i % kFrameWidth < 320 ? 0xF800 : 0x001F;
    }
    apply(FILTER_MIRROR, frame, 1);
    EXPECT_EQ(frame, solid(0xF800));
}

TEST(Mirror, EveryDirection_KeepsItsHalf) {
    const Frame before = noise(5);
    for (int direction = 0; direction < 4; ++direction) {
        Frame frame = before;
        apply(FILTER_MIRROR, frame, direction);
        for (int y = 0; y < kFrameHeight; ++y) {
            for (int x = 0; x < kFrameWidth; ++x) {
                const int fromY = direction == 0   ? std::max(y, 359 - y)
                                  : direction == 2 ? std::min(y, 359 - y)
                                                   : y;
                const int fromX = direction == 1   ? std::min(x, 639 - x)
                                  : direction == 3 ? std::max(x, 639 - x)
                                                   : x;
                ASSERT_EQ(at(frame, x, y), at(before, fromX, fromY))
                    << "direction " << direction << " at " << x << " " << y;
            }
        }
    }
}

TEST(Zoom, Direction0_FillsTheFrameWithTheCentre) {
    const Frame before = noise(6);
    Frame frame = before;
    apply(FILTER_ZOOM, frame, 0);
    for (int y = 0; y < kFrameHeight; ++y) {
        for (int x = 0; x < kFrameWidth; ++x) {
            ASSERT_EQ(at(frame, x, y), at(before, 160 + x / 2, 90 + y / 2)) << x << " " << y;
        }
    }
}

TEST(Zoom, quirk_zoom_away_from_up_is_a_screen_door) {
    const Frame before = noise(7);
    for (int direction = 1; direction < 4; ++direction) {
        Frame frame = before;
        apply(FILTER_ZOOM, frame, direction);
        for (int y = 0; y < kFrameHeight; ++y) {
            for (int x = 0; x < kFrameWidth; ++x) {
                const bool zoomed = x % 2 == 0 && y % 2 == 0;
                ASSERT_EQ(at(frame, x, y),
                          zoomed ? at(before, 160 + x / 2, 90 + y / 2) : at(before, x, y))
                    << x << " " << y;
            }
        }
    }
}

TEST(Snow, FirstPixel_TakesEntryOneAndTheTableWraps) {
    const uint8_t table[7] = {19, 10, 11, 12, 13, 14, 15};
    Frame frame = solid(px::pack(10, 20, 10));
    snow(frame, table);
    EXPECT_EQ(frame[0], px::pack(10, 20, 10));
    EXPECT_EQ(frame[1], px::pack(11, 22, 11));
    EXPECT_EQ(frame[5], px::pack(15, 30, 15));
    EXPECT_EQ(frame[6], px::pack(19, 38, 19)) << "entry 0";
    EXPECT_EQ(frame[7], frame[0]);
}

TEST(Snow, Fields_StayInTheirRange) {
    const uint8_t table[7] = {0, 0, 19, 0, 19, 0, 19};
    Frame dark = solid(px::pack(3, 5, 3));
    snow(dark, table);
    EXPECT_EQ(dark[0], 0);
    Frame light = solid(px::pack(28, 60, 28));
    snow(light, table);
    EXPECT_EQ(light[1], 0xFFFF);
}

TEST(Snow, quirk_short_snow_tables_make_stripes) {
    EXPECT_EQ(px::snowEntries(0), 497);
    EXPECT_EQ(px::snowEntries(1), 313);
    EXPECT_EQ(px::snowEntries(2), 29);
    EXPECT_EQ(px::snowEntries(3), 7);
    const uint8_t table[7] = {0, 5, 19, 2, 17, 9, 11};
    Frame frame = solid(px::pack(15, 30, 15));
    snow(frame, table);
    for (size_t i = 7; i < frame.size(); ++i) {
        ASSERT_EQ(frame[i], frame[i - 7]);
    }
    EXPECT_NE(frame[0], frame[1]);
}

TEST(ScrollOffset, Direction1FromAFreshSlot_Goes2To638And2Again) {
    int offset = 0;
    for (int expected = 2; expected <= 638; expected += 2) {
        offset = px::nextScrollOffset(offset, 1, false);
        ASSERT_EQ(offset, expected);
    }
    EXPECT_EQ(px::nextScrollOffset(offset, 1, false), 2);
}

TEST(ScrollOffset, Direction2FromAFreshSlot_Goes2To360And2Again) {
    int offset = 0;
    for (int expected = 2; expected <= 360; expected += 2) {
        offset = px::nextScrollOffset(offset, 2, false);
        ASSERT_EQ(offset, expected);
    }
    EXPECT_EQ(px::nextScrollOffset(offset, 2, false), 2);
}

TEST(ScrollOffset, Direction3FromAFreshSlot_Goes2Then640ThenDown) {
    int offset = px::nextScrollOffset(0, 3, false);
    EXPECT_EQ(offset, 2);
    for (int expected = 640; expected >= 600; expected -= 2) {
        offset = px::nextScrollOffset(offset, 3, false);
        ASSERT_EQ(offset, expected);
    }
}

TEST(ScrollOffset, Direction0FromAFreshSlot_Goes2Then360ThenDown) {
    int offset = px::nextScrollOffset(0, 0, false);
    EXPECT_EQ(offset, 2);
    offset = px::nextScrollOffset(offset, 0, false);
    EXPECT_EQ(offset, 360);
    EXPECT_EQ(px::nextScrollOffset(offset, 0, false), 358);
}

TEST(ScrollOffset, Held_StaysWhereItIs) {
    for (int direction = 0; direction < 4; ++direction) {
        EXPECT_EQ(px::nextScrollOffset(126, direction, true), 126);
    }
}

// Across, a full turn counts as past the end, held or not; downwards it does not.
TEST(ScrollOffset, HeldAtAFullTurn_WrapsAcrossAndStaysDown) {
    for (const int direction : {1, 3}) {
        EXPECT_EQ(px::nextScrollOffset(640, direction, true), 2);
        EXPECT_EQ(px::nextScrollOffset(638, direction, true), 638);
        EXPECT_EQ(px::nextScrollOffset(0, direction, true), 640);
    }
    for (const int direction : {0, 2}) {
        EXPECT_EQ(px::nextScrollOffset(360, direction, true), 360);
        EXPECT_EQ(px::nextScrollOffset(361, direction, true), 2);
        EXPECT_EQ(px::nextScrollOffset(0, direction, true), 360);
    }
}

// 640 - 2 + 2: across, the full turn itself is never shown going right; downwards it is.
TEST(ScrollOffset, quirk_scroll_wraps_at_640_across_and_past_360_down) {
    EXPECT_EQ(px::nextScrollOffset(638, 1, false), 2);
    EXPECT_EQ(px::nextScrollOffset(358, 2, false), 360);
    EXPECT_EQ(px::nextScrollOffset(360, 2, false), 2);
}

Frame scrolled(const Frame& before, int direction, int offset) {
    Frame frame = before;
    px::plain().effects[FILTER_SCROLL](frame.data(), {direction, offset, nullptr});
    return frame;
}

TEST(Scroll, Across_MovesEveryPixelRight) {
    const Frame before = noise(8);
    for (int offset = 2; offset <= 640; offset += 2) {
        const Frame frame = scrolled(before, 1, offset);
        ASSERT_EQ(scrolled(before, 3, offset), frame) << offset;
        for (int y = 0; y < kFrameHeight; y += 17) {
            for (int x = 0; x < kFrameWidth; ++x) {
                ASSERT_EQ(at(frame, (x + offset) % 640, y), at(before, x, y)) << offset;
            }
        }
    }
}

TEST(Scroll, Down_MovesEveryRowDown) {
    const Frame before = noise(9);
    for (int offset = 2; offset <= 360; offset += 2) {
        const Frame frame = scrolled(before, 2, offset);
        ASSERT_EQ(scrolled(before, 0, offset), frame) << offset;
        for (int y = 0; y < kFrameHeight; ++y) {
            for (int x = 0; x < kFrameWidth; x += 17) {
                ASSERT_EQ(at(frame, x, (y + offset) % 360), at(before, x, y)) << offset;
            }
            ASSERT_EQ(at(frame, 639, (y + offset) % 360), at(before, 639, y)) << offset;
        }
    }
}

}  // namespace
