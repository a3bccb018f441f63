#pragma once
// Where the 640 x 360 picture sits in the application resolution, and rectangle tests.

#include "common/limits.h"

struct Point {
    int x;
    int y;
};

// Top left of the centred picture. Division truncates toward zero, so a window narrower than the
// picture gives a negative offset.
constexpr Point pictureOffset(int appWidth, int appHeight) {
    return {(appWidth - kFrameWidth) / 2, (appHeight - kFrameHeight) / 2};
}

// Both ends belong to the rectangle: it covers (w + 1) x (h + 1) positions.
constexpr bool insideInclusive(int px, int py, int x, int y, int w, int h) {
    return px >= x && px <= x + w && py >= y && py <= y + h;
}
