#pragma once
// The entries of c_keys::gKeys: keyboard slots 0 to 30, controller slots 31 to 46. Slots that are
// neither named here nor given to a controller function stay 0.

#include "common/limits.h"

enum InputSlot : int {
    KEY_A = 0,
    KEY_Z = 1,
    KEY_X = 2,
    KEY_S = 3,
    KEY_Q = 4,
    KEY_W = 5,
    KEY_RETURN = 6,
    KEY_UP = 8,
    KEY_RIGHT = 9,
    KEY_DOWN = 10,
    KEY_LEFT = 11,
    KEY_F = 12,
    KEY_1 = 13,
    KEY_2 = 14,
    KEY_3 = 15,
    KEY_4 = 16,
    KEY_5 = 17,
    KEY_6 = 18,
    KEY_TAB = 19,
    KEY_SPACE = 20,
    KEY_BACKSPACE = 21,
    KEY_FILTER_Q = 22,  // the filter letters, in the order of the filter slots
    KEY_FILTER_W = 23,
    KEY_FILTER_E = 24,
    KEY_FILTER_R = 25,
    KEY_FILTER_T = 26,
    KEY_FILTER_Y = 27,
    KEY_FILTER_U = 28,
    KEY_FILTER_I = 29,
    KEY_FILTER_O = 30,
    PAD_UP = 31,
    PAD_RIGHT = 32,
    PAD_DOWN = 33,
    PAD_LEFT = 34,
    PAD_UNUSED_4 = 35,  // without a function: known by their entries in the controller map
    PAD_BACK = 36,
    PAD_CONFIRM = 37,
    PAD_UNUSED_7 = 38,
    PAD_UNUSED_8 = 41,
    PAD_BLOCK_REVERSE = 42,
    PAD_UNUSED_10 = 43,
    PAD_UNUSED_11 = 44,
    PAD_HOLD = 45,
    PAD_SHOW_UI = 46,
};

// What a slot holds.
enum KeyState : int { KEY_UP_STATE = 0, KEY_PRESSED = 1, KEY_HELD = 2 };

// The slot of each controller function, by its entry in the controller map.
inline constexpr InputSlot kSlotOfPadEntry[kPadEntries] = {
    PAD_UP,        PAD_RIGHT,     PAD_DOWN,     PAD_LEFT,     PAD_UNUSED_4,
    PAD_BACK,      PAD_CONFIRM,   PAD_UNUSED_7, PAD_UNUSED_8, PAD_BLOCK_REVERSE,
    PAD_UNUSED_10, PAD_UNUSED_11, PAD_HOLD,     PAD_SHOW_UI};
