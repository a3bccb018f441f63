#pragma once
// c_keys: keyboard, mouse and controller as plain state, sampled once a frame, and the handlers
// that act on it. One object, the global `keys`. Each screen's handler is defined beside that
// screen, in keys_<screen>.cpp; handlers never look at SDL events.

#include <cstdint>

#include "common/geometry.h"
#include "common/slots.h"

// A key-down event, repeats included: its SDL key symbol, and the character that the keyboard's
// layout makes of it (UTF-16, 0 none).
struct TypedKey {
    int32_t symbol;
    uint16_t character;
};
inline constexpr int kTypedKeys = 32;  // kept of a frame's; nobody types more

class c_keys {
public:
    void initKeys();        // SDL then keeps what the handlers can use of its events
    void initController();  // every controller function unassigned
    void updateGKeys();     // once a frame, before any handler
    // 1 when the mouse lies in [x, x + w] and [y, y + h], both ends included.
    int isMouseXYIn(int x, int y, int w, int h) const {
        return insideInclusive(mouseX, mouseY, x, y, w, h) ? 1 : 0;
    }

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
    // By keyboard or by pad.
    bool pressed(int key, int pad) const { return pressed(key) || pressed(pad); }
    bool confirms() const { return pressed(KEY_X, PAD_CONFIRM); }
    bool goesBack() const { return pressed(KEY_Z, PAD_BACK); }

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

    int32_t clickReleased;  // 1: the button of mouseClick is up again already
    int32_t wheel;          // notches turned in this frame, towards the performer positive
    int32_t typedCount;     // key-down events of this frame, in `typed`
    TypedKey typed[kTypedKeys];
    int32_t writing;  // 1 while the screen takes letters: "f" writes too. Its handler sets it

    // What came since the last frame and takes no room in SDL's queue.
    int32_t moved;  // 1: the pointer moved after the last press, to (movedX, movedY) in the window
    int32_t movedX;
    int32_t movedY;
    int32_t turned;  // notches of the wheel
};
