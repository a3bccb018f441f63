// Any bytes as change runs: the maps that are rebuilt one by one, all at once and tile by tile are
// the same, whatever the runs pass, and nothing is read that the runs did not announce.
//
// Input: tiles of a frame (a byte; 0 to 5 stand for as many rows of 80 tiles more than one),
// frames, the frame to look at alone, spare entries between maps, then the run bytes; after the
// last one the frames that are left change nothing.
#include <vector>

#include "clip/format.h"
#include "clip/mapbuild.h"
#include "fuzz/input.h"

namespace {

using fuzz::require;

constexpr int kRowsFrom = 6;
constexpr uint8_t kKeepRest = clip::kRunLengthMask;  // what follows the input, for speed

struct Block {
    int tiles;
    std::vector<uint8_t> runs;      // exactly as many as are needed
    std::vector<uint16_t> entries;  // likewise
};

Block readBlock(fuzz::Input& input, int tiles, int frames) {
    Block block{tiles, {}, {}};
    block.runs.reserve(input.rest().size());
    size_t entries = static_cast<size_t>(tiles);
    for (int frame = 1; frame < frames; ++frame) {
        for (int covered = 0; covered < tiles;) {
            const uint8_t run = input.empty() ? kKeepRest : input.byte();
            block.runs.push_back(run);
            const int length = (run & clip::kRunLengthMask) + 1;
            covered += length;
            entries += (run & clip::kRunChanged) != 0 ? static_cast<size_t>(length) : 0;
        }
    }
    block.runs.shrink_to_fit();
    block.entries.resize(entries);
    for (size_t i = 0; i < entries; ++i) {
        block.entries[i] = static_cast<uint16_t>(i * 40503 + 7);
    }
    return block;
}

// Tile by tile: a changed run's entries are taken one after the other, those past the last tile
// for nothing.
std::vector<uint16_t> expectedMap(const Block& block, int frame) {
    std::vector<uint16_t> map(block.entries.begin(), block.entries.begin() + block.tiles);
    size_t next = static_cast<size_t>(block.tiles);
    size_t run = 0;
    for (int i = 0; i < frame; ++i) {
        for (size_t tile = 0; tile < map.size(); ++run) {
            const size_t end = tile + (block.runs[run] & 127) + 1;
            for (; tile < end; ++tile) {
                if (block.runs[run] >= 128) {
                    const uint16_t entry = block.entries[next++];
                    if (tile < map.size()) {
                        map[tile] = entry;
                    }
                }
            }
        }
    }
    return map;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Input input(data, size);
    const int shape = input.byte();
    const int tiles = shape < kRowsFrom ? clip::kTilesAcross * (shape + 1) : shape;
    const int frames = 1 + input.below(clip::kFramesPerBlock);
    const int alone = input.below(frames);
    const int stride = tiles + input.below(4);
    const Block block = readBlock(input, tiles, frames);

    std::vector<uint16_t> map(static_cast<size_t>(tiles));
    clip::rebuildMap(block.entries.data(), block.runs.data(), tiles, alone, map.data());
    require(map == expectedMap(block, alone), "a map is what its runs say");

    const uint16_t kUntouched = 0xEEEE;
    const size_t all = static_cast<size_t>(stride) * static_cast<size_t>(frames - 1) + map.size();
    std::vector<uint16_t> maps(all, kUntouched);
    clip::rebuildAllMaps(block.entries.data(), block.runs.data(), tiles, frames, maps.data(),
                         stride);
    const auto at = maps.begin() + static_cast<ptrdiff_t>(alone) * stride;
    require(std::equal(map.begin(), map.end(), at), "maps built together are those built alone");
    if (frames > 1) {
        require(std::all_of(maps.begin() + tiles, maps.begin() + stride,
                            [&](uint16_t entry) { return entry == kUntouched; }),
                "nothing is written between two maps");
    }
    return 0;
}
