#pragma once
// One MIDI message as what was heard. Pure; whoever read the message fills in `device` and `when`.

#include <cstdint>
#include <optional>
#include <span>

#include "tools/control/base/heard.h"

namespace control {

// Notes, controllers, the pitch wheel, program changes and the clock. None for everything else, and
// for bytes that are no whole message.
std::optional<Heard> heardOfMidi(std::span<const uint8_t> message);

}  // namespace control
