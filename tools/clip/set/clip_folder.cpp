#include "tools/clip/set/clip_folder.h"

#include <algorithm>

#include "common/limits.h"
#include "files/playlists.h"
#include "files/preferences.h"
#include "layout/clipname.h"
#include "layout/page_layout.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/jobs/clip_origin.h"
#include "tools/clip/jobs/sha256.h"
#include "tools/clip/reports/describe.h"
#include "tools/clip/set/merge.h"
#include "tools/clip/set/pack_names.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr size_t kMostClips = size_t{kPlaylists} * kEditorTracks;
constexpr size_t kMostEntries = 200000;  // looked at: nobody has so many, but a disk's backup does

bool isHidden(const fs::path& path) {
    return path.filename().string().starts_with('.');
}

[[noreturn]] void failToRead(const std::error_code& error) {
    throw ToolError("it cannot be read: " + error.message());
}

}  // namespace

std::vector<std::string> looseClips(const fs::path& folder) {
    std::vector<std::string> clips;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied,
                                           error);
    size_t entries = 0;
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        stopIfInterrupted();
        std::error_code ignored;
        const fs::file_status status = entry->symlink_status(ignored);
        if (isHidden(entry->path()) && fs::is_directory(status)) {
            entry.disable_recursion_pending();
        } else if (fs::is_regular_file(status) && !isHidden(entry->path()) &&
                   clip::isPlayableName(entry->path().filename().string())) {
            clips.push_back(entry->path().lexically_relative(folder).string());
        }
        if (clips.size() > kMostClips || ++entries > kMostEntries) {
            throw ToolError("it holds more than a set can");
        }
    }
    if (error) {
        failToRead(error);
    }
    if (clips.empty()) {
        throw ToolError("it holds no clip");
    }
    std::ranges::sort(clips);
    return clips;
}

std::string playlistNameOf(const std::string& text) {
    std::string name;
    for (const char32_t character : codePoints(text)) {
        const bool control = character < U' ' || (character >= 0x7F && character < 0xA0);
        const bool marks =
            character < 0x80 &&
            std::string("<>&%").find(static_cast<char>(character)) != std::string::npos;
        name += control || marks || character > 0xFF ? '_' : static_cast<char>(character);
    }
    name = name.substr(0, page::kLongestName);
    return name.find_first_not_of(" \xA0") == std::string::npos ? "clips" : name;
}

size_t playlistsFor(size_t clips) {
    return (clips + kEditorTracks - 1) / kEditorTracks;
}

ClipFolder::ClipFolder(const fs::path& folder, const std::string& name) : folder_(folder) {
    const std::vector<std::string> clips = looseClips(folder);
    for (const std::string& clip : clips) {
        stopIfInterrupted();
        add(clip);
    }
    if (files_.empty()) {
        throw ToolError("none of its clips plays");
    }
    std::ranges::sort(files_, {}, &PackedFile::name);
    addPlaylists(playlistNameOf(name));
}

void ClipFolder::add(const std::string& track) {
    if (!isTrackPath(track)) {
        leftOut_.push_back({track, "its name cannot stand in a playlist"});
        return;
    }
    try {
        const std::vector<uint8_t> bytes = readWholeFile(folder_ / track);
        Description description;
        describe(bytes, description);
        if (description.plays()) {
            files_.push_back({kVideosPrefix + track, bytes.size(), 0, sha256Of(bytes)});
            addOrigin(track, bytes.size());
        } else {
            leftOut_.push_back({track, "it is " + verdictText(description)});
        }
    } catch (const ToolError& error) {
        leftOut_.push_back({track, error.what()});
    }
}

void ClipFolder::addOrigin(const std::string& track, uint64_t clipBytes) {
    const fs::path file = folder_ / (track + kOriginEnding);
    std::error_code ignored;
    if (!fs::is_regular_file(fs::symlink_status(file, ignored))) {
        return;
    }
    const std::string text = originTextOf(file, clipBytes);
    if (!text.empty()) {
        files_.push_back({kVideosPrefix + track + kOriginEnding, text.size(), 0, sha256Of(text)});
    }
}

void ClipFolder::addPlaylists(const std::string& name) {
    std::vector<files::Playlist> playlists;
    for (const PackedFile& file : files_) {
        const std::string track = trackOfPacked(file.name);
        if (track.empty()) {
            continue;
        }
        if (playlists.empty() || playlists.back().tracks.size() == kEditorTracks) {
            const size_t number = playlists.size() + 1;
            std::string ending;
            if (number > 1) {
                ending.append(" ").append(std::to_string(number));
            }
            playlists.push_back({cutWith(name, ending, page::kLongestName), {}});
        }
        playlists.back().tracks.push_back(track);
    }
    playlists_ = files::printPlaylists(playlists);
    files_.push_back({files::kPlaylistsName, playlists_.size(), 0, sha256Of(playlists_)});
    std::ranges::sort(files_, {}, &PackedFile::name);
}

// A clip may have gone with its stick meanwhile, or changed.
std::vector<uint8_t> ClipFolder::read(const PackedFile& file) {
    if (file.name == files::kPlaylistsName) {
        return {playlists_.begin(), playlists_.end()};
    }
    const std::string place = file.name.substr(std::string(kVideosPrefix).size());
    std::vector<uint8_t> bytes = readWholeFile(folder_ / place);
    if (sha256Of(bytes) != file.sha256) {
        throw ToolError("its " + inQuotes(place) + " has changed meanwhile");
    }
    return bytes;
}

}  // namespace maker
