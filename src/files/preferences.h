#pragma once
// The preferences file and the controller's.

#include <array>
#include <string>
#include <string_view>

#include "common/limits.h"

namespace files {

inline constexpr const char* kPreferencesName = "userdata/prefs.xml";
inline constexpr const char* kControllerName = "userdata/gamecontroller.xml";

// An application size below this is ignored.
inline constexpr int kSmallestWidth = 800;
inline constexpr int kSmallestHeight = 600;

// The elements of the preferences in the order of the file, and the places of those that come once;
// the others are the filters of the slots.
enum PreferenceElement : int { PREF_MODE, PREF_TOPBAR, PREF_FPS, PREF_WIDTH, PREF_HEIGHT };
inline constexpr int kSinglePreferences = 5;
inline constexpr std::array<const char*, kSinglePreferences + kFilterSlots> kPreferenceElements = {
    "mode",   "topbar", "fps",    "res_w",  "res_h",  "filter", "filter",
    "filter", "filter", "filter", "filter", "filter", "filter", "filter"};

struct Preferences {
    int topbar = 0;
    int fps = 0;
    int width = 0;  // of the application
    int height = 0;
    std::array<int, kFilterSlots> filters{};  // of each slot, any numbers
};

// Values that the file does not give, or that do not count, stay as they are in `before`.
Preferences parsePreferences(std::string_view bytes, Preferences before);

std::string printPreferences(const Preferences& preferences);

inline constexpr auto kControllerElements = [] {
    std::array<const char*, kPadEntries> names{};
    names.fill("button");
    return names;
}();

// A joystick button for each controller function, by entry of the controller map; any numbers.
using ControllerMap = std::array<int, kPadEntries>;

ControllerMap parseController(std::string_view bytes);

std::string printController(const ControllerMap& map);

}  // namespace files
