#include "tools/control/map/default_map.h"

#include <span>

namespace maker {
extern const std::span<const unsigned char> kMap_control;
extern const std::span<const unsigned char> kMap_pads_4x4;
extern const std::span<const unsigned char> kMap_knobs_8;
extern const std::span<const unsigned char> kMap_phone_osc;
}  // namespace maker

namespace control {

namespace {

std::string_view textOf(std::span<const unsigned char> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

std::string_view defaultMap() {
    return textOf(maker::kMap_control);
}

std::string_view mapNamed(std::string_view name) {
    if (name == "pads-4x4") {
        return textOf(maker::kMap_pads_4x4);
    }
    if (name == "knobs-8") {
        return textOf(maker::kMap_knobs_8);
    }
    return name == "phone-osc" ? textOf(maker::kMap_phone_osc) : std::string_view();
}

}  // namespace control
