// Any bytes as a file of the user's: playlists, preferences or controller map. It is read within
// its limits, and what was read is written and read again as it is.
//
// Input: a byte that says which file, then its text. The end of the document is put behind it,
// because the playlists of a file without one are slow to give up; the highest sixteenth of the
// first byte leaves it off.
#include <filesystem>
#include <string>
#include <vector>

#include "core/all.h"
#include "core/filters.h"
#include "fuzz/input.h"
#include "input/keys.h"
#include "options/options.h"
#include "playlists/playlist.h"
#include "tests/support/folder.h"
#include "tests/support/stage_objects.h"

namespace {

using fuzz::require;

constexpr int kFiles = 3;
constexpr uint8_t kEndLeftOff = 0xF0;
constexpr uint8_t kSaved = 0x80;  // the file is also written and read again
constexpr size_t kLongestName = 92;
constexpr size_t kLongestTrack = 91;

// ./userdata holds the input under each name; ./saved is where the program writes.
class Stage {
public:
    Stage() {
        fuzz::silenceOutput();
        std::filesystem::create_directories("userdata");
        std::filesystem::create_directories("saved/userdata");
        for (const char* name : {"playlists.xml", "prefs.xml", "gamecontroller.xml"}) {
            std::filesystem::create_symlink(input.path(), std::string("userdata/") + name);
        }
        savedFolder = (folder_.path() / "saved").string();
        playlist->baseDir = savedFolder;
        options.homeDir = savedFolder;
    }

    // Reads what was saved.
    template <typename Read>
    void readSaved(Read read) {
        require(chdir(savedFolder.c_str()) == 0, "the folder of saved files is there");
        read();
        require(chdir(folder_.path().c_str()) == 0, "the folder of the input is there");
    }

private:
    TemporaryFolder folder_;
    StageObjects objects_;

public:
    fuzz::MemoryFile input;
    std::string savedFolder;
    c_options options{};
};

// Everything that the playlists file keeps.
std::vector<std::string> contentOf() {
    std::vector<std::string> content;
    for (int f = 0; f < playlist->nbFamilles; ++f) {
        const Famille& famille = playlist->familles[f];
        content.push_back(famille.name);
        require(famille.nbTracks >= 0 && famille.nbTracks <= kTrackSlots, "tracks fit their slots");
        require(famille.name.size() <= kLongestName, "a name has its longest length");
        for (int t = 0; t < famille.nbTracks; ++t) {
            content.push_back("track " + famille.tracks[t].path);
            require(famille.tracks[t].path.size() <= kLongestTrack, "so has a track");
        }
    }
    return content;
}

void checkPlaylists(Stage& stage, bool saved, size_t size) {
    playlist->lireXML();
    require(playlist->nbFamilles >= 0 && playlist->nbFamilles <= kPlaylists, "playlists have room");
    const std::vector<std::string> content = contentOf();
    if (saved && playlist->nbFamilles > 0) {
        playlist->saveXML();
        stage.readSaved([&] { playlist->lireXML(); });
        require(contentOf() == content, "saved playlists come back");
    }
    const int families = playlist->nbFamilles;
    playlist->deplacerFamille(static_cast<int>(size % 60), static_cast<int>(size / 60 % 53));
    playlist->removeFamille(static_cast<int>(size % 7));
    require(playlist->nbFamilles == families || playlist->nbFamilles == families - 1,
            "one playlist goes at most");
    contentOf();
}

std::vector<int> preferences(const c_options& options) {
    std::vector<int> values = {options.topbar, options.fps, all->appW, all->appH};
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        values.push_back(_filters->slots[0][slot].id);
        require(_filters->slots[1][slot].id == values.back(), "both layers hold the same filters");
        require(_filters->getFilterName(values.back()) != nullptr, "every filter has a name");
    }
    return values;
}

void checkPreferences(Stage& stage, bool saved) {
    c_options& options = stage.options;
    options.topbar = 0;
    options.fps = 0;
    all->appW = kHdmiWidth;
    all->appH = kHdmiHeight;
    options.lireXML();
    require((options.topbar | options.fps | 1) == 1, "a flag is 0 or 1");
    require(all->appW >= 800 && all->appH >= 600, "the picture has its smallest size");
    const std::vector<int> values = preferences(options);
    if (saved) {
        options.saveXML();
        stage.readSaved([&] { options.lireXML(); });
        require(preferences(options) == values, "saved preferences come back");
    }
}

void checkController(Stage& stage, bool saved) {
    keys->initController();
    stage.options.lireXMLController();
    const std::vector<int> buttons(std::begin(keys->padButton), std::end(keys->padButton));
    if (saved) {
        stage.options.saveXMLController();
        stage.readSaved([&] { stage.options.lireXMLController(); });
        require(std::equal(buttons.begin(), buttons.end(), keys->padButton),
                "a saved controller map comes back");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Stage stage;
    fuzz::Input input(data, size);
    const uint8_t choice = input.byte();
    std::string text(reinterpret_cast<const char*>(input.rest().data()), input.rest().size());
    if (choice < kEndLeftOff) {
        text += "</all>\n";
    }
    stage.input.write(text.data(), text.size());
    const bool saved = (choice & kSaved) != 0;
    switch (choice % kFiles) {
        case 0:
            checkPlaylists(stage, saved, size);
            break;
        case 1:
            checkPreferences(stage, saved);
            break;
        default:
            checkController(stage, saved);
            break;
    }
    return 0;
}
