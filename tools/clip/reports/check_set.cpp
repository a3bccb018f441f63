#include "tools/clip/reports/check_set.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "common/limits.h"
#include "files/preferences.h"
#include "layout/clipname.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/reports/check_files.h"
#include "tools/clip/reports/clip_frames.h"
#include "tools/clip/reports/memory_room.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

// What is noted where nobody has named a machine.
constexpr size_t kMuchMemory = roomOnMachine(512 * kMebibyte);

class SetChecker {
public:
    SetChecker(const fs::path& folder, std::optional<size_t> machine)
        : folder_(folder), videos_(folder / "videos"), machine_(machine) {}

    SetReport run();

private:
    const TrackReport& track(const std::string& path);
    void checkPlaylist(const PlaylistText& text);
    void checkTracks(const PlaylistReport& playlist);
    void checkMemory(PlaylistReport& playlist);
    void checkHeight(const std::string& playlist, const TrackReport& track);
    std::string missingText(const std::string& path) const;
    void findUnnamed();

    fs::path folder_;
    fs::path videos_;
    std::optional<size_t> machine_;              // bytes of memory
    std::vector<std::string> clips_;             // below videos/
    std::map<std::string, TrackReport> tracks_;  // looked at, by path
    SetReport report_;
};

// Each file is read once, however many playlists name it.
const TrackReport& SetChecker::track(const std::string& path) {
    const auto [place, isNew] = tracks_.try_emplace(path);
    TrackReport& track = place->second;
    if (!isNew) {
        return track;
    }
    stopIfInterrupted();
    track.path = path;
    const fs::path file = videos_ / path;
    std::error_code ignored;
    track.there = fs::is_regular_file(file, ignored);
    if (track.there) {
        try {
            describe(readWholeFile(file), track.clip);
        } catch (const ToolError& error) {
            track.fault = error.what();
        }
    }
    return track;
}

std::string SetChecker::missingText(const std::string& path) const {
    for (const std::string& clip : clips_) {
        if (lowerCase(clip) == lowerCase(path)) {
            return inQuotes(path) + " is missing; there is " + inQuotes(clip);
        }
    }
    return inQuotes(path) + " is missing";
}

// The top layer of a clip begins at the clip's own size in memory, the mixer's at the picture's: a
// low clip is moved up by the lines that it lacks.
void SetChecker::checkHeight(const std::string& playlist, const TrackReport& track) {
    const int height = track.clip.header.height;
    if (height >= kFrameHeight) {
        return;
    }
    const int shown = height - (kFrameHeight - height);
    report_.findings.note(
        playlist, inQuotes(track.path) + " is " + std::to_string(height) + " lines high, not " +
                      std::to_string(kFrameHeight) + ": on the top layer " +
                      (shown > 0 ? "only its last " + std::to_string(shown) + " lines show"
                                 : "nothing of it shows"));
}

void SetChecker::checkTracks(const PlaylistReport& playlist) {
    std::set<std::string> seen;
    int playable = 0;
    for (const TrackReport& track : playlist.tracks) {
        playable += track.there && track.clip.plays() ? 1 : 0;
        if (!seen.insert(track.path).second) {
            continue;
        }
        const std::string label = inQuotes(track.path) + " ";
        if (!track.there) {
            report_.findings.problem(playlist.name, missingText(track.path));
        } else if (!track.fault.empty()) {
            report_.findings.problem(playlist.name, readable(track.fault));
        } else if (!track.clip.plays()) {
            report_.findings.problem(playlist.name, label + "is " + verdictText(track.clip));
        } else if (track.clip.slow() || !track.clip.verdict.ok) {
            report_.findings.note(playlist.name, label + verdictText(track.clip));
        }
        if (track.there && track.clip.plays()) {
            checkHeight(playlist.name, track);
        }
    }
    if (playable > kClipSlots) {
        report_.findings.problem(playlist.name, "has " + std::to_string(playable) + " clips for " +
                                                    std::to_string(kClipSlots) +
                                                    " slots: the last ones are never loaded");
    }
}

void SetChecker::checkMemory(PlaylistReport& playlist) {
    if (!machine_) {
        if (playlist.memory > kMuchMemory) {
            report_.findings.note(playlist.name,
                                  "takes " + megabytes(playlist.memory, 1) +
                                      " of memory: too much for a computer of 512 MB");
        }
        return;
    }
    const size_t room = roomOnMachine(*machine_);
    const std::optional<size_t> beyond = firstBeyond(playlist, room);
    playlist.fits = !beyond;
    if (beyond) {
        report_.findings.problem(playlist.name,
                                 "track " + std::to_string(*beyond + 1) + ", " +
                                     inQuotes(playlist.tracks[*beyond].path) +
                                     ", is the first that does not fit: the playlist takes " +
                                     megabytes(playlist.memory, 1) + ", and that machine has " +
                                     megabytes(room, 1) + " for clips");
    }
}

void SetChecker::checkPlaylist(const PlaylistText& text) {
    PlaylistReport playlist;
    playlist.name = text.name;
    for (const std::string& path : text.tracks) {
        playlist.tracks.push_back(track(path));
    }
    addLoading(playlist);
    checkTracks(playlist);
    checkMemory(playlist);
    report_.playlists.push_back(std::move(playlist));
}

void SetChecker::findUnnamed() {
    for (const std::string& clip : clips_) {
        if (tracks_.count(clip) > 0) {
            continue;
        }
        const std::string where = "videos/" + clip;
        if (clip::isPlayableName(clip)) {
            report_.unnamed.push_back(clip);
            report_.findings.note(where, "no playlist names it");
        } else {
            report_.findings.note(where, "is of an older version, which does not play");
        }
    }
}

SetReport SetChecker::run() {
    std::error_code ignored;
    if (!fs::is_directory(folder_, ignored)) {
        throw ToolError("cannot check " + folder_.string() + ": it is no folder");
    }
    if (!fs::is_directory(videos_, ignored)) {
        report_.findings.problem("videos", "there is no such folder, so there are no clips");
    }
    const PlaylistsFile playlists = readPlaylists(folder_ / files::kPlaylistsName);
    checkPlaylistsFile(playlists, report_.findings);
    clips_ = clipsBelow(videos_);
    // What is read beyond the playlists of a damaged file is nothing that anybody named.
    std::vector<PlaylistText> real = playlists.read;
    real.resize(std::min(real.size(), playlists.written.size()));
    for (const PlaylistText& playlist : real) {
        checkPlaylist(playlist);
    }
    checkNames(real, report_.findings);
    findUnnamed();
    checkPrefsFile(readElements(folder_ / files::kPreferencesName, files::kPreferenceElements),
                   report_.findings);
    checkControllerFile(readElements(folder_ / files::kControllerName, files::kControllerElements),
                        report_.findings);
    return std::move(report_);
}

using Json = nlohmann::ordered_json;

std::string playlistLine(const PlaylistReport& playlist) {
    const size_t tracks = playlist.tracks.size();
    const auto ready = static_cast<size_t>(playlist.ready);
    std::string text = "  " + readable(playlist.name) + ": " + counted(tracks, "track");
    if (ready < tracks) {
        text += ", " + std::to_string(ready) + " of them can be played";
    }
    if (ready > 0) {
        text += "; the first after " + decimals(playlist.firstSeconds, 1) + " s, all after " +
                decimals(playlist.seconds, 1) + " s; " + megabytes(playlist.memory, 0) +
                " of memory";
    }
    if (playlist.fits) {
        text += *playlist.fits ? "; fits" : "; does not fit";
    }
    return text + "\n";
}

// Each as text and as JSON.
struct FindingList {
    std::string lines;
    Json json = Json::array();
};

FindingList findingsOf(const SetReport& report, bool problems) {
    FindingList list;
    for (const Finding& finding : report.findings.all()) {
        if (finding.problem == problems) {
            const std::string where = readable(finding.where);
            list.lines += "  " + where + ": " + finding.text + "\n";
            list.json.push_back({{"where", where}, {"text", finding.text}});
        }
    }
    return list;
}

Json jsonOf(const TrackReport& track) {
    Json json{{"path", readable(track.path)}, {"there", track.there}};
    if (!track.there) {
        return json;
    }
    json["plays"] = track.clip.plays();
    json["verdict"] = readable(track.fault.empty() ? verdictText(track.clip) : track.fault);
    json["bytes"] = track.clip.fileBytes;
    if (track.clip.plays()) {
        json["frames"] = track.clip.header.frameCount;
        json["loadSeconds"] = track.clip.cost.seconds;
        json["loadSecondsAsFirst"] = track.clip.cost.secondsAsFirst;
        json["memory"] = track.clip.cost.memory;
    }
    return json;
}

Json jsonOf(const PlaylistReport& playlist) {
    Json tracks = Json::array();
    for (const TrackReport& track : playlist.tracks) {
        tracks.push_back(jsonOf(track));
    }
    Json json{{"name", readable(playlist.name)},
              {"ready", playlist.ready},
              {"firstClipSeconds", playlist.firstSeconds},
              {"loadSeconds", playlist.seconds},
              {"memory", playlist.memory}};
    if (playlist.fits) {
        json["fits"] = *playlist.fits;
    }
    json["tracks"] = tracks;
    return json;
}

}  // namespace

void addLoading(PlaylistReport& playlist) {
    int steps = 0;
    playlist.memory = kClipSlots * slotBytes();
    for (const TrackReport& track : playlist.tracks) {
        if (playlist.ready == kClipSlots) {
            break;
        }
        if (!track.there || !track.clip.plays()) {
            ++steps;
            continue;
        }
        const LoadCost& cost = track.clip.cost;
        steps += playlist.ready == 0 ? cost.stepsAsFirst : cost.steps;
        playlist.memory += cost.memory - slotBytes();
        if (playlist.ready++ == 0) {
            playlist.firstSeconds = kStepSeconds * steps;
        }
    }
    playlist.seconds = kStepSeconds * steps;
}

std::optional<size_t> firstBeyond(const PlaylistReport& playlist, size_t room) {
    size_t memory = kClipSlots * slotBytes();
    int slots = 0;
    for (size_t place = 0; place < playlist.tracks.size() && slots < kClipSlots; ++place) {
        const TrackReport& track = playlist.tracks[place];
        if (track.there && track.clip.plays()) {
            memory += track.clip.cost.memory - slotBytes();
            ++slots;
            if (memory > room) {
                return place;
            }
        }
    }
    return std::nullopt;
}

SetReport checkSet(const fs::path& folder, std::optional<size_t> machine) {
    return SetChecker(folder, machine).run();
}

std::string asText(const SetReport& report) {
    std::string text;
    if (!report.playlists.empty()) {
        text += "Playlists\n";
        for (const PlaylistReport& playlist : report.playlists) {
            text += playlistLine(playlist);
        }
    }
    const auto problems = static_cast<size_t>(report.findings.problems());
    const size_t notes = report.findings.all().size() - problems;
    text += problems > 0 ? "Problems\n" + findingsOf(report, true).lines : "";
    text += notes > 0 ? "Notes\n" + findingsOf(report, false).lines : "";
    return text + (problems > 0 ? counted(problems, "problem") : "No problems") +
           (notes > 0 ? ", " + counted(notes, "note") : "") + ".\n";
}

std::string asJson(const std::string& folder, const SetReport& report) {
    Json playlists = Json::array();
    for (const PlaylistReport& playlist : report.playlists) {
        playlists.push_back(jsonOf(playlist));
    }
    Json unnamed = Json::array();
    for (const std::string& clip : report.unnamed) {
        unnamed.push_back(readable(clip));
    }
    const Json json{{"folder", readable(folder)},
                    {"ok", report.findings.problems() == 0},
                    {"problems", findingsOf(report, true).json},
                    {"notes", findingsOf(report, false).json},
                    {"playlists", playlists},
                    {"unnamed", unnamed}};
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace maker
