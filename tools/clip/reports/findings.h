#pragma once
// What a check found. A problem will show on stage; a note is good to know.

#include <string>
#include <utility>
#include <vector>

namespace maker {

struct Finding {
    bool problem;
    std::string where;  // a file, a playlist or a clip
    std::string text;   // without a full stop
};

class Findings {
public:
    void problem(std::string where, std::string text) {
        all_.push_back({true, std::move(where), std::move(text)});
    }
    void note(std::string where, std::string text) {
        all_.push_back({false, std::move(where), std::move(text)});
    }
    const std::vector<Finding>& all() const { return all_; }
    int problems() const {
        int count = 0;
        for (const Finding& finding : all_) {
            count += finding.problem ? 1 : 0;
        }
        return count;
    }

private:
    std::vector<Finding> all_;
};

}  // namespace maker
