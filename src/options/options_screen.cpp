// The options screen: its state, and what its two pages draw.
#include "common/geometry.h"
#include "core/all.h"
#include "core/display.h"
#include "core/filters.h"
#include "core/globals.h"
#include "draw/lib.h"
#include "input/keys.h"
#include "layout/options_layout.h"
#include "options/options.h"

namespace {

constexpr uint32_t kPageRgb = 0x222222;
constexpr layout::Area kBackInAtlas = {0, 96, 64, 24};
constexpr int kDragWidth = 60;
constexpr int kDragHeight = 10;
constexpr int kDragLeft = 2;   // of the mouse
constexpr int kDragText = 10;  // right of the mouse

constexpr const char* kOptionsNotSaved =
    "The options could not be saved. Going back once more leaves without saving";
constexpr const char* kButtonsNotSaved =
    "The buttons could not be saved. Going back once more leaves without saving";

// Page 0: the filters and their letters, the display, the controller's name.
constexpr int kCheckBoxInAtlasX = 96;
constexpr int kCheckBoxOffY = 0;
constexpr int kCheckBoxOnY = 24;
constexpr Point kLabel = {30, 7};  // from its check box

constexpr const char* kSlotLetters[kFilterSlots] = {"Q", "W", "E", "R", "T", "Y", "U", "I", "O"};
constexpr Point kSlotLetter = {6, 4};  // from its slot box
constexpr int kSlotNameBelow = 50;
constexpr int kSlotBorder = 2;
constexpr int kOpaque = 100;
constexpr Point kChipName = {3, 5};  // from its chip
constexpr uint32_t kChipRgb = 0x404040;

constexpr Point kNoticePage0 = {150, 338};

// Page 1: the controller with a square on each of its buttons.
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
constexpr Point kNoticePage1 = {138, 310};

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

void c_options::initOptions() {
    all->placed = &offset;
    offset = pictureOffset(all->appW, all->appH);
    page = 0;
    controllerPicture = loadPicture("data/ps3-controller.png");
    dragging = 0;
    draggedFilter = 0;
    waitingButton = 0;
    homeDir = workingDirectory();
    file = nullptr;
    topbar = 0;
    fps = 0;
    anchorEntry = 0;
    notice = nullptr;
    lireXML();
    lireXMLController();
    all->checkComposite();
}

void c_options::draw(SDL_Surface* surface, SDL_Surface* texture) {
    SDL_FillRect(surface, nullptr, 0);
    painterOn(surface).fill(0, 0, kFrameWidth, kFrameHeight, kPageRgb);
    if (page == 0) {
        drawScreen0(surface, texture);
    } else if (page == 1) {
        drawScreen1(surface, texture);
    }
}

void c_options::drawDrag(SDL_Surface* surface) {
    Painter painter = painterOn(surface);
    const c_keys& input = *keys;
    painter.fill(input.mouseX - kDragLeft, input.mouseY, kDragWidth, kDragHeight, _colorB);
    painter.text(_filters->getFilterName(draggedFilter), input.mouseX + kDragText, input.mouseY,
                 _colorN);
}

void c_options::drawBack(Painter& painter, SDL_Surface* texture) {
    painter.piece(texture, kBackInAtlas.x, kBackInAtlas.y, kBackInAtlas.w, kBackInAtlas.h,
                  layout::kBackPiece.x, layout::kBackPiece.y);
}

void c_options::drawNotice(Painter& painter, Point at) const {
    if (notice != nullptr) {
        painter.text(notice, at.x, at.y, _colorO);
    }
}

void c_options::quitOptions() {
    if (notice == nullptr && !saveXML()) {
        notice = kOptionsNotSaved;
        return;
    }
    notice = nullptr;
    updateResolution();
    all->state = STATE_HOME;
    page = 0;
    dragging = 0;
    waitingButton = 0;
}

void c_options::quitControllerPage() {
    if (notice == nullptr && !saveXMLController()) {
        notice = kButtonsNotSaved;
        return;
    }
    notice = nullptr;
    page = 0;
}

void c_options::drawScreen0(SDL_Surface* surface, SDL_Surface* texture) {
    Painter painter = painterOn(surface);
    drawFilters(surface);
    drawDisplayOptions(surface, texture);
    drawController(painter);
    drawNotice(painter, kNoticePage0);
    if (dragging != 0) {
        drawDrag(surface);
    }
    drawBack(painter, texture);
}

// The boxes' fill goes to the work surface, so their border alone shows here.
void c_options::drawFilters(SDL_Surface* surface) {
    Painter painter = painterOn(surface);
    painter.text("FILTERS", 7, 120, _colorR);
    painter.text("Drag and drop filters to a keyboard letter to create a bond", 7, 170, _colorW);
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        const layout::Area box = layout::slotBox(slot);
        const int id = _filters->slots[0][slot].id;
        _lib->CSS_rect(offset.x + box.x, offset.y + box.y, box.w, box.h, kSlotBorder,
                       static_cast<int>(_colorW), static_cast<int>(_colorN), kOpaque);
        painter.text(kSlotLetters[slot], box.x + kSlotLetter.x, box.y + kSlotLetter.y, _colorR,
                     kLargeFont);
        if (id != FILTER_NONE) {
            painter.text(_filters->getFilterName(id), box.x, box.y + kSlotNameBelow, _colorO);
        }
    }
    for (int id = 0; id < kFilterIds; ++id) {
        const layout::Area& first = layout::kFirstChip;
        const int x = first.x + layout::kChipStep * id;
        painter.fill(x, first.y, first.w, first.h, kChipRgb);
        painter.text(_filters->getFilterName(id), x + kChipName.x, first.y + kChipName.y, _colorB);
    }
}

void c_options::drawDisplayOptions(SDL_Surface* surface, SDL_Surface* texture) {
    Painter painter = painterOn(surface);
    const auto checkBox = [&](bool on, Point at, const char* label) {
        painter.piece(texture, kCheckBoxInAtlasX, on ? kCheckBoxOnY : kCheckBoxOffY,
                      layout::kCheckBoxSize, layout::kCheckBoxSize, at.x, at.y);
        painter.text(label, at.x + kLabel.x, at.y + kLabel.y, _colorW);
    };
    painter.text("SCREEN RESOLUTION", 7, 10, _colorR);
    painter.text("This option has no effect when using a Composite cable", 7, 30, _colorW);
    for (const layout::OfferedSize& size : layout::kOfferedSizes) {
        checkBox(all->appW == size.width, size.box, size.label);
    }
    painter.text("OTHER", 327, 10, _colorR);
    checkBox(topbar != 0, layout::kBoxTopbar, "show top white line");
    checkBox(fps != 0, layout::kBoxFps, "show framerate");
}

void c_options::drawController(Painter& painter) const {
    const layout::Area& button = layout::kConfigure;
    const char* name = _nbJoySticks != 0 ? SDL_JoystickName(0) : "no controller detected";
    painter.text("GAME CONTROLLER", 7, 290, _colorR);
    // SDL answers null for a controller that was pulled out.
    painter.text(name != nullptr ? name : "", 7, 310, _colorW);
    painter.button(button.x, button.y, button.w, "configure controller", _colorO, _colorN);
}

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
        drawNotice(painter, kNoticePage1);
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
