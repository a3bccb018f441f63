#include "tools/clip/reports/check_files.h"

#include <algorithm>
#include <set>
#include <span>

#include "layout/name_rooms.h"
#include "tools/base/texts.h"
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

void checkPlaces(const std::string& where, const std::string& text,
                 std::span<const NamePlace> places, Findings& findings) {
    static const PixelFont small(kSmallText);
    static const PixelFont large(kLargeText);
    for (const NamePlace& place : places) {
        const int width = (place.size == kSmallText ? small : large).widthOf(fromLatin1(text));
        if (width > place.room) {
            findings.note(where, "its name " + std::string(place.outcome) + " " + place.what +
                                     ": " + std::to_string(width) + " pixels, room for " +
                                     std::to_string(place.room));
        }
    }
}

void checkLetters(const std::string& where, const std::string& text, Findings& findings) {
    const std::string shown = latin1AsUtf8(text);
    if (shown != text && isUtf8(text)) {
        findings.note(where, "its name is UTF-8; the screen shows it as " + inQuotes(shown));
    }
}

}  // namespace

std::string panelTitle(const std::string& path) {
    const size_t slash = path.find_last_of("/\\");
    const std::string file = slash == std::string::npos ? path : path.substr(slash + 1);
    return file.substr(0, file.size() - std::min(file.size(), kExtension));
}

void checkNames(const std::vector<PlaylistText>& playlists, Findings& findings) {
    std::set<std::string> seen;
    for (const PlaylistText& playlist : playlists) {
        checkPlaces(playlist.name, playlist.name, kPlaylistPlaces, findings);
        checkLetters(playlist.name, playlist.name, findings);
        for (const std::string& path : playlist.tracks) {
            if (!seen.insert(path).second) {
                continue;
            }
            const std::string where = "videos/" + path;
            checkPlaces(where, panelTitle(path), kTitlePlaces, findings);
            checkPlaces(where, path, kPathPlaces, findings);
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
