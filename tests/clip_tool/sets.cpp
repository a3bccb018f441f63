#include "clip_tool/sets.h"

#include <zlib.h>

#include "tools/clip/jobs/sha256.h"

namespace sets {

namespace {

void put(std::string& out, uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

// What the header of a file and its line in the directory share: from the version to the lengths.
std::string facts(const Entry& entry) {
    std::string out;
    const auto bytes = static_cast<uint32_t>(entry.text.size());
    put(out, 20, 2);
    put(out, entry.saysUtf8 ? 0x800 : 0, 2);
    put(out, 0, 2);
    put(out, 0x00210000, 4);
    put(out, crc32(0, reinterpret_cast<const Bytef*>(entry.text.data()), bytes), 4);
    put(out, bytes, 4);
    put(out, entry.claimedBytes.value_or(bytes), 4);
    put(out, entry.name.size(), 2);
    put(out, 0, 2);
    return out;
}

}  // namespace

std::string xmlOf(const std::vector<Playlist>& playlists) {
    std::string text = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";
    for (const Playlist& playlist : playlists) {
        text += "\t<playlist>\n\t\t<name>" + playlist.name + "</name>\n";
        for (const std::string& track : playlist.tracks) {
            text += "\t\t<track>" + track + "</track>\n";
        }
        text += "\t</playlist>\n";
    }
    return text + "</all>\n";
}

void write(const fs::path& path, const std::string& text) {
    if (path.has_parent_path()) {
        fs::create_directories(path.parent_path());
    }
    std::ofstream(path, std::ios::binary) << text;
}

std::string clipText(const std::string& name, int number) {
    std::ifstream file(TEST_DATA "/clips/" + name + ".m19", std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    return number == 0 ? text : text + static_cast<char>(number);
}

Listing listing(const fs::path& folder) {
    Listing all;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        std::string& text = all[entry.path().lexically_relative(folder).string()];
        if (entry.is_symlink()) {
            text = "link to " + fs::read_symlink(entry.path()).string();
        } else if (entry.is_regular_file()) {
            std::ifstream file(entry.path(), std::ios::binary);
            text.assign(std::istreambuf_iterator<char>(file), {});
        }
    }
    return all;
}

std::string zipOf(const std::vector<Entry>& entries) {
    std::string out;
    std::string directory;
    for (const Entry& entry : entries) {
        put(directory, 0x02014b50, 4);
        put(directory, 3 << 8 | 20, 2);  // made on a system with modes
        directory += facts(entry);
        put(directory, 0, 6);
        put(directory, entry.attributes, 4);
        put(directory, out.size(), 4);
        directory += entry.name;
        put(out, 0x04034b50, 4);
        out += facts(entry) + entry.name + entry.text;
    }
    std::string end;
    put(end, 0x06054b50, 4);
    put(end, 0, 4);
    put(end, entries.size(), 2);
    put(end, entries.size(), 2);
    put(end, directory.size(), 4);
    put(end, out.size(), 4);
    put(end, 0, 2);
    return out + directory + end;
}

Entry checksums(const std::vector<Entry>& entries) {
    std::map<std::string, std::string> sums;
    for (const Entry& entry : entries) {
        sums[entry.name] = maker::sha256Of(
            {reinterpret_cast<const uint8_t*>(entry.text.data()), entry.text.size()});
    }
    std::string text = "# Velmora set, version 1: SHA-256 of its files\n";
    for (const auto& [name, sum] : sums) {
        text += sum + "  " + name + "\n";
    }
    return {"checksums.txt", text};
}

std::string setOf(std::vector<Entry> entries, const std::vector<Playlist>& playlists) {
    entries.push_back({kXml, xmlOf(playlists)});
    entries.push_back(checksums(entries));
    return zipOf(entries);
}

}  // namespace sets
