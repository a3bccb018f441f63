#pragma once
// c_moxel: one clip, whole in memory, ready to draw any of its frames in any order.
//
// The global array `moxel` holds 50 of them, one for each deck of the loaded playlist; the playlist
// screen owns one more for its preview. A clip is loaded in bounded steps: init(), then loopLoad()
// once a frame until it returns 2 (ready, state 3) or 0 (cannot be played; nothing stays allocated
// or open). Files are trusted as far as they stay inside this object's own buffers. Tile records
// stay compressed and are decoded when drawn; the maps of all frames are expanded once, which gives
// the object its fixed size of about 1.8 MB. The object owns all its buffers; killRAM() frees them.
// Memory that cannot be had is a clip that cannot be played, and one line says so.

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "clip/block.h"
#include "clip/frame.h"
#include "clip/plain_tile.h"

enum ClipState : int32_t { CLIP_LOADING = 0, CLIP_READY = 3 };

// What c_moxel::loopLoad() answers, but for 1: more to do.
enum LoadEnd : int32_t { LOAD_FAILED = 0, LOAD_FINISHED = 2 };

class c_moxel {
public:
    // Prepares the object for loading ./videos/<name>. Reads nothing.
    void init(const std::string& prefix, const std::string& clipName);
    // Reads the header of the file at `clipPath` only, over this clip's own header fields. 1, or 0
    // when it is missing or not version 19.
    int32_t miniLoad(const std::string& clipPath);
    // One step of loading: 0 failed, 1 more to do, 2 done. `budget` is how many tile records a step
    // may read.
    int32_t loopLoad(int budget);

    // Where the next loopLoad() reads in the file, at the most; nothing when it reads nothing.
    struct Reach {
        long from;
        long end;
    };
    Reach nextReach(int budget) const;

    int32_t load19A();   // opens the file and reads its header; 0 when it cannot be played
    int32_t load19AA();  // block header of currentBlock; 0 when there is no memory for it
    int32_t load19B();   // change runs, map entries and tile codes of currentBlock
    int32_t load19C(
        int budget);  // tile records: 0 more, 1 block done, 2 last block done, -1 refused
    bool initKeyFrameRAM(int block);    // false: no memory for all of it
    void unRLEMap19(int frameInBlock);  // one frame's map of currentBlock into scratchMap
    void unRLEAllMap19();               // every frame's map into frameMaps
    void unRLETile19(unsigned char* record, int type, int code);

    void killRAM();
    void destroy();
    void resetBMap() {}  // does nothing
    void refresh() {}    // does nothing: a deck that is changed starts whole, with its first frame

    // Draws `frame` (below frameCount; state must be 3) into layer `layer` of moxelTiles16 and, for
    // layer 1 in mixing mode 3, its alpha into moxelAlpha16. Only tiles that differ from the frame
    // this object drew last are touched.
    void renderMoxel19(int layer, int frame, int mode);

    std::string name;  // as given to init(), no folder
    std::string path;  // "./videos/" + name
    int32_t fileSize = 0;
    uint8_t version = 0;
    uint8_t quality = 0;
    uint8_t alpha = 0;
    uint16_t frameCount = 0;
    uint16_t recordCount = 0;         // of the block being loaded
    uint32_t mapWords = 0;            // likewise
    int32_t codeWordsInBlock = 0;     // likewise
    uint32_t recordWords = 0;         // likewise
    void* legacyBuffers[5] = {};      // of the older formats; this version never allocates them
    std::vector<uint16_t> prevMap;    // the frame drawn last; grows only, kept from load to load
    std::vector<uint16_t> prevCodes;  // likewise
    int32_t loadStage = 0;            // 0 headers, 1 first block's maps, 2 records, 3 expansion
    uint16_t* currentMap = nullptr;
    int32_t mapOffset = 0;  // always 0
    int32_t recordsDone = 0;
    uint8_t lastRecordLength = 0;
    int32_t recordOffset = 0;
    uint8_t* recordWrite = nullptr;
    uint16_t palette[clip::kPaletteEntries] = {};  // of the block of the frame being drawn
    uint16_t frameMaps[clip::kMaxFrames][clip::kMaxTiles];
    uint16_t* drawPointer = nullptr;
    int32_t redrawCount = 0;
    int32_t state = CLIP_LOADING;
    uint16_t width = 0;
    uint16_t height = 0;
    int32_t tilesAcross = 0;
    int32_t tilesDown = 0;
    int32_t tileCount = 0;
    int32_t pixelCount = 0;
    int32_t hasRAM = 0;
    FILE* file = nullptr;  // open from load19A until the last record is read
    std::unique_ptr<uint16_t[]> blockMaps[clip::kMaxBlocks];
    std::unique_ptr<uint8_t[]> blockRuns[clip::kMaxBlocks];
    std::unique_ptr<uint16_t[]> blockCodes[clip::kMaxBlocks];
    std::unique_ptr<uint8_t[]> blockRecords[clip::kMaxBlocks];
    std::unique_ptr<uint32_t[]> blockRecordOffsets[clip::kMaxBlocks];
    std::unique_ptr<uint8_t[]> blockRecordTypes[clip::kMaxBlocks];
    std::unique_ptr<uint16_t[]> blockPalettes[clip::kMaxBlocks];
    std::unique_ptr<uint16_t[]> blockTypeCounts[clip::kMaxBlocks];
    std::unique_ptr<uint32_t[]> blockTypeStarts[clip::kMaxBlocks];
    int32_t currentBlock = 0;
    uint8_t blockCount = 0;
    uint8_t blocksAllocated = 0;
    int32_t drawnDirect = 0;
    int32_t columnOrder = 0;
    clip::TileRuns tileRuns = {};
    uint8_t tileAlpha[clip::kTilePixels] = {};
    uint16_t scratchMap[clip::kMaxTiles];
    uint16_t blockRecordCounts[clip::kMaxBlocks] = {};  // bounds the record numbers of a map
    clip::FileHeader ownHeader = {};  // of the file loaded; miniLoad() leaves it alone
    size_t mapRoom = 0;               // entries that currentBlock's map buffer holds
    size_t runRoom = 0;               // bytes that its run buffer holds
    size_t recordRoom = 0;            // bytes that its record buffer holds

private:
    int32_t refuse();
    int32_t takeHeader(const clip::FileHeader& header);
    bool loadBlock(int budget);
    clip::Block loadedBlock() const;
    size_t recordBytesOf(int budget) const;
    clip::FrameDrawing drawingOf(int frame, uint16_t* out, uint8_t* levels, bool flatOnly);
    void keepLevels(const clip::FrameDrawing& drawing, int lastRecord);
};
