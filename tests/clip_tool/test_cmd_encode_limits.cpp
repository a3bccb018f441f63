// velmora-clip encode, run for real: its limits, times and names, and what the report says.
#include <gtest/gtest.h>

#include "clip_tool/inputs.h"
#include "clip_tool/media.h"
#include "clip_tool/tool.h"
#include "tools/clip/jobs/encode_job.h"

namespace {

// The number behind `before`, 0 when it is not there.
double numberBehind(const std::string& text, const std::string& before) {
    const size_t at = text.find(before);
    return at == std::string::npos ? 0 : std::atof(text.c_str() + at + before.size());
}

void narrowNoise(uint32_t opaque) {
    inputs::picture("in.png", 32, 360, [opaque](int x, int y) {
        return static_cast<uint32_t>(x * 7919 + y * 104729) * 2654435761U | opaque;
    });
}

// What is asked for in vain is refused with the least that there is; that much does.
void expectLeast(const std::string& option, const std::string& tooSmall) {
    narrowNoise(0);  // alpha, too
    const std::string encode = "encode in.png -o out.m19 --fit contain " + option + " ";
    const Outcome outcome = tool(encode + tooSmall);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    EXPECT_EQ(filesHere(), (Names{"in.png"}));
    const std::string before = "in.png does not fit: the least for 1 frame is " + option + " ";
    const int least = static_cast<int>(numberBehind(outcome.err, before));
    EXPECT_GT(least, std::atoi(tooSmall.c_str())) << outcome.err;
    EXPECT_EQ(tool(encode + std::to_string(least)).status, 0);
    EXPECT_EQ(tool(encode + std::to_string(least - 1)).status, 1);
}

TEST_F(Commands, Encode_SizeThatCannotBeIsRefusedWithTheLeast) {
    expectLeast("--size", "100");
}

// Colours can all be given up, alpha cannot.
TEST_F(Commands, Encode_RecordsThatCannotBeAreRefusedWithTheLeast) {
    expectLeast("--records", "1");
}

// Eleven pictures of noise have 39,600 tiles, and a block loads 37,440 records in time.
TEST_F(Commands, Encode_TooManyRecordsAreGivenUpAndTold) {
    media::Recipe recipe;
    recipe.path = "in.mkv";
    recipe.frames = 11;
    recipe.fill = [](int frame, AVFrame& picture) {
        media::fillNoise(picture, static_cast<uint32_t>(frame) + 7);
    };
    media::write(recipe);
    const std::string told = "; less than quality 80, which would take too long to load\n";
    EXPECT_NE(tool("encode in.mkv -o out.m19 --fps 25").out.find(told), std::string::npos);
}

// A grey ramp of 640 steps: rounded to the stage's colours as near as can be, dithered farther.
TEST_F(Commands, Encode_DitheredClipIsMeasuredAgainstItsSource) {
    inputs::picture("in.png", 640, 360, [](int x, int) {
        const auto value = static_cast<uint32_t>(x * 255 / 639);
        return value << 24 | value << 16 | value << 8 | 255;
    });
    const std::string encode = "encode in.png -o out.m19 --quality 100";
    const double plain = numberBehind(tool(encode).out, "kB, ");
    const Outcome dithered = tool(encode + " --dither");
    EXPECT_EQ(dithered.out.find("exact"), std::string::npos) << dithered.out;
    EXPECT_GT(numberBehind(dithered.out, "kB, "), 30) << dithered.out;
    EXPECT_LT(numberBehind(dithered.out, "kB, "), plain) << dithered.out;
}

// 300 frames are two parts; 600 were three before.
TEST_F(Commands, Encode_SplitKeepsPartsAndNamesThoseOfALongerRun) {
    inputs::levels("in.mkv", {3, 4, 5, 3, 4, 5}, 1);
    const std::string encode = "encode in.mkv -o out.m19 --fps 100 --long split --preset graphics ";
    EXPECT_EQ(tool(encode).status, 0);
    const Outcome kept = tool(encode + "--keep");
    EXPECT_EQ(kept.status, 0) << kept.err;
    EXPECT_EQ(kept.out, "out-1.m19: kept\nout-2.m19: kept\nout-3.m19: kept\n");

    const std::string third = textOf("out-3.m19");
    const Outcome shorter = tool(encode + "--duration 3");
    EXPECT_NE(shorter.out.find("; out-3.m19 is from an earlier, longer run\n"), std::string::npos)
        << shorter.out;
    EXPECT_EQ(textOf("out-3.m19"), third);
    const Outcome single = tool(encode + "--duration 1");
    EXPECT_NE(single.out.find("; out-1.m19 to out-3.m19 are from an earlier, longer run\n"),
              std::string::npos)
        << single.out;
}

TEST_F(Commands, Encode_NameThatIsTooLongIsRefusedAtOnce) {
    const std::string name(252, 'n');  // of 255 bytes, ".m19" among them
    const Outcome outcome = tool("encode missing.mkv -o " + name + ".m19");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "velmora-clip: cannot write " + name + ".m19: File name too long\n");
    const std::string split(250, 'n');
    EXPECT_EQ(tool("encode missing.mkv --long split -o " + split + ".m19").err,
              "velmora-clip: cannot write " + split + "-10.m19: File name too long\n");
}

// A picture each second; the clip begins at the 63rd.
TEST_F(Commands, Encode_TimesAreTakenAsMinutesAndSeconds) {
    std::vector<int> shown(70, 0);
    shown[62] = 9;
    shown[63] = 11;
    inputs::levels("in.mkv", shown, 1);
    const Outcome outcome =
        tool("encode in.mkv -o out.m19 --fps 1 --start 1:02 --duration 0:00:02 --quality 100");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(inputs::levelsOf("out.m19"), (std::vector<int>{9, 11}));
}

// 300 frames are two parts; `script` gives the tool a terminal. FFV1 tells the length, so every
// line counts towards all 300.
TEST_F(Commands, Encode_ProgressOfASplitInputGoesOn) {
    inputs::levels("in.mkv", {3, 4, 5}, 1);
    const std::string line = "script -qec \"'" + kTool +
                             "' encode in.mkv -o out.m19 --fps 100 --long split --preset graphics"
                             "\" ../shown.txt >/dev/null </dev/null";
    ASSERT_EQ(std::system(line.c_str()), 0);
    const std::string shown = textOf("../shown.txt");
    int before = 0;
    for (size_t at = shown.find("frame "); at != std::string::npos; at = shown.find("frame ", at)) {
        at += 6;
        const int frame = std::atoi(shown.c_str() + at);
        EXPECT_GE(frame, before) << shown;
        before = frame;
        EXPECT_EQ(shown.substr(shown.find(" of ", at), 7), " of 300") << shown;
    }
    EXPECT_GT(before, 256) << shown;
}

// The search for a budget codes the clip several times; what is done of it is told all along.
TEST_F(Commands, Encode_ProgressOfASearchForABudgetGoesOn) {
    narrowNoise(255);
    maker::EncodeSettings settings;
    settings.fit = maker::Fit::CONTAIN;
    settings.bytes = 10000;
    std::vector<maker::ProgressStep> steps;
    const auto take = [&steps](const maker::ProgressStep& step) { steps.push_back(step); };
    maker::encodeFile("in.png", "out.m19", settings, {take, {}});
    std::erase_if(steps, [](const auto& step) { return step.stage != maker::Stage::FITTING; });
    ASSERT_GT(steps.size(), 6U);
    double before = 0;
    for (const maker::ProgressStep& step : steps) {
        EXPECT_GT(step.part, before);
        EXPECT_LT(step.part - before, 0.5);
        before = step.part;
    }
    EXPECT_GT(before, 0.8);
    EXPECT_LT(before, 1);
}

// The line is written a few times a second: the search takes longer than that on any machine.
TEST_F(Commands, Encode_SearchForABudgetIsShownOnATerminal) {
    media::Recipe noise;
    noise.path = "in.mkv";
    noise.frames = 6;
    noise.fill = [](int frame, AVFrame& picture) {
        media::fillNoise(picture, static_cast<uint32_t>(frame + 1));
    };
    media::write(noise);
    const std::string line = "script -qec \"'" + kTool +
                             "' encode in.mkv -o out.m19 --size 200000"
                             "\" ../shown.txt >/dev/null </dev/null";
    ASSERT_EQ(std::system(line.c_str()), 0);
    EXPECT_NE(textOf("../shown.txt").find("\rfitting "), std::string::npos);
}

}  // namespace
