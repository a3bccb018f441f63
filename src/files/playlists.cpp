#include "files/playlists.h"

#include "common/limits.h"
#include "files/xmlscan.h"

namespace files {

namespace {

// False when the document ended before the playlist did: it is not counted then.
// Deliberate: a playlist whose tracks run into the end of the document is dropped, though its
// tracks were read. [quirk_unclosed_playlist_is_dropped]
bool readPlaylist(xml::Scanner& scanner, Playlist& playlist) {
    if (scanner.skipTo("<playlist>") == xml::kEndOfAll) {
        return false;
    }
    std::string text = scanner.readNode("name");
    if (text == xml::kEndOfAll) {
        return false;
    }
    playlist.name = text;
    for (int t = 0; t < kTracksRead; ++t) {
        text = scanner.readNode("track");
        if (text == xml::kEndOfPlaylist || text == xml::kEndOfAll) {
            break;
        }
        // Guard: the last track that is read has no slot and is dropped.
        if (t < kTrackSlots) {
            playlist.tracks.push_back(text);
        }
    }
    return text != xml::kEndOfAll;
}

}  // namespace

std::vector<Playlist> parsePlaylists(std::string_view bytes) {
    xml::Scanner scanner(bytes);
    scanner.readPrologue();
    std::vector<Playlist> playlists;
    Playlist playlist;
    while (playlists.size() < kPlaylists && readPlaylist(scanner, playlist)) {
        playlists.push_back(std::move(playlist));
        playlist = {};
    }
    return playlists;
}

std::string printPlaylists(std::span<const Playlist> playlists) {
    std::string text = xml::kDocumentStart;
    for (const Playlist& playlist : playlists) {
        text += "\t<playlist>\n\t\t" + xml::element("name", playlist.name);
        for (const std::string& track : playlist.tracks) {
            text += "\t\t" + xml::element("track", track);
        }
        text += "\t</playlist>\n";
    }
    return text + xml::kDocumentEnd;
}

}  // namespace files
