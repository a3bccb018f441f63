// Page 1: the controller with a square on each of its buttons.
#include "common/limits.h"
#include "core/display.h"
#include "core/globals.h"
#include "input/keys.h"
#include "options/options.h"
#include "options/options_layout.h"
#include "ui/lib.h"

namespace {

constexpr SDL_Rect kControllerPiece = {0, 0, 600, 370};
constexpr Point kController = {20, 0};
constexpr uint16_t kPressedColour = 0x211F;     // blue
constexpr uint16_t kUnassignedColour = 0xF904;  // red
constexpr uint16_t kAssignedColour = 0x27E4;    // green
constexpr int kBoxRgb = 0x222222;

// A file may hold any number; below 0 there is no button.
bool isAssigned(int entry) {
    if (entry < 0 || entry >= kPadEntries) {
        return false;
    }
    const int button = keys->padButton[layout::kMapEntries[entry]];
    return button >= 0 && button != kPadUnassigned;
}

}  // namespace

void c_options::drawScreen1(SDL_Surface* surface, SDL_Surface* texture) {
    SDL_FillRect(surface, nullptr, 0);
    drawPiece(surface, controllerPicture, kControllerPiece, kController);
    if (dragging != 0) {
        drawDrag(surface);
    }
    if (waitingButton == 0) {
        write(surface, "Click a red square to assign a button from your controller", {170, 330},
              _colorW);
        write(surface, "Press a button from your controller to check if it's correctly assigned",
              {138, 350}, _colorW);
    }
    drawAnchors();
    if (waitingButton == 0) {
        drawBack(surface, texture);
        return;
    }
    const layout::Area& box = layout::kWaitingBox;
    _lib->CSS_rectNoBorderNoAlpha(offsetX + box.x, offsetY + box.y, box.w, box.h, kBoxRgb);
    write(surface, "Now press the corresponding button on your controller", {170, 150}, _colorW);
    _lib->CSS_button(offsetX + layout::kCancel.x, offsetY + layout::kCancel.y, layout::kCancel.w,
                     "cancel");
}

void c_options::drawAnchors() {
    for (int entry = 0; entry < kPadEntries; ++entry) {
        drawButtonAnchor(entry, 0, layout::kAnchors[entry].x, layout::kAnchors[entry].y);
    }
    for (int entry = 0; entry < kPadEntries; ++entry) {
        if (keys->held(kSlotOfPadEntry[layout::kMapEntries[entry]])) {
            drawButtonAnchor(entry, 1, layout::kAnchors[entry].x, layout::kAnchors[entry].y);
        }
    }
}

void c_options::drawButtonAnchor(int entry, int pressed, int x, int y) {
    uint16_t colour = isAssigned(entry) ? kAssignedColour : kUnassignedColour;
    if (pressed != 0) {
        colour = kPressedColour;
    }
    SDL_Rect square = {static_cast<int16_t>(offsetX + x), static_cast<int16_t>(offsetY + y),
                       layout::kAnchorSize, layout::kAnchorSize};
    SDL_FillRect(screen[1], &square, surfaceColour(screen[1], colour));
}
