#pragma once
// c_playlist: the playlists ("familles"), their file, the loader that fills the clip slots, and the
// state of the playlist screen. One object, the global `playlist`.
//
// A famille is a named, ordered list of clip files below ./videos/. Names and paths are bytes as
// they stand in the file (declared iso-8859-1), never decoded. Operations past a limit do nothing.

#include <SDL.h>
#include <dirent.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "common/limits.h"
#include "playlists/scroll.h"

class c_moxel;

inline constexpr int kExplorerRows = 100;
inline constexpr int kEditorKeys = 42;  // of the on-screen keyboard

struct Track {
    std::string path;     // relative to ./videos/
    int32_t missing = 0;  // 1 when the last scan could not read it as a clip
};

struct Famille {
    Track tracks[kTrackSlots];
    int32_t nbTracks = 0;
    std::string name;
    int32_t weight = 0;
    int32_t nbMissing = 0;
};

class c_playlist {
public:
    void initPlaylist();

    // The model and its file (playlist_model, playlist_xml).
    void lireXML();           // reads ./userdata/playlists.xml
    void saveXML();           // writes baseDir/userdata/playlists.xml
    void scanFamilles();      // marks the tracks whose files are missing
    void createNewFamille();  // appends `newName`, without tracks, and saves
    void saveFamille();       // saves and scans
    void removeFamille(int index);
    void deplacerFamille(int from, int to);
    std::string lireMot(const std::string& target);
    std::string lireNoeud(const std::string& nodeName);
    int finLigne();

    // The loader (playlist_load).
    void clearMix();           // empties the clip slots
    void initLoad(int index);  // starts loading a famille
    void loopLoadPlaylist();   // one step; nothing when no load is under way

    // The playlist screen (playlist_screen).
    void draw(SDL_Surface* surface, SDL_Surface* atlas);
    void initScroll(int bar, int count);
    void updateScroll(int bar, int count);

    // The editor's operations (playlist_edit). `pos` and `to` are rows; past the end they append.
    void addTrack(const std::string& fileName, int famille, int pos);  // of the browsed folder
    void removeTrack(int famille, int pos);
    void moveTrack(int from, int to);  // in `editFamille`
    bool isFileMoxel(const std::string& fileName);
    void readDir(const std::string& entry);  // into a folder of the listing, or ".. back"
    void exitEditPlaylists();
    const char* edit_char(int index);  // text of a key of the on-screen keyboard; "" for no key

    int32_t currentFamille;  // loaded last, or being loaded
    int32_t nbFamilles;
    // Guard: one record more than can be in use; moving a famille opens its gap there.
    Famille familles[kPlaylists + 1];
    FILE* file;         // of the reader; null when closed
    int32_t loadTrack;  // track being loaded
    int32_t loadSlot;   // clip slot being filled; equals the clips loaded so far
    int32_t loadDone;   // 1 once the famille is loaded to its end
    int32_t loading;    // 1 while a load is under way
    int32_t editPage;
    int32_t editFamille;
    int32_t keyUnderPointer;
    int32_t selRow;
    int32_t selItem;
    ScrollBar scroll[2];  // left and right list
    std::string newName;
    std::string browseDir;
    std::string curDir;
    DIR* dirHandle;
    std::string entries[kExplorerRows];
    int32_t entryIsDir[kExplorerRows];
    int32_t entryIsClip[kExplorerRows];
    int32_t lastRow;  // 99
    int32_t nbEntries;
    std::string baseDir;  // working directory at start-up
    int32_t dragging;
    int32_t dropRow;
    int32_t dragSource;
    c_moxel* previewClip;  // created once
    int32_t previewActive;
    int32_t previewFrame;

private:
    bool readFamille(Famille& famille);
    void openGap(Famille& famille, int at);
    std::string browsedFolder() const;
    void listDirectory();
    void closeDirectory();
    void endLoad();
};
