// The stages before the encoder: keys, loops, seams, names, numbered pictures, tasks on threads.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <stdexcept>

#include "support/folder.h"
#include "tools/base/errors.h"
#include "tools/base/progress.h"
#include "tools/clip/jobs/batch.h"
#include "tools/clip/jobs/clip_names.h"
#include "tools/clip/jobs/import_log.h"
#include "tools/clip/jobs/loop.h"
#include "tools/clip/media/image_sequence.h"
#include "tools/clip/media/picture.h"

namespace {

using Pixels = std::vector<uint8_t>;

TEST(Keying, Brightness_CountsGreenMostAndKeepsTransparency) {
    Pixels pixels{255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 100, 0, 0, 0, 255};
    maker::keyByBrightness(pixels);
    // 255 x 54, 183 and 19 of 256.
    EXPECT_EQ(pixels, (Pixels{255, 0,  0,   53,  0,   255, 0, 182, 0, 0,
                              255, 18, 255, 255, 255, 100, 0, 0,   0, 0}));
}

TEST(Keying, Colour_TakesTheKeyAndItsNeighboursOnly) {
    Pixels pixels{0,   255, 0,   255,   // the key itself
                  10,  235, 15,  255,   // as a camera sees it
                  255, 0,   0,   255,   // red
                  128, 128, 128, 255,   // grey
                  255, 255, 255, 255,   // white
                  200, 150, 120, 255};  // skin
    const Pixels before = pixels;
    maker::keyByColour({0, 255, 0}, pixels);
    EXPECT_EQ(Pixels(pixels.begin(), pixels.begin() + 8), Pixels(8, 0));
    EXPECT_EQ(Pixels(pixels.begin() + 8, pixels.end()), Pixels(before.begin() + 8, before.end()));
}

// The reach of this green is 96: it is transparent up to 38.4. (60, 200, 60) is half of 7.5 in
// brightness, 38.1 and 48.1 in the two colour differences away, 61.5 in all: opacity 0.401, 102.
// 140 of the key's 255 make it greener than grey; without them 60 becomes 60 x 255 / 115 = 133.
TEST(Keying, Colour_EdgeIsSoftAndLosesTheTint) {
    Pixels pixels{60, 200, 60, 255};
    maker::keyByColour({0, 255, 0}, pixels);
    EXPECT_EQ(pixels, (Pixels{133, 133, 133, 102}));
}

TEST(Keying, Colour_BlackKeepsGreys) {
    Pixels pixels{0, 0, 0, 255, 20, 20, 20, 255, 128, 128, 128, 255};
    maker::keyByColour({0, 0, 0}, pixels);
    EXPECT_EQ(pixels, (Pixels{0, 0, 0, 0, 0, 0, 0, 0, 128, 128, 128, 255}));
}

TEST(Keying, Colour_WhatWasTransparentStaysSo) {
    Pixels pixels{255, 0, 0, 7};
    maker::keyByColour({0, 255, 0}, pixels);
    EXPECT_EQ(pixels, (Pixels{255, 0, 0, 7}));
}

TEST(Loop, Frames_AreAsManyAsAClipHolds) {
    using maker::LoopKind;
    EXPECT_EQ(maker::framesTaken({LoopKind::NONE, 0}), 256);
    EXPECT_EQ(maker::framesTaken({LoopKind::PINGPONG, 0}), 129);
    EXPECT_EQ(maker::framesGiven({LoopKind::PINGPONG, 0}, 129), 256);
    EXPECT_EQ(maker::framesGiven({LoopKind::PINGPONG, 0}, 2), 2);
    EXPECT_EQ(maker::framesGiven({LoopKind::PINGPONG, 0}, 1), 1);
    EXPECT_EQ(maker::framesTaken({LoopKind::CROSSFADE, 12}), 268);
    EXPECT_EQ(maker::framesGiven({LoopKind::CROSSFADE, 12}, 268), 256);
    EXPECT_EQ(maker::framesGiven({LoopKind::CROSSFADE, 12}, 7), 4);
    EXPECT_EQ(maker::framesGiven({LoopKind::CROSSFADE, 12}, 1), 1);
}

// Half of each, but the transparent one gives no colour.
TEST(Loop, Crossfade_WeighsColoursByTheirOpacity) {
    const Pixels last{200, 0, 0, 0, 200, 100, 0, 255};
    Pixels first{0, 100, 0, 255, 100, 0, 50, 255};
    maker::crossfade(0, 1, last, first);
    EXPECT_EQ(first, (Pixels{0, 100, 0, 128, 150, 50, 25, 255}));
}

maker::SmallPicture small(int value) {
    return maker::SmallPicture(64 * 36 * 3, static_cast<uint8_t>(value));
}

TEST(Seam, SmallPicture_IsTheMeanOverBlack) {
    Pixels rgba(640 * 360 * 4, 255);
    for (size_t i = 0; i < rgba.size(); i += 8) {
        rgba[i] = 0;      // every other pixel without red
        rgba[i + 7] = 0;  // the others transparent
    }
    const maker::SmallPicture picture = maker::smallPicture(rgba);
    ASSERT_EQ(picture.size(), 64u * 36 * 3);
    EXPECT_EQ(picture[0], 0);
    EXPECT_EQ(picture[1], 127);
    EXPECT_EQ(picture.back(), 127);
}

// Nothing moves: the longest loop there can be.
TEST(Seam, StillPictures_GiveTheLongestLoop) {
    const std::vector<maker::SmallPicture> pictures(300, small(9));
    const maker::Seam seam = maker::findSeam(pictures);
    EXPECT_EQ(seam.begin, 0);
    EXPECT_EQ(seam.end, 256);
    EXPECT_EQ(seam.difference, 0);
}

// A wave that ends just before it would begin anew is taken whole.
TEST(Seam, LoopThatIsOneAlready_IsTakenWhole) {
    std::vector<maker::SmallPicture> pictures;
    for (int i = 0; i < 40; ++i) {
        pictures.push_back(small(i < 20 ? 5 * i : 5 * (40 - i)));
    }
    const maker::Seam seam = maker::findSeam(pictures);
    EXPECT_EQ(seam.begin, 0);
    EXPECT_EQ(seam.end, 40);
}

// Grey 100 is met again 20 frames later, but once upwards and once downwards; motion tells.
TEST(Seam, Motion_Counts) {
    std::vector<maker::SmallPicture> pictures;
    for (int i = 0; i < 70; ++i) {
        const int at = i % 40;
        pictures.push_back(small(100 + (at < 10   ? 6 * at
                                        : at < 30 ? 6 * (20 - at)
                                                  : 6 * (at - 40))));
    }
    const maker::Seam seam = maker::findSeam(pictures);
    EXPECT_EQ(seam.end - seam.begin, 40);
}

TEST(Seam, FewPictures_AreTakenAll) {
    for (size_t count = 1; count <= 3; ++count) {
        const maker::Seam seam = maker::findSeam(std::vector<maker::SmallPicture>(count, small(1)));
        EXPECT_EQ(seam.begin, 0);
        EXPECT_EQ(seam.end, static_cast<int>(count));
    }
}

class ImageSequence : public testing::Test {
protected:
    TemporaryFolder folder_;
};

TEST_F(ImageSequence, Pattern_NamesFiles) {
    for (const char* name :
         {"a007.png", "a0012.png", "a12.png", "a1.png", "b003.png", "a003.jpg"}) {
        std::ofstream(name) << "x";
    }
    const std::optional<maker::ImagePattern> padded = maker::imagePattern("./a%03d.png");
    ASSERT_TRUE(padded);
    EXPECT_EQ(padded->text(), "./a%03d.png");
    EXPECT_EQ(maker::picturesOf(*padded).begin()->first, 7);
    EXPECT_EQ(maker::picturesOf(*maker::imagePattern("a%d.png")).begin()->first, 1);
    EXPECT_TRUE(maker::picturesOf(*maker::imagePattern("c%d.png")).empty());
    EXPECT_FALSE(maker::imagePattern("a007.png"));
    EXPECT_FALSE(maker::imagePattern("100%.png"));
    EXPECT_FALSE(maker::imagePattern("%d/a.png"));
    EXPECT_FALSE(maker::imagePattern("%d%d.png"));
    std::ofstream("real%d.png") << "x";
    EXPECT_FALSE(maker::imagePattern("real%d.png"));
}

TEST_F(ImageSequence, File_HasItsPattern) {
    EXPECT_EQ(maker::patternOfFile("x/take 2_0040.png")->text(), "x/take 2_%04d.png");
    EXPECT_EQ(maker::patternOfFile("x/40.png")->text(), "x/%01d.png");
    EXPECT_FALSE(maker::patternOfFile("x/plain.png"));
    EXPECT_FALSE(maker::patternOfFile("x/50%_1.png"));
}

TEST(ClipNames, SafeName_HoldsPlainCharactersOnly) {
    EXPECT_EQ(maker::safeName("/films/My Holiday (1).MP4"), "my_holiday_1");
    EXPECT_EQ(maker::safeName("Caf\xC3\xA9 Cr\xC3\xA8me.mov"), "cafe_creme");  // UTF-8
    EXPECT_EQ(maker::safeName("e\xCC\x81t\xC3\xA9.mov"), "ete");               // e, accent
    EXPECT_EQ(maker::safeName("Stra\xDF"                                       // Latin-1
                              "e.avi"),
              "strasse");
    EXPECT_EQ(maker::safeName("100% <b>&amp;.gif"), "100_b_amp");
    EXPECT_EQ(maker::safeName("\xF0\x9F\x8C\x8A.mp4"), "clip");  // a picture of a wave
    EXPECT_EQ(maker::safeName("Don't.mp4"), "dont");
    EXPECT_EQ(maker::safeName("._hidden.mp4"), "hidden");
    EXPECT_EQ(maker::safeName("loops/img_%03d.png"), "img");
    EXPECT_EQ(maker::safeName("loops/%03d.png"), "loops");
    EXPECT_EQ(maker::safeName(std::string(200, 'x') + ".mp4"), std::string(80, 'x'));
}

TEST(ClipNames, Given_AreUniqueWhateverTheCase) {
    maker::ClipNames names;
    names.take("Rain");
    EXPECT_EQ(names.give("rain", maker::kNoRoomLimit), "rain_2");
    EXPECT_EQ(names.give("rain", maker::kNoRoomLimit), "rain_3");
    EXPECT_EQ(names.give("rain_2", maker::kNoRoomLimit), "rain_2_2");
    EXPECT_EQ(names.give("take-12", maker::kNoRoomLimit), "take_12");
}

// An m is 6 pixels wide: 16 of them are 96. With "_2", 12 pixels, 14 fit; "-99" takes 16, so that
// 13 fit with it.
TEST(ClipNames, Given_FitThePanel) {
    maker::ClipNames names;
    const std::string wide(30, 'm');
    EXPECT_EQ(names.give(wide, maker::kPanelRoom), std::string(16, 'm'));
    EXPECT_EQ(names.give(wide, maker::kPanelRoom), std::string(14, 'm') + "_2");
    EXPECT_EQ(names.give(wide, maker::kPanelRoom, "-99"), std::string(13, 'm'));
    EXPECT_EQ(names.give("iiiiiiiiiiiiiiiiiiiiiiiiiiiiiiii", maker::kPanelRoom),
              std::string(32, 'i'));
}

TEST(Batch, Results_ComeInOrderAndAll) {
    std::atomic<int> sum = 0;
    std::vector<size_t> reported;
    maker::runInOrder(
        50, 4, [&sum](size_t i) { sum += static_cast<int>(i); },
        [&reported](size_t i) { reported.push_back(i); });
    EXPECT_EQ(sum, 49 * 50 / 2);
    ASSERT_EQ(reported.size(), 50u);
    EXPECT_TRUE(std::is_sorted(reported.begin(), reported.end()));
}

TEST(Batch, Failure_EndsItAndIsThrown) {
    int begun = 0;
    std::vector<size_t> reported;
    const auto task = [&begun](size_t i) {
        ++begun;
        if (i == 2) {
            throw std::runtime_error("stop");
        }
    };
    EXPECT_THROW(maker::runInOrder(9, 1, task, [&reported](size_t i) { reported.push_back(i); }),
                 std::runtime_error);
    EXPECT_EQ(begun, 3);
    EXPECT_EQ(reported, (std::vector<size_t>{0, 1}));
}

// The first task is done at once, and while it is reported an interrupt ends the second one. The
// third waits for input that never comes, which only a signal of its own can end.
[[noreturn]] void interruptWhileReporting() {
    alarm(20);
    maker::catchInterrupts();
    int pipe[2];
    std::atomic<bool> waiting = false;
    std::atomic<bool> ended = false;
    int status = ::pipe(pipe);
    try {
        maker::runInOrder(
            3, 3,
            [&](size_t task) {
                if (task == 1) {
                    while (!waiting) {
                        usleep(1000);
                    }
                    kill(getpid(), SIGINT);
                    ended = true;
                    throw maker::Interrupted();
                }
                char byte = 0;
                waiting = waiting || task == 2;
                if (task == 2 && read(pipe[0], &byte, 1) < 0) {
                    throw maker::Interrupted();
                }
            },
            [&](size_t) {
                while (!ended) {
                    usleep(1000);
                }
                usleep(100000);
            });
    } catch (const maker::Interrupted&) {
        status = maker::interrupted() ? 3 : 4;
    }
    _exit(status);
}

TEST(BatchDeathTest, Interrupt_ReachesWhoWaitsThoughOthersHaveFailed) {
    EXPECT_EXIT(interruptWhileReporting(), testing::ExitedWithCode(3), "");
}

class Log : public testing::Test {
protected:
    TemporaryFolder folder_;
};

// The disk is full in the middle of a line; later lines are whole again and count.
TEST_F(Log, LineThatBreaksOff_SpoilsNoOther) {
    std::signal(SIGXFSZ, SIG_IGN);
    std::ofstream("in.gif") << "x";
    {
        maker::ImportLog log(".");
        log.begin("first", "first");
        const rlim_t size = std::filesystem::file_size("imported.jsonl");
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit full{size + 10, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        try {
            log.begin("second", "second");
            ADD_FAILURE() << "the file has grown beyond its limit";
        } catch (const maker::ToolError& error) {
            EXPECT_STREQ(error.what(), "cannot write ./imported.jsonl: File too large");
        }
        setrlimit(RLIMIT_FSIZE, &before);
        log.begin("third", "third");
    }
    EXPECT_EQ(maker::ImportLog(".").names(), (std::vector<std::string>{"first", "third"}));
}

TEST(Progress, Text_TellsRateAndTimeLeft) {
    maker::ProgressState state;
    state.clips = 1;
    state.frames = 50;
    EXPECT_EQ(maker::progressText(state), "frame 50");
    state.expected = 200;
    state.part = 0.25;
    state.seconds = 2;
    EXPECT_EQ(maker::progressText(state), "frame 50 of 200, 25.0 frames/s, 6 s left");
    state.stage = maker::Stage::LOOKING;
    EXPECT_EQ(maker::progressText(state), "looking at frame 50 of 200, 25.0 frames/s, 6 s left");
    state.stage = maker::Stage::FITTING;
    EXPECT_EQ(maker::progressText(state), "fitting 50 frames, 6 s left");
    state.clips = 8;
    state.finished = 3;
    state.seconds = 100;
    EXPECT_EQ(maker::progressText(state), "3 of 8 clips, 0.5 frames/s, 5:00 min left");
    state.frames = 0;
    EXPECT_EQ(maker::progressText(state), "3 of 8 clips, 5:00 min left");
}

}  // namespace
