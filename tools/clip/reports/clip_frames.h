#pragma once
// A clip decoded to frames by the program's own pure functions: what the stage shows, in any order.
//
// Opens only clips that pass every bound; others are thrown as ToolError. Tile records stay
// compressed and are decoded when a frame is drawn. Every frame is drawn whole.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "clip/format.h"
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
    struct Block {
        clip::BlockHeader header;
        uint32_t typeStarts[clip::kMaxTypeSlots];
        std::vector<uint16_t> maps;   // of each frame
        std::vector<uint16_t> codes;  // code words of each frame
        std::vector<uint8_t> records;
        std::vector<size_t> recordOffsets;
    };

    void readBlock(FILE* file, int frames, Block& block) const;
    void drawRecord(const Block& block, uint16_t number, int code, uint16_t* out,
                    uint8_t* alphaOut) const;

    clip::FileHeader header_{};
    std::vector<Block> blocks_;
};

// Reads and opens a clip file; what is thrown names the path.
ClipFrames openClip(const std::string& path);

// The frame as 8-bit RGBA, 640 x height: channels as a display shows RGB565, alpha levels times 17;
// without alpha every pixel is opaque.
void toRgba(const Frame& frame, std::vector<uint8_t>& rgba);

}  // namespace maker
