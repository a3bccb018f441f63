#pragma once
// The functions of px/fx.h that gain from several pixels at a time: same arguments, same results
// to the bit. The widest vectors of the processor are chosen at the first call.
//
// 32-bit Arm without vectors takes two pixels at a time in plain registers. A build without
// Highway, and another processor without vectors that Highway knows, has the plain functions under
// these names; all but the scrolling, which needs no vectors.

#include <cstdint>

#include "px/fx.h"

namespace px::fast {

#ifdef VELMORA_HIGHWAY
void invertFrame(uint16_t* frame);
void burnFrame(uint16_t* frame, int direction);
void snowFrame(uint16_t* frame, const uint8_t* table, int entries);
void zoomFrame(uint16_t* frame, int direction);
void gameBoyFrame(uint16_t* frame);
void mirrorFrame(uint16_t* frame, int direction);
void hueFrame(uint16_t* frame, int direction);
#else
using px::burnFrame;
using px::gameBoyFrame;
using px::hueFrame;
using px::invertFrame;
using px::mirrorFrame;
using px::snowFrame;
using px::zoomFrame;
#endif
void scrollFrame(uint16_t* frame, int direction, int offset);

}  // namespace px::fast
