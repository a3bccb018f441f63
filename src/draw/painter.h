#pragma once
// Draws boxes, texts and pieces of pictures onto one surface, of whatever depth. Lives for one
// drawing and owns nothing; what lies outside the surface is cut. Colours are 0x00RRGGBB, positions
// and sizes pixels. Texts are bytes, drawn as layout/latin1.h says in the fonts of draw/ttf.h.

#include <SDL.h>

#include <cstdint>
#include <string>

#include "common/geometry.h"

inline constexpr int kSmallFont = 0;
inline constexpr int kLargeFont = 1;

// No width and no height where they are negative.
SDL_Rect rectOf(int x, int y, int w, int h);

// The picture of a PNG file, or null when it cannot be read; drawing a null picture is the caller's
// to skip. Never freed: pictures live as long as the program.
SDL_Surface* loadPicture(const char* path);

// The same in the format of `shown`, in which it is drawn in every frame with less work. A picture
// that lets something through stays as it was, and so does one that there is no memory to convert.
SDL_Surface* loadPictureFor(const SDL_Surface* shown, const char* path);

class Painter {
public:
    // Positions count from `origin`.
    explicit Painter(SDL_Surface* surface, Point origin = {0, 0})
        : surface_(surface), origin_(origin) {}

    void fill(int x, int y, int w, int h, uint32_t rgb);
    void frame(int x, int y, int w, int h, uint32_t rgb);  // two pixels thick, inside the rectangle
    // 24 pixels high.
    void button(int x, int y, int w, const char* words, uint32_t ground, uint32_t ink);
    // The part of a picture that begins at (fromX, fromY); nothing of a null picture.
    void piece(SDL_Surface* picture, int fromX, int fromY, int w, int h, int x, int y);

    void text(const char* words, int x, int y, uint32_t rgb, int font = kSmallFont);
    // On a ground one pixel wider to the left and the right.
    void textOn(uint32_t ground, const char* words, int x, int y, uint32_t rgb);
    // Cut to `room` pixels with an ellipsis. Returns the width drawn.
    int textIn(int room, const std::string& words, int x, int y, uint32_t rgb);
    // The same, ending at `right`. Returns where it begins.
    int textUpTo(int right, int room, const std::string& words, int y, uint32_t rgb);

    static int widthOf(const std::string& words, int font = kSmallFont);
    static std::string fitting(const std::string& words, int room);

private:
    SDL_Surface* surface_;
    Point origin_;
};
