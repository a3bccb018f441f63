// velmora-clip probe and encode --dry-run, run for real: what they foretell and what encode then
// says.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <nlohmann/json.hpp>

#include "clip_tool/inputs.h"
#include "clip_tool/media.h"
#include "clip_tool/tool.h"
#include "tools/clip/jobs/probe.h"
#include "tools/clip/media/source.h"

namespace {

using Grey = std::function<int(int frame, int x, int y)>;

// 64 frames, four blocks, of 16 x 360 pixels.
void narrowFilm(const Grey& grey) {
    media::Recipe recipe;
    recipe.path = "in.mkv";
    recipe.width = 16;
    recipe.height = 360;
    recipe.frames = 64;
    recipe.fill = [&grey](int frame, AVFrame& picture) {
        for (int i = 0; i < 16 * 360; ++i) {
            const auto value = static_cast<uint8_t>(grey(frame, i % 16, i / 16));
            std::fill_n(media::pixelAt(picture, i % 16, i / 16), 3, value);
        }
    };
    media::write(recipe);
}

int bar(int frame, int, int y) {
    return (y + 3 * frame) % 90 < 20 ? 255 : 0;
}

int waves(int frame, int x, int y) {
    return static_cast<int>(127 + 60 * std::sin(y * 0.11 + frame * 0.3) +
                            60 * std::sin(x * 0.4 - frame * 0.2));
}

int grain(int frame, int x, int y) {
    const auto seed = static_cast<uint32_t>(frame * 7919 + x * 104729 + y * 1299709);
    return static_cast<int>((seed * 2654435761U) >> 24);
}

const std::string kHow = "encode in.mkv --fit contain --fps 25 ";

// Kilobytes or megabytes behind "quality 80: about ".
double foretold(const std::string& out) {
    const std::string before = "quality 80: about ";
    const size_t at = out.find(before);
    if (at == std::string::npos) {
        return 0;
    }
    const char* number = out.c_str() + at + before.size();
    return std::atof(number) * (std::strstr(number, "kB") != nullptr ? 1e3 : 1e6);
}

TEST_F(Commands, DryRun_SizeIsWithinAQuarterOfTheClips) {
    for (const Grey& grey : {Grey(bar), Grey(waves), Grey(grain)}) {
        narrowFilm(grey);
        const Outcome outcome = tool(kHow + "--dry-run");
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(filesHere(), Names{"in.mkv"});
        EXPECT_EQ(outcome.out.find("in.mkv: 64 frames, "), 0U) << outcome.out;
        ASSERT_EQ(tool(kHow + "-o out.m19").status, 0);
        const double size = static_cast<double>(fs::file_size("out.m19"));
        EXPECT_NEAR(foretold(outcome.out), size, size / 4) << outcome.out;
        removeClip("out.m19");
    }
}

TEST_F(Commands, Probe_CodesOneBlockInFour) {
    narrowFilm(bar);
    maker::EncodeSettings settings;
    settings.fit = maker::Fit::CONTAIN;
    settings.fps = 25;
    const maker::Probe probe = maker::probeInput("in.mkv", settings);
    EXPECT_EQ(probe.frames, 64);
    EXPECT_EQ(probe.sampled, 16);
    EXPECT_EQ(probe.blocksCoded, 1);
    EXPECT_EQ(probe.kind, maker::Kind::GRAPHICS);
}

TEST_F(Commands, Probe_JsonAndWhatCannotBeRead) {
    inputs::levels("in.mkv", {3, 4});
    const Outcome outcome = tool("probe --json no.mkv in.mkv in.mkv");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("no.mkv"), std::string::npos) << outcome.err;
    const nlohmann::json json = nlohmann::json::parse(outcome.out);
    ASSERT_EQ(json.size(), 2U);
    EXPECT_EQ(json[0]["file"], "in.mkv");
    EXPECT_EQ(json[0]["kind"], "graphics");
    EXPECT_EQ(json[0]["qualities"][0]["quality"], 80);
    EXPECT_EQ(json[0]["verdict"], "fits");
    EXPECT_EQ(tool("probe").status, 2);
}

// Four colours, 64 x 36 pixels.
TEST_F(Commands, Probe_TellsPixelArt) {
    inputs::picture("in.png", 64, 36, [](int x, int y) {
        const auto seed = static_cast<uint32_t>(x * 104729 + y * 1299709) * 2654435761U;
        return (seed >> 30) * 0x55555500U | 255;
    });
    const std::string line = tool("probe in.png").out;
    EXPECT_EQ(line.find("in.png: 1 frame, pixel art: --preset pixel keeps it sharp\n"), 0U) << line;
}

// Source and seven qualities, two in a row, 24 lines of text above each picture.
TEST_F(Commands, Probe_LadderShowsSevenQualities) {
    inputs::picture("in.png", 640, 360, [](int x, int) { return x < 320 ? 0xFFFFFFFFU : 255; });
    const Outcome outcome = tool("probe in.png --ladder ladder.png");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    for (const char* line : {"quality 100: ", "quality 70: ", "quality 40: "}) {
        EXPECT_NE(outcome.out.find(line), std::string::npos) << outcome.out;
    }
    const std::string file = textOf("ladder.png");
    const auto side = [&file](size_t at) {
        return static_cast<uint8_t>(file[at]) << 8 | static_cast<uint8_t>(file[at + 1]);
    };
    EXPECT_EQ(side(18), 1284);  // the PNG's own header
    EXPECT_EQ(side(22), 4 * (24 + 360 + 4) - 4);
    // All of it squeezed to 640 x 360: both halves of quality 100, on the right of the source.
    maker::VideoSource ladder({.path = "ladder.png", .fit = maker::Fit::STRETCH});
    ASSERT_TRUE(ladder.step());
    const std::vector<uint8_t> picture = ladder.picture();
    const auto green = [&picture](size_t x, size_t y) { return picture[(y * 640 + x) * 4 + 1]; };
    EXPECT_EQ(green(371, 47), 255);
    EXPECT_EQ(green(570, 47), 0);
    EXPECT_EQ(tool("probe in.png --ladder ladder.jpg").status, 1);
    EXPECT_EQ(tool("probe in.png in.png --ladder ladder.png").status, 2);
}

std::string verdict(const std::vector<maker::ProbedQuality>& qualities) {
    return maker::verdictOf({.frames = 256, .sampled = 48, .qualities = qualities});
}

// Large is above 6 seconds; 256 frames are 10 seconds on stage.
TEST(Probe, Verdict_GoesByTheTimeOfLoading) {
    EXPECT_EQ(verdict({{.quality = 80, .seconds = 6}}), "fits");
    EXPECT_EQ(verdict({{.quality = 80, .seconds = 9.04}, {.quality = 60, .seconds = 5}}),
              "large: 9.0 s to load; take --quality 60");
    EXPECT_EQ(verdict({{.quality = 80, .seconds = 12}, {.quality = 40, .seconds = 10}}),
              "large: 12.0 s to load; shorten it, --duration 6 --quality 40");
}

}  // namespace
