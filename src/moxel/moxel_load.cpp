// The staged loading of a clip: what is read in which step, and what is refused.
#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "clip/block.h"
#include "clip/mapbuild.h"
#include "common/memory.h"
#include "common/messages.h"
#include "files/regular_file.h"
#include "moxel/moxel.h"

namespace {

int32_t refuseForMemory() {
    puts(msg::kNoMemoryForClip);
    return 0;
}

// A file that cannot be opened for the check is passed over silently, unless memory is short.
int32_t refuseUnopened() {
    return errno == ENOMEM ? refuseForMemory() : 0;
}

// It stands behind it then.
clip::FileHeader headerOf(FILE* file) {
    clip::Source source(file);
    return clip::readFileHeader(source);
}

}  // namespace

void c_moxel::init(const std::string&, const std::string& clipName) {
    const bool named = withinMemory([&] {
        name = clipName;
        path = "./videos/";
        path += name;
    });
    if (!named) {
        // No file has this path: loading it is refused.
        puts(msg::kNoMemoryForClip);
        name.clear();
        path.clear();
    }
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
    FILE* sized = openRegularFile(clipPath);
    if (sized == nullptr) {
        return refuseUnopened();
    }
    fseek(sized, 0, SEEK_END);
    fileSize = static_cast<int32_t>(ftell(sized));
    fclose(sized);

    FILE* opened = openRegularFile(clipPath);
    if (opened == nullptr) {
        return refuseUnopened();
    }
    takeHeader(headerOf(opened));
    fclose(opened);
    return version == clip::kVersion ? 1 : 0;
}

// Of the records of a step, and of the next block's header and maps when it ends a block.
size_t c_moxel::recordBytesOf(int budget) const {
    const size_t done = static_cast<size_t>(recordOffset) + lastRecordLength;
    const auto records = static_cast<size_t>(std::min(budget, recordCount - recordsDone));
    const size_t bytes = std::min(records * clip::kMaxRecordBytes, recordRoom - done);
    if (recordsDone + budget < recordCount || currentBlock + 1 == blockCount) {
        return bytes;
    }
    const int frames = clip::framesInBlock(currentBlock + 1, blockCount, frameCount);
    const clip::BlockRoom room = clip::blockRoom(0, 0, UINT32_MAX, frames, tileCount);
    return bytes + clip::blockHeaderBytes(alpha) + room.mapBytes();
}

c_moxel::Reach c_moxel::nextReach(int budget) const {
    // The stream and clip::Source read up to here past what they hand on.
    constexpr long kPast = 8192;
    if (loadStage == 0) {
        return {0, static_cast<long>(clip::kHeaderBytes + clip::blockHeaderBytes(1)) + kPast};
    }
    if (file == nullptr) {
        return {0, 0};
    }
    const clip::BlockRoom room = {mapRoom, runRoom, static_cast<size_t>(codeWordsInBlock), 0, 0};
    const long from = ftell(file);
    const size_t bytes = loadStage == 1 ? room.mapBytes() : recordBytesOf(budget);
    return {from, from + static_cast<long>(bytes) + kPast};
}

// The file cannot be played: nothing of it stays open or allocated, and a further loopLoad() starts
// from the beginning.
int32_t c_moxel::refuse() {
    killRAM();
    loadStage = 0;
    return 0;
}

int32_t c_moxel::loopLoad(int budget) {
    if (loadStage == 0) {
        if (miniLoad(path) == 0) {
            return LOAD_FAILED;
        }
    } else {
        // Guard: the playlists' scan may have read another file's header into this slot since the
        // last step; the blocks that follow are those of the file that is open.
        takeHeader(ownHeader);
    }
    bool goesOn = true;
    switch (loadStage) {
        case 0:
            goesOn = load19A() == 1 && load19AA() == 1;
            loadStage = 1;
            break;
        case 1:
            goesOn = load19B() == 1;
            loadStage = 2;
            break;
        case 2:
            goesOn = loadBlock(budget);
            break;
        case 3:
            // The stage stays 3: loading a ready clip again repeats the expansion and answers 2.
            unRLEAllMap19();
            currentBlock = 0;
            state = CLIP_READY;
            return LOAD_FINISHED;
        default:
            break;
    }
    return goesOn ? 1 : refuse();
}

// False when it is refused. The next block's header, runs, maps and codes are read in the call that
// ends a block.
bool c_moxel::loadBlock(int budget) {
    const int32_t end = load19C(budget);
    if (end == 1) {
        ++currentBlock;
        return load19AA() == 1 && load19B() == 1;
    }
    loadStage = end == 2 ? 3 : loadStage;
    return end >= 0;
}

int32_t c_moxel::load19A() {
    puts(path.c_str());
    file = openRegularFile(path);
    if (file == nullptr) {
        puts(errno == ENOMEM ? msg::kNoMemoryForClip : msg::kClipVanished);
        return 0;
    }
    ownHeader = headerOf(file);
    if (takeHeader(ownHeader) == 0) {
        return 0;
    }
    tilesAcross = width / clip::kTileSize;
    tilesDown = height / clip::kTileSize;
    tileCount = tilesAcross * tilesDown;
    pixelCount = width * height;
    // They outlive killRAM(), so a night of reloading takes no new memory for them.
    const auto tiles = static_cast<size_t>(tileCount);
    const bool hasMaps = withinMemory([&] {
        prevMap.resize(std::max(prevMap.size(), tiles));
        prevCodes.resize(std::max(prevCodes.size(), tiles / clip::kCodesPerWord));
    });
    currentBlock = 0;
    blocksAllocated = 0;
    return hasMaps ? 1 : refuseForMemory();
}

int32_t c_moxel::load19AA() {
    clip::BlockHeader header;
    {
        clip::Source source(file);
        clip::readBlockHeader(source, alpha, header);
    }
    recordCount = header.recordCount;
    recordWords = header.recordWords;
    mapWords = header.mapWords;
    if (!initKeyFrameRAM(currentBlock)) {
        return refuseForMemory();
    }
    recordsDone = 0;
    lastRecordLength = 0;
    recordOffset = 0;
    mapOffset = 0;

    const auto slots = static_cast<size_t>(clip::typeSlots(alpha));
    std::copy_n(header.typeCounts, slots, blockTypeCounts[currentBlock].get());
    clip::startTypes(header.typeCounts, clip::typeSlots(alpha),
                     blockTypeStarts[currentBlock].get());
    std::copy_n(header.palette, clip::kPaletteEntries, blockPalettes[currentBlock].get());
    recordWrite = blockRecords[currentBlock].get();
    currentMap = blockMaps[currentBlock].get();
    return 1;
}

// The block that is being loaded, as far as it is.
clip::Block c_moxel::loadedBlock() const {
    return {
        .frames = clip::framesInBlock(currentBlock, blockCount, frameCount),
        .tiles = tileCount,
        .slots = clip::typeSlots(alpha),
        .room = {mapRoom, runRoom, static_cast<size_t>(codeWordsInBlock), recordCount, recordRoom},
        .typeStarts = blockTypeStarts[currentBlock].get(),
        .map = blockMaps[currentBlock].get() + mapOffset,
        .runs = blockRuns[currentBlock].get(),
        .codes = blockCodes[currentBlock].get(),
        .records = blockRecords[currentBlock].get(),
        .recordOffsets = blockRecordOffsets[currentBlock].get(),
        .recordTypes = blockRecordTypes[currentBlock].get(),
        .recordsDone = recordsDone,
        .recordsEnd = static_cast<size_t>(recordOffset + lastRecordLength),
    };
}

int32_t c_moxel::load19B() {
    clip::Block block = loadedBlock();
    clip::Source source(file);
    return clip::loadMaps(source, block) ? 1 : 0;
}

int32_t c_moxel::load19C(int budget) {
    clip::Block block = loadedBlock();
    clip::Records result;
    {
        clip::Source source(file);
        result = clip::loadRecords(source, budget, block);
    }
    if (result == clip::Records::kRefused) {
        return -1;
    }
    recordsDone = block.recordsDone;
    recordWrite = block.records + block.recordsEnd;
    if (recordsDone > 0) {
        recordOffset = static_cast<int32_t>(block.recordOffsets[recordsDone - 1]);
        lastRecordLength = static_cast<uint8_t>(recordWrite - block.records - recordOffset);
    }
    if (result == clip::Records::kMore) {
        return 0;
    }
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
