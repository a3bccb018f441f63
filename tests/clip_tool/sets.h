#pragma once
// Folders of Velmora to pack and unpack, and packed sets written by hand, right or wrong.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace sets {

namespace fs = std::filesystem;

inline constexpr const char* kXml = "userdata/playlists.xml";
inline constexpr const char* kSums = "userdata/clips.sha256";

struct Playlist {
    std::string name;
    std::vector<std::string> tracks;
};

// As the program writes it.
std::string xmlOf(const std::vector<Playlist>& playlists);

void write(const fs::path& path, const std::string& text);

// A clip that plays, told from others by its last byte.
std::string clipText(const std::string& name, int number = 0);

// All files and links below a folder and what they hold; folders have an empty text.
using Listing = std::map<std::string, std::string>;
Listing listing(const fs::path& folder);

struct Entry {
    std::string name;
    std::string text;
    uint32_t attributes = 0100644U << 16;       // mode of the file
    std::optional<uint32_t> claimedBytes = {};  // when another size is told
    bool saysUtf8 = false;                      // of its name
};

// Entries as they are, one behind the other and not deflated.
std::string zipOf(const std::vector<Entry>& entries);

// The list of checksums of all entries.
Entry checksums(const std::vector<Entry>& entries);

// A set: the entries with their checksums and these playlists.
std::string setOf(std::vector<Entry> entries, const std::vector<Playlist>& playlists);

}  // namespace sets
