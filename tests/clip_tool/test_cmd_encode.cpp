// velmora-clip encode, run for real: what its options do to the clip.
#include <gtest/gtest.h>
#include <regex.h>

#include <cstring>

#include "clip_tool/inputs.h"
#include "clip_tool/media.h"
#include "clip_tool/tool.h"

namespace {

using Levels = std::vector<int>;

std::vector<int> counted(int from, int to) {
    std::vector<int> numbers;
    for (int i = from; i <= to; ++i) {
        numbers.push_back(i);
    }
    return numbers;
}

bool matches(const std::string& text, const std::string& pattern) {
    regex_t compiled;
    if (regcomp(&compiled, ("^" + pattern + "$").c_str(), REG_EXTENDED | REG_NOSUB) != 0) {
        return false;
    }
    const bool matched = regexec(&compiled, text.c_str(), 0, nullptr, 0) == 0;
    regfree(&compiled);
    return matched;
}

// Encodes in.mkv at 25 frames a second, without loss.
Outcome encodeExactly(const std::string& options) {
    return tool("encode in.mkv -o out.m19 --fps 25 --preset graphics " + options);
}

TEST_F(Commands, Encode_ReportsFramesSizeQualityRecordsAndCosts) {
    inputs::levels("in.mkv", {0, 31});
    const Outcome flat = encodeExactly("");
    EXPECT_EQ(flat.status, 0) << flat.err;
    EXPECT_EQ(flat.err, "");
    // Header 10, block header 542, 29 runs of up to 128 tiles, 7200 map entries, 1440 code words.
    EXPECT_TRUE(matches(flat.out,
                        "out\\.m19: 2 frames, 17\\.9 kB, exact, 0 records, [0-9.]+ MB "
                        "loaded, ready in 0\\.[12] s\n"))
        << flat.out;
    EXPECT_EQ(filesHere(), (Names{"in.mkv", "out.m19"}));

    inputs::noise("in.mkv", 4);
    const Outcome noise = tool("encode in.mkv -o out.m19 --fps 25");
    EXPECT_TRUE(matches(noise.out,
                        "out\\.m19: 4 frames, [0-9.]+ [kM]B, [0-9.]+ dB, [0-9]+ records, "
                        "[0-9.]+ MB loaded, ready in [0-9.]+ s\n"))
        << noise.out;
    const reference::Clip clip = inputs::readClip("out.m19");
    EXPECT_EQ(clip.height, 360u);
    EXPECT_EQ(clip.alpha, 0u);
    EXPECT_EQ(clip.frameCount, 4u);
    EXPECT_EQ(tool("verify out.m19").status, 0);
}

TEST_F(Commands, Encode_StartDurationAndRateTakeAPart) {
    inputs::levels("in.mkv", counted(0, 29), 10);
    // From half a second on, 0.7 seconds: frames 5 to 11, each shown twice at 20 a second.
    const Outcome outcome =
        tool("encode in.mkv -o out.m19 --preset graphics --fps 20 --start 0.5 --duration 0.7");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{5, 5, 6, 6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11}));
}

// 960 x 720 pixels are high-definition video, also when 540 lines of them are shown. Its matrix
// makes red 224 of Y 79 and Cr 212: 73.4 + 1.575 x 95.6, level 27; the older one made 206,
// level 25.
TEST_F(Commands, Encode_ColoursOfHdThatNamesNoMatrixAreNotThoseOfThePart) {
    media::Recipe recipe;
    recipe.path = "in.mkv";
    recipe.pixels = AV_PIX_FMT_YUV444P;
    recipe.width = 960;
    recipe.height = 720;
    recipe.fill = [](int, AVFrame& picture) {
        const int values[] = {79, 109, 212};
        for (int plane = 0; plane < 3; ++plane) {
            std::memset(picture.data[plane], values[plane],
                        static_cast<size_t>(picture.linesize[plane]) * 720);
        }
    };
    media::write(recipe);
    EXPECT_EQ(encodeExactly("").status, 0);
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{27}));
}

// Frames at the stage's own pace, 128/5 a second. Matroska rounds their times to milliseconds:
// frame 3 at 117.1875 stands at 117. Every one becomes one frame of the clip, the last one too.
TEST_F(Commands, Encode_MillisecondTimesLoseNoFrame) {
    media::Recipe recipe;
    recipe.path = "in.mkv";
    recipe.width = 64;
    recipe.height = 36;
    recipe.fps = {128, 5};
    recipe.frames = 64;
    recipe.fill = [](int frame, AVFrame& picture) {
        const uint8_t value = inputs::grey(frame % 32);
        media::fillBytes(picture, value, value, value, 0);
    };
    media::write(recipe);
    Levels shown = counted(0, 31);
    shown.insert(shown.end(), shown.begin(), shown.begin() + 32);
    const Outcome outcome = tool("encode in.mkv -o out.m19 --preset graphics");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(inputs::levelsOf("out.m19"), shown);
}

TEST_F(Commands, Encode_PingpongShowsTurningPointsOnce) {
    inputs::levels("in.mkv", counted(0, 4));
    EXPECT_EQ(encodeExactly("--loop pingpong").status, 0);
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{0, 1, 2, 3, 4, 3, 2, 1}));
    inputs::levels("in.mkv", {7});
    EXPECT_EQ(encodeExactly("--loop pingpong").status, 0);
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{7}));
}

// What begins in black is the clip, not the film.
TEST_F(Commands, Encode_ReverseTurnsTheClipRound) {
    inputs::levels("in.mkv", counted(10, 15));
    const Outcome outcome = encodeExactly("--reverse --start 0.04 --duration 0.16");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("; backwards\n"), std::string::npos) << outcome.out;
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{14, 13, 12, 11}));
    EXPECT_EQ(encodeExactly("--reverse --loop pingpong --duration 0.16").status, 0);
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{11, 12, 13, 12, 11, 10}));
    EXPECT_EQ(encodeExactly("--reverse --fade-in 0.12").status, 0);
    const Levels shown = inputs::levelsOf("out.m19");
    EXPECT_LT(shown[0], 8);
    EXPECT_EQ((Levels{shown[4], shown[5]}), (Levels{11, 10}));
}

// Levels 0, 1, 4 and 5 are greys 0, 8, 33 and 41. Two thirds of 33 are 22, level 3; two thirds of 8
// and one of 41 are 19, level 2.
TEST_F(Commands, Encode_CrossfadeBlendsTheLastFramesIntoTheFirst) {
    inputs::levels("in.mkv", counted(0, 5));
    for (const char* form : {"--loop crossfade:2", "--loop crossfade 2", "--loop=crossfade 2"}) {
        const Outcome outcome = encodeExactly(form);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_NE(outcome.out.find("; 2 frames blended\n"), std::string::npos) << outcome.out;
        EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{3, 2, 2, 3})) << form;
    }
}

// Of 5 frames two at most can be blended.
TEST_F(Commands, Encode_CrossfadeOfAShortInputBlendsLess) {
    inputs::levels("in.mkv", {0, 0, 9, 0, 0});
    const Outcome outcome = encodeExactly("--loop crossfade:40");
    EXPECT_NE(outcome.out.find("; 2 frames blended\n"), std::string::npos) << outcome.out;
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{0, 0, 9}));
}

// A wave of 10 frames between two frames that fit nowhere. 26 frames hold it more than twice; the
// loop holds it once. The frame before it must be part of the wave too.
TEST_F(Commands, Encode_BestFindsTheSeamAndTellsIt) {
    const Levels wave{0, 4, 8, 12, 16, 20, 16, 12, 8, 4};
    Levels shown{31};
    for (size_t i = 0; i < 26; ++i) {
        shown.push_back(wave[i % 10]);
    }
    shown.push_back(31);
    inputs::levels("in.mkv", shown);
    const Outcome outcome = encodeExactly("--loop best");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("; loop from 0.08 to 0.48 seconds, seam difference 0.0\n"),
              std::string::npos)
        << outcome.out;
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{4, 8, 12, 16, 20, 16, 12, 8, 4, 0}));
}

// Up from 0 to 31 and down again, three times: 192 frames.
TEST_F(Commands, Encode_BestShowsALoopThatIsThereThreeTimesOnce) {
    Levels shown;
    for (int i = 0; i < 192; ++i) {
        shown.push_back(std::min(i % 64, 63 - i % 64));
    }
    inputs::levels("in.mkv", shown);
    const Outcome outcome = encodeExactly("--loop best");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find(": 64 frames"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("seam difference 0.0\n"), std::string::npos) << outcome.out;
}

// 12 frames, three times, each pixel up to 2 levels of 255 off: frames 12 apart differ by 4 in the
// mean of their squares, the others by 50.
TEST_F(Commands, Encode_BestFindsARepeatedLoopUnderNoise) {
    media::Recipe recipe;
    recipe.path = "in.mkv";
    recipe.width = 64;
    recipe.height = 36;
    recipe.frames = 36;
    recipe.fill = [random = uint32_t{1}](int frame, AVFrame& picture) mutable {
        const int level = 100 + 3 * std::min(frame % 12, 11 - frame % 12);
        for (int i = 0; i < 64 * 36; ++i) {
            random = random * 1664525 + 1013904223;
            const int off = static_cast<int>((random >> 24) % 5) - 2;
            std::memset(media::pixelAt(picture, i % 64, i / 64), level + off, 3);
        }
    };
    media::write(recipe);
    const Outcome outcome = encodeExactly("--loop best");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find(": 12 frames"), std::string::npos) << outcome.out;
}

// Three pictures of a second each are 300 frames at 100 a second.
TEST_F(Commands, Encode_LongInputIsCutSplitOrRetimed) {
    inputs::levels("in.mkv", {3, 4, 5}, 1);
    const std::string encode = "encode in.mkv -o out.m19 --fps 100 --preset graphics ";
    const Outcome cut = tool(encode);
    EXPECT_NE(cut.out.find(": 256 frames"), std::string::npos) << cut.out;
    EXPECT_NE(cut.out.find("; the input goes on\n"), std::string::npos) << cut.out;
    const Outcome split = tool(encode + "--long split");
    EXPECT_EQ(split.status, 0) << split.err;
    EXPECT_EQ(split.out.rfind("out-1.m19: 256 frames", 0), 0u) << split.out;
    EXPECT_NE(split.out.find("\nout-2.m19: 44 frames"), std::string::npos) << split.out;
    const Levels first = inputs::levelsOf("out-1.m19");
    EXPECT_EQ(std::count(first.begin(), first.end(), 3), 100);
    EXPECT_EQ(std::count(first.begin(), first.end(), 5), 56);
    EXPECT_EQ(inputs::levelsOf("out-2.m19"), Levels(44, 5));
    const Outcome fit = tool(encode + "--long fit");
    EXPECT_NE(fit.out.find(": 256 frames"), std::string::npos) << fit.out;
    EXPECT_NE(fit.out.find("; 1.17 times as fast\n"), std::string::npos) << fit.out;
    const Levels retimed = inputs::levelsOf("out.m19");
    // 256 / 3 frames each: those that begin at 0 to 85.3, to 170.7, and the rest.
    EXPECT_EQ(std::count(retimed.begin(), retimed.end(), 3), 86);
    EXPECT_EQ(std::count(retimed.begin(), retimed.end(), 4), 85);
    EXPECT_EQ(std::count(retimed.begin(), retimed.end(), 5), 85);
}

TEST_F(Commands, Encode_NamesInOtherScriptsAreTransliterated) {
    inputs::levels("in.mkv", {3});
    const std::pair<const char*, const char*> names[] = {
        {"Волна и ночь.mkv", "volna_i_noc.m19"},
        {"日本.mkv", "ri_ben.m19"},
        {"Θάλασσα.mkv", "thalassa.m19"},
        {"ひかり.mkv", "hikari.m19"},
        {"Łódź für Œuvre.mkv", "lodz_fur_oeuvre.m19"},
    };
    std::string inputs;
    Names clips;
    for (const auto& [input, clip] : names) {
        fs::copy_file("in.mkv", input);
        inputs += std::string(" '") + input + "'";
        clips.push_back(std::string("clips/") + clip);
    }
    const Outcome outcome = tool("encode -d clips --preset graphics" + inputs);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    for (const std::string& clip : clips) {
        EXPECT_TRUE(fs::exists(clip)) << clip << "\n" << outcome.out;
    }
}

TEST_F(Commands, Encode_ShortInputIsNotNumberedOrRetimed) {
    inputs::levels("in.mkv", {3, 4, 5});
    EXPECT_EQ(encodeExactly("--long split").status, 0);
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{3, 4, 5}));
    EXPECT_EQ(encodeExactly("--long fit").status, 0);
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{3, 4, 5}));
    EXPECT_EQ(filesHere(), (Names{"in.mkv", "out.m19"}));
}

// Grey 140 is level 8 of 15 in alpha; its colour stays.
TEST_F(Commands, Encode_LumaMakesBrightnessOpacity) {
    inputs::levels("in.mkv", {17, 0, 31});
    EXPECT_EQ(encodeExactly("--alpha luma").status, 0);
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{17, 0, 31}));
    const reference::Clip clip = inputs::readClip("out.m19");
    EXPECT_EQ(clip.alpha, 1u);
    const std::vector<reference::Picture> pictures = reference::decode(clip);
    EXPECT_EQ(pictures[0].alpha[1000], 8);
    EXPECT_EQ(pictures[1].alpha[1000], 0);
    EXPECT_EQ(pictures[2].alpha[1000], 15);
}

TEST_F(Commands, Encode_KeyMakesAColourTransparent) {
    inputs::picture("in.png", 640, 360,
                    [](int x, int) { return x < 320 ? 0x00C800FFU : 0xC80000FFU; });
    for (const char* form : {"key:00ff00", "key 00FF00"}) {
        ASSERT_EQ(tool(std::string("encode in.png -o out.m19 --alpha ") + form).status, 0);
        const reference::Picture picture = reference::decode(inputs::readClip("out.m19"))[0];
        EXPECT_EQ(picture.alpha[100], 0) << form;
        EXPECT_EQ(picture.alpha[600], 15) << form;
        EXPECT_EQ(picture.pixels[600], 24 << 11) << form;  // 200 of 255
    }
}

TEST_F(Commands, Encode_AlphaIsKeptOrDropped) {
    inputs::picture("in.png", 640, 360, [](int, int) { return 0xFF000080U; });
    EXPECT_EQ(tool("encode in.png -o out.m19").status, 0);
    EXPECT_EQ(inputs::readClip("out.m19").alpha, 1u);
    EXPECT_EQ(tool("encode in.png -o out.m19 --alpha none").status, 0);
    EXPECT_EQ(inputs::readClip("out.m19").alpha, 0u);
}

// Programs that write sequences leave the alpha out of pictures that are opaque.
TEST_F(Commands, Encode_AlphaThatBeginsLaterIsKept) {
    inputs::picture("img2.png", 64, 36, [](int, int) { return 0xFF000080U; });
    media::Recipe opaque;
    opaque.path = "img%d.png";
    opaque.codec = AV_CODEC_ID_PNG;
    opaque.pixels = AV_PIX_FMT_RGB24;
    opaque.width = 64;
    opaque.height = 36;
    opaque.fill = [](int, AVFrame&) {};
    media::write(opaque);
    ASSERT_EQ(tool("encode img%d.png -o out.m19").status, 0);
    EXPECT_EQ(inputs::readClip("out.m19").alpha, 1u);
}

// 100 x 50 pixels grow six times to 600 x 300, 20 and 30 pixels from the edges.
TEST_F(Commands, Encode_PixelPresetEnlargesByWholeFactors) {
    inputs::picture("in.png", 100, 50,
                    [](int x, int y) { return (x + y) % 2 == 0 ? 0xFF0000FFU : 0x0000FFFFU; });
    EXPECT_EQ(tool("encode in.png -o out.m19 --preset pixel").status, 0);
    const reference::Clip clip = inputs::readClip("out.m19");
    EXPECT_EQ(clip.quality, 100u);
    const reference::Picture picture = reference::decode(clip)[0];
    constexpr int kRed = 0xF800;
    constexpr int kBlue = 0x001F;
    for (int y = 0; y < 360; ++y) {
        for (int x = 0; x < 640; ++x) {
            const bool inside = x >= 20 && x < 620 && y >= 30 && y < 330;
            const bool red = ((x - 20) / 6 + (y - 30) / 6) % 2 == 0;
            ASSERT_EQ(picture.pixels[static_cast<size_t>(y * 640 + x)],
                      inside ? (red ? kRed : kBlue) : 0)
                << x << ", " << y;
        }
    }
    EXPECT_EQ(tool("encode in.png -o out.m19 --preset pixel --fit stretch --quality 60").status, 0);
    const reference::Clip stretched = inputs::readClip("out.m19");
    EXPECT_EQ(stretched.quality, 60u);
    EXPECT_NE(reference::decode(stretched)[0].pixels[0], 0);
}

TEST_F(Commands, Encode_QualityComesFromThePresetUnlessGiven) {
    inputs::levels("in.mkv", {1});
    const std::pair<const char*, unsigned> cases[] = {
        {"", 80},           {"--preset graphics", 100},           {"--preset footage", 80},
        {"--quality 3", 3}, {"--preset graphics --quality 7", 7},
    };
    for (const auto& [options, quality] : cases) {
        ASSERT_EQ(tool(std::string("encode in.mkv -o out.m19 ") + options).status, 0) << options;
        EXPECT_EQ(inputs::readClip("out.m19").quality, quality) << options;
    }
}

TEST_F(Commands, Encode_ImageSequenceGivesEveryPictureOnce) {
    for (int i = 0; i < 4; ++i) {
        const uint32_t value = inputs::grey(i + 1);
        inputs::picture("img" + std::to_string(98 + i) + ".png", 64, 36,
                        [value](int, int) { return value << 24 | value << 16 | value << 8 | 255; });
    }
    EXPECT_EQ(tool("encode img%d.png -o out.m19 --preset graphics").status, 0);
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{1, 2, 3, 4}));
    EXPECT_EQ(tool("encode img%d.png -d clips --fps 12").status, 0);
    EXPECT_EQ(inputs::levelsOf("clips/img.m19").size(), 4u);
}

TEST_F(Commands, Encode_FolderGetsOneClipAnInput) {
    fs::create_directory("more");
    inputs::levels("A b!.mkv", {1});
    inputs::levels("more/a_b.mkv", {2});
    inputs::levels("\xC3\x89t\xC3\xA9.mkv", {3});  // "Été" in UTF-8
    const Outcome outcome = tool(
        "encode 'A b!.mkv' more/a_b.mkv $(printf '\\303\\211t\\303\\251.mkv') -d clips/new "
        "--preset graphics -j 2");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(inputs::levelsOf("clips/new/a_b.m19"), Levels{1});
    EXPECT_EQ(inputs::levelsOf("clips/new/a_b_2.m19"), Levels{2});
    EXPECT_EQ(inputs::levelsOf("clips/new/ete.m19"), Levels{3});
    const size_t second = outcome.out.find("a_b_2.m19: ");
    EXPECT_LT(outcome.out.find("a_b.m19: "), second);
    EXPECT_LT(second, outcome.out.find("ete.m19: "));
}

TEST_F(Commands, Encode_ABadInputAmongOthersFailsAlone) {
    inputs::levels("a.mkv", {1});
    inputs::levels("b.mkv", {2});
    std::ofstream("bad.mkv") << "no video";
    const Outcome outcome = tool("encode a.mkv bad.mkv missing.mkv b.mkv -d clips");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 2) << outcome.out;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 2) << outcome.err;
    EXPECT_NE(outcome.err.find("cannot read bad.mkv: "), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.err.find("cannot read missing.mkv: "), std::string::npos) << outcome.err;
    fs::current_path("clips");
    EXPECT_EQ(filesHere(), (Names{"a.m19", "b.m19"}));
    fs::current_path("..");
}

TEST_F(Commands, Encode_KeepLeavesClipsThatAreThere) {
    inputs::levels("a.mkv", {1});
    fs::create_directory("clips");
    std::ofstream("clips/a.m19") << "older";
    EXPECT_EQ(tool("encode a.mkv -d clips --keep").out, "clips/a.m19: kept\n");
    EXPECT_EQ(textOf("clips/a.m19"), "older");
    EXPECT_EQ(tool("encode a.mkv -d clips").status, 0);
    EXPECT_NE(textOf("clips/a.m19"), "older");
}

TEST_F(Commands, Encode_OtherEndingIsWarnedOf) {
    inputs::levels("in.mkv", {1});
    const Outcome outcome = tool("encode in.mkv -o out.clip");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.err.find(".m19"), std::string::npos);
}

TEST_F(Commands, Encode_WrongUseHasItsOwnStatus) {
    inputs::levels("in.mkv", {1});
    for (const char* arguments : {"",
                                  "encode",
                                  "encode in.mkv",
                                  "encode in.mkv -o a.m19 -d b",
                                  "encode in.mkv in.mkv -o a",
                                  "encode in.mkv -o a.m19 --fit wide",
                                  "conjure",
                                  "encode in.mkv -o a.m19 --fps 0",
                                  "encode in.mkv -o a.m19 --quality 101",
                                  "encode in.mkv -o a.m19 --start -1",
                                  "encode in.mkv -o a.m19 --start 1:xx",
                                  "encode in.mkv -o a.m19 --long wide",
                                  "encode in.mkv -o a.m19 --loop crossfade",
                                  "encode in.mkv -o a.m19 --loop crossfade:0",
                                  "encode in.mkv -o a.m19 --loop crossfade:256",
                                  "encode in.mkv -o a.m19 --loop best --long split",
                                  "encode in.mkv -o a.m19 --alpha key",
                                  "encode in.mkv -o a.m19 --alpha key:12345",
                                  "encode in.mkv -o a.m19 --alpha key:00gg00",
                                  "encode in.mkv -o a.m19 --preset film",
                                  "encode in.mkv -o a.m19 --size much",
                                  "encode in.mkv -o a.m19 --size 0",
                                  "encode in.mkv -o a.m19 --size=-5",
                                  "encode in.mkv -o a.m19 --records 0",
                                  "encode in.mkv -o a.m19 -j 0"}) {
        const Outcome outcome = tool(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_NE(outcome.err, "") << arguments;
    }
    EXPECT_EQ(tool("--help").status, 0);
    EXPECT_NE(tool("encode --help").out.find("25.6"), std::string::npos);
    EXPECT_EQ(filesHere(), (Names{"in.mkv"}));
}

}  // namespace
