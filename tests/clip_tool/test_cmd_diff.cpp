// diff on the command line.
#include <cstring>
#include <nlohmann/json.hpp>

#include "clip_tool/media.h"
#include "clip_tool/tool.h"

namespace {

class DiffCommand : public Commands {
protected:
    // Grey that rises by 8 a frame; every second level of grey 8 f is exact in 5 and 6 bits.
    void makeVideo(const std::string& path, int frames, int more = 0, int fps = 25) {
        media::Recipe recipe;
        recipe.path = path;
        recipe.fps = {fps, 1};
        recipe.frames = frames;
        recipe.fill = [more](int frame, AVFrame& picture) {
            const auto level = static_cast<uint8_t>(8 * frame + more);
            media::fillBytes(picture, level, level, level, 0);
        };
        media::write(recipe);
    }
};

const std::string kClip = std::string("'") + TEST_DATA + "/clips/rgb-all-360.m19'";

TEST_F(DiffCommand, ClipAgainstItself_IsExact) {
    const Outcome outcome = tool("diff " + kClip + " " + kClip + " --brief");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find(" frames: PSNR exact, SSIM 1.0000, worst frame 0 with exact\n"),
              std::string::npos)
        << outcome.out;
}

// White on stage is white, and the source is 3 levels darker in every channel: error 9.
TEST_F(DiffCommand, KnownError_IsTold) {
    makeVideo("white.mkv", 1, 255);
    makeVideo("grey.mkv", 1, 252);
    EXPECT_EQ(tool("encode white.mkv -o white.m19 --quality 100").status, 0);
    const Outcome text = tool("diff white.m19 grey.mkv");
    EXPECT_EQ(text.status, 0) << text.err;
    // 10 log10(255^2 / 9) = 38.588; SSIM (2 x 255 x 252 + c) / (255^2 + 252^2 + c), c = 6.5025.
    EXPECT_EQ(text.out,
              "frame       PSNR    SSIM\n"
              "    0   38.59 dB  0.9999\n"
              "1 frames: PSNR 38.59 dB, SSIM 0.9999, worst frame 0 with 38.59 dB\n"
              "pictures of the source: 1, 0 of them left out, 0 shown more than once\n");
    const nlohmann::json json = nlohmann::json::parse(tool("diff --json white.m19 grey.mkv").out);
    EXPECT_NEAR(json.at("psnr").get<double>(), 38.588, 1e-3);
    EXPECT_EQ(json.at("byFrame").size(), 1u);
    EXPECT_EQ(json.at("worstFrame"), 0);
    EXPECT_FALSE(json.contains("alphaPsnr"));
}

TEST_F(DiffCommand, SourceOptions_FindTheSameFrames) {
    makeVideo("in.mkv", 25);
    EXPECT_EQ(
        tool("encode in.mkv -o a.m19 --quality 100 --start 0.4 --fps 10 --duration 0.5").status, 0);
    const nlohmann::json right =
        nlohmann::json::parse(tool("diff --json a.m19 in.mkv --start 0.4 --fps 10").out);
    EXPECT_EQ(right.at("frames"), 5);
    EXPECT_GT(right.at("psnr").get<double>(), 38);
    const nlohmann::json wrong = nlohmann::json::parse(tool("diff --json a.m19 in.mkv").out);
    EXPECT_LT(wrong.at("psnr").get<double>(), 20);
}

// 48 x 48 pixels, seven times as large with black around: nothing is mixed, so that black and white
// stay what they are. By any other way to fit them the lines lie elsewhere.
TEST_F(DiffCommand, PixelPreset_IsExactWithItsFit) {
    media::Recipe recipe;
    recipe.path = "lines.mkv";
    recipe.width = 48;
    recipe.height = 48;
    recipe.fill = [](int, AVFrame& picture) {
        for (int y = 0; y < 48; ++y) {
            std::memset(picture.data[0] + y * picture.linesize[0], y % 2 == 0 ? 255 : 0, 48 * 4);
        }
    };
    media::write(recipe);
    EXPECT_EQ(tool("encode lines.mkv -o lines.m19 --preset pixel").status, 0);
    const Outcome whole = tool("diff lines.m19 lines.mkv --brief --fit whole");
    EXPECT_EQ(whole.status, 0) << whole.err;
    EXPECT_NE(whole.out.find("PSNR exact, SSIM 1.0000"), std::string::npos) << whole.out;
    EXPECT_EQ(tool("diff lines.m19 lines.mkv --brief --fit contain").out.find("exact"),
              std::string::npos);
}

// Whatever is given up or blended: each clip is compared with the frames that it was made of, with
// and without its options. The film is 9 greys, each 8 above the one before; exact in the clip.
TEST_F(DiffCommand, Loops_AreComparedWithWhatWasEncoded) {
    makeVideo("in.mkv", 9);
    for (const std::string options :
         {"--loop pingpong", "--loop crossfade:3", "--loop best --start 0.1", "--alpha luma",
          "--alpha key:404040 --preset graphics"}) {
        ASSERT_EQ(tool("encode in.mkv -o a.m19 --quality 100 --fps 25 " + options).status, 0);
        const Outcome alone = tool("diff a.m19 --brief");
        EXPECT_EQ(alone.status, 0) << alone.err;
        EXPECT_EQ(alone.err, "") << options;
        EXPECT_EQ(tool("diff a.m19 in.mkv --brief --fps 25 " + options).out, alone.out) << options;
        const nlohmann::json json = nlohmann::json::parse(tool("diff --json a.m19").out);
        // A level of 32 and a level of 64 are off by 4.1 and 2 at most: 10 log10(255^2 / 12.6).
        EXPECT_GT(json.at("psnr").is_null() ? 99.0 : json.at("psnr").get<double>(), 37.1)
            << options;
    }
}

TEST_F(DiffCommand, PartOfASplitInput_IsComparedWithItsPart) {
    makeVideo("in.mkv", 25);
    ASSERT_EQ(tool("encode in.mkv -o a.m19 --fps 300 --long split --preset graphics").status, 0);
    const nlohmann::json json = nlohmann::json::parse(tool("diff --json a-2.m19").out);
    EXPECT_EQ(json.at("frames"), 44);
    EXPECT_GT(json.at("psnr").get<double>(), 37.1);
}

// At 25 frames a second, frame n shows the source's picture of n / 25 seconds. 30 pictures a second
// are 5 too many, floor(1.2 n) leaves 5, 11, 17, 23 and 29 out; of 20 a second every fourth stays
// on for two frames.
TEST_F(DiffCommand, SourcesPictures_AreCounted) {
    makeVideo("white.mkv", 25, 255);
    ASSERT_EQ(tool("encode white.mkv -o a.m19 --fps 25").status, 0);
    const nlohmann::json same =
        nlohmann::json::parse(tool("diff --json a.m19 white.mkv --fps 25").out);
    EXPECT_EQ(same.at("source"),
              nlohmann::json({{"pictures", 25}, {"leftOut", 0}, {"repeated", 0}}));
    makeVideo("fast.mkv", 30, 0, 30);
    EXPECT_NE(tool("diff a.m19 fast.mkv --fps 25 --brief")
                  .out.find("\npictures of the source: 29, 4 of them left out, 0 shown more than "
                            "once\n"),
              std::string::npos);
    makeVideo("slow.mkv", 20, 0, 20);
    EXPECT_NE(tool("diff a.m19 slow.mkv --fps 25 --brief")
                  .out.find("\npictures of the source: 20, 0 of them left out, 5 shown more than "
                            "once\n"),
              std::string::npos);
    // What comes before the start is not counted.
    const nlohmann::json later =
        nlohmann::json::parse(tool("diff --json a.m19 white.mkv --fps 25 --start 0.6").out);
    EXPECT_EQ(later.at("source").at("pictures"), 10);
    EXPECT_EQ(later.at("source").at("leftOut"), 0);
}

// Frames at the stage's own pace, whose times Matroska rounds to milliseconds.
TEST_F(DiffCommand, MillisecondTimes_CountNothing) {
    media::Recipe recipe;
    recipe.path = "in.mkv";
    recipe.fps = {128, 5};
    recipe.frames = 64;
    recipe.fill = [](int, AVFrame& picture) { media::fillBytes(picture, 9, 9, 9, 0); };
    media::write(recipe);
    ASSERT_EQ(tool("encode in.mkv -o a.m19").status, 0);
    const nlohmann::json json = nlohmann::json::parse(tool("diff --json a.m19 in.mkv").out);
    EXPECT_EQ(json.at("frames"), 64);
    EXPECT_EQ(json.at("source"),
              nlohmann::json({{"pictures", 64}, {"leftOut", 0}, {"repeated", 0}}));
}

TEST_F(DiffCommand, SourceThatEndsEarly_IsWarnedOf) {
    makeVideo("long.mkv", 10);
    makeVideo("short.mkv", 4);
    EXPECT_EQ(tool("encode long.mkv -o a.m19 --fps 25 --quality 100").status, 0);
    const Outcome outcome = tool("diff a.m19 short.mkv --fps 25 --brief");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "velmora-clip: warning: short.mkv ends after 4 frames, a.m19 goes on\n");
    EXPECT_EQ(outcome.out.rfind("4 frames: ", 0), 0u) << outcome.out;
}

TEST_F(DiffCommand, Failures_AreOneLine) {
    std::ofstream("text.m19") << "hello";
    const std::string low = std::string("'") + TEST_DATA + "/clips/flat-200.m19'";
    for (const std::string& arguments : std::vector<std::string>{
             "diff no.m19 " + kClip, "diff " + kClip + " no.mkv", "diff text.m19 " + kClip,
             "diff " + kClip + " " + low, "diff " + kClip}) {
        const Outcome outcome = tool(arguments);
        EXPECT_EQ(outcome.status, 1) << arguments;
        EXPECT_EQ(outcome.err.rfind("velmora-clip: ", 0), 0u) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    EXPECT_EQ(tool("diff").status, 2);
    EXPECT_EQ(tool("diff " + kClip + " " + kClip + " --fit wide").status, 2);
    EXPECT_EQ(tool("diff --help").status, 0);
}

}  // namespace
