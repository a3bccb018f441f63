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

#include "clip/survey.h"
#include "common/limits.h"
#include "files/userfile.h"
#include "layout/press_gate.h"
#include "layout/scroll.h"

class PagePainter;
class c_moxel;

inline constexpr int kExplorerRows = 100;
inline constexpr int kEditorKeys = 42;  // of the on-screen keyboard

enum Question : int32_t { ASK_NOTHING = 0, ASK_DELETE, ASK_SAVE, ASK_DISCARD };
enum Press : int32_t { PRESS_NOTHING = 0, PRESS_ROW, PRESS_SCROLL };

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

// What the explorer says about a clip.
struct ClipFacts {
    clip::SurveyState state = clip::SURVEY_GOES_ON;
    int32_t frames = 0;
    int32_t steps = 0;  // of the loader
};

class c_playlist {
public:
    void initPlaylist();

    // The model and its file (playlist_model, playlist_xml).
    void lireXML();           // reads ./userdata/playlists.xml
    bool saveXML();           // writes baseDir/userdata/playlists.xml; false: said, nothing changed
    void scanFamilles();      // marks the tracks whose files are missing
    bool createNewFamille();  // appends `newName`, without tracks; false: it could not be saved
    bool saveFamille();       // saves and scans; false: it could not be saved
    void removeFamille(int index);
    void deplacerFamille(int from, int to);
    std::string lireMot(const std::string& target);
    std::string lireNoeud(const std::string& nodeName);
    int finLigne();

    // The loader (playlist_load).
    void clearMix();           // empties the clip slots
    void initLoad(int index);  // starts loading a famille
    void loopLoadPlaylist();   // one step; nothing when no load is under way

    // The playlist screen (playlist_screen, playlist_pages) and its preview (playlist_preview).
    void draw(SDL_Surface* surface, SDL_Surface* atlas);
    void initScroll(int bar, int count);
    void updateScroll(int bar, int count);
    void drawScroll(SDL_Surface* surface, int bar);
    void drawDrag(SDL_Surface* surface, int x, int y);
    void startPreview();  // of the selected item; blocks until the clip is loaded
    void finRenderPreview();
    void endPreview();  // and black where it has been

    // What buttons, keys and drops do on the pages (playlist_steps, playlist_changes,
    // playlist_names). Lists are 0 left, 1 right. A step that makes no sense now does nothing.
    void holdSelection();  // rows that no longer exist are let go
    int rowsIn(int list) const;
    int selectedRow(int list) const;
    void select(int list, int row);    // and the list becomes the one in use
    bool canUse(int button) const;     // page::Button
    bool takesDrop(int button) const;  // the button can be used with what is dragged
    void useButton(int button);
    void openSelection();       // edit a playlist, enter a folder, preview a clip
    bool takesLetters() const;  // the name page, and no question on it
    void typeKey(int key);      // of the on-screen keyboard
    void dropOnList(int row);   // the dragged item, before a row of the left list
    void goBack();              // one page, or home; asks first where something would be lost
    void answer(bool yes);      // to the question that stands
    void takeQuestionBack();
    void insertEntry();  // the selected explorer entry, behind the selected track
    void letGo();        // of everything that the mouse holds

    // The buttons by keys, and a row carried by them (playlist_focus).
    void enterButtons();
    void leaveButtons();
    void moveFocus(int step);  // along the buttons that can be used, round the row's ends
    void useFocused();
    void carry(int step);  // the row that is picked up: one row up or down
    void setDown();        // where it is now; playlists are saved
    void putBack();        // where it was picked up

    // The editor's operations (playlist_edit). `pos` and `to` are rows; past the end they append.
    void addTrack(const std::string& fileName, int famille, int pos);  // of the browsed folder
    void removeTrack(int famille, int pos);
    void moveTrack(int from, int to);  // in `editFamille`
    bool isFileMoxel(const std::string& fileName) const;
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
    int32_t nbFound;   // clips and folders in the browsed folder
    int32_t nbListed;  // how many of them stand in the listing
    ClipFacts clipFacts[kExplorerRows];
    clip::Survey survey;  // of the clip that is being looked into
    int32_t surveyRow;    // its row, -1 none
    std::string baseDir;  // working directory at start-up
    int32_t dragging;
    int32_t dropRow;
    int32_t dragSource;
    c_moxel* previewClip;  // created once
    int32_t previewActive;
    int32_t previewFrame;

    // The list in use is dragSource, also when nothing is dragged.
    int32_t question;  // Question: stands on the page until it is answered
    int32_t press;     // Press: what the mouse button went down on
    int32_t pressX;    // where it went down, picture coordinates
    int32_t pressY;
    int32_t pressList;     // list of the row or scroll bar it went down on
    int32_t lastPressMs;   // time of the last press on a row
    int32_t lastPressRow;  // its row, -1 none: two presses make a double click
    int32_t holdFrames;    // frames for which an arrow or an edge of a list is held
    int32_t pointerX;      // the pointer in the last frame
    int32_t pointerY;
    int32_t renaming;        // the name page is for: 0 a new playlist, 1 the selected one
    int32_t chosenYes;       // what the keys have chosen of a question's answers: 1 yes, 0 no
    int32_t focus;           // page::Button that the keys are on; page::kNoButton: in a list
    int32_t carriedFrom;     // row where the carried one was picked up; -1 none is carried
    int32_t muted;           // 1: keys held since before do not write
    PressGate gate;          // closed, the page takes no presses
    std::string notice;      // one line under the buttons; empty none
    Famille enteredFamille;  // the playlist as it was when page 2 was entered
    UserFile userFile;       // one that could not be read is not written over

private:
    void drawBrowsePage(PagePainter& painter);
    void drawNamePage(PagePainter& painter);
    void drawTracksPage(PagePainter& painter);
    void drawFamilleRows(PagePainter& painter);
    void drawTrackRows(PagePainter& painter, int list);
    void drawEntryRows(PagePainter& painter);
    void drawButtons(PagePainter& painter);
    void drawQuestion(PagePainter& painter);
    void drawName(PagePainter& painter);
    void drawKeys(PagePainter& painter);
    std::string questionSubject() const;
    void drawPreview(SDL_Surface* surface);
    void drawPage(SDL_Surface* surface, SDL_Surface* atlas);
    std::string draggedText() const;
    std::string previewPath() const;
    std::string fullText() const;
    int rowLook(int list, int row) const;
    bool tracksChanged() const;
    bool isClipEntry(int row) const;
    void showBrowse();
    void showTracks();
    void showFolder(const std::string& entry);
    void openNamePage(bool forOld);
    bool nameTouched() const;
    void finishName();
    void createNamed();
    void renameNamed();
    void ask(Question asked);
    void saveChange();
    void confirmTracks();
    void discardTracks();
    void leave();
    void deleteSelected();
    void deleteFamille();
    void moveFamilleTo(int row);
    void copySelected();
    std::string copyName(const std::string& name) const;
    bool isFullToMove();
    void pickUp();
    void carryOne(int step);
    void swapMarks(int one, int other);
    void moveTrackTo(int row);
    void addBehindSelected();
    void addEntryAt(int row);
    bool readFamille(Famille& famille);
    void setTrackCount(Famille& famille, int count);
    void insertTrack(Famille& famille, int at, Track track);
    std::string browsedFolder() const;
    void forgetClips();
    int rowToLookInto() const;
    void lookIntoClips();
    int drawClipFacts(PagePainter& painter, int entry, int visibleRow, int look, int ink);
    void drawExplorerTitle(PagePainter& painter);
    void listDirectory();
    void closeDirectory();
    void endLoad();
};
