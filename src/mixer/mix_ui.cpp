// The performer's panel over the lower left of the mix: a box a layer with the clip's name and two
// position bars, and beside them the mixing modes or, while a filter letter is held, the filters.
#include <algorithm>
#include <cstdio>
#include <string>

#include "core/all.h"
#include "core/filters.h"
#include "core/globals.h"
#include "draw/lib.h"
#include "draw/painter.h"
#include "layout/colours.h"
#include "layout/name_rooms.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"

namespace {

// Sizes by output: pixels of the video surface.
struct PanelSizes {
    int fromBottom;  // panel top, above the surface's lower edge
    int boxWidth;    // layer boxes
    int boxHeight;
    int gap;
    int buttonWidth;  // buttons and filter slots
    int buttonHeight;
    int step;     // from button to button
    int rowStep;  // from the top layer's filter row to the bottom layer's
    int font;
};

constexpr PanelSizes kComposite = {155, layout::kPanelBoxComposite, 50, 5, 50, 50, 55, 65, 0};
constexpr PanelSizes kHdmi = {160, layout::kPanelBoxHdmi, 60, 10, 100, 60, 110, 70, 1};

constexpr int kPanelX = 30;
constexpr int kLayerStep = 60;  // plus the gap, in both sizes
constexpr int kOpacity = 60;
constexpr int kBarHeight = 4;
constexpr int kFrameBarFromBottom = 12;
constexpr int kNameY = 4;
constexpr int kLabelInset = 5;
constexpr int kSecondLine = 20;  // below the first
constexpr size_t kMaxTitle = 256;
constexpr int kExtension = 4;  // characters of ".m19"

constexpr int kFpsBoxWidth = 20;
constexpr int kFpsBoxHeight = 15;
constexpr int kFpsTextX = 34;
constexpr int kFpsTextAbove = 12;
constexpr uint32_t kFpsRgb = 0xAAAAAA;

// Who draws, and in which sizes.
struct Brush {
    c_lib& lib;
    Painter painter;
    const PanelSizes& sizes;

    void box(int x, int y, bool isLit, int width, int height) {
        lib.CSS_rectNoBorder(x, y, width, height, isLit ? colours::kBlue : colours::kBlack,
                             kOpacity);
    }
    void button(int x, int y, bool isLit) {
        box(x, y, isLit, sizes.buttonWidth, sizes.buttonHeight);
    }
    void bar(int x, int y, int width) { painter.fill(x, y, width, kBarHeight, colours::kWhite); }
    void text(const char* words, int x, int y) {
        painter.text(words, x, y, colours::kWhite, sizes.font);
    }
};

// The file's name without folder and extension. Paths come from the playlists file, whose reader
// gives 91 characters at most.
void drawClipTitle(Brush& brush, const std::string& path, int x, int y) {
    char title[kMaxTitle];
    const size_t from = path.find_last_of("/\\") + 1;  // 0 where there is none
    const int length = static_cast<int>(path.size() - from);
    snprintf(title, sizeof title, "%.*s", std::max(length - kExtension, 0), path.c_str() + from);
    brush.text(title, x, y);
}

void drawFrameRate(Painter& painter, int rate, int bottom) {
    painter.fill(kPanelX, bottom - kFpsBoxHeight, kFpsBoxWidth, kFpsBoxHeight, colours::kBlack);
    painter.text(std::to_string(rate).c_str(), kFpsTextX, bottom - kFpsTextAbove, kFpsRgb);
}

void drawBars(Brush& brush, const MixLayer& layer, int frames, int decks, int y) {
    const PanelSizes& sizes = brush.sizes;
    const int deckWidth = sizes.boxWidth / decks;
    if (frames > 0) {
        brush.bar(kPanelX, y + sizes.boxHeight - kFrameBarFromBottom,
                  sizes.boxWidth * (1 + layer.frame) / frames);
    }
    brush.bar(kPanelX + layer.deck * deckWidth, y + sizes.boxHeight - kBarHeight, deckWidth);
}

void drawLayerBox(Brush& brush, const MixLayer& layer, const c_moxel& clip, bool active, int decks,
                  int y) {
    brush.box(kPanelX, y, active, brush.sizes.boxWidth, brush.sizes.boxHeight);
    drawClipTitle(brush, clip.path, kPanelX + layout::kPanelNameX, y + kNameY);
    if (decks > 0) {
        drawBars(brush, layer, clip.frameCount, decks, y);
    }
}

void drawModeButtons(Brush& brush, int mode, int x, int y) {
    for (const ModeControl& button : kModes) {
        brush.button(x, y, button.mode == mode);
        brush.text(button.label, x + kLabelInset, y + kLabelInset);
        if (button.secondLine != nullptr) {
            brush.text(button.secondLine, x + kLabelInset, y + kLabelInset + kSecondLine);
        }
        x += brush.sizes.step;
    }
}

// `selected`: the lit slot, or none.
void drawFilterRow(Brush& brush, const FilterSlot (&slots)[kFilterSlots], int selected, int x,
                   int y) {
    const PanelSizes& sizes = brush.sizes;
    for (int number = 0; number < kFilterSlots; ++number) {
        const FilterSlot& slot = slots[number];
        brush.button(x, y, number == selected);
        if (slot.on != 0) {
            brush.bar(x, y + sizes.buttonHeight - kBarHeight, sizes.buttonWidth);
        }
        brush.text(filterOf(slot.id).name, x + kLabelInset, y + kLabelInset);
        brush.text(std::to_string(slot.dir + 1).c_str(), x + kLabelInset,
                   y + kLabelInset + kSecondLine);
        x += sizes.step;
    }
}

}  // namespace

void c_mix::drawUI() {
    if (showUI == 0) {
        return;
    }
    const PanelSizes& sizes = all->composite != 0 ? kComposite : kHdmi;
    Brush brush = {*_lib, Painter(screen[1]), sizes};
    uiX = kPanelX;
    uiY = all->appH - sizes.fromBottom;
    const int bottomY = uiY + kLayerStep + sizes.gap;
    drawFrameRate(brush.painter, fps, uiY - sizes.gap);
    drawLayerBox(brush, layer[1], moxel[layer[1].deck], activeLayer == 1, nbDecks, uiY);
    drawLayerBox(brush, layer[0], moxel[layer[0].deck], activeLayer == 0, nbDecks, bottomY);

    constexpr int kNone = -1;
    const int right = kPanelX + sizes.boxWidth + sizes.gap;
    const int selected = _filters->selected;
    if (filterKeyHeld == 0) {
        drawModeButtons(brush, mode, right, bottomY);
    } else if (filterKeyHeld == kFilterKeyDown) {
        drawFilterRow(brush, _filters->slots[1], activeLayer == 1 ? selected : kNone, right, uiY);
        drawFilterRow(brush, _filters->slots[0], activeLayer == 0 ? selected : kNone, right,
                      uiY + sizes.rowStep);
    }
}
