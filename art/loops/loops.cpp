#include "art/loops/loops.h"

#include <array>

#include "art/loops/families.h"
#include "art/loops/motion.h"

namespace demo {

namespace {

// clang-format off
constexpr std::array kLoops{
    Loop{"arcs",       64, false, drawArcs},
    Loop{"checker",    64, false, drawChecker, Half::TOP_TURNED},
    Loop{"confetti",   64, true,  drawConfetti},
    Loop{"cubes",      64, false, drawCubes},
    Loop{"dots",       96, false, drawDots},
    Loop{"grid",       32, false, drawGrid, Half::LEFT},
    Loop{"holes",      64, true,  drawHoles},
    Loop{"kaleido",    64, false, drawKaleido, Half::BOTH},
    Loop{"keys",       64, false, drawKeys},
    Loop{"lasers",     48, false, drawLasers, Half::BOTH},
    Loop{"lava",       96, true,  drawLava, Half::LEFT},
    Loop{"marquee",    80, false, drawMarquee},
    Loop{"moire",      64, false, drawMoire, Half::BOTH},
    Loop{"pad",        54, false, drawPad},
    Loop{"plasma",     96, false, drawPlasma},
    Loop{"ribbons",    64, false, drawRibbons},
    Loop{"rings",      64, false, drawRings, Half::TOP_TURNED},
    Loop{"solids",     48, true,  drawSolids},
    Loop{"stars",      64, false, drawStars, Half::BOTH},
    Loop{"swirl",      48, false, drawSwirl, Half::TOP_TURNED},
    Loop{"tesseract",  48, false, drawTesseract},
    Loop{"test-card",  64, false, drawTestCard},
    Loop{"tunnel",     48, false, drawTunnel, Half::BOTH},
    Loop{"velmora",    64, true,  drawVelmora},
    Loop{"waves",     128, false, drawWaves},
    Loop{"words",      96, true,  drawWords},
};

// Neighbours are made to be mixed. Light on black, to add up; the name and the bodies let the next
// clip through:
constexpr std::array kNeon{"velmora", "grid", "tunnel", "solids", "lasers", "stars", "tesseract"};
// Bright papers, to multiply with the checker or to see through the holes and between the scraps:
constexpr std::array kPaper{"holes",    "kaleido", "checker", "waves",
                            "confetti", "arcs",    "swirl",   "marquee"};
// Slow masses of colour, with words and glass to lay over them:
constexpr std::array kLiquid{"lava",    "plasma", "words", "rings",
                             "ribbons", "moire",  "dots",  "cubes"};
// To be read, on stage and before:
constexpr std::array kHelp{"keys", "pad", "test-card"};
constexpr std::array kPlaylists{
    Playlist{"neon", kNeon},
    Playlist{"paper", kPaper},
    Playlist{"liquid", kLiquid},
    Playlist{"help", kHelp},
};
// clang-format on

}  // namespace

void draw(const Loop& loop, int frame, Canvas& canvas) {
    canvas.clear(loop.alpha ? kClear : kBlack);
    loop.render(canvas, {frame % loop.frames, loop.frames, timeOf(frame, loop.frames)});
    if (loop.drawn) {
        canvas.repeat(*loop.drawn);
    }
}

std::span<const Loop> loops() {
    return kLoops;
}
std::span<const Playlist> playlists() {
    return kPlaylists;
}

}  // namespace demo
