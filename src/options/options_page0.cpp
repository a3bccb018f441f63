// Page 0: the filters and their letters, the display, the controller's name.
#include "common/limits.h"
#include "core/all.h"
#include "core/globals.h"
#include "draw/lib.h"
#include "layout/options_layout.h"
#include "mixer/filters.h"
#include "options/options.h"

namespace {

constexpr int16_t kCheckBoxInAtlasX = 96;
constexpr int16_t kCheckBoxOffY = 0;
constexpr int16_t kCheckBoxOnY = 24;
constexpr Point kLabel = {30, 7};  // from its check box

constexpr const char* kSlotLetters[kFilterSlots] = {"Q", "W", "E", "R", "T", "Y", "U", "I", "O"};
constexpr Point kSlotLetter = {6, 4};  // from its slot box
constexpr Point kSlotName = {0, 50};
constexpr int kSlotBorder = 2;
constexpr int kOpaque = 100;
constexpr Point kChipName = {3, 5};  // from its chip
constexpr int kChipRgb = 0x404040;

constexpr Point kNotice = {150, 338};

Point from(Point corner, Point step) {
    return {corner.x + step.x, corner.y + step.y};
}

}  // namespace

void c_options::drawScreen0(SDL_Surface* surface, SDL_Surface* texture) {
    drawFilters(surface);
    drawDisplayOptions(surface, texture);
    drawController(surface);
    drawNotice(surface, kNotice);
    if (dragging != 0) {
        drawDrag(surface);
    }
    drawBack(surface, texture);
}

// The boxes' fill goes to the work surface, so their border alone shows here.
void c_options::drawFilters(SDL_Surface* surface) {
    write(surface, "FILTERS", {7, 120}, _colorR);
    write(surface, "Drag and drop filters to a keyboard letter to create a bond", {7, 170},
          _colorW);
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        const layout::Area box = layout::slotBox(slot);
        const int id = _filters->slots[0][slot].id;
        _lib->CSS_rect(offsetX + box.x, offsetY + box.y, box.w, box.h, kSlotBorder,
                       static_cast<int>(_colorW), static_cast<int>(_colorN), kOpaque);
        write(surface, kSlotLetters[slot], from({box.x, box.y}, kSlotLetter), _colorR, 1);
        if (id != FILTER_NONE) {
            write(surface, _filters->getFilterName(id), from({box.x, box.y}, kSlotName), _colorO);
        }
    }
    for (int id = 0; id < kFilterIds; ++id) {
        const layout::Area& first = layout::kFirstChip;
        const Point chip = {first.x + layout::kChipStep * id, first.y};
        _lib->CSS_rectNoBorderNoAlpha(offsetX + chip.x, offsetY + chip.y, first.w, first.h,
                                      kChipRgb);
        write(surface, _filters->getFilterName(id), from(chip, kChipName), _colorB);
    }
}

void c_options::drawCheckBox(SDL_Surface* surface, SDL_Surface* texture, int on, Point at,
                             const char* label) {
    const SDL_Rect piece = {kCheckBoxInAtlasX, on != 0 ? kCheckBoxOnY : kCheckBoxOffY,
                            layout::kCheckBoxSize, layout::kCheckBoxSize};
    drawPiece(surface, texture, piece, at);
    write(surface, label, from(at, kLabel), _colorW);
}

void c_options::drawDisplayOptions(SDL_Surface* surface, SDL_Surface* texture) {
    write(surface, "SCREEN RESOLUTION", {7, 10}, _colorR);
    write(surface, "This option has no effect when using a Composite cable", {7, 30}, _colorW);
    for (const layout::OfferedSize& size : layout::kOfferedSizes) {
        drawCheckBox(surface, texture, all->appW == size.width, size.box, size.label);
    }
    write(surface, "OTHER", {327, 10}, _colorR);
    drawCheckBox(surface, texture, topbar, layout::kBoxTopbar, "show top white line");
    drawCheckBox(surface, texture, fps, layout::kBoxFps, "show framerate");
}

void c_options::drawController(SDL_Surface* surface) {
    const layout::Area& button = layout::kConfigure;
    const char* name = _nbJoySticks != 0 ? SDL_JoystickName(0) : "no controller detected";
    write(surface, "GAME CONTROLLER", {7, 290}, _colorR);
    // SDL answers null for a controller that was pulled out.
    write(surface, name != nullptr ? name : "", {7, 310}, _colorW);
    _lib->CSS_button(offsetX + button.x, offsetY + button.y, button.w, "configure controller");
}
