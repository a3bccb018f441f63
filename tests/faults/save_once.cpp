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

#include "core/filters.h"
#include "faults/save_marks.h"
#include "files/userfile.h"
#include "input/keys.h"
#include "options/options.h"
#include "playlists/playlist.h"
#include "tests/support/stage_objects.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"

namespace {

// More than a stream's buffer, so that the file takes more than one write.
constexpr int kFamilles = 4;
constexpr int kTracks = 40;
constexpr size_t kClipBytes = (size_t{3} << 19) + 17;

void savePlaylists(const std::string& word, bool readsFirst) {
    if (readsFirst) {
        playlist->lireXML();
        printf("holds %d\n", playlist->nbFamilles);
    }
    playlist->nbFamilles = kFamilles;
    for (int f = 0; f < kFamilles; ++f) {
        playlist->familles[f].name = word;
        playlist->familles[f].nbTracks = kTracks;
        for (Track& track : playlist->familles[f].tracks) {
            track.path = word + "/a clip with a name of ordinary length.m19";
        }
    }
    access(faults::kSaveStarts, F_OK);
    playlist->saveXML();
    access(faults::kSaveEnds, F_OK);
}

void readOptions(c_options& options, bool prefs) {
    if (prefs) {
        options.lireXML();
        printf("holds %d\n", _filters->slots[0][0].id);
    } else {
        options.lireXMLController();
        printf("holds %d\n", keys->padButton[0]);
    }
}

void saveOptions(bool prefs, int number, bool readsFirst) {
    c_options options{};
    options.homeDir = workingDirectory();
    if (readsFirst) {
        readOptions(options, prefs);
    }
    _filters->slots[0][0].id = number;
    keys->padButton[0] = number;
    access(faults::kSaveStarts, F_OK);
    if (prefs) {
        options.saveXML();
    } else {
        options.saveXMLController();
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
    const StageObjects objects;
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
