#include "tools/clip/jobs/watched_inputs.h"

#include <utility>

#include "tools/base/errors.h"

namespace maker {

std::vector<std::string> WatchedInputs::found() {
    try {
        return scanInputs(given_).inputs;
    } catch (const ToolError&) {
        if (!looked_) {
            throw;
        }
        return {};
    }
}

std::vector<std::string> WatchedInputs::look() {
    std::map<std::string, InputState> now;
    std::vector<std::string> settled;
    for (const std::string& input : found()) {
        const InputState state = stateOf(input);
        const auto before = seen_.find(input);
        const auto taken = taken_.find(input);
        now[input] = state;
        if (before != seen_.end() && before->second == state &&
            (taken == taken_.end() || taken->second != state)) {
            taken_[input] = state;
            settled.push_back(input);
        }
    }
    looked_ = true;
    seen_ = std::move(now);
    return settled;
}

}  // namespace maker
