// What the mouse does on the playlist screen: clicks, drags, drops, scroll bars.
//
// The button going down selects a row, uses a button or takes a scroll bar. A drag begins when the
// pointer has left the place of a press on a row; a press that ends without one is a click.
#include <cstdio>
#include <cstdlib>

#include "common/messages.h"
#include "editor/editor.h"
#include "editor/keys_editor.h"
#include "input/keys.h"

namespace {

constexpr int kDragDistance = 4;     // pixels in either direction
constexpr int kFramesPerScroll = 3;  // while a drag waits at a list's edge
constexpr int kRowsPerNotch = 3;     // of the wheel

void pressScrollBar(Editor& editor, int list, int y) {
    ScrollBar& bar = editor.model.scroll[list];
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
bool takesDoubleClick(const Editor& editor, int list, int row) {
    return editor.onPage(page::BROWSE) ? list == page::LEFT
                                       : list == page::RIGHT && editor.model.entryIsClip[row] != 0;
}

void pressRow(Editor& editor, int list, int row) {
    if (row >= editor.rowsIn(list)) {
        return;
    }
    editor.select(list, row);
    if (editor.isDoubleClick(list, row, takesDoubleClick(editor, list, row))) {
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

void pressList(Editor& editor, int x, int y) {
    const int bar = page::scrollBarAt(x, y);
    if (bar >= 0) {
        pressScrollBar(editor, bar, y);
        return;
    }
    for (int list = page::LEFT; list <= page::RIGHT; ++list) {
        const int row = page::rowAt(list, x, y);
        if (row >= 0) {
            pressRow(editor, list, row + editor.model.scroll[list].pos);
            return;
        }
    }
}

void pressMouse(Editor& editor, int x, int y) {
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
    const int button = page::buttonAt(page::buttonsOf(editor.model.editPage), x, y);
    if (button >= 0) {
        editor.useButton(button);
    } else if (editor.onPage(page::NEW_PLAYLIST)) {
        const int key = page::keyAt(x, y);
        if (key >= 0) {
            editor.typeKey(key);
        }
    } else {
        pressList(editor, x, y);
    }
}

// Only what the left list takes has a place in it.
bool hasDropPlace(const Editor& editor) {
    return editor.model.dragSource == page::LEFT ||
           (editor.onPage(page::TRACKS) &&
            editor.model.isFileMoxel(editor.model.entries[editor.model.selItem]));
}

// At an edge of the list a waiting drag scrolls it.
void scrollByDrag(Editor& editor, int x, int y) {
    const int direction = page::dragScrollAt(x, y);
    editor.holdFrames = direction == 0 ? 0 : editor.holdFrames + 1;
    if (editor.model.dragging != 0 && hasDropPlace(editor) &&
        editor.holdFrames >= kFramesPerScroll) {
        editor.holdFrames = 0;
        scrollBy(editor.model.scroll[page::LEFT], direction);
    }
}

void dragItem(Editor& editor, int x, int y) {
    if (std::abs(x - editor.pressX) >= kDragDistance ||
        std::abs(y - editor.pressY) >= kDragDistance) {
        editor.model.dragging = 1;
        editor.lastPressRow = -1;
    }
    if (editor.model.dragging == 0) {
        return;
    }
    editor.model.dropRow = page::kNoDropRow;
    if (!hasDropPlace(editor)) {
        return;
    }
    const int row = page::dropRowAt(x, y);
    const int end = editor.rowsIn(page::LEFT) - editor.model.scroll[page::LEFT].pos;
    editor.model.dropRow = row < page::kNoDropRow && row > end ? end : row;
}

void dropItem(Editor& editor, const c_keys& input) {
    const int button =
        page::buttonAt(page::buttonsOf(editor.model.editPage), input.mouseX, input.mouseY);
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
    if (editor.onPage(page::TRACKS) && editor.model.dragSource == page::RIGHT) {
        printf(msg::kDropFormat, input.mouseX, input.mouseY);
    }
    editor.dropOnList(row + editor.model.scroll[page::LEFT].pos);
}

// A click on a folder of the explorer enters it.
void endClick(Editor& editor) {
    if (editor.onPage(page::TRACKS) && editor.pressList == page::RIGHT &&
        editor.model.selItem < editor.model.nbEntries &&
        editor.model.entryIsDir[editor.model.selItem] != 0) {
        editor.openSelection();
        // The next click of a hand that clicks twice is not for an entry of that folder.
        editor.shut(false);
    }
}

void holdMouse(Editor& editor, int x, int y) {
    if (editor.press == PRESS_ROW) {
        scrollByDrag(editor, x, y);
        dragItem(editor, x, y);
    } else if (y != editor.pressY) {
        // The thumb stays where it was taken until the pointer moves.
        editor.pressY = y;
        scrollTo(editor.model.scroll[editor.pressList], y);
    }
}

void releaseMouse(Editor& editor, const c_keys& input) {
    if (editor.press != PRESS_ROW) {
        holdMouse(editor, input.mouseX, input.mouseY);
        editor.letGo();
        return;
    }
    // The pointer may have gone the whole way since the last frame.
    dragItem(editor, input.mouseX, input.mouseY);
    const bool dragged = editor.model.dragging != 0;
    // First, so that a drop for which there is no memory is not tried again and again.
    editor.letGo();
    if (dragged) {
        dropItem(editor, input);
    } else {
        endClick(editor);
    }
}

// The pointer chooses a key only when it moves: the arrows choose too.
void lightKey(Editor& editor, int x, int y) {
    if (x != editor.pointerX || y != editor.pointerY) {
        editor.model.keyUnderPointer = page::keyAt(x, y);
        if (editor.model.keyUnderPointer >= 0 && editor.onPage(page::NEW_PLAYLIST)) {
            editor.leaveButtons();
        }
    }
    editor.pointerX = x;
    editor.pointerY = y;
}

// Over a list, or its bar, by the list's own limits.
void turnWheel(const c_keys& input, Editor& editor) {
    const bool lists = editor.onPage(page::BROWSE) || editor.onPage(page::TRACKS);
    if (input.wheel == 0 || !lists || editor.question != ASK_NOTHING ||
        editor.press == PRESS_SCROLL) {
        return;
    }
    for (int list = page::LEFT; list <= page::RIGHT; ++list) {
        if (page::rowAt(list, input.mouseX, input.mouseY) >= 0 ||
            page::scrollBarAt(input.mouseX, input.mouseY) == list) {
            scrollBy(editor.model.scroll[list], input.wheel * kRowsPerNotch);
        }
    }
}

bool isShut(const c_keys& input, Editor& editor) {
    return editor.isShut(input.mouseClick != 0 || input.mouseHeld != 0);
}

}  // namespace

bool followMouse(const c_keys& input, Editor& editor) {
    const bool holding = editor.press != PRESS_NOTHING;
    lightKey(editor, input.mouseX, input.mouseY);
    turnWheel(input, editor);
    if (isShut(input, editor)) {
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

bool clickInPreview(const c_keys& input, Editor& editor) {
    return !isShut(input, editor) && input.mouseClick != 0;
}
