#include "minimal_clip.h"

#include <initializer_list>

namespace minimal {

namespace {

using Bytes = std::vector<uint8_t>;

void addBytes(Bytes& bytes, std::initializer_list<uint8_t> more) {
    for (const uint8_t byte : more) {
        bytes.push_back(byte);
    }
}

void addWord(Bytes& bytes, unsigned word) {
    bytes.push_back(static_cast<uint8_t>(word & 0xFF));
    bytes.push_back(static_cast<uint8_t>(word >> 8));
}

// Palette entry i is the byte i twice.
constexpr uint16_t paletteColour(int index) {
    return static_cast<uint16_t>(index * 0x0101);
}

void addBlockHeader(Bytes& bytes) {
    addBytes(bytes, {7, 0});         // records
    addBytes(bytes, {28, 0, 0, 0});  // 112 bytes of room for the 110 of the records
    addBytes(bytes, {41, 0, 0, 0});  // 82 map entries: 80 and the two that change
    // One record each of types 1, 2, 5, 6, 9, 13 and 18.
    for (const unsigned count :
         {0u, 1u, 1u, 0u, 0u, 1u, 1u, 0u, 0u, 1u, 0u, 0u, 0u, 1u, 0u, 0u, 0u, 0u, 1u, 0u}) {
        addWord(bytes, count);
    }
    for (int i = 0; i < 256; ++i) {
        addWord(bytes, paletteColour(i));
    }
}

// Tile 0 is flat, tiles 1 to 7 show records 0 to 6, the others are flat black. In frame 1 tile 0
// has another colour and tile 1 is empty.
void addMapAndCodes(Bytes& bytes) {
    addBytes(bytes, {0x81, 0x4D});  // frame 1: tiles 0 and 1 change, 78 stay
    addWord(bytes, 0x1234);
    for (unsigned record = 0; record < 7; ++record) {
        addWord(bytes, record);
    }
    for (int tile = 8; tile < kTiles; ++tile) {
        addWord(bytes, 0);
    }
    addWord(bytes, 0x4321);
    addWord(bytes, 0xFFFF);
    for (const unsigned secondTile : {1u, 7u}) {
        addWord(bytes, 0 | secondTile << 3 | 3 << 6 | 1 << 9 | 2 << 12);
        addWord(bytes, 1 | 1 << 3 | 4 << 6);
        for (int word = 2; word < kTiles / 5; ++word) {
            addWord(bytes, 0);
        }
    }
}

void addRecords(Bytes& bytes) {
    for (int i = 0; i < 64; ++i) {
        addBytes(bytes, {static_cast<uint8_t>(i)});  // type 1: palette indices
    }
    // type 2: four runs of 16 pixels, red, green, blue, white
    addBytes(bytes, {0xEF, 0x3D, 0x00, 0xF8, 0xE0, 0x07, 0x1F, 0x00, 0xFF, 0xFF});
    // type 5: eight runs of 8 pixels, palette indices 10 to 17
    addBytes(bytes, {0xFF, 10, 11, 0xFF, 12, 13, 0xFF, 14, 15, 0xFF, 16, 17});
    addBytes(bytes, {0xFF, 20, 21, 0xFF, 22, 23});  // type 6: four runs of 16 pixels
    addBytes(bytes, {0xCF, 30, 31});                // type 9: 16 pixels and 48
    // type 13: two runs of 32 pixels; alpha in four runs of 16 pixels, levels 5 to 8
    addBytes(bytes, {0xFF, 0x83, 40, 41, 0x00, 0xF5, 0xF6, 0xF7, 0xF8});
    addBytes(bytes, {31, 0xCD, 0xAB, 0x57, 0x13, 0x27});  // type 18: 32 and 32 pixels; alpha 7
}

struct Pixel {
    uint16_t colour;
    uint8_t level;
};

// Tile 2 paints its runs from the bottom row up (code 3), tile 7 as well (code 4). Tiles 3, 5 and 6
// paint columns.
Pixel pixelAt(int frame, int tile, int x, int y) {
    constexpr uint16_t kFromTheTop[] = {0xFFFF, 0x001F, 0x07E0, 0xF800};
    switch (tile) {
        case 0:
            return {static_cast<uint16_t>(frame == 0 ? 0x1234 : 0x4321), 15};
        case 1:
            return frame == 0 ? Pixel{paletteColour(8 * y + x), 15} : Pixel{0, 0};
        case 2:
            return {kFromTheTop[y / 2], 15};
        case 3:
            return {paletteColour(10 + x), 15};
        case 4:
            return {paletteColour(20 + y / 2), 15};
        case 5:
            return {paletteColour(x < 2 ? 30 : 31), 15};
        case 6:
            return {paletteColour(x < 4 ? 40 : 41), static_cast<uint8_t>(5 + y / 2)};
        case 7:
            return {static_cast<uint16_t>(y >= 4 ? 0xABCD : 0x1357), 7};
        default:
            return {0, 15};
    }
}

}  // namespace

Bytes clip() {
    // Version, quality 50, 640 x 8, alpha, one block, two frames.
    Bytes bytes = {19, 50, 0x80, 2, 8, 0, 1, 1, 2, 0};
    addBlockHeader(bytes);
    addMapAndCodes(bytes);
    addRecords(bytes);
    return bytes;
}

Picture picture(int frame) {
    Picture picture;
    for (int at = 0; at < kPixels; ++at) {
        const int x = at % kRowPixels;
        const Pixel pixel = pixelAt(frame, x / 8, x % 8, at / kRowPixels);
        picture.pixels.push_back(pixel.colour);
        picture.alpha.push_back(pixel.level);
    }
    return picture;
}

}  // namespace minimal
