#include "draw/ttf.h"

#include <cstdio>

#include "core/globals.h"
#include "layout/latin1.h"

namespace {

constexpr const char* kFontFile = "data/volter";
constexpr int kFontSizes[2] = {9, 18};
// Bytes of the longest text drawn: more letters than a window is wide have no place in one.
constexpr size_t kLongestText = 1024;

SDL_Color colourOf(int rgb) {
    return {static_cast<uint8_t>((rgb >> 16) & 0xFF), static_cast<uint8_t>((rgb >> 8) & 0xFF),
            static_cast<uint8_t>(rgb & 0xFF), 0};
}

// Blits the rendered text and frees it.
void place(SDL_Surface* text, SDL_Surface* s, short x, short y) {
    if (text == nullptr) {
        return;
    }
    SDL_Rect at = {x, y, 0, 0};
    SDL_BlitSurface(text, nullptr, s, &at);
    SDL_FreeSurface(text);
}

}  // namespace

void c_ttf::loadFonts() {
    for (int font = 0; font < 2; ++font) {
        fonts[font] = TTF_OpenFont(kFontFile, kFontSizes[font]);
    }
}

SDL_Surface* c_ttf::render(const char* text, int colour, int font) {
    if (fonts[font] == nullptr) {
        return nullptr;
    }
    char letters[kLongestText];
    latin1::lettersOf(text, letters, sizeof letters);
    return TTF_RenderText_Solid(fonts[font], letters, colourOf(colour));
}

int c_ttf::widthOf(const char* text, int font) const {
    int width = 0;
    if (fonts[font] != nullptr) {
        char letters[kLongestText];
        latin1::lettersOf(text, letters, sizeof letters);
        TTF_SizeText(fonts[font], letters, &width, nullptr);
    }
    return width;
}

void c_ttf::drawTextH(SDL_Surface* s, const char* text, short x, short y, int colour, int font) {
    place(render(text, colour, font), s, x, y);
}

void c_ttf::drawIntH(SDL_Surface* s, int value, short x, short y, int colour, int font) {
    char digits[12];  // "-2147483648" and the end
    snprintf(digits, sizeof digits, "%d", value);
    drawTextH(s, digits, x, y, colour, font);
}

void c_ttf::texteFilled(SDL_Surface* s, const char* text, short x, short y, int colour, int font,
                        int background) {
    SDL_Surface* rendered = render(text, colour, font);
    if (rendered == nullptr) {
        return;
    }
    const SDL_Color fill = colourOf(background);
    SDL_Rect box = {static_cast<int16_t>(x - 1), y, static_cast<uint16_t>(rendered->w + 2),
                    static_cast<uint16_t>(rendered->h)};
    SDL_FillRect(s, &box, SDL_MapRGB(screen[1]->format, fill.r, fill.g, fill.b));
    place(rendered, s, x, y);
}
