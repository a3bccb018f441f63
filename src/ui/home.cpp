#include "ui/home.h"

#include <cstdio>

#include "core/all.h"
#include "core/display.h"
#include "core/globals.h"
#include "draw/painter.h"
#include "playlists/playlist.h"

namespace {

constexpr int kCell = 104;
constexpr int kGridX = 160;
constexpr int kGridY = 60;
constexpr Point kItemCells[kHomeItems] = {{1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}};  // column, row

// The selected item's frame, in its cell.
constexpr Point kFrameInCell = {9, 15};
constexpr int kFrameSize = 94;

constexpr int kNoItem = -1;

struct ItemText {
    int item;
    const char* words;
    int x;
    int y;
    int font;
};

// Texts of no item are always white.
constexpr ItemText kTexts[] = {
    {HOME_MIX, "MIX", 277, 77, 1},
    {HOME_EDIT, "EDIT", 381, 77, 1},
    {HOME_OPTIONS, "OPTIONS", 173, 181, 1},
    {HOME_FULL_SCREEN, "FULL", 277, 181, 1},
    {HOME_FULL_SCREEN, "SCREEN", 277, 197, 1},
    {HOME_QUIT, "QUIT", 381, 181, 1},
    {kNoItem, "Z : BACK        X or click : OK", 170, 310, 0},
    {kNoItem, "V 1.2 - AMBER HERON", 170, 330, 0},
    {kNoItem, "Build on 30th December 2013", 344, 330, 0},
};
constexpr ItemText kNoControllerTexts[] = {
    {HOME_OPTIONS, "no", 173, 198, 0},
    {HOME_OPTIONS, "game controller", 173, 210, 0},
    {HOME_OPTIONS, "detected", 173, 222, 0},
};
constexpr ItemText kControllerTexts[] = {
    {HOME_OPTIONS, "game controller", 173, 198, 0},
    {HOME_OPTIONS, "detected", 173, 210, 0},
};
constexpr Point kCountText = {381, 94};
constexpr Point kResolutionText = {277, 214};
constexpr size_t kMaxText = 32;

}  // namespace

void c_home::initHome() {
    selected = HOME_MIX;
    offset = pictureOffset(all->appW, all->appH);
    background = loadPictureFor(screen[0], "data/home.png");
}

void c_home::draw(SDL_Surface* s) {
    offset = pictureOffset(all->appW, all->appH);
    if (background != nullptr) {
        putPicture(background, s, offset.x, offset.y);
    }
    Painter painter(s, offset);
    drawSelection(painter);
    drawTexts(painter);
}

void c_home::drawSelection(Painter& painter) const {
    const int cellX = kGridX + kCell * kItemCells[selected].x;
    const int cellY = kGridY + kCell * kItemCells[selected].y;
    painter.frame(cellX + kFrameInCell.x, cellY + kFrameInCell.y, kFrameSize, kFrameSize, _colorW);
}

uint32_t c_home::itemColour(int item) const {
    return item == selected || item == kNoItem ? _colorW : _colorN;
}

void c_home::drawTexts(Painter& painter) const {
    const auto drawAll = [&](const auto& texts) {
        for (const ItemText& each : texts) {
            painter.text(each.words, each.x, each.y, itemColour(each.item), each.font);
        }
    };
    drawAll(kTexts);
    if (_nbJoySticks == 0) {
        drawAll(kNoControllerTexts);
    } else {
        drawAll(kControllerTexts);
    }

    char words[kMaxText] = "no playlists";
    if (playlist->nbFamilles > 0) {
        snprintf(words, sizeof words, playlist->nbFamilles == 1 ? "%d playlist" : "%d playlists",
                 playlist->nbFamilles);
    }
    painter.text(words, kCountText.x, kCountText.y, itemColour(HOME_EDIT));
    snprintf(words, sizeof words, "%d x %d", all->appW, all->appH);
    painter.text(words, kResolutionText.x, kResolutionText.y, itemColour(HOME_FULL_SCREEN));
}
