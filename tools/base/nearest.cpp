#include "tools/base/nearest.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace maker {

namespace {

size_t editsBetween(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < a.size(); ++i) {
        size_t before = std::exchange(row[0], i + 1);
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t changed = before + (a[i] == b[j] ? 0 : 1);
            before = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, before + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string nearestName(std::string_view typed, std::span<const std::string> names) {
    constexpr size_t kMostEdits = 2;
    std::string nearest;
    size_t edits = kMostEdits + 1;
    for (const std::string& name : names) {
        const size_t now = editsBetween(typed, name);
        nearest = now < edits ? name : nearest;
        edits = std::min(edits, now);
    }
    return nearest;
}

}  // namespace maker
