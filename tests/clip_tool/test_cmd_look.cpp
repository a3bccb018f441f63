// velmora-clip encode, run for real: what it does to the pictures before they are coded.
#include <gtest/gtest.h>

#include <cstring>

#include "clip_tool/inputs.h"
#include "clip_tool/media.h"
#include "clip_tool/tool.h"

namespace {

using Levels = std::vector<int>;

// The red level of a pixel in a frame of out.m19.
int level(int x, int y, size_t frame = 0) {
    const auto pictures = reference::decode(inputs::readClip("out.m19"));
    return pictures.at(frame).pixels[static_cast<size_t>(y * 640 + x)] >> 11;
}

Outcome encode(const std::string& input, const std::string& options) {
    return tool("encode " + input + " -o out.m19 --fps 25 --preset graphics " + options);
}

// A grey of 32 for each pixel.
void greys(const std::string& path, int width, int height,
           const std::function<int(int x, int y)>& levelAt) {
    inputs::picture(path, width, height, [&levelAt](int x, int y) {
        const uint32_t value = inputs::grey(levelAt(x, y));
        return value << 24 | value << 16 | value << 8 | 255;
    });
}

// An edge that moves by 50 pixels from half picture to half picture. At 225 the upper lines of
// frame 2 are still black and the lower ones white already.
void writeInterlaced(bool marked) {
    media::Recipe recipe;
    recipe.path = "in.mkv";
    recipe.pixels = AV_PIX_FMT_YUV444P;
    recipe.frames = 4;
    recipe.interlaced = marked;
    recipe.fill = [](int frame, AVFrame& picture) {
        for (int y = 0; y < 360; ++y) {
            const int edge = 100 * frame + 50 * (y % 2);
            for (int x = 0; x < 640; ++x) {
                picture.data[0][y * picture.linesize[0] + x] = x < edge ? 235 : 16;
            }
            std::memset(picture.data[1] + y * picture.linesize[1], 128, 640);
            std::memset(picture.data[2] + y * picture.linesize[2], 128, 640);
        }
    };
    media::write(recipe);
}

bool combed() {
    return level(225, 200, 2) != level(225, 201, 2);
}

TEST_F(Commands, Encode_InterlacedFilmIsDeinterlaced) {
    writeInterlaced(true);
    const Outcome outcome = encode("in.mkv", "");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find(": 4 frames"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("; deinterlaced\n"), std::string::npos) << outcome.out;
    EXPECT_FALSE(combed());
    EXPECT_EQ(encode("in.mkv", "--deinterlace off").out.find("deinterlaced"), std::string::npos);
    EXPECT_TRUE(combed());
}

TEST_F(Commands, Encode_UnmarkedFilmIsDeinterlacedWhenAsked) {
    writeInterlaced(false);
    EXPECT_EQ(encode("in.mkv", "").status, 0);
    EXPECT_TRUE(combed());
    EXPECT_EQ(encode("in.mkv", "--deinterlace on").status, 0);
    EXPECT_FALSE(combed());
}

// Half of what PQ can tell is 92 candela, where graphics have white at 203: 0.45 of it, which
// becomes 0.43 as what is brighter than white needs room, and 0.70 on a screen: level 22 of 31.
// Untouched it would be 16.
TEST_F(Commands, Encode_HighDynamicRangeIsBroughtDown) {
    media::Recipe recipe;
    recipe.path = "in.mkv";
    recipe.pixels = AV_PIX_FMT_YUV444P;
    recipe.width = 64;
    recipe.height = 36;
    recipe.transfer = AVCOL_TRC_SMPTE2084;
    recipe.fill = [](int, AVFrame& picture) {
        const int values[] = {126, 128, 128};
        for (int plane = 0; plane < 3; ++plane) {
            std::memset(picture.data[plane], values[plane],
                        static_cast<size_t>(picture.linesize[plane]) * 36);
        }
    };
    media::write(recipe);
    const Outcome outcome = encode("in.mkv", "");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("; high dynamic range brought down\n"), std::string::npos)
        << outcome.out;
    EXPECT_EQ(level(320, 180), 22);
    recipe.transfer = AVCOL_TRC_UNSPECIFIED;
    media::write(recipe);
    EXPECT_EQ(encode("in.mkv", "").out.find("range"), std::string::npos);
    EXPECT_EQ(level(320, 180), 16);
}

// A picture twice as wide as the frame, whose columns of 320 have levels of their own.
TEST_F(Commands, Encode_PositionAndZoomChooseThePart) {
    greys("in.png", 1280, 360, [](int x, int) { return 1 + x / 320; });
    EXPECT_EQ(encode("in.png", "").status, 0);
    EXPECT_EQ((Levels{level(100, 180), level(500, 180)}), (Levels{2, 3}));
    EXPECT_EQ(encode("in.png", "--position left").status, 0);
    EXPECT_EQ((Levels{level(100, 180), level(500, 180)}), (Levels{1, 2}));
    EXPECT_EQ(encode("in.png", "--position right").status, 0);
    EXPECT_EQ((Levels{level(100, 180), level(500, 180)}), (Levels{3, 4}));
    EXPECT_EQ(encode("in.png", "--position right --zoom 2").status, 0);
    EXPECT_EQ((Levels{level(20, 180), level(620, 180)}), (Levels{4, 4}));
}

// Levels 1 to 128 in columns of 10 pixels, the last digit of 32; the frame is 64 columns wide. The
// point is in its middle, between columns 31 and 32, as long as the picture reaches.
TEST_F(Commands, Encode_PositionIsAPointThatComesToTheMiddle) {
    greys("in.png", 1280, 360, [](int x, int) { return x / 10 % 32; });
    // 40 % are pixel 512: from 192 on, column 19.
    EXPECT_EQ(encode("in.png", "--position 40%,70%").status, 0);
    EXPECT_EQ((Levels{level(5, 180), level(635, 180)}), (Levels{19, 82 % 32}));
    EXPECT_EQ(encode("in.png", "--position 700,20").status, 0);
    EXPECT_EQ((Levels{level(5, 180), level(635, 180)}), (Levels{38 % 32, 101 % 32}));
    EXPECT_EQ(encode("in.png", "--position 3000,0").status, 0);
    EXPECT_EQ(level(635, 180), 127 % 32);
    // Twice as large, 32 columns by 180 lines are left: 48 to 79.
    EXPECT_EQ(encode("in.png", "--position 50%,50% --zoom 2").status, 0);
    EXPECT_EQ((Levels{level(5, 180), level(635, 180)}), (Levels{48 % 32, 79 % 32}));
    for (const char* wrong : {"30%", "30,70%", "30%,101%", "-1,5", "1,2,3", "a,b"}) {
        const Outcome outcome = encode("in.png", std::string("--position=") + wrong);
        EXPECT_EQ(outcome.status, 2) << wrong;
        EXPECT_NE(outcome.err.find("or a point like 30%,70% or 800,450"), std::string::npos);
    }
}

// Each row of tiles has its level, the left half 15 more.
TEST_F(Commands, Encode_FlipAndMirrorFoldBetweenTiles) {
    greys("in.png", 640, 360, [](int x, int y) { return y / 8 % 15 + (x < 320 ? 15 : 0); });
    EXPECT_EQ(encode("in.png", "--flip hv").status, 0);
    EXPECT_EQ((Levels{level(0, 0), level(639, 359)}), (Levels{14, 15}));
    EXPECT_EQ(encode("in.png", "--mirror top").status, 0);
    // Rows 22 and 23 are alike, and so are 1 and 44.
    EXPECT_EQ((Levels{level(600, 183), level(600, 184), level(600, 8), level(600, 359)}),
              (Levels{7, 7, 1, 1}));
    EXPECT_EQ(level(0, 359), 16);
    EXPECT_EQ(encode("in.png", "--mirror bottom").status, 0);
    // Rows 21 and 22 are alike, and so are 0 and 43.
    EXPECT_EQ((Levels{level(600, 175), level(600, 176), level(600, 0), level(600, 351)}),
              (Levels{7, 7, 13, 13}));
    EXPECT_EQ(encode("in.png", "--mirror right").status, 0);
    EXPECT_EQ((Levels{level(0, 0), level(639, 0)}), (Levels{0, 0}));
    EXPECT_EQ(encode("in.png", "--mirror quarter").status, 0);
    EXPECT_EQ((Levels{level(0, 8), level(639, 359)}), (Levels{16, 16}));
}

// Greys 99 and 132 are levels 12 and 16. A quarter more light is 64 more. Around the middle, 127.5,
// twice the contrast makes 99 70, level 9 (70.5 x 31 / 255 = 8.6), and 132 137, level 17.
TEST_F(Commands, Encode_BrightnessContrastAndSaturation) {
    greys("in.png", 640, 360, [](int x, int) { return x < 320 ? 12 : 16; });
    EXPECT_EQ(encode("in.png", "--brightness 25").status, 0);
    EXPECT_EQ((Levels{level(0, 0), level(639, 0)}), (Levels{20, 24}));
    EXPECT_EQ(encode("in.png", "--contrast 200").status, 0);
    EXPECT_EQ((Levels{level(0, 0), level(639, 0)}), (Levels{9, 17}));
    // Pure red without colour is 0.2126 of white, 54: level 7.
    inputs::picture("red.png", 640, 360, [](int, int) { return 0xFF0000FFU; });
    EXPECT_EQ(encode("red.png", "--saturation 0").status, 0);
    EXPECT_EQ(level(0, 0), 7);
}

// Ten frames of white at 25 a second; a fifth of a second is five of them.
TEST_F(Commands, Encode_FadesReachBlack) {
    inputs::levels("in.mkv", Levels(10, 31));
    EXPECT_EQ(encode("in.mkv", "--fade-in 0.2 --fade-out 0.2").status, 0);
    const Levels shown = inputs::levelsOf("out.m19");
    ASSERT_EQ(shown.size(), 10u);
    EXPECT_EQ(shown[0], 0);
    for (size_t i = 1; i < 5; ++i) {
        EXPECT_GT(shown[i], shown[i - 1]) << i;
        EXPECT_LT(shown[i + 5], shown[i + 4]) << i;
    }
    EXPECT_LT(shown[9], 10);
    EXPECT_EQ(encode("in.mkv", "--fade-in 0.2 --loop pingpong").status, 2);
}

// From black to white in one step: half as fast, there is the middle between them, 128 or level 16.
TEST_F(Commands, Encode_SlowBlendsPicturesBetween) {
    inputs::levels("in.mkv", {0, 0, 31, 31});
    EXPECT_EQ(encode("in.mkv", "--slow 2").status, 0);
    EXPECT_EQ(inputs::levelsOf("out.m19"), (Levels{0, 0, 0, 16, 31, 31, 31, 31}));
}

// White of these opacities, where there is nothing black.
void writeOpacities(const std::vector<uint8_t>& alphas) {
    media::Recipe recipe;
    recipe.path = "in.mkv";
    recipe.pixels = AV_PIX_FMT_BGRA;
    recipe.frames = static_cast<int>(alphas.size());
    recipe.fill = [&alphas](int frame, AVFrame& picture) {
        const uint8_t alpha = alphas[static_cast<size_t>(frame)];
        const uint8_t value = alpha == 0 ? 0 : 255;
        media::fillBytes(picture, value, value, value, alpha);
    };
    media::write(recipe);
}

// Between opaque and half there are three quarters: 191, level 11 of 15; between half and nothing a
// quarter: 64, level 4. The black of what is not there does not darken the white.
TEST_F(Commands, Encode_SlowKeepsTransparency) {
    writeOpacities({255, 255, 128, 0});
    ASSERT_EQ(encode("in.mkv", "--slow 2").status, 0);
    Levels alphas;
    Levels greens;
    for (const reference::Picture& picture : reference::decode(inputs::readClip("out.m19"))) {
        alphas.push_back(picture.alpha[0]);
        greens.push_back(picture.pixels[0] >> 5 & 63);
    }
    EXPECT_EQ(alphas, (Levels{15, 15, 15, 11, 8, 4, 0, 0}));
    EXPECT_EQ(greens, (Levels{63, 63, 63, 63, 63, 63, 0, 0}));
    // The only transparent picture is blended in before its turn comes.
    writeOpacities({255, 255, 255, 0});
    ASSERT_EQ(encode("in.mkv", "--slow 2 --loop best").status, 0);
    EXPECT_EQ(inputs::readClip("out.m19").alpha, 1u);
}

TEST_F(Commands, Encode_FilterIsTakenOrRefusedBeforehand) {
    inputs::levels("in.mkv", {10});
    EXPECT_EQ(encode("in.mkv", "--filter lutrgb=r=negval").status, 0);
    EXPECT_EQ(level(0, 0), 21);  // 255 - 82 = 173
    removeClip("out.m19");
    const Outcome broken = encode("in.mkv", "--filter nosuch=3");
    EXPECT_EQ(broken.status, 2);
    EXPECT_EQ(broken.err.rfind("--filter: FFmpeg does not take nosuch=3: ", 0), 0u) << broken.err;
    // Fits no picture of 64 x 36.
    const Outcome large = encode("in.mkv", "--filter crop=700:400");
    EXPECT_EQ(large.status, 1);
    EXPECT_EQ(large.err.rfind("velmora-clip: cannot filter in.mkv: ", 0), 0u) << large.err;
    EXPECT_EQ(filesHere(), Names{"in.mkv"});
}

// The clip is as near to its source as the colours of the stage allow.
TEST_F(Commands, Diff_TakesTheLookToo) {
    greys("in.png", 640, 360, [](int x, int y) { return (x / 8 + y / 8) % 32; });
    EXPECT_EQ(encode("in.png", "--mirror left --contrast 50").status, 0);
    EXPECT_EQ(tool("diff out.m19 in.png --brief").out.find("PSNR 4"), std::string::npos);
    const Outcome same = tool("diff out.m19 in.png --brief --mirror left --contrast 50");
    EXPECT_NE(same.out.find("PSNR 4"), std::string::npos) << same.out;
}

}  // namespace
