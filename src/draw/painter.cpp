#include "draw/painter.h"

#include <SDL_image.h>

#include <algorithm>

#include "common/rgb565.h"
#include "core/display.h"
#include "core/globals.h"
#include "draw/ttf.h"
#include "layout/page_layout.h"
#include "layout/textfit.h"

namespace {

constexpr int kThick = 2;  // of a frame
constexpr int kButtonTextX = 6;
constexpr int kButtonTextY = 8;

}  // namespace

SDL_Rect rectOf(int x, int y, int w, int h) {
    return {static_cast<int16_t>(x), static_cast<int16_t>(y), static_cast<uint16_t>(std::max(w, 0)),
            static_cast<uint16_t>(std::max(h, 0))};
}

SDL_Surface* loadPicture(const char* path) {
    SDL_RWops* file = SDL_RWFromFile(path, "rb");
    if (file == nullptr) {
        return nullptr;
    }
    SDL_Surface* picture = IMG_LoadPNG_RW(file);
    SDL_RWclose(file);
    return picture;
}

SDL_Surface* loadPictureFor(const SDL_Surface* shown, const char* path) {
    SDL_Surface* const picture = loadPicture(path);
    if (picture == nullptr || (picture->flags & (SDL_SRCCOLORKEY | SDL_SRCALPHA)) != 0) {
        return picture;
    }
    SDL_Surface* const converted = SDL_ConvertSurface(picture, shown->format, SDL_SWSURFACE);
    if (converted == nullptr) {
        return picture;
    }
    SDL_FreeSurface(picture);
    return converted;
}

void Painter::fill(int x, int y, int w, int h, uint32_t rgb) {
    SDL_Rect area = rectOf(origin_.x + x, origin_.y + y, w, h);
    SDL_FillRect(surface_, &area, surfaceColour(surface_, px::fromRgb(static_cast<int>(rgb))));
}

void Painter::frame(int x, int y, int w, int h, uint32_t rgb) {
    fill(x, y, w, kThick, rgb);
    fill(x, y + h - kThick, w, kThick, rgb);
    fill(x, y, kThick, h, rgb);
    fill(x + w - kThick, y, kThick, h, rgb);
}

void Painter::button(int x, int y, int w, const char* words, uint32_t ground, uint32_t ink) {
    fill(x, y, w, page::kButtonHeight, ground);
    text(words, x + kButtonTextX, y + kButtonTextY, ink);
}

void Painter::piece(SDL_Surface* picture, int fromX, int fromY, int w, int h, int x, int y) {
    if (picture == nullptr) {
        return;
    }
    SDL_Rect from = rectOf(fromX, fromY, w, h);
    SDL_Rect at = rectOf(origin_.x + x, origin_.y + y, 0, 0);
    SDL_BlitSurface(picture, &from, surface_, &at);
}

void Painter::text(const char* words, int x, int y, uint32_t rgb, int font) {
    ttf->drawTextH(surface_, words, static_cast<short>(origin_.x + x),
                   static_cast<short>(origin_.y + y), static_cast<int>(rgb), font);
}

void Painter::textOn(uint32_t ground, const char* words, int x, int y, uint32_t rgb) {
    ttf->texteFilled(surface_, words, static_cast<short>(origin_.x + x),
                     static_cast<short>(origin_.y + y), static_cast<int>(rgb), kSmallFont,
                     static_cast<int>(ground));
}

int Painter::textIn(int room, const std::string& words, int x, int y, uint32_t rgb) {
    const std::string drawn = fitting(words, room);
    text(drawn.c_str(), x, y, rgb);
    return widthOf(drawn);
}

int Painter::textUpTo(int right, int room, const std::string& words, int y, uint32_t rgb) {
    const std::string drawn = fitting(words, room);
    const int x = right - widthOf(drawn);
    text(drawn.c_str(), x, y, rgb);
    return x;
}

int Painter::widthOf(const std::string& words, int font) {
    return ttf->widthOf(words.c_str(), font);
}

std::string Painter::fitting(const std::string& words, int room) {
    return fitText(words, room, [](const std::string& part) { return widthOf(part); });
}
