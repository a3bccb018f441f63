#pragma once
// The map as TOML text.

#include <string>
#include <string_view>
#include <vector>

#include "tools/control/map/control_map.h"

namespace control {

// What is wrong, and where: lines and columns count from 1.
struct MapFault {
    int line = 0;
    int column = 0;
    std::string text;  // without a full stop
};

struct MapReading {
    ControlMap map;                // what is right of it
    std::vector<MapFault> faults;  // none: all of it; of very many the first ones
    std::vector<int> lastLines;    // of each binding's [[on]], whose first one is its `line`
};

inline constexpr size_t kLargestMap = 1 << 20;  // bytes; larger ones are a fault and read as empty

// Whatever the bytes are. A [[on]] or [[every]] with a fault is left out, all others stand.
MapReading readMap(std::string_view text);

// "control.toml:12:8: there is no action 'top.nxt'; did you mean top.next?"
std::string lineOf(const std::string& path, const MapFault& fault);

}  // namespace control
