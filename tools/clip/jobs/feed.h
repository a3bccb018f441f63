#pragma once
// Frames one after the other from a clip or from anything that the encoder reads, for comparing.
//
// Pictures are 640 x height RGBA. Names that end in .m19 are clips, everything else gives the
// frames that the encoder would get of it, of 640 x 360. What is wholly transparent is black, as
// the encoder leaves it. What cannot be read is thrown as ToolError.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tools/clip/jobs/encode_job.h"

namespace maker {

struct Feed {
    int height = 0;
    bool alpha = false;
    std::function<bool(std::vector<uint8_t>&)> next;  // false at the end
    std::function<Sampling()> sampling = nullptr;     // so far; a clip has none
};

// `onStage`: rounded to the colours that the stage can show; a clip has these already. `part`:
// which clip of a split input, from 1.
Feed openFeed(const std::string& path, const EncodeSettings& settings, bool onStage, int part = 1);

}  // namespace maker
