// What of a camera's noise is found, and what becomes of it in a clip.
#include "tools/clip/encoder/noise.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "clip_tool/camera.h"
#include "clip_tool/reference.h"
#include "common/rgb565.h"
#include "tools/clip/encoder/encoder.h"

namespace {

using camera::Bytes;
using camera::Camera;
using camera::kHeight;
using camera::kWidth;
using camera::room;
constexpr int kFrames = 16;

maker::SourceBlock filmed(double noise, int frames = kFrames) {
    Camera camera(noise);
    maker::SourceBlock block;
    for (int f = 0; f < frames; ++f) {
        maker::appendPicture(camera.picture(room).data(), kHeight, false, block);
    }
    return block;
}

struct Made {
    std::vector<reference::Picture> pictures;
    size_t bytes;
    double noise;
};

Made made(maker::ClipSettings settings, double noise) {
    settings.height = kHeight;
    maker::ClipEncoder encoder(settings);
    Camera camera(noise);
    for (int f = 0; f < kFrames; ++f) {
        encoder.add(camera.picture(room).data());
    }
    const Bytes bytes = encoder.finish();
    return {reference::decode(reference::parse(bytes)), bytes.size(), encoder.stats().noise};
}

// Mean square against the room without noise.
double awayFromRoom(const Made& clip) {
    double sum = 0;
    for (const reference::Picture& picture : clip.pictures) {
        for (size_t i = 0; i < picture.pixels.size(); ++i) {
            const uint16_t pixel = picture.pixels[i];
            const auto clean = room(static_cast<int>(i) % kWidth, static_cast<int>(i) / kWidth);
            sum += std::pow(px::red8Of(pixel) - clean[0], 2) +
                   std::pow(px::green8Of(pixel) - clean[1], 2) +
                   std::pow(px::blue8Of(pixel) - clean[2], 2);
        }
    }
    return sum / (3.0 * kFrames * kWidth * kHeight);
}

size_t pixelsThatChange(const Made& clip) {
    size_t count = 0;
    for (size_t f = 1; f < clip.pictures.size(); ++f) {
        for (size_t i = 0; i < clip.pictures[f].pixels.size(); ++i) {
            count += clip.pictures[f].pixels[i] != clip.pictures[f - 1].pixels[i] ? 1 : 0;
        }
    }
    return count;
}

TEST(Noise, OfACamera_IsFound) {
    for (const double noise : {1.0, 3.0, 6.0}) {
        EXPECT_NEAR(maker::noiseOf(filmed(noise)), noise, 0.15 * noise + 0.1);
    }
}

TEST(Noise, StillPictures_HaveNone) {
    EXPECT_EQ(maker::noiseOf(filmed(0)), 0);
}

TEST(Noise, OneFrame_SaysNothing) {
    EXPECT_EQ(maker::noiseOf(filmed(3, 1)), 0);
}

// Snow is meant to be seen.
TEST(Noise, MoreThanACamerasIs_IsKept) {
    EXPECT_EQ(maker::noiseOf(filmed(20)), 0);
}

// A soft wave that moves has no second differences to speak of.
TEST(Noise, SoftMotion_IsNone) {
    maker::SourceBlock block;
    Camera camera(0);
    for (int f = 0; f < kFrames; ++f) {
        const auto wave = [f](int x, int y) {
            const int level =
                static_cast<int>(std::lround(120 + 60 * std::sin((x + y + 5 * f) / 40.0)));
            return std::array{level, level, level};
        };
        maker::appendPicture(camera.picture(wave).data(), kHeight, false, block);
    }
    EXPECT_LT(maker::noiseOf(block), 0.5);
}

// A small thing moves over what stands still.
TEST(Noise, DrawingWithAStillGround_HasNone) {
    maker::SourceBlock block;
    Camera camera(0);
    for (int f = 0; f < kFrames; ++f) {
        const auto scene = [f](int x, int y) {
            const int level = x > 9 * f && x < 9 * f + 60 ? 250 : 20 + y % 2;
            return std::array{level, level, level};
        };
        maker::appendPicture(camera.picture(scene).data(), kHeight, false, block);
    }
    EXPECT_EQ(maker::noiseOf(block), 0);
}

TEST(Noise, StillScene_IsCleanerSmallerAndStandsStill) {
    const Made kept = made({.quality = 80, .noise = 0.0}, 3);
    const Made taken = made({.quality = 80}, 3);
    EXPECT_EQ(kept.noise, 0);
    EXPECT_NEAR(taken.noise, 3, 0.5);
    EXPECT_LT(2 * taken.bytes, kept.bytes);
    EXPECT_LT(awayFromRoom(taken), awayFromRoom(kept));
    EXPECT_LT(3 * pixelsThatChange(taken), pixelsThatChange(kept));
}

TEST(Noise, GivenByHand_IsWhatIsTaken) {
    EXPECT_EQ(made({.quality = 80, .noise = 2.0}, 3).noise, 2);
}

// From 80 on a tile that stands still shows its noise more and more often, at the end in every
// frame.
TEST(Noise, TowardsExactness_MoreAndMoreIsShown) {
    size_t before = pixelsThatChange(made({.quality = 80}, 3));
    for (const int quality : {86, 92, 98}) {
        const size_t changing = pixelsThatChange(made({.quality = quality}, 3));
        EXPECT_GT(changing, before + before / 4) << quality;
        before = changing;
    }
    const Made exact = made({.quality = 100, .noise = 2.0}, 3);
    EXPECT_EQ(exact.noise, 0);
    EXPECT_EQ(exact.bytes, made({.quality = 100}, 3).bytes);
}

TEST(Noise, OfGraphics_IsKeptUnlessAskedFor) {
    EXPECT_EQ(made({.quality = 80, .content = maker::Content::GRAPHICS}, 3).noise, 0);
}

}  // namespace
