#include "clip/mapbuild.h"

#include <algorithm>
#include <cstring>

#include "clip/format.h"

namespace clip {

namespace {

void copyEntries(uint16_t* to, const uint16_t* from, int count) {
    memcpy(to, from, static_cast<size_t>(count) * sizeof *to);
}

// Applies the runs of one frame to `map` and moves both pointers on to the next frame's.
void applyFrameRuns(const uint8_t*& run, const uint16_t*& entry, int tileCount, uint16_t* map) {
    int position = 0;
    while (position < tileCount) {
        const uint8_t byte = *run++;
        const int length = (byte & kRunLengthMask) + 1;
        if ((byte & kRunChanged) != 0) {
            copyEntries(map + position, entry, std::min(length, tileCount - position));
            entry += length;
        }
        position += length;
    }
}

}  // namespace

void rebuildMap(const uint16_t* blockMap, const uint8_t* runs, int tileCount, int frame,
                uint16_t* map) {
    copyEntries(map, blockMap, tileCount);
    const uint16_t* entry = blockMap + tileCount;
    for (int i = 1; i <= frame; ++i) {
        applyFrameRuns(runs, entry, tileCount, map);
    }
}

void rebuildAllMaps(const uint16_t* blockMap, const uint8_t* runs, int tileCount, int frames,
                    uint16_t* maps, int stride) {
    copyEntries(maps, blockMap, tileCount);
    const uint16_t* entry = blockMap + tileCount;
    for (int i = 1; i < frames; ++i) {
        copyEntries(maps + stride, maps, tileCount);
        maps += stride;
        applyFrameRuns(runs, entry, tileCount, maps);
    }
}

}  // namespace clip
