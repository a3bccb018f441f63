// What mouse, keys and controller do on the options screen.
#include <SDL.h>

#include "common/slots.h"
#include "core/all.h"
#include "core/filters.h"
#include "core/globals.h"
#include "input/keys.h"
#include "layout/options_layout.h"
#include "options/options.h"

namespace {

constexpr int kButtonsScanned = 50;

bool mouseIn(const c_keys& input, const layout::Area& area) {
    return input.isMouseXYIn(area.x, area.y, area.w, area.h) != 0;
}

bool clickedIn(const c_keys& input, const layout::Area& area) {
    return input.mouseClick != 0 && mouseIn(input, area);
}

// Who goes on after a save that failed has its next way out saved again.
void forgetNotice(const c_keys& input, c_options& options) {
    if (input.mouseClick != 0) {
        options.notice = nullptr;
    }
}

void openControllerPage(const c_keys& input, c_options& options) {
    if (clickedIn(input, layout::kConfigureToo) || clickedIn(input, layout::kConfigure)) {
        options.page = 1;
    }
}

// The video mode follows when the screen is left. A composite output has one size.
void chooseResolution(const c_keys& input, c_all& sizes) {
    if (sizes.composite != 0) {
        return;
    }
    for (const layout::OfferedSize& size : layout::kOfferedSizes) {
        if (clickedIn(input, layout::checkBoxArea(size.box))) {
            sizes.applyResolution(size.width, size.height);
        }
    }
}

void flipFlag(const c_keys& input, Point box, int32_t& flag) {
    if (clickedIn(input, layout::checkBoxArea(box))) {
        flag = flag == 0 ? 1 : 0;
    }
}

void takeFilter(const c_keys& input, c_options& options) {
    if (clickedIn(input, layout::kPaletteArea)) {
        options.dragging = 1;
        options.draggedFilter = (input.mouseX - layout::kPaletteArea.x) / layout::kChipStep;
    }
}

void bind(c_filters& filters, int slot, int id) {
    for (FilterSlot(&layerSlots)[kFilterSlots] : filters.slots) {
        layerSlots[slot].id = id;
    }
}

// Every place that holds the mouse takes the filter: two drop squares share a corner.
void dropFilter(const c_keys& input, c_options& options, c_filters& filters) {
    if (options.dragging == 0 || input.mouseClick != 0 || input.mouseHeld != 0) {
        return;
    }
    options.dragging = 0;
    options.notice = nullptr;
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        if (mouseIn(input, layout::slotBox(slot))) {
            bind(filters, slot, options.draggedFilter);
        }
    }
    int slot = 0;
    for (const layout::Area& square : layout::kDropSquares) {
        if (mouseIn(input, square)) {
            bind(filters, slot, options.draggedFilter);
        }
        ++slot;
    }
}

// The lowest of the buttons that are down.
void assignPressedButton(SDL_Joystick* joystick, c_keys& input, c_options& options) {
    if (SDL_NumJoysticks() <= 0) {
        return;
    }
    for (int button = 0; button < kButtonsScanned; ++button) {
        if (SDL_JoystickGetButton(joystick, button) != 0) {
            input.padButton[layout::kMapEntries[options.anchorEntry]] = button;
            options.waitingButton = 0;
            return;
        }
    }
}

// A button that goes down in the frame of "cancel" still counts; "no button" is final.
void waitForButton(c_keys& input, c_options& options, SDL_Joystick* joystick) {
    if (clickedIn(input, layout::kNoButton)) {
        input.padButton[layout::kMapEntries[options.anchorEntry]] = kPadUnassigned;
        options.waitingButton = 0;
        return;
    }
    if (input.pressed(KEY_Z) || clickedIn(input, layout::kCancel)) {
        options.waitingButton = 0;
    }
    assignPressedButton(joystick, input, options);
}

// Where two squares share a corner the later one is meant.
void chooseSquare(const c_keys& input, c_options& options) {
    for (int entry = 0; entry < kPadEntries; ++entry) {
        const Point at = layout::kAnchors[entry];
        if (clickedIn(input, {at.x, at.y, layout::kAnchorSize, layout::kAnchorSize})) {
            options.anchorEntry = entry;
            options.waitingButton = 1;
        }
    }
}

}  // namespace

void c_keys::actionsOptionsScreen0() {
    c_options& options = *_options;
    if (goesBack() || clickedIn(*this, layout::kBackArea)) {
        options.quitOptions();
        return;
    }
    forgetNotice(*this, options);
    openControllerPage(*this, options);
    chooseResolution(*this, *all);
    flipFlag(*this, layout::kBoxTopbar, options.topbar);
    flipFlag(*this, layout::kBoxFps, options.fps);
    takeFilter(*this, options);
    dropFilter(*this, options, *_filters);
}

void c_keys::actionsOptionsScreen1() {
    c_options& options = *_options;
    if (options.waitingButton != 0) {
        waitForButton(*this, options, joy);
        return;
    }
    // Deliberate: the controller's own back does not leave its page, where a press shows which
    // square a button belongs to. [quirk_pads_back_stays_on_the_controller_page]
    if (pressed(KEY_Z) || clickedIn(*this, layout::kBackArea)) {
        options.quitControllerPage();
        return;
    }
    forgetNotice(*this, options);
    chooseSquare(*this, options);
}

void c_keys::actionsOptions() {
    if (_options->page == 0) {
        actionsOptionsScreen0();
    } else if (_options->page == 1) {
        actionsOptionsScreen1();
    }
}
