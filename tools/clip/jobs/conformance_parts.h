#pragma once
// The parts that the clips of the conformance corpus are put together from, by hand and to the
// byte.
//
// What an encoder would choose is given here: which type a record has, where its runs are cut,
// which tiles are said to change. Layouts come from encoder/record_forms.h and encoder/writer.h.

#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

#include "clip/format.h"
#include "tools/clip/encoder/palette.h"
#include "tools/clip/encoder/record_forms.h"

namespace maker::conformance {

using Bytes = std::vector<uint8_t>;

// The colours of index 0 to 255 stand in the palette, as their index; those of 256 and more do not,
// so that records hold them as RGB565. No two are alike.
constexpr uint16_t colour(int index) {
    return static_cast<uint16_t>(0x1234 + 263 * index);
}
constexpr int kBeside = clip::kPaletteEntries;
PaletteColours palette();

// Records. A colour that stands in the palette takes one byte, where the type allows it.

Bytes picture(int type, int firstColour);  // types 0 and 1: 64 colours, one after the other
Bytes runs(int type, std::initializer_list<Run> runs);
// Runs of these lengths, each of another colour, from `firstColour` on.
Bytes runsOf(int type, std::initializer_list<int> lengths, int firstColour = 1);
// Of types 0 to 9; as its runs fall, no two paths give the same picture.
Bytes sample(int type);
Bytes repeated(int type, int length, int firstColour);  // runs of one length to the tile's end

// Alpha parts: `first` and run bytes behind it, or one byte.
Bytes levels(uint8_t first, std::initializer_list<std::pair<int, int>> lengthsAndLevels);
Bytes level(int level);
Bytes sampleLevels();  // none of their mirror images is like them

Bytes joined(Bytes front, const Bytes& back);
Bytes withByte(Bytes bytes, size_t at, uint8_t byte);
Bytes withWord(Bytes bytes, size_t at, uint16_t word);
Bytes withoutEnd(Bytes bytes, size_t length);  // cut to this length

// How one frame's map entries follow from those of the frame before.
using Changes = void(std::span<const uint16_t> before, std::span<const uint16_t> after,
                     std::vector<uint8_t>& runs, std::vector<uint16_t>& entries);
Changes changeAll;         // every tile, in runs as long as they can be
Changes changeOneByOne;    // every tile, in runs of one
Changes changeIncreasing;  // runs of 1 to 128 tiles, on from frame to frame; two of three change

class Block {
public:
    Block(int frames, int lines = clip::kTileSize);

    // Records are added in the order of their types. Returns the record's number.
    uint16_t add(int type, const Bytes& record);
    // Tile `tile` from frame `frame` of the block on.
    void set(int frame, int tile, int entry, int code);
    // The next tile that has not been given one, in all frames.
    void show(int entry, int code) { set(0, shown_++, entry, code); }
    void addShown(int type, const Bytes& record) { show(add(type, record), 1); }

    // Of every frame but the first. Tiles whose entries it leaves out stay as they were.
    Changes* changes;
    PaletteColours colours = palette();
    uint16_t codeBits = 0;  // added to all code words

    int frames() const { return static_cast<int>(maps_.size()); }
    void append(Bytes& out, int alpha) const;

private:
    struct Map {
        std::vector<uint16_t> entries;
        std::vector<uint8_t> codes;
    };
    std::vector<Map> maps_;
    std::array<uint16_t, clip::kMaxTypeSlots> typeCounts_{};
    Bytes records_;
    int numbers_ = 0;
    int shown_ = 0;
};

// A clip of these blocks, all of as many lines.
Bytes clipOf(std::span<const Block> blocks, int alpha = 0, int lines = clip::kTileSize);
Bytes clipOf(const Block& block, int alpha = 0, int lines = clip::kTileSize);

// The least that shows something: one row of tiles, two frames, one record of four runs.
Bytes plainClip();

// Where the fields of a clip stand that has one block, or of the first one.
inline constexpr size_t kVersionAt = 0;
inline constexpr size_t kQualityAt = 1;
inline constexpr size_t kWidthAt = 2;
inline constexpr size_t kHeightAt = 4;
inline constexpr size_t kAlphaAt = 6;
inline constexpr size_t kBlocksAt = 7;
inline constexpr size_t kFramesAt = 8;
inline constexpr size_t kRecordsAt = 10;
inline constexpr size_t kRecordRoomAt = 12;
inline constexpr size_t kMapRoomAt = 16;
inline constexpr size_t kTypeCountsAt = 20;

}  // namespace maker::conformance
