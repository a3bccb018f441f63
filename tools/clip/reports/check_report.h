#pragma once
// What `velmora-clip check` says: text for people, JSON for machines.

#include <string>

#include "tools/clip/reports/check_set.h"

namespace maker {

std::string asText(const SetReport& report);

// One JSON object, without a line end.
std::string asJson(const std::string& folder, const SetReport& report);

}  // namespace maker
