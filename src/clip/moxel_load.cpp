// The staged loading of a clip: what is read in which step, and what is refused.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "clip/mapbuild.h"
#include "clip/moxel.h"
#include "clip/reader.h"
#include "common/messages.h"

namespace {

// Null for what is not a regular file: a pipe would hold the program up for good.
FILE* openClip(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return nullptr;
    }
    struct stat facts;
    if (fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        close(descriptor);
        return nullptr;
    }
    return fdopen(descriptor, "rb");
}

// Room for a block's buffers, in elements. The file announces room; a block never gets more than
// its records, tiles and frames can need, however much that is.
size_t cappedRoom(uint64_t announced, uint64_t needed) {
    return static_cast<size_t>(std::min(announced, needed));
}

}  // namespace

void c_moxel::init(const std::string&, std::string clipName) {
    name = std::move(clipName);
    path = "./videos/" + name;
    mapWords = 1;
    codeWordsInBlock = 1;
    recordWords = 1;
    recordCount = 1;
    redrawCount = 2;
    state = CLIP_LOADING;
    ownHeader = {};
    hasRAM = 0;
    loadStage = 0;
    recordsDone = 0;
    lastRecordLength = 0;
    recordOffset = 0;
    mapOffset = 0;
    width = kFrameWidth;
}

int32_t c_moxel::takeHeader(const clip::FileHeader& header) {
    version = header.version;
    if (version != clip::kVersion) {
        return 0;
    }
    quality = header.quality;
    height = header.height;
    alpha = header.alpha;
    blockCount = header.blockCount;
    frameCount = header.frameCount;
    return clip::headerFits(header) ? 1 : 0;
}

int32_t c_moxel::miniLoad(const std::string& clipPath) {
    FILE* sized = openClip(clipPath);
    if (sized == nullptr) {
        return 0;
    }
    fseek(sized, 0, SEEK_END);
    fileSize = static_cast<int32_t>(ftell(sized));
    fclose(sized);

    FILE* opened = openClip(clipPath);
    if (opened == nullptr) {
        return 0;
    }
    takeHeader(clip::readFileHeader(opened));
    fclose(opened);
    return version == clip::kVersion ? 1 : 0;
}

// The file cannot be played: nothing of it stays open or allocated, and a further loopLoad() starts
// from the beginning.
int32_t c_moxel::refuse() {
    killRAM();
    loadStage = 0;
    return 0;
}

void c_moxel::startBlock() {
    recordWrite = blockRecords[currentBlock].get();
    currentMap = blockMaps[currentBlock].get();
}

int32_t c_moxel::loopLoad(int budget) {
    if (loadStage == 0) {
        const std::string checked = path;
        if (miniLoad(checked) == 0) {
            return 0;
        }
    } else {
        // Guard: the playlists' scan may have read another file's header into this slot since the
        // last step; the blocks that follow are those of the file that is open.
        takeHeader(ownHeader);
    }
    switch (loadStage) {
        case 0:
            if (load19A() != 1 || load19AA() != 1) {
                return refuse();
            }
            startBlock();
            loadStage = 1;
            return 1;
        case 1:
            if (load19B() != 1) {
                return refuse();
            }
            loadStage = 2;
            return 1;
        case 2:
            switch (load19C(budget)) {
                case 0:
                    return 1;
                case 1:
                    return finishBlock();
                case 2:
                    loadStage = 3;
                    return 1;
                default:
                    return refuse();
            }
        case 3:
            // The stage stays 3: loading a ready clip again repeats the expansion and answers 2.
            expandMaps();
            state = CLIP_READY;
            return 2;
        default:
            return 1;
    }
}

// The next block's header, runs, maps and codes are read in the call that ends a block.
int32_t c_moxel::finishBlock() {
    ++currentBlock;
    if (load19AA() != 1) {
        return refuse();
    }
    startBlock();
    return load19B() == 1 ? 1 : refuse();
}

void c_moxel::expandMaps() {
    unRLEAllMap19();
    currentBlock = 0;
}

int32_t c_moxel::load19A() {
    puts(path.c_str());
    file = openClip(path);
    if (file == nullptr) {
        puts(msg::kClipVanished);
        return 0;
    }
    ownHeader = clip::readFileHeader(file);
    if (takeHeader(ownHeader) == 0) {
        return 0;
    }
    tilesAcross = width / clip::kTileSize;
    tilesDown = height / clip::kTileSize;
    tileCount = tilesAcross * tilesDown;
    pixelCount = width * height;
    // They outlive killRAM(), so a night of reloading takes no new memory for them.
    prevMap.resize(std::max(prevMap.size(), static_cast<size_t>(tileCount)));
    prevCodes.resize(
        std::max(prevCodes.size(), static_cast<size_t>(tileCount / clip::kCodesPerWord)));
    currentBlock = 0;
    blocksAllocated = 0;
    return 1;
}

int32_t c_moxel::load19AA() {
    clip::BlockHeader header;
    clip::readBlockHeader(file, alpha, header);
    recordCount = header.recordCount;
    recordWords = header.recordWords;
    mapWords = header.mapWords;
    codeWordsInBlock =
        clip::framesInBlock(currentBlock, blockCount, frameCount) * clip::codeWordsFor(tileCount);
    initKeyFrameRAM(currentBlock);
    recordsDone = 0;
    lastRecordLength = 0;
    recordOffset = 0;
    mapOffset = 0;

    const int slots = clip::typeSlots(alpha);
    uint32_t* starts = blockTypeStarts[currentBlock].get();
    uint32_t start = 0;
    for (int type = 0; type < slots; ++type) {
        blockTypeCounts[currentBlock][static_cast<size_t>(type)] = header.typeCounts[type];
        starts[type] = start;
        start += header.typeCounts[type];
    }
    std::copy_n(header.palette, clip::kPaletteEntries, blockPalettes[currentBlock].get());
    return 1;
}

void c_moxel::initKeyFrameRAM(int block) {
    const auto frames = static_cast<uint64_t>(clip::framesInBlock(block, blockCount, frameCount));
    const auto tiles = static_cast<uint64_t>(tileCount);
    // A frame's runs may pass its last tile; the entries of that excess are read all the same.
    mapRoom = cappedRoom(uint64_t{2} * mapWords, frames * (tiles + clip::kMaxRunLength));
    runRoom = cappedRoom(clip::kMaxRunBytes, frames * tiles);
    recordRoom =
        cappedRoom(uint64_t{4} * recordWords, uint64_t{recordCount} * clip::kMaxRecordBytes);
    blockPalettes[block] = std::make_unique_for_overwrite<uint16_t[]>(clip::kPaletteEntries);
    blockMaps[block] = std::make_unique_for_overwrite<uint16_t[]>(mapRoom);
    blockRuns[block] = std::make_unique_for_overwrite<uint8_t[]>(runRoom);
    blockCodes[block] =
        std::make_unique_for_overwrite<uint16_t[]>(static_cast<size_t>(codeWordsInBlock));
    // Guard: drawing a record may look past its end when its bytes break the format; the room of
    // one longest record after the last keeps that inside the buffer.
    blockRecords[block] =
        std::make_unique_for_overwrite<uint8_t[]>(recordRoom + clip::kMaxRecordBytes);
    blockRecordOffsets[block] = std::make_unique_for_overwrite<uint32_t[]>(recordCount);
    blockRecordTypes[block] = std::make_unique_for_overwrite<uint8_t[]>(recordCount);
    blockTypeCounts[block] = std::make_unique_for_overwrite<uint16_t[]>(clip::kMaxTypeSlots);
    blockTypeStarts[block] = std::make_unique_for_overwrite<uint32_t[]>(clip::kMaxTypeSlots);
    blockRecordCounts[block] = recordCount;
    hasRAM = 1;
    ++blocksAllocated;
}

int32_t c_moxel::load19B() {
    const int frames = clip::framesInBlock(currentBlock, blockCount, frameCount);
    clip::ChangeRuns runs = {0, 0};
    if (frames > 1 && !clip::readChangeRuns(file, frames - 1, tileCount,
                                            blockRuns[currentBlock].get(), runRoom, runs)) {
        return 0;
    }
    const size_t entries = static_cast<size_t>(tileCount) + static_cast<size_t>(runs.changed);
    if (entries > mapRoom) {
        return 0;
    }
    clip::readWords(file, blockMaps[currentBlock].get() + mapOffset, entries);
    clip::readWords(file, blockCodes[currentBlock].get(), static_cast<size_t>(codeWordsInBlock));
    return 1;
}

int32_t c_moxel::load19C(int budget) {
    const int end = recordsDone + std::clamp(budget, 0, recordCount - recordsDone);
    const uint32_t* starts = blockTypeStarts[currentBlock].get();
    const int slots = clip::typeSlots(alpha);
    const uint8_t* room = blockRecords[currentBlock].get() + recordRoom;
    int type = 0;
    for (int record = recordsDone; record < end; ++record) {
        recordOffset += lastRecordLength;
        blockRecordOffsets[currentBlock][static_cast<size_t>(record)] =
            static_cast<uint32_t>(recordOffset);
        while (type + 1 < slots && starts[type + 1] <= static_cast<uint32_t>(record)) {
            ++type;
        }
        blockRecordTypes[currentBlock][static_cast<size_t>(record)] = static_cast<uint8_t>(type);
        const int length =
            clip::readRecord(file, type, recordWrite, static_cast<size_t>(room - recordWrite));
        if (length == 0) {
            return -1;
        }
        recordWrite += length;
        lastRecordLength = static_cast<uint8_t>(length);
    }
    recordsDone = end;
    if (recordsDone < recordCount) {
        return 0;
    }
    std::fill_n(recordWrite, clip::kMaxRecordBytes, uint8_t{0});
    if (currentBlock + 1 != blockCount) {
        return 1;
    }
    fclose(file);
    file = nullptr;
    return 2;
}

void c_moxel::unRLEMap19(int frameInBlock) {
    clip::rebuildMap(blockMaps[currentBlock].get(), blockRuns[currentBlock].get(), tileCount,
                     frameInBlock, scratchMap);
}

// Gives what unRLEMap19 gives frame by frame, without walking each block's runs again for every
// frame.
void c_moxel::unRLEAllMap19() {
    for (int block = 0; block < blockCount; ++block) {
        currentBlock = block;
        clip::rebuildAllMaps(blockMaps[block].get(), blockRuns[block].get(), tileCount,
                             clip::framesInBlock(block, blockCount, frameCount),
                             frameMaps[block * clip::kFramesPerBlock], clip::kMaxTiles);
    }
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
