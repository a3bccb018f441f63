#pragma once
// The filters: what a filter slot holds, and one row for each. The mixer, the panel, the options
// screen and the tests read the rows; what a filter does to pixels stands at its id in
// px::Operations.

#include <algorithm>
#include <cstdint>
#include <iterator>

// Numbers stand in saved preferences.
enum FilterId : int32_t {
    FILTER_NONE = 0,
    FILTER_MIRROR = 1,
    FILTER_SCROLL = 2,
    FILTER_INVERT = 3,
    FILTER_BURNED = 4,
    FILTER_ZOOM = 5,
    FILTER_HUE = 6,
    FILTER_GAME_BOY = 7,
    FILTER_GLITCH = 8,
    FILTER_SNOW = 9,
};

struct Filter {
    FilterId id;
    const char* name;
};

// In the mixer's order. NONE has no effect, and the clips carry out GLITCH.
// clang-format off
inline constexpr Filter kFilters[] = {
    {FILTER_NONE,     "NONE"},
    {FILTER_GLITCH,   "GLITCH"},
    {FILTER_INVERT,   "INVERT"},
    {FILTER_BURNED,   "BURNED"},
    {FILTER_SNOW,     "SNOW"},
    {FILTER_ZOOM,     "ZOOM"},
    {FILTER_GAME_BOY, "GAME BOY"},
    {FILTER_MIRROR,   "MIRROR"},
    {FILTER_HUE,      "HUE"},
    {FILTER_SCROLL,   "SCROLL"},
};
// clang-format on
inline constexpr int kFilterIds = static_cast<int>(std::size(kFilters));

// The row of an id; of one that there is not the row of NONE, which is the first.
constexpr const Filter& filterOf(int id) {
    const auto* row = std::ranges::find(kFilters, id, &Filter::id);
    return row != std::end(kFilters) ? *row : kFilters[0];
}

static_assert(
    [] {
        for (int id = 0; id < kFilterIds; ++id) {
            if (filterOf(id).id != id) {
                return false;
            }
        }
        return true;
    }(),
    "ids go from 0 up without a gap");
