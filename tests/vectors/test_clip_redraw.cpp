// Frames drawn one after the other, with what the last one left, against a plain drawing of the
// same frames: tile after tile, by the plain functions alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "clip/paint.h"
#include "clip/plain_tile.h"
#include "tests/support/clip_stage.h"

namespace {

constexpr int kGlitchFlat = 2;

// Draws the frames of a clip that is loaded elsewhere; only the file's sections are shared.
class PlainDrawing {
public:
    explicit PlainDrawing(const c_moxel& clip)
        : clip_(clip),
          map_(static_cast<size_t>(clip.tileCount)),
          codes_(static_cast<size_t>(clip.tileCount)),
          tiles(kLayers * kFramePixels),
          alpha(2 * kFramePixels) {
        std::copy_n(clip.tileAlpha, clip::kTilePixels, kept);
    }

    void draw(int layer, int frame, int mode, bool flatOnly) {
        block_ = frame / clip::kFramesPerBlock;
        if (frame % clip::kFramesPerBlock == 0) {
            redraw = 1;
        }
        const uint16_t* words =
            clip_.blockCodes[block_].get() + frame % clip::kFramesPerBlock * (clip_.tileCount / 5);
        for (int position = 0; position < clip_.tileCount; ++position) {
            const auto i = static_cast<size_t>(position);
            const uint16_t entry = clip_.frameMaps[frame][position];
            const int code = words[position / 5] >> (3 * (position % 5)) & 7;
            if (redraw != 0 || entry != map_[i] || code != codes_[i]) {
                const int offset = position / 80 * 8 * kFrameWidth + position % 80 * 8;
                uint8_t* levels = mode == MODE_KEY && layer == 1 ? alpha.data() + offset : nullptr;
                drawTile(tiles.data() + layer * clip_.pixelCount + offset, levels, entry,
                         flatOnly ? 0 : code);
            }
            map_[i] = entry;
            codes_[i] = code;
        }
        redraw -= redraw != 0;
    }

private:
    void drawTile(uint16_t* out, uint8_t* levels, uint16_t entry, int code) {
        uint8_t levelsOut[clip::kTilePixels];
        std::fill_n(levelsOut, clip::kTilePixels, uint8_t{15});
        if (code == clip::CODE_FLAT) {
            clip::fillTile(out, entry);
        } else {
            clip::fillTile(out, 0);
            const bool known = entry < clip_.blockRecordCounts[block_];
            if (known) {
                drawRecord(out, entry, code);
            }
            std::copy_n(kept, clip::kTilePixels, levelsOut);
            if (!known || code == clip::CODE_EMPTY) {
                std::fill_n(levelsOut, clip::kTilePixels, uint8_t{0});
            }
        }
        if (levels != nullptr) {
            clip::copyTileAlpha(levels, levelsOut);
        }
    }

    void drawRecord(uint16_t* out, uint16_t entry, int code) {
        const int type = clip::recordType(clip_.blockTypeStarts[block_].get(),
                                          clip::typeSlots(clip_.alpha), entry);
        const uint16_t* palette = clip_.blockPalettes[block_].get();
        const uint8_t* record =
            clip_.blockRecords[block_].get() + clip_.blockRecordOffsets[block_][entry];
        const size_t length = clip::drawPlainTile(record, type, code, palette, out, nullptr);
        if (type >= clip::kColourTypes) {
            clip::decodeAlpha(record + length, kept);
        } else if (clip_.alpha != 0) {
            std::fill_n(kept, clip::kTilePixels, uint8_t{15});
        }
    }

    const c_moxel& clip_;
    std::vector<uint16_t> map_;
    std::vector<int> codes_;
    int block_ = 0;

public:
    int redraw = 2;
    uint8_t kept[clip::kTilePixels];  // levels of the last record; a clip without alpha shows them
    std::vector<uint16_t> tiles;
    std::vector<uint8_t> alpha;
};

// A few tiles of `frame` become others: by their entry alone, by their code alone, by both; and the
// bit that no code uses.
void changeTiles(c_moxel& clip, int frame, std::mt19937& random) {
    uint16_t* words = clip.blockCodes[frame / 16].get() + frame % 16 * (clip.tileCount / 5);
    const unsigned records = clip.blockRecordCounts[frame / 16] + 2u;
    for (unsigned change = 0; change < 12; ++change) {
        const auto position =
            static_cast<unsigned>(random()) % static_cast<unsigned>(clip.tileCount);
        uint16_t& word = words[position / 5];
        const unsigned shift = 3 * (position % 5);
        if (change % 3 != 0) {
            clip.frameMaps[frame][position] = static_cast<uint16_t>(random() % records);
        }
        if (change % 3 != 1) {
            word = static_cast<uint16_t>((word & ~(7u << shift)) | (random() & 7) << shift);
        }
        if (change == 0) {
            word ^= 0x8000;
        }
    }
}

void setGlitch(ClipStage& stage, int direction) {
    for (int layer = 0; layer < kLayers; ++layer) {
        stage.filters.slots[layer][0] = {FILTER_GLITCH, direction, direction >= 0 ? 1 : 0, 0};
    }
}

// `rounds` frames in any order onto any layer; every third time the frame drawn last comes again,
// with changes or as it is.
void expectPlainFrames(ClipStage& stage, int rounds, std::mt19937& random) {
    c_moxel& clip = *stage.clip;
    PlainDrawing plain(clip);
    std::fill(stage.tiles.begin(), stage.tiles.end(), uint16_t{0});
    std::fill(stage.alpha.begin(), stage.alpha.end(), uint8_t{0});
    int frame = static_cast<int>(random() % clip.frameCount);
    for (int round = 0; round < rounds; ++round) {
        if (round % 3 != 0) {
            frame = static_cast<int>(random() % clip.frameCount);
        }
        if (clip.tileCount != 0 && round % 5 != 0) {
            changeTiles(clip, frame, random);
        }
        const int layer = random() % 4 == 0 ? 0 : 1;
        const int mode = random() % 4 == 0 ? MODE_TOP : MODE_KEY;
        const int glitch = round % 7 == 6 ? kGlitchFlat : -1;
        setGlitch(stage, glitch);
        clip.renderMoxel19(layer, frame, mode);
        plain.draw(layer, frame, mode, glitch == kGlitchFlat);
        ASSERT_TRUE(std::ranges::equal(stage.tiles, plain.tiles))
            << "round " << round << " frame " << frame;
        ASSERT_TRUE(std::ranges::equal(stage.alpha, plain.alpha))
            << "round " << round << " frame " << frame;
        ASSERT_TRUE(std::equal(plain.kept, plain.kept + clip::kTilePixels, clip.tileAlpha));
        ASSERT_EQ(clip.redrawCount, plain.redraw);
    }
}

// One object takes all the clips in turn, higher and lower ones, as a deck does.
void expectPlainClips(const std::string& folder, std::initializer_list<const char*> names) {
    std::mt19937 random(19);
    ClipStage stage(TEST_DATA "/" + folder);
    for (const char* name : names) {
        SCOPED_TRACE(name);
        ASSERT_EQ(stage.load(name, 65000), 2);
        expectPlainFrames(stage, 40, random);
        ASSERT_FALSE(testing::Test::HasFailure());
        stage.clip->killRAM();
    }
}

TEST(RedrawnFrames, OfClipsInTurn_AreThePlainOnes) {
    expectPlainClips("clips", {"rgba-all-360.m19", "one-frame-8.m19", "dense-360.m19",
                               "seventeen-200.m19", "rgb-all-360.m19", "shared-176.m19",
                               "long-256.m19", "runs-360.m19", "gaps-64.m19"});
}

TEST(RedrawnFrames, OfDamagedClips_AreThePlainOnes) {
    expectPlainClips("broken", {"counts-cut.m19", "second-block-cut.m19", "height-0.m19",
                                "height-12.m19", "runs-overshoot.m19", "record-number.m19",
                                "empty-tile-number.m19", "counts-over.m19", "counts-under.m19",
                                "two-colour-63.m19", "four-runs-over.m19", "short-runs-over.m19",
                                "palette-runs-over.m19", "alpha-over.m19", "alpha-first-byte.m19"});
}

}  // namespace
