#pragma once
// The tile records of a block: which records draw its pictures, each in its smallest form.
//
// A run record serves every picture of its shape that some tile code paints from it; raw and
// palette records are drawn as they stand, one for each picture. Records keep the order of the
// pictures' first use; their numbers in the file come later (numbering.h).

#include <cstdint>
#include <span>
#include <vector>

#include "tools/clip/encoder/dictionary.h"
#include "tools/clip/encoder/palette.h"

namespace maker {

struct Record {
    uint8_t type;     // 0 to 19
    uint32_t offset;  // into RecordSet::bytes
    uint32_t length;
};

// What draws a picture.
struct RecordUse {
    uint32_t record;
    uint8_t code;  // 1 to 6
};

struct RecordSet {
    std::vector<uint8_t> bytes;
    std::vector<Record> records;
    std::vector<RecordUse> uses;  // of each picture
};

// How much each colour gains by being in the palette: kColours weights for choosePalette.
std::vector<uint32_t> weighColours(std::span<const Shape> shapes);

// `pictures` are the distinct pictures that the shapes were grouped from.
RecordSet chooseRecords(const std::vector<Tile>& pictures, std::span<const Shape> shapes,
                        const PaletteIndex& palette);

// The record that the map entries of empty tiles name: a record of a run type, which an empty tile
// leaves undrawn, where a raw or palette record would show. Adds one when there is none.
uint32_t emptyTileRecord(RecordSet& set);

}  // namespace maker
