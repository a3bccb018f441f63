#pragma once
// The mixer's pixel arithmetic on runs of RGB565 pixels: plain functions of pointers and counts.
//
// `bottom` and `top` are pixels of the two layers (A and B below), `count` pixels long; `out` may
// equal `bottom`. "/" truncates toward zero. Results are written through the first argument.

#include <cstdint>

namespace px {

// Half of each: every field of A and B loses its lowest bit, is halved and added.
void blendPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count);

// Sum of each field, held at its maximum.
void addPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count);

// Product of each field over its maximum: rA rB / 31, gA gB / 63, bA bB / 31.
void multiplyPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count);

// Top over bottom by alpha a (0 to 15 a pixel): f = fB a / 15 + fA (15 - a) / 15, each quotient
// truncated; a = 0 leaves the pixel alone.
void keyByAlpha(uint16_t* bottom, const uint16_t* top, const uint8_t* alpha, int count);

// Top over bottom; only pure black (0x0000) of the top is transparent.
void keyByBlack(uint16_t* bottom, const uint16_t* top, int count);

// White flash, level k = 1 to 15: r = (31 k + (15 - k) r) / 15, b likewise,
// g = (126 k + (31 - 2 k) g) / 31.
void flashPixels(uint16_t* pixels, int count, int level);

// Fade to black, level 1 to 15, with k = 15 - level: r = k r / 15, b likewise, g = 2 k g / 30.
void fadePixels(uint16_t* pixels, int count, int level);

}  // namespace px
