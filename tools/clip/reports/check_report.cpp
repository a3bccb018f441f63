#include "tools/clip/reports/check_report.h"

#include <nlohmann/json.hpp>

#include "tools/clip/base/names.h"
#include "tools/clip/base/texts.h"

namespace maker {

namespace {

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
    return text + "\n";
}

std::string findingLines(const SetReport& report, bool problems) {
    std::string text;
    for (const Finding& finding : report.findings.all()) {
        if (finding.problem == problems) {
            text += "  " + readable(finding.where) + ": " + finding.text + "\n";
        }
    }
    return text;
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
    return {{"name", readable(playlist.name)},
            {"ready", playlist.ready},
            {"firstClipSeconds", playlist.firstSeconds},
            {"loadSeconds", playlist.seconds},
            {"memory", playlist.memory},
            {"tracks", tracks}};
}

Json findingsOf(const SetReport& report, bool problems) {
    Json json = Json::array();
    for (const Finding& finding : report.findings.all()) {
        if (finding.problem == problems) {
            json.push_back({{"where", readable(finding.where)}, {"text", finding.text}});
        }
    }
    return json;
}

}  // namespace

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
    text += problems > 0 ? "Problems\n" + findingLines(report, true) : "";
    text += notes > 0 ? "Notes\n" + findingLines(report, false) : "";
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
                    {"problems", findingsOf(report, true)},
                    {"notes", findingsOf(report, false)},
                    {"playlists", playlists},
                    {"unnamed", unnamed}};
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace maker
