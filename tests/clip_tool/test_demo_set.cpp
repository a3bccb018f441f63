// The demo set as the performer gets it: names, playlists, range, and how long it takes to load.
#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "art/loops/loops.h"
#include "clip/validate.h"
#include "clip_tool/demo_sheet.h"
#include "clip_tool/on_stage.h"
#include "tools/clip/jobs/export_demo.h"
#include "tools/clip/reports/describe.h"

namespace {

using demo_sheet::kPixels;
using demo_sheet::Sheet;

// Frames that the loader may take for each clip, were it not the first of its playlist. A block
// close to the next 2000 records has a frame to spare: machines differ in the last bit of a sine.
struct Share {
    std::string_view name;
    int steps;
};
// clang-format off
constexpr Share kShares[] = {
    {"checker",   13}, {"confetti",  15}, {"cubes",     7}, {"grid",      7}, {"dots",      9},
    {"holes",      7}, {"kaleido",   15}, {"keys",      7}, {"lasers",   13}, {"lava",     30},
    {"marquee",    8}, {"moire",     19}, {"pad",       7}, {"plasma",    9}, {"ribbons",   7},
    {"rings",     11}, {"solids",    18}, {"stars",    15}, {"swirl",    13}, {"tesseract", 15},
    {"test-card",  7}, {"arcs",       9}, {"tunnel",    9}, {"velmora",  15}, {"waves",    12},
    {"words",     14},
};
// clang-format on
constexpr int kStepMilliseconds = 39;
constexpr int kSetMilliseconds = 15000;

bool nameFits(const std::string& name, size_t most) {
    return !name.empty() && name.size() <= most &&
           name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-") == std::string::npos;
}

std::vector<std::string_view> tracksOf(const demo::Playlist& playlist) {
    return {playlist.tracks.begin(), playlist.tracks.end()};
}

const demo::Loop& loopNamed(std::string_view name) {
    const auto loops = demo::loops();
    return *std::find_if(loops.begin(), loops.end(),
                         [name](const demo::Loop& loop) { return loop.name == name; });
}

class DemoClip : public testing::TestWithParam<Share> {};

TEST_P(DemoClip, Loop_LoadsInItsShareAndIsDrawnAsExported) {
    const std::vector<uint8_t> bytes = maker::encodeLoop(loopNamed(GetParam().name));
    std::vector<clip::BlockLayout> blocks;
    ASSERT_TRUE(clip::validate(bytes, &blocks).ok);
    EXPECT_LE(maker::loadCost(blocks).steps, GetParam().steps);
    expectOnStage(bytes);
}

std::string shareName(const testing::TestParamInfo<Share>& info) {
    std::string name{info.param.name};
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Each, DemoClip, testing::ValuesIn(kShares), shareName);

TEST(DemoSet, Shares_CoverEveryClipAndLoadInTime) {
    int steps = 0;
    std::unordered_set<std::string_view> shared;
    for (const Share& share : kShares) {
        shared.insert(share.name);
    }
    EXPECT_EQ(shared.size(), demo::loops().size());
    for (const demo::Playlist& playlist : demo::playlists()) {
        for (const std::string_view track : playlist.tracks) {
            const auto* share = std::find_if(std::begin(kShares), std::end(kShares),
                                             [track](const Share& s) { return s.name == track; });
            ASSERT_NE(share, std::end(kShares)) << track;
            steps += share->steps;
        }
    }
    EXPECT_LT(steps * kStepMilliseconds, kSetMilliseconds);
}

TEST(DemoSet, Names_FitAndAreUnique) {
    std::unordered_set<std::string> seen;
    for (const demo::Loop& loop : demo::loops()) {
        EXPECT_TRUE(nameFits(loop.name, 9)) << loop.name;  // of the panel's narrow box
        EXPECT_TRUE(seen.insert(loop.name).second) << loop.name;
    }
}

TEST(DemoSet, Lengths_FitAClip) {
    for (const demo::Loop& loop : demo::loops()) {
        EXPECT_GE(loop.frames, 32) << loop.name;  // the loops are meant to last 1 to 5 seconds
        EXPECT_LE(loop.frames, 128) << loop.name;
    }
}

TEST(DemoSet, Playlists_AreThreeToPlayAndHelp) {
    const auto playlists = demo::playlists();
    ASSERT_EQ(playlists.size(), 4U);
    EXPECT_STREQ(playlists[0].name, "neon");
    EXPECT_STREQ(playlists[1].name, "paper");
    EXPECT_STREQ(playlists[2].name, "liquid");
    EXPECT_STREQ(playlists[3].name, "help");
    EXPECT_EQ(tracksOf(playlists[3]), (std::vector<std::string_view>{"keys", "pad", "test-card"}));
}

TEST(DemoSet, Playlists_PlayEveryLoopOnce) {
    std::vector<std::string_view> known;
    for (const demo::Loop& loop : demo::loops()) {
        known.push_back(loop.name);
    }
    std::vector<std::string_view> used;
    for (const demo::Playlist& playlist : demo::playlists()) {
        const auto tracks = tracksOf(playlist);
        used.insert(used.end(), tracks.begin(), tracks.end());
    }
    std::sort(known.begin(), known.end());
    std::sort(used.begin(), used.end());
    EXPECT_EQ(used, known);
}

// The clip on top shows most in the key mode when it has alpha, so each playlist opens with one.
TEST(DemoSet, PlaylistsToPlay_OpenWithAlphaAndHaveAnotherSuchLoop) {
    for (const demo::Playlist& playlist : demo::playlists().first(3)) {
        EXPECT_TRUE(loopNamed(playlist.tracks.front()).alpha) << playlist.name;
        EXPECT_GE(std::count_if(playlist.tracks.begin(), playlist.tracks.end(),
                                [](const char* track) { return loopNamed(track).alpha; }),
                  2)
            << playlist.name;
    }
}

// Means over some frames of a loop.
struct Range {
    double light = 0;   // 0 black to 1 white; what is transparent counts as black
    double motion = 0;  // share of the pixels that change from one frame to the next
    double glass = 0;   // share of the pixels that are neither clear nor solid
};

Range rangeOf(const demo::Loop& loop) {
    constexpr int kLooks = 4;
    Sheet now;
    Sheet next;
    Range range;
    for (int i = 0; i < kLooks; i++) {
        const int frame = loop.frames * i / kLooks;
        now.draw(loop, frame);
        next.draw(loop, frame + 1);
        range.motion += static_cast<double>(now.changedPixels(next));
        for (size_t p = 0; p < kPixels; p++) {
            const uint8_t* c = now.pixels() + p * 4;
            range.light += c[3] == 0 ? 0.0 : (c[0] + c[1] + c[2]) / 765.0;
            range.glass += c[3] > 0 && c[3] < 255 ? 1 : 0;
        }
    }
    constexpr double kAll = double{kPixels} * kLooks;
    return {range.light / kAll, range.motion / kAll, range.glass / kAll};
}

TEST(DemoSet, LoopsToPlay_RangeFromDarkToBrightAndSlowToFast) {
    int dark = 0;
    int bright = 0;
    int slow = 0;
    int fast = 0;
    int glass = 0;
    for (const demo::Playlist& playlist : demo::playlists().first(3)) {
        for (const char* track : playlist.tracks) {
            const Range range = rangeOf(loopNamed(track));
            dark += range.light < 0.2 ? 1 : 0;
            bright += range.light > 0.5 ? 1 : 0;
            slow += range.motion < 0.1 ? 1 : 0;
            fast += range.motion > 0.25 ? 1 : 0;
            glass += range.glass > 0.05 ? 1 : 0;
        }
    }
    EXPECT_GE(dark, 4);
    EXPECT_GE(bright, 4);
    EXPECT_GE(slow, 4);
    EXPECT_GE(fast, 3);
    EXPECT_GE(glass, 2);
}

}  // namespace
