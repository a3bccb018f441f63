#pragma once
// Hands without a plan on the real program: keys and mouse by chance, the ways onto its screens,
// and the way home from wherever the hands led. The program may be ended by them, from its home
// screen; it is then started anew.

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "app/stage.h"

namespace faults {

// The screens by name, in the order in which a storm goes through them.
const std::vector<std::string>& screenNames();

class WildHands {
public:
    WildHands(app::Stage& stage, unsigned seed) : stage_(stage), random_(seed) {}

    // Starts the program with playlists as at first, and waits for the home screen.
    void start();
    // From home; `name` is one of screenNames().
    void enter(const std::string& name);
    // So many events a minute, or `perPicture` for each picture, until the time is over or the
    // program has ended.
    void storm(int ms, int eventsAMinute);
    void burst(int pictures, int perPicture);
    // Lets go of everything and leaves every screen as a performer does. False when the program has
    // ended, which is right only with status 1 and nothing said on standard error.
    bool goHome();

    // The home screen's item that is selected, -1 on other screens.
    int homeSelection();

    int events() const { return events_; }
    int ends() const { return ends_; }

private:
    void act();
    void letGo();
    void leaveScreen();
    void leaveNamePage();
    void clickPicture(int x, int y);
    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

    app::Stage& stage_;
    std::mt19937 random_;
    std::vector<unsigned long> down_;
    int events_ = 0;
    int ends_ = 0;
};

}  // namespace faults
