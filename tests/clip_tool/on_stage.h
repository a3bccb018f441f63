#pragma once
// A clip on stage: the program's own clip object draws the frames that export writes, forwards,
// round the loop's end and wherever the mouse scrubs.

#include <cstdint>
#include <vector>

// Fails the running test where it does not.
void expectOnStage(const std::vector<uint8_t>& bytes);
