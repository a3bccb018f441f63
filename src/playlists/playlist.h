#pragma once
// c_playlist: the playlists ("familles"), their file, the loader that fills the clip slots, and
// what the playlist screen shows of them. One object, the global `playlist`. What the screen's
// performer does, and how it is drawn, is the editor's: editor/editor.h.
//
// A famille is a named, ordered list of clip files below ./videos/. Names and paths are bytes as
// they stand in the file (declared iso-8859-1), never decoded. Operations past a limit do nothing.

#include <SDL.h>
#include <dirent.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "common/limits.h"
#include "files/read_ahead.h"
#include "files/userfile.h"
#include "files/xmlscan.h"
#include "layout/clipname.h"
#include "layout/page_layout.h"
#include "layout/scroll.h"

class c_moxel;

inline constexpr int kExplorerRows = 100;
inline constexpr const char* kVideosFolder = "/videos";  // below the working directory

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

    // Guard: a playlist that came from a file may be past the editor's limit, up to its last slot.
    bool isFull() const { return nbTracks == kEditorTracks || nbTracks >= kTrackSlots; }
};

class c_playlist {
public:
    void initPlaylist();

    // The model and its file (playlist_model).
    void lireXML();           // reads ./userdata/playlists.xml
    bool saveXML();           // writes baseDir/userdata/playlists.xml; false: said, nothing changed
    void scanFamilles();      // marks the tracks whose files are missing
    bool createNewFamille();  // appends `newName`, without tracks; false: it could not be saved
    bool saveFamille();       // saves and scans; false: it could not be saved
    void removeFamille(int index);
    void deplacerFamille(int from, int to);
    // Kept without a caller: the scanner's steps (xmlscan.h) on the open `file`.
    std::string lireMot(const std::string& target) { return xml::Scanner(file).skipTo(target); }
    std::string lireNoeud(const std::string& name) { return xml::Scanner(file).readNode(name); }
    int finLigne() { return xml::Scanner(file).skipChar(); }

    // The loader (playlist_load).
    void clearMix();           // empties the clip slots
    void initLoad(int index);  // starts loading a famille
    void loopLoadPlaylist();   // one step; nothing when no load is under way

    // The tracks (playlist_model). `pos` and `to` are rows; past the end they append.
    void addTrack(const std::string& fileName, int famille, int pos);  // of the browsed folder
    void removeTrack(int famille, int pos);
    void moveTrack(int from, int to);  // in `editFamille`
    bool isFileMoxel(const std::string& fileName) const { return clip::isClipName(fileName); }
    // The folder being browsed, relative to ./videos/, with a "/" behind it; empty for ./videos.
    std::string browsedFolder() const;
    void initScroll(int bar, int count) { resetScroll(scroll[bar], count); }
    void updateScroll(int bar, int count) { resizeScroll(scroll[bar], count); }
    // Text of a key of the on-screen keyboard; "" for no key.
    const char* edit_char(int index) { return page::keyText(index); }

    // Doors to the editor.
    void draw(SDL_Surface* surface, SDL_Surface* atlas);
    void drawScroll(SDL_Surface* surface, int bar);
    void drawDrag(SDL_Surface* surface, int x, int y);
    void startPreview();  // of the selected item; blocks until the clip is loaded
    void finRenderPreview();
    void readDir(const std::string& entry);  // into a folder of the listing, or ".. back"
    void exitEditPlaylists();

    int32_t currentFamille;  // loaded last, or being loaded
    int32_t nbFamilles;
    // Guard: one record more than can be in use; moving a famille opens its gap there.
    Famille familles[kPlaylists + 1];
    FILE* file;           // of lireMot, lireNoeud and finLigne; null when closed
    int32_t loadTrack;    // track being loaded
    int32_t loadSlot;     // clip slot being filled; equals the clips loaded so far
    int32_t loadDone;     // 1 once the famille is loaded to its end
    int32_t loading;      // 1 while a load is under way
    int32_t editPage;     // page::Page
    int32_t editFamille;  // shown on the browse page's right, edited on the tracks page
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
    int32_t dropRow;       // page::kNoDropRow: none
    int32_t dragSource;    // page::List in use, also when nothing is dragged
    c_moxel* previewClip;  // created once
    int32_t previewActive;
    int32_t previewFrame;

    UserFile userFile;  // one that could not be read is not written over

private:
    void setTrackCount(Famille& famille, int count);
    void insertTrack(Famille& famille, int at, Track track);
    void startTrack(const std::string& track);
    bool stepWaits(int budget);
    void endLoad();

    ReadAhead ahead;       // of the track that is being loaded
    int32_t framesWaited;  // by the next step
};
