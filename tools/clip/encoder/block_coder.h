#pragma once
// One block coded: the pictures that it shows, the records that draw them, its palette.
//
// Record numbers and the bytes of the block come later (numbering.h, writer.h): they depend on the
// blocks before. Coding a block depends on nothing else but what stands still (standing_chain.h),
// so that blocks can be coded side by side.

#include <cstdint>
#include <optional>
#include <vector>

#include "tools/clip/encoder/dictionary.h"
#include "tools/clip/encoder/palette.h"
#include "tools/clip/encoder/rate.h"
#include "tools/clip/encoder/record_choice.h"
#include "tools/clip/encoder/simplify.h"
#include "tools/clip/encoder/source_block.h"

namespace maker {

// What kind of pictures a clip has, which decides what a quality below 100 may give up.
enum class Content {
    MIXED,     // a block of at most 256 colours is coded exactly, unless the quality is low
    GRAPHICS,  // such a block is coded exactly at any quality
    FOOTAGE,   // every block is coded by rate and distortion
};

struct CodingPlan {
    int quality = kBestQuality;  // 100 is exact
    Content content = Content::MIXED;
    // Above 1 to make bytes or records dearer than the quality says; leaves no block exact.
    double byteFactor = 1;
    double recordFactor = 1;
    int mostRecords = 0;  // of a block; 0: as many as there are
    // Smooth colours between two of the stage's are shown as patterns of both. Leaves no block
    // exact.
    bool dither = false;
    // Of the source, its standard deviation: what is not kept below 100. Not given: what each block
    // is found to have.
    std::optional<double> noise = std::nullopt;
};

struct CodedBlock {
    BlockTiles tiles;
    RecordSet set;
    PaletteColours palette;
    int frames = 0;
    double squaredError = 0;  // shown against source, all channels, scale 0 to 255
    double noise = 0;         // of the source that was not kept, its standard deviation
    bool limited = false;     // farther from the source than the quality says, for fewer records
    bool exact = false;       // shows the source rounded to RGB565
};

// What stands still goes on as `standing` says, but for a block that is coded exactly or limited.
CodedBlock codeBlock(const SourceBlock& block, const CodingPlan& plan,
                     const StandingTiles& standing = {});

// Whether every block will show its source, whatever it takes.
bool alwaysExact(const CodingPlan& plan);

// What its last frame shows, in raster order.
std::vector<Tile> lastShown(const CodedBlock& coded);

}  // namespace maker
