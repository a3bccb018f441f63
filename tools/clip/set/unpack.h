#pragma once
// A packed set laid into the current directory, which is Velmora's folder: first a plan, for which
// all of the set is read and checked and nothing is written, then the plan carried out.
//
// Clips are written beside their places and get their names once all are there, the playlists file
// last. What fails leaves everything as it was; what is killed leaves the old playlists file with
// the old clips, or the new one with all of its clips. Faults are thrown as ToolError.

#include <filesystem>
#include <string>
#include <vector>

#include "tools/clip/set/merge.h"
#include "tools/clip/set/pack_reader.h"
#include "tools/clip/set/placing.h"

namespace maker {

struct PlannedClip {
    PackedFile file;
    std::string track;  // in the set
    Place place;
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

// With `replaceOthers` preferences and maps come in the place of those that are there.
UnpackPlan planUnpack(PackReader& pack, bool replaceOthers);

// Returns the copy that is kept of a playlists file that held more than the program reads; empty
// when there is none.
std::string carryOut(PackReader& pack, const UnpackPlan& plan);

}  // namespace maker
