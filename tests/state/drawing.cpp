#include "state/drawing.h"

#include <algorithm>
#include <cstring>

namespace {

uint8_t* addressOf(const SDL_Surface* surface, int x, int y) {
    return static_cast<uint8_t*>(surface->pixels) + static_cast<size_t>(y) * surface->pitch +
           static_cast<size_t>(x) * 2;
}

}  // namespace

Picture newPicture(int width, int height, uint16_t colour) {
    Picture picture(
        SDL_CreateRGBSurface(SDL_SWSURFACE, width, height, 16, 0xF800, 0x07E0, 0x001F, 0));
    fillAll(picture.get(), colour);
    return picture;
}

Picture copyOf(SDL_Surface* surface) {
    Picture picture = newPicture(surface->w, surface->h);
    for (int y = 0; y < surface->h; ++y) {
        memcpy(addressOf(picture.get(), 0, y), addressOf(surface, 0, y),
               static_cast<size_t>(surface->w) * 2);
    }
    return picture;
}

uint16_t pixelAt(const SDL_Surface* surface, int x, int y) {
    uint16_t pixel;
    memcpy(&pixel, addressOf(surface, x, y), sizeof pixel);
    return pixel;
}

void setPixel(SDL_Surface* surface, int x, int y, uint16_t colour) {
    memcpy(addressOf(surface, x, y), &colour, sizeof colour);
}

void fill(SDL_Surface* surface, int x, int y, int w, int h, uint16_t colour) {
    for (int row = std::max(y, 0); row < std::min(y + h, surface->h); ++row) {
        for (int column = std::max(x, 0); column < std::min(x + w, surface->w); ++column) {
            setPixel(surface, column, row, colour);
        }
    }
}

void fillAll(SDL_Surface* surface, uint16_t colour) {
    fill(surface, 0, 0, surface->w, surface->h, colour);
}

testing::AssertionResult samePixels(const SDL_Surface* actual, const SDL_Surface* expected) {
    if (actual->w != expected->w || actual->h != expected->h) {
        return testing::AssertionFailure() << actual->w << " x " << actual->h << " instead of "
                                           << expected->w << " x " << expected->h;
    }
    int differing = 0;
    testing::AssertionResult failure = testing::AssertionFailure();
    for (int y = 0; y < actual->h; ++y) {
        for (int x = 0; x < actual->w; ++x) {
            if (pixelAt(actual, x, y) == pixelAt(expected, x, y)) {
                continue;
            }
            if (differing++ == 0) {
                failure << std::hex << "0x" << pixelAt(actual, x, y) << " instead of 0x"
                        << pixelAt(expected, x, y) << std::dec << " at (" << x << ", " << y << ")";
            }
        }
    }
    if (differing == 0) {
        return testing::AssertionSuccess();
    }
    return failure << ", " << differing << " pixels differ";
}

int countPixels(const SDL_Surface* surface, int x, int y, int w, int h, uint16_t colour) {
    int count = 0;
    for (int row = y; row < y + h; ++row) {
        for (int column = x; column < x + w; ++column) {
            count += pixelAt(surface, column, row) == colour ? 1 : 0;
        }
    }
    return count;
}

Lettering::Lettering() {
    TTF_Init();
    fonts_[0] = TTF_OpenFont(PRODUCT_DATA "/volter", 9);
    fonts_[1] = TTF_OpenFont(PRODUCT_DATA "/volter", 18);
}

Lettering::~Lettering() {
    TTF_CloseFont(fonts_[0]);
    TTF_CloseFont(fonts_[1]);
    TTF_Quit();
}

void Lettering::paint(SDL_Surface* to, const char* text, int x, int y, int rgb, int font) {
    const SDL_Color colour = {static_cast<uint8_t>(rgb >> 16), static_cast<uint8_t>(rgb >> 8),
                              static_cast<uint8_t>(rgb), 0};
    const Picture rendered(TTF_RenderText_Solid(fonts_[font], text, colour));
    ASSERT_NE(rendered, nullptr) << text;
    SDL_Rect at = {static_cast<int16_t>(x), static_cast<int16_t>(y), 0, 0};
    SDL_BlitSurface(rendered.get(), nullptr, to, &at);
}

int Lettering::width(const char* text, int font) {
    int w = 0;
    TTF_SizeText(fonts_[font], text, &w, nullptr);
    return w;
}

int Lettering::height(const char* text, int font) {
    int h = 0;
    TTF_SizeText(fonts_[font], text, nullptr, &h);
    return h;
}
