// Reading videos, animated images and image sequences, made here with FFmpeg's own libraries.
#include "tools/clip/media/source.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>

#include "clip_tool/inputs.h"
#include "clip_tool/media.h"
#include "support/folder.h"
#include "tools/base/errors.h"
#include "tools/clip/jobs/encode_job.h"

namespace {

using maker::Fit;
using maker::SourceOptions;
using Rgba = std::array<uint8_t, 4>;
using Pictures = std::vector<std::vector<uint8_t>>;

Rgba at(const std::vector<uint8_t>& picture, int x, int y) {
    const size_t from = static_cast<size_t>(y * 640 + x) * 4;
    return {picture[from], picture[from + 1], picture[from + 2], picture[from + 3]};
}

// `alpha` tells whether anything is transparent; it is kept then, if the options say so.
Pictures readAll(SourceOptions options, bool* alpha = nullptr) {
    maker::EncodeSettings settings;
    settings.start = options.start;
    settings.duration = options.duration;
    settings.fps = options.fps;
    settings.alpha = options.alpha ? maker::AlphaFrom::SOURCE : maker::AlphaFrom::NONE;
    options.alpha = maker::planEncode(options.path, settings).source.alpha;
    maker::VideoSource source(options);
    Pictures pictures;
    while (source.step()) {
        pictures.push_back(source.picture());
    }
    if (alpha != nullptr) {
        *alpha = options.alpha;
    }
    return pictures;
}

SourceOptions options(const std::string& path, double fps = 25) {
    SourceOptions result;
    result.path = path;
    result.fps = fps;
    result.alpha = true;
    result.limit = 256;
    return result;
}

// Frame i is grey with level 5 x i, so each picture tells which source frame it shows.
media::Recipe greys(const std::string& path, int frames, int fps) {
    media::Recipe recipe;
    recipe.path = path;
    recipe.frames = frames;
    recipe.fps = {fps, 1};
    recipe.width = 64;
    recipe.height = 36;
    recipe.fill = [](int frame, AVFrame& picture) {
        const uint8_t level = static_cast<uint8_t>(frame * 5);
        media::fillBytes(picture, level, level, level, 0);
    };
    return recipe;
}

std::vector<int> shownFrames(const Pictures& pictures) {
    std::vector<int> frames;
    for (const std::vector<uint8_t>& picture : pictures) {
        EXPECT_EQ(at(picture, 0, 0), at(picture, 639, 359));
        EXPECT_EQ(at(picture, 320, 180)[3], 255);
        frames.push_back(at(picture, 320, 180)[0] / 5);
    }
    return frames;
}

class Source : public testing::Test {
protected:
    TemporaryFolder folder_;
};

TEST_F(Source, PictureOfTheFramesSize_IsTakenAsItIs) {
    media::Recipe recipe;
    recipe.path = "exact.mkv";
    recipe.fill = [](int, AVFrame& picture) {
        for (int y = 0; y < 360; ++y) {
            for (int x = 0; x < 640; ++x) {
                uint8_t* pixel = media::pixelAt(picture, x, y);  // blue, green, red, unused
                pixel[0] = static_cast<uint8_t>(x * 7 + y);
                pixel[1] = static_cast<uint8_t>(x + y * 11);
                pixel[2] = static_cast<uint8_t>(x ^ y);
                pixel[3] = 0;
            }
        }
    };
    media::write(recipe);
    bool alpha = true;
    const Pictures pictures = readAll(options("exact.mkv"), &alpha);
    ASSERT_EQ(pictures.size(), 1u);
    EXPECT_FALSE(alpha);
    for (int y = 0; y < 360; y += 7) {
        for (int x = 0; x < 640; ++x) {
            const Rgba expected{static_cast<uint8_t>(x ^ y), static_cast<uint8_t>(x + y * 11),
                                static_cast<uint8_t>(x * 7 + y), 255};
            ASSERT_EQ(at(pictures[0], x, y), expected) << x << ", " << y;
        }
    }
}

TEST_F(Source, SameRate_GivesEveryFrameOnce) {
    media::write(greys("a.mkv", 5, 25));
    EXPECT_EQ(shownFrames(readAll(options("a.mkv"))), (std::vector<int>{0, 1, 2, 3, 4}));
}

// 10 frames at 30 last a third of a second. Clip frame n shows source frame floor(n x 30 / 25.6),
// which leaves out frame 6; 0.333 x 25.6 = 8.53 frames begin in it.
TEST_F(Source, FasterSource_KeepsItsSpeed) {
    media::write(greys("a.mkv", 10, 30));
    EXPECT_EQ(shownFrames(readAll(options("a.mkv", 25.6))),
              (std::vector<int>{0, 1, 2, 3, 4, 5, 7, 8, 9}));
}

TEST_F(Source, SlowerSource_RepeatsFrames) {
    media::write(greys("a.mkv", 3, 10));
    EXPECT_EQ(shownFrames(readAll(options("a.mkv", 20))), (std::vector<int>{0, 0, 1, 1, 2, 2}));
}

TEST_F(Source, UnevenTimes_AreKept) {
    media::Recipe recipe = greys("a.mkv", 3, 10);
    recipe.time = [](int frame) -> int64_t { return frame == 2 ? 5 : frame; };
    media::write(recipe);
    EXPECT_EQ(shownFrames(readAll(options("a.mkv", 10))), (std::vector<int>{0, 1, 1, 1, 1, 2}));
}

TEST_F(Source, StartAndDuration_CutThePart) {
    media::write(greys("a.mkv", 50, 25));
    SourceOptions part = options("a.mkv");
    part.start = 1;
    part.duration = 0.2;
    EXPECT_EQ(shownFrames(readAll(part)), (std::vector<int>{25, 26, 27, 28, 29}));
    part.start = 1.02;  // half-way through frame 25
    part.duration = 0;
    EXPECT_EQ(shownFrames(readAll(part)).front(), 25);
    part.start = 5;
    EXPECT_TRUE(readAll(part).empty());
}

TEST_F(Source, LongSource_GivesTheFirst256Frames) {
    media::Recipe recipe = greys("a.mkv", 300, 25);
    recipe.fill = [](int frame, AVFrame& picture) {
        media::fillBytes(picture, 0, 0, static_cast<uint8_t>(frame / 2), 0);
    };
    media::write(recipe);
    const Pictures pictures = readAll(options("a.mkv"));
    ASSERT_EQ(pictures.size(), 256u);
    EXPECT_EQ(at(pictures[255], 0, 0)[0], 127);
}

TEST_F(Source, ExpectedFrames_ComeFromTheLength) {
    media::write(greys("a.mkv", 20, 25));
    EXPECT_EQ(maker::VideoSource(options("a.mkv")).expectedFrames(), 20);
}

TEST_F(Source, CutFile_GivesWhatCanBeRead) {
    media::Recipe recipe = greys("a.mkv", 40, 25);
    recipe.width = 320;
    recipe.height = 180;
    recipe.fill = [](int frame, AVFrame& picture) {
        media::fillNoise(picture, static_cast<uint32_t>(frame) + 1);
    };
    media::write(recipe);
    std::filesystem::resize_file("a.mkv", std::filesystem::file_size("a.mkv") / 2);
    const size_t frames = readAll(options("a.mkv")).size();
    EXPECT_GT(frames, 10u);
    EXPECT_LT(frames, 30u);
}

TEST_F(Source, NoVideo_IsToldByName) {
    std::ofstream("text.mp4") << "this is no video at all\n";
    std::ofstream("nothing.gif");
    std::filesystem::create_directory("folder.avi");
    for (const char* path : {"text.mp4", "nothing.gif", "folder.avi", "missing.mkv"}) {
        try {
            maker::VideoSource source(options(path));
            FAIL() << path;
        } catch (const maker::ToolError& error) {
            EXPECT_NE(std::string(error.what()).find(path), std::string::npos) << error.what();
        }
    }
}

// Index 0 is transparent, 1 red, 2 blue. Frame 1 lasts three tenths of a second.
TEST_F(Source, Gif_KeepsTransparencyAndDelays) {
    media::Recipe recipe;
    recipe.path = "a.gif";
    recipe.codec = AV_CODEC_ID_GIF;
    recipe.pixels = AV_PIX_FMT_PAL8;
    recipe.width = 64;
    recipe.height = 36;
    recipe.fps = {10, 1};
    recipe.frames = 3;
    recipe.time = [](int frame) -> int64_t { return frame == 2 ? 4 : frame; };
    recipe.fill = [](int frame, AVFrame& picture) {
        uint32_t* colours = reinterpret_cast<uint32_t*>(picture.data[1]);
        std::fill(colours, colours + 256, 0xFF000000);
        colours[0] = 0x00000000;
        colours[1] = 0xFFFF0000;
        colours[2] = 0xFF0000FF;
        for (int y = 0; y < 36; ++y) {
            for (int x = 0; x < 64; ++x) {
                *media::pixelAt(picture, x, y, 1) = static_cast<uint8_t>(x < 32       ? 0
                                                                         : frame == 1 ? 2
                                                                                      : 1);
            }
        }
    };
    media::write(recipe);
    bool alpha = false;
    const Pictures pictures = readAll(options("a.gif", 10), &alpha);
    EXPECT_TRUE(alpha);
    ASSERT_GE(pictures.size(), 5u);
    EXPECT_EQ(at(pictures[0], 100, 100)[3], 0);
    EXPECT_EQ(at(pictures[0], 500, 100), (Rgba{255, 0, 0, 255}));
    for (size_t n = 1; n <= 3; ++n) {
        EXPECT_EQ(at(pictures[n], 500, 100), (Rgba{0, 0, 255, 255})) << n;
    }
    EXPECT_EQ(at(pictures[4], 500, 100), (Rgba{255, 0, 0, 255}));
}

media::Recipe apng(const std::string& path, int width, int height, const Rgba& left,
                   const Rgba& right) {
    media::Recipe recipe;
    recipe.path = path;
    recipe.codec = AV_CODEC_ID_APNG;
    recipe.pixels = AV_PIX_FMT_RGBA;
    recipe.width = width;
    recipe.height = height;
    recipe.frames = 2;
    recipe.fill = [width, height, left, right](int, AVFrame& picture) {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const Rgba& colour = x < width / 2 ? left : right;
                std::copy(colour.begin(), colour.end(), media::pixelAt(picture, x, y));
            }
        }
    };
    return recipe;
}

TEST_F(Source, Apng_KeepsPartialAlpha) {
    media::write(apng("a.apng", 640, 360, {255, 0, 0, 100}, {0, 255, 0, 255}));
    bool alpha = false;
    const Pictures pictures = readAll(options("a.apng"), &alpha);
    EXPECT_TRUE(alpha);
    ASSERT_EQ(pictures.size(), 2u);
    EXPECT_EQ(at(pictures[1], 10, 10), (Rgba{255, 0, 0, 100}));
    EXPECT_EQ(at(pictures[1], 630, 10), (Rgba{0, 255, 0, 255}));
}

TEST_F(Source, OpaqueApng_HasNoAlpha) {
    media::write(apng("a.apng", 64, 36, {255, 0, 0, 255}, {0, 255, 0, 255}));
    bool alpha = true;
    readAll(options("a.apng"), &alpha);
    EXPECT_FALSE(alpha);
}

TEST_F(Source, AlphaNone_LaysThePictureOverBlack) {
    media::write(apng("a.apng", 640, 360, {200, 100, 0, 51}, {9, 9, 9, 0}));
    SourceOptions none = options("a.apng");
    none.alpha = false;
    bool alpha = true;
    const Pictures pictures = readAll(none, &alpha);
    EXPECT_FALSE(alpha);
    EXPECT_EQ(at(pictures[0], 10, 10), (Rgba{40, 20, 0, 255}));  // a fifth
    EXPECT_EQ(at(pictures[0], 630, 10), (Rgba{0, 0, 0, 255}));
}

TEST_F(Source, Scaling_LetsNoHiddenColourShow) {
    media::write(apng("a.apng", 64, 36, {0, 255, 0, 0}, {255, 0, 0, 255}));
    const Pictures pictures = readAll(options("a.apng"));
    int partly = 0;
    for (int x = 0; x < 640; ++x) {
        const Rgba pixel = at(pictures[0], x, 100);
        if (pixel[3] > 0) {
            EXPECT_EQ(pixel[1], 0) << x;
        }
        partly += pixel[3] > 0 && pixel[3] < 255 ? 1 : 0;
    }
    EXPECT_GT(partly, 0);
    EXPECT_EQ(at(pictures[0], 639, 100), (Rgba{255, 0, 0, 255}));
}

TEST_F(Source, Contain_HasBarsTransparentWithAlpha) {
    media::write(apng("clear.apng", 100, 100, {255, 0, 0, 100}, {0, 255, 0, 255}));
    media::write(apng("solid.apng", 100, 100, {255, 0, 0, 255}, {0, 255, 0, 255}));
    SourceOptions contain = options("clear.apng");
    contain.fit = Fit::CONTAIN;
    // 360 x 360 in the middle: 140 columns on either side.
    EXPECT_EQ(at(readAll(contain)[0], 139, 180), (Rgba{0, 0, 0, 0}));
    EXPECT_EQ(at(readAll(contain)[0], 499, 180), (Rgba{0, 255, 0, 255}));
    contain.path = "solid.apng";
    EXPECT_EQ(at(readAll(contain)[0], 139, 180), (Rgba{0, 0, 0, 255}));
    EXPECT_EQ(at(readAll(contain)[0], 140, 180), (Rgba{255, 0, 0, 255}));
}

// 320 x 360 pixels twice as wide as high are 16:9.
TEST_F(Source, PixelAspect_IsHonoured) {
    media::Recipe recipe = greys("a.mkv", 1, 25);
    recipe.width = 320;
    recipe.height = 360;
    recipe.pixelAspect = {2, 1};
    recipe.fill = [](int, AVFrame& picture) { media::fillBytes(picture, 90, 90, 90, 0); };
    media::write(recipe);
    SourceOptions contain = options("a.mkv");
    contain.fit = Fit::CONTAIN;
    const Pictures pictures = readAll(contain);
    EXPECT_EQ(at(pictures[0], 0, 0), (Rgba{90, 90, 90, 255}));
    EXPECT_EQ(at(pictures[0], 639, 359), (Rgba{90, 90, 90, 255}));
}

// A red top third: turned once clockwise it comes to the right side, twice to the bottom.
TEST_F(Source, TurnMark_SetsThePictureUpright) {
    for (int turns = 1; turns <= 3; ++turns) {
        media::Recipe recipe;
        recipe.path = "turned.mov";
        recipe.codec = AV_CODEC_ID_PNG;
        recipe.pixels = AV_PIX_FMT_RGBA;
        recipe.width = turns == 2 ? 640 : 360;
        recipe.height = turns == 2 ? 360 : 640;
        recipe.turns = turns;
        recipe.fill = [](int, AVFrame& picture) {
            media::fillBytes(picture, 0, 0, 255, 255);
            for (int y = 0; y < picture.height / 3; ++y) {
                for (int x = 0; x < picture.width; ++x) {
                    uint8_t* pixel = media::pixelAt(picture, x, y);
                    pixel[0] = 255;
                    pixel[2] = 0;
                }
            }
        };
        media::write(recipe);
        const Pictures pictures = readAll(options("turned.mov"));
        ASSERT_FALSE(pictures.empty());
        const bool redRight = at(pictures[0], 630, 180)[0] == 255;
        const bool redLeft = at(pictures[0], 10, 180)[0] == 255;
        const bool redBottom = at(pictures[0], 320, 350)[0] == 255;
        const bool redTop = at(pictures[0], 320, 10)[0] == 255;
        EXPECT_EQ(redRight, turns == 1) << turns;
        EXPECT_EQ(redLeft, turns == 3) << turns;
        EXPECT_EQ(redBottom, turns == 2) << turns;
        EXPECT_FALSE(redTop) << turns;
    }
}

media::Recipe still(const std::string& path, uint8_t level) {
    media::Recipe recipe = apng(path, 64, 36, {level, 0, 0, 255}, {level, 0, 0, 255});
    recipe.codec = AV_CODEC_ID_PNG;
    recipe.frames = 1;
    return recipe;
}

TEST_F(Source, ImageSequence_IsReadByItsPattern) {
    for (int i = 1; i <= 4; ++i) {
        // The container is chosen by name; FFmpeg writes one image to each file of a pattern.
        media::Recipe recipe = still("img%03d.png", static_cast<uint8_t>(i * 50));
        recipe.path = "one%d.png";
        media::write(recipe);
        std::filesystem::rename("one1.png", "img00" + std::to_string(i) + ".png");
    }
    const Pictures pictures = readAll(options("img%03d.png"));
    ASSERT_EQ(pictures.size(), 4u);
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(at(pictures[i], 5, 5)[0], (i + 1) * 50);
    }
}

TEST_F(Source, StillPicture_IsOneFrameOrTheAskedDuration) {
    media::write(still("one%d.png", 50));
    EXPECT_EQ(readAll(options("one1.png", 10)).size(), 1u);
    SourceOptions held = options("one1.png", 10);
    held.duration = 0.5;
    EXPECT_EQ(readAll(held).size(), 5u);
}

TEST_F(Source, PatternInAFolderWithAColon_IsFound) {
    std::filesystem::create_directory("a:b");
    for (const char* name : {"a:b/img1.png", "a:b/img2.png"}) {
        inputs::picture(name, 64, 36, [](int, int) { return 0x000000FFU; });
    }
    EXPECT_EQ(readAll(options("a:b/img%d.png")).size(), 2u);
}

TEST_F(Source, PictureNamedLikeAPattern_IsThatPicture) {
    inputs::picture("img%d.png", 64, 36, [](int, int) { return 0x000000FFU; });
    EXPECT_EQ(readAll(options("img%d.png")).size(), 1u);
}

TEST_F(Source, NameWithAColon_IsAFile) {
    media::write(greys("a.mkv", 2, 25));
    std::filesystem::rename("a.mkv", "12:30.mkv");
    EXPECT_EQ(readAll(options("12:30.mkv")).size(), 2u);
}

}  // namespace
