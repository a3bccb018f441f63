#pragma once
// A clip's facts as text or JSON, for `velmora-clip info`.
//
// A clip that breaks off is described as far as it is in order, with its fault. Bytes too few for
// a file header have no description.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "clip/validate.h"

namespace maker {

struct Description {
    size_t fileBytes = 0;
    clip::FileHeader header{};
    std::vector<clip::BlockLayout> blocks;
    clip::Verdict verdict{};
};

// False without a whole file header of version 19.
bool describe(std::span<const uint8_t> bytes, Description& description);

std::string asText(const std::string& path, const Description& description);

// One JSON object, without a line end.
std::string asJson(const std::string& path, const Description& description);

}  // namespace maker
