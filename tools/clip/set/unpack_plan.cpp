#include <sys/statvfs.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "files/preferences.h"
#include "files/xmlscan.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/base/velmora_folder.h"
#include "tools/clip/jobs/clip_origin.h"
#include "tools/clip/jobs/playlists_file.h"
#include "tools/clip/jobs/sha256.h"
#include "tools/clip/reports/describe.h"
#include "tools/clip/set/pack_names.h"
#include "tools/clip/set/unpack.h"

namespace maker {

namespace fs = std::filesystem;
using files::Playlist;

namespace {

bool isThere(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

// Before anything is unpacked, which a small file could make last for ever. A clip of which one of
// the same size is there may be that one.
void checkRoom(const SetFiles& set) {
    uint64_t needed = 0;
    for (const PackedFile& file : set.files()) {
        std::error_code error;
        const bool same = fs::file_size(file.name, error) == file.bytes && !error;
        needed += same ? 0 : file.bytes;
    }
    struct statvfs disk {};
    if (statvfs(".", &disk) != 0) {
        return;
    }
    const uint64_t free = uint64_t{disk.f_bavail} * disk.f_frsize;
    if (needed > free) {
        throw ToolError("it needs " + sizeText(needed) + ", and " + sizeText(free) +
                        " are free there");
    }
}

// Every byte of the set is looked at once before the first one is written.
void checkFiles(SetFiles& set) {
    if (set.lookedAt()) {
        return;
    }
    for (const PackedFile& file : set.files()) {
        const std::vector<uint8_t> bytes = set.read(file);
        Description description;
        if (!trackOfPacked(file.name).empty()) {
            describe(bytes, description);
            if (!description.plays()) {
                throw ToolError("its " + inQuotes(file.name) + " is " + verdictText(description));
            }
        }
    }
}

std::set<std::string> tracksOf(const std::vector<Playlist>& playlists) {
    std::set<std::string> tracks;
    for (const Playlist& playlist : playlists) {
        tracks.insert(playlist.tracks.begin(), playlist.tracks.end());
    }
    return tracks;
}

bool leadsOut(const std::string& track) {
    try {
        checkFoldersOf(track);
        return false;
    } catch (const ToolError&) {
        return true;
    }
}

// Where a clip came from comes with it, when it can be told and nothing is in its place. It is no
// fault where it does not come.
std::optional<PackedFile> originFor(SetFiles& set, const PackedFile& clip, const Place& place,
                                    std::set<std::string>& given) {
    const PackedFile* origin = set.find(clip.name + kOriginEnding);
    if (origin == nullptr || !given.insert(place.track).second ||
        isThere(fs::path(kVideos) / (place.track + kOriginEnding)) || leadsOut(place.track) ||
        !isOriginText(set.read(*origin), clip.bytes)) {
        return std::nullopt;
    }
    return *origin;
}

void planClips(SetFiles& set, const std::set<std::string>& tracks, UnpackPlan& plan) {
    Placing placing(tracks);
    std::set<std::string> held;
    std::set<std::string> given;
    for (const PackedFile& file : set.files()) {
        const std::string origin = trackOfOrigin(file.name);
        if (!origin.empty() && set.find(kVideosPrefix + origin) == nullptr) {
            throw ToolError("its " + inQuotes(file.name) + " belongs to none of its clips");
        }
        const std::string track = trackOfPacked(file.name);
        if (track.empty()) {
            continue;
        }
        if (!tracks.contains(track)) {
            throw ToolError("its " + inQuotes(file.name) + " is in none of its playlists");
        }
        held.insert(track);
        const Place place = placing.placeFor({track, file.bytes, file.sha256});
        plan.clips.push_back({file, track, place, originFor(set, file, place, given)});
    }
    std::ranges::set_difference(tracks, held, std::back_inserter(plan.absent));
}

void followClips(const std::vector<PlannedClip>& clips, std::vector<Playlist>& playlists) {
    std::map<std::string, std::string> become;
    for (const PlannedClip& clip : clips) {
        become[clip.track] = clip.place.track;
    }
    for (Playlist& playlist : playlists) {
        for (std::string& track : playlist.tracks) {
            const auto found = become.find(track);
            track = found == become.end() ? track : found->second;
        }
    }
}

void planOther(SetFiles& set, const std::string& name, const fs::path& target, bool replaceOthers,
               UnpackPlan& plan) {
    const PackedFile* file = set.find(name);
    if (file == nullptr) {
        return;
    }
    OtherKind kind = OtherKind::NEW;
    if (isThere(target)) {
        std::error_code ignored;
        const bool same =
            fs::is_regular_file(target, ignored) && sha256Of(readWholeFile(target)) == file->sha256;
        kind = same ? OtherKind::THERE : replaceOthers ? OtherKind::REPLACED : OtherKind::KEPT;
    }
    plan.others.push_back({*file, target, kind});
}

}  // namespace

std::vector<Playlist> playlistsOf(SetFiles& set) {
    const PackedFile* file = set.find(files::kPlaylistsName);
    if (file == nullptr) {
        throw ToolError("it has no playlists");
    }
    const std::vector<uint8_t> bytes = set.read(*file);
    const std::string text(bytes.begin(), bytes.end());
    std::vector<Playlist> playlists = files::parsePlaylists(text);
    if (files::printPlaylists(playlists) != text) {
        throw ToolError("its playlists are not as Velmora writes them");
    }
    return playlists;
}

UnpackPlan planUnpack(SetFiles& set, bool replaceOthers) {
    checkRoom(set);
    checkFiles(set);
    UnpackPlan plan;
    std::vector<Playlist> playlists = playlistsOf(set);
    planClips(set, tracksOf(playlists), plan);
    followClips(plan.clips, playlists);
    plan.merge = mergePlaylists(playlistsHere(), playlists);
    planOther(set, files::kPreferencesName, files::kPreferencesName, replaceOthers, plan);
    planOther(set, files::kControllerName, files::kControllerName, replaceOthers, plan);
    planOther(set, kPackedMapName, userMapFile(), replaceOthers, plan);
    return plan;
}

}  // namespace maker
