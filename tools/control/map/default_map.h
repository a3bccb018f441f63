#pragma once
// The maps that come along, built in from tools/control/maps.

#include <string_view>

namespace control {

// What the first start writes to ~/.config/velmora/control.toml: comments that explain it, and
// nothing bound.
std::string_view defaultMap();

// By name: "pads-4x4", "knobs-8", "phone-osc". Empty when there is none.
std::string_view mapNamed(std::string_view name);

}  // namespace control
