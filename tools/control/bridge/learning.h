#pragma once
// What `learn` makes of what comes in: the binding of an action to a pad, a knob or an OSC address.
// Pure.

#include <optional>
#include <vector>

#include "tools/control/map/control_map.h"

namespace control {

class Learning {
public:
    explicit Learning(const Action& action) : action_(action) {}

    // The binding, when what came in is clear: a pad that goes down, a knob that goes a quarter of
    // its way, a program, an OSC message that is not a button let go. None otherwise, or where it
    // does not suit the action: a pad does not scrub.
    std::optional<Binding> hear(const Heard& heard);

private:
    bool moved(const Heard& heard);

    Action action_;
    std::vector<Heard> knobs_;  // where each was first
};

// What `learn` asks for when nothing is said: what is played most.
const std::vector<std::string>& usualActions();

}  // namespace control
