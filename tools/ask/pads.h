#pragma once
// Any button of any controller, as a yes. There is no picture and no window.

#include <SDL.h>

#include <vector>

namespace ask {

class Pads {
public:
    Pads();
    ~Pads();
    Pads(const Pads&) = delete;
    Pads& operator=(const Pads&) = delete;

    bool there() const { return !pads_.empty(); }

    // Whether a button went down that was up before; `now` is in milliseconds and starts at 0. What
    // is down in the first moments was so before: a driver may tell of it late.
    bool pressed(long now);

private:
    struct Pad {
        SDL_Joystick* joystick;
        std::vector<bool> down;
    };

    std::vector<Pad> pads_;
};

}  // namespace ask
