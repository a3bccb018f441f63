// The fast functions against the plain ones, which have tests of their own, at every vector width
// of the processor that runs the tests.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "bench/vector_targets.h"
#include "common/rgb565.h"
#include "px/division.h"
#include "px/kernels.h"
#include "px/kernels_fast.h"

namespace {

using Pixels = std::vector<uint16_t>;
using Mix = void (*)(uint16_t*, const uint16_t*, const uint16_t*, int);
using Level = void (*)(uint16_t*, int, int);

constexpr int kValues = 65536;

void atEveryWidth(const std::function<void()>& check) {
    for (const VectorTarget& target : vectorTargets()) {
        SCOPED_TRACE(target.name);
        useTarget(target);
        check();
    }
}

Pixels everyPixel() {
    Pixels pixels(kValues);
    for (size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = static_cast<uint16_t>(i);
    }
    return pixels;
}

int count(const Pixels& pixels) {
    return static_cast<int>(pixels.size());
}

// Every pair of values of each field, the two other fields at random; once at even places and once
// at odd ones, which are the two halves of a pair of pixels.
struct Pairs {
    Pixels bottom;
    Pixels top;
};

Pairs everyFieldPair(unsigned seed) {
    std::mt19937 random(seed);
    Pairs pairs;
    const auto add = [&](int a, int b, uint16_t mask, int shift) {
        const auto others = random();
        pairs.bottom.push_back(static_cast<uint16_t>((others & 0xFFFF & ~mask) | (a << shift)));
        pairs.top.push_back(static_cast<uint16_t>((others >> 16 & ~mask) | (b << shift)));
    };
    for (int round = 0; round < 2; ++round) {
        for (int a = 0; a < 64; ++a) {
            for (int b = 0; b < 64; ++b) {
                add(a, b, 0x07E0, 5);
                add(a / 2, b / 2, 0xF800, 11);
                add(a / 2, b / 2, 0x001F, 0);
            }
        }
        add(0, 0, 0, 0);  // moves the second round by a pixel
    }
    return pairs;
}

void expectSameMix(Mix plain, Mix fast) {
    const Pairs pairs = everyFieldPair(565);
    Pixels expected(pairs.bottom.size());
    plain(expected.data(), pairs.bottom.data(), pairs.top.data(), count(expected));
    atEveryWidth([&] {
        Pixels out(expected.size());
        fast(out.data(), pairs.bottom.data(), pairs.top.data(), count(out));
        EXPECT_EQ(out, expected);
        Pixels inPlace = pairs.bottom;
        fast(inPlace.data(), inPlace.data(), pairs.top.data(), count(inPlace));
        EXPECT_EQ(inPlace, expected) << "in place";
    });
}

TEST(FastMixes, EveryFieldPair_IsAsPlain) {
    expectSameMix(px::blendPixels, px::fast::blendPixels);
    expectSameMix(px::addPixels, px::fast::addPixels);
    expectSameMix(px::multiplyPixels, px::fast::multiplyPixels);
}

TEST(FastKeyByBlack, EveryTopPixel_IsAsPlain) {
    const Pixels top = everyPixel();
    for (const uint16_t under : {uint16_t{0}, uint16_t{0x5A5A}, uint16_t{0xFFFF}}) {
        Pixels expected(kValues, under);
        px::keyByBlack(expected.data(), top.data(), kValues);
        atEveryWidth([&] {
            Pixels bottom(kValues, under);
            px::fast::keyByBlack(bottom.data(), top.data(), kValues);
            EXPECT_EQ(bottom, expected);
        });
    }
}

void expectSameKey(const Pairs& pairs, const std::vector<uint8_t>& alpha) {
    Pixels expected = pairs.bottom;
    px::keyByAlpha(expected.data(), pairs.top.data(), alpha.data(), count(expected));
    atEveryWidth([&] {
        Pixels bottom = pairs.bottom;
        px::fast::keyByAlpha(bottom.data(), pairs.top.data(), alpha.data(), count(bottom));
        EXPECT_EQ(bottom, expected);
    });
}

TEST(FastKeyByAlpha, EveryLevelAndFieldPair_IsAsPlain) {
    const Pairs pairs = everyFieldPair(15);
    for (uint8_t level = 0; level <= 15; ++level) {
        SCOPED_TRACE(int{level});
        expectSameKey(pairs, std::vector<uint8_t>(pairs.top.size(), level));
    }
}

// Every other pixel has level 7, so that no four of them are clear or solid.
TEST(FastKeyByAlpha, EveryLevelNextToAnother_IsAsPlain) {
    const Pairs pairs = everyFieldPair(16);
    for (size_t level = 0; level <= 15; ++level) {
        for (size_t first = 0; first < 2; ++first) {
            SCOPED_TRACE("level " + std::to_string(level) + " from pixel " + std::to_string(first));
            std::vector<uint8_t> alpha(pairs.top.size(), 7);
            for (size_t i = first; i < alpha.size(); i += 2) {
                alpha[i] = static_cast<uint8_t>(level);
            }
            expectSameKey(pairs, alpha);
        }
    }
}

// Clear, solid and half-clear pixels in runs of 1 to 40, beginning and ending anywhere.
TEST(FastKeyByAlpha, RunsOfClearAndSolid_AreAsPlain) {
    const Pairs pairs = everyFieldPair(17);
    std::mt19937 random(40);
    constexpr uint8_t kLevels[] = {0, 15, 0, 15, 6};
    for (int round = 0; round < 20; ++round) {
        std::vector<uint8_t> alpha;
        while (alpha.size() < pairs.top.size()) {
            alpha.insert(alpha.end(), 1 + random() % 40, kLevels[random() % 5]);
        }
        alpha.resize(pairs.top.size());
        expectSameKey(pairs, alpha);
    }
}

void expectSameLevels(Level plain, Level fast) {
    for (int level = 1; level <= 15; ++level) {
        Pixels expected = everyPixel();
        plain(expected.data(), kValues, level);
        atEveryWidth([&] {
            Pixels pixels = everyPixel();
            fast(pixels.data(), kValues, level);
            EXPECT_EQ(pixels, expected) << "level " << level;
        });
    }
}

TEST(FastTransitions, EveryPixelAndLevel_IsAsPlain) {
    expectSameLevels(px::flashPixels, px::fast::flashPixels);
    expectSameLevels(px::fadePixels, px::fast::fadePixels);
}

// Two layers, their alpha and a result, with pixels around the run that must stay.
struct Strip {
    Pixels out, bottom, top;
    std::vector<uint8_t> alpha;

    Strip() {
        std::mt19937 random(31);
        for (int i = 0; i < 120; ++i) {
            out.push_back(0x5A5A);
            bottom.push_back(static_cast<uint16_t>(random() & 0xFFFF));
            top.push_back(static_cast<uint16_t>(random() % 3 == 0 ? 0 : random() & 0xFFFF));
            alpha.push_back(static_cast<uint8_t>(random() % 16));
        }
    }
    bool operator==(const Strip&) const = default;
};

// Starts of bottom and result move by pixels, the top stays odd: no two pointers are aligned alike.
using Run = std::function<void(Strip& strip, int start, int count)>;

void expectSameRuns(const Run& plain, const Run& fast) {
    atEveryWidth([&] {
        for (int start = 0; start < 18; ++start) {
            for (int length = 0; length <= 80; ++length) {
                Strip expected;
                Strip strip;
                plain(expected, start, length);
                fast(strip, start, length);
                ASSERT_EQ(strip, expected) << start << " + " << length;
            }
        }
    });
}

Run mixRun(Mix mix) {
    return [mix](Strip& s, int start, int length) {
        mix(s.out.data() + start, s.bottom.data() + start + 3, s.top.data() + 1, length);
    };
}

Run levelRun(Level change) {
    return
        [change](Strip& s, int start, int length) { change(s.bottom.data() + start, length, 7); };
}

Run alphaRun(void (*key)(uint16_t*, const uint16_t*, const uint8_t*, int)) {
    return [key](Strip& s, int start, int length) {
        key(s.bottom.data() + start, s.top.data() + 1, s.alpha.data() + start + 5, length);
    };
}

Run blackRun(void (*key)(uint16_t*, const uint16_t*, int)) {
    return [key](Strip& s, int start, int length) {
        key(s.bottom.data() + start, s.top.data() + 1, length);
    };
}

TEST(FastKernels, EveryLengthAndStart_StaysInsideItsRun) {
    expectSameRuns(mixRun(px::blendPixels), mixRun(px::fast::blendPixels));
    expectSameRuns(mixRun(px::addPixels), mixRun(px::fast::addPixels));
    expectSameRuns(mixRun(px::multiplyPixels), mixRun(px::fast::multiplyPixels));
    expectSameRuns(levelRun(px::flashPixels), levelRun(px::fast::flashPixels));
    expectSameRuns(levelRun(px::fadePixels), levelRun(px::fast::fadePixels));
    expectSameRuns(alphaRun(px::keyByAlpha), alphaRun(px::fast::keyByAlpha));
    expectSameRuns(blackRun(px::keyByBlack), blackRun(px::fast::keyByBlack));
}

// 4370 is 14 more than 65536 / 15 x 15 allows: value v comes out 14 v / 983040 too large, which
// tips the first value over that lacks 1 to a multiple of 15 when 14 v reaches 65536: 4694.
TEST(Division, PastItsRange_TheProofFails) {
    EXPECT_TRUE(px::divides(px::kOver15, 15, 4693));
    EXPECT_FALSE(px::divides(px::kOver15, 15, 4694));
}

TEST(Division, ProductOf16Bits_IsTheLimit) {
    EXPECT_TRUE(px::divides(px::kOver63, 63, 4095));
    EXPECT_FALSE(px::divides(px::kOver63, 63, 4096));
}

}  // namespace
