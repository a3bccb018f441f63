#include "app/tiny_clip.h"

#include <algorithm>
#include <array>

namespace app {

namespace {

using Bytes = std::vector<uint8_t>;

constexpr int kTile = 8;
constexpr int kTilePixels = 64;
constexpr int kAcross = 80;
constexpr int kTiles = 3600;
constexpr int kBlockFrames = 16;
constexpr int kPaletteColours = 256;
constexpr int kCodesPerWord = 5;
constexpr int kLongestRun = 128;
constexpr int kOpaque = 15;
constexpr int kCodeFlat = 0;
constexpr int kCodeRecord = 1;

void put16(Bytes& out, size_t value) {
    out.push_back(static_cast<uint8_t>(value & 255));
    out.push_back(static_cast<uint8_t>(value >> 8 & 255));
}

void put32(Bytes& out, size_t value) {
    put16(out, value & 0xFFFF);
    put16(out, value >> 16);
}

template <typename Pixel>
std::array<Pixel, kTilePixels> cut(const std::vector<Pixel>& frame, int tile) {
    std::array<Pixel, kTilePixels> result;
    const int corner = tile / kAcross * kTile * 640 + tile % kAcross * kTile;
    for (int i = 0; i < kTilePixels; ++i) {
        result[static_cast<size_t>(i)] =
            frame[static_cast<size_t>(corner + i / kTile * 640 + i % kTile)];
    }
    return result;
}

template <typename Values>
bool allEqual(const Values& values) {
    return std::all_of(values.begin(), values.end(),
                       [&](auto value) { return value == values.front(); });
}

// One level for the tile, or runs of one pixel each.
void putAlpha(Bytes& out, const std::array<uint8_t, kTilePixels>& levels) {
    if (allEqual(levels)) {
        out.push_back(static_cast<uint8_t>(0x20 | levels[0]));
        return;
    }
    out.push_back(0);
    out.insert(out.end(), levels.begin(), levels.end());
}

// The tiles of a block: their records in file order and, tile after tile, what the maps say.
// Records with alpha are sorted behind those without; until the block is written their numbers
// count from 0.
struct Block {
    struct Tile {
        int code;
        bool alpha;
        size_t entry;
    };

    void add(const TinyFrame& frame) {
        for (int tile = 0; tile < kTiles; ++tile) {
            const auto pixels = cut(frame.picture.pixels, tile);
            const auto levels = frame.alpha.empty() ? opaque() : cut(frame.alpha, tile);
            addTile(pixels, levels);
        }
        ++frames;
    }

    void addTile(const std::array<uint16_t, kTilePixels>& pixels,
                 const std::array<uint8_t, kTilePixels>& levels) {
        const bool isOpaque = allEqual(levels) && levels[0] == kOpaque;
        if (isOpaque && allEqual(pixels)) {
            tiles.push_back({kCodeFlat, false, pixels[0]});
            return;
        }
        Bytes& records = isOpaque ? plain : withAlpha;
        size_t& count = isOpaque ? plainCount : withAlphaCount;
        tiles.push_back({kCodeRecord, !isOpaque, count});
        ++count;
        for (const uint16_t pixel : pixels) {
            put16(records, pixel);
        }
        if (!isOpaque) {
            putAlpha(records, levels);
        }
    }

    static std::array<uint8_t, kTilePixels> opaque() {
        std::array<uint8_t, kTilePixels> levels;
        levels.fill(kOpaque);
        return levels;
    }

    int frames = 0;
    std::vector<Tile> tiles;
    Bytes plain;      // records of type 0
    Bytes withAlpha;  // records of type 10
    size_t plainCount = 0;
    size_t withAlphaCount = 0;
};

void putBlockHeader(Bytes& out, const Block& block, bool alpha) {
    put16(out, block.plainCount + block.withAlphaCount);
    put32(out, (block.plain.size() + block.withAlpha.size() + 3) / 4);
    put32(out, (block.tiles.size() + 1) / 2);
    for (int type = 0; type < (alpha ? 20 : 10); ++type) {
        put16(out, type == 0 ? block.plainCount : type == 10 ? block.withAlphaCount : 0);
    }
    for (int colour = 0; colour < kPaletteColours; ++colour) {
        put16(out, 0);
    }
}

void putChangeRuns(Bytes& out) {
    for (int left = kTiles; left > 0; left -= kLongestRun) {
        out.push_back(static_cast<uint8_t>(0x80 | (std::min(left, kLongestRun) - 1)));
    }
}

void putBlock(Bytes& out, const Block& block, bool alpha) {
    putBlockHeader(out, block, alpha);
    for (int frame = 1; frame < block.frames; ++frame) {
        putChangeRuns(out);
    }
    for (const Block::Tile& tile : block.tiles) {
        put16(out, tile.alpha ? block.plainCount + tile.entry : tile.entry);
    }
    for (size_t first = 0; first < block.tiles.size(); first += kCodesPerWord) {
        size_t word = 0;
        for (size_t i = 0; i < kCodesPerWord; ++i) {
            word |= static_cast<size_t>(block.tiles[first + i].code) << (3 * i);
        }
        put16(out, word);
    }
    out.insert(out.end(), block.plain.begin(), block.plain.end());
    out.insert(out.end(), block.withAlpha.begin(), block.withAlpha.end());
}

}  // namespace

std::vector<uint8_t> tinyClip(const std::vector<TinyFrame>& frames, bool alpha) {
    Bytes out = {19, 50};  // version, quality
    put16(out, 640);
    put16(out, 360);
    out.push_back(alpha ? 1 : 0);
    out.push_back(static_cast<uint8_t>((frames.size() + kBlockFrames - 1) / kBlockFrames));
    put16(out, frames.size());
    for (size_t first = 0; first < frames.size(); first += kBlockFrames) {
        Block block;
        for (size_t f = first; f < std::min(first + kBlockFrames, frames.size()); ++f) {
            block.add(frames[f]);
        }
        putBlock(out, block, alpha);
    }
    return out;
}

}  // namespace app
