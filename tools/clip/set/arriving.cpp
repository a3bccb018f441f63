#include "tools/clip/set/arriving.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tools/base/errors.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const fs::path& path) {
    stopIfInterrupted();
    throw ToolError("cannot write " + path.string() + ": " + std::strerror(errno));
}

}  // namespace

Arriving::~Arriving() {
    for (const fs::path& path : named_) {
        unlink(path.c_str());
    }
    files_.clear();
    while (!folders_.empty()) {
        folders_.pop_back();
    }
}

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

}  // namespace maker
