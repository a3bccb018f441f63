#pragma once
// Files and folders that are looked at again and again for what is new or has changed.
//
// An input is taken when two looks found it in the same state, so that nothing is taken that is
// still being copied. Looks compare names, sizes and times: this sees network folders too, and
// needs no limits raised.

#include <map>
#include <string>
#include <vector>

#include "tools/clip/jobs/import_log.h"

namespace maker {

class WatchedInputs {
public:
    explicit WatchedInputs(const std::vector<std::string>& given) : given_(given) {}

    // What is to be taken now; each state of an input once. Throws ToolError in the first look for
    // what is not there; later that may come back.
    std::vector<std::string> look();

private:
    std::vector<std::string> found();

    std::vector<std::string> given_;
    bool looked_ = false;
    std::map<std::string, InputState> seen_;  // in the look before
    std::map<std::string, InputState> taken_;
};

}  // namespace maker
