// What the keys do on the playlist screen, and the order of its handler's parts. On the name page
// the keyboard's letters write, so that none of them switches anything there; the lit key of the
// screen is typed by Space and by the pad.
#include "editor/keys_editor.h"

#include <SDL.h>

#include <cctype>
#include <tuple>

#include "common/slots.h"
#include "editor/editor.h"
#include "input/keys.h"

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

bool wentDown(const c_keys& input, const Arrow& arrow) {
    return input.pressed(arrow.key, arrow.pad);
}

bool arrowDue(const c_keys& input, Editor& editor, const Arrow& arrow) {
    if (wentDown(input, arrow)) {
        editor.holdFrames = 0;
        return true;
    }
    if (!input.held(arrow.key) && !input.held(arrow.pad)) {
        return false;
    }
    ++editor.holdFrames;
    return editor.holdFrames >= kRepeatAfter && editor.holdFrames % kRepeatEvery == 0;
}

// Beyond the outer edge of a list, below its last row, and where a list is empty.
bool leadsToButtons(const Editor& editor, const Arrow& arrow) {
    const int list = editor.model.dragSource;
    if (arrow.dx == 0) {
        return arrow.dy > 0 && editor.selectedRow(list) >= editor.rowsIn(list) - 1;
    }
    const int other = arrow.dx < 0 ? page::LEFT : page::RIGHT;
    return list == other || editor.rowsIn(other) == 0;
}

void moveFromButton(Editor& editor, const Arrow& arrow) {
    if (arrow.dx != 0) {
        editor.moveFocus(arrow.dx);
    } else if (arrow.dy < 0) {
        editor.leaveButtons();
    }
}

void moveKey(Editor& editor, const Arrow& arrow, bool fresh) {
    const int before = editor.model.keyUnderPointer;
    editor.model.keyUnderPointer = page::keyBeside(before, arrow.dx, arrow.dy);
    if (fresh && arrow.dy > 0 && editor.model.keyUnderPointer == before) {
        editor.enterButtons();
    }
}

// Up and down within a list, left and right from list to list, further on to the buttons: there an
// arrow has to be pressed anew, a held one stops at the list's end.
void moveSelection(Editor& editor, const Arrow& arrow, bool fresh) {
    editor.notice.clear();
    if (editor.focus != page::kNoButton) {
        moveFromButton(editor, arrow);
        return;
    }
    if (editor.onPage(page::NEW_PLAYLIST)) {
        moveKey(editor, arrow, fresh);
        return;
    }
    if (leadsToButtons(editor, arrow)) {
        if (fresh) {
            editor.enterButtons();
        }
        return;
    }
    const int beside = arrow.dx < 0 ? page::LEFT : page::RIGHT;
    const int towards = arrow.dx != 0 ? beside : editor.model.dragSource;
    editor.select(towards, editor.selectedRow(towards) + arrow.dy);
    const int list = editor.model.dragSource;
    scrollIntoView(editor.model.scroll[list], editor.selectedRow(list));
}

// Moves the lit row, key or button.
void moveByArrows(const c_keys& input, Editor& editor) {
    for (const Arrow& arrow : kArrows) {
        if (arrowDue(input, editor, arrow)) {
            moveSelection(editor, arrow, wentDown(input, arrow));
            return;
        }
    }
}

// Escape went down, not held since another page.
bool escapes(const c_keys& input, const Editor& editor) {
    for (int i = 0; i < input.typedCount && editor.muted == 0; ++i) {
        if (input.typed[i].symbol == SDLK_ESCAPE) {
            return true;
        }
    }
    return false;
}

// What is picked up goes with the arrows; nothing else can be done with it.
void carryByKeys(const c_keys& input, Editor& editor) {
    for (const Arrow& arrow : kArrows) {
        if (arrow.dy != 0 && arrowDue(input, editor, arrow)) {
            editor.carry(arrow.dy);
            return;
        }
    }
    if (input.confirms()) {
        editor.setDown();
    } else if (input.goesBack()) {
        editor.putBack();
    }
}

// Left and right choose an answer, "x" gives it, "z" takes the question back.
void answerByKey(const c_keys& input, Editor& editor) {
    for (const Arrow& arrow : kArrows) {
        if (arrow.dx != 0 && wentDown(input, arrow)) {
            editor.chosenYes = arrow.dx < 0 ? 1 : 0;
        }
    }
    if (input.confirms()) {
        editor.answer(editor.chosenYes != 0);
    } else if (input.goesBack() || escapes(input, editor)) {
        editor.question = ASK_NOTHING;
    }
}

void confirmByKey(const c_keys& input, Editor& editor) {
    const bool onButton = editor.focus != page::kNoButton;
    if (!input.confirms() && !(onButton && input.pressed(KEY_RETURN))) {
        return;
    }
    editor.notice.clear();
    if (onButton) {
        editor.useFocused();
    } else {
        editor.openSelection();
    }
}

void editByKey(const c_keys& input, Editor& editor) {
    if (input.pressed(KEY_BACKSPACE)) {
        editor.notice.clear();
        editor.useButton(page::DELETE);
    } else if (input.pressed(KEY_RETURN) && editor.focus == page::kNoButton) {
        editor.notice.clear();
        editor.insertEntry();
    }
}

void useKeys(const c_keys& input, Editor& editor) {
    if (editor.question != ASK_NOTHING) {
        answerByKey(input, editor);
        return;
    }
    if (editor.carriedFrom >= 0) {
        carryByKeys(input, editor);
        return;
    }
    moveByArrows(input, editor);
    if (input.goesBack()) {
        editor.notice.clear();
        editor.goBack();
        return;
    }
    editByKey(input, editor);
    confirmByKey(input, editor);
}

// The key of the screen that writes this character, small or capital; -1 none.
int keyOf(int character) {
    for (int key = 0; key < page::kKeyDel; ++key) {
        if (std::tolower(character) == page::kKeyTexts[key][0]) {
            return key;
        }
    }
    return -1;
}

// Without a character of its layout a key stands for its symbol.
int characterOf(const TypedKey& typed) {
    const int character = typed.character != 0 ? typed.character : typed.symbol;
    return character > 0 && character < 128 ? character : 0;
}

void useLit(Editor& editor) {
    if (editor.focus != page::kNoButton) {
        editor.useFocused();
    } else if (editor.model.keyUnderPointer >= 0) {
        editor.typeKey(editor.model.keyUnderPointer);
    }
}

void type(Editor& editor, const TypedKey& typed) {
    editor.notice.clear();
    switch (typed.symbol) {
        case SDLK_BACKSPACE:
            editor.typeKey(page::kKeyDel);
            return;
        case SDLK_RETURN:
        case SDLK_KP_ENTER:
            // On a button that the arrows chose it means that button.
            if (editor.focus != page::kNoButton) {
                editor.useFocused();
            } else {
                editor.typeKey(page::kKeyOk);
            }
            // Held, it saves once.
            editor.muted = 1;
            return;
        case SDLK_SPACE:
            useLit(editor);
            return;
        case SDLK_ESCAPE:
            editor.goBack();
            editor.muted = 1;
            return;
        default:
            break;
    }
    const int key = keyOf(characterOf(typed));
    if (key >= 0) {
        editor.typeKey(key);
    }
}

// The keyboard writes the name; arrows and pad choose and use the keys on the screen. The page may
// end with any of them: what follows in the same frame is not for the next one.
void writeName(const c_keys& input, Editor& editor) {
    for (int i = 0; i < input.typedCount && editor.takesLetters() && editor.muted == 0; ++i) {
        type(editor, input.typed[i]);
    }
    if (!editor.takesLetters()) {
        return;
    }
    moveByArrows(input, editor);
    if (input.pressed(PAD_BACK)) {
        editor.notice.clear();
        editor.goBack();
    } else if (input.pressed(PAD_CONFIRM)) {
        editor.notice.clear();
        useLit(editor);
    }
}

// While the mouse holds something the keys keep still, but for "z", which lets it go.
void actOnPage(const c_keys& input, Editor& editor, bool keysWrote) {
    const bool wroteName = editor.takesLetters();
    const bool mouseBusy = followMouse(input, editor);
    if (wroteName) {
        if (editor.takesLetters()) {
            writeName(input, editor);
        }
    } else if (mouseBusy) {
        if (input.goesBack()) {
            editor.letGo();
        }
    } else if (!keysWrote) {
        useKeys(input, editor);
    }
}

// What a press of the mouse can change so that another control lies under the pointer.
auto viewOf(const Editor& editor) {
    return std::tuple(editor.model.editPage, editor.question, editor.model.previewActive);
}

}  // namespace

// Letters count as typed at once, but their slots go down a frame later: in the frame after the
// last letter they must not switch anything either, and `writing` still holds back "f".
void useEditor(c_keys& input, Editor& editor) {
    if (input.keyHeld == 0) {
        editor.muted = 0;
    }
    editor.holdSelection();
    const auto before = viewOf(editor);
    const bool wroteBefore = editor.takesLetters();
    const bool keysWrote = input.writing != 0 && !wroteBefore;
    const bool byMouse = input.mouseClick != 0 || editor.press != PRESS_NOTHING;
    if (editor.model.previewActive == 0) {
        actOnPage(input, editor, keysWrote);
    } else if (clickInPreview(input, editor) || input.confirms() || input.goesBack()) {
        // Any of these ends the preview and does nothing else.
        editor.endPreview();
        editor.letGo();
    }
    if (byMouse && before != viewOf(editor)) {
        editor.shut(input.mouseClick != 0);
    }
    const bool writes = editor.takesLetters();
    if (writes && !wroteBefore) {
        editor.muted = 1;
    }
    input.writing = writes || wroteBefore ? 1 : 0;
}
