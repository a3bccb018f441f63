#include "tools/clip/demo_loops.h"

#include <array>

#include "tools/clip/demo_families.h"

namespace demo {

namespace {

// clang-format off
constexpr std::array kLoops{
    Loop{"bars",       96, false, drawBars},
    Loop{"checker",   128, false, drawChecker},
    Loop{"confetti",  128, true,  drawConfetti},
    Loop{"cubes",      64, false, drawCubes},
    Loop{"grid",       64, false, drawGrid},
    Loop{"halftone",   96, false, drawHalftone},
    Loop{"kaleido",   128, false, drawKaleido},
    Loop{"lasers",     96, false, drawLasers},
    Loop{"lava",      128, false, drawLava},
    Loop{"marquee",    80, false, drawMarquee},
    Loop{"moire",      96, false, drawMoire},
    Loop{"plasma",     96, false, drawPlasma},
    Loop{"rain",       60, false, drawRain},
    Loop{"ribbons",   128, false, drawRibbons},
    Loop{"rings",      96, false, drawRings},
    Loop{"solids",    128, true,  drawSolids},
    Loop{"starfield", 128, false, drawStarfield},
    Loop{"swirl",      64, false, drawSwirl},
    Loop{"tesseract",  96, false, drawTesseract},
    Loop{"truchet",    64, false, drawTruchet},
    Loop{"tunnel",     48, false, drawTunnel},
    Loop{"velmora",    64, false, drawVelmora},
    Loop{"waves",     128, false, drawWaves},
    Loop{"words",      96, true,  drawWords},
};

// Neighbours are made to be mixed. Light on black, to add up or to key over one another:
constexpr std::array kNeon{"grid",   "velmora", "starfield", "tunnel",
                           "solids", "lasers",  "tesseract", "rain"};
// Bright papers, to multiply with the checker or to see between the paper scraps:
constexpr std::array kPaper{"marquee", "checker", "truchet", "confetti",
                            "waves",   "cubes",   "swirl",   "kaleido"};
// Slow masses of colour, each beside something that leaves it room:
constexpr std::array kLiquid{"plasma",  "rings", "lava",     "words",
                             "ribbons", "moire", "halftone", "bars"};
constexpr std::array kPlaylists{
    Playlist{"neon", kNeon},
    Playlist{"paper", kPaper},
    Playlist{"liquid", kLiquid},
};
// clang-format on

}  // namespace

std::span<const Loop> loops() {
    return kLoops;
}
std::span<const Playlist> playlists() {
    return kPlaylists;
}

}  // namespace demo
