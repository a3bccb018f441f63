// Every way of doing pixels against the plain one, which has tests of its own: on this processor
// all vector widths, on 32-bit Arm pairs of pixels too. What is added to the tables is tested here.
#include "px/operations.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "bench/ways.h"
#include "common/limits.h"
#include "px/division.h"
#include "px/fx.h"

namespace {

using Pixels = std::vector<uint16_t>;
using Levels = std::vector<uint8_t>;

constexpr int kValues = 65536;

void atEveryWay(const std::function<void(const px::Operations& way)>& check) {
    for (const px::Operations* way : fastWays()) {
        SCOPED_TRACE(way->name);
        check(*way);
    }
}

// Every mode that mixes, by its label.
void withEveryMix(const std::function<void(MixMode mode)>& check) {
    for (const ModeControl& control : kModes) {
        if (px::plain().mixes[control.mode].pixels != nullptr) {
            SCOPED_TRACE(control.label);
            check(control.mode);
        }
    }
}

int count(const Pixels& pixels) {
    return static_cast<int>(pixels.size());
}

Pixels everyPixel() {
    Pixels pixels(kValues);
    for (size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = static_cast<uint16_t>(i);
    }
    return pixels;
}

Levels randomLevels(unsigned seed, size_t size, unsigned end) {
    std::mt19937 random(seed);
    Levels levels(size);
    for (uint8_t& level : levels) {
        level = static_cast<uint8_t>(random() % end);
    }
    return levels;
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

// The mix of a way, to another place and in place; both must be the same.
Pixels mixed(const px::Operations& way, MixMode mode, const Pairs& pairs, const uint8_t* alpha) {
    Pixels bottom = pairs.bottom;
    Pixels out(bottom.size());
    const px::Layers layers = {bottom.data(), pairs.top.data(), alpha};
    way.mixes[mode].pixels(out.data(), layers, count(out));
    EXPECT_EQ(bottom, pairs.bottom) << "to another place";
    way.mixes[mode].pixels(bottom.data(), layers, count(bottom));
    EXPECT_EQ(bottom, out) << "in place";
    return out;
}

void expectSameMix(MixMode mode, const Pairs& pairs, const uint8_t* alpha) {
    const Pixels expected = mixed(px::plain(), mode, pairs, alpha);
    atEveryWay(
        [&](const px::Operations& way) { EXPECT_EQ(mixed(way, mode, pairs, alpha), expected); });
}

TEST(Mixes, EveryFieldPair_IsAsPlain) {
    const Pairs pairs = everyFieldPair(565);
    const Levels alpha = randomLevels(16, pairs.top.size(), 16);
    withEveryMix([&](MixMode mode) {
        expectSameMix(mode, pairs, nullptr);
        expectSameMix(mode, pairs, alpha.data());
    });
}

TEST(Mixes, EveryTopPixel_IsAsPlain) {
    for (const uint16_t under : {uint16_t{0}, uint16_t{0x5A5A}, uint16_t{0xFFFF}}) {
        const Pairs pairs = {Pixels(kValues, under), everyPixel()};
        withEveryMix([&](MixMode mode) { expectSameMix(mode, pairs, nullptr); });
    }
}

TEST(KeyByAlpha, EveryLevelAndFieldPair_IsAsPlain) {
    const Pairs pairs = everyFieldPair(15);
    for (uint8_t level = 0; level <= 15; ++level) {
        SCOPED_TRACE(int{level});
        expectSameMix(MODE_KEY, pairs, Levels(pairs.top.size(), level).data());
    }
}

// Every other pixel has level 7, so that no four of them are clear or solid.
TEST(KeyByAlpha, EveryLevelNextToAnother_IsAsPlain) {
    const Pairs pairs = everyFieldPair(16);
    for (size_t level = 0; level <= 15; ++level) {
        for (size_t first = 0; first < 2; ++first) {
            SCOPED_TRACE("level " + std::to_string(level) + " from pixel " + std::to_string(first));
            Levels alpha(pairs.top.size(), 7);
            for (size_t i = first; i < alpha.size(); i += 2) {
                alpha[i] = static_cast<uint8_t>(level);
            }
            expectSameMix(MODE_KEY, pairs, alpha.data());
        }
    }
}

// Clear, solid and half-clear pixels in runs of 1 to 40, beginning and ending anywhere.
TEST(KeyByAlpha, RunsOfClearAndSolid_AreAsPlain) {
    const Pairs pairs = everyFieldPair(17);
    std::mt19937 random(40);
    constexpr uint8_t kLevels[] = {0, 15, 0, 15, 6};
    for (int round = 0; round < 20; ++round) {
        Levels alpha;
        while (alpha.size() < pairs.top.size()) {
            alpha.insert(alpha.end(), 1 + random() % 40, kLevels[random() % 5]);
        }
        alpha.resize(pairs.top.size());
        expectSameMix(MODE_KEY, pairs, alpha.data());
    }
}

constexpr px::Transition px::Operations::*kTransitions[] = {&px::Operations::flash,
                                                            &px::Operations::fade};

TEST(Transitions, EveryPixelAndLevel_IsAsPlain) {
    for (const auto transition : kTransitions) {
        for (int level = 1; level <= 15; ++level) {
            Pixels expected = everyPixel();
            (px::plain().*transition)(expected.data(), kValues, level);
            atEveryWay([&](const px::Operations& way) {
                Pixels pixels = everyPixel();
                (way.*transition)(pixels.data(), kValues, level);
                EXPECT_EQ(pixels, expected) << "level " << level;
            });
        }
    }
}

// Two layers, their alpha and a result, with pixels around the run that must stay. Starts of bottom
// and result move by pixels, the top stays odd: no two pointers are aligned alike.
struct Strip {
    Pixels out, bottom, top;
    Levels alpha = randomLevels(5, 120, 16);

    Strip() {
        std::mt19937 random(31);
        for (int i = 0; i < 120; ++i) {
            out.push_back(0x5A5A);
            bottom.push_back(static_cast<uint16_t>(random() & 0xFFFF));
            top.push_back(static_cast<uint16_t>(random() % 3 == 0 ? 0 : random() & 0xFFFF));
        }
    }
    px::Layers layers(int start, bool withAlpha) {
        return {bottom.data() + start + 3, top.data() + 1,
                withAlpha ? alpha.data() + start + 5 : nullptr};
    }
    bool operator==(const Strip&) const = default;
};

using Run = std::function<void(const px::Operations& way, Strip& strip, int start, int length)>;

void expectSameRuns(const Run& run) {
    const Strip fresh;
    atEveryWay([&](const px::Operations& way) {
        for (int start = 0; start < 18; ++start) {
            for (int length = 0; length <= 80; ++length) {
                Strip expected = fresh;
                Strip strip = fresh;
                run(px::plain(), expected, start, length);
                run(way, strip, start, length);
                ASSERT_EQ(strip, expected) << start << " + " << length;
            }
        }
    });
}

TEST(Mixes, EveryLengthAndStart_StaysInsideItsRun) {
    withEveryMix([](MixMode mode) {
        for (const bool withAlpha : {false, true}) {
            expectSameRuns([=](const px::Operations& way, Strip& s, int start, int length) {
                way.mixes[mode].pixels(s.out.data() + start, s.layers(start, withAlpha), length);
            });
            expectSameRuns([=](const px::Operations& way, Strip& s, int start, int length) {
                const px::Layers layers = s.layers(start, withAlpha);
                way.mixes[mode].pixels(layers.bottom, layers, length);
            });
        }
    });
}

TEST(Transitions, EveryLengthAndStart_StaysInsideItsRun) {
    for (const auto transition : kTransitions) {
        expectSameRuns([=](const px::Operations& way, Strip& s, int start, int length) {
            (way.*transition)(s.bottom.data() + start, length, 7);
        });
    }
}

void expectSameEffect(FilterId id, const px::Setting& setting) {
    // Every pixel value at three places and more, and noise behind it.
    static const Pixels source = [] {
        std::mt19937 random(3);
        Pixels frame(kFramePixels);
        for (size_t i = 0; i < frame.size(); ++i) {
            frame[i] = static_cast<uint16_t>(i < 3 * size_t{kValues} ? i & 0xFFFF : random());
        }
        return frame;
    }();
    Pixels expected = source;
    px::plain().effects[id](expected.data(), setting);
    atEveryWay([&](const px::Operations& way) {
        Pixels frame = source;
        way.effects[id](frame.data(), setting);
        ASSERT_EQ(frame, expected) << filterOf(id).name << " in direction " << setting.direction;
    });
}

// A direction that there is not as well.
TEST(Effects, EveryPixelAndDirection_IsAsPlain) {
    const Levels noise = randomLevels(497, px::kMostSnowEntries, px::kSnowLevels);
    for (const Filter& filter : kFilters) {
        for (int direction = 0; direction <= 4; ++direction) {
            if (px::plain().effects[filter.id] != nullptr) {
                expectSameEffect(filter.id, {direction, 122, noise.data()});
            }
        }
    }
}

TEST(Effects, SnowOfEveryLevel_IsAsPlain) {
    for (uint8_t level = 0; level < px::kSnowLevels; ++level) {
        SCOPED_TRACE(int{level});
        expectSameEffect(FILTER_SNOW, {3, 0, Levels(7, level).data()});
    }
}

Pixels noisyFrame(unsigned seed) {
    std::mt19937 random(seed);
    Pixels frame(kFramePixels);
    for (uint16_t& pixel : frame) {
        pixel = static_cast<uint16_t>(random() % 4 == 0 ? 0 : random() & 0xFFFF);
    }
    return frame;
}

struct Size {
    int width;
    int height;
    int spare;  // pixels between the rows
    bool composite;
};

constexpr Size kSizes[] = {
    {1280, 720, 0, false}, {1280, 720, 7, false}, {1280, 768, 0, false}, {1280, 719, 0, false},
    {1366, 768, 2, false}, {1024, 768, 0, false}, {1279, 720, 1, false}, {1920, 1080, 0, false},
    {720, 576, 0, true},   {720, 480, 4, true},   {720, 481, 0, true},   {1280, 720, 0, true},
    {320, 240, 0, true},
};

// Layers and a surface with rows of guards around it.
struct Scene {
    explicit Scene(Size size)
        : stride(static_cast<size_t>(size.width + size.spare)),
          surface(stride * static_cast<size_t>(size.height + 2), 0x5A5A),
          view{surface.data() + stride, size.width, size.height, stride * 2, size.composite} {}
    bool sameAs(const Scene& other) const {
        return surface == other.surface && bottom == other.bottom && top == other.top;
    }
    px::Layers layers(const Levels& alpha) {
        return {bottom.data(), top.data(), alpha.empty() ? nullptr : alpha.data()};
    }

    static inline const Pixels kBottom = noisyFrame(1);
    static inline const Pixels kTop = noisyFrame(2);
    Pixels bottom = kBottom;
    Pixels top = kTop;
    size_t stride;
    Pixels surface;
    px::OutputView view;
};

void expectSamePictures(const std::function<void(Scene&)>& rowByRow,
                        const std::function<void(const px::Operations&, Scene&)>& picture) {
    std::vector<const px::Operations*> ways = fastWays();
    ways.push_back(&px::plain());
    for (const Size& size : kSizes) {
        Scene expected(size);
        rowByRow(expected);
        for (const px::Operations* way : ways) {
            Scene scene(size);
            picture(*way, scene);
            EXPECT_TRUE(scene.sameAs(expected))
                << way->name << " " << size.width << " x " << size.height;
        }
    }
}

// What a mix in place makes stays in the bottom layer.
void mixRowByRow(Scene& s, MixMode mode, const Levels& alpha) {
    const px::Mix& mix = px::plain().mixes[mode];
    uint16_t row[kFrameWidth];
    px::beginPicture(s.view);
    for (int y = 0; y < kFrameHeight; ++y) {
        const px::Layers layers = s.layers(alpha).from(y * kFrameWidth);
        uint16_t* const out = mix.inPlace ? layers.bottom : row;
        mix.pixels(out, layers, kFrameWidth);
        px::placeRow(s.view, out, y);
    }
}

TEST(Pictures, Mixes_AreAsRowByRow) {
    withEveryMix([](MixMode mode) {
        for (const Levels& alpha : {Levels(), randomLevels(15, kFramePixels, 16)}) {
            expectSamePictures([&](Scene& s) { mixRowByRow(s, mode, alpha); },
                               [&](const px::Operations& way, Scene& s) {
                                   way.mixPicture(s.view, mode, s.layers(alpha));
                               });
        }
    });
}

TEST(Pictures, Placing_IsAsRowByRow) {
    expectSamePictures(
        [](Scene& s) { px::placePicture(s.view, s.bottom.data()); },
        [](const px::Operations& way, Scene& s) { way.placePicture(s.view, s.bottom.data()); });
}

// Modes 0 and 5 mix nothing, and neither does what is no mode.
TEST(Pictures, ModesWithoutAMix_WriteNothing) {
    for (const int mode : {-1, int{MODE_TOP}, int{MODE_NOTHING}, kMixModes}) {
        expectSamePictures([](Scene&) {},
                           [=](const px::Operations& way, Scene& s) {
                               way.mixPicture(s.view, mode, s.layers({}));
                           });
    }
}

TEST(Tables, EveryModeWithAKey_MixesButTheTopAlone) {
    for (const ModeControl& control : kModes) {
        EXPECT_EQ(px::plain().mixes[control.mode].pixels != nullptr, control.mode != MODE_TOP)
            << control.label;
    }
}

TEST(Tables, EveryFilter_HasAnEffectButNoneAndGlitch) {
    for (const Filter& filter : kFilters) {
        EXPECT_EQ(px::plain().effects[filter.id] != nullptr,
                  filter.id != FILTER_NONE && filter.id != FILTER_GLITCH)
            << filter.name;
    }
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
