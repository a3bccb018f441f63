#pragma once
// Hands without a plan on the scripted SDL: keys, mouse and controller buttons by chance, and the
// way home that a performer would take from wherever they led.

#include <random>
#include <string>

#include "state/stage.h"

namespace faults {

// A count from the environment, for the long forms.
int chosenCount(const char* variable, int usual);

class Hands {
public:
    explicit Hands(unsigned seed) : random_(seed) {}

    // One event by chance.
    void act();
    void letGo();
    // Real keys and clicks, each seen down and up again. Positions are those of the picture.
    void tap(SDLKey key);
    void click(int x, int y);
    // Loads the playlist that is chosen in the list over the mix, to its end.
    void load();
    // Leaves every screen as a performer does; false when that does not end at home.
    bool goHome();

    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

private:
    void hold(SDLKey key, bool down);
    void moveAnywhere();
    void leaveScreen();

    std::mt19937 random_;
};

}  // namespace faults
