#pragma once
// c_ttf: text and numbers in the interface's bitmap font, without anti-aliasing. One object, the
// global `ttf`. Font 0 is the face at size 9, font 1 at size 18. Colours are 0x00RRGGBB; texts are
// bytes, drawn as layout/latin1.h says; (x, y) is the text's top left on the surface. An empty
// text, or a font that could not be opened, draws nothing. Nothing is cached.

#include <SDL.h>
#include <SDL_ttf.h>

class c_ttf {
public:
    void loadFonts();

    void drawTextH(SDL_Surface* s, const char* text, short x, short y, int colour, int font);
    // Kept without a caller: the same.
    void texte(SDL_Surface* s, const char* text, short x, short y, int colour, int font) {
        drawTextH(s, text, x, y, colour, font);
    }
    void drawIntH(SDL_Surface* s, int value, short x, short y, int colour, int font);
    // On a box of `background` that is one pixel wider than the text to the left and the right.
    void texteFilled(SDL_Surface* s, const char* text, short x, short y, int colour, int font,
                     int background);

    int widthOf(const char* text, int font) const;  // pixels

    TTF_Font* fonts[2];

private:
    SDL_Surface* render(const char* text, int colour, int font);
};
