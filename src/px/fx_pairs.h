#pragma once
// The functions of px/fx.h on pairs of pixels (pairs.h), where what the vectors do would take
// more instructions: same arguments, same results to the bit. On 32-bit Arm alone; px/fx_fast.h
// chooses them.

#include <cstdint>

namespace px::pairs {

void invertFrame(uint16_t* frame);
void burnFrame(uint16_t* frame, int direction);
void snowFrame(uint16_t* frame, const uint8_t* table, int entries);
void gameBoyFrame(uint16_t* frame);
void hueFrame(uint16_t* frame, int direction);

}  // namespace px::pairs
