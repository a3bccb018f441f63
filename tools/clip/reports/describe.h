#pragma once
// A clip's facts as text or JSON, and what becomes of it on stage in a few words.
//
// A clip that breaks off is described as far as it is in order, with its fault and without its
// costs. Bytes too few for a file header, or of another version, have no description; their verdict
// is filled in all the same.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "clip/validate.h"
#include "tools/clip/reports/load_cost.h"

namespace maker {

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
