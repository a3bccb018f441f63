// What keys and clicks do on the home menu.
#include <SDL.h>

#include "common/geometry.h"
#include "core/all.h"
#include "core/display.h"
#include "core/globals.h"
#include "input/keys.h"
#include "options/options.h"
#include "playlists/playlist.h"
#include "ui/home.h"

namespace {

// Mouse targets: the squares of the selection frames, 94 pixels wide with both ends, in picture
// coordinates.
constexpr int kTargetSize = 94;
constexpr Point kTargets[kHomeItems] = {{273, 75}, {377, 75}, {169, 180}, {273, 180}, {377, 180}};

struct Step {
    int key;
    int pad;
    int next[kHomeItems];  // selection after the step, by the one before
};

// In this order, each seeing the result of the one before.
constexpr Step kSteps[] = {
    {KEY_RIGHT, PAD_RIGHT, {1, 1, 3, 4, 4}},
    {KEY_DOWN, PAD_DOWN, {3, 4, 2, 3, 4}},
    {KEY_LEFT, PAD_LEFT, {0, 0, 2, 2, 3}},
    {KEY_UP, PAD_UP, {0, 1, 2, 0, 1}},
};

void moveSelection(const c_keys& input, c_home& home) {
    for (const Step& step : kSteps) {
        if (input.pressed(step.key, step.pad)) {
            home.selected = step.next[home.selected];
        }
    }
}

void confirmSelection(const c_keys& input, c_home& home) {
    if (!input.confirms()) {
        return;
    }
    // Deliberate: opening the mix by key hides the pointer, opening it by click leaves it visible.
    // [quirk_mix_by_click_keeps_the_pointer]
    if (home.selected == HOME_MIX) {
        SDL_ShowCursor(0);
    }
    home.open(home.selected);
}

// A click opens an item without selecting it.
void clickItems(const c_keys& input, c_home& home) {
    if (input.mouseClick == 0) {
        return;
    }
    for (int item = 0; item < kHomeItems; ++item) {
        if (input.isMouseXYIn(kTargets[item].x, kTargets[item].y, kTargetSize, kTargetSize) != 0) {
            home.open(item);
        }
    }
}

}  // namespace

void c_home::open(int item) {
    switch (item) {
        case HOME_MIX:
            all->state = STATE_MIX;
            break;
        case HOME_EDIT:
            // Files may have come and gone since they were looked for last.
            playlist->scanFamilles();
            playlist->initScroll(0, playlist->nbFamilles);
            playlist->initScroll(1, playlist->familles[playlist->editFamille].nbTracks);
            all->state = STATE_PLAYLISTS;
            break;
        case HOME_OPTIONS:
            _options->page = 0;
            all->state = STATE_OPTIONS;
            break;
        case HOME_FULL_SCREEN:
            toggleFullScreen();
            break;
        default:
            isExit = 0;
            break;
    }
}

void c_keys::actionsHome() {
    c_home& home = *_home;
    moveSelection(*this, home);
    confirmSelection(*this, home);
    clickItems(*this, home);
}
