// What of a camera's noise is found, and what becomes of it in a clip.
#include "tools/clip/encoder/noise.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

#include "clip_tool/reference.h"
#include "common/rgb565.h"
#include "tools/clip/encoder/encoder.h"

namespace {

using Bytes = std::vector<uint8_t>;
constexpr int kHeight = 40;
constexpr int kWidth = 640;
constexpr int kFrames = 16;

// A room that stands still: soft shading and some edges.
std::array<int, 3> room(int x, int y) {
    const int wall = 70 + x / 8 + y;
    return x % 160 < 40 ? std::array{wall / 2, wall / 3, 60} : std::array{wall, wall + 10, 110};
}

// Pictures with normal noise in every channel, the same in every run.
class Camera {
public:
    explicit Camera(double noise) : noise_(noise) {}

    Bytes picture(const std::function<std::array<int, 3>(int, int)>& scene) {
        Bytes rgba;
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                for (const int level : scene(x, y)) {
                    const double seen = level + noise_ * normal();
                    rgba.push_back(static_cast<uint8_t>(std::clamp(std::lround(seen), 0L, 255L)));
                }
                rgba.push_back(255);
            }
        }
        return rgba;
    }

private:
    // Twelve even ones have a variance of 1 together.
    double normal() {
        double sum = -6;
        for (int i = 0; i < 12; ++i) {
            sum += static_cast<double>(random_()) / 4294967296.0;
        }
        return sum;
    }

    std::mt19937 random_;
    double noise_;
};

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
