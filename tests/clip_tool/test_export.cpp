// Frame lists, and films and pictures against the frames that went in.
#include <gtest/gtest.h>
#include <png.h>

#include <cmath>

#include "clip_tool/pictures.h"
#include "support/folder.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/media/movie.h"
#include "tools/clip/reports/clip_frames.h"

namespace {

using maker::Canvas;
using maker::Picture;

TEST(FrameList, Forms_AreNumbersAndRanges) {
    for (const char* good : {"0", "0,5,10-20", "20-10", "7-7,7"}) {
        EXPECT_TRUE(maker::isFrameList(good)) << good;
    }
    for (const char* bad :
         {"", "a", "1,", ",1", "1-", "-1", "1-2-3", "1;2", "1 2", "1--2", "9999999999"}) {
        EXPECT_FALSE(maker::isFrameList(bad)) << bad;
    }
}

TEST(FrameList, Frames_KeepTheirOrder) {
    EXPECT_EQ(maker::framesOf("0,5,3-4", 6), (std::vector<int>{0, 5, 3, 4}));
    EXPECT_EQ(maker::framesOf("4-2,2", 6), (std::vector<int>{4, 3, 2, 2}));
    EXPECT_EQ(maker::framesOf("", 3), (std::vector<int>{0, 1, 2}));
}

TEST(FrameList, FrameBeyondTheClip_IsAnError) {
    EXPECT_EQ(maker::framesOf("5", 6), std::vector<int>{5});
    EXPECT_THROW(maker::framesOf("6", 6), maker::ToolError);
    EXPECT_THROW(maker::framesOf("0-6", 6), maker::ToolError);
}

// Random frames as 8-bit pictures.
std::vector<Picture> film(bool alpha, int frames = 3) {
    std::vector<Picture> film;
    for (const maker::Frame& frame : pictures::film(7, 64, frames, alpha)) {
        Picture picture(640, 64);
        maker::toRgba(frame, picture.rgba);
        film.push_back(picture);
    }
    return film;
}

// The bytes of a pixel by its format: where red, green, blue and alpha stand; -1 opaque.
struct Order {
    int size, red, green, blue, alpha;
};

Order orderOf(int format) {
    switch (format) {
        case AV_PIX_FMT_BGRA:
            return {4, 2, 1, 0, 3};
        case AV_PIX_FMT_BGR0:
            return {4, 2, 1, 0, -1};
        case AV_PIX_FMT_RGBA:
            return {4, 0, 1, 2, 3};
        case AV_PIX_FMT_RGB24:
            return {3, 0, 1, 2, -1};
        default:
            ADD_FAILURE() << "pixel format " << format;
            return {4, 0, 1, 2, 3};
    }
}

Picture pictureOf(const AVFrame& frame) {
    const Order order = orderOf(frame.format);
    Picture picture(frame.width, frame.height);
    for (int y = 0; y < frame.height; ++y) {
        for (int x = 0; x < frame.width; ++x) {
            const uint8_t* in = frame.data[0] + y * frame.linesize[0] + x * order.size;
            uint8_t* out = picture.at(x, y);
            out[0] = in[order.red];
            out[1] = in[order.green];
            out[2] = in[order.blue];
            out[3] = order.alpha < 0 ? uint8_t{255} : in[order.alpha];
        }
    }
    return picture;
}

struct Read {
    std::vector<Picture> pictures;
    std::vector<double> times;
};

Read readBack(const std::string& path) {
    Read read;
    maker::Decoder decoder({.path = path});
    maker::TimedFrame frame;
    while (decoder.next(frame)) {
        read.pictures.push_back(pictureOf(*frame.picture));
        read.times.push_back(frame.time);
    }
    return read;
}

class Movie : public testing::Test {
protected:
    // Writes a film of that ending.
    std::string made(const std::string& ending, const std::vector<Picture>& film, bool alpha,
                     double fps = 25.6) {
        const std::string path = "film" + ending;
        maker::MovieWriter writer(*maker::movieKindOf(path), film[0].width, film[0].height, alpha,
                                  fps);
        for (const Picture& picture : film) {
            writer.add(picture);
        }
        maker::writeWholeFile(path, writer.finish());
        return path;
    }
    TemporaryFolder folder_;
};

TEST_F(Movie, LosslessKinds_GiveBackEveryPixel) {
    for (const bool alpha : {false, true}) {
        const std::vector<Picture> frames = film(alpha);
        for (const char* ending : {".mkv", ".apng"}) {
            const Read read = readBack(made(ending, frames, alpha));
            ASSERT_EQ(read.pictures.size(), frames.size()) << ending;
            for (size_t i = 0; i < frames.size(); ++i) {
                EXPECT_TRUE(read.pictures[i].rgba == frames[i].rgba)
                    << ending << ", alpha " << alpha << ", frame " << i;
            }
        }
    }
}

// Sampled at the film's own pace, every frame is met once: frame n begins neither later than its
// time n / 25.6 s nor earlier than the time before.
TEST_F(Movie, FrameTimes_AreNeverLate) {
    const std::vector<Picture> frames(40, Picture(640, 8));
    for (const char* ending : {".mkv", ".gif"}) {
        const Read read = readBack(made(ending, frames, false));
        ASSERT_EQ(read.times.size(), 40u) << ending;
        for (size_t i = 0; i < 40; ++i) {
            const double exact = static_cast<double>(i) / 25.6;
            EXPECT_LE(read.times[i], exact + 1e-6) << ending << ", frame " << i;
            EXPECT_GT(read.times[i], exact - 1 / 25.6) << ending << ", frame " << i;
        }
    }
}

TEST_F(Movie, GifOfFewColours_IsExact) {
    Picture picture(640, 8);
    for (int x = 0; x < 200; ++x) {
        // 200 colours
        const maker::Colour colour{static_cast<uint8_t>(x), static_cast<uint8_t>(2 * x),
                                   static_cast<uint8_t>(x + 5)};
        Canvas(picture).rect(x * 3, 0, 3, 8, colour);
    }
    const Read read = readBack(made(".gif", {picture, Picture(640, 8), picture}, false));
    ASSERT_EQ(read.pictures.size(), 3u);
    EXPECT_TRUE(read.pictures[2].rgba == picture.rgba);
}

TEST_F(Movie, GifWithAlpha_IsOnOrOff) {
    Picture picture(640, 8);
    Canvas(picture).rect(0, 0, 640, 8, {0xFE, 0x00, 0xC3});
    for (int x = 0; x < 640; ++x) {
        picture.at(x, 0)[3] = x < 320 ? 0 : 255;
    }
    const Read read = readBack(made(".gif", {picture}, true));
    ASSERT_EQ(read.pictures.size(), 1u);
    EXPECT_EQ(read.pictures[0].at(100, 0)[3], 0);
    EXPECT_EQ(read.pictures[0].at(400, 0)[3], 255);
    EXPECT_EQ(read.pictures[0].at(100, 1)[3], 255);
}

TEST_F(Movie, Mp4_HasEveryFrameAtTheRateAsked) {
    maker::Decoder decoder({.path = made(".mp4", film(false, 16), false, 10)});
    maker::TimedFrame frame;
    int frames = 0;
    for (; decoder.next(frame); ++frames) {
        EXPECT_NEAR(frame.time, frames / 10.0, 1e-4);
        EXPECT_EQ(frame.picture->format, AV_PIX_FMT_YUV420P);
        EXPECT_EQ(frame.picture->colorspace, AVCOL_SPC_BT709);
    }
    EXPECT_EQ(frames, 16);
}

TEST_F(Movie, OtherEndings_HaveNoKind) {
    EXPECT_EQ(maker::movieKindOf("a.webm"), nullptr);
    EXPECT_EQ(maker::movieKindOf("gif"), nullptr);
    EXPECT_EQ(maker::movieEndings(), ".apng, .gif, .mkv, .mp4");
}

// Read by libpng, 8 bits a channel.
Picture readPng(const std::vector<uint8_t>& file, bool& alpha) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    EXPECT_NE(png_image_begin_read_from_memory(&image, file.data(), file.size()), 0);
    alpha = (image.format & PNG_FORMAT_FLAG_ALPHA) != 0;
    image.format = PNG_FORMAT_RGBA;
    Picture picture(static_cast<int>(image.width), static_cast<int>(image.height));
    EXPECT_NE(png_image_finish_read(&image, nullptr, picture.rgba.data(), 0, nullptr), 0);
    return picture;
}

TEST(PictureFile, Png_GivesBackEveryPixel) {
    for (const bool alpha : {false, true}) {
        const Picture picture = film(alpha, 1)[0];
        bool hasAlpha = false;
        const Picture read = readPng(maker::pictureFile(maker::kPng, picture, alpha), hasAlpha);
        EXPECT_EQ(hasAlpha, alpha);
        EXPECT_EQ(read.width, 640);
        EXPECT_EQ(read.height, 64);
        EXPECT_TRUE(read.rgba == picture.rgba);
    }
}

TEST(PictureFile, Jpeg_IsOne) {
    Picture picture(64, 64);
    const std::vector<uint8_t> file = maker::pictureFile(maker::kJpeg, picture, false);
    ASSERT_GT(file.size(), 100u);
    EXPECT_EQ(file[0], 0xFF);
    EXPECT_EQ(file[1], 0xD8);
}

TEST(Picture, Shrinking_TakesTheMean) {
    Picture picture(4, 2);
    Canvas(picture).set(0, 0, {0x0A, 0x14, 0x00});
    Canvas(picture).set(1, 1, {0x1E, 0x00, 0x00});
    const Picture small = maker::shrunk(picture, 2);
    ASSERT_EQ(small.width, 2);
    ASSERT_EQ(small.height, 1);
    // (10 + 30) / 4, 20 / 4, 0
    EXPECT_EQ(small.rgba, (std::vector<uint8_t>{10, 5, 0, 255, 0, 0, 0, 255}));
}

TEST(Picture, Transparency_ShowsWhatLiesUnder) {
    Picture picture(640, 8);
    Canvas(picture).set(0, 0, {0xFF, 0xFF, 0xFF});
    picture.at(0, 0)[3] = 51;
    picture.at(16, 0)[3] = 0;
    const Picture black = maker::overBlack(picture);
    EXPECT_EQ(black.at(0, 0)[0], 51);
    EXPECT_EQ(black.at(0, 0)[3], 255);
    const Picture checks = maker::overCheckerboard(picture);
    // 255 x 0.2 + 64 x 0.8; the next square is lighter
    EXPECT_EQ(checks.at(0, 0)[0], 102);
    EXPECT_EQ(checks.at(16, 0)[0], 0x60);
    EXPECT_EQ(checks.at(1, 0)[0], 0);
}

TEST(Picture, FillAndCopy_StayInside) {
    Picture picture(4, 4);
    Canvas(picture).rect(-2, -2, 4, 4, {0xFF, 0xFF, 0xFF});
    EXPECT_EQ(picture.at(1, 1)[0], 255);
    EXPECT_EQ(picture.at(2, 2)[0], 0);
    Picture red(3, 3);
    Canvas(red).rect(0, 0, 3, 3, {0xFF, 0x00, 0x00});
    picture.copy(red, 2, -1);
    EXPECT_EQ(picture.at(3, 1)[1], 0);
    EXPECT_EQ(picture.at(3, 1)[0], 255);
    EXPECT_EQ(picture.at(3, 2)[0], 0);
    picture.copy(red, 9, 9);
    picture.copy(red, -9, 0);
    EXPECT_EQ(picture.at(0, 0)[1], 255);
}

}  // namespace
