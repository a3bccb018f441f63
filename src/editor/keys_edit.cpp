// What the keys do on the playlist screen, and the order of its handler's parts.
#include "core/all.h"
#include "core/globals.h"
#include "editor/editor_input.h"
#include "input/keys.h"
#include "input/slots.h"
#include "layout/page_layout.h"
#include "playlists/playlist.h"

namespace {

// A held arrow goes on by itself after a while.
constexpr int kRepeatAfter = 10;  // frames
constexpr int kRepeatEvery = 2;   // frames

struct Arrow {
    int key;
    int pad;
    int dx;
    int dy;
};
constexpr Arrow kArrows[] = {
    {KEY_UP, PAD_UP, 0, -1},
    {KEY_DOWN, PAD_DOWN, 0, 1},
    {KEY_LEFT, PAD_LEFT, -1, 0},
    {KEY_RIGHT, PAD_RIGHT, 1, 0},
};

bool confirms(const c_keys& input) {
    return input.pressed(KEY_X) || input.pressed(PAD_CONFIRM);
}

bool arrowDue(const c_keys& input, c_playlist& editor, const Arrow& arrow) {
    if (input.pressed(arrow.key) || input.pressed(arrow.pad)) {
        editor.holdFrames = 0;
        return true;
    }
    if (!input.held(arrow.key) && !input.held(arrow.pad)) {
        return false;
    }
    ++editor.holdFrames;
    return editor.holdFrames >= kRepeatAfter && editor.holdFrames % kRepeatEvery == 0;
}

bool wentDown(const c_keys& input, const Arrow& arrow) {
    return input.pressed(arrow.key) || input.pressed(arrow.pad);
}

// Beyond the outer edge of a list, below its last row, and where a list is empty.
bool leadsToButtons(const c_playlist& editor, const Arrow& arrow) {
    const int list = editor.dragSource;
    if (arrow.dx == 0) {
        return arrow.dy > 0 && editor.selectedRow(list) >= editor.rowsIn(list) - 1;
    }
    const int other = arrow.dx < 0 ? page::LEFT : page::RIGHT;
    return list == other || editor.rowsIn(other) == 0;
}

void moveFromButton(c_playlist& editor, const Arrow& arrow) {
    if (arrow.dx != 0) {
        editor.moveFocus(arrow.dx);
    } else if (arrow.dy < 0) {
        editor.leaveButtons();
    }
}

void moveKey(c_playlist& editor, const Arrow& arrow, bool fresh) {
    const int before = editor.keyUnderPointer;
    editor.keyUnderPointer = page::keyBeside(before, arrow.dx, arrow.dy);
    if (fresh && arrow.dy > 0 && editor.keyUnderPointer == before) {
        editor.enterButtons();
    }
}

// Up and down within a list, left and right from list to list, further on to the buttons: there an
// arrow has to be pressed anew, a held one stops at the list's end.
void moveSelection(c_playlist& editor, const Arrow& arrow, bool fresh) {
    editor.notice.clear();
    if (editor.focus != page::kNoButton) {
        moveFromButton(editor, arrow);
        return;
    }
    if (editor.editPage == page::NEW_PLAYLIST) {
        moveKey(editor, arrow, fresh);
        return;
    }
    if (leadsToButtons(editor, arrow)) {
        if (fresh) {
            editor.enterButtons();
        }
        return;
    }
    int list = editor.dragSource;
    if (arrow.dx != 0) {
        list = arrow.dx < 0 ? page::LEFT : page::RIGHT;
    }
    editor.select(list, editor.selectedRow(list) + arrow.dy);
    list = editor.dragSource;
    scrollIntoView(editor.scroll[list], editor.selectedRow(list));
}

// What is picked up goes with the arrows; nothing else can be done with it.
void carryByKeys(const c_keys& input, c_playlist& editor) {
    for (const Arrow& arrow : kArrows) {
        if (arrow.dy != 0 && arrowDue(input, editor, arrow)) {
            editor.carry(arrow.dy);
            return;
        }
    }
    if (confirms(input)) {
        editor.setDown();
    } else if (goesBack(input)) {
        editor.putBack();
    }
}

// Left and right choose an answer, "x" gives it, "z" takes the question back.
void answerByKey(const c_keys& input, c_playlist& editor) {
    for (const Arrow& arrow : kArrows) {
        if (arrow.dx != 0 && wentDown(input, arrow)) {
            editor.chosenYes = arrow.dx < 0 ? 1 : 0;
        }
    }
    if (confirms(input)) {
        editor.answer(editor.chosenYes != 0);
    } else if (goesBack(input) || escapes(input, editor)) {
        editor.takeQuestionBack();
    }
}

void confirmByKey(const c_keys& input, c_playlist& editor) {
    const bool onButton = editor.focus != page::kNoButton;
    if (!confirms(input) && !(onButton && input.pressed(KEY_RETURN))) {
        return;
    }
    editor.notice.clear();
    if (onButton) {
        editor.useFocused();
    } else {
        editor.openSelection();
    }
}

void editByKey(const c_keys& input, c_playlist& editor) {
    if (input.pressed(KEY_BACKSPACE)) {
        editor.notice.clear();
        editor.useButton(page::DELETE);
    } else if (input.pressed(KEY_RETURN) && editor.focus == page::kNoButton) {
        editor.notice.clear();
        editor.insertEntry();
    }
}

void useKeys(const c_keys& input, c_playlist& editor) {
    if (editor.question != ASK_NOTHING) {
        answerByKey(input, editor);
        return;
    }
    if (editor.carriedFrom >= 0) {
        carryByKeys(input, editor);
        return;
    }
    moveByArrows(input, editor);
    if (goesBack(input)) {
        editor.notice.clear();
        editor.goBack();
        return;
    }
    editByKey(input, editor);
    confirmByKey(input, editor);
}

// While the mouse holds something the keys keep still, but for "z", which lets it go.
void actOnPage(const c_keys& input, c_playlist& editor, bool keysWrote) {
    const bool wroteName = editor.takesLetters();
    const bool mouseBusy = followMouse(input, editor);
    if (wroteName) {
        if (editor.takesLetters()) {
            writeName(input, editor);
        }
    } else if (mouseBusy) {
        if (goesBack(input)) {
            editor.letGo();
        }
    } else if (!keysWrote) {
        useKeys(input, editor);
    }
}

// What a press of the mouse can change so that another control lies under the pointer.
struct View {
    int32_t page;
    int32_t question;
    int32_t preview;

    explicit View(const c_playlist& editor)
        : page(editor.editPage), question(editor.question), preview(editor.previewActive) {}
    bool operator==(const View&) const = default;
};

}  // namespace

bool goesBack(const c_keys& input) {
    return input.pressed(KEY_Z) || input.pressed(PAD_BACK);
}

void moveByArrows(const c_keys& input, c_playlist& editor) {
    for (const Arrow& arrow : kArrows) {
        if (arrowDue(input, editor, arrow)) {
            moveSelection(editor, arrow, wentDown(input, arrow));
            return;
        }
    }
}

// Letters count as typed at once, but their slots go down a frame later: in the frame after the
// last letter they must not switch anything either, and `writing` still holds back "f".
void c_keys::actionsEditPlaylists() {
    c_playlist& editor = *playlist;
    if (keyHeld == 0) {
        editor.muted = 0;
    }
    editor.holdSelection();
    const View before(editor);
    const bool wroteBefore = editor.takesLetters();
    const bool keysWrote = writing != 0 && !wroteBefore;
    const bool byMouse = mouseClick != 0 || editor.press != PRESS_NOTHING;
    if (editor.previewActive == 0) {
        actOnPage(*this, editor, keysWrote);
    } else if (clickInPreview(*this, editor) || confirms(*this) || goesBack(*this)) {
        // Any of these ends the preview and does nothing else.
        editor.endPreview();
        editor.letGo();
    }
    if (byMouse && !(before == View(editor))) {
        closeGate(editor.gate, mouseClick != 0, tempsActuel);
    }
    const bool writes = editor.takesLetters();
    if (writes && !wroteBefore) {
        editor.muted = 1;
    }
    writing = writes || wroteBefore ? 1 : 0;
}
