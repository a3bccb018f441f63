#pragma once
// Pictures of 640 x 360 for clips. The same picture for the same arguments, on every machine.

#include <cstdint>
#include <vector>

#include "app/shot.h"

namespace app {

// Every red with every green in the left half, every blue with every green in the right half, bands
// of plain black, nearly black and white, and noise.
Shot richPicture(uint32_t seed);
// Plain black, the darkest colour that is not black and noise, each over a third of the pixels in
// every neighbourhood.
Shot keyPicture(uint32_t seed);
Shot flatPicture(uint16_t colour);

// Alpha levels, one a pixel, all of 0 to 15: whole tiles of one level and pixels of their own.
std::vector<uint8_t> allAlphaLevels(uint32_t seed);

// One of up to 512 flat pictures with a mark: no two of them look alike, none is another's mirror.
Shot numberedPicture(int number);

}  // namespace app
