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

void writeClips(SetFiles& set, const UnpackPlan& plan, Arriving& arriving,
                const std::function<void(size_t)>& written) {
    for (size_t i = 0; i < plan.clips.size(); ++i) {
        const PlannedClip& clip = plan.clips[i];
        const fs::path place = fs::path(kVideos) / clip.place.track;
        if (clip.place.kind != PlaceKind::THERE) {
            arriving.write(place, set.read(clip.file), false);
        }
        if (clip.origin) {
            arriving.write(place.string() + kOriginEnding, set.read(*clip.origin), false);
        }
        if (written) {
            written(i);
        }
    }
}

// What is replaced is kept beside it.
void writeOthers(SetFiles& set, const UnpackPlan& plan, Arriving& arriving) {
    for (const PlannedOther& other : plan.others) {
        const bool replaces = other.kind == OtherKind::REPLACED;
        if (replaces) {
            fs::path copy = other.target;
            copy += ".old";
            writeWholeFile(copy, readWholeFile(other.target));
        }
        if (replaces || other.kind == OtherKind::NEW) {
            arriving.write(other.target, set.read(other.file), replaces);
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

std::string carryOut(SetFiles& set, const UnpackPlan& plan,
                     const std::function<void(size_t)>& written) {
    Arriving arriving;
    arriving.prepare(kVideos);
    arriving.prepare(folderOf(files::kPlaylistsName));
    const FolderHold hold(kVideos);
    writeClips(set, plan, arriving, written);
    writeOthers(set, plan, arriving);
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
