#include "tools/clip/set/pack_names.h"

#include <algorithm>
#include <iterator>

#include "files/playlists.h"
#include "files/preferences.h"
#include "files/xmlscan.h"
#include "layout/clipname.h"

namespace maker {

namespace {

constexpr const char* kOthers[] = {kManifestName, kPackedMapName, files::kPlaylistsName,
                                   files::kPreferencesName, files::kControllerName};

}  // namespace

bool isTrackPath(const std::string& path) {
    for (size_t at = 0; at <= path.size();) {
        const size_t end = std::min(path.find('/', at), path.size());
        const std::string part = path.substr(at, end - at);
        if (part.empty() || part == "." || part == "..") {
            return false;
        }
        at = end + 1;
    }
    return path.find('\0') == std::string::npos && clip::isPlayableName(path) &&
           xml::comesBack(path, "track");
}

std::string trackOfPacked(const std::string& name) {
    const std::string prefix = kVideosPrefix;
    const std::string path = name.starts_with(prefix) ? name.substr(prefix.size()) : "";
    return isTrackPath(path) ? path : "";
}

std::string trackOfOrigin(const std::string& name) {
    const std::string ending = kOriginEnding;
    return name.ends_with(ending) ? trackOfPacked(name.substr(0, name.size() - ending.size())) : "";
}

bool isPackedName(const std::string& name) {
    return !trackOfPacked(name).empty() || !trackOfOrigin(name).empty() ||
           std::find(std::begin(kOthers), std::end(kOthers), name) != std::end(kOthers);
}

}  // namespace maker
