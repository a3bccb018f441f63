#pragma once
// A performer's whole folder checked before the show: the user's files, every playlist with its
// clips, and what in videos/ nobody names.
//
// `folder` is the one that the program would be started in. Loading follows the program's loader:
// one clip after the other into at most 50 slots, the first clip in large steps, one frame for each
// file that cannot be loaded.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tools/clip/reports/check_files.h"
#include "tools/clip/reports/describe.h"

namespace maker {

struct TrackReport {
    std::string path;  // below videos/
    bool there = false;
    std::string fault;  // why it could not be read; empty when it was
    Description clip;
};

struct PlaylistReport {
    std::string name;
    std::vector<TrackReport> tracks;
    int ready = 0;             // clips that get a slot
    double firstSeconds = 0;   // until something is on stage
    double seconds = 0;        // until all of it is loaded
    size_t memory = 0;         // of all 50 clip slots with this playlist loaded
    std::optional<bool> fits;  // the machine that was asked about, if one was
};

struct SetReport {
    std::vector<PlaylistReport> playlists;
    std::vector<std::string> unnamed;  // clips that no playlist names, below videos/
    Findings findings;
};

// Throws ToolError when `folder` is none. `machine`, the bytes of memory of one, has each playlist
// held against it.
SetReport checkSet(const std::filesystem::path& folder,
                   std::optional<size_t> machine = std::nullopt);

// Fills in what follows from the tracks.
void addLoading(PlaylistReport& playlist);

// The place of the first track whose clip does not fit into so many bytes any more.
std::optional<size_t> firstBeyond(const PlaylistReport& playlist, size_t room);

// What `velmora-clip check` says: text for people, JSON for machines.
std::string asText(const SetReport& report);

// One JSON object, without a line end.
std::string asJson(const std::string& folder, const SetReport& report);

}  // namespace maker
