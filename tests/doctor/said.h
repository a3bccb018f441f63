#pragma once
// Looking for one remark among all.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tools/doctor/remarks.h"

namespace doctor {

// Whether exactly this was said, once.
inline testing::AssertionResult says(const Remarks& remarks, Grade grade, const std::string& about,
                                     const std::string& text, const std::string& mend = "") {
    const auto all = remarks.worstFirst();
    const auto count = std::ranges::count_if(all, [&](const Remark& each) {
        return each.grade == grade && each.about == about && each.text == text && each.mend == mend;
    });
    return count == 1 ? testing::AssertionSuccess()
                      : testing::AssertionFailure() << count << " times, in\n"
                                                    << asText(remarks);
}

// Nothing is worse than this.
inline testing::AssertionResult atWorst(const Remarks& remarks, Grade grade) {
    return remarks.worst() == grade ? testing::AssertionSuccess()
                                    : testing::AssertionFailure() << asText(remarks);
}

}  // namespace doctor
