#include "layout/preview_place.h"

#include <algorithm>

#include "common/limits.h"

namespace preview {

namespace {

// Half of the width that the place was made for.
constexpr int kHalfCompositeWidth = 360;

// A row of the picture from pixel `number` of the application's area on, counted through its rows.
void placeRowAt(const px::OutputView& surface, int appWidth, int number, const uint16_t* source) {
    int done = number < 0 ? -number : 0;
    while (done < kFrameWidth) {
        const int row = (number + done) / appWidth;
        const int column = (number + done) % appWidth;
        const int count = std::min(kFrameWidth - done, appWidth - column);
        const int visible = std::min(count, surface.width - column);
        if (row < surface.height && visible > 0) {
            std::copy_n(source + done, visible, px::outputRow(surface, row) + column);
        }
        done += count;
    }
}

// Deliberate: the rows above the picture are counted as half of 720 pixels wide whatever the width
// is, so on a composite display of another width the picture stands off the centre and may wrap.
// [quirk_preview_is_centred_at_720_only]
void placeComposite(const px::OutputView& surface, AppSize app, const uint16_t* picture) {
    const int start =
        (app.width - kFrameWidth) / 2 + kHalfCompositeWidth * (app.height - kFrameHeight);
    for (int y = 0; y < kFrameHeight; ++y) {
        placeRowAt(surface, app.width, start + y * app.width, picture + y * kFrameWidth);
    }
}

}  // namespace

void place(const px::OutputView& surface, AppSize app, const uint16_t* picture) {
    if (app.width < 1 || app.height < 1) {
        return;
    }
    px::OutputView covered = surface;
    covered.composite = app.width < kCompositeBelow;
    if (covered.composite) {
        px::beginPicture(covered);
        placeComposite(surface, app, picture);
        return;
    }
    covered.width = std::min(surface.width, app.width);
    covered.height = std::min(surface.height, app.height);
    px::placePicture(covered, picture);
}

}  // namespace preview
