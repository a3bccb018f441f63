#include "tools/doctor/set.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <string>

#include "files/playlists.h"
#include "files/userfile.h"
#include "tools/base/texts.h"
#include "tools/clip/reports/memory_room.h"

namespace doctor {

namespace fs = std::filesystem;

namespace {

struct DataFile {
    const char* name;
    const char* without;  // what is missing where it is
};

constexpr DataFile kDataFiles[] = {
    {"data/textureUI.png", "the menus and the panel have no pictures"},
    {"data/volter", "there are no letters"},
    {"data/home.png", "the menu has no background"},
    {"data/logo-tessaron.png", "there is no logo"},
    {"data/ps3-controller.png", "the controller's page has no picture"},
};

// A minute is long before an audience.
constexpr double kLongLoad = 60;

bool may(const fs::path& path, int what) {
    return faccessat(AT_FDCWD, path.c_str(), what, AT_EACCESS) == 0;
}

bool there(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(path, ignored);
}

void judgeMemory(const maker::SetReport& set, std::optional<size_t> freeMemory, Remarks& remarks) {
    const auto largest =
        std::ranges::max_element(set.playlists, {}, &maker::PlaylistReport::memory);
    if (!freeMemory || largest == set.playlists.end()) {
        return;
    }
    const size_t room = maker::roomForClips(*freeMemory);
    const std::string sizes = said("the largest playlist, ", maker::inQuotes(largest->name),
                                   ", takes ", maker::megabytes(largest->memory, 0), ", and ",
                                   maker::megabytes(room, 0), " are free for it");
    if (largest->memory > room) {
        remarks.hurts("memory", sizes + ": its last clips will not be loaded",
                      "End other programs, or take fewer or smaller clips.");
    } else {
        remarks.fine("memory", sizes);
    }
}

void judgePlaylist(const maker::PlaylistReport& playlist, Remarks& remarks) {
    const std::string name = maker::readable(playlist.name);
    if (playlist.ready == 0) {
        remarks.hurts(name, "none of its clips plays: the stage stays black with it",
                      "Put clips into it in EDIT, or their files back below videos/.");
        return;
    }
    const std::string loading =
        said(maker::counted(static_cast<size_t>(playlist.ready), "clip"), "; the first after ",
             maker::decimals(playlist.firstSeconds, 1), " s, all after ",
             maker::decimals(playlist.seconds, 1), " s");
    if (playlist.seconds > kLongLoad) {
        remarks.note(name, loading, "Fewer clips load faster; all that are there play meanwhile.");
    } else {
        remarks.fine(name, loading);
    }
}

}  // namespace

void judgeData(const fs::path& folder, Remarks& remarks) {
    const char* const mend = "Start Velmora with its launcher, or in its own folder.";
    size_t found = 0;
    for (const DataFile& file : kDataFiles) {
        if (may(folder / file.name, R_OK)) {
            ++found;
        } else {
            remarks.hurts("data", said(file.name, " is missing: ", file.without), mend);
        }
    }
    if (found == std::size(kDataFiles)) {
        remarks.fine("data", "all pictures and letters are there");
    }
}

void judgeRights(const fs::path& folder, Remarks& remarks) {
    const char* const mend = "sudo chown -R $USER on Velmora's folder; or the disk is read-only.";
    if (!there(folder / "userdata") ? !may(folder, W_OK) : !may(folder / "userdata", W_OK)) {
        remarks.hurts("rights",
                      "userdata/ cannot be written: what is changed in EDIT and OPTIONS is lost",
                      mend);
    }
    for (const char* const name :
         {files::kPlaylistsName, files::kPreferencesName, files::kControllerName}) {
        const fs::path file = folder / name;
        if (there(file) && !readRegular(file, std::numeric_limits<size_t>::max())) {
            remarks.hurts("rights", said(name, " is there and cannot be read"), mend);
        }
    }
    if (there(folder / "videos") && !may(folder / "videos", R_OK | X_OK)) {
        remarks.stops("rights", "videos/ cannot be read: there are no clips", mend);
    }
}

void judgeSet(const maker::SetReport& set, std::optional<size_t> freeMemory, bool withController,
              Remarks& remarks) {
    for (const maker::Finding& finding : set.findings.all()) {
        const bool idle = finding.where == files::kControllerName && !withController;
        remarks.add(finding.problem && !idle ? Grade::HURTS : Grade::NOTE,
                    maker::readable(finding.where), finding.text, "");
    }
    if (std::ranges::none_of(set.playlists, [](const auto& each) { return each.ready > 0; })) {
        remarks.stops("playlists", "there is no clip to play in any of them",
                      "velmora-clip demo --playlists userdata/playlists.xml makes the demo set.");
    }
    for (const maker::PlaylistReport& playlist : set.playlists) {
        judgePlaylist(playlist, remarks);
    }
    judgeMemory(set, freeMemory, remarks);
}

std::optional<files::ControllerMap> controllerMapIn(const fs::path& folder) {
    const std::optional<std::string> text =
        readRegular(folder / files::kControllerName, std::numeric_limits<size_t>::max());
    return text ? std::optional(files::parseController(*text)) : std::nullopt;
}

}  // namespace doctor
