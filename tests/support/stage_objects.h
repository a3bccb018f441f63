#pragma once
// The global buffers and first objects without main(): what tests, benches and fuzzers stand on is
// made here, in main()'s order, and taken down again. Neither SDL nor ./data need be there.

#include <cstdint>
#include <vector>

#include "core/globals.h"

// The pixel buffers, 50 empty slots, and the objects up to the filters, each initialised.
void createObjects();
// Frees those and the mixer, as far as they are there; their globals are then null.
void destroyObjects();

class StageObjects {
public:
    StageObjects();
    // With a mixer and a picture of w x h for it to mix onto, whose rows lie w pixels apart.
    StageObjects(int w, int h);
    ~StageObjects();
    StageObjects(const StageObjects&) = delete;
    StageObjects& operator=(const StageObjects&) = delete;

    std::vector<uint16_t> picture;  // the pixels of screen[1]

private:
    SDL_Surface* video_ = nullptr;
};
