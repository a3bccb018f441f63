#include "draw/picture.h"

#include <SDL_image.h>

SDL_Surface* loadPicture(const char* path) {
    SDL_RWops* file = SDL_RWFromFile(path, "rb");
    if (file == nullptr) {
        return nullptr;
    }
    SDL_Surface* picture = IMG_LoadPNG_RW(file);
    SDL_RWclose(file);
    return picture;
}

SDL_Surface* loadPictureFor(const SDL_Surface* screen, const char* path) {
    SDL_Surface* const picture = loadPicture(path);
    if (picture == nullptr || (picture->flags & (SDL_SRCCOLORKEY | SDL_SRCALPHA)) != 0) {
        return picture;
    }
    SDL_Surface* const converted = SDL_ConvertSurface(picture, screen->format, SDL_SWSURFACE);
    if (converted == nullptr) {
        return picture;
    }
    SDL_FreeSurface(picture);
    return converted;
}
