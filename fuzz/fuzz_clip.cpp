// Any bytes as a clip: it loads or is refused, in one go as in small steps; what loads is drawn
// whole as the plain functions draw it, and forwards, backwards and at random without leaving the
// buffers. What the validator accepts loads.
//
// Input: the file. How it is stepped through follows from its bytes.
#include <cstring>
#include <vector>

#include "clip/paint.h"
#include "clip/plain_tile.h"
#include "clip/validate.h"
#include "common/limits.h"
#include "fuzz/input.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "tests/support/stage_objects.h"

namespace {

using fuzz::require;

constexpr int kReady = 2;
constexpr int kWholeBudget = 65000;
constexpr int kSteps[] = {1, 7, 60, 2000};
constexpr int kMostTilesDrawn = 4000;
constexpr int kMostDraws = 8;

struct Stage {
    Stage() {
        fuzz::silenceOutput();
        const uint8_t header[] = {clip::kVersion, 50, 0x80, 2, 8, 0, 1, 16, 0, 1};
        otherFile.write(header, sizeof header);
    }

    // With `scanned`, the playlists' scan reads another file's header between any two steps, but
    // among the records of a block at every sixteenth alone: there may be thousands of steps.
    int load(int budget, bool scanned) {
        clip->init("", "input.m19");
        clip->path = file.path();
        int result = 1;
        while (result == 1) {
            result = clip->loopLoad(budget);
            if (scanned && result == 1 && (clip->loadStage != 2 || clip->recordsDone % 16 == 0)) {
                clip->miniLoad(otherFile.path());
            }
        }
        return result;
    }

    StageObjects objects;
    c_moxel* clip = moxel;
    fuzz::MemoryFile file;
    fuzz::MemoryFile otherFile;  // the header of a clip of 256 frames
};

// A tile as clip/plain_tile.h draws it.
void drawPlainTile(const c_moxel& clip, int block, uint16_t entry, int code, uint16_t* out,
                   uint8_t* levels) {
    clip::fillTile(out, code == clip::CODE_FLAT ? entry : 0);
    const bool record = code != clip::CODE_FLAT && entry < clip.blockRecordCounts[block];
    const bool opaque = code == clip::CODE_FLAT || (record && code != clip::CODE_EMPTY);
    clip::fillTileAlpha(levels, opaque ? clip::kAlphaOpaque : 0);
    if (!record) {
        return;
    }
    const uint8_t* bytes = clip.blockRecords[block].get() + clip.blockRecordOffsets[block][entry];
    const int type = clip.blockRecordTypes[block][entry];
    clip::drawPlainTile(bytes, type, code, clip.blockPalettes[block].get(), out, levels);
}

// The frame drawn whole by both.
void checkWholeFrame(Stage& stage, int frame) {
    static std::vector<uint16_t> pixels(kFramePixels);
    static std::vector<uint8_t> levels(kFramePixels);
    c_moxel& clip = *stage.clip;
    const int block = frame / clip::kFramesPerBlock;
    const uint16_t* codes = clip.blockCodes[block].get() +
                            frame % clip::kFramesPerBlock * clip::codeWordsFor(clip.tileCount);
    for (int tile = 0; tile < clip.tileCount; ++tile) {
        const int at = tile / clip::kTilesAcross * clip::kTileSize * kFrameWidth +
                       tile % clip::kTilesAcross * clip::kTileSize;
        drawPlainTile(clip, block, clip.frameMaps[frame][tile], clip::codeAt(codes, tile),
                      pixels.data() + at, levels.data() + at);
    }
    clip.redrawCount = 1;
    clip.renderMoxel19(1, frame, MODE_KEY);
    const auto drawn = static_cast<size_t>(clip.tileCount) * clip::kTilePixels;
    require(memcmp(pixels.data(), moxelTiles16 + clip.pixelCount, 2 * drawn) == 0,
            "a frame has the pixels of its tiles");
    require(clip.alpha == 0 || memcmp(levels.data(), moxelAlpha16, drawn) == 0,
            "a frame has the levels of its tiles");
}

uint32_t nextRandom(uint32_t& state) {
    state = state * 1664525 + 1013904223;
    return state >> 8;
}

void drawSome(Stage& stage, uint32_t random) {
    c_moxel& clip = *stage.clip;
    const int draws = std::clamp(kMostTilesDrawn / (clip.tileCount + 1), 3, kMostDraws);
    const int frames = clip.frameCount;
    for (int i = 0; i < draws; ++i) {
        clip.renderMoxel19(1, i % frames, MODE_KEY);
        clip.renderMoxel19(0, (frames - 1 - i % frames), MODE_TOP);
        const int anywhere = static_cast<int>(nextRandom(random)) % frames;
        clip.renderMoxel19(static_cast<int>(nextRandom(random) % kLayers), anywhere, MODE_KEY);
    }
    for (const int frame : {0, frames / 2, frames - 1}) {
        checkWholeFrame(stage, frame);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Stage stage;
    c_moxel& clip = *stage.clip;
    stage.file.write(data, size);
    uint32_t random = 2166136261u;
    for (size_t i = 0; i < size; i += 1 + size / 64) {
        random = (random ^ data[i]) * 16777619u;
    }
    const int result = stage.load(kWholeBudget, false);
    require(result == kReady || !clip::validate({data, size}).ok, "a clip in order loads");
    if (result == kReady) {
        drawSome(stage, random);
        clip.killRAM();
    }
    require(stage.load(kSteps[nextRandom(random) % std::size(kSteps)], true) == result,
            "the size of its steps does not decide whether a clip loads");
    if (result == kReady) {
        drawSome(stage, random);
        // The playlists' scan reads other files' headers into slots that play.
        clip.miniLoad(stage.otherFile.path());
        clip.renderMoxel19(1, clip.frameCount - 1, MODE_KEY);
    }
    require(clip.file == nullptr, "no file stays open");
    clip.killRAM();
    return 0;
}
