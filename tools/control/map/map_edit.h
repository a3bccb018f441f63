#pragma once
// Changing the text of a map without losing what its owner wrote: comments and order stay.

#include <string>
#include <string_view>

#include "tools/control/map/control_map.h"

namespace control {

// The text of one [[on]] as `learn` writes it, with the line end behind it.
std::string printBinding(const Binding& binding);

// The map's text with `binding` in it: in place of the [[on]] that does the same action, or behind
// the last one. All other bytes stay. `text` is a map that reads without faults.
std::string withBinding(std::string_view text, const Binding& binding);

}  // namespace control
