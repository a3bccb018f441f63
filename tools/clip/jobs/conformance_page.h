#pragma once
// The page that goes with the conformance corpus.

#include <string>

#include "tools/clip/jobs/conformance_cases.h"

namespace maker::conformance {

std::string fileOf(const Case& each);
const char* expectedText(Expected expected);  // as the list and the page name it

std::string page();

}  // namespace maker::conformance
