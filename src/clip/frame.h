#pragma once
// Draws frames of a loaded block, from memory to memory: what runs on stage.

#include <cstddef>
#include <cstdint>

namespace clip {

struct FrameDrawing {
    int rows;               // of tiles
    const uint16_t* map;    // the frame's entries
    const uint16_t* codes;  // and its code words
    const uint16_t* palette;
    const uint8_t* records;  // of the block, as clip/block.h loads them
    const uint32_t* recordOffsets;
    const uint8_t* recordTypes;
    size_t recordCount;
    uint16_t* out;              // the frame's first pixel; rows are 640 pixels apart
    uint8_t* levels;            // its first level; null when alpha is not wanted
    const uint8_t* keptLevels;  // 64 that records of a clip without alpha show; null with alpha
    uint16_t* drawnMap;         // of the frame drawn last there; becomes this frame's
    uint16_t* drawnCodes;       // likewise
    bool everything;            // also the tiles that are as they were
    bool flatOnly;              // every tile is drawn as a flat one
};

// Records are drawn by clip/tile_fast.h. Returns the last tile that has one, which was drawn now,
// by its first pixel in the frame; -1 when there is none.
int drawFrame(const FrameDrawing& drawing);

}  // namespace clip
