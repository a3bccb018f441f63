#pragma once
// A clip's facts as text or JSON, and what becomes of it on stage in a few words.
//
// A clip that breaks off is described as far as it is in order, with its fault and without its
// costs. Bytes too few for a file header, or of another version, have no description; their verdict
// is filled in all the same.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "clip/load_cost.h"
#include "clip/validate.h"

namespace maker {

// What a clip costs on stage: how long until it is ready, by the steps of clip/load_cost.h, and its
// memory.

using clip::kStepSeconds;
// A full clip of 256 frames should be ready by then; a slower one keeps a set waiting.
inline constexpr double kSlowSeconds = 12;

struct LoadCost {
    int steps = 0;       // frames that the loader takes, as any clip but the first of a playlist
    double seconds = 0;  // the same in seconds
    int stepsAsFirst = 0;
    double secondsAsFirst = 0;
    size_t memory = 0;  // bytes that the clip takes when loaded, its slot included
};

// `blocks` are all blocks of a clip that plays.
LoadCost loadCost(std::span<const clip::BlockLayout> blocks);

// Bytes of an empty clip slot; the program holds all 50 of them all the time.
size_t slotBytes();

struct Description {
    size_t fileBytes = 0;
    clip::FileHeader header{};
    std::vector<clip::BlockLayout> blocks;
    clip::Verdict verdict{};
    LoadCost cost;  // of a clip that plays

    bool plays() const { return verdict.ok || verdict.kind == clip::FAULT_TRAILING; }
    bool slow() const { return cost.seconds > kSlowSeconds; }
};

// False without a whole file header of version 19.
bool describe(std::span<const uint8_t> bytes, Description& description);

// "plays", "plays, but loads slowly: 14.2 s ...", or what is wrong and where.
std::string verdictText(const Description& description);

std::string asText(const std::string& path, const Description& description);

// One JSON object, without a line end.
std::string asJson(const std::string& path, const Description& description);

}  // namespace maker
