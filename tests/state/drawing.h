#pragma once
// Surfaces for comparison: copies, fills, texts rendered here with the product's font, and an
// assertion that two surfaces hold the same pixels. All surfaces are 16 bits deep.

#include <SDL.h>
#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

struct SurfaceFree {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using Picture = std::unique_ptr<SDL_Surface, SurfaceFree>;

Picture newPicture(int width, int height, uint16_t colour = 0);
Picture copyOf(SDL_Surface* surface);

uint16_t pixelAt(const SDL_Surface* surface, int x, int y);
void setPixel(SDL_Surface* surface, int x, int y, uint16_t colour);
// Cut at the surface's edges.
void fill(SDL_Surface* surface, int x, int y, int w, int h, uint16_t colour);
void fillAll(SDL_Surface* surface, uint16_t colour);

// The same size and pixels; a failure names the first pixel that differs and their number.
testing::AssertionResult samePixels(const SDL_Surface* actual, const SDL_Surface* expected);
// Pixels of one colour in a rectangle.
int countPixels(const SDL_Surface* surface, int x, int y, int w, int h, uint16_t colour);

// The product's font, opened apart from the program: sizes 9 (font 0) and 18 (font 1).
class Lettering {
public:
    Lettering();
    ~Lettering();
    Lettering(const Lettering&) = delete;
    Lettering& operator=(const Lettering&) = delete;

    // Text without anti-aliasing, top left at (x, y); rgb is 0x00RRGGBB.
    void paint(SDL_Surface* to, const char* text, int x, int y, int rgb, int font);
    int width(const char* text, int font);
    int height(const char* text, int font);

private:
    TTF_Font* fonts_[2];
};
