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
void checkRoom(const PackReader& pack) {
    uint64_t needed = 0;
    for (const PackedFile& file : pack.files()) {
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

std::vector<Playlist> playlistsOf(PackReader& pack) {
    const PackedFile* file = pack.find(files::kPlaylistsName);
    if (file == nullptr) {
        throw ToolError("it has no playlists");
    }
    const std::vector<uint8_t> bytes = pack.read(*file);
    const std::string text(bytes.begin(), bytes.end());
    std::vector<Playlist> playlists = files::parsePlaylists(text);
    if (files::printPlaylists(playlists) != text) {
        throw ToolError("its playlists are not as Velmora writes them");
    }
    return playlists;
}

// Every byte of the set is looked at once before the first one is written.
void checkFiles(PackReader& pack) {
    for (const PackedFile& file : pack.files()) {
        const std::vector<uint8_t> bytes = pack.read(file);
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

void planClips(const PackReader& pack, const std::set<std::string>& tracks, UnpackPlan& plan) {
    Placing placing(tracks);
    std::set<std::string> held;
    for (const PackedFile& file : pack.files()) {
        const std::string track = trackOfPacked(file.name);
        if (track.empty()) {
            continue;
        }
        if (!tracks.contains(track)) {
            throw ToolError("its " + inQuotes(file.name) + " is in none of its playlists");
        }
        held.insert(track);
        plan.clips.push_back({file, track, placing.placeFor({track, file.bytes, file.sha256})});
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

void planOther(PackReader& pack, const std::string& name, const fs::path& target,
               bool replaceOthers, UnpackPlan& plan) {
    const PackedFile* file = pack.find(name);
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

UnpackPlan planUnpack(PackReader& pack, bool replaceOthers) {
    checkRoom(pack);
    checkFiles(pack);
    UnpackPlan plan;
    std::vector<Playlist> playlists = playlistsOf(pack);
    planClips(pack, tracksOf(playlists), plan);
    followClips(plan.clips, playlists);
    plan.merge = mergePlaylists(playlistsHere(), playlists);
    planOther(pack, files::kPreferencesName, files::kPreferencesName, replaceOthers, plan);
    planOther(pack, files::kControllerName, files::kControllerName, replaceOthers, plan);
    planOther(pack, kPackedMapName, userMapFile(), replaceOthers, plan);
    return plan;
}

}  // namespace maker
