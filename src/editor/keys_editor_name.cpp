// The keys of the name page. The keyboard's letters write, so that none of them switches anything
// there; the lit key of the screen is typed by Space and by the pad.
#include <SDL.h>

#include <cctype>
#include <cstring>

#include "common/slots.h"
#include "editor/editor.h"
#include "editor/keys_editor.h"
#include "input/keys.h"

namespace {

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

}  // namespace

// The page may end with any of them: what follows in the same frame is not for the next one.
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

bool escapes(const c_keys& input, const Editor& editor) {
    for (int i = 0; i < input.typedCount && editor.muted == 0; ++i) {
        if (input.typed[i].symbol == SDLK_ESCAPE) {
            return true;
        }
    }
    return false;
}
