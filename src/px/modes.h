#pragma once
// The mixing modes: what c_mix::mode holds, and one row for each that a control selects. The panel,
// the keys and the tests read the rows; what a mode does to pixels stands at its id in
// px::Operations.

#include <algorithm>
#include <cstdint>

#include "common/slots.h"

enum MixMode : int32_t {
    MODE_TOP = 0,        // the top layer alone
    MODE_ADD = 1,        // the sum of each field
    MODE_BLEND = 2,      // half of each layer
    MODE_KEY = 3,        // top over bottom, by the top's alpha or else through its black
    MODE_MULTIPLY = 4,   // the product of each field
    MODE_NOTHING = 5,    // no control selects it
    MODE_HALF_HALF = 6,  // left half from the top layer, right half from the bottom layer
};

struct ModeControl {
    MixMode mode;
    InputSlot key;
    const char* cap;         // of the key
    const char* label;       // of the panel's button
    const char* secondLine;  // or null
};

// clang-format off
// From left to right on the panel. Of several keys pressed at once the last of the list wins.
inline constexpr ModeControl kModes[] = {
    {MODE_TOP,       KEY_1, "1", "none",      nullptr},
    {MODE_BLEND,     KEY_2, "2", "blend",     nullptr},
    {MODE_ADD,       KEY_3, "3", "add",       nullptr},
    {MODE_MULTIPLY,  KEY_4, "4", "multiply",  nullptr},
    {MODE_KEY,       KEY_5, "5", "alpha /",   "chroma"},
    {MODE_HALF_HALF, KEY_6, "6", "half half", nullptr},
};
// clang-format on

// Ids are below this.
inline constexpr int kMixModes = 1 + std::ranges::max_element(kModes, {}, &ModeControl::mode)->mode;
