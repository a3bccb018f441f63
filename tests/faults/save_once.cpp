// One save of one file in the working directory, by the code that the products save with, between
// two marks that a trace of the system calls shows. A child of the tests, which make its system
// calls fail or kill it at one of them.
//
//   save_once playlists|prefs|controller|clip old|new [read]
//
// With "read" it reads the file first, as the program does when it starts, and says "holds" and a
// number: the playlists, the first letter's filter or the first function's button that it then has.
// Says what the save says, which is nothing when it went well, then "goes on".
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "core/all.h"
#include "core/filters.h"
#include "core/globals.h"
#include "faults/save_marks.h"
#include "input/keys.h"
#include "options/options.h"
#include "playlists/playlist.h"
#include "tools/clip/base/atomic_file.h"
#include "tools/clip/base/errors.h"

namespace {

// More than a stream's buffer, so that the file takes more than one write.
constexpr int kFamilles = 4;
constexpr int kTracks = 40;
constexpr size_t kClipBytes = (size_t{3} << 19) + 17;

std::string workingFolder() {
    char buffer[4096];
    return getcwd(buffer, sizeof buffer) != nullptr ? buffer : "";
}

void savePlaylists(const std::string& word, bool readsFirst) {
    static c_playlist list;
    list.baseDir = workingFolder();
    if (readsFirst) {
        list.lireXML();
        printf("holds %d\n", list.nbFamilles);
    }
    list.nbFamilles = kFamilles;
    for (int f = 0; f < kFamilles; ++f) {
        list.familles[f].name = word;
        list.familles[f].nbTracks = kTracks;
        for (Track& track : list.familles[f].tracks) {
            track.path = word + "/a clip with a name of ordinary length.m19";
        }
    }
    access(faults::kSaveStarts, F_OK);
    list.saveXML();
    access(faults::kSaveEnds, F_OK);
}

void makeOptions() {
    all = new c_all{};
    all->appW = 1280;
    all->appH = 720;
    _filters = new c_filters{};
    keys = new c_keys{};
    _options = new c_options{};
    _options->homeDir = workingFolder();
}

void readOptions(bool prefs) {
    if (prefs) {
        _options->lireXML();
        printf("holds %d\n", _filters->slots[0][0].id);
    } else {
        _options->lireXMLController();
        printf("holds %d\n", keys->padButton[0]);
    }
}

void saveOptions(bool prefs, int number, bool readsFirst) {
    makeOptions();
    if (readsFirst) {
        readOptions(prefs);
    }
    _filters->slots[0][0].id = number;
    keys->padButton[0] = number;
    access(faults::kSaveStarts, F_OK);
    if (prefs) {
        _options->saveXML();
    } else {
        _options->saveXMLController();
    }
    access(faults::kSaveEnds, F_OK);
}

void saveClip(uint8_t byte) {
    const std::vector<uint8_t> bytes(kClipBytes, byte);
    access(faults::kSaveStarts, F_OK);
    try {
        maker::writeWholeFile("userdata/loop.m19", bytes);
    } catch (const maker::ToolError& error) {
        puts(error.what());
    }
    access(faults::kSaveEnds, F_OK);
}

}  // namespace

int main(int count, char** words) {
    if (count != 3 && count != 4) {
        return 2;
    }
    const bool readsFirst = count == 4 && strcmp(words[3], "read") == 0;
    const std::string kind = words[1];
    const std::string word = words[2];
    const int number = word == "old" ? 3 : 7;
    if (kind == "playlists") {
        savePlaylists(word, readsFirst);
    } else if (kind == "clip") {
        saveClip(static_cast<uint8_t>(number));
    } else {
        saveOptions(kind == "prefs", number, readsFirst);
    }
    puts("goes on");
    return 0;
}
