// What keys, mouse and controller do during the performance.
#include "core/all.h"
#include "core/filters.h"
#include "core/globals.h"
#include "input/keys.h"
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

MixLayer& activeLayer(c_mix& mixer) {
    return mixer.layer[mixer.activeLayer];
}

// Deliberate: frame 0 draws the changed layer whole, and nothing makes the other layer do the same.
// When both had one deck, its clip was drawn on the top layer alone: the bottom one then keeps
// tiles of the picture before until a block of its clip begins, under Space not before Space is let
// go.
// [quirk_deck_change_under_space_leaves_the_other_layer]
void showDeck(MixLayer& layer, int deck, c_moxel& clip) {
    layer.deck = deck;
    clip.refresh();
    layer.frame = 0;
}

// While a filter letter was held in the last frame, the arrows belong to the filter. Without decks
// there is nothing to change to.
void changeDeck(const c_keys& input, c_mix& mixer, c_moxel* clips) {
    if (mixer.filterKeyHeld != 0 || mixer.nbDecks == 0) {
        return;
    }
    MixLayer& layer = activeLayer(mixer);
    if (input.pressed(KEY_LEFT, PAD_LEFT)) {
        const int deck = layer.deck == 0 ? mixer.nbDecks - 1 : layer.deck - 1;
        showDeck(layer, deck, clips[deck]);
    }
    if (input.pressed(KEY_RIGHT, PAD_RIGHT)) {
        const int deck = layer.deck + 1 == mixer.nbDecks ? 0 : layer.deck + 1;
        showDeck(layer, deck, clips[deck]);
    }
}

void setPace(const c_keys& input, c_mix& mixer) {
    mixer.targetFps = kStagePace;
    if (!input.heldOn(KEY_X) || input.held(KEY_W)) {
        return;
    }
    if (input.held(KEY_UP)) {
        mixer.targetFps = kFastPace;
    }
    if (input.held(KEY_DOWN)) {
        mixer.targetFps = kSlowPace;
    }
}

// Both at once reverse it twice.
void reverseDirection(const c_keys& input, MixLayer& layer) {
    const bool byKey = input.pressed(KEY_Z) && !input.held(KEY_W);
    const bool byPad = input.pressed(PAD_CONFIRM) && !input.held(PAD_BLOCK_REVERSE);
    if (byKey != byPad) {
        layer.direction = 1 - layer.direction;
    }
}

void triggerFlash(const c_keys& input, c_mix& mixer) {
    if (input.pressed(KEY_S) && !input.held(KEY_W)) {
        mixer.flash = kFlashLevels;
    }
}

void moveFade(const c_keys& input, c_mix& mixer) {
    if (input.held(KEY_A) && !input.held(KEY_W)) {
        if (mixer.fade < kFadeLevels) {
            ++mixer.fade;
        }
    } else if (mixer.fade != 0) {
        --mixer.fade;
    }
}

// Likewise.
void togglePanel(const c_keys& input, c_mix& mixer) {
    const bool byKey = input.pressed(KEY_TAB) && input.anyKeyCount == 1;
    if (byKey != input.pressed(PAD_SHOW_UI)) {
        mixer.showUI = mixer.showUI == 0 ? 1 : 0;
    }
}

void chooseMode(const c_keys& input, c_mix& mixer) {
    for (const ModeControl& each : kModes) {
        if (input.pressed(each.key)) {
            mixer.mode = each.mode;
        }
    }
}

// The last held letter of the row wins. True while any is held.
bool selectFilter(const c_keys& input, c_mix& mixer, c_filters& filters) {
    mixer.filterKeyHeld = 0;
    for (int letter = KEY_FILTER_Q; letter <= KEY_FILTER_O; ++letter) {
        if (input.held(letter)) {
            filters.selected = letter - KEY_FILTER_Q;
            mixer.filterKeyHeld = kFilterKeyDown;
        }
    }
    return mixer.filterKeyHeld != 0;
}

void changeFilter(const c_keys& input, FilterSlot& slot) {
    constexpr int kDirectionKeys[] = {KEY_UP, KEY_RIGHT, KEY_DOWN, KEY_LEFT};
    if (input.pressed(KEY_BACKSPACE)) {
        slot.on = slot.on == 0 ? 1 : 0;
    }
    for (int direction = 0; direction < 4; ++direction) {
        if (input.pressed(kDirectionKeys[direction])) {
            slot.dir = direction;
        }
    }
}

// Of several pressed at once the last one counts.
void chooseLayer(const c_keys& input, c_mix& mixer) {
    constexpr struct {
        int slot, layer;
    } kChoices[] = {{KEY_UP, 1}, {KEY_DOWN, 0}, {PAD_UP, 1}, {PAD_DOWN, 0}};
    for (const auto& choice : kChoices) {
        if (input.pressed(choice.slot)) {
            mixer.activeLayer = choice.layer;
        }
    }
}

void holdLayers(const c_keys& input, c_mix& mixer) {
    mixer.hold = input.held(KEY_SPACE) || input.held(PAD_HOLD) ? 1 : 0;
}

// Deliberate: the list is opened by pad with hold down, and what holds the layers is not looked at
// while the list is open. So the picture stands until the list is closed, let go or not; the same
// with Return under Space. Closed with both buttons down, the list opens again.
// [quirk_list_opened_by_pad_holds_the_picture]
void openOverMenu(const c_keys& input, c_mix& mixer, c_all& screens) {
    if (input.pressed(KEY_RETURN) || (input.heldOn(PAD_HOLD) && input.held(PAD_SHOW_UI))) {
        screens.subState = SUB_OVERMENU;
        mixer.showUI = 0;
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
void scrub(c_keys& input, c_mix& mixer, const c_moxel& clip) {
    MixLayer& layer = activeLayer(mixer);
    if (mixer.filterKeyHeld != 0 || clip.state != CLIP_READY) {
        return;
    }
    if (input.mouseClick != 0 &&
        input.isMouseXYIn(kScrubX, kScrubY, kScrubWidth, kScrubHeight) != 0) {
        mixer.scrubX = input.mouseX;
        mixer.scrubFrame = layer.frame;
        mixer.scrubbing = 1;
    }
    const int frameCount = clip.frameCount;
    if (input.mouseHeld != 0 && mixer.scrubbing == 1 && frameCount > 0) {
        const int moved = (input.mouseX - mixer.scrubX) / kPixelsPerFrame;
        layer.frame = wrapFrame(mixer.scrubFrame + moved, frameCount);
    }
}

void endScrub(const c_keys& input, c_mix& mixer) {
    if (input.mouseClick == 0 && input.mouseHeld == 0) {
        mixer.scrubbing = 0;
    }
}

}  // namespace

void c_keys::actionsMix() {
    c_mix& mixer = *mix;
    c_filters& filters = *_filters;
    changeDeck(*this, mixer, moxel);
    setPace(*this, mixer);
    reverseDirection(*this, activeLayer(mixer));
    triggerFlash(*this, mixer);
    moveFade(*this, mixer);
    togglePanel(*this, mixer);
    chooseMode(*this, mixer);
    if (selectFilter(*this, mixer, filters)) {
        changeFilter(*this, filters.slots[mixer.activeLayer][filters.selected]);
    } else {
        chooseLayer(*this, mixer);
    }
    holdLayers(*this, mixer);
    openOverMenu(*this, mixer, *all);
    scrub(*this, mixer, moxel[activeLayer(mixer).deck]);
    endScrub(*this, mixer);
}
