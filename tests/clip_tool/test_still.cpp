// What stands still goes on showing the same pixels from block to block.
#include "tools/clip/encoder/still.h"

#include <gtest/gtest.h>

#include "clip_tool/camera.h"
#include "clip_tool/reference.h"
#include "tools/clip/encoder/encoder.h"

namespace {

using camera::Bytes;
using maker::kMoves;
using maker::SourceBlock;
using maker::SourceTile;

// Two frames of one tile.
SourceBlock block(uint8_t first, uint8_t second, uint8_t alpha = 15) {
    SourceBlock block{2, 1, {}};
    for (const uint8_t level : {first, second}) {
        SourceTile tile{};
        for (auto& plane : tile.colours) {
            plane.fill(level);
        }
        tile.alpha.fill(alpha);
        block.tiles.push_back(tile);
    }
    return block;
}

TEST(Still, Rest_IsThatOfTheBlockWhereItBegan) {
    maker::StillTracker tracker;
    EXPECT_EQ(tracker.next(block(90, 90))[0], kMoves);
    EXPECT_EQ(tracker.next(block(90, 90))[0], 0);
    EXPECT_EQ(tracker.next(block(90, 90))[0], 0);
    EXPECT_EQ(tracker.next(block(90, 150))[0], kMoves);
    EXPECT_EQ(tracker.next(block(90, 90))[0], kMoves);
    EXPECT_EQ(tracker.next(block(90, 90))[0], 4);
    EXPECT_EQ(tracker.next(block(150, 150))[0], kMoves);
    EXPECT_EQ(tracker.next(block(150, 150))[0], 6);
}

TEST(Still, OtherAlpha_IsAChange) {
    maker::StillTracker tracker;
    tracker.next(block(90, 90));
    EXPECT_EQ(tracker.next(block(90, 90, 14))[0], kMoves);
    EXPECT_EQ(tracker.next(block(90, 90, 14))[0], 1);
}

// A level a block is nothing from one to the next, and is seen over two.
TEST(Still, SlowChange_IsNotMissed) {
    maker::StillTracker tracker;
    tracker.next(block(90, 90));
    EXPECT_EQ(tracker.next(block(91, 91))[0], 0);
    EXPECT_EQ(tracker.next(block(92, 92))[0], kMoves);
    EXPECT_EQ(tracker.next(block(93, 93))[0], 2);
}

// Of 32 tiles; what moves changes within each block.
SourceBlock blockOf(size_t still) {
    SourceBlock wide{2, 32, {}};
    for (const uint8_t level : {uint8_t{90}, uint8_t{150}}) {
        for (size_t i = 0; i < 32; ++i) {
            const SourceBlock one = block(i < still ? uint8_t{90} : level, 90);
            wide.tiles.push_back(one.tiles[0]);
        }
    }
    return wide;
}

// One tile in 4 is worth waiting for the block before, fewer are not until it is long done.
TEST(Still, FewTiles_WaitForNoneOfTheLastThreeBlocks) {
    maker::StillTracker few;
    maker::StillTracker enough;
    few.next(blockOf(7));
    enough.next(blockOf(8));
    for (int later = 1; later < 4; ++later) {
        EXPECT_EQ(few.next(blockOf(7))[0], kMoves) << later;
        EXPECT_EQ(enough.next(blockOf(8))[0], 0) << later;
    }
    EXPECT_EQ(few.next(blockOf(7))[0], 0);
}

constexpr int kFrames = 40;  // two blocks and a half
constexpr int kStill = 400;  // pixels of a row, on the left

// A noisy camera before a room in which something moves on the right.
std::vector<reference::Picture> filmed(maker::ClipSettings settings) {
    settings.height = camera::kHeight;
    maker::ClipEncoder encoder(settings);
    camera::Camera camera(3);
    for (int f = 0; f < kFrames; ++f) {
        encoder.add(
            camera
                .picture([f](int x, int y) {
                    const int left = kStill + 40 + 3 * f;
                    return x > left && x < left + 60 ? std::array{230, 200, y} : camera::room(x, y);
                })
                .data());
    }
    return reference::decode(reference::parse(encoder.finish()));
}

size_t changesAt(const std::vector<reference::Picture>& pictures, size_t frame) {
    size_t count = 0;
    for (size_t i = 0; i < pictures[frame].pixels.size(); ++i) {
        count += i % camera::kWidth < kStill &&
                         pictures[frame].pixels[i] != pictures[frame - 1].pixels[i]
                     ? 1
                     : 0;
    }
    return count;
}

TEST(Still, Background_ChangesByNothingFromBlockToBlock) {
    for (const int workers : {1, 3}) {
        const auto pictures = filmed({.quality = 80, .workers = workers});
        EXPECT_EQ(changesAt(pictures, 16), 0u);
        EXPECT_EQ(changesAt(pictures, 32), 0u);
    }
}

TEST(Still, Background_ChangesByNothingUnderABudget) {
    const auto pictures = filmed({.quality = 80, .byteBudget = 40'000, .workers = 2});
    EXPECT_EQ(changesAt(pictures, 16), 0u);
    EXPECT_EQ(changesAt(pictures, 32), 0u);
}

}  // namespace
