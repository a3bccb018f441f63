// One save of one file in the working directory, by the code that the products save with, between
// two marks that a trace of the system calls shows. A child of the tests, which make its system
// calls fail or kill it at one of them.
//
//   save_once playlists|prefs|controller|clip old|new
//
// Says what the save says, which is nothing when it went well, then "goes on".
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "core/all.h"
#include "core/globals.h"
#include "faults/save_marks.h"
#include "input/keys.h"
#include "mixer/filters.h"
#include "options/options.h"
#include "playlists/playlist.h"
#include "tools/clip/atomic_file.h"
#include "tools/clip/errors.h"

namespace {

// More than a stream's buffer, so that the file takes more than one write.
constexpr int kFamilles = 4;
constexpr int kTracks = 40;
constexpr size_t kClipBytes = (size_t{3} << 19) + 17;

std::string workingFolder() {
    char buffer[4096];
    return getcwd(buffer, sizeof buffer) != nullptr ? buffer : "";
}

void savePlaylists(const std::string& word) {
    static c_playlist list;
    list.baseDir = workingFolder();
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

void makeOptions(int number) {
    all = new c_all{};
    all->appW = 1280;
    all->appH = 720;
    _filters = new c_filters{};
    _filters->slots[0][0].id = number;
    keys = new c_keys{};
    keys->padButton[0] = number;
    _options = new c_options{};
    _options->homeDir = workingFolder();
}

void saveOptions(bool prefs, int number) {
    makeOptions(number);
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
    if (count != 3) {
        return 2;
    }
    const std::string kind = words[1];
    const std::string word = words[2];
    const int number = word == "old" ? 3 : 7;
    if (kind == "playlists") {
        savePlaylists(word);
    } else if (kind == "clip") {
        saveClip(static_cast<uint8_t>(number));
    } else {
        saveOptions(kind == "prefs", number);
    }
    puts("goes on");
    return 0;
}
