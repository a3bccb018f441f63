#pragma once
// The entries of c_keys::gKeys: keyboard slots 0 to 30, controller slots 31 to 46. The slots that
// are not named here stay 0.

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
    KEY_FILTER_FIRST = 22,  // the filter letters q w e r t y u i o, in slot order
    KEY_FILTER_LAST = 30,
    PAD_UP = 31,
    PAD_RIGHT = 32,
    PAD_DOWN = 33,
    PAD_LEFT = 34,
    PAD_BACK = 36,
    PAD_CONFIRM = 37,
    PAD_BLOCK_REVERSE = 42,
    PAD_HOLD = 45,
    PAD_SHOW_UI = 46,
};

// What a slot holds.
enum KeyState : int { KEY_UP_STATE = 0, KEY_PRESSED = 1, KEY_HELD = 2 };
