#pragma once
// A score as a film or as single pictures.

#include <cstdint>
#include <filesystem>
#include <string>

#include "tools/render/take.h"

namespace maker {

struct FilmSettings {
    std::filesystem::path folder;  // Velmora's
    std::string output;            // .mp4 (H.264) or .mkv (FFV1)
    int width = 0;
    int height = 0;
    bool interface = false;
    std::string sound;      // a file whose sound is laid under it; empty: none
    double soundStart = 0;  // seconds of it that are left out, or of silence before it
    int from = 0;           // the first frame, and the one behind the last
    int to = 0;
};

// Frames a second of a film: one each 39.0625 ms, which is as near to the stage's pace as a film's
// clock gets.
inline constexpr double kFilmFps = 25.6;

// Writes the film, which appears whole. Returns its frames.
int renderFilm(const Score& score, const FilmSettings& settings);

// One frame as a PNG file.
void renderStill(const Score& score, const FilmSettings& settings, int frame);

}  // namespace maker
