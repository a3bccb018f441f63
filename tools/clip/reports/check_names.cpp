#include "tools/clip/reports/check_names.h"

#include <algorithm>
#include <memory>
#include <set>

#include "tools/clip/base/names.h"
#include "tools/clip/media/pixel_font.h"

namespace maker {

namespace {

// Pixels between the place where a name begins and what stands behind it; the numbers are those of
// the screens that draw them.
constexpr int kOverMenuRoom = 206 - 34;  // name to the number of tracks
constexpr int kPanelHdmiRoom = 210 - 6;  // in the layer's box
constexpr int kPanelCompositeRoom = 120 - 6;
constexpr int kEditorNameRoom = 308 - 5 - 4 - 24;   // left list, up to the number of tracks
constexpr int kEditorTrackRoom = 306 - 20 - 8 - 4;  // right list, behind the track's number

// The over-menu is one box as high as its rows, in the middle of a window of 720 lines.
constexpr size_t kOverMenuRows = (720 - 2 * 2) / 20;
constexpr size_t kExtension = 4;  // characters of ".m19"

constexpr const char* kRunsOn = "runs on beyond its box";
constexpr const char* kRunsOver = "runs over the number of tracks";
constexpr const char* kIsCut = "is cut";

class Measure {
public:
    int widthOf(const std::string& text, int size) const {
        return (size == kSmallText ? small_ : large_).widthOf(fromLatin1(text));
    }

private:
    PixelFont small_{kSmallText};
    PixelFont large_{kLargeText};
};

void checkPlaces(const Measure& measure, const std::string& where, const std::string& text,
                 const std::vector<NamePlace>& places, Findings& findings) {
    for (const NamePlace& place : places) {
        const int width = measure.widthOf(text, place.size);
        if (width > place.room) {
            findings.note(where, "its name " + std::string(place.outcome) + " " + place.what +
                                     ": " + std::to_string(width) + " pixels, room for " +
                                     std::to_string(place.room));
        }
    }
}

void checkLetters(const std::string& where, const std::string& text, Findings& findings) {
    if (!isAscii(text) && isUtf8(text)) {
        findings.note(where,
                      "its name is UTF-8; the screen shows it as " + inQuotes(latin1AsUtf8(text)));
    }
}

}  // namespace

std::vector<NamePlace> playlistNamePlaces() {
    return {{"in the list over the mix", kOverMenuRoom, kLargeText, kRunsOver},
            {"in the editor", kEditorNameRoom, kSmallText, kIsCut}};
}

std::vector<NamePlace> panelPlaces() {
    return {{"on the panel", kPanelHdmiRoom, kLargeText, kRunsOn},
            {"on the panel of a composite output", kPanelCompositeRoom, kSmallText, kRunsOn}};
}

std::vector<NamePlace> trackPathPlaces() {
    return {{"in the editor", kEditorTrackRoom, kSmallText, kIsCut}};
}

std::string panelTitle(const std::string& path) {
    const size_t slash = path.find_last_of("/\\");
    const std::string file = slash == std::string::npos ? path : path.substr(slash + 1);
    return file.substr(0, file.size() - std::min(file.size(), kExtension));
}

void checkNames(const std::vector<PlaylistText>& playlists, Findings& findings) {
    const Measure measure;
    std::set<std::string> seen;
    for (const PlaylistText& playlist : playlists) {
        checkPlaces(measure, playlist.name, playlist.name, playlistNamePlaces(), findings);
        checkLetters(playlist.name, playlist.name, findings);
        for (const std::string& path : playlist.tracks) {
            if (!seen.insert(path).second) {
                continue;
            }
            const std::string where = "videos/" + path;
            checkPlaces(measure, where, panelTitle(path), panelPlaces(), findings);
            checkPlaces(measure, where, path, trackPathPlaces(), findings);
            checkLetters(where, path, findings);
        }
    }
    if (playlists.size() > kOverMenuRows) {
        findings.note("userdata/playlists.xml",
                      "holds " + std::to_string(playlists.size()) +
                          " playlists; the list over the mix has room for " +
                          std::to_string(kOverMenuRows));
    }
}

}  // namespace maker
