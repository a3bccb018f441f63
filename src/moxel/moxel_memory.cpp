// The buffers of a clip's blocks: how large they are, taken and given back.
#include <cstdlib>
#include <new>

#include "clip/block.h"
#include "common/messages.h"
#include "moxel/moxel.h"

namespace {

// False when there is no memory for it. What it held before is given back first.
template <typename T>
bool allocate(std::unique_ptr<T[]>& buffer, size_t count) {
    buffer.reset();
    buffer.reset(new (std::nothrow) T[count]);
    return buffer != nullptr;
}

}  // namespace

bool c_moxel::initKeyFrameRAM(int block) {
    const int frames = clip::framesInBlock(block, blockCount, frameCount);
    const clip::BlockRoom room =
        clip::blockRoom(recordCount, recordWords, mapWords, frames, tileCount);
    mapRoom = room.mapEntries;
    runRoom = room.runBytes;
    codeWordsInBlock = static_cast<int32_t>(room.codeWords);
    recordRoom = room.recordBytes;
    blockRecordCounts[block] = recordCount;
    // Counted before they are there: killRAM() gives back those of a block that got some only.
    hasRAM = 1;
    ++blocksAllocated;
    return allocate(blockPalettes[block], clip::kPaletteEntries) &&
           allocate(blockMaps[block], room.mapEntries) &&
           allocate(blockRuns[block], room.runBytes) &&
           allocate(blockCodes[block], room.codeWords) &&
           allocate(blockRecords[block], room.guardedRecordBytes()) &&
           allocate(blockRecordOffsets[block], room.records) &&
           allocate(blockRecordTypes[block], room.records) &&
           allocate(blockTypeCounts[block], clip::kMaxTypeSlots) &&
           allocate(blockTypeStarts[block], clip::kMaxTypeSlots);
}

void c_moxel::killRAM() {
    if (version == clip::kVersion) {
        for (int block = 0; block < blocksAllocated; ++block) {
            blockPalettes[block].reset();
            blockMaps[block].reset();
            blockRuns[block].reset();
            blockCodes[block].reset();
            blockRecords[block].reset();
            blockRecordOffsets[block].reset();
            blockRecordTypes[block].reset();
            blockTypeCounts[block].reset();
            blockTypeStarts[block].reset();
        }
        // Deliberate: the map and codes of the frame drawn last stay allocated and serve the next
        // load of this slot. [quirk_drawn_map_outlives_the_clip]
    } else {
        for (void*& buffer : legacyBuffers) {
            free(buffer);
            buffer = nullptr;
        }
        prevMap = {};
        prevCodes = {};
    }
    if (file != nullptr) {
        fclose(file);
        file = nullptr;
    }
    hasRAM = 0;
}

void c_moxel::destroy() {
    // Deliberate: the block count goes out as one raw character, so a clip of ten blocks prints a
    // line feed there. [quirk_destroy_logs_block_count_as_character]
    printf("%s%c\n", msg::kClipDestroyed, blockCount);
    killRAM();
    state = CLIP_LOADING;
    name.clear();
    path.clear();
}
