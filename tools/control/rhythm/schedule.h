#pragma once
// What happens on the beat: the map's rules, and actions that wait for the next beat or bar.

#include <cstdint>
#include <functional>
#include <vector>

#include "tools/control/map/control_map.h"

namespace control {

// One of 0 to n - 1, by lot.
using Lot = std::function<int(int)>;

// Actions that wait at most; more are not taken.
inline constexpr size_t kMostWaiting = 64;

class Schedule {
public:
    // False when too many wait already.
    bool put(const Action& action, Quantum at);

    // What happens on this beat: first what waited, in its order, then the rules in theirs. `bar`:
    // beats of one.
    std::vector<Action> onBeat(int64_t beat, int bar, const std::vector<Rule>& rules,
                               const Lot& lot);

    // What waited, when nothing beats any more.
    std::vector<Action> takeAll();

private:
    struct Waiting {
        Action action;
        Quantum at;
    };

    std::vector<Waiting> waiting_;
};

}  // namespace control
