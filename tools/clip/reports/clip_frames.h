#pragma once
// Clips: found in folders, opened, and drawn frame by frame as the program draws them, in any
// order.
//
// Opens only clips that pass every bound; others are thrown as ToolError. Every frame is drawn
// whole.

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "clip/source.h"
#include "tools/clip/encoder/frame.h"
#include "tools/clip/media/picture.h"

namespace maker {

class ClipFrames {
public:
    explicit ClipFrames(std::span<const uint8_t> bytes);

    int count() const { return header_.frameCount; }
    int height() const { return header_.height; }
    bool alpha() const { return header_.alpha != 0; }

    // `index` is below count(). `frame` gets alpha levels when the clip has alpha.
    void draw(int index, Frame& frame) const;
    Picture picture(int index) const;  // the same, as toRgba() makes it

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

// Every file below `folder` with the name of a clip, older versions included, by its path from
// there, in alphabetical order. Links to folders are followed, but not in circles. A folder that is
// not there holds none.
std::vector<std::string> clipsBelow(const std::filesystem::path& folder);

struct NamedClip {
    std::string name;  // its file's, or its path from the folder that was given
    std::string path;
};

// A clip, or all clips below a folder. Throws ToolError for a folder without any.
std::vector<NamedClip> clipsOf(const std::string& input);

// Whether a text names frames of a clip by numbers and ranges, such as "0,5,10-20".
bool isFrameList(const std::string& text);

// In the order given, 20-10 backwards; an empty text names all. Throws ToolError for a frame that a
// clip of `count` frames does not have.
std::vector<int> framesOf(const std::string& text, int count);

}  // namespace maker
