#pragma once
// Nothing stays down when the bridge is killed, kill -9 included: a child process that is told of
// each change, and lets go of what is down when it hears no more.

#include <sys/types.h>

#include <cstdint>

namespace control {

// The left mouse button, among X's key codes, which begin at 8.
inline constexpr uint8_t kButtonCode = 1;

class Guardian {
public:
    // Starts it for the X server of DISPLAY. To be made before the process has threads. Without a
    // child, for want of processes, nothing is guarded.
    Guardian();
    ~Guardian();  // waits until it has ended
    Guardian(const Guardian&) = delete;
    Guardian& operator=(const Guardian&) = delete;

    // `code` is an X key code, or kButtonCode.
    void note(uint8_t code, bool down);

private:
    pid_t child_ = -1;
    int line_ = -1;
};

}  // namespace control
