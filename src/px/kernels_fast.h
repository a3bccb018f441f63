#pragma once
// The functions of px/kernels.h, several pixels at a time: same arguments, same results to the
// bit. The widest vectors of the processor are chosen at the first call, so one program serves
// them all.
//
// 32-bit Arm without vectors takes two pixels at a time in plain registers. A build without
// Highway, and another processor without vectors that Highway knows, has the plain functions under
// these names.

#include <cstdint>

#include "px/kernels.h"

namespace px::fast {

#ifdef VELMORA_HIGHWAY
void blendPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count);
void addPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count);
void multiplyPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count);
void keyByAlpha(uint16_t* bottom, const uint16_t* top, const uint8_t* alpha, int count);
void keyByBlack(uint16_t* bottom, const uint16_t* top, int count);
void flashPixels(uint16_t* pixels, int count, int level);
void fadePixels(uint16_t* pixels, int count, int level);
#else
using px::addPixels;
using px::blendPixels;
using px::fadePixels;
using px::flashPixels;
using px::keyByAlpha;
using px::keyByBlack;
using px::multiplyPixels;
#endif

}  // namespace px::fast
