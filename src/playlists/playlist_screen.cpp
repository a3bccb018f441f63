// The playlist screen's frame.
#include "common/geometry.h"
#include "common/rgb565.h"
#include "core/all.h"
#include "core/globals.h"
#include "playlists/playlist.h"
#include "ui/ttf.h"

namespace {

constexpr int kPageRgb = 0x181818;
constexpr int kFirstRowY = 18;
constexpr int kRowHeight = 13;
constexpr short kTitleX = 4;
constexpr short kCountX = 280;

}  // namespace

void c_playlist::initScroll(int bar, int count) {
    resetScroll(scroll[bar], count);
}

void c_playlist::updateScroll(int bar, int count) {
    resizeScroll(scroll[bar], count);
}

// The playlists with their track counts.
void c_playlist::draw(SDL_Surface* surface, SDL_Surface*) {
    const Point offset = pictureOffset(all->appW, all->appH);
    SDL_Rect picture = {static_cast<int16_t>(offset.x), static_cast<int16_t>(offset.y), kFrameWidth,
                        kFrameHeight};
    SDL_FillRect(surface, &picture, px::fromRgb(kPageRgb));
    const int white = static_cast<int>(_colorW);
    const auto text = [&](const char* words, int x, int y, int colour) {
        ttf->drawTextH(surface, words, static_cast<short>(offset.x + x),
                       static_cast<short>(offset.y + y), colour, 0);
    };
    text("PLAYLISTS", kTitleX, 4, static_cast<int>(_colorR));
    for (int row = 0; row < kVisibleRows && row < nbFamilles; ++row) {
        const int y = kFirstRowY + kRowHeight * row;
        text(familles[row].name.c_str(), kTitleX, y, white);
        ttf->drawIntH(surface, familles[row].nbTracks, static_cast<short>(offset.x + kCountX),
                      static_cast<short>(offset.y + y), white, 0);
    }
    text("Z : BACK", kTitleX, 340, white);
}
