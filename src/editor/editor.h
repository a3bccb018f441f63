#pragma once
// The playlist screen, state 2 of the program: what its performer does on three pages (browse,
// name, tracks; page::Page), each with one or two lists of rows. One object, the global `editor`.
// Keys and mouse (keys_editor*.cpp) drive the steps below, PagePainter draws what they leave.
//
// What the Editor works on is the model's: the page shown, the rows selected, the scroll bars, the
// name being typed, the listing of the explorer. The list in use is its dragSource, also when
// nothing is dragged. A step that makes no sense now does nothing.

#include <SDL.h>

#include <cstdint>
#include <string>

#include "editor/explorer.h"
#include "layout/page_layout.h"
#include "layout/press_gate.h"
#include "playlists/playlist.h"

enum Question : int32_t { ASK_NOTHING = 0, ASK_DELETE, ASK_SAVE, ASK_DISCARD };
enum Press : int32_t { PRESS_NOTHING = 0, PRESS_ROW, PRESS_SCROLL };

// The last of so many rows, 0 of none.
constexpr int lastOf(int rows) {
    return rows > 0 ? rows - 1 : 0;
}

class Editor {
public:
    explicit Editor(c_playlist& lists);

    // Lists and rows (editor). Lists are page::List.
    void holdSelection();  // rows that no longer exist are let go
    bool onPage(int page) const { return model.editPage == page; }
    Famille& shown() const { return model.familles[model.editFamille]; }
    int rowsIn(int list) const;
    int selectedRow(int list) const;
    void select(int list, int row);    // and the list becomes the one in use
    std::string selectedText() const;  // of the list in use
    bool isClipEntry(int row) const;

    // From page to page (editor).
    void showBrowse();
    void openSelection();        // edit a playlist, enter a folder, preview a clip
    void goBack();               // one page, or home; asks first where something would be lost
    void answer(bool yes);       // to the question that stands
    void letGo();                // of everything that the mouse holds
    void shut(bool buttonDown);  // takes no presses until the button is up and a while has passed
    bool isShut(bool buttonDown);
    // Two presses on the same row, of a list that takes them; the button is free again then.
    bool isDoubleClick(int list, int row, bool takes);

    // The buttons, by mouse and by keys (editor).
    bool canUse(int button) const;     // page::Button
    bool takesDrop(int button) const;  // the button can be used with what is dragged
    void useButton(int button);
    void enterButtons();
    void leaveButtons() { focus = page::kNoButton; }
    void moveFocus(int step);  // along the buttons that can be used, round the row's ends
    void useFocused();

    // What changes playlists and tracks (editor_changes).
    void dropOnList(int row);  // the dragged item, before a row of the left list
    void insertEntry();        // the selected explorer entry, behind the selected track
    void carry(int step);      // the row that is picked up: one row up or down
    void setDown();            // where it is now; playlists are saved
    void putBack();            // where it was picked up
    bool tracksChanged() const;

    // The name page (editor_changes).
    bool takesLetters() const;  // no question stands on it
    void typeKey(int key);      // of the on-screen keyboard

    // The preview of a clip over the whole screen (editor_preview).
    void startPreview();  // of the selected item; blocks until the clip is loaded
    void endPreview();    // and black where it has been

    void draw(SDL_Surface* surface, SDL_Surface* atlas);  // editor_draw

    c_playlist& model;
    Explorer explorer;
    int32_t question = ASK_NOTHING;  // Question: stands on the page until it is answered
    int32_t chosenYes = 0;  // what the keys have chosen of a question's answers: 1 yes, 0 no
    int32_t press = PRESS_NOTHING;  // Press: what the mouse button went down on
    int32_t pressX = 0;             // where it went down, picture coordinates
    int32_t pressY = 0;
    int32_t pressList = 0;      // list of the row or scroll bar it went down on
    int32_t lastPressMs = 0;    // time of the last press on a row
    int32_t lastPressRow = -1;  // its row, -1 none: two presses make a double click
    int32_t holdFrames = 0;     // frames for which an arrow or an edge of a list is held
    int32_t pointerX = 0;       // the pointer in the last frame
    int32_t pointerY = 0;
    int32_t renaming = 0;             // the name page is for: 0 a new playlist, 1 the selected one
    int32_t focus = page::kNoButton;  // page::Button that the keys are on; kNoButton: in a list
    int32_t carriedFrom = -1;         // row where the carried one was picked up; -1 none is carried
    int32_t muted = 0;                // 1: keys held since before do not write
    PressGate gate = {};              // closed, the page takes no presses
    std::string notice;               // one line under the buttons; empty none
    Famille enteredFamille;           // the playlist as it was when the tracks page was entered
    int32_t* listOverMix = nullptr;   // a row selected elsewhere, held where playlists are

private:
    void showTracks();
    void showFolder(const std::string& entry);
    void leave();
    void ask(Question asked);
    void saveChange();
    void confirmTracks();
    void discardTracks();
    void deleteSelected();
    void deleteFamille();
    void copySelected();
    void moveFamilleTo(int row);
    void moveTrackTo(int row);
    bool isFullToMove();
    void addEntryAt(int row);
    void addBehindSelected();
    void pickUp();
    void carryOne(int step);
    void openNamePage(bool forOld);
    std::string oldName() const;
    void finishName();
    bool createNamed();
    bool renameNamed();
    std::string previewPath() const;
    void drawPreview(SDL_Surface* surface);
};
