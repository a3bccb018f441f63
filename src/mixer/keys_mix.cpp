// What keys, mouse and controller do during the performance.
#include "core/all.h"
#include "core/globals.h"
#include "input/keys.h"
#include "mixer/filters.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"

namespace {

constexpr int kFastPace = 40;
constexpr int kSlowPace = 10;

// The strip of the picture where a drag scrubs, and its scale.
constexpr int kScrubX = 0;
constexpr int kScrubY = 190;
constexpr int kScrubWidth = 640;
constexpr int kScrubHeight = 50;
constexpr int kPixelsPerFrame = 5;

MixLayer& activeLayer() {
    return mix->layer[mix->activeLayer];
}

// Deliberate: frame 0 draws the changed layer whole, and nothing makes the other layer do the same.
// When both had one deck, its clip was drawn on the top layer alone: the bottom one then keeps
// tiles of the picture before until a block of its clip begins, under Space not before Space is let
// go.
// [quirk_deck_change_under_space_leaves_the_other_layer]
void showDeck(int deck) {
    MixLayer& layer = activeLayer();
    layer.deck = deck;
    moxel[deck].refresh();
    layer.frame = 0;
}

// While a filter letter was held in the last frame, the arrows belong to the filter. Without decks
// there is nothing to change to.
void changeDeck(const c_keys& input) {
    if (mix->filterKeyHeld != 0 || mix->nbDecks == 0) {
        return;
    }
    if (input.pressed(KEY_LEFT) || input.pressed(PAD_LEFT)) {
        const int deck = activeLayer().deck;
        showDeck(deck == 0 ? mix->nbDecks - 1 : deck - 1);
    }
    if (input.pressed(KEY_RIGHT) || input.pressed(PAD_RIGHT)) {
        const int deck = activeLayer().deck + 1;
        showDeck(deck == mix->nbDecks ? 0 : deck);
    }
}

void setPace(const c_keys& input) {
    mix->targetFps = kStagePace;
    if (!input.heldOn(KEY_X) || input.held(KEY_W)) {
        return;
    }
    if (input.held(KEY_UP)) {
        mix->targetFps = kFastPace;
    }
    if (input.held(KEY_DOWN)) {
        mix->targetFps = kSlowPace;
    }
}

void reverseDirection(const c_keys& input) {
    if (input.pressed(KEY_Z) && !input.held(KEY_W)) {
        activeLayer().direction = 1 - activeLayer().direction;
    }
    if (input.pressed(PAD_CONFIRM) && !input.held(PAD_BLOCK_REVERSE)) {
        activeLayer().direction = 1 - activeLayer().direction;
    }
}

void triggerFlash(const c_keys& input) {
    if (input.pressed(KEY_S) && !input.held(KEY_W)) {
        mix->flash = kFlashLevels;
    }
}

void moveFade(const c_keys& input) {
    if (input.held(KEY_A) && !input.held(KEY_W)) {
        if (mix->fade < kFadeLevels) {
            ++mix->fade;
        }
    } else if (mix->fade != 0) {
        --mix->fade;
    }
}

void togglePanel(const c_keys& input) {
    if (input.pressed(KEY_TAB) && input.anyKeyCount == 1) {
        mix->showUI = mix->showUI == 0 ? 1 : 0;
    }
    if (input.pressed(PAD_SHOW_UI)) {
        mix->showUI = mix->showUI == 0 ? 1 : 0;
    }
}

void chooseMode(const c_keys& input) {
    for (const ModeControl& each : kModes) {
        if (input.pressed(each.key)) {
            mix->mode = each.mode;
        }
    }
}

// The last held letter of the row wins. True while any is held.
bool selectFilter(const c_keys& input) {
    mix->filterKeyHeld = 0;
    for (int letter = KEY_FILTER_Q; letter <= KEY_FILTER_O; ++letter) {
        if (input.held(letter)) {
            _filters->selected = letter - KEY_FILTER_Q;
            mix->filterKeyHeld = kFilterKeyDown;
        }
    }
    return mix->filterKeyHeld != 0;
}

void changeFilter(const c_keys& input) {
    constexpr int kDirectionKeys[] = {KEY_UP, KEY_RIGHT, KEY_DOWN, KEY_LEFT};
    FilterSlot& slot = _filters->slots[mix->activeLayer][_filters->selected];
    if (input.pressed(KEY_BACKSPACE)) {
        slot.on = slot.on == 0 ? 1 : 0;
    }
    for (int direction = 0; direction < 4; ++direction) {
        if (input.pressed(kDirectionKeys[direction])) {
            slot.dir = direction;
        }
    }
}

void chooseLayer(const c_keys& input) {
    if (input.pressed(KEY_UP)) {
        mix->activeLayer = 1;
    }
    if (input.pressed(KEY_DOWN)) {
        mix->activeLayer = 0;
    }
    if (input.pressed(PAD_UP)) {
        mix->activeLayer = 1;
    }
    if (input.pressed(PAD_DOWN)) {
        mix->activeLayer = 0;
    }
}

void holdLayers(const c_keys& input) {
    mix->hold = input.held(KEY_SPACE) || input.held(PAD_HOLD) ? 1 : 0;
}

// Deliberate: the list is opened by pad with hold down, and what holds the layers is not looked at
// while the list is open. So the picture stands until the list is closed, let go or not; the same
// with Return under Space. Closed with both buttons down, the list opens again.
// [quirk_list_opened_by_pad_holds_the_picture]
void openOverMenu(const c_keys& input) {
    if (input.pressed(KEY_RETURN) || (input.heldOn(PAD_HOLD) && input.held(PAD_SHOW_UI))) {
        all->subState = SUB_OVERMENU;
        mix->showUI = 0;
    }
}

// One addition or subtraction of the clip's length, as for a short drag; then whatever the drag's
// length still asks for.
int wrapFrame(int frame, int frameCount) {
    if (frame < 0) {
        frame += frameCount;
    }
    if (frame >= frameCount) {
        frame -= frameCount;
    }
    return ((frame % frameCount) + frameCount) % frameCount;
}

// A clip that is still loading has no frames to go through yet.
//
// Deliberate: a drag goes on over a change of deck and puts the new clip at the drag's own frame,
// so that its frame 0, which would draw it whole, does not show: tiles in which it stands still
// keep the clip before until the drag comes to the beginning of a block, or the clip after the
// drag. [quirk_deck_change_under_a_scrub_leaves_tiles]
void scrub(c_keys& input) {
    const c_moxel& clip = moxel[activeLayer().deck];
    if (mix->filterKeyHeld != 0 || clip.state != CLIP_READY) {
        return;
    }
    if (input.mouseClick != 0 &&
        input.isMouseXYIn(kScrubX, kScrubY, kScrubWidth, kScrubHeight) != 0) {
        mix->scrubX = input.mouseX;
        mix->scrubFrame = activeLayer().frame;
        mix->scrubbing = 1;
    }
    const int frameCount = clip.frameCount;
    if (input.mouseHeld != 0 && mix->scrubbing == 1 && frameCount > 0) {
        const int moved = (input.mouseX - mix->scrubX) / kPixelsPerFrame;
        activeLayer().frame = wrapFrame(mix->scrubFrame + moved, frameCount);
    }
}

void endScrub(const c_keys& input) {
    if (input.mouseClick == 0 && input.mouseHeld == 0) {
        mix->scrubbing = 0;
    }
}

}  // namespace

void c_keys::actionsMix() {
    changeDeck(*this);
    setPace(*this);
    reverseDirection(*this);
    triggerFlash(*this);
    moveFade(*this);
    togglePanel(*this);
    chooseMode(*this);
    if (selectFilter(*this)) {
        changeFilter(*this);
    } else {
        chooseLayer(*this);
    }
    holdLayers(*this);
    openOverMenu(*this);
    scrub(*this);
    endScrub(*this);
}
