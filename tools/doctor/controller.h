#pragma once
// The game controller that the program will play with, and its map.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "files/preferences.h"
#include "tools/doctor/remarks.h"

namespace doctor {

struct ControllerFacts {
    int count = 0;     // controllers that SDL sees; the program plays the first
    std::string name;  // of the first
    int buttons = 0;
    int hats = 0;
    bool opens = false;
    std::vector<std::string> locked;  // devices of controllers that this user may not read
};

// As SDL's joystick part sees them; it stays open no longer than the call.
ControllerFacts controllersHere(const std::filesystem::path& devices);

// Those of `devices` that are joysticks and cannot be opened, such as /dev/input/js0.
std::vector<std::string> lockedIn(const std::filesystem::path& devices);

// The map is null when its file is missing or cannot be read. Over SDL 2 a cross is read as
// buttons.
void judgeController(const ControllerFacts& facts, const std::optional<files::ControllerMap>& map,
                     bool overSdl2, Remarks& remarks);

}  // namespace doctor
