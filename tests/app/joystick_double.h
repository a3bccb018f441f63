#pragma once
// The joystick double: a library of ours that is preloaded into the program and answers SDL's
// joystick calls in the library's place. It shows one controller, whose name and buttons are the
// bytes of a file; a test writes that file while the program runs, and the next frame sees it.

#include <cstdint>

namespace app {

inline constexpr int kPadButtons = 100;

// The whole file.
struct PadState {
    char name[64];                 // ends with a zero
    uint8_t buttons[kPadButtons];  // 1: down
};

// The variable that names the file. Without it, or without the file, there is no controller.
inline constexpr const char* kPadFileVariable = "VELMORA_TEST_PAD";

}  // namespace app
