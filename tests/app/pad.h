#pragma once
// The test's side of the joystick double: one controller whose buttons the test presses.

#include <stdlib.h>

#include <cstddef>
#include <cstring>
#include <fstream>
#include <string>

#include "app/joystick_double.h"

namespace app {

class Pad {
public:
    explicit Pad(const std::string& path) : path_(path) {
        PadState state = {};
        strncpy(state.name, "Velmora Test Pad", sizeof state.name - 1);
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(&state), sizeof state);
    }
    void set(int button, bool down) {
        std::fstream file(path_, std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(static_cast<std::streamoff>(offsetof(PadState, buttons)) + button);
        file.put(down ? 1 : 0);
    }
    // For the programs that start while it lives.
    class Plugged {
    public:
        explicit Plugged(const Pad& pad) { setenv(kPadFileVariable, pad.path_.c_str(), 1); }
        ~Plugged() { unsetenv(kPadFileVariable); }
        Plugged(const Plugged&) = delete;
        Plugged& operator=(const Plugged&) = delete;
    };

private:
    std::string path_;
};

}  // namespace app
