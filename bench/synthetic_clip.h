#pragma once
// Clips of one kind of tile, written byte by byte, to time the decoder with. 640 x 360; every tile
// of a block's first frame has a record of its own; the painting paths take turns.

#include <cstdint>
#include <string>
#include <vector>

enum class TileKind { kFlat, kRaw, kPalette, kFourRuns, kShortRuns, kPaletteRuns, kTwoColours };

struct KindName {
    TileKind kind;
    const char* name;
};

inline constexpr KindName kTileKinds[] = {
    {TileKind::kFlat, "flat"},
    {TileKind::kRaw, "raw"},
    {TileKind::kPalette, "palette"},
    {TileKind::kFourRuns, "four runs"},
    {TileKind::kShortRuns, "short runs"},
    {TileKind::kPaletteRuns, "palette runs"},
    {TileKind::kTwoColours, "two colours"},
};

// The bytes of a clip in which `changed` of 100 tiles, at random, differ from frame to frame. With
// `alpha` every record has an alpha record of a few runs.
std::vector<uint8_t> syntheticClip(TileKind kind, int frames, int changed, bool alpha = false);
