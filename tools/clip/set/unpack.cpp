#include "tools/clip/set/unpack.h"

#include "files/playlists.h"
#include "tools/base/atomic_file.h"
#include "tools/clip/jobs/folder_hold.h"
#include "tools/clip/jobs/playlists_file.h"
#include "tools/clip/set/arriving.h"
#include "tools/clip/set/manifest.h"
#include "tools/clip/set/pack_names.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

void writeClips(PackReader& pack, const UnpackPlan& plan, Arriving& arriving) {
    for (const PlannedClip& clip : plan.clips) {
        if (clip.place.kind != PlaceKind::THERE) {
            arriving.write(fs::path(kVideos) / clip.place.track, pack.read(clip.file), false);
        }
    }
}

// What is replaced is kept beside it.
void writeOthers(PackReader& pack, const UnpackPlan& plan, Arriving& arriving) {
    for (const PlannedOther& other : plan.others) {
        const bool replaces = other.kind == OtherKind::REPLACED;
        if (replaces) {
            fs::path copy = other.target;
            copy += ".old";
            writeWholeFile(copy, readWholeFile(other.target));
        }
        if (replaces || other.kind == OtherKind::NEW) {
            arriving.write(other.target, pack.read(other.file), replaces);
        }
    }
}

void noteSums(const UnpackPlan& plan) {
    Manifest sums;
    for (const PlannedClip& clip : plan.clips) {
        sums[kVideosPrefix + clip.place.track] = clip.file.sha256;
    }
    addKnownSums(sums);
}

}  // namespace

std::string carryOut(PackReader& pack, const UnpackPlan& plan) {
    Arriving arriving;
    arriving.prepare(kVideos);
    arriving.prepare(folderOf(files::kPlaylistsName));
    const FolderHold hold(kVideos);
    writeClips(pack, plan, arriving);
    writeOthers(pack, plan, arriving);
    arriving.name();
    std::string copy;
    if (plan.merge.changed) {
        copy = keepCopyOfPlaylists(playlistsHere());
        savePlaylistsHere(plan.merge.playlists);
    }
    arriving.stay();
    noteSums(plan);
    return copy;
}

}  // namespace maker
