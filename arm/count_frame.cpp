// Runs one piece of a frame's work between two marks, for the plugin that counts instructions. The
// piece runs once before, so that nothing is bound or chosen for the first time between the marks.
//
//   count_frame PIECE
//   count_frame          lists the pieces
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "bench/longest_frame.h"
#include "bench/synthetic_clip.h"
#include "common/limits.h"
#include "core/display.h"
#include "marks.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "px/operations.h"
#include "tests/support/folder.h"
#include "tests/support/stage_objects.h"

namespace {

constexpr int kClipFrames = 16;
constexpr int kDrawnFrame = 5;  // the first one of a block is drawn whole, whatever was before
constexpr int kTopLayer = 1;
constexpr int kAlphaLevels = 16;

using Work = std::function<void()>;

struct Piece {
    const char* name;
    Work (*prepare)();
};

void fillWithNoise() {
    std::mt19937 random(1);
    for (int i = 0; i < kLayers * kFramePixels; ++i) {
        moxelTiles16[i] = static_cast<uint16_t>(random());
    }
    for (int i = 0; i < kFramePixels; ++i) {
        moxelAlpha16[i] = static_cast<uint8_t>(random() % kAlphaLevels);
    }
    memcpy(finalTilesTracks, moxelTiles16, kLayers * kFrameBytes);
}

// The layers copied, mixed and doubled.
Work mixedFrame(MixMode mode) {
    fillWithNoise();
    mix->mode = mode;
    return [] { mix->finRender(0, kClipFrames); };
}

Work keyedPicture() {
    fillWithNoise();
    return [] {
        px::operations().mixPicture(
            videoView(), MODE_KEY,
            {finalTilesTracks, finalTilesTracks + kFramePixels, moxelAlpha16});
    };
}

// A clip of which every tile changes from frame to frame.
Work drawnTiles(TileKind kind, int redraws, bool alpha = false) {
    writeClip("tiles.m19", syntheticClip(kind, kClipFrames, 100, alpha));
    loadAlmost(moxel[0], "tiles.m19");
    moxel[0].loopLoad(1);
    return [=] {
        moxel[0].redrawCount = redraws;
        moxel[0].renderMoxel19(kTopLayer, kDrawnFrame, alpha ? MODE_KEY : MODE_TOP);
    };
}

using WidePicture = std::vector<uint32_t>;

constexpr size_t kSurfacePixels = size_t{kHdmiWidth} * kHdmiHeight;

// The video surface as a display of 24 bits gets it, row by row as present() does.
void widenSurface(WidePicture& wide) {
    for (int y = 0; y < kHdmiHeight; ++y) {
        px::operations().widenChanged(wide.data() + static_cast<size_t>(y) * kHdmiWidth,
                                      px::outputRow(videoView(), y), kHdmiWidth);
    }
}

// Black pictures to widen the surface onto, one for each run, so that each finds all rows changed.
class BlackPictures {
public:
    WidePicture& next() { return pictures_[static_cast<size_t>(used_++ % 2)]; }

private:
    WidePicture pictures_[2] = {WidePicture(kSurfacePixels), WidePicture(kSurfacePixels)};
    int used_ = 0;
};

Work changedSurface() {
    fillWithNoise();
    px::operations().placePicture(videoView(), moxelTiles16);
    return [black = std::make_shared<BlackPictures>()] { widenSurface(black->next()); };
}

Work unchangedSurface() {
    fillWithNoise();
    px::operations().placePicture(videoView(), moxelTiles16);
    return [wide = std::make_shared<WidePicture>(kSurfacePixels)] { widenSurface(*wide); };
}

// What SDL does in its place.
Work surfaceBySdl() {
    fillWithNoise();
    px::operations().placePicture(videoView(), moxelTiles16);
    SDL_Surface* display = SDL_CreateRGBSurface(SDL_SWSURFACE, kHdmiWidth, kHdmiHeight, 32,
                                                0xFF0000, 0x00FF00, 0x0000FF, 0);
    return [display] { SDL_BlitSurface(screen[1], nullptr, display, nullptr); };
}

Work shownLongestFrame() {
    prepareLongestFrame();
    return [black = std::make_shared<BlackPictures>()] {
        drawLongestFrame();
        widenSurface(black->next());
    };
}

constexpr Piece kPieces[] = {
    {"nothing", [] { return Work([] {}); }},
    {"blend", [] { return mixedFrame(MODE_BLEND); }},
    {"add", [] { return mixedFrame(MODE_ADD); }},
    {"multiply", [] { return mixedFrame(MODE_MULTIPLY); }},
    {"alpha-key", keyedPicture},
    {"flat-tiles", [] { return drawnTiles(TileKind::kFlat, 1); }},
    {"raw-tiles", [] { return drawnTiles(TileKind::kRaw, 1); }},
    {"palette-tiles", [] { return drawnTiles(TileKind::kPalette, 1); }},
    {"four-runs-tiles", [] { return drawnTiles(TileKind::kFourRuns, 1); }},
    {"short-runs-tiles", [] { return drawnTiles(TileKind::kShortRuns, 1); }},
    {"short-runs-alpha", [] { return drawnTiles(TileKind::kShortRuns, 1, true); }},
    {"unchanged", [] { return drawnTiles(TileKind::kShortRuns, 0); }},
    {"longest-frame",
     [] {
         prepareLongestFrame();
         return Work(drawLongestFrame);
     }},
    {"present", changedSurface},
    {"present-unchanged", unchangedSurface},
    {"present-by-sdl", surfaceBySdl},
    {"longest-frame-shown", shownLongestFrame},
};

void mark(uint32_t which) {
    syscall(SYS_close, which);
}

int listPieces() {
    for (const Piece& piece : kPieces) {
        puts(piece.name);
    }
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    for (const Piece& piece : kPieces) {
        if (argc != 2 || strcmp(argv[1], piece.name) != 0) {
            continue;
        }
        const TemporaryFolder folder;
        std::filesystem::create_directory("videos");
        const StageObjects stage(kHdmiWidth, kHdmiHeight);
        const Work work = piece.prepare();
        work();
        mark(kCountBegin);
        work();
        mark(kCountEnd);
        return 0;
    }
    return listPieces();
}
