// The fast drawing of tile records against the plain functions, which have tests of their own, at
// every vector width of the processor that runs the tests.
#define HWY_WANT_AVX3_DL  // see bench/vector_targets.h
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "bench/vector_targets.h"
#include "clip/plain_tile.h"
#include "clip/tile_fast.h"

namespace {

// Three rows of tiles, of which the middle one is drawn: what is written beside it shows.
constexpr int kRowPixels = kFrameWidth * clip::kTileSize;

struct Picture {
    std::vector<uint16_t> pixels = std::vector<uint16_t>(3 * kRowPixels, 0x5A5A);
    std::vector<uint8_t> levels = std::vector<uint8_t>(3 * kRowPixels, 0x77);

    bool operator==(const Picture&) const = default;
};

struct Tile {
    std::shared_ptr<uint8_t[]> record;
    int type;
    int code;
};

// Exactly the room that decoders are promised: sanitizers see one byte more.
std::shared_ptr<uint8_t[]> noiseRecord(std::mt19937& random, unsigned end) {
    std::shared_ptr<uint8_t[]> record(new uint8_t[clip::kMaxRecordBytes]);
    for (int i = 0; i < clip::kMaxRecordBytes; ++i) {
        record[i] = static_cast<uint8_t>(random() % end);
    }
    return record;
}

const std::vector<uint16_t>& noisePalette() {
    static const std::vector<uint16_t> palette = [] {
        std::mt19937 random(256);
        std::vector<uint16_t> colours(clip::kPaletteEntries);
        for (uint16_t& colour : colours) {
            colour = static_cast<uint16_t>(random() & 0xFFFF);
        }
        return colours;
    }();
    return palette;
}

int offsetOf(size_t tile) {
    return kRowPixels + static_cast<int>(tile % clip::kTilesAcross) * clip::kTileSize;
}

// Draws the tiles side by side, as often around as there are, with and without levels.
void expectPlain(const std::vector<Tile>& tiles) {
    for (const bool alpha : {false, true}) {
        Picture expected;
        for (size_t i = 0; i < tiles.size(); ++i) {
            clip::drawPlainTile(tiles[i].record.get(), tiles[i].type, tiles[i].code,
                                noisePalette().data(), expected.pixels.data() + offsetOf(i),
                                alpha ? expected.levels.data() + offsetOf(i) : nullptr);
        }
        for (const VectorTarget& target : vectorTargets()) {
            useTarget(target);
            Picture picture;
            clip::fast::TilePainter painter({picture.pixels.data(),
                                             alpha ? picture.levels.data() : nullptr,
                                             noisePalette().data()});
            for (size_t i = 0; i < tiles.size(); ++i) {
                painter.add(tiles[i].record.get(), tiles[i].type, tiles[i].code, offsetOf(i));
            }
            painter.flush();
            ASSERT_TRUE(picture == expected) << target.name << (alpha ? ", alpha" : "");
        }
    }
}

bool direct(int type) {
    return type % clip::kColourTypes < clip::TYPE_FOUR_RUNS;
}

Tile noiseTile(std::mt19937& random, unsigned end) {
    const int type = static_cast<int>(random() % clip::kMaxTypeSlots);
    const unsigned codes = direct(type) ? clip::CODE_EMPTY : clip::CODE_LAST_RECORD;
    return {noiseRecord(random, end), type, static_cast<int>(1 + random() % codes)};
}

// Large bytes are long runs, small ones short runs; both occur in one record as well.
TEST(TilePainter, AnyBytesOfAnyType_AreDrawnAsPlain) {
    constexpr unsigned kEnds[] = {256, 4, 64, 160};
    std::mt19937 random(1909);
    for (int round = 0; round < 1200; ++round) {
        std::vector<Tile> tiles;
        for (int i = 0; i < clip::kTilesAcross; ++i) {
            tiles.push_back(noiseTile(random, kEnds[round % 4]));
        }
        expectPlain(tiles);
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << "round " << round;
    }
}

// Four or eight runs fill the tile. The lengths of 32 of them add up to 256 and 512, past a byte.
TEST(TilePainter, LongestRuns_AreDrawnAsPlain) {
    std::mt19937 random(16);
    for (const int type : {4, 6, 14, 16}) {
        std::vector<Tile> tiles;
        for (int i = 0; i < clip::kTilesAcross; ++i) {
            Tile tile{noiseRecord(random, 256), type, i % 6 + 1};
            for (int group = 0; group < 32; ++group) {
                tile.record[3 * group] = 255;
            }
            tiles.push_back(tile);
        }
        expectPlain(tiles);
    }
}

// The shortest runs make the most groups: 32 of them, with colours of both widths.
TEST(TilePainter, RunsOfOnePixel_AreDrawnAsPlain) {
    std::mt19937 random(64);
    for (const int type : {4, 5, 6, 7, 14, 15, 16, 17}) {
        for (unsigned widths = 0; widths < 4; ++widths) {
            std::vector<Tile> tiles;
            for (int i = 0; i < clip::kTilesAcross; ++i) {
                Tile tile{noiseRecord(random, 256), type, i % 6 + 1};
                const bool palette = type % 10 >= clip::TYPE_PALETTE_RUNS;
                const unsigned step = palette ? 3 : 5 - (widths >> 1) - (widths & 1);
                for (unsigned group = 0; group < 32; ++group) {
                    tile.record[group * step] = static_cast<uint8_t>(palette ? 0 : widths);
                }
                tiles.push_back(tile);
            }
            expectPlain(tiles);
        }
    }
}

// A record of `runs` runs as long as each other, a pixel more or less, and as noise has colours.
std::shared_ptr<uint8_t[]> evenRecord(std::mt19937& random, unsigned runs, bool palette,
                                      unsigned widths) {
    std::shared_ptr<uint8_t[]> record = noiseRecord(random, 256);
    const auto length = [runs](unsigned run) {
        return clip::kTilePixels * (run + 1) / runs - clip::kTilePixels * run / runs - 1;
    };
    const unsigned step = palette ? 3 : 5 - (widths >> 1) - (widths & 1);
    for (unsigned run = 0; run < runs; run += 2) {
        record[run / 2 * step] =
            static_cast<uint8_t>(palette ? length(run) << 4 | length(run + 1)
                                         : length(run) << 5 | length(run + 1) << 2 | widths);
    }
    return record;
}

// Up to 32 runs in 64 bytes are found otherwise than more; both stand side by side here.
TEST(TilePainter, AnyNumberOfRuns_IsDrawnAsPlain) {
    std::mt19937 random(32);
    for (const int type : {4, 6, 14, 16}) {
        const bool palette = type % 10 == clip::TYPE_PALETTE_RUNS;
        const unsigned fewest = palette ? 4 : 8;  // of 16 and of 8 pixels
        for (unsigned widths = 0; widths < (palette ? 1 : 4); ++widths) {
            std::vector<Tile> tiles;
            for (int i = 0; i < clip::kTilesAcross; ++i) {
                const unsigned runs = fewest + static_cast<unsigned>(i) % (65 - fewest);
                tiles.push_back({evenRecord(random, runs, palette, widths), type, i % 6 + 1});
            }
            expectPlain(tiles);
            ASSERT_FALSE(testing::Test::HasFatalFailure()) << type << ", widths " << widths;
        }
    }
}

// Every header of four runs, every control byte of two colours and of a first group.
TEST(TilePainter, EveryHeader_IsDrawnAsPlain) {
    std::mt19937 random(22);
    for (int header = 0; header < 65536;) {
        std::vector<Tile> tiles;
        for (int i = 0; i < clip::kTilesAcross && header < 65536; ++i, ++header) {
            Tile tile{noiseRecord(random, 256), header % 2 + (header & 255) % 4 * 2 + 2,
                      header % 6 + 1};
            tile.record[0] = static_cast<uint8_t>(header >> 8);
            tile.record[1] = static_cast<uint8_t>(header & 255);
            tiles.push_back(tile);
        }
        expectPlain(tiles);
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << "up to header " << header;
    }
}

// Tiles of one kind wait until there are 32; two decode side by side.
TEST(TilePainter, AnyNumberOfOneKind_IsDrawn) {
    std::mt19937 random(33);
    for (int count = 0; count <= 67; ++count) {
        for (const int type : {0, 1, 2, 4, 6, 8, 14}) {
            std::vector<Tile> tiles;
            for (int i = 0; i < count; ++i) {
                tiles.push_back({noiseRecord(random, 256), type, 1});
            }
            expectPlain(tiles);
            ASSERT_FALSE(testing::Test::HasFatalFailure()) << count << " of type " << type;
        }
    }
}

// 64 pixels of different colours, so that each shows where it went.
TEST(TilePainter, EveryWalk_TakesEachPixelToItsPlace) {
    std::mt19937 random(6);
    std::vector<Tile> tiles;
    for (int code = 1; code <= clip::CODE_LAST_RECORD; ++code) {
        for (const int type : {4, 5}) {
            Tile tile{noiseRecord(random, 256), type, code};
            for (int group = 0; group < 32; ++group) {
                // Two runs of one pixel, palette indices 2 x group and 2 x group + 1.
                tile.record[3 * group] = 3;
                tile.record[3 * group + 1] = static_cast<uint8_t>(2 * group);
                tile.record[3 * group + 2] = static_cast<uint8_t>(2 * group + 1);
            }
            tiles.push_back(tile);
        }
    }
    expectPlain(tiles);
}

TEST(TilePainter, Flushed_HasNothingLeft) {
    std::mt19937 random(5);
    const Tile tile{noiseRecord(random, 256), clip::TYPE_RAW, 1};
    Picture picture;
    clip::fast::TilePainter painter(
        {picture.pixels.data(), picture.levels.data(), noisePalette().data()});
    painter.add(tile.record.get(), tile.type, tile.code, kRowPixels);
    painter.flush();
    EXPECT_EQ(picture.pixels[kRowPixels], tile.record[0] | tile.record[1] << 8);
    picture = Picture();
    painter.flush();
    EXPECT_TRUE(picture == Picture());
}

}  // namespace
