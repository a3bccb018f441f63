#pragma once
// Whether the clips here are those that a score was played with, as far as it names them.

#include <filesystem>
#include <string>
#include <vector>

#include "tools/score/score.h"

namespace maker {

// A sentence, without a full stop, for each clip that gives other pictures here. `folder` is
// Velmora's.
std::vector<std::string> otherClips(const Score& score, const std::filesystem::path& folder);

}  // namespace maker
