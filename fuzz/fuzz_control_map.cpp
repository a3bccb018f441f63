// Any bytes as a map: faults have places, and a binding put into a map without faults leaves all
// else as it was.
//
// Input: the text.
#include <algorithm>
#include <string_view>

#include "fuzz/input.h"
#include "tools/control/map/map_edit.h"
#include "tools/control/map/map_file.h"

namespace {

using fuzz::require;

void changeIt(std::string_view text, const control::ControlMap& map, const char* action) {
    control::Binding binding;
    binding.number = 36;
    binding.action = *control::actionNamed(action);
    const control::MapReading after = control::readMap(control::withBinding(text, binding));
    require(after.faults.empty(), "a changed map has no faults");
    const bool had = std::ranges::find(map.bindings, binding.action, &control::Binding::action) !=
                     map.bindings.end();
    require(after.map.bindings.size() == map.bindings.size() + (had ? 0 : 1),
            "one binding is changed or new");
    require(after.map.rules.size() == map.rules.size(), "the rules stay");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const control::MapReading reading = control::readMap(text);
    for (const control::MapFault& fault : reading.faults) {
        require(fault.line > 0 && fault.column > 0, "a fault has a place");
    }
    if (reading.faults.empty()) {
        changeIt(text, reading.map, "top.next");
        changeIt(text, reading.map, "tap");
    }
    return 0;
}
