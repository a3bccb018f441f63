// Page 1: the controller with a square on each of its buttons.
#include "common/limits.h"
#include "core/globals.h"
#include "input/keys.h"
#include "layout/options_layout.h"
#include "options/options.h"

namespace {

// clang-format off
constexpr int kControllerX = 20;
constexpr int kControllerWidth = 600;
constexpr int kControllerHeight = 370;
constexpr uint32_t kPressedRgb    = 0x2020F8;  // blue, 0x211F
constexpr uint32_t kUnassignedRgb = 0xF82020;  // red, 0xF904
constexpr uint32_t kAssignedRgb   = 0x20FC20;  // green, 0x27E4
constexpr uint32_t kBoxRgb        = 0x222222;  // of the waiting box, and behind the labels
// clang-format on
constexpr int kLabelStep = 12;  // from a label's first line to its second

constexpr int kHighestShown = 999;  // a button's number that has room in its square
constexpr int kDigitWidth = 6;
constexpr int kNumberTop = 9;  // in its square
constexpr Point kNotice = {138, 310};

int buttonOf(const c_keys& input, int entry) {
    return input.padButton[layout::kMapEntries[entry]];
}

// A file may hold any number; below 0 there is no button.
bool isAssigned(const c_keys& input, int entry) {
    return entry >= 0 && entry < kPadEntries && buttonOf(input, entry) >= 0 &&
           buttonOf(input, entry) != kPadUnassigned;
}

bool isShared(const c_keys& input, int entry) {
    for (int other = 0; other < kPadEntries; ++other) {
        if (other != entry && isAssigned(input, entry) &&
            buttonOf(input, other) == buttonOf(input, entry)) {
            return true;
        }
    }
    return false;
}

bool isDown(const c_keys& input, int entry) {
    return input.held(kSlotOfPadEntry[layout::kMapEntries[entry]]);
}

// In the middle of its square.
void drawButtonNumber(Painter& painter, int button, Point square, uint32_t colour) {
    if (button > kHighestShown) {
        return;
    }
    const std::string digits = std::to_string(button);
    const int left = (layout::kAnchorSize - kDigitWidth * static_cast<int>(digits.size())) / 2;
    painter.text(digits.c_str(), square.x + left, square.y + kNumberTop, colour);
}

void drawLabels(Painter& painter, uint32_t nameColour, uint32_t roleColour) {
    for (int entry = 0; entry < kPadEntries; ++entry) {
        const layout::PadRole& role = layout::kPadRoles[layout::kMapEntries[entry]];
        const Point at = layout::kAnchorLabels[entry];
        painter.textOn(kBoxRgb, role.name, at.x, at.y, nameColour);
        painter.textOn(kBoxRgb, role.onStage, at.x, at.y + kLabelStep, roleColour);
    }
}

}  // namespace

void c_options::drawScreen1(SDL_Surface* surface, SDL_Surface* texture) {
    Painter painter = painterOn(surface);
    SDL_FillRect(surface, nullptr, 0);
    painter.piece(controllerPicture, 0, 0, kControllerWidth, kControllerHeight, kControllerX, 0);
    if (dragging != 0) {
        drawDrag(surface);
    }
    if (waitingButton == 0) {
        painter.text("Click a red square to assign a button from your controller", 170, 330,
                     _colorW);
        painter.text("Press a button from your controller to check if it's correctly assigned", 138,
                     350, _colorW);
        drawNotice(painter, kNotice);
    }
    drawAnchors(painter);
    if (waitingButton == 0) {
        drawLabels(painter, _colorW, _colorB);
        drawBack(painter, texture);
    } else {
        drawWaitingBox(painter);
    }
}

void c_options::drawWaitingBox(Painter& painter) const {
    const layout::Area& box = layout::kWaitingBox;
    const layout::PadRole& role = layout::kPadRoles[layout::kMapEntries[anchorEntry]];
    const auto button = [&](const layout::Area& area, const char* words) {
        painter.button(area.x, area.y, area.w, words, _colorO, _colorN);
    };
    painter.fill(box.x, box.y, box.w, box.h, kBoxRgb);
    painter.text(role.name, 170, 126, _colorO);
    painter.text(role.onStage, 230, 126, _colorB);
    painter.text("Now press the corresponding button on your controller", 170, 150, _colorW);
    button(layout::kCancel, "cancel");
    button(layout::kNoButton, "no button");
}

void c_options::drawAnchors(Painter& painter) {
    const c_keys& input = *keys;
    for (int entry = 0; entry < kPadEntries; ++entry) {
        drawButtonAnchor(entry, 0, layout::kAnchors[entry].x, layout::kAnchors[entry].y);
    }
    for (int entry = 0; entry < kPadEntries; ++entry) {
        if (isDown(input, entry)) {
            drawButtonAnchor(entry, 1, layout::kAnchors[entry].x, layout::kAnchors[entry].y);
        }
    }
    for (int entry = 0; entry < kPadEntries; ++entry) {
        const Point square = layout::kAnchors[entry];
        if (isAssigned(input, entry)) {
            // Black on green, white on blue.
            drawButtonNumber(painter, buttonOf(input, entry), square,
                             isDown(input, entry) ? _colorW : _colorN);
        }
        if (isShared(input, entry)) {
            painter.frame(square.x, square.y, layout::kAnchorSize, layout::kAnchorSize, _colorW);
        }
    }
}

void c_options::drawButtonAnchor(int entry, int pressed, int x, int y) {
    uint32_t colour = isAssigned(*keys, entry) ? kAssignedRgb : kUnassignedRgb;
    if (pressed != 0) {
        colour = kPressedRgb;
    }
    painterOn(screen[1]).fill(x, y, layout::kAnchorSize, layout::kAnchorSize, colour);
}
