#include "px/output.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "common/limits.h"

namespace px {

namespace {

constexpr int kDoubledWidth = 2 * kFrameWidth;
constexpr int kDoubledHeight = 2 * kFrameHeight;

void copyPixels(uint16_t* to, const uint16_t* from, int count) {
    memcpy(to, from, static_cast<size_t>(count) * sizeof *to);
}

void blackenRow(const OutputView& view, int row, int from, int to) {
    std::fill(outputRow(view, row) + from, outputRow(view, row) + to, uint16_t{0});
}

// Composite displays of at least the picture's size. The picture starts at pixel
// (H - 360) W / 2 + (W - 640) / 2, counted through the rows.
// Deliberate: with an odd number of spare rows that start lies half a row further, so the picture
// is shifted sideways by half the width and wraps. [quirk_odd_composite_height_shifts_picture]
void placeRowCentred(const OutputView& view, const uint16_t* source, int y) {
    const int start = (view.height - kFrameHeight) * view.width / 2 +
                      (view.width - kFrameWidth) / 2 + y * view.width;
    const int row = start / view.width;
    const int column = start % view.width;
    const int fits = std::min(kFrameWidth, view.width - column);
    copyPixels(outputRow(view, row) + column, source, fits);
    if (fits < kFrameWidth) {
        copyPixels(outputRow(view, row + 1), source + fits, kFrameWidth - fits);
    }
}

// Composite displays smaller than the picture in either direction: its centre, cropped.
void placeRowCropped(const OutputView& view, const uint16_t* source, int y) {
    const int row = y + (view.height - kFrameHeight) / 2;
    if (row < 0 || row >= view.height) {
        return;
    }
    const int spare = view.width - kFrameWidth;
    const int count = std::min(view.width, kFrameWidth);
    copyPixels(outputRow(view, row) + std::max(spare / 2, 0), source + std::max(-spare / 2, 0),
               count);
}

struct Doubled {
    int column;  // first output column
    int row;     // output row of source row 0; negative when the top is cropped
};

Doubled doubledOrigin(const OutputView& view) {
    const bool wide = view.width > kDoubledWidth;
    const bool low = view.height < kDoubledHeight;
    return {wide ? (view.width - kDoubledWidth) / 2 : 0,
            wide || low ? (view.height - kDoubledHeight) / 2 : 0};
}

void doublePixels(uint16_t* out, const uint16_t* source, int outCount) {
    for (int i = 0; i < outCount / 2; ++i) {
        out[2 * i] = source[i];
        out[2 * i + 1] = source[i];
    }
    if (outCount % 2 != 0) {
        out[outCount - 1] = source[outCount / 2];
    }
}

// Each source pixel becomes 2 x 2; a narrower surface shows the centre columns.
void placeRowDoubled(const OutputView& view, const uint16_t* source, int y) {
    const Doubled origin = doubledOrigin(view);
    const int outCount = std::min(view.width, kDoubledWidth);
    const uint16_t* first = source + (kFrameWidth - outCount / 2) / 2;
    uint16_t* written = nullptr;
    for (int row = origin.row + 2 * y; row < origin.row + 2 * y + 2; ++row) {
        if (row < 0 || row >= view.height) {
            continue;
        }
        uint16_t* out = outputRow(view, row) + origin.column;
        if (written == nullptr) {
            doublePixels(out, first, outCount);
            written = out;
        } else {
            copyPixels(out, written, outCount);
        }
    }
}

}  // namespace

uint16_t* outputRow(const OutputView& view, int row) {
    return view.pixels + static_cast<size_t>(row) * (view.pitch / sizeof(uint16_t));
}

void blackenOutside(const OutputView& view) {
    if (view.composite) {
        return;
    }
    const Doubled origin = doubledOrigin(view);
    const int right = std::min(origin.column + kDoubledWidth, view.width);
    for (int row = 0; row < view.height; ++row) {
        if (row < origin.row || row >= origin.row + kDoubledHeight) {
            blackenRow(view, row, 0, view.width);
        } else {
            blackenRow(view, row, 0, origin.column);
            blackenRow(view, row, right, view.width);
        }
    }
}

void beginPicture(const OutputView& view) {
    if (view.composite) {
        for (int row = 0; row < view.height; ++row) {
            blackenRow(view, row, 0, view.width);
        }
    } else if (view.width > kDoubledWidth) {
        blackenOutside(view);
    }
}

void placeRow(const OutputView& view, const uint16_t* source, int y) {
    if (!view.composite) {
        placeRowDoubled(view, source, y);
    } else if (view.width >= kFrameWidth && view.height >= kFrameHeight) {
        placeRowCentred(view, source, y);
    } else {
        placeRowCropped(view, source, y);
    }
}

void placePicture(const OutputView& view, const uint16_t* frame) {
    beginPicture(view);
    for (int y = 0; y < kFrameHeight; ++y) {
        placeRow(view, frame + y * kFrameWidth, y);
    }
}

void fillRowStart(const OutputView& view, int row, int length, uint16_t value) {
    if (row < view.height && length > 0) {
        std::fill_n(outputRow(view, row), std::min(length, view.width), value);
    }
}

}  // namespace px
