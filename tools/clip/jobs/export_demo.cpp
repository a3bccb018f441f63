#include "tools/clip/jobs/export_demo.h"

#include "files/playlists.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/encoder/encoder.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr size_t kFrameRgbaBytes = size_t{kFramePixels} * 4;

void makeFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw ToolError("cannot make the folder " + folder.string() + ": " + error.message());
    }
}

std::string playlistsXml(std::span<const demo::Playlist> playlists) {
    std::vector<files::Playlist> list;
    for (const demo::Playlist& playlist : playlists) {
        list.push_back({playlist.name, {}});
        for (const char* track : playlist.tracks) {
            list.back().tracks.push_back(std::string(track) + ".m19");
        }
    }
    return files::printPlaylists(list);
}

}  // namespace

std::vector<uint8_t> encodeLoop(const demo::Loop& loop) {
    ClipEncoder encoder({.alpha = loop.alpha});
    std::vector<uint8_t> rgba(kFrameRgbaBytes);
    demo::Canvas canvas(rgba.data());
    for (int i = 0; i < loop.frames; ++i) {
        stopIfInterrupted();
        demo::draw(loop, i, canvas);
        encoder.add(rgba.data());
    }
    return encoder.finish();
}

void exportLoops(std::span<const demo::Loop> loops, const fs::path& folder, bool force,
                 const ExportLog& log) {
    makeFolder(folder);
    for (const demo::Loop& loop : loops) {
        const fs::path path = folder / (std::string(loop.name) + ".m19");
        if (!force && fs::exists(path)) {
            log(path, "kept");
            continue;
        }
        const std::vector<uint8_t> bytes = encodeLoop(loop);
        writeWholeFile(path, bytes);
        log(path,
            std::to_string(loop.frames) + " frames, " + std::to_string(bytes.size()) + " bytes");
    }
}

bool exportPlaylists(std::span<const demo::Playlist> playlists, const fs::path& path) {
    if (fs::exists(path)) {
        return false;
    }
    if (path.has_parent_path()) {
        makeFolder(path.parent_path());
    }
    const std::string xml = playlistsXml(playlists);
    writeWholeFile(path, {reinterpret_cast<const uint8_t*>(xml.data()), xml.size()});
    return true;
}

}  // namespace maker
