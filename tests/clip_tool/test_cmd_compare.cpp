// --compare of encode and of diff, run for real.
#include <array>

#include "clip_tool/media.h"
#include "clip_tool/tool.h"
#include "tools/clip/media/decoder.h"

namespace {

// Source, clip and difference, each 640 pixels and 4 apart, below 24 lines of text.
constexpr int kWide = 3 * 640 + 2 * 4;
constexpr int kHigh = 24 + 360;
constexpr int kColumn = 640 + 4;

using Colour = std::array<int, 3>;

// 20 pictures of grey 252, which the stage shows as red and blue 255 and green 251; the fourth is
// of grey 4, shown as 0, 4, 0.
void writeFilm() {
    media::Recipe recipe;
    recipe.path = "in.mkv";
    recipe.width = 64;
    recipe.height = 36;
    recipe.frames = 20;
    recipe.fill = [](int frame, AVFrame& picture) {
        const uint8_t value = frame == 3 ? 4 : 252;
        media::fillBytes(picture, value, value, value, 0);
    };
    media::write(recipe);
}

// Red, green and blue; FFmpeg reads PNG as RGB and our films as BGR with a byte behind.
Colour pixel(const AVFrame& picture, int x, int y) {
    const bool png = picture.format == AV_PIX_FMT_RGB24;
    const uint8_t* at = picture.data[0] + y * picture.linesize[0] + x * (png ? 3 : 4);
    return png ? Colour{at[0], at[1], at[2]} : Colour{at[2], at[1], at[0]};
}

// The middles of a row's pictures.
std::vector<Colour> rowOf(const AVFrame& picture, int top) {
    std::vector<Colour> colours;
    for (int column = 0; column < 3; ++column) {
        colours.push_back(pixel(picture, column * kColumn + 320, top + 24 + 180));
    }
    return colours;
}

const std::vector<Colour> kUsual{{252, 252, 252}, {255, 251, 255}, {24, 8, 24}};
const std::vector<Colour> kWorst{{4, 4, 4}, {0, 4, 0}, {32, 0, 32}};

// Frames 0, 4, 8, 12 and 16, and the worst, 4 lines apart.
TEST_F(Commands, Compare_PictureShowsAFewFramesAndTheWorst) {
    writeFilm();
    const Outcome outcome =
        tool("encode in.mkv -o a.m19 --fps 25 --quality 100 --compare seen.png");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    maker::Decoder decoder({.path = "seen.png"});
    maker::TimedFrame frame;
    ASSERT_TRUE(decoder.next(frame));
    EXPECT_EQ(frame.picture->width, kWide);
    ASSERT_EQ(frame.picture->height, 6 * (kHigh + 4) - 4);
    EXPECT_EQ(rowOf(*frame.picture, 4 * (kHigh + 4)), kUsual);
    EXPECT_EQ(rowOf(*frame.picture, 5 * (kHigh + 4)), kWorst);
    // diff shows the same.
    ASSERT_EQ(tool("diff a.m19 in.mkv --fps 25 --brief --compare diff.png").status, 0);
    EXPECT_EQ(textOf("diff.png"), textOf("seen.png"));
}

TEST_F(Commands, Compare_FilmShowsEveryFrameAsItIsEncoded) {
    writeFilm();
    const Outcome outcome =
        tool("encode in.mkv -o a.m19 --fps 25 --quality 100 --reverse --compare seen.mkv");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    maker::Decoder decoder({.path = "seen.mkv"});
    maker::TimedFrame frame;
    int count = 0;
    for (; decoder.next(frame); ++count) {
        ASSERT_EQ(frame.picture->width, kWide);
        ASSERT_EQ(frame.picture->height, kHigh);
        EXPECT_EQ(rowOf(*frame.picture, 0), count == 16 ? kWorst : kUsual) << count;
    }
    EXPECT_EQ(count, 20);
}

TEST_F(Commands, Compare_WhatCannotBeIsToldBeforeTheWork) {
    writeFilm();
    const Outcome other = tool("encode in.mkv -o a.m19 --compare seen.jpg");
    EXPECT_EQ(other.status, 1);
    EXPECT_EQ(other.err,
              "velmora-clip: a comparison is a picture or an exact film: give seen.jpg the ending "
              ".png or .mkv\n");
    EXPECT_EQ(tool("encode in.mkv -o a.m19 --compare no/seen.png").status, 1);
    EXPECT_EQ(tool("encode in.mkv in.mkv -d b --compare seen.png").status, 2);
    EXPECT_EQ(tool("encode in.mkv -o a.m19 --long split --compare seen.png").status, 2);
    EXPECT_EQ(filesHere(), Names{"in.mkv"});
}

}  // namespace
