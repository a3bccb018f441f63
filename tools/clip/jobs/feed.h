#pragma once
// Frames one after the other from a clip or from anything that the encoder reads, for comparing.
//
// Pictures are 640 x height RGBA. Names that end in .m19 are clips, everything else goes the way
// that it goes through the encoder, to 640 x 360. What is wholly transparent is black, as the
// encoder leaves it. What cannot be read is thrown as ToolError.

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "tools/clip/media/source.h"

namespace maker {

struct Feed {
    int height = 0;
    bool alpha = false;
    std::function<bool(std::vector<uint8_t>&)> next;  // false at the end
    std::function<Sampling()> sampling = nullptr;     // so far; a clip has none
};

// `onStage`: rounded to the colours that the stage can show; a clip has these already.
Feed openFeed(const SourceOptions& options, bool onStage);

}  // namespace maker
