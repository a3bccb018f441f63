#pragma once
// Alpha made from colours: brightness, or the distance from a key colour.
//
// Works in place on 640 x 360 RGBA pictures with straight alpha; what was transparent before stays
// so. A key colour fades out softly: near it pixels are transparent, further away the key's part is
// taken out of their colour, so that no rim of it stays.

#include <cstdint>
#include <vector>

#include "tools/clip/media/picture.h"

namespace maker {

// A pixel is as opaque as it is bright. Colours stay.
void keyByBrightness(std::vector<uint8_t>& rgba);

void keyByColour(const Colour& key, std::vector<uint8_t>& rgba);

}  // namespace maker
