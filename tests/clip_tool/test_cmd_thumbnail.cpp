// thumbnail on the command line.
#include "clip_tool/tool.h"
#include "tools/base/atomic_file.h"
#include "tools/clip/media/movie.h"
#include "tools/clip/reports/thumbnail.h"

namespace {

using ThumbnailCommand = Commands;

// Width and height, as the header of a PNG file has them.
std::pair<int, int> sizeOf(const std::string& png) {
    const auto number = [&png](size_t at) {
        int value = 0;
        for (size_t i = at; i < at + 4; ++i) {
            value = value << 8 | static_cast<unsigned char>(png.at(i));
        }
        return value;
    };
    return {number(16), number(20)};
}

TEST_F(ThumbnailCommand, Sizes_AreAsAsked) {
    const std::string clip = TEST_DATA "/clips/runs-360.m19 ";
    ASSERT_EQ(tool("thumbnail " + clip + "-o picture").status, 0);
    EXPECT_EQ(sizeOf(textOf("picture")), std::pair(256, 144));
    ASSERT_EQ(tool("thumbnail " + clip + "-o picture --size 128").status, 0);
    EXPECT_EQ(sizeOf(textOf("picture")), std::pair(128, 72));
    ASSERT_EQ(tool("thumbnail " + clip + "-o picture --size 640").status, 0);
    EXPECT_EQ(sizeOf(textOf("picture")), std::pair(640, 360));
    ASSERT_EQ(tool("thumbnail " TEST_DATA "/clips/long-256.m19 -o picture --size 8").status, 0);
    EXPECT_EQ(sizeOf(textOf("picture")), std::pair(8, 1));
    EXPECT_EQ(filesHere(), Names{"picture"});
}

TEST_F(ThumbnailCommand, Alpha_IsKept) {
    ASSERT_EQ(tool("thumbnail " TEST_DATA "/clips/rgba-all-360.m19 -o alpha.png").status, 0);
    ASSERT_EQ(tool("thumbnail " TEST_DATA "/clips/rgb-all-360.m19 -o plain.png").status, 0);
    EXPECT_EQ(textOf("alpha.png").at(25), 6);  // the kind of colour
    EXPECT_EQ(textOf("plain.png").at(25), 2);
}

TEST_F(ThumbnailCommand, Failures_AreOneLineAndLeaveNothing) {
    for (const char* arguments :
         {"thumbnail no.m19 -o a.png", "thumbnail " TEST_DATA "/broken/height-12.m19 -o a.png",
          "thumbnail " TEST_DATA "/clips/runs-360.m19 -o no/a.png"}) {
        const Outcome outcome = tool(arguments);
        EXPECT_EQ(outcome.status, 1) << arguments;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    EXPECT_EQ(tool("thumbnail " TEST_DATA "/clips/runs-360.m19 -o a.png --size 7").status, 2);
    EXPECT_EQ(filesHere(), Names{});
}

// Eight frames of sixteen are black.
TEST_F(ThumbnailCommand, BlackBeginnings_AreNotShown) {
    const std::vector<uint8_t> black = pictureFile(maker::kPng, maker::Picture(640, 360), false);
    for (int i = 0; i < 8; ++i) {
        maker::writeWholeFile("a00" + std::to_string(i) + ".png", black);
    }
    ASSERT_EQ(tool("export " TEST_DATA "/clips/runs-360.m19 --frames 8-15 -o a%03d.png").status, 0);
    ASSERT_EQ(tool("encode a%03d.png -o late.m19").status, 0);
    const maker::ClipFrames late = maker::openClip("late.m19");
    ASSERT_EQ(late.count(), 16);
    EXPECT_GE(maker::tellingFrame(late), 8);
}

}  // namespace
