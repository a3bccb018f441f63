#pragma once
// c_keys: keyboard, mouse and controller as plain state, sampled once a frame, and the handlers
// that act on it. One object, the global `keys`. Each screen's handler is defined beside that
// screen, in keys_<screen>.cpp; handlers never look at SDL events.

#include <cstdint>

#include "common/limits.h"
#include "input/slots.h"

class c_keys {
public:
    void initKeys();
    void initController();  // every controller function unassigned
    void updateGKeys();     // once a frame, before any handler
    // 1 when the mouse lies in [x, x + w] and [y, y + h], both ends included.
    int isMouseXYIn(int x, int y, int w, int h);

    void actions();  // the current screen's handler
    void actionsHome();
    void actionsEditPlaylists();
    void actionsMix();
    void actionsOverMenu();
    void actionsOptions();
    void actionsOptionsScreen0();
    void actionsOptionsScreen1();
    void actionsVideoOut() {}  // Kept without a caller: has no behaviour

    // Went down in this frame; down at all; down for more than one frame; up.
    bool pressed(int slot) const { return gKeys[slot] == KEY_PRESSED; }
    bool held(int slot) const { return gKeys[slot] != KEY_UP_STATE; }
    bool heldOn(int slot) const { return gKeys[slot] == KEY_HELD; }

    int32_t gKeys[kInputSlots];  // KeyState by InputSlot
    int32_t anyKeyCount;         // sum of the watched slots; 1: one of them alone just went down
    int32_t lastKeySym;          // of the last key-down event; 0 after a key-up
    int32_t mouseClick;          // 1 in the frame that read a button-down event
    int32_t mouseHeld;           // 1 from the frame after, until the button is up
    int32_t keyDown;             // 1 in the frame that read a first key-down event
    int32_t keyHeld;             // 1 from the frame after, until a key-up event
    int32_t mouseX;              // picture coordinates: (0, 0) is the top left of the 640 x 360
    int32_t mouseY;              // picture wherever it sits in the window
    int32_t padButton[kPadEntries];  // joystick button of each controller function; 99 none
};
