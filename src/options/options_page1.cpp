// Page 1: the controller with a square on each of its buttons.
#include "common/limits.h"
#include "core/display.h"
#include "core/globals.h"
#include "draw/lib.h"
#include "draw/ttf.h"
#include "input/keys.h"
#include "layout/options_layout.h"
#include "options/options.h"

namespace {

constexpr SDL_Rect kControllerPiece = {0, 0, 600, 370};
constexpr Point kController = {20, 0};
constexpr uint16_t kPressedColour = 0x211F;     // blue
constexpr uint16_t kUnassignedColour = 0xF904;  // red
constexpr uint16_t kAssignedColour = 0x27E4;    // green
constexpr int kBoxRgb = 0x222222;               // of the waiting box, and behind the labels
constexpr int kLabelStep = 12;                  // from a label's first line to its second
constexpr Point kWaitingName = {170, 126};
constexpr Point kWaitingRole = {230, 126};

constexpr int kHighestShown = 999;  // a button's number that has room in its square
constexpr int kDigitWidth = 6;
constexpr int kNumberTop = 9;  // in its square
constexpr int kFrameWide = 2;  // around squares that share a button
constexpr Point kNotice = {138, 310};

int buttonOf(int entry) {
    return keys->padButton[layout::kMapEntries[entry]];
}

// A file may hold any number; below 0 there is no button.
bool isAssigned(int entry) {
    return entry >= 0 && entry < kPadEntries && buttonOf(entry) >= 0 &&
           buttonOf(entry) != kPadUnassigned;
}

bool isShared(int entry) {
    for (int other = 0; other < kPadEntries; ++other) {
        if (other != entry && isAssigned(entry) && buttonOf(other) == buttonOf(entry)) {
            return true;
        }
    }
    return false;
}

bool isDown(int entry) {
    return keys->held(kSlotOfPadEntry[layout::kMapEntries[entry]]);
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
        drawNotice(surface, kNotice);
    }
    drawAnchors(surface);
    if (waitingButton == 0) {
        drawLabels(surface);
        drawBack(surface, texture);
    } else {
        drawWaitingBox(surface);
    }
}

void c_options::drawWaitingBox(SDL_Surface* surface) {
    const layout::Area& box = layout::kWaitingBox;
    const layout::PadRole& role = layout::kPadRoles[layout::kMapEntries[anchorEntry]];
    _lib->CSS_rectNoBorderNoAlpha(offsetX + box.x, offsetY + box.y, box.w, box.h, kBoxRgb);
    write(surface, role.name, kWaitingName, _colorO);
    write(surface, role.onStage, kWaitingRole, _colorB);
    write(surface, "Now press the corresponding button on your controller", {170, 150}, _colorW);
    drawButton(layout::kCancel, "cancel");
    drawButton(layout::kNoButton, "no button");
}

void c_options::drawButton(const layout::Area& at, const char* words) {
    _lib->CSS_button(offsetX + at.x, offsetY + at.y, at.w, words);
}

void c_options::drawLabels(SDL_Surface* surface) {
    const auto line = [&](const char* words, Point at, uint32_t colour) {
        ttf->texteFilled(surface, words, static_cast<short>(offsetX + at.x),
                         static_cast<short>(offsetY + at.y), static_cast<int>(colour), 0, kBoxRgb);
    };
    for (int entry = 0; entry < kPadEntries; ++entry) {
        const layout::PadRole& role = layout::kPadRoles[layout::kMapEntries[entry]];
        const Point at = layout::kAnchorLabels[entry];
        line(role.name, at, _colorW);
        line(role.onStage, {at.x, at.y + kLabelStep}, _colorB);
    }
}

void c_options::drawAnchors(SDL_Surface* surface) {
    for (int entry = 0; entry < kPadEntries; ++entry) {
        drawButtonAnchor(entry, 0, layout::kAnchors[entry].x, layout::kAnchors[entry].y);
    }
    for (int entry = 0; entry < kPadEntries; ++entry) {
        if (isDown(entry)) {
            drawButtonAnchor(entry, 1, layout::kAnchors[entry].x, layout::kAnchors[entry].y);
        }
    }
    for (int entry = 0; entry < kPadEntries; ++entry) {
        if (isAssigned(entry)) {
            drawButtonNumber(surface, entry);
        }
        if (isShared(entry)) {
            drawSharedFrame(entry);
        }
    }
}

// In the middle of its square; black on green, white on blue.
void c_options::drawButtonNumber(SDL_Surface* surface, int entry) {
    const int button = buttonOf(entry);
    if (button > kHighestShown) {
        return;
    }
    const std::string digits = std::to_string(button);
    const int left = (layout::kAnchorSize - kDigitWidth * static_cast<int>(digits.size())) / 2;
    const Point& square = layout::kAnchors[entry];
    write(surface, digits.c_str(), {square.x + left, square.y + kNumberTop},
          isDown(entry) ? _colorW : _colorN);
}

void c_options::drawSharedFrame(int entry) {
    constexpr int kSize = layout::kAnchorSize;
    const int x = offsetX + layout::kAnchors[entry].x;
    const int y = offsetY + layout::kAnchors[entry].y;
    const auto strip = [](int left, int top, int w, int h) {
        _lib->CSS_rectNoBorderNoAlpha(left, top, w, h, static_cast<int>(_colorW));
    };
    strip(x, y, kSize, kFrameWide);
    strip(x + kSize - kFrameWide, y, kFrameWide, kSize);
    strip(x, y + kSize - kFrameWide, kSize, kFrameWide);
    strip(x, y, kFrameWide, kSize);
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
