#pragma once
// A clip drawn frame by frame as the program draws it: what the stage shows, in any order.
//
// Opens only clips that pass every bound; others are thrown as ToolError. Every frame is drawn
// whole.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "clip/source.h"
#include "tools/clip/encoder/frame.h"

namespace maker {

class ClipFrames {
public:
    explicit ClipFrames(std::span<const uint8_t> bytes);

    int count() const { return header_.frameCount; }
    int height() const { return header_.height; }
    bool alpha() const { return header_.alpha != 0; }

    // `index` is below count(). `frame` gets alpha levels when the clip has alpha.
    void draw(int index, Frame& frame) const;

private:
    struct LoadedBlock {
        clip::BlockHeader header;
        std::vector<uint16_t> maps;  // of each frame
        std::vector<uint16_t> codes;
        std::vector<uint8_t> records;
        std::vector<uint32_t> recordOffsets;
        std::vector<uint8_t> recordTypes;
    };

    void load(clip::Source& source, int frames, LoadedBlock& loaded) const;

    clip::FileHeader header_{};
    std::vector<LoadedBlock> blocks_;
};

// Reads and opens a clip file; what is thrown names the path.
ClipFrames openClip(const std::string& path);

// The frame as 8-bit RGBA, 640 x height: channels as a display shows RGB565, alpha levels times 17;
// without alpha every pixel is opaque.
void toRgba(const Frame& frame, std::vector<uint8_t>& rgba);

}  // namespace maker
