// The performer's panel over the lower left of the mix: a box a layer with the clip's name and two
// position bars, and beside them the mixing modes or, while a filter letter is held, the filters.
#include <algorithm>
#include <string>

#include "core/all.h"
#include "core/filters.h"
#include "core/globals.h"
#include "draw/lib.h"
#include "draw/ttf.h"
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
constexpr int kOpaque = 100;
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
constexpr int kFpsColour = 0xAAAAAA;

// Who draws, where and in which colours.
struct Brush {
    c_lib& lib;
    c_ttf& font;
    SDL_Surface* surface;
    int white, lit, unlit;
    const PanelSizes& sizes;

    void box(int x, int y, int width, int height, bool isLit) const {
        lib.CSS_rectNoBorder(x, y, width, height, isLit ? lit : unlit, kOpacity);
    }
    void bar(int x, int y, int width) const {
        lib.CSS_rectNoBorderNoAlpha(x, y, width, kBarHeight, white);
    }
    void text(const char* words, int x, int y) const {
        font.drawTextH(surface, words, static_cast<short>(x), static_cast<short>(y), white,
                       sizes.font);
    }
};

// The file's name without folder and extension. Paths come from the playlists file, whose reader
// gives 91 characters at most.
void drawClipTitle(const Brush& brush, const std::string& path, int x, int y) {
    char title[kMaxTitle];
    const size_t slash = path.find_last_of("/\\");
    const size_t from = slash == std::string::npos ? 0 : slash + 1;
    const size_t length = path.size() - from;
    const size_t shown = std::min(length - std::min<size_t>(length, kExtension), kMaxTitle - 1);
    path.copy(title, shown, from);
    title[shown] = '\0';
    brush.text(title, x, y);
}

void drawFrameRate(const Brush& brush, int rate, int panelTop) {
    const int bottom = panelTop - brush.sizes.gap;
    brush.lib.CSS_rectNoBorderNoAlpha(kPanelX, bottom - kFpsBoxHeight, kFpsBoxWidth, kFpsBoxHeight,
                                      0);
    brush.font.drawIntH(brush.surface, rate, kFpsTextX, static_cast<short>(bottom - kFpsTextAbove),
                        kFpsColour, 0);
}

void drawBars(const Brush& brush, const MixLayer& layer, int frames, int decks, int y) {
    const PanelSizes& sizes = brush.sizes;
    const int deckWidth = sizes.boxWidth / decks;
    if (frames > 0) {
        brush.bar(kPanelX, y + sizes.boxHeight - kFrameBarFromBottom,
                  sizes.boxWidth * (1 + layer.frame) / frames);
    }
    brush.bar(kPanelX + layer.deck * deckWidth, y + sizes.boxHeight - kBarHeight, deckWidth);
}

void drawLayerBox(const Brush& brush, const MixLayer& layer, const c_moxel& clip, bool active,
                  int decks, int y) {
    brush.box(kPanelX, y, brush.sizes.boxWidth, brush.sizes.boxHeight, active);
    drawClipTitle(brush, clip.path, kPanelX + layout::kPanelNameX, y + kNameY);
    if (decks > 0) {
        drawBars(brush, layer, clip.frameCount, decks, y);
    }
}

void drawModeButtons(const Brush& brush, int mode, int x, int y) {
    for (const ModeControl& button : kModes) {
        brush.box(x, y, brush.sizes.buttonWidth, brush.sizes.buttonHeight, button.mode == mode);
        brush.text(button.label, x + kLabelInset, y + kLabelInset);
        if (button.secondLine != nullptr) {
            brush.text(button.secondLine, x + kLabelInset, y + kLabelInset + kSecondLine);
        }
        x += brush.sizes.step;
    }
}

// `selected`: the lit slot, or none.
void drawFilterRow(const Brush& brush, const FilterSlot (&slots)[kFilterSlots], int selected, int x,
                   int y) {
    const PanelSizes& sizes = brush.sizes;
    for (int number = 0; number < kFilterSlots; ++number) {
        const FilterSlot& slot = slots[number];
        brush.box(x, y, sizes.buttonWidth, sizes.buttonHeight, number == selected);
        if (slot.on != 0) {
            brush.lib.CSS_rectNoBorder(x, y + sizes.buttonHeight - kBarHeight, sizes.buttonWidth,
                                       kBarHeight, brush.white, kOpaque);
        }
        brush.text(filterOf(slot.id).name, x + kLabelInset, y + kLabelInset);
        brush.font.drawIntH(brush.surface, slot.dir + 1, static_cast<short>(x + kLabelInset),
                            static_cast<short>(y + kLabelInset + kSecondLine), brush.white,
                            sizes.font);
        x += sizes.step;
    }
}

}  // namespace

void c_mix::drawUI() {
    if (showUI == 0) {
        return;
    }
    const PanelSizes& sizes = all->composite != 0 ? kComposite : kHdmi;
    const Brush brush = {*_lib,
                         *ttf,
                         screen[1],
                         static_cast<int>(_colorW),
                         static_cast<int>(_colorB),
                         static_cast<int>(_colorN),
                         sizes};
    uiX = kPanelX;
    uiY = all->appH - sizes.fromBottom;
    const int bottomY = uiY + kLayerStep + sizes.gap;
    drawFrameRate(brush, fps, uiY);
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
