#pragma once
// A packed set laid into the current directory, which is Velmora's folder: first a plan, for which
// all of the set is read and checked and nothing is written, then the plan carried out.
//
// Clips are written beside their places and get their names once all are there, the playlists file
// last. What fails leaves everything as it was; what is killed leaves the old playlists file with
// the old clips, or the new one with all of its clips. Faults are thrown as ToolError.

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/clip/set/merge.h"
#include "tools/clip/set/placing.h"
#include "tools/clip/set/set_files.h"

namespace maker {

struct PlannedClip {
    PackedFile file;
    std::string track;  // in the set
    Place place;
    std::optional<PackedFile> origin;  // where it came from, when that is to be written
};

enum class OtherKind { NEW, THERE, KEPT, REPLACED };

// Preferences and controller maps.
struct PlannedOther {
    PackedFile file;
    std::filesystem::path target;
    OtherKind kind = OtherKind::NEW;
};

struct UnpackPlan {
    std::vector<PlannedClip> clips;
    Merge merge;
    std::vector<PlannedOther> others;
    std::vector<std::string> absent;  // tracks whose clips the set does not hold
};

// The playlists that a set brings.
std::vector<files::Playlist> playlistsOf(SetFiles& set);

// With `replaceOthers` preferences and maps come in the place of those that are there.
UnpackPlan planUnpack(SetFiles& set, bool replaceOthers);

// `written` is called with each clip's number, from 0, once it is there or was there.
// Returns the copy that is kept of a playlists file that held more than the program reads; empty
// when there is none.
std::string carryOut(SetFiles& set, const UnpackPlan& plan,
                     const std::function<void(size_t)>& written = {});

}  // namespace maker
