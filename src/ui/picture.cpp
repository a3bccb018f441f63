#include "ui/picture.h"

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
