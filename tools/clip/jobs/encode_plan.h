#pragma once
// What has to be known of an input before its first frame is encoded.
//
// Whether the clip has alpha, how many frames there are, at which pace they fit, where the loop is
// cut. The input is decoded beforehand only when one of these needs it, and scaled only for the
// search of a loop.

#include <optional>
#include <string>

#include "tools/clip/jobs/encode_job.h"
#include "tools/clip/jobs/seam.h"

namespace maker {

struct EncodePlan {
    SourceOptions source;      // as the clips are made from it
    int frames = kNoLimit;     // that the source gives, its limit included, when they were counted
    double speed = 1;          // times as fast as the source's own pace
    std::optional<Seam> seam;  // LoopKind::BEST
};

// Throws ToolError when the input has nothing after the start.
EncodePlan planEncode(const std::string& input, const EncodeSettings& settings);

// Makes the alpha that the settings ask for out of the colours.
void applyKey(const EncodeSettings& settings, std::vector<uint8_t>& rgba);

}  // namespace maker
