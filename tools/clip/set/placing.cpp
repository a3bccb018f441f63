#include "tools/clip/set/placing.h"

#include <filesystem>

#include "files/xmlscan.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/jobs/sha256.h"
#include "tools/clip/set/merge.h"
#include "tools/clip/set/pack_names.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

bool isBelow(const fs::path& path, const fs::path& folder) {
    const fs::path way = path.lexically_relative(folder);
    return !way.empty() && *way.begin() != "..";
}

// "folder/name.m19" with a number: "folder/name_2.m19", as long as the program reads.
std::string numbered(const std::string& track, int number) {
    if (number == 1) {
        return track;
    }
    const fs::path path(track);
    const std::string folder = track.substr(0, track.size() - path.filename().string().size());
    const std::string ending =
        std::string("_").append(std::to_string(number)) + path.extension().string();
    const size_t most = xml::longestText("track");
    if (folder.size() + ending.size() >= most) {
        throw ToolError("there is no free name for " + inQuotes(track));
    }
    return folder + cutWith(path.stem().string(), ending, most - folder.size());
}

}  // namespace

void checkFoldersOf(const std::string& track) {
    std::error_code error;
    const fs::path root = fs::canonical(kVideos, error);
    fs::path at = kVideos;
    for (const fs::path& part : fs::path(track).parent_path()) {
        at /= part;
        if (error || !fs::exists(fs::symlink_status(at, error))) {
            return;
        }
        const fs::path real = fs::canonical(at, error);
        if (error || !fs::is_directory(real)) {
            throw ToolError(inQuotes(at.string()) + " is there and is no folder");
        }
        if (!isBelow(real, root)) {
            throw ToolError(inQuotes(at.string()) +
                            " is a link that leads out of videos/; nothing is written there");
        }
    }
}

bool Placing::isThere(const std::string& track, const ClipFacts& clip) {
    const fs::path file = fs::path(kVideos) / track;
    std::error_code error;
    if (!fs::is_regular_file(file, error) || fs::file_size(file, error) != clip.bytes || error) {
        return false;
    }
    std::string& sum = sums_[track];
    if (sum.empty()) {
        sum = sha256Of(readWholeFile(file));
    }
    return sum == clip.sha256;
}

bool Placing::isTaken(const std::string& track) const {
    std::error_code ignored;
    return given_.contains(track) ||
           fs::exists(fs::symlink_status(fs::path(kVideos) / track, ignored));
}

Place Placing::placeFor(const ClipFacts& clip) {
    for (int number = 1;; ++number) {
        const std::string track = numbered(clip.track, number);
        if (isThere(track, clip)) {
            return {PlaceKind::THERE, track};
        }
        if (!isTaken(track) && (number == 1 || !reserved_.contains(track))) {
            checkFoldersOf(track);
            given_.insert(track);
            return {number == 1 ? PlaceKind::NEW : PlaceKind::RENAMED, track};
        }
    }
}

}  // namespace maker
