#include "tools/clip/set/relink.h"

#include <algorithm>
#include <map>
#include <set>

#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/jobs/playlists_file.h"
#include "tools/clip/jobs/sha256.h"
#include "tools/clip/reports/clip_frames.h"
#include "tools/clip/reports/describe.h"
#include "tools/clip/set/arriving.h"
#include "tools/clip/set/manifest.h"
#include "tools/clip/set/pack_names.h"
#include "tools/clip/set/placing.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

class Search {
public:
    explicit Search(const std::vector<std::string>& folders) {
        for (const std::string& folder : folders) {
            std::error_code ignored;
            if (!fs::is_directory(folder, ignored)) {
                throw ToolError("cannot read " + folder + ": it is no folder");
            }
            for (const std::string& clip : clipsBelow(folder)) {
                files_.push_back(fs::path(folder) / clip);
            }
        }
    }

    FoundClip find(const std::string& track, const std::string& sum) {
        FoundClip found{track, FindKind::NONE, {}};
        std::set<std::string> different;
        for (const fs::path& file : files_) {
            if (!sum.empty() && sumOf(file) == sum) {
                return {track, FindKind::BY_CONTENT, {file}};
            }
        }
        for (const fs::path& file : files_) {
            if (file.filename() == fs::path(track).filename() && !sumOf(file).empty() &&
                different.insert(sumOf(file)).second) {
                found.files.push_back(file);
                found.kind = different.size() == 1 ? FindKind::BY_NAME : FindKind::AMBIGUOUS;
            }
        }
        return found;
    }

private:
    // Empty for what does not play or cannot be read; each file is read once.
    const std::string& sumOf(const fs::path& file) {
        const auto [place, isNew] = sums_.try_emplace(file);
        if (isNew) {
            try {
                const std::vector<uint8_t> bytes = readWholeFile(file);
                Description description;
                describe(bytes, description);
                place->second = description.plays() ? sha256Of(bytes) : "";
            } catch (const ToolError&) {
                place->second.clear();
            }
        }
        return place->second;
    }

    std::vector<fs::path> files_;
    std::map<fs::path, std::string> sums_;
};

}  // namespace

std::vector<FoundClip> findMissing(const std::vector<std::string>& folders) {
    std::set<std::string> missing;
    for (const files::Playlist& playlist : playlistsHere()) {
        for (const std::string& track : playlist.tracks) {
            std::error_code ignored;
            const fs::file_status there = fs::symlink_status(fs::path(kVideos) / track, ignored);
            if (isTrackPath(track) && !fs::exists(there)) {
                missing.insert(track);
            }
        }
    }
    Manifest known = knownSums();
    Search search(folders);
    std::vector<FoundClip> found;
    for (const std::string& track : missing) {
        stopIfInterrupted();
        found.push_back(search.find(track, known[kVideosPrefix + track]));
    }
    return found;
}

void bringBack(const std::vector<FoundClip>& found) {
    Arriving arriving;
    for (const FoundClip& clip : found) {
        if (clip.kind == FindKind::BY_CONTENT || clip.kind == FindKind::BY_NAME) {
            checkFoldersOf(clip.track);
            arriving.write(fs::path(kVideos) / clip.track, readWholeFile(clip.files.front()),
                           false);
        }
    }
    arriving.name();
    arriving.stay();
}

}  // namespace maker
