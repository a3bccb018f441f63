// What mouse, keys and controller do on the options screen.
#include <SDL.h>

#include "common/slots.h"
#include "core/all.h"
#include "core/globals.h"
#include "input/keys.h"
#include "layout/options_layout.h"
#include "mixer/filters.h"
#include "options/options.h"

namespace {

constexpr int kButtonsScanned = 50;

bool mouseIn(c_keys& input, const layout::Area& area) {
    return input.isMouseXYIn(area.x, area.y, area.w, area.h) != 0;
}

bool clickedIn(c_keys& input, const layout::Area& area) {
    return input.mouseClick != 0 && mouseIn(input, area);
}

bool leaves(c_keys& input) {
    return input.pressed(KEY_Z) || input.pressed(PAD_BACK) || clickedIn(input, layout::kBackArea);
}

// Who goes on after a save that failed has its next way out saved again.
void forgetNotice(c_keys& input) {
    if (input.mouseClick != 0) {
        _options->notice = nullptr;
    }
}

void openControllerPage(c_keys& input) {
    if (clickedIn(input, layout::kConfigureToo) || clickedIn(input, layout::kConfigure)) {
        _options->page = 1;
    }
}

// The video mode follows when the screen is left. A composite output has one size.
void chooseResolution(c_keys& input) {
    if (all->composite != 0) {
        return;
    }
    if (clickedIn(input, layout::checkBoxArea(layout::kBox1280))) {
        all->applyResolution(1280, 720);
    }
    if (clickedIn(input, layout::checkBoxArea(layout::kBox1024))) {
        all->applyResolution(1024, 768);
    }
}

void flipFlag(c_keys& input, Point box, int32_t& flag) {
    if (clickedIn(input, layout::checkBoxArea(box))) {
        flag = flag == 0 ? 1 : 0;
    }
}

void takeFilter(c_keys& input) {
    if (clickedIn(input, layout::kPaletteArea)) {
        _options->dragging = 1;
        _options->draggedFilter = (input.mouseX - layout::kPaletteArea.x) / layout::kChipStep;
    }
}

void bind(int slot) {
    for (FilterSlot(&layerSlots)[kFilterSlots] : _filters->slots) {
        layerSlots[slot].id = _options->draggedFilter;
    }
}

// Every place that holds the mouse takes the filter: two drop squares share a corner.
void dropFilter(c_keys& input) {
    if (_options->dragging == 0 || input.mouseClick != 0 || input.mouseHeld != 0) {
        return;
    }
    _options->dragging = 0;
    _options->notice = nullptr;
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        if (mouseIn(input, layout::slotBox(slot))) {
            bind(slot);
        }
    }
    int slot = 0;
    for (const layout::Area& square : layout::kDropSquares) {
        if (mouseIn(input, square)) {
            bind(slot);
        }
        ++slot;
    }
}

// The lowest of the buttons that are down.
void assignPressedButton() {
    if (SDL_NumJoysticks() <= 0) {
        return;
    }
    for (int button = 0; button < kButtonsScanned; ++button) {
        if (SDL_JoystickGetButton(joy, button) != 0) {
            keys->padButton[layout::kMapEntries[_options->anchorEntry]] = button;
            _options->waitingButton = 0;
            return;
        }
    }
}

// A button that goes down in the frame of "cancel" still counts; "no button" is final.
void waitForButton(c_keys& input) {
    if (clickedIn(input, layout::kNoButton)) {
        keys->padButton[layout::kMapEntries[_options->anchorEntry]] = kPadUnassigned;
        _options->waitingButton = 0;
        return;
    }
    if (input.pressed(KEY_Z) || clickedIn(input, layout::kCancel)) {
        _options->waitingButton = 0;
    }
    assignPressedButton();
}

// Deliberate: the controller's own back does not leave its page, where a press shows which square
// a button belongs to. [quirk_pads_back_stays_on_the_controller_page]
bool leavesControllerPage(c_keys& input) {
    return input.pressed(KEY_Z) || clickedIn(input, layout::kBackArea);
}

// Where two squares share a corner the later one is meant.
void chooseSquare(c_keys& input) {
    for (int entry = 0; entry < kPadEntries; ++entry) {
        const Point at = layout::kAnchors[entry];
        if (clickedIn(input, {at.x, at.y, layout::kAnchorSize, layout::kAnchorSize})) {
            _options->anchorEntry = entry;
            _options->waitingButton = 1;
        }
    }
}

}  // namespace

void c_keys::actionsOptionsScreen0() {
    if (leaves(*this)) {
        _options->quitOptions();
        return;
    }
    forgetNotice(*this);
    openControllerPage(*this);
    chooseResolution(*this);
    flipFlag(*this, layout::kBoxTopbar, _options->topbar);
    flipFlag(*this, layout::kBoxFps, _options->fps);
    takeFilter(*this);
    dropFilter(*this);
}

void c_keys::actionsOptionsScreen1() {
    if (_options->waitingButton != 0) {
        waitForButton(*this);
        return;
    }
    if (leavesControllerPage(*this)) {
        _options->quitControllerPage();
        return;
    }
    forgetNotice(*this);
    chooseSquare(*this);
}

void c_keys::actionsOptions() {
    if (_options->page == 0) {
        actionsOptionsScreen0();
    } else if (_options->page == 1) {
        actionsOptionsScreen1();
    }
}
