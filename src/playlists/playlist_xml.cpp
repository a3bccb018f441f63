// playlists.xml: reading with the scanner, writing as a whole.
#include "common/memory.h"
#include "common/messages.h"
#include "files/xmlscan.h"
#include "playlists/playlist.h"

namespace {

constexpr const char* kReadPath = "./userdata/playlists.xml";
constexpr const char* kWritePath = "/userdata/playlists.xml";

std::string playlistElement(const Famille& famille) {
    std::string text = "\t<playlist>\n\t\t<name>" + famille.name + "</name>\n";
    for (int t = 0; t < famille.nbTracks; ++t) {
        text += "\t\t<track>" + famille.tracks[t].path + "</track>\n";
    }
    return text + "\t</playlist>\n";
}

std::string fileText(const Famille* familles, int count) {
    std::string text = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";
    for (int f = 0; f < count; ++f) {
        text += playlistElement(familles[f]);
    }
    return text + "</all>\n";
}

}  // namespace

std::string c_playlist::lireMot(const std::string& target) {
    return xml::skipTo(file, target);
}

std::string c_playlist::lireNoeud(const std::string& nodeName) {
    return xml::readNode(file, nodeName);
}

int c_playlist::finLigne() {
    return xml::skipChar(file);
}

bool c_playlist::saveXML() {
    bool saved = false;
    withinMemory(
        [&] { saved = userFile.replace(baseDir + kWritePath, fileText(familles, nbFamilles)); });
    if (!saved) {
        printf(msg::kSaveFailedFormat, baseDir.c_str(), kWritePath);
    }
    return saved;
}

// Deliberate: reading takes the path from the current directory, writing from the directory of the
// start-up. [quirk_read_path_is_relative_write_path_is_not]
void c_playlist::lireXML() {
    file = userFile.open(kReadPath);
    nbFamilles = 0;
    for (Famille& famille : familles) {
        famille.nbTracks = 0;
    }
    if (file == nullptr) {
        puts(msg::kNoPlaylistsFile);
        return;
    }
    xml::readPrologue(file);
    int found = 0;
    while (found < kPlaylists && readFamille(familles[found])) {
        ++found;
    }
    fclose(file);
    file = nullptr;
    nbFamilles = found;
    familles[nbFamilles].nbTracks = 0;
}

// False when the document ended before the famille did: it is not counted then.
// Deliberate: a famille whose tracks run into the end of the document is dropped, though its tracks
// were read. [quirk_unclosed_playlist_is_dropped]
bool c_playlist::readFamille(Famille& famille) {
    if (lireMot("<playlist>") == xml::kEndOfAll) {
        return false;
    }
    std::string text = lireNoeud("name");
    if (text == xml::kEndOfAll) {
        return false;
    }
    famille.name = text;
    for (int t = 0; t < kTracksRead; ++t) {
        text = lireNoeud("track");
        if (text == xml::kEndOfPlaylist || text == xml::kEndOfAll) {
            break;
        }
        // Guard: the last track that is read has no slot and is dropped.
        if (t < kTrackSlots) {
            famille.tracks[t].path = text;
            ++famille.nbTracks;
        }
    }
    return text != xml::kEndOfAll;
}
