#pragma once
// A folder of clips taken as a set: its clips, those of the folders below it, and playlists of them
// that are named after it. What is hidden is left out, and no link is followed.

#include <filesystem>
#include <string>
#include <vector>

#include "tools/clip/set/set_files.h"

namespace maker {

// The clips of a folder by their paths below it, sorted; nothing of them is read. Throws ToolError
// for a folder that cannot be read, for one without a clip, and for more than playlists hold.
std::vector<std::string> looseClips(const std::filesystem::path& folder);

// A playlist's name made of any text: what cannot stand in one becomes "_".
std::string playlistNameOf(const std::string& text);

// How many playlists so many clips make.
size_t playlistsFor(size_t clips);

struct LeftOut {
    std::string clip;
    std::string fault;
};

class ClipFolder : public SetFiles {
public:
    // Reads and checks all clips. Throws ToolError where there is none that plays.
    ClipFolder(const std::filesystem::path& folder, const std::string& name);

    const std::vector<LeftOut>& leftOut() const { return leftOut_; }

    std::vector<uint8_t> read(const PackedFile& file) override;
    bool lookedAt() const override { return true; }

private:
    void add(const std::string& track);
    void addOrigin(const std::string& track, uint64_t clipBytes);
    void addPlaylists(const std::string& name);

    std::filesystem::path folder_;
    std::string playlists_;  // the text of the file
    std::vector<LeftOut> leftOut_;
};

}  // namespace maker
