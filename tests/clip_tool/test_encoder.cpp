// The encoder as a whole: what it makes, read back by the tests' own decoder, shows exactly the
// frames that went in.
#include "tools/clip/encoder/encoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "clip/validate.h"
#include "clip_tool/pictures.h"
#include "clip_tool/reference.h"

namespace {

using maker::Frame;

void expectExact(const std::vector<uint8_t>& bytes, const std::vector<Frame>& frames) {
    ASSERT_TRUE(clip::validate(bytes).ok);
    const reference::Clip clip = reference::parse(bytes);
    EXPECT_EQ(clip.length, bytes.size());
    EXPECT_EQ(clip.frameCount, frames.size());
    const std::vector<reference::Picture> shown = reference::decode(clip);
    ASSERT_EQ(shown.size(), frames.size());
    for (size_t f = 0; f < frames.size(); ++f) {
        ASSERT_EQ(shown[f], pictures::expected(frames[f])) << "frame " << f;
    }
}

struct Case {
    uint32_t seed;
    int height;
    int frames;
    bool alpha;
};

std::ostream& operator<<(std::ostream& out, const Case& c) {
    return out << "seed " << c.seed << ", " << c.height << " lines, " << c.frames << " frames, "
               << (c.alpha ? "alpha" : "opaque");
}

class Film : public testing::TestWithParam<Case> {};

TEST_P(Film, Encoder_RandomTilesComeBackExactly) {
    const Case& c = GetParam();
    const std::vector<Frame> frames = pictures::film(c.seed, c.height, c.frames, c.alpha);
    expectExact(pictures::encode(frames), frames);
}

// Backwards and round the loop, with the program's rule for tiles that it need not draw again: no
// tile of one block may pass for a tile of its neighbour.
TEST_P(Film, Encoder_PlayingBackwardsShowsEveryFrame) {
    const Case& c = GetParam();
    const std::vector<Frame> frames = pictures::film(c.seed, c.height, c.frames, c.alpha);
    const reference::Clip clip = reference::parse(pictures::encode(frames));
    reference::Player player(clip);
    player.show(0);
    for (int step = 2 * c.frames - 1; step >= 0; --step) {
        const int frame = step % c.frames;
        ASSERT_EQ(player.show(frame), pictures::expected(frames[static_cast<size_t>(frame)]))
            << "frame " << frame;
    }
}

// The mouse scrubs anywhere: between any two frames of any two blocks.
TEST_P(Film, Encoder_ScrubbingShowsEveryFrame) {
    const Case& c = GetParam();
    const std::vector<Frame> frames = pictures::film(c.seed, c.height, c.frames, c.alpha);
    const reference::Clip clip = reference::parse(pictures::encode(frames));
    reference::Player player(clip);
    player.show(0);
    pictures::Random random(c.seed);
    for (int jump = 0; jump < 200; ++jump) {
        const int frame = random.below(c.frames);
        ASSERT_EQ(player.show(frame), pictures::expected(frames[static_cast<size_t>(frame)]))
            << "frame " << frame;
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, Film,
                         testing::Values(Case{1, 8, 1, false}, Case{2, 8, 15, false},
                                         Case{3, 16, 16, false}, Case{4, 8, 17, false},
                                         Case{5, 16, 33, false}, Case{6, 8, 256, false},
                                         Case{7, 8, 1, true}, Case{8, 16, 15, true},
                                         Case{9, 8, 16, true}, Case{10, 24, 17, true},
                                         Case{11, 8, 33, true}, Case{12, 8, 256, true},
                                         Case{13, 360, 18, false}, Case{14, 360, 17, true}));

// 16 frames of one tile's picture, given by its split into two colours; 0 for none.
void addBlock(std::vector<Frame>& frames, size_t split) {
    Frame frame = pictures::flat(8, 0);
    maker::Tile tile{};
    tile.alpha.fill(15);
    for (size_t i = 0; i < split; ++i) {
        tile.colours[i] = 0xF800;
    }
    pictures::put(frame, 0, tile);
    frames.insert(frames.end(), 16, frame);
}

void expectBackwards(const std::vector<Frame>& frames, int fillers) {
    maker::ClipStats stats;
    const reference::Clip clip = reference::parse(pictures::encode(frames, 100, &stats));
    EXPECT_EQ(stats.fillers, fillers);
    reference::Player player(clip);
    player.show(0);
    for (size_t frame = frames.size(); frame-- > 0;) {
        ASSERT_EQ(player.show(static_cast<int>(frame)), pictures::expected(frames[frame]))
            << "frame " << frame;
    }
}

// Each block has one record of one type, which would be number 0 with code 1 in both.
TEST(Encoder, OtherPictureBehindASeam_HasAnotherNumber) {
    std::vector<Frame> frames;
    addBlock(frames, 20);
    addBlock(frames, 30);
    expectBackwards(frames, 1);
}

TEST(Encoder, SamePictureBehindASeam_KeepsItsNumber) {
    std::vector<Frame> frames;
    addBlock(frames, 20);
    addBlock(frames, 20);
    expectBackwards(frames, 0);
}

// Backwards from the first frame comes the last one.
TEST(Encoder, OtherPictureAtTheLoopsEnd_HasAnotherNumber) {
    std::vector<Frame> frames;
    addBlock(frames, 20);
    addBlock(frames, 0);
    addBlock(frames, 30);
    expectBackwards(frames, 1);
}

// What the random cases have gone through.
TEST(Encoder, RandomTiles_UseEveryRecordTypeAndCode) {
    std::set<unsigned> types;
    std::set<unsigned> codes;
    for (const uint32_t seed : {13u, 14u}) {
        const std::vector<uint8_t> bytes =
            pictures::encode(pictures::film(seed, 64, 16, seed == 14));
        for (const reference::Block& block : reference::parse(bytes).blocks) {
            types.insert(block.types.begin(), block.types.end());
            for (const reference::Frame& frame : block.frames) {
                codes.insert(frame.codes.begin(), frame.codes.end());
            }
        }
    }
    EXPECT_EQ(types.size(), 20u);
    EXPECT_EQ(codes.size(), 8u);
}

TEST(Encoder, Header_HoldsTheSettings) {
    const std::vector<uint8_t> bytes =
        pictures::encode(std::vector<Frame>(17, pictures::flat(200, 0x07E0)), 100);
    // 640 = 0x280, 200 = 0xC8, two blocks, 17 frames.
    const std::vector<uint8_t> header{19, 100, 0x80, 0x02, 0xC8, 0, 0, 2, 17, 0};
    EXPECT_TRUE(std::equal(header.begin(), header.end(), bytes.begin()));
}

TEST(Encoder, Header_AlphaClipSaysSo) {
    const std::vector<uint8_t> bytes = pictures::encode({pictures::flat(8, 1, true)});
    EXPECT_EQ(bytes[6], 1);
    EXPECT_EQ(bytes[8], 1);
}

// Every frame one other colour: 3,600 map entries and 720 code words of 2 bytes a frame, with a
// run byte for each 128 tiles, against 460,800 bytes of pixels.
TEST(Encoder, FlatAnimation_TakesATenthOfRawAtMost) {
    std::vector<Frame> frames;
    for (int f = 0; f < 32; ++f) {
        frames.push_back(pictures::flat(360, static_cast<uint16_t>(f * 2000)));
    }
    const std::vector<uint8_t> bytes = pictures::encode(frames);
    EXPECT_LE(bytes.size(), 32u * 460800 / 10);
    EXPECT_LE(bytes.size(), 32u * (3600 * 2 + 720 * 2 + 29) + 10 + 2 * (30 + 512 + 4));
    expectExact(bytes, frames);
}

// Shapes in flat colours on a ground that stands still: the edges' records are few and shared.
TEST(Encoder, FlatShapesInMotion_TakeATenthOfRawAtMost) {
    std::vector<Frame> frames;
    for (int f = 0; f < 32; ++f) {
        Frame frame = pictures::flat(360, 0x001F);
        for (int y = 0; y < 360; ++y) {
            for (int x = 0; x < 640; ++x) {
                const int dx = x - 100 - 12 * f;
                const int dy = y - 180;
                if (dx * dx + dy * dy < 90 * 90) {
                    frame.pixels[static_cast<size_t>(y * 640 + x)] = 0xF800;
                } else if ((x / 16 + y / 16) % 2 == 0 && y > 300) {
                    frame.pixels[static_cast<size_t>(y * 640 + x)] = 0xFFE0;
                }
            }
        }
        frames.push_back(frame);
    }
    const std::vector<uint8_t> bytes = pictures::encode(frames);
    EXPECT_LE(bytes.size(), 32u * 460800 / 20);
    expectExact(bytes, frames);
}

TEST(Encoder, StillPicture_CostsRunBytesAndCodesOnly) {
    const std::vector<Frame> frames(16, pictures::film(21, 16, 1, false)[0]);
    const reference::Clip clip = reference::parse(pictures::encode(frames));
    EXPECT_EQ(clip.blocks[0].mapEntries, 160u);  // the first frame's map alone
}

TEST(Encoder, MirroredTiles_ShareOneRecord) {
    maker::Tile tile{};
    tile.alpha.fill(15);
    for (size_t i = 0; i < 64; ++i) {
        tile.colours[i] = i < 13 ? 0xF800 : i < 30 ? 0x07E0 : 0x001F;
    }
    Frame frame = pictures::flat(8, 0);
    for (int way = 0; way < 4; ++way) {
        pictures::put(frame, way, pictures::turned(tile, way));
    }
    const std::vector<uint8_t> bytes = pictures::encode({frame});
    const reference::Clip clip = reference::parse(bytes);
    EXPECT_EQ(clip.blocks[0].records.size(), 1u);
    std::set<unsigned> codes(clip.blocks[0].frames[0].codes.begin(),
                             clip.blocks[0].frames[0].codes.begin() + 4);
    EXPECT_EQ(codes.size(), 4u);
    expectExact(bytes, {frame});
}

TEST(Encoder, MirroredTilesWithOtherAlpha_ShareNothing) {
    maker::Tile tile{};
    tile.alpha.fill(15);
    tile.alpha[0] = 3;
    for (size_t i = 0; i < 64; ++i) {
        tile.colours[i] = i < 13 ? 0xF800 : 0x001F;
    }
    maker::Tile mirrored = pictures::turned(tile, 1);
    std::swap(mirrored.alpha[0], mirrored.alpha[7]);
    Frame frame = pictures::flat(8, 0, true);
    pictures::put(frame, 0, tile);
    pictures::put(frame, 1, mirrored);
    const std::vector<uint8_t> bytes = pictures::encode({frame});
    EXPECT_EQ(reference::parse(bytes).blocks[0].records.size(), 2u);
    expectExact(bytes, {frame});
}

TEST(Encoder, AllTilesOfABlockDifferent_FitItsRecordNumbers) {
    pictures::Random random(99);
    std::vector<Frame> frames(16, pictures::flat(360, 0));
    for (Frame& frame : frames) {
        for (uint16_t& pixel : frame.pixels) {
            pixel = static_cast<uint16_t>(random.below(65536));
        }
    }
    const std::vector<uint8_t> bytes = pictures::encode(frames);
    const reference::Clip clip = reference::parse(bytes);
    EXPECT_EQ(clip.blocks[0].records.size(), 57600u);
    expectExact(bytes, frames);
}

TEST(Encoder, EmptyTiles_NameARecordThatDoesNotShow) {
    Frame frame = pictures::flat(8, 0, true);
    frame.alpha.assign(frame.alpha.size(), 0);
    maker::Tile noise{};
    noise.alpha.fill(15);
    for (size_t i = 0; i < 64; ++i) {
        noise.colours[i] = static_cast<uint16_t>(i * 1021 + 5);
    }
    pictures::put(frame, 3, noise);  // a raw or palette record comes first in the block
    const std::vector<uint8_t> bytes = pictures::encode({frame});
    const reference::Clip clip = reference::parse(bytes);
    const reference::Block& block = clip.blocks[0];
    EXPECT_EQ(block.frames[0].codes[0], 7u);
    ASSERT_LT(block.frames[0].entries[0], block.types.size());
    EXPECT_GE(block.types[block.frames[0].entries[0]] % 10, 2u);
    expectExact(bytes, {frame});
}

TEST(Encoder, AnnouncedRoom_IsWhatTheSectionsTake) {
    const std::vector<Frame> frames = pictures::film(31, 16, 33, true);
    for (const reference::Block& block : reference::parse(pictures::encode(frames)).blocks) {
        EXPECT_GE(block.announcedRecordBytes, block.recordBytes);
        EXPECT_LT(block.announcedRecordBytes, block.recordBytes + 4);
        EXPECT_GE(block.announcedEntries, block.mapEntries);
        EXPECT_LT(block.announcedEntries, block.mapEntries + 2);
    }
}

TEST(Encoder, MoreThan256Frames_AreRefused) {
    maker::ClipEncoder encoder({.height = 8});
    const std::vector<uint8_t> black(640 * 8 * 4, 0);
    for (int f = 0; f < 256; ++f) {
        encoder.add(black.data());
    }
    EXPECT_THROW(encoder.add(black.data()), std::logic_error);
}

TEST(Encoder, NoFrame_IsRefused) {
    maker::ClipEncoder encoder({.height = 8});
    EXPECT_THROW(encoder.finish(), std::logic_error);
}

}  // namespace
