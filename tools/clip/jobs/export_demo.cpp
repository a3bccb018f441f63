#include "tools/clip/jobs/export_demo.h"

#include "tools/clip/base/atomic_file.h"
#include "tools/clip/base/errors.h"
#include "tools/clip/base/interrupt.h"
#include "tools/clip/encoder/encoder.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr const char* kXmlDeclaration = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>";
constexpr size_t kFrameRgbaBytes = size_t{kFramePixels} * 4;

void makeFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw ToolError("cannot make the folder " + folder.string() + ": " + error.message());
    }
}

}  // namespace

std::vector<uint8_t> encodeLoop(const demo::Loop& loop) {
    ClipEncoder encoder({.alpha = loop.alpha});
    std::vector<uint8_t> rgba(kFrameRgbaBytes);
    demo::Canvas canvas(rgba.data());
    for (int i = 0; i < loop.frames; ++i) {
        stopIfInterrupted();
        loop.render(i, loop.frames, canvas);
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

std::string playlistsXml(std::span<const demo::Playlist> playlists) {
    std::string xml = std::string(kXmlDeclaration) + "\n\n<all>\n";
    for (const demo::Playlist& playlist : playlists) {
        xml += std::string("\t<playlist>\n\t\t<name>") + playlist.name + "</name>\n";
        for (const char* track : playlist.tracks) {
            xml += std::string("\t\t<track>") + track + ".m19</track>\n";
        }
        xml += "\t</playlist>\n";
    }
    return xml + "</all>\n";
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
