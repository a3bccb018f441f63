// What qualities and budgets do to a whole clip.
#include <gtest/gtest.h>

#include <cmath>

#include "clip/validate.h"
#include "clip_tool/pictures.h"
#include "clip_tool/reference.h"
#include "common/rgb565.h"
#include "tools/clip/encoder/block_coder.h"
#include "tools/clip/encoder/encoder.h"

namespace {

using Bytes = std::vector<uint8_t>;
constexpr int kHeight = 24;

// A disc with soft shading moves over a noisy ground: more than 256 colours, camera-like.
Bytes camera(int frame) {
    pictures::Random random(static_cast<uint32_t>(frame) + 1);
    Bytes rgba;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < 640; ++x) {
            const int dx = x - 60 - 9 * frame;
            const int dy = y - 12;
            const int away = dx * dx + dy * dy;
            const int noise = random.below(7) - 3;
            const bool disc = away < 28 * 28;
            rgba.push_back(static_cast<uint8_t>(disc ? 240 - away / 6 : 70 + x / 5 + noise));
            rgba.push_back(static_cast<uint8_t>(disc ? 200 - away / 5 : 90 + 5 * y + noise));
            rgba.push_back(static_cast<uint8_t>(disc ? 60 : 120 + noise));
            rgba.push_back(255);
        }
    }
    return rgba;
}

// Four flat colours, moving.
Bytes cartoon(int frame) {
    Bytes rgba;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < 640; ++x) {
            const bool a = (x + 3 * frame) / 40 % 2 == 0;
            const bool b = (y + frame) / 24 % 2 == 0;
            rgba.insert(rgba.end(), {static_cast<uint8_t>(a ? 254 : 10),
                                     static_cast<uint8_t>(b ? 177 : 0), 195, 255});
        }
    }
    return rgba;
}

struct Made {
    Bytes bytes;
    maker::ClipStats stats;
};

Made make(Bytes (*picture)(int), int frames, maker::ClipSettings settings) {
    settings.height = kHeight;
    maker::ClipEncoder encoder(settings);
    for (int f = 0; f < frames; ++f) {
        encoder.add(picture(f).data());
    }
    Bytes bytes = encoder.finish();
    return {bytes, encoder.stats()};
}

// Decibels between what a clip shows and its source.
double psnrOf(const Bytes& bytes, Bytes (*picture)(int)) {
    const std::vector<reference::Picture> shown = reference::decode(reference::parse(bytes));
    double error = 0;
    for (size_t f = 0; f < shown.size(); ++f) {
        const Bytes source = picture(static_cast<int>(f));
        for (size_t i = 0; i < shown[f].pixels.size(); ++i) {
            const uint16_t pixel = shown[f].pixels[i];
            const int channels[] = {px::red8Of(pixel), px::green8Of(pixel), px::blue8Of(pixel)};
            for (size_t c = 0; c < 3; ++c) {
                error += std::pow(channels[c] - source[4 * i + c], 2);
            }
        }
    }
    const double samples = static_cast<double>(shown.size()) * 640 * kHeight * 3;
    return 10 * std::log10(255.0 * 255.0 * samples / error);
}

bool isRounded(const Bytes& bytes, Bytes (*picture)(int)) {
    const std::vector<reference::Picture> shown = reference::decode(reference::parse(bytes));
    for (size_t f = 0; f < shown.size(); ++f) {
        const Bytes source = picture(static_cast<int>(f));
        for (size_t i = 0; i < shown[f].pixels.size(); ++i) {
            // Nearest of 31 and of 63 levels.
            const long red = std::lround(source[4 * i] * 31 / 255.0);
            const long green = std::lround(source[4 * i + 1] * 63 / 255.0);
            const long blue = std::lround(source[4 * i + 2] * 31 / 255.0);
            if (shown[f].pixels[i] != (red << 11 | green << 5 | blue)) {
                return false;
            }
        }
    }
    return true;
}

TEST(Quality, EachStepDown_IsSmallerAndLooksWorse) {
    double psnr = 100;
    size_t size = SIZE_MAX;
    int records = INT32_MAX;
    for (const int quality : {100, 90, 80, 60, 40, 20, 0}) {
        const Made made = make(camera, 20, {.quality = quality});
        EXPECT_EQ(made.bytes[1], quality);
        EXPECT_LT(made.bytes.size(), size) << quality;
        EXPECT_LE(made.stats.records, records) << quality;
        EXPECT_LT(made.stats.psnr(), psnr + 0.02) << quality;
        size = made.bytes.size();
        records = made.stats.records;
        psnr = made.stats.psnr();
    }
    EXPECT_LT(psnr, 36);
}

// Greys whose grain moves along with them: few colours, dear to keep exactly.
Bytes grain(int frame) {
    Bytes rgba;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < 640; ++x) {
            const int at = x + 3 * frame;
            const auto grey =
                static_cast<uint8_t>(60 + at / 8 + (at * 7919 + y * 104729) % 61 % 12);
            rgba.insert(rgba.end(), {grey, grey, grey, 255});
        }
    }
    return rgba;
}

// Two steps at a time.
TEST(Quality, NeighbouringQualities_AreNoCliffApart) {
    constexpr double kMost = 1.33;  // times the size, from one quality to the next
    for (Bytes (*source)(int) : {camera, grain}) {
        Made before = make(source, 16, {.quality = 66});
        for (int quality = 68; quality <= 100; quality += 2) {
            const Made made = make(source, 16, {.quality = quality});
            const auto size = static_cast<double>(made.bytes.size());
            const auto sizeBefore = static_cast<double>(before.bytes.size());
            EXPECT_GE(size, 0.99 * sizeBefore) << quality;
            EXPECT_LE(size, kMost * kMost * sizeBefore) << quality;
            EXPECT_GE(made.stats.psnr(), before.stats.psnr() - 0.1) << quality;
            before = made;
        }
    }
}

TEST(Quality, Default_KeepsACameraAsItsNoiseAllows) {
    const Made exact = make(camera, 20, {});
    const Made made = make(camera, 20, {.quality = maker::kDefaultQuality});
    EXPECT_GT(made.stats.psnr(), 38);  // noise of 2 of 255 on the mean is 42 decibels
    EXPECT_LT(made.bytes.size() * 2, exact.bytes.size());
}

TEST(Quality, Hundred_IsTheSourceRounded) {
    EXPECT_TRUE(isRounded(make(camera, 18, {}).bytes, camera));
    EXPECT_TRUE(isRounded(make(cartoon, 18, {}).bytes, cartoon));
}

TEST(Quality, StatedPsnr_IsTheOneShown) {
    for (const int quality : {100, 70}) {
        const Made made = make(camera, 17, {.quality = quality});
        EXPECT_NEAR(made.stats.psnr(), psnrOf(made.bytes, camera), 1e-6);
    }
}

TEST(Quality, FewColours_StayExact) {
    EXPECT_TRUE(isRounded(make(cartoon, 33, {.quality = 80}).bytes, cartoon));
    EXPECT_EQ(make(cartoon, 33, {.quality = 80}).stats.exactBlocks, 3);
    EXPECT_EQ(make(camera, 33, {.quality = 80}).stats.exactBlocks, 0);
}

TEST(Quality, Content_DecidesWhatStaysExact) {
    using maker::Content;
    EXPECT_EQ(make(cartoon, 4, {.quality = 30}).stats.exactBlocks, 0);
    EXPECT_EQ(make(cartoon, 4, {.quality = 30, .content = Content::GRAPHICS}).stats.exactBlocks, 1);
    EXPECT_EQ(make(cartoon, 4, {.quality = 80, .content = Content::FOOTAGE}).stats.exactBlocks, 0);
    EXPECT_EQ(make(cartoon, 4, {.content = Content::FOOTAGE}).stats.exactBlocks, 1);
}

TEST(Quality, Workers_ChangeNothing) {
    const Bytes one = make(camera, 20, {.quality = 80, .workers = 1}).bytes;
    EXPECT_EQ(make(camera, 20, {.quality = 80, .workers = 3}).bytes, one);
    const Bytes budget = make(camera, 20, {.quality = 80, .byteBudget = 9000}).bytes;
    EXPECT_EQ(make(camera, 20, {.quality = 80, .byteBudget = 9000, .workers = 2}).bytes, budget);
}

TEST(Quality, ScrubbingALossyClip_ShowsEveryFrame) {
    const reference::Clip clip = reference::parse(make(camera, 60, {.quality = 75}).bytes);
    const std::vector<reference::Picture> frames = reference::decode(clip);
    reference::Player player(clip);
    player.show(0);
    pictures::Random random(4);
    for (int jump = 0; jump < 300; ++jump) {
        const size_t frame = static_cast<size_t>(random.below(60));
        ASSERT_EQ(player.show(static_cast<int>(frame)), frames[frame]) << "frame " << frame;
    }
}

TEST(Budget, Bytes_AreKept) {
    const size_t free = make(camera, 20, {.quality = 80}).bytes.size();
    for (const double share : {0.7, 0.3}) {
        const int64_t budget = static_cast<int64_t>(share * static_cast<double>(free));
        const Made made = make(camera, 20, {.quality = 80, .byteBudget = budget});
        EXPECT_TRUE(made.stats.withinBudget);
        EXPECT_LE(made.bytes.size(), static_cast<size_t>(budget));
        EXPECT_GE(made.bytes.size(), static_cast<size_t>(budget) * 3 / 4);  // and used
    }
}

TEST(Budget, Records_AreKept) {
    const int free = make(camera, 20, {.quality = 90}).stats.records;
    const Made made = make(camera, 20, {.quality = 90, .recordBudget = free / 2});
    EXPECT_LE(made.stats.records, free / 2);
    EXPECT_GE(made.stats.records, free / 4);
    EXPECT_EQ(made.stats.limitedBlocks, 0);  // a budget is no surprise
    EXPECT_EQ(clip::validate(made.bytes).ok, true);
}

TEST(Budget, LargeEnough_ChangesNothing) {
    const Bytes free = make(camera, 20, {.quality = 80}).bytes;
    EXPECT_EQ(make(camera, 20, {.quality = 80, .byteBudget = 1 << 30}).bytes, free);
}

TEST(Budget, TooSmallForAnyClip_IsSaid) {
    // 240 tiles take 96 bytes of codes a frame, whatever they show.
    const Made made = make(camera, 20, {.quality = 80, .byteBudget = 20 * 96});
    EXPECT_FALSE(made.stats.withinBudget);
    EXPECT_TRUE(clip::validate(made.bytes).ok);
}

// Only every seventh tile is in the sample by which the price is sought.
TEST(Budget, NothingInTheSampleThatCosts_EndsAtTheDearestPrice) {
    maker::ClipEncoder encoder({.height = 64, .dither = true, .recordBudget = 1});
    pictures::Random random(9);
    Bytes rgba(640 * 64 * 4, 255);
    for (size_t row = 0; row < 8; ++row) {
        for (size_t i = 0; i < 16 * 4; ++i) {
            rgba[(row * 640 + 8) * 4 + i] =
                i % 4 == 3 ? uint8_t{255} : static_cast<uint8_t>(random.below(256));
        }
    }
    encoder.add(rgba.data());
    EXPECT_TRUE(clip::validate(encoder.finish()).ok);
}

// Noise in every tile of twelve frames: 43,200 records a block, of which 37,440 may be loaded.
TEST(Budget, DefaultQuality_LoadsInTwelveSecondsAtWorst) {
    maker::ClipEncoder encoder({.quality = maker::kDefaultQuality, .workers = 2});
    pictures::Random random(9);
    Bytes rgba(640 * 360 * 4, 255);
    for (int f = 0; f < 12; ++f) {
        for (uint8_t& byte : rgba) {
            byte = static_cast<uint8_t>(random.below(256));
        }
        encoder.add(rgba.data());
    }
    encoder.finish();
    EXPECT_LE(encoder.stats().records - encoder.stats().fillers, 37440);
    EXPECT_GE(encoder.stats().records, 25000);
    EXPECT_EQ(encoder.stats().limitedBlocks, 1);
    EXPECT_GT(encoder.stats().psnr(), 16.2);  // records are given up before bytes are
}

// Eighty tiles, the left half opaque, each with an edge or an alpha that no other has, and room for
// twenty records: of alpha a level may be given up, no more.
TEST(Budget, TilesOfTheirOwnAlpha_StayBeyondTheLimit) {
    pictures::Random random(12);
    maker::SourceBlock block{1, 80, {}};
    for (int tile = 0; tile < 80; ++tile) {
        maker::SourceTile source{};
        source.alpha.fill(15);
        for (size_t i = 0; i < 64; ++i) {
            const bool bright = i % 8 < 4;
            source.colours[0][i] = static_cast<uint8_t>(bright ? 250 - tile : 0);
            source.alpha[i] = static_cast<uint8_t>(tile < 40 ? 15 : 1 + random.below(14));
        }
        block.tiles.push_back(source);
    }
    const maker::CodedBlock coded = maker::codeBlock(
        block,
        {.quality = maker::kDefaultQuality, .content = maker::Content::FOOTAGE, .mostRecords = 20});
    EXPECT_EQ(coded.set.records.size(), 40u);
    for (size_t tile = 40; tile < 80; ++tile) {
        const maker::Placement& shown = coded.tiles.placements[tile];
        ASSERT_EQ(shown.fill, maker::Fill::PICTURE) << tile;
        for (size_t i = 0; i < 64; ++i) {
            ASSERT_NEAR(coded.tiles.pictures[shown.value].alpha[i], block.tiles[tile].alpha[i], 1);
        }
    }
}

// A soft grey ramp, of which the stage has 12 steps of red and blue and 24 of green, and which
// moves.
Bytes ramp(int frame) {
    Bytes rgba;
    for (int i = 0; i < kHeight * 640; ++i) {
        const auto level = static_cast<uint8_t>(40 + (i % 640 + 3 * frame) * 100 / 640);
        rgba.insert(rgba.end(), {level, level, level, 255});
    }
    return rgba;
}

// What the eye takes together, the green of 8 x 8 pixels, lies so far from the ramp in the mean.
double errorOfMeans(const Bytes& bytes) {
    const reference::Picture shown = reference::decode(reference::parse(bytes)).front();
    const Bytes source = ramp(0);
    double sum = 0;
    for (size_t left = 0; left < 640; left += 8) {
        double difference = 0;
        for (size_t i = 0; i < 64; ++i) {
            const size_t at = i / 8 * 640 + left + i % 8;
            difference += px::green8Of(shown.pixels[at]) - source[4 * at];
        }
        sum += std::abs(difference) / 64;
    }
    return sum / 80;
}

TEST(Dither, Ramp_IsNearerInTheMean) {
    for (const int quality : {80, 100}) {
        const Made plain = make(ramp, 2, {.quality = quality});
        const Made dithered = make(ramp, 2, {.quality = quality, .dither = true});
        EXPECT_TRUE(clip::validate(dithered.bytes).ok);
        EXPECT_LT(errorOfMeans(dithered.bytes), 0.6 * errorOfMeans(plain.bytes)) << quality;
    }
}

// Few colours, which would be exact otherwise.
TEST(Dither, Graphics_AreDitheredToo) {
    const maker::ClipSettings settings{.quality = 80, .content = maker::Content::GRAPHICS};
    maker::ClipSettings dithered = settings;
    dithered.dither = true;
    EXPECT_LT(errorOfMeans(make(ramp, 2, dithered).bytes),
              0.7 * errorOfMeans(make(ramp, 2, settings).bytes));
}

TEST(Dither, BelowTheBestQuality_TilesShareTheirPatterns) {
    const Made best = make(ramp, 8, {.dither = true});
    const Made shared = make(ramp, 8, {.quality = 90, .dither = true});
    EXPECT_LT(2 * shared.stats.records, best.stats.records);
}

}  // namespace
