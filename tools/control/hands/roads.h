#pragma once
// Which way leads to Velmora here, and what may be in it.

#include <memory>
#include <string>
#include <vector>

#include "tools/control/hands/road.h"

namespace control {

// XTest where there is an X server, Xwayland included; otherwise uinput. To be called before the
// process has threads. Throws ToolError with what each lacks.
std::unique_ptr<Road> openRoad();

// One thing that `doctor` looked at.
struct Finding {
    bool fine = false;
    std::string what;
    std::string mend;  // what to do about it; empty where it is fine
};

// Looks at the way to Velmora; opens it for that, and presses nothing.
std::vector<Finding> examineRoad();

}  // namespace control
