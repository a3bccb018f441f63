// playlists.xml: into the records and out of them.
#include "common/messages.h"
#include "files/playlists.h"
#include "files/xmlscan.h"
#include "playlists/playlist.h"

std::string c_playlist::lireMot(const std::string& target) {
    return xml::Scanner(file).skipTo(target);
}

std::string c_playlist::lireNoeud(const std::string& nodeName) {
    return xml::Scanner(file).readNode(nodeName);
}

int c_playlist::finLigne() {
    return xml::Scanner(file).skipChar();
}

bool c_playlist::saveXML() {
    return userFile.save(baseDir, files::kPlaylistsName, [this] {
        std::vector<files::Playlist> playlists;
        for (const Famille* famille = familles; famille != familles + nbFamilles; ++famille) {
            files::Playlist& playlist = playlists.emplace_back();
            playlist.name = famille->name;
            for (int t = 0; t < famille->nbTracks; ++t) {
                playlist.tracks.push_back(famille->tracks[t].path);
            }
        }
        return files::printPlaylists(playlists);
    });
}

// Deliberate: reading takes the path from the current directory, writing from the directory of the
// start-up. [quirk_read_path_is_relative_write_path_is_not]
void c_playlist::lireXML() {
    const std::optional<std::string> bytes =
        userFile.read(std::string("./") + files::kPlaylistsName);
    nbFamilles = 0;
    for (Famille& famille : familles) {
        famille.nbTracks = 0;
    }
    if (!bytes) {
        puts(msg::kNoPlaylistsFile);
        return;
    }
    for (const files::Playlist& playlist : files::parsePlaylists(*bytes)) {
        Famille& famille = familles[nbFamilles++];
        famille.name = playlist.name;
        for (const std::string& track : playlist.tracks) {
            famille.tracks[famille.nbTracks++].path = track;
        }
    }
}
