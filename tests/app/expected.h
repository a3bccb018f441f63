#pragma once
// What the program has to show, computed straight from the definitions, pixel by pixel. Pictures
// are Shots of 640 x 360.

#include "app/shot.h"
#include "app/xserver.h"

namespace app {

struct Size {
    int width;
    int height;
};

// The program's window: 1280 x 720, or the whole display when that is narrower than 800 pixels.
Size appSize(Screen screen);

// The picture in the window: each pixel twice in both directions at 1280 x 720, else as it is,
// centred on black.
Shot placed(const Shot& picture, Screen screen = {});

Shot blended(const Shot& bottom, const Shot& top);     // half of both
Shot added(const Shot& bottom, const Shot& top);       // saturating sum
Shot multiplied(const Shot& bottom, const Shot& top);  // product
Shot keyed(const Shot& bottom, const Shot& top);       // black of the top layer is transparent
// By the top layer's alpha: a level from 0 to 15 for each pixel.
Shot keyedByAlpha(const Shot& bottom, const Shot& top, const std::vector<uint8_t>& alpha);
Shot halves(const Shot& bottom, const Shot& top);  // left half of the top, right half of the bottom

Shot faded(const Shot& picture, int level);    // 0 the picture to 15 black
Shot flashed(const Shot& picture, int level);  // 1 to 15 nearly white

}  // namespace app
