#pragma once
// The drawing functions of the demo loops, by family: each draws one frame of its loop.
//
// All share the contract of Loop::render: `frame` counts from 0 and repeats after `frames`; every
// byte of the 640 x 360 RGBA picture is written; nothing is allocated or kept between calls.

#include <cstdint>

namespace demo {

// cells.cpp: pictures on the grid of the clip's tiles
void drawPlasma(int frame, int frames, uint8_t* rgba);
void drawDots(int frame, int frames, uint8_t* rgba);
void drawHoles(int frame, int frames, uint8_t* rgba);
void drawArcs(int frame, int frames, uint8_t* rgba);

// fields.cpp: a rule for each point
void drawTunnel(int frame, int frames, uint8_t* rgba);
void drawMoire(int frame, int frames, uint8_t* rgba);
void drawKaleido(int frame, int frames, uint8_t* rgba);
void drawChecker(int frame, int frames, uint8_t* rgba);
void drawLava(int frame, int frames, uint8_t* rgba);
void drawSwirl(int frame, int frames, uint8_t* rgba);

// solids.cpp: bodies in space
void drawSolids(int frame, int frames, uint8_t* rgba);
void drawTesseract(int frame, int frames, uint8_t* rgba);
void drawCubes(int frame, int frames, uint8_t* rgba);

// space.cpp: points and lines in space
void drawStars(int frame, int frames, uint8_t* rgba);
void drawGrid(int frame, int frames, uint8_t* rgba);

// flow.cpp: things that drift and wave
void drawWaves(int frame, int frames, uint8_t* rgba);
void drawRibbons(int frame, int frames, uint8_t* rgba);
void drawConfetti(int frame, int frames, uint8_t* rgba);

// stage.cpp: lights
void drawRings(int frame, int frames, uint8_t* rgba);
void drawLasers(int frame, int frames, uint8_t* rgba);

// help.cpp: the keys and the pad explained
void drawKeys(int frame, int frames, uint8_t* rgba);
void drawPad(int frame, int frames, uint8_t* rgba);

// card.cpp: the test card
void drawTestCard(int frame, int frames, uint8_t* rgba);

// words.cpp: letters
void drawMarquee(int frame, int frames, uint8_t* rgba);
void drawWords(int frame, int frames, uint8_t* rgba);
void drawVelmora(int frame, int frames, uint8_t* rgba);

}  // namespace demo
