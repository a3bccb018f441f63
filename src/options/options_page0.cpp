// Page 0: the filters and their letters, the display, the controller's name.
#include "common/limits.h"
#include "core/all.h"
#include "core/filters.h"
#include "core/globals.h"
#include "draw/lib.h"
#include "layout/options_layout.h"
#include "options/options.h"

namespace {

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

constexpr Point kNotice = {150, 338};

}  // namespace

void c_options::drawScreen0(SDL_Surface* surface, SDL_Surface* texture) {
    Painter painter = painterOn(surface);
    drawFilters(surface);
    drawDisplayOptions(surface, texture);
    drawController(painter);
    drawNotice(painter, kNotice);
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
