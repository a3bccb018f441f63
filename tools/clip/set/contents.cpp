#include "tools/clip/set/contents.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>

#include "files/preferences.h"
#include "files/userfile.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/nearest.h"
#include "tools/base/texts.h"
#include "tools/base/velmora_folder.h"
#include "tools/clip/jobs/clip_names.h"
#include "tools/clip/jobs/clip_origin.h"
#include "tools/clip/jobs/playlists_file.h"
#include "tools/clip/jobs/sha256.h"
#include "tools/clip/reports/describe.h"
#include "tools/clip/set/pack_names.h"
#include "tools/control/map/map_file.h"

namespace maker {

namespace fs = std::filesystem;
using files::Playlist;

namespace {

[[noreturn]] void refuseName(const std::string& name, const std::vector<Playlist>& playlists) {
    std::vector<std::string> there;
    for (const Playlist& playlist : playlists) {
        there.push_back(latin1AsUtf8(playlist.name));
    }
    const std::string near = nearestName(name, there);
    throw ToolError("there is no playlist " + inQuotes(name) +
                    (near.empty() ? "" : "; there is " + inQuotes(near)));
}

std::vector<Playlist> chosenPlaylists(const std::vector<std::string>& names) {
    const std::vector<Playlist> all = playlistsHere();
    std::set<std::string> wanted;
    for (const std::string& name : names) {
        const std::string latin1 = latin1Of(name);
        const bool there = std::ranges::any_of(all, [&](const Playlist& playlist) {
            return playlist.name == name || playlist.name == latin1;
        });
        if (!there) {
            refuseName(name, all);
        }
        wanted.insert({name, latin1});
    }
    std::vector<Playlist> chosen;
    std::ranges::copy_if(all, std::back_inserter(chosen), [&](const Playlist& playlist) {
        return names.empty() || wanted.contains(playlist.name);
    });
    if (chosen.empty()) {
        throw ToolError("there is no playlist to pack");
    }
    return chosen;
}

void addText(const std::string& name, const std::string& text, SetContents& contents) {
    contents.files.push_back({name, sha256Of(text), "", text});
}

// Reads the clip, if it can be part of a set.
PackedClip lookedAt(const std::string& track, SetContents& contents) {
    PackedClip clip{track, 0, ""};
    const fs::path file = fs::path(kVideos) / track;
    std::error_code ignored;
    if (!isTrackPath(track)) {
        clip.fault = "a set holds clips below videos/ alone, ending in .m19";
    } else if (!fs::is_regular_file(file, ignored)) {
        clip.fault = "it is missing";
    } else {
        try {
            const std::vector<uint8_t> bytes = readWholeFile(file);
            Description description;
            describe(bytes, description);
            clip.bytes = bytes.size();
            clip.fault = description.plays() ? "" : "it is " + verdictText(description);
            if (clip.fault.empty()) {
                contents.files.push_back({kVideosPrefix + track, sha256Of(bytes), file, ""});
                const std::string origin = originTextOf(originPath(file), bytes.size());
                if (!origin.empty()) {
                    addText(kVideosPrefix + track + kOriginEnding, origin, contents);
                }
            }
        } catch (const ToolError& error) {
            clip.fault = error.what();
        }
    }
    return clip;
}

// A file that is not there is not packed.
void addUserFile(const std::string& name, const std::string& path, SetContents& contents) {
    const std::optional<std::string> text = readRegular(path, control::kLargestMap);
    std::error_code ignored;
    if (!text && fs::exists(path, ignored)) {
        throw ToolError("cannot read " + path);
    }
    if (text) {
        addText(name, *text, contents);
    }
}

}  // namespace

SetContents contentsHere(const std::vector<std::string>& names) {
    SetContents contents;
    contents.playlists = chosenPlaylists(names);
    std::set<std::string> tracks;
    for (const Playlist& playlist : contents.playlists) {
        tracks.insert(playlist.tracks.begin(), playlist.tracks.end());
    }
    for (const std::string& track : tracks) {
        stopIfInterrupted();
        contents.clips.push_back(lookedAt(track, contents));
        contents.leftOut += contents.clips.back().fault.empty() ? 0 : 1;
    }
    addText(files::kPlaylistsName, files::printPlaylists(contents.playlists), contents);
    addUserFile(files::kPreferencesName, files::kPreferencesName, contents);
    addUserFile(files::kControllerName, files::kControllerName, contents);
    addUserFile(kPackedMapName, userMapFile().string(), contents);
    return contents;
}

}  // namespace maker
