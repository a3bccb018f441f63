#pragma once
// What plays Velmora's keys and mouse: XTest, uinput, or what a test watches. Nothing here decides
// when; that is the player's business (stage/player.h).

#include <string>

#include "tools/control/base/key.h"

namespace control {

class Hands {
public:
    Hands() = default;
    Hands(const Hands&) = delete;
    Hands& operator=(const Hands&) = delete;
    virtual ~Hands() = default;  // lets go of everything that is down

    // Down or up. What is down already, or up, stays so: nothing is sent.
    virtual void key(Key key, bool down) = 0;
    // The left mouse button.
    virtual void button(bool down) = 0;
    // The pointer, in coordinates of the 640 x 360 picture: (0, 0) is its top left.
    virtual void point(int x, int y) = 0;

    // True while presses reach Velmora: its window is there and listens. False otherwise, and
    // whatever was down is up then.
    virtual bool reachesVelmora() = 0;

    // "XTest on :0", "uinput": for messages.
    virtual std::string road() const = 0;
};

}  // namespace control
