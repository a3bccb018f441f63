// The performer's panel over the lower left of the mix: a box a layer with the clip's name and two
// position bars, and beside them the mixing modes or, while a filter letter is held, the filters.
#include <algorithm>
#include <string>

#include "core/all.h"
#include "core/globals.h"
#include "draw/lib.h"
#include "draw/ttf.h"
#include "layout/name_rooms.h"
#include "mixer/filters.h"
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

int white() {
    return static_cast<int>(_colorW);
}

int boxColour(bool lit) {
    return static_cast<int>(lit ? _colorB : _colorN);
}

void text(const char* words, int x, int y, int font) {
    ttf->drawTextH(screen[1], words, static_cast<short>(x), static_cast<short>(y), white(), font);
}

// The file's name without folder and extension. Paths come from the playlists file, whose reader
// gives 91 characters at most.
void drawClipTitle(const std::string& path, int x, int y, int font) {
    char title[kMaxTitle];
    const size_t slash = path.find_last_of("/\\");
    const size_t from = slash == std::string::npos ? 0 : slash + 1;
    const size_t length = path.size() - from;
    const size_t shown = std::min(length - std::min<size_t>(length, kExtension), kMaxTitle - 1);
    path.copy(title, shown, from);
    title[shown] = '\0';
    text(title, x, y, font);
}

void drawFrameRate(const PanelSizes& sizes, int top) {
    _lib->CSS_rectNoBorderNoAlpha(kPanelX, top - kFpsBoxHeight - sizes.gap, kFpsBoxWidth,
                                  kFpsBoxHeight, 0);
    ttf->drawIntH(screen[1], fps, kFpsTextX, static_cast<short>(top - kFpsTextAbove - sizes.gap),
                  kFpsColour, 0);
}

void drawBars(const PanelSizes& sizes, const MixLayer& layer, int decks, int y) {
    const int frames = moxel[layer.deck].frameCount;
    const int deckWidth = sizes.boxWidth / decks;
    if (frames > 0) {
        _lib->CSS_rectNoBorderNoAlpha(kPanelX, y + sizes.boxHeight - kFrameBarFromBottom,
                                      sizes.boxWidth * (1 + layer.frame) / frames, kBarHeight,
                                      white());
    }
    _lib->CSS_rectNoBorderNoAlpha(kPanelX + layer.deck * deckWidth,
                                  y + sizes.boxHeight - kBarHeight, deckWidth, kBarHeight, white());
}

void drawLayerBox(const PanelSizes& sizes, const MixLayer& layer, bool active, int decks, int y) {
    _lib->CSS_rectNoBorder(kPanelX, y, sizes.boxWidth, sizes.boxHeight, boxColour(active),
                           kOpacity);
    drawClipTitle(moxel[layer.deck].path, kPanelX + layout::kPanelNameX, y + kNameY, sizes.font);
    if (decks > 0) {
        drawBars(sizes, layer, decks, y);
    }
}

void drawModeButtons(const PanelSizes& sizes, int mode, int x, int y) {
    for (const ModeControl& button : kModes) {
        _lib->CSS_rectNoBorder(x, y, sizes.buttonWidth, sizes.buttonHeight,
                               boxColour(button.mode == mode), kOpacity);
        text(button.label, x + kLabelInset, y + kLabelInset, sizes.font);
        if (button.secondLine != nullptr) {
            text(button.secondLine, x + kLabelInset, y + kLabelInset + kSecondLine, sizes.font);
        }
        x += sizes.step;
    }
}

void drawFilterRow(const PanelSizes& sizes, int layer, bool active, int x, int y) {
    for (int number = 0; number < kFilterSlots; ++number) {
        const FilterSlot& slot = _filters->slots[layer][number];
        _lib->CSS_rectNoBorder(x, y, sizes.buttonWidth, sizes.buttonHeight,
                               boxColour(active && number == _filters->selected), kOpacity);
        if (slot.on != 0) {
            _lib->CSS_rectNoBorder(x, y + sizes.buttonHeight - kBarHeight, sizes.buttonWidth,
                                   kBarHeight, white(), kOpaque);
        }
        text(_filters->getFilterName(slot.id), x + kLabelInset, y + kLabelInset, sizes.font);
        ttf->drawIntH(screen[1], slot.dir + 1, static_cast<short>(x + kLabelInset),
                      static_cast<short>(y + kLabelInset + kSecondLine), white(), sizes.font);
        x += sizes.step;
    }
}

}  // namespace

void c_mix::drawUI() {
    if (showUI == 0) {
        return;
    }
    const PanelSizes& sizes = all->composite != 0 ? kComposite : kHdmi;
    uiX = kPanelX;
    uiY = all->appH - sizes.fromBottom;
    const int bottomY = uiY + kLayerStep + sizes.gap;
    drawFrameRate(sizes, uiY);
    drawLayerBox(sizes, layer[1], activeLayer == 1, nbDecks, uiY);
    drawLayerBox(sizes, layer[0], activeLayer == 0, nbDecks, bottomY);

    const int right = kPanelX + sizes.boxWidth + sizes.gap;
    if (filterKeyHeld == 0) {
        drawModeButtons(sizes, mode, right, bottomY);
    } else if (filterKeyHeld == kFilterKeyDown) {
        drawFilterRow(sizes, 1, activeLayer == 1, right, uiY);
        drawFilterRow(sizes, 0, activeLayer == 0, right, uiY + sizes.rowStep);
    }
}
