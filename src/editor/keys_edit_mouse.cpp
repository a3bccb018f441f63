// What the mouse does on the playlist screen: clicks, drags, drops, scroll bars.
//
// The button going down selects a row, uses a button or takes a scroll bar. A drag begins when the
// pointer has left the place of a press on a row; a press that ends without one is a click.
#include <cstdio>
#include <cstdlib>

#include "core/globals.h"
#include "editor/editor_input.h"
#include "input/keys.h"
#include "layout/page_layout.h"
#include "playlists/playlist.h"

namespace {

constexpr int kDragDistance = 4;  // pixels in either direction
constexpr int kDoubleClickMs = 400;
constexpr int kFramesPerScroll = 3;  // while a drag waits at a list's edge
constexpr int kRowsPerNotch = 3;     // of the wheel

void pressScrollBar(c_playlist& editor, int list, int y) {
    ScrollBar& bar = editor.scroll[list];
    if (bar.maxPos == 0) {
        return;
    }
    editor.press = PRESS_SCROLL;
    editor.pressList = list;
    bar.active = 1;
    const int top = thumbTop(bar);
    if (y < top || y >= top + bar.thumb) {
        scrollTo(bar, y);
    }
}

// Playlists and the explorer's clips take a double click.
bool takesDoubleClick(const c_playlist& editor, int list, int row) {
    return editor.editPage == page::BROWSE ? list == page::LEFT
                                           : list == page::RIGHT && editor.entryIsClip[row] != 0;
}

// Two presses on the same row; the button is free again then.
bool isDoubleClick(c_playlist& editor, int list, int row) {
    const bool takes = takesDoubleClick(editor, list, row);
    const int64_t passed = msBetween(editor.lastPressMs, tempsActuel);
    const bool twice = takes && editor.pressList == list && editor.lastPressRow == row &&
                       passed >= 0 && passed <= kDoubleClickMs;
    editor.lastPressRow = takes && !twice ? row : -1;
    editor.lastPressMs = tempsActuel;
    return twice;
}

void pressRow(c_playlist& editor, int list, int row) {
    if (row >= editor.rowsIn(list)) {
        return;
    }
    editor.select(list, row);
    if (isDoubleClick(editor, list, row)) {
        // A playlist is opened, a clip becomes a track.
        if (list == page::LEFT) {
            editor.openSelection();
        } else {
            editor.insertEntry();
        }
        return;
    }
    editor.press = PRESS_ROW;
    editor.pressList = list;
}

void pressList(c_playlist& editor, int x, int y) {
    const int bar = page::scrollBarAt(x, y);
    if (bar >= 0) {
        pressScrollBar(editor, bar, y);
        return;
    }
    for (int list = page::LEFT; list <= page::RIGHT; ++list) {
        const int row = page::rowAt(list, x, y);
        if (row >= 0) {
            pressRow(editor, list, row + editor.scroll[list].pos);
            return;
        }
    }
}

void pressMouse(c_playlist& editor, int x, int y) {
    editor.letGo();
    editor.notice.clear();
    editor.focus = page::kNoButton;
    editor.pressX = x;
    editor.pressY = y;
    if (editor.carriedFrom >= 0) {
        editor.setDown();
        return;
    }
    if (editor.question != ASK_NOTHING) {
        editor.useButton(page::buttonAt(page::kQuestionButtons, x, y));
        return;
    }
    const int button = page::buttonAt(page::buttonsOf(editor.editPage), x, y);
    if (button >= 0) {
        editor.useButton(button);
    } else if (editor.editPage == page::NEW_PLAYLIST) {
        const int key = page::keyAt(x, y);
        if (key >= 0) {
            editor.typeKey(key);
        }
    } else {
        pressList(editor, x, y);
    }
}

// Only what the left list takes has a place in it.
bool hasDropPlace(const c_playlist& editor) {
    return editor.dragSource == page::LEFT ||
           (editor.editPage == page::TRACKS && editor.isFileMoxel(editor.entries[editor.selItem]));
}

// At an edge of the list a waiting drag scrolls it.
void scrollByDrag(c_playlist& editor, int x, int y) {
    const int direction = page::dragScrollAt(x, y);
    editor.holdFrames = direction == 0 ? 0 : editor.holdFrames + 1;
    if (editor.dragging != 0 && hasDropPlace(editor) && editor.holdFrames >= kFramesPerScroll) {
        editor.holdFrames = 0;
        scrollBy(editor.scroll[page::LEFT], direction);
    }
}

void dragItem(c_playlist& editor, int x, int y) {
    if (std::abs(x - editor.pressX) >= kDragDistance ||
        std::abs(y - editor.pressY) >= kDragDistance) {
        editor.dragging = 1;
        editor.lastPressRow = -1;
    }
    if (editor.dragging == 0) {
        return;
    }
    editor.dropRow = page::kNoDropRow;
    if (!hasDropPlace(editor)) {
        return;
    }
    const int row = page::dropRowAt(x, y);
    const int end = editor.rowsIn(page::LEFT) - editor.scroll[page::LEFT].pos;
    editor.dropRow = row < page::kNoDropRow && row > end ? end : row;
}

void dropItem(c_playlist& editor, const c_keys& input) {
    const int button = page::buttonAt(page::buttonsOf(editor.editPage), input.mouseX, input.mouseY);
    if (button >= 0) {
        if (editor.takesDrop(button)) {
            editor.useButton(button);
        }
        return;
    }
    const int row = page::dropRowAt(input.mouseX, input.mouseY);
    if (row >= page::kNoDropRow || !hasDropPlace(editor)) {
        return;
    }
    if (editor.editPage == page::TRACKS && editor.dragSource == page::RIGHT) {
        printf("%d\n%d\n", input.mouseX, input.mouseY);
    }
    editor.dropOnList(row + editor.scroll[page::LEFT].pos);
}

// A click on a folder of the explorer enters it.
void endClick(c_playlist& editor) {
    if (editor.editPage == page::TRACKS && editor.pressList == page::RIGHT &&
        editor.selItem < editor.nbEntries && editor.entryIsDir[editor.selItem] != 0) {
        editor.openSelection();
        // The next click of a hand that clicks twice is not for an entry of that folder.
        closeGate(editor.gate, false, tempsActuel);
    }
}

void holdMouse(c_playlist& editor, int x, int y) {
    if (editor.press == PRESS_ROW) {
        scrollByDrag(editor, x, y);
        dragItem(editor, x, y);
    } else if (y != editor.pressY) {
        // The thumb stays where it was taken until the pointer moves.
        editor.pressY = y;
        scrollTo(editor.scroll[editor.pressList], y);
    }
}

void releaseMouse(c_playlist& editor, const c_keys& input) {
    if (editor.press != PRESS_ROW) {
        holdMouse(editor, input.mouseX, input.mouseY);
        editor.letGo();
        return;
    }
    // The pointer may have gone the whole way since the last frame.
    dragItem(editor, input.mouseX, input.mouseY);
    const bool dragged = editor.dragging != 0;
    // First, so that a drop for which there is no memory is not tried again and again.
    editor.letGo();
    if (dragged) {
        dropItem(editor, input);
    } else {
        endClick(editor);
    }
}

// The pointer chooses a key only when it moves: the arrows choose too.
void lightKey(c_playlist& editor, int x, int y) {
    if (x != editor.pointerX || y != editor.pointerY) {
        editor.keyUnderPointer = page::keyAt(x, y);
        if (editor.keyUnderPointer >= 0 && editor.editPage == page::NEW_PLAYLIST) {
            editor.leaveButtons();
        }
    }
    editor.pointerX = x;
    editor.pointerY = y;
}

// Over a list, or its bar, by the list's own limits.
void turnWheel(const c_keys& input, c_playlist& editor) {
    const bool lists = editor.editPage == page::BROWSE || editor.editPage == page::TRACKS;
    if (input.wheel == 0 || !lists || editor.question != ASK_NOTHING ||
        editor.press == PRESS_SCROLL) {
        return;
    }
    for (int list = page::LEFT; list <= page::RIGHT; ++list) {
        if (page::rowAt(list, input.mouseX, input.mouseY) >= 0 ||
            page::scrollBarAt(input.mouseX, input.mouseY) == list) {
            scrollBy(editor.scroll[list], input.wheel * kRowsPerNotch);
        }
    }
}

bool gateHoldsFor(const c_keys& input, c_playlist& editor) {
    return gateHolds(editor.gate, input.mouseClick != 0 || input.mouseHeld != 0, tempsActuel);
}

}  // namespace

bool followMouse(const c_keys& input, c_playlist& editor) {
    const bool holding = editor.press != PRESS_NOTHING;
    lightKey(editor, input.mouseX, input.mouseY);
    turnWheel(input, editor);
    if (gateHoldsFor(input, editor)) {
        return false;
    }
    if (input.mouseClick != 0) {
        pressMouse(editor, input.mouseX, input.mouseY);
    } else if (holding) {
        if (input.mouseHeld != 0) {
            holdMouse(editor, input.mouseX, input.mouseY);
        } else {
            releaseMouse(editor, input);
        }
    }
    return holding || input.mouseClick != 0;
}

bool clickInPreview(const c_keys& input, c_playlist& editor) {
    return !gateHoldsFor(input, editor) && input.mouseClick != 0;
}
