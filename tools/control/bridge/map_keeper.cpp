#include "tools/control/bridge/map_keeper.h"

#include "files/userfile.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/control/map/default_map.h"

namespace control {

namespace fs = std::filesystem;

bool MapKeeper::makeWhenMissing() {
    std::error_code ignored;
    if (fs::exists(file_, ignored)) {
        return false;
    }
    maker::FolderInMaking folder(maker::folderOf(file_.string()));
    const std::string_view text = defaultMap();
    maker::writeWholeFile(file_, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
    folder.keep();
    return true;
}

std::optional<ControlMap> MapKeeper::changed() {
    std::error_code error;
    const fs::file_time_type time = fs::last_write_time(file_, error);
    if (error || time == time_) {
        return std::nullopt;
    }
    time_ = time;
    faults_.clear();
    const std::optional<std::string> text = readRegular(file_.string(), kLargestMap + 1);
    if (!text) {
        faults_.push_back("cannot read " + file_.string());
        return std::nullopt;
    }
    MapReading reading = readMap(*text);
    for (const MapFault& fault : reading.faults) {
        faults_.push_back(lineOf(file_.string(), fault));
    }
    if (!reading.faults.empty() && reading.map == ControlMap{}) {
        return std::nullopt;
    }
    return std::move(reading.map);
}

}  // namespace control
