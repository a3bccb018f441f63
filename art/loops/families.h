#pragma once
// The drawing functions of the demo loops, by family: each draws one frame of its loop.

#include "art/loops/loops.h"

namespace demo {

Render drawPlasma, drawDots, drawHoles, drawArcs;                             // cells.cpp
Render drawTunnel, drawMoire, drawKaleido, drawChecker, drawLava, drawSwirl;  // fields.cpp
Render drawSolids, drawTesseract, drawCubes;                                  // solids.cpp
Render drawStars, drawGrid, drawRings, drawLasers;                            // lights.cpp
Render drawWaves, drawRibbons, drawConfetti;                                  // flow.cpp
Render drawTestCard, drawKeys, drawPad;                                       // pages.cpp
Render drawMarquee, drawWords, drawVelmora;                                   // words.cpp

}  // namespace demo
