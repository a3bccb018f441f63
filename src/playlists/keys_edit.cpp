// What the keys do on the playlist screen, and the order of its handler's parts.
#include "core/all.h"
#include "core/globals.h"
#include "input/keys.h"
#include "input/slots.h"
#include "playlists/editor_input.h"
#include "playlists/page_layout.h"
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

bool goesBack(const c_keys& input) {
    return input.pressed(KEY_Z) || input.pressed(PAD_BACK);
}

// Any of these ends the preview and does nothing else.
void endPreview(const c_keys& input, c_playlist& editor) {
    if (input.mouseClick != 0 || confirms(input) || goesBack(input)) {
        editor.endPreview();
        editor.letGo();
    }
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

// Up and down within a list, left and right from list to list.
void moveSelection(c_playlist& editor, const Arrow& arrow) {
    editor.notice.clear();
    if (editor.editPage == page::NEW_PLAYLIST) {
        editor.keyUnderPointer = page::keyBeside(editor.keyUnderPointer, arrow.dx, arrow.dy);
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

void moveByArrows(const c_keys& input, c_playlist& editor) {
    for (const Arrow& arrow : kArrows) {
        if (arrowDue(input, editor, arrow)) {
            moveSelection(editor, arrow);
            return;
        }
    }
}

// "x" says yes, "z" takes the question back.
void answerByKey(const c_keys& input, c_playlist& editor) {
    if (confirms(input)) {
        editor.answer(true);
    } else if (goesBack(input)) {
        editor.question = ASK_NOTHING;
    }
}

void confirmByKey(const c_keys& input, c_playlist& editor) {
    if (!confirms(input)) {
        return;
    }
    editor.notice.clear();
    if (editor.editPage != page::NEW_PLAYLIST) {
        editor.openSelection();
    } else if (editor.keyUnderPointer >= 0) {
        editor.typeKey(editor.keyUnderPointer);
    }
}

void editByKey(const c_keys& input, c_playlist& editor) {
    const bool naming = editor.editPage == page::NEW_PLAYLIST;
    if (input.pressed(KEY_BACKSPACE)) {
        editor.notice.clear();
        if (naming) {
            editor.typeKey(page::kKeyDel);
        } else {
            editor.useButton(page::DELETE);
        }
    } else if (input.pressed(KEY_RETURN)) {
        editor.notice.clear();
        if (naming) {
            editor.typeKey(page::kKeyOk);
        } else {
            editor.insertEntry();
        }
    }
}

}  // namespace

// While the mouse holds something the keys keep still, but for "z", which lets it go.
void c_keys::actionsEditPlaylists() {
    c_playlist& editor = *playlist;
    editor.holdSelection();
    if (editor.previewActive != 0) {
        endPreview(*this, editor);
        return;
    }
    const bool mouseBusy = mouseClick != 0 || editor.press != PRESS_NOTHING;
    followMouse(*this, editor);
    if (mouseBusy) {
        if (goesBack(*this)) {
            editor.letGo();
        }
        return;
    }
    if (editor.question != ASK_NOTHING) {
        answerByKey(*this, editor);
        return;
    }
    moveByArrows(*this, editor);
    if (goesBack(*this)) {
        editor.notice.clear();
        editor.goBack();
        return;
    }
    editByKey(*this, editor);
    confirmByKey(*this, editor);
}
