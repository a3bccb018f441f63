#pragma once
// Rebuilds the tile maps of a block's frames from its first map and its change runs.
//
// `blockMap` holds the first frame's `tileCount` entries, then the entries of all changed runs in
// file order; `runs` the run bytes of all later frames. Both come from clip/block.h, which has
// counted them, so reading stays inside them. A run that passes the last tile is cut there; its
// entries count as used all the same.

#include <cstdint>

namespace clip {

// Writes the map of frame `frame` (0 to 15) of the block to `map` (`tileCount` entries).
void rebuildMap(const uint16_t* blockMap, const uint8_t* runs, int tileCount, int frame,
                uint16_t* map);

// Writes the maps of the block's first `frames` frames, frame k to `maps` + k x `stride` entries.
// Same result as rebuildMap for every frame, but each change run is read once.
void rebuildAllMaps(const uint16_t* blockMap, const uint8_t* runs, int tileCount, int frames,
                    uint16_t* maps, int stride);

}  // namespace clip
