#include "ui/home.h"

#include <cstdio>

#include "common/geometry.h"
#include "common/rgb565.h"
#include "core/all.h"
#include "core/display.h"
#include "core/globals.h"
#include "draw/picture.h"
#include "draw/ttf.h"
#include "playlists/playlist.h"

namespace {

constexpr int kCell = 104;
constexpr int kGridX = 160;
constexpr int kGridY = 60;
constexpr Point kItemCells[kHomeItems] = {{1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}};  // column, row

// The four bars around the selected item, from its cell's corner: x, y, width, height.
constexpr SDL_Rect kSelectionBars[] = {
    {9, 15, 94, 2},
    {101, 15, 2, 94},
    {9, 107, 94, 2},
    {9, 15, 2, 94},
};

struct ItemText {
    int item;
    const char* words;
    int x;
    int y;
    int font;
};

constexpr ItemText kItemTexts[] = {
    {HOME_MIX, "MIX", 277, 77, 1},
    {HOME_EDIT, "EDIT", 381, 77, 1},
    {HOME_OPTIONS, "OPTIONS", 173, 181, 1},
    {HOME_FULL_SCREEN, "FULL", 277, 181, 1},
    {HOME_FULL_SCREEN, "SCREEN", 277, 197, 1},
    {HOME_QUIT, "QUIT", 381, 181, 1},
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
constexpr ItemText kFixedTexts[] = {
    {-1, "Z : BACK        X or click : OK", 170, 310, 0},
    {-1, "V 1.2 - AMBER HERON", 170, 330, 0},
    {-1, "Build on 30th December 2013", 344, 330, 0},
};
constexpr Point kCountText = {381, 94};
constexpr Point kResolutionText = {277, 214};
constexpr size_t kMaxText = 32;

}  // namespace

void c_home::initHome() {
    selected = HOME_MIX;
    place();
    background = loadPictureFor(screen[0], "data/home.png");
}

void c_home::place() {
    const Point offset = pictureOffset(all->appW, all->appH);
    offsetX = offset.x;
    offsetY = offset.y;
}

void c_home::draw(SDL_Surface* s) {
    if (background != nullptr) {
        putPicture(background, s, offsetX, offsetY);
    }
    drawSelection(s);
    drawTexts(s);
}

void c_home::drawSelection(SDL_Surface* s) {
    const int cellX = offsetX + kGridX + kCell * kItemCells[selected].x;
    const int cellY = offsetY + kGridY + kCell * kItemCells[selected].y;
    for (SDL_Rect bar : kSelectionBars) {
        bar.x = static_cast<int16_t>(bar.x + cellX);
        bar.y = static_cast<int16_t>(bar.y + cellY);
        SDL_FillRect(s, &bar, px::fromRgb(static_cast<int>(_colorW)));
    }
}

int c_home::itemColour(int item) {
    return static_cast<int>(item == selected || item < 0 ? _colorW : _colorN);
}

void c_home::text(SDL_Surface* s, const char* words, int x, int y, int font, int colour) {
    ttf->texte(s, words, static_cast<short>(offsetX + x), static_cast<short>(offsetY + y), colour,
               font);
}

void c_home::drawTexts(SDL_Surface* s) {
    const auto drawAll = [&](const auto& texts) {
        for (const ItemText& each : texts) {
            text(s, each.words, each.x, each.y, each.font, itemColour(each.item));
        }
    };
    drawAll(kItemTexts);
    drawAll(kFixedTexts);
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
    text(s, words, kCountText.x, kCountText.y, 0, itemColour(HOME_EDIT));
    snprintf(words, sizeof words, "%d x %d", all->appW, all->appH);
    text(s, words, kResolutionText.x, kResolutionText.y, 0, itemColour(HOME_FULL_SCREEN));
}
