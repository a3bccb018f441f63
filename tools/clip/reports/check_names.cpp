#include "tools/clip/reports/check_files.h"

#include <algorithm>
#include <set>
#include <span>

#include "layout/name_rooms.h"
#include "tools/clip/base/texts.h"
#include "tools/clip/media/pixel_font.h"

namespace maker {

namespace {

// The list over the mix at its highest: the larger of the window's sizes.
constexpr int kWindowHeight = 720;
constexpr size_t kOverMenuRows =
    (kWindowHeight - 2 * layout::kOverMenuEdge) / layout::kOverMenuRowHeight;
constexpr size_t kExtension = 4;  // characters of ".m19"

// A place where the program shows names, and what happens to one that is too long.
struct NamePlace {
    const char* what;
    int room;  // pixels
    int size;  // of the font
    const char* outcome;
};
constexpr const char* kRunsOn = "runs on beyond its box";
constexpr NamePlace kPlaylistPlaces[] = {
    {"in the list over the mix", layout::kOverMenuNameRoom, kLargeText,
     "runs over the number of tracks"},
    {"in the editor", layout::kPlaylistNameRoom, kSmallText, "is cut"}};
// The file's name without folder and ending.
constexpr NamePlace kTitlePlaces[] = {
    {"on the panel", layout::kPanelBoxHdmi - layout::kPanelNameX, kLargeText, kRunsOn},
    {"on the panel of a composite output", layout::kPanelBoxComposite - layout::kPanelNameX,
     kSmallText, kRunsOn}};
constexpr NamePlace kPathPlaces[] = {
    {"in the editor", layout::kTrackPathRoom, kSmallText, "is cut"}};

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
                 std::span<const NamePlace> places, Findings& findings) {
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

std::string panelTitle(const std::string& path) {
    const size_t slash = path.find_last_of("/\\");
    const std::string file = slash == std::string::npos ? path : path.substr(slash + 1);
    return file.substr(0, file.size() - std::min(file.size(), kExtension));
}

void checkNames(const std::vector<PlaylistText>& playlists, Findings& findings) {
    const Measure measure;
    std::set<std::string> seen;
    for (const PlaylistText& playlist : playlists) {
        checkPlaces(measure, playlist.name, playlist.name, kPlaylistPlaces, findings);
        checkLetters(playlist.name, playlist.name, findings);
        for (const std::string& path : playlist.tracks) {
            if (!seen.insert(path).second) {
                continue;
            }
            const std::string where = "videos/" + path;
            checkPlaces(measure, where, panelTitle(path), kTitlePlaces, findings);
            checkPlaces(measure, where, path, kPathPlaces, findings);
            checkLetters(where, path, findings);
        }
    }
    if (playlists.size() > kOverMenuRows) {
        findings.note(files::kPlaylistsName, "holds " + std::to_string(playlists.size()) +
                                                 " playlists; the list over the mix has room for " +
                                                 std::to_string(kOverMenuRows));
    }
}

}  // namespace maker
