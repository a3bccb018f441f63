#pragma once
// Checksums of a score's pictures: the same score gives the same ones every time, so they tell
// whether two runs of two scores, or of two versions of the program, show the same.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

#include "tools/render/take.h"

namespace maker {

uint64_t sumOf(const StagePicture& picture);

struct DiffSettings {
    std::filesystem::path folder;  // Velmora's
    bool interface = false;
};

// The first frame that the two show differently, or that only one of them has; none when they show
// the same. Each is run in a process of its own.
std::optional<int> firstDifference(const Score& one, const Score& other,
                                   const DiffSettings& settings);

}  // namespace maker
