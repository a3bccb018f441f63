#pragma once
// The encoder: quantised frames in, the bytes of a clip out.
//
// Frames are taken one by one and coded block by block; besides the bytes made so far it holds one
// block of frames. At quality 100 every decoder shows exactly the frames that were added. The
// finished bytes have passed the validator; should they ever fail it, finish() throws.

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "tools/clip/frame.h"
#include "tools/clip/merge.h"
#include "tools/clip/numbering.h"

namespace maker {

struct ClipSettings {
    int height = kFrameHeight;  // a multiple of 8, at most 360
    bool alpha = false;
    int quality = kBestQuality;  // 0 to 100, stored in the header
};

struct ClipStats {
    int frames = 0;
    int blocks = 0;
    int records = 0;
    int fillers = 0;  // of the records, those that only take up a number
};

class ClipEncoder {
public:
    explicit ClipEncoder(const ClipSettings& settings);

    // At most kMaxFrames times. The frame has the settings' height, and alpha when they say so.
    void add(const Frame& frame);

    // Once, after one frame or more.
    std::vector<uint8_t> finish();

    const ClipStats& stats() const { return stats_; }

private:
    void flush(bool last);

    ClipSettings settings_;
    ClipStats stats_;
    std::vector<Tile> tiles_;              // of the block under way, frame by frame
    std::vector<uint8_t> bytes_;           // of the file so far; the header is filled in at the end
    std::optional<SeamFrame> firstFrame_;  // of the clip
    std::optional<SeamFrame> lastFrame_;   // of the last block coded
};

// Cuts a frame into tiles, raster order, and appends them.
void appendTiles(const Frame& frame, std::vector<Tile>& tiles);

}  // namespace maker
