// prefs.xml and gamecontroller.xml: into the objects that hold what they say, and out of them.
#include <algorithm>

#include "common/messages.h"
#include "core/all.h"
#include "core/filters.h"
#include "core/globals.h"
#include "input/keys.h"
#include "options/options.h"

namespace {

// Deliberate: reading takes the path from the current directory, writing from the directory of the
// start-up. [quirk_prefs_are_read_here_and_written_there]
std::optional<std::string> readHere(UserFile& file, const char* name) {
    return file.read(std::string("./") + name);
}

}  // namespace

files::Preferences c_options::preferences() const {
    files::Preferences held = {topbar, fps, all->appW, all->appH, {}};
    std::transform(std::begin(_filters->slots[0]), std::end(_filters->slots[0]),
                   held.filters.begin(), [](const FilterSlot& slot) { return slot.id; });
    return held;
}

void c_options::lireXML() {
    const std::optional<std::string> bytes = readHere(prefsFile, files::kPreferencesName);
    if (!bytes) {
        puts(msg::kNoPrefsFile);
        return;
    }
    const files::Preferences read = files::parsePreferences(*bytes, preferences());
    topbar = read.topbar;
    fps = read.fps;
    all->appW = read.width;
    all->appH = read.height;
    for (FilterSlot(&layerSlots)[kFilterSlots] : _filters->slots) {
        for (size_t slot = 0; slot < kFilterSlots; ++slot) {
            layerSlots[slot].id = read.filters[slot];
        }
    }
}

bool c_options::saveXML() {
    return prefsFile.save(homeDir, files::kPreferencesName,
                          [this] { return files::printPreferences(preferences()); });
}

void c_options::lireXMLController() {
    const std::optional<std::string> bytes = readHere(controllerFile, files::kControllerName);
    if (!bytes) {
        puts(msg::kNoControllerFile);
        return;
    }
    const files::ControllerMap map = files::parseController(*bytes);
    std::copy(map.begin(), map.end(), keys->padButton);
}

bool c_options::saveXMLController() {
    const int32_t(&buttons)[kPadEntries] = keys->padButton;
    return controllerFile.save(homeDir, files::kControllerName, [&buttons] {
        return files::printController(std::to_array(buttons));
    });
}
