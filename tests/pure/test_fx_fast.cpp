// The fast filters against the plain ones, which have tests of their own, at every vector width of
// the processor that runs the tests.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <vector>

#include "bench/vector_targets.h"
#include "common/limits.h"
#include "px/fx.h"
#include "px/fx_fast.h"

namespace {

using Frame = std::vector<uint16_t>;
using Filter = std::function<void(uint16_t*)>;

// Every pixel value at three places and more, and noise behind it.
Frame everyPixel() {
    std::mt19937 random(3);
    Frame frame(kFramePixels);
    for (size_t i = 0; i < frame.size(); ++i) {
        frame[i] = static_cast<uint16_t>(i < 3 * 65536 ? i & 0xFFFF : random() & 0xFFFF);
    }
    return frame;
}

void expectSame(const Filter& plain, const Filter& fast) {
    static const Frame source = everyPixel();
    Frame expected = source;
    plain(expected.data());
    for (const VectorTarget& target : vectorTargets()) {
        useTarget(target);
        Frame frame = source;
        fast(frame.data());
        ASSERT_EQ(frame, expected) << target.name;
    }
}

using Directed = void (*)(uint16_t*, int);

// A direction that there is not as well.
void expectSameDirections(Directed plain, Directed fast) {
    for (int direction = 0; direction <= 4; ++direction) {
        SCOPED_TRACE(direction);
        expectSame([=](uint16_t* frame) { plain(frame, direction); },
                   [=](uint16_t* frame) { fast(frame, direction); });
    }
}

TEST(FastFilters, EveryPixelAndDirection_IsAsPlain) {
    expectSame(px::invertFrame, px::fast::invertFrame);
    expectSame(px::gameBoyFrame, px::fast::gameBoyFrame);
    expectSameDirections(px::burnFrame, px::fast::burnFrame);
    expectSameDirections(px::hueFrame, px::fast::hueFrame);
    expectSameDirections(px::zoomFrame, px::fast::zoomFrame);
    expectSameDirections(px::mirrorFrame, px::fast::mirrorFrame);
}

void expectSameSnow(const std::vector<uint8_t>& table) {
    const int entries = static_cast<int>(table.size());
    expectSame([&](uint16_t* frame) { px::snowFrame(frame, table.data(), entries); },
               [&](uint16_t* frame) { px::fast::snowFrame(frame, table.data(), entries); });
}

TEST(FastSnow, EveryPixelAndLevel_IsAsPlain) {
    for (uint8_t level = 0; level < 20; ++level) {
        SCOPED_TRACE(int{level});
        expectSameSnow(std::vector<uint8_t>(7, level));
    }
}

TEST(FastSnow, EveryTableLength_IsAsPlain) {
    std::mt19937 random(497);
    for (int direction = 0; direction < 4; ++direction) {
        SCOPED_TRACE(direction);
        std::vector<uint8_t> table(static_cast<size_t>(px::snowEntries(direction)));
        for (uint8_t& level : table) {
            level = static_cast<uint8_t>(random() % 20);
        }
        expectSameSnow(table);
    }
}

TEST(FastScroll, EveryOffset_IsAsPlain) {
    for (int direction = 0; direction < 4; ++direction) {
        const int turn = direction % 2 == 0 ? kFrameHeight : kFrameWidth;
        for (int offset = 2; offset <= turn; offset += 2) {
            SCOPED_TRACE(offset);
            Frame expected = everyPixel();
            Frame frame = expected;
            px::scrollFrame(expected.data(), direction, offset);
            px::fast::scrollFrame(frame.data(), direction, offset);
            ASSERT_EQ(frame, expected) << "direction " << direction;
        }
    }
}

}  // namespace
