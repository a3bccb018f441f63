// The clips of the conformance corpus: what they cover, and what the program makes of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <string_view>

#include "clip/validate.h"
#include "clip_tool/on_stage.h"
#include "clip_tool/reference.h"
#include "tests/support/clip_stage.h"
#include "tools/clip/jobs/conformance_cases.h"

namespace {

using maker::conformance::Case;
using maker::conformance::Chapter;
using maker::conformance::Expected;
using Bytes = std::vector<uint8_t>;

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const Chapter& chapter : maker::conformance::chapters()) {
        cases.insert(cases.end(), chapter.cases.begin(), chapter.cases.end());
    }
    return cases;
}

std::vector<Case> casesOf(bool ok) {
    std::vector<Case> cases = allCases();
    std::erase_if(cases, [ok](const Case& each) { return (each.expected == Expected::OK) != ok; });
    return cases;
}

// Calls `look(block, frame, tile)` for every tile of every frame of the clips that are in order.
template <typename Look>
void forEveryTile(Look look) {
    for (const Case& each : casesOf(true)) {
        const reference::Clip clip = reference::parse(each.make());
        for (const reference::Block& block : clip.blocks) {
            for (const reference::Frame& frame : block.frames) {
                for (size_t tile = 0; tile < frame.entries.size(); ++tile) {
                    look(block, frame, tile);
                }
            }
        }
    }
}

TEST(Conformance, Names_AreEachThereOnceWithASentence) {
    std::set<std::string> names;
    for (const Case& each : allCases()) {
        EXPECT_TRUE(names.insert(each.name).second) << each.name;
        EXPECT_TRUE(std::string(each.what).ends_with(".")) << each.name;
    }
}

// 20 types, each along 6 paths, and the types 0 to 9 and 10 to 19 under code 7.
TEST(Conformance, Tiles_ShowEveryTypeUnderEveryCode) {
    std::set<std::pair<unsigned, unsigned>> seen;
    forEveryTile(
        [&seen](const reference::Block& block, const reference::Frame& frame, size_t tile) {
            const unsigned entry = frame.entries[tile];
            if (frame.codes[tile] != 0 && entry < block.types.size()) {
                seen.insert({block.types[entry], frame.codes[tile]});
            }
        });
    EXPECT_EQ(seen.size(), 20u * 7u);
}

// Of the run types, by the first byte of each record; of alpha parts, by a last run of 3 pixels or
// the only byte.
TEST(Conformance, Records_HaveEveryControlByteThatMatters) {
    std::set<unsigned> splits, shortLengths, shortWidths, paletteLengths, levels;
    for (const Case& each : casesOf(true)) {
        for (const reference::Block& block : reference::parse(each.make()).blocks) {
            for (size_t i = 0; i < block.records.size(); ++i) {
                const unsigned first = block.records[i][0];
                const unsigned type = block.types[i] % 10;
                if (type >= 8) {
                    splits.insert(first % 64);
                } else if (type >= 6) {
                    paletteLengths.insert(first / 16);
                } else if (type >= 4) {
                    shortLengths.insert(first / 32);
                    shortWidths.insert(first % 4);
                }
                if (block.types[i] == 18 && block.records[i].back() / 16 == 2) {
                    levels.insert(block.records[i].back() % 16);
                }
            }
        }
    }
    EXPECT_EQ(splits.size(), 63u);
    EXPECT_EQ(shortLengths.size(), 8u);
    EXPECT_EQ(shortWidths.size(), 4u);
    EXPECT_EQ(paletteLengths.size(), 16u);
    EXPECT_EQ(levels.size(), 16u);
}

TEST(Conformance, ChangeRuns_HaveEveryLengthChangedAndNot) {
    std::set<uint8_t> seen;
    for (const Case& each : casesOf(true)) {
        const Bytes bytes = each.make();
        std::vector<clip::BlockLayout> layouts;
        clip::validate(bytes, &layouts);
        for (const clip::BlockLayout& block : layouts) {
            const auto runs = bytes.begin() + static_cast<long>(block.offset + block.headerBytes);
            seen.insert(runs, runs + static_cast<long>(block.runBytes));
        }
    }
    EXPECT_EQ(seen.size(), 256u);
}

TEST(Conformance, ClipsInOrder_HaveTheMostOfEverything) {
    size_t frames = 0, records = 0, runBytes = 0, recordBytes = 0;
    std::set<int> blockFrames;
    for (const Case& each : casesOf(true)) {
        SCOPED_TRACE(each.name);
        const Bytes bytes = each.make();
        std::vector<clip::BlockLayout> layouts;
        const clip::Verdict verdict = clip::validate(bytes, &layouts);
        EXPECT_NE(verdict.kind, clip::FAULT_BROKEN) << verdict.message;
        const reference::Clip clip = reference::parse(bytes);
        frames = std::max<size_t>(frames, clip.frameCount);
        for (const reference::Block& block : clip.blocks) {
            blockFrames.insert(static_cast<int>(block.frames.size()));
            for (const Bytes& record : block.records) {
                recordBytes = std::max(recordBytes, record.size());
            }
        }
        for (const clip::BlockLayout& layout : layouts) {
            records = std::max<size_t>(records, layout.header.recordCount);
            runBytes = std::max(runBytes, layout.runBytes);
        }
    }
    EXPECT_EQ(frames, 256u);
    EXPECT_EQ(records, 65535u);
    EXPECT_EQ(runBytes, 54000u);  // 15 x 3600
    EXPECT_EQ(recordBytes, 225u);
    EXPECT_TRUE(blockFrames.contains(1) && blockFrames.contains(2) && blockFrames.contains(16));
}

std::filesystem::path written(const Bytes& bytes) {
    std::ofstream("made.m19", std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return std::filesystem::current_path();
}

// Of two blocks with the same entries and codes each frame is drawn whole only where a block
// begins, so a jump would leave tiles of the other one.
constexpr std::string_view kFromFirstToLast = "blocks-alike";

TEST(Conformance, ClipsInOrder_PlayOnStageAsTheToolDrawsThem) {
    for (const Case& each : casesOf(true)) {
        SCOPED_TRACE(each.name);
        if (each.name != kFromFirstToLast) {
            expectOnStage(each.make());
        }
    }
}

TEST(Conformance, BlocksAlike_PlayOnStageFromFirstToLast) {
    for (const Case& each : casesOf(true)) {
        if (each.name != kFromFirstToLast) {
            continue;
        }
        const TemporaryFolder videos;
        const Bytes bytes = each.make();
        ClipStage stage(written(bytes));
        ASSERT_EQ(stage.load("made.m19", 2000), 2);
        const std::vector<reference::Picture> pictures = reference::decode(reference::parse(bytes));
        ASSERT_EQ(pictures.size(), 32u);
        EXPECT_NE(pictures[0], pictures[16]);
        for (size_t i = 0; i < pictures.size(); ++i) {
            stage.clip->renderMoxel19(0, static_cast<int>(i), MODE_TOP);
            EXPECT_TRUE(
                std::equal(pictures[i].pixels.begin(), pictures[i].pixels.end(), moxelTiles16))
                << "frame " << i;
        }
    }
}

// The loader plays what is said to be broken, and loads nothing of what is said to be refused.
TEST(Conformance, Faults_AreRefusedAsTheyAreSaidToBe) {
    for (const Case& each : casesOf(false)) {
        SCOPED_TRACE(each.name);
        const Bytes bytes = each.make();
        EXPECT_EQ(clip::validate(bytes).kind, clip::FAULT_BROKEN);
        const TemporaryFolder videos;
        ClipStage stage(written(bytes));
        const bool refused = each.expected == Expected::REFUSED;
        const int result = stage.load("made.m19", 2000);
        EXPECT_EQ(result, refused ? 0 : 2);
        for (int frame = 0; result == 2 && frame < stage.clip->frameCount; ++frame) {
            stage.clip->renderMoxel19(1, frame, MODE_KEY);
        }
    }
}

}  // namespace
