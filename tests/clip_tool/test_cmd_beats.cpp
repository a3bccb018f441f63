// velmora-clip encode, run for real: parts, lengths and paces given in beats.
#include <gtest/gtest.h>

#include <utility>

#include "clip_tool/inputs.h"
#include "clip_tool/tool.h"

namespace {

using Levels = std::vector<int>;

// A film of 25 pictures a second that counts from 0 to 31 again and again.
void count(int pictures) {
    Levels shown;
    for (int i = 0; i < pictures; ++i) {
        shown.push_back(i % 32);
    }
    inputs::levels("in.mkv", shown);
}

Outcome encode(const std::string& options) {
    return tool("encode in.mkv -o out.m19 --preset graphics " + options);
}

void expectReport(const Outcome& outcome, const std::string& frames, const std::string& note) {
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out.rfind("out.m19: " + frames + " frames, ", 0), 0u) << outcome.out;
    EXPECT_NE(outcome.out.find("; " + note + "\n"), std::string::npos) << outcome.out;
}

// At 240 BPM four beats are a second, 25.6 frames. 26 of them take 236.3 BPM; they are 26 a second.
// Two beats in is half a second, picture 12; frame 25 shows 1.46 seconds, picture 36.
TEST_F(Commands, Encode_BeatsGiveWholeFrames) {
    count(50);
    expectReport(encode("--bpm 240 --beats 4 --start 2b"), "26", "4 beats, 236.3 BPM on stage");
    const Levels shown = inputs::levelsOf("out.m19");
    ASSERT_EQ(shown.size(), 26u);
    EXPECT_EQ((Levels{shown[0], shown[24], shown[25]}), (Levels{12, 3, 4}));
    expectReport(encode("--bpm 240 --beats 1 --start 0.2+2b"), "6", "1 beat, 256.0 BPM on stage");
    EXPECT_EQ(inputs::levelsOf("out.m19")[0], 17);
}

// A second of the film in 32 frames: the last shows 0.97 seconds, picture 24.
TEST_F(Commands, Encode_BeatsAreRetimed) {
    count(50);
    expectReport(encode("--bpm 240 --beats 4 --to-bpm 192"), "32", "4 beats, 192.0 BPM on stage");
    EXPECT_EQ(inputs::levelsOf("out.m19")[31], 24);
    // The same of 1.5 seconds: the last shows 1.45, picture 36.
    expectReport(encode("--beats 4 --bpm 192 --duration 1.5"), "32", "4 beats, 192.0 BPM on stage");
    EXPECT_EQ(inputs::levelsOf("out.m19")[31], 4);
    // Without a length all of it: 2 seconds, twice as fast, are 25.6 frames.
    const Outcome all = encode("--bpm 240 --to-bpm 480");
    EXPECT_EQ(all.out.rfind("out.m19: 26 frames, ", 0), 0u) << all.out << all.err;
}

// The pace stays. A quarter of a second is 6.25 pictures.
TEST_F(Commands, Encode_DurationInBeatsIsAPart) {
    count(50);
    const Outcome outcome = encode("--bpm 240 --start 1b --duration 2b --fps 24");
    EXPECT_EQ(outcome.out.rfind("out.m19: 12 frames, ", 0), 0u) << outcome.out << outcome.err;
    EXPECT_EQ(inputs::levelsOf("out.m19")[0], 6);
}

// There and back takes an even number: of 24.58 frames, 24. These are 25 a second.
TEST_F(Commands, Encode_PingpongLastsTheBeats) {
    count(50);
    expectReport(encode("--bpm 250 --beats 4 --loop pingpong"), "24",
                 "4 beats, 256.0 BPM on stage");
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{0,  1,  2,  3, 4, 5, 6, 7, 8, 9, 10, 11,
                                                   12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2,  1}));
}

// What is blended in comes from behind the four beats.
TEST_F(Commands, Encode_CrossfadeLastsTheBeats) {
    count(50);
    expectReport(encode("--bpm 240 --beats 4 --loop crossfade 6"), "26",
                 "6 frames blended; 4 beats, 236.3 BPM on stage");
    EXPECT_EQ(inputs::levelsOf("out.m19")[25], 24);
}

// A wave of 8 pictures, 32 a second. A beat of 16 frames is half a second of them, twice the wave.
TEST_F(Commands, Encode_BestLooksForALoopOfTheBeats) {
    Levels shown{31};
    for (int i = 0; i < 60; ++i) {
        shown.push_back(4 * std::min(i % 8, 8 - i % 8));
    }
    inputs::levels("in.mkv", shown, 32);
    EXPECT_EQ(encode("--fps 32 --loop best").out.rfind("out.m19: 8 frames, ", 0), 0u);
    const Outcome outcome = encode("--bpm 120 --to-bpm 96 --beats 1 --loop best");
    expectReport(outcome, "16", "1 beat, 96.0 BPM on stage");
    EXPECT_NE(outcome.out.find("seam difference 0.0; "), std::string::npos) << outcome.out;
    EXPECT_EQ(encode("--bpm 120 --to-bpm 96 --beats 4 --loop best").err,
              "velmora-clip: in.mkv has 3.8 of the 4 beats asked for; begin earlier or take "
              "fewer\n");
}

// 26 frames want a second. 24 pictures make 24.96 of them, 25, and the last stays for one more; 20
// make 20.8, 21, which are 3.2 beats.
TEST_F(Commands, Encode_BeatsThatAreNotThereAreRefused) {
    count(24);
    expectReport(encode("--bpm 240 --beats 4"), "26", "4 beats, 236.3 BPM on stage");
    EXPECT_EQ(inputs::levelsOf("out.m19")[25], 23);
    count(20);
    removeClip("out.m19");
    const Outcome few = encode("--bpm 240 --beats 4");
    EXPECT_EQ(few.status, 1);
    EXPECT_EQ(few.err,
              "velmora-clip: in.mkv has 3.2 of the 4 beats asked for; begin earlier or take "
              "fewer\n");
    EXPECT_EQ(filesHere(), Names{"in.mkv"});
}

TEST_F(Commands, Encode_StillPictureLastsTheBeats) {
    inputs::picture("in.png", 64, 36, [](int, int) { return 0xFFFFFFFFU; });
    expectReport(tool("encode in.png -o out.m19 --preset graphics --bpm 192 --beats 2"), "16",
                 "2 beats, 192.0 BPM on stage");
}

TEST_F(Commands, Encode_BeatsThatCannotBeAreToldAtOnce) {
    count(1);
    const std::pair<const char*, const char*> wrong[] = {
        {"--beats 8", "--beats needs a tempo: --bpm"},
        {"--start 16b", "times in beats need the input's tempo, --bpm"},
        {"--to-bpm 120", "--to-bpm needs the input's tempo, --bpm"},
        {"--bpm 40 --beats 8",
         "8 beats at 40 BPM are 307 frames; a clip has 1 to 256, up to 6 beats"},
        {"--bpm 120 --beats 8 --fps 20",
         "--beats decides the pace: --to-bpm, not --fps, changes it"},
        {"--bpm 120 --beats 8 --slow 2",
         "--beats decides the pace: --to-bpm, not --slow, changes it"},
        {"--bpm 120 --beats 8 --long fit",
         "--beats makes one clip of its own length: leave --long out"},
        {"--bpm 120 --beats 1 --loop crossfade 20",
         "--loop crossfade 20 blends more than the 13 frames of 1 beat"},
        {"--start 16x", "16x is not a time like 62.5, 1:02.5, 16b (beats) or 0.4+16b"},
        {"--duration 0", "0 is no time at all"},
    };
    for (const auto& [options, sentence] : wrong) {
        const Outcome outcome = encode(options);
        EXPECT_EQ(outcome.status, 2) << options;
        EXPECT_NE(outcome.err.find(sentence), std::string::npos) << outcome.err;
    }
    EXPECT_EQ(filesHere(), Names{"in.mkv"});
}

}  // namespace
