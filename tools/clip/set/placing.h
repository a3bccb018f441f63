#pragma once
// Where a clip of a set goes in videos/ of the current directory: to its own place, nowhere when it
// is there already, or to a free name beside a different clip. Files are read and none is written.
//
// A place that a link leads to outside videos/ is refused (ToolError).

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace maker {

enum class PlaceKind { NEW, THERE, RENAMED };

struct Place {
    PlaceKind kind = PlaceKind::NEW;
    std::string track;  // below videos/
};

struct ClipFacts {
    std::string track;
    uint64_t bytes = 0;
    std::string sha256;
};

// Throws where a folder of the track is a link out of videos/, or no folder.
void checkFoldersOf(const std::string& track);

class Placing {
public:
    // Tracks that no clip is given a new name of.
    explicit Placing(std::set<std::string> reserved) : reserved_(std::move(reserved)) {}

    Place placeFor(const ClipFacts& clip);

private:
    bool isThere(const std::string& track, const ClipFacts& clip);
    bool isTaken(const std::string& track) const;

    std::set<std::string> reserved_;
    std::set<std::string> given_;
    std::map<std::string, std::string> sums_;  // of clips that are there, by track
};

}  // namespace maker
