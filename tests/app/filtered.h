#pragma once
// What a filter makes of a picture, computed straight from the definitions, pixel by pixel.
// Pictures are Shots of 640 x 360; directions are 0 to 3. L = 2 r + g + 2 b, S = r + g / 2 + b.

#include "app/shot.h"

namespace app {

Shot inverted(const Shot& picture);
Shot burned(const Shot& picture, int direction);
Shot zoomed(const Shot& picture, int direction);
Shot gameBoyed(const Shot& picture);
Shot mirrored(const Shot& picture, int direction);
Shot hued(const Shot& picture, int direction);
// Rotated right (directions 1 and 3) or down (0 and 2).
Shot scrolled(const Shot& picture, int direction, int offset);
// The offset by which `seen` is `picture` scrolled; -1 when it is not.
int scrollOffsetOf(const Shot& picture, const Shot& seen, int direction);
// Every 8 x 8 tile flat in the colour whose value is the tile's number in raster order.
Shot flatByNumber();

}  // namespace app
