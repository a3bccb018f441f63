#pragma once
// What came in, as people read it: "nanoPAD2: note 36, channel 10".

#include <string>

#include "tools/control/base/heard.h"

namespace control {

std::string textOf(const Heard& heard);

}  // namespace control
