#pragma once
// Where a preview's picture goes on the work surface. Surfaces are RGB565, rows `pitch` bytes
// apart; the picture is 640 x 360, row after row. Nothing is written outside the surface, whatever
// size the application has.

#include <algorithm>

#include "px/output.h"

namespace preview {

// `width` and `height` of the view are the surface's own.
struct AppSize {
    int width;
    int height;
};

// Below 800 wide: black, and the picture 1:1 near the centre. Else the picture doubled.
void place(const px::OutputView& surface, AppSize app, const uint16_t* picture);

// Columns of the surface that the window shows.
constexpr int visibleWidth(int surfaceWidth, AppSize app) {
    return std::max(0, std::min(surfaceWidth, app.width));
}

// Length in pixels of the progress line: the whole `width` for the whole clip. `frames` is at least
// 1.
constexpr int progressLength(int frame, int frames, int width) {
    return frame * width / frames;
}

}  // namespace preview
