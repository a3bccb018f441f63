#pragma once
// What the program hears of SDL, heard along.

#include "tools/record/recorder.h"

namespace maker {

// Before the program starts.
void tapInto(Recorder& listener);

}  // namespace maker
