#pragma once
// What the bridge knows of Velmora's stage: it cannot see the picture, so it keeps in mind what its
// own presses did. What the performer does with Velmora's own keys it does not learn.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "common/limits.h"
#include "tools/control/stage/action.h"

namespace control {

enum class Screen : uint8_t {
    UNSURE,  // Velmora ran before the bridge did: taken for MIX
    HOME,
    LIST,
    MIX,
};

struct FilterSwitch {
    bool on = false;
    Direction direction = DIRECTION_UP;

    bool operator==(const FilterSwitch&) const = default;
};

// Of both layers 0 is the bottom one.
struct StageModel {
    Screen screen = Screen::UNSURE;
    int active = 1;
    MixMode mode = MODE_TOP;
    std::array<bool, kLayers> backwards{};
    std::array<std::array<FilterSwitch, kFilterSlots>, kLayers> filters{};
    bool panel = false;
    std::optional<int> selected;  // row of the list, from 0; the playlist loaded last stands there

    bool operator==(const StageModel&) const = default;
};

// Velmora as it starts: its menu, nothing loaded, no filter on.
inline StageModel freshStage() {
    StageModel stage;
    stage.screen = Screen::HOME;
    stage.selected = 0;
    return stage;
}

// What is read of Velmora's own files (stage_files.h).
struct StageFiles {
    std::array<int, kFilterSlots> filters{};  // ids, by letter
    std::vector<int> tracks;                  // of each playlist
};

}  // namespace control
