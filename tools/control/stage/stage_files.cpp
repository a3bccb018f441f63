#include "tools/control/stage/stage_files.h"

#include <optional>
#include <string>
#include <vector>

#include "files/playlists.h"
#include "files/preferences.h"
#include "files/userfile.h"

namespace control {

namespace {

namespace fs = std::filesystem;

constexpr size_t kMostBytes = 16 << 20;

std::optional<std::string> contentOf(const fs::path& file) {
    return readRegular(file.string(), kMostBytes);
}

// True when the file is another one than at `known`, which becomes its time then.
bool isNew(const fs::path& file, fs::file_time_type& known) {
    std::error_code error;
    const fs::file_time_type time = fs::last_write_time(file, error);
    const fs::file_time_type now = error ? fs::file_time_type::max() : time;
    if (now == known) {
        return false;
    }
    known = now;
    return true;
}

}  // namespace

const StageFiles& StageFilesReader::now() {
    if (isNew(folder_ / files::kPreferencesName, preferences_)) {
        const auto bytes = contentOf(folder_ / files::kPreferencesName);
        files_.filters = files::parsePreferences(bytes.value_or(""), {}).filters;
    }
    if (isNew(folder_ / files::kPlaylistsName, playlists_)) {
        files_.tracks.clear();
        const auto bytes = contentOf(folder_ / files::kPlaylistsName);
        for (const files::Playlist& each :
             bytes ? files::parsePlaylists(*bytes) : std::vector<files::Playlist>{}) {
            files_.tracks.push_back(static_cast<int>(each.tracks.size()));
        }
    }
    return files_;
}

}  // namespace control
