#pragma once
// The encoder: RGBA pictures in, the bytes of a clip out.
//
// Pictures are added one by one and coded block by block. At quality 100 without a budget every
// decoder shows exactly the pictures added, each channel rounded to the nearest RGB565 level; below
// that, differences are given up where the bytes or records that they cost are best saved. The
// finished bytes have passed the validator; should they ever fail it, finish() throws.

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "tools/clip/frame.h"
#include "tools/clip/merge.h"
#include "tools/clip/numbering.h"

namespace maker {

inline constexpr int kDefaultQuality = 85;

// What kind of pictures a clip has, which decides what a quality below 100 may give up.
enum class Content {
    MIXED,     // told block by block
    GRAPHICS,  // a block of at most 256 colours is coded exactly
    FOOTAGE,   // always coded by rate and distortion
};

struct ClipSettings {
    int height = kFrameHeight;   // a multiple of 8, at most 360
    bool alpha = false;          // else the pictures' alpha is ignored
    int quality = kBestQuality;  // 0 to 100, stored in the header
    Content content = Content::MIXED;
    bool dither = false;            // spread the rounding to RGB565 over a pattern
    int frames = clip::kMaxFrames;  // that will be added, at most: budgets are shared out over them
    int64_t recordBudget = 0;       // tile records of the whole clip; 0: no budget
    int64_t byteBudget = 0;         // bytes of the whole clip; 0: no budget
    int workers = 1;                // threads that code blocks
};

struct ClipStats {
    int frames = 0;
    int blocks = 0;
    int records = 0;
    int fillers = 0;          // of the records, those that only take up a number
    double squaredError = 0;  // of every colour channel of every pixel shown, scale 0 to 255
    double samples = 0;       // channels compared

    double psnr() const;  // decibels, as shown on stage; infinite without any error
};

class ClipEncoder {
public:
    explicit ClipEncoder(const ClipSettings& settings);

    // At most kMaxFrames times: 640 x height x 4 bytes, red, green, blue, straight alpha.
    void add(const uint8_t* rgba);

    // The same for a picture that is RGB565 already, with alpha when the settings say so.
    void add(const Frame& frame);

    // Once, after one frame or more.
    std::vector<uint8_t> finish();

    const ClipStats& stats() const { return stats_; }

private:
    void flush(bool last);

    ClipSettings settings_;
    ClipStats stats_;
    Frame quantised_;
    std::vector<Tile> tiles_;              // of the block under way, frame by frame
    std::vector<uint8_t> bytes_;           // of the file so far; the header is filled in at the end
    std::optional<SeamFrame> firstFrame_;  // of the clip
    std::optional<SeamFrame> lastFrame_;   // of the last block coded
};

// Cuts a frame into tiles, raster order, and appends them.
void appendTiles(const Frame& frame, std::vector<Tile>& tiles);

}  // namespace maker
