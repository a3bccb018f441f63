#pragma once
// What velmora-control's own doctor finds, for who has a map for it.

#include <string>

#include "tools/doctor/remarks.h"

namespace doctor {

// Runs the velmora-control beside this program; what it prints, empty when it cannot be run.
std::string askBridge();

// Its lines: "ok " and what is so, "MISSING " and what is not, a colon, and how to mend it.
void judgeBridge(const std::string& lines, Remarks& remarks);

}  // namespace doctor
