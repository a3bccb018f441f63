#include "tools/clip/set/unpack.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <set>

#include "files/playlists.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/jobs/folder_hold.h"
#include "tools/clip/jobs/playlists_file.h"
#include "tools/clip/set/manifest.h"
#include "tools/clip/set/pack_names.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const fs::path& path) {
    stopIfInterrupted();
    throw ToolError("cannot write " + path.string() + ": " + std::strerror(errno));
}

// The files of a set on their way to their places. Unless they are told to stay, the new ones and
// the new folders go again.
class Arriving {
public:
    Arriving() = default;
    ~Arriving() {
        for (const fs::path& path : named_) {
            unlink(path.c_str());
        }
        files_.clear();
        while (!folders_.empty()) {
            folders_.pop_back();
        }
    }
    Arriving(const Arriving&) = delete;
    Arriving& operator=(const Arriving&) = delete;

    // Makes the folder when it is missing, and removes what killed runs left there.
    void prepare(const fs::path& folder);
    void write(const fs::path& target, std::span<const uint8_t> bytes, bool replaces);
    // Gives them their names: nothing is written over but what `replaces`.
    void name();
    void stay();

private:
    struct File {
        fs::path target;
        files::PendingFile pending;
        bool replaces;
    };

    std::vector<File> files_;
    std::vector<std::unique_ptr<FolderInMaking>> folders_;
    std::set<fs::path> prepared_;
    std::vector<fs::path> named_;
};

void Arriving::prepare(const fs::path& folder) {
    if (prepared_.insert(folder).second) {
        folders_.push_back(std::make_unique<FolderInMaking>(folder));
        files::removeAbandonedIn(folder);
    }
}

void Arriving::write(const fs::path& target, std::span<const uint8_t> bytes, bool replaces) {
    prepare(folderOf(target));
    fs::path place = target;
    files::PendingFile pending;
    if ((replaces && !files::followLinks(place)) || !pending.createBeside(place) ||
        !pending.write(bytes, stopIfInterrupted) || !pending.finish()) {
        fail(target);
    }
    files_.push_back({place, std::move(pending), replaces});
}

void Arriving::name() {
    for (File& file : files_) {
        stopIfInterrupted();
        std::error_code ignored;
        const bool there = fs::exists(fs::symlink_status(file.target, ignored));
        if (there && !file.replaces) {
            throw ToolError("cannot write " + file.target.string() +
                            ": a file of that name has come meanwhile, or one that the disk does "
                            "not tell from it");
        }
        if (!file.pending.commit(file.target)) {
            fail(file.target);
        }
        if (!there) {
            named_.push_back(file.target);
        }
    }
}

void Arriving::stay() {
    named_.clear();
    for (const auto& folder : folders_) {
        folder->keep();
    }
}

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
