#include "tools/clip/jobs/playlists_file.h"

#include <cstdio>
#include <filesystem>
#include <optional>

#include "common/messages.h"
#include "files/userfile.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"

namespace maker {

namespace fs = std::filesystem;
using files::kPlaylistsName;
using files::Playlist;

namespace {

size_t countOf(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

}  // namespace

std::vector<Playlist> playlistsHere() {
    std::error_code ignored;
    if (!fs::exists(kPlaylistsName, ignored)) {
        return {};
    }
    UserFile file;
    const std::optional<std::string> bytes = file.read(kPlaylistsName);
    if (!bytes) {
        std::puts(msg::kNoPlaylistsFile);
    }
    if (file.unreadable()) {
        throw ToolError(std::string("cannot read ") + kPlaylistsName);
    }
    return bytes ? files::parsePlaylists(*bytes) : std::vector<Playlist>();
}

void savePlaylistsHere(const std::vector<Playlist>& playlists) {
    FolderInMaking folder(folderOf(kPlaylistsName));
    if (!UserFile().save(fs::current_path().string(), kPlaylistsName,
                         [&] { return files::printPlaylists(playlists); })) {
        throw ToolError(std::string("cannot write ") + kPlaylistsName);
    }
    folder.keep();
}

std::string keepCopyOfPlaylists(const std::vector<Playlist>& playlists) {
    std::error_code ignored;
    if (!fs::exists(kPlaylistsName, ignored)) {
        return "";
    }
    const std::vector<uint8_t> bytes = readWholeFile(kPlaylistsName);
    const std::string text(bytes.begin(), bytes.end());
    size_t tracks = 0;
    for (const Playlist& playlist : playlists) {
        tracks += playlist.tracks.size();
    }
    if (countOf(text, "<playlist>") == playlists.size() && countOf(text, "<track>") == tracks) {
        return "";
    }
    const std::string copy = std::string(kPlaylistsName) + ".old";
    writeWholeFile(copy, bytes);
    return copy;
}

void warnOfCopy(const std::string& copy) {
    if (!copy.empty()) {
        std::fprintf(stderr,
                     "velmora-clip: warning: the playlists file held more than the program reads "
                     "of it; as it was it is kept as %s\n",
                     copy.c_str());
    }
}

}  // namespace maker
