#pragma once
// Any key of the terminal on standard input, as a yes. While it lives the terminal shows no keys
// and hands each on at once, Ctrl-C too; it is as before afterwards, and what was typed meanwhile
// is gone.

#include <termios.h>

namespace ask {

class Keys {
public:
    Keys();
    ~Keys();
    Keys(const Keys&) = delete;
    Keys& operator=(const Keys&) = delete;

    // Whether there is a terminal that can be asked.
    bool there() const { return there_; }

    // Whether a key went down that was up before; `now` is in milliseconds and starts at 0. A key
    // that is held repeats without a pause, also from before the question on.
    bool pressed(long now);

private:
    bool there_ = false;
    long last_ = 0;
    termios before_ = {};
};

}  // namespace ask
