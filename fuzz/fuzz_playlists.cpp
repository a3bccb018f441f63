// Any bytes as a playlists file: it is read within its limits, and what was read is written again.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

#include "playlists/playlist.h"

namespace {

class Stage {
public:
    Stage() : playlist(new c_playlist{}) {
        char folder[] = "/tmp/velmora-fuzz-XXXXXX";
        if (mkdtemp(folder) == nullptr || chdir(folder) != 0 || system("mkdir userdata") != 0) {
            abort();
        }
        if (freopen("/dev/null", "w", stdout) == nullptr) {
            abort();
        }
        playlist->initPlaylist();
    }

    c_playlist* const playlist;  // lives as long as the process, like the program's own
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Stage stage;
    FILE* file = fopen("userdata/playlists.xml", "wb");
    if (file == nullptr || (size != 0 && fwrite(data, 1, size, file) != size) ||
        fclose(file) != 0) {
        abort();
    }
    stage.playlist->lireXML();
    if (stage.playlist->nbFamilles < 0 || stage.playlist->nbFamilles > kPlaylists) {
        abort();
    }
    stage.playlist->deplacerFamille(static_cast<int>(size % 60), static_cast<int>(size % 53));
    stage.playlist->removeFamille(static_cast<int>(size % 7));
    return 0;
}
