#include "px/fx.h"

#include <algorithm>
#include <cstring>

#include "common/limits.h"
#include "common/rgb565.h"
#include "px/fx_numbers.h"

namespace px {

namespace {

constexpr int kWhole = 0xFFFF;
constexpr int kScrollStep = 2;

int weightOf(uint16_t p) {
    return 2 * redOf(p) + greenOf(p) + 2 * blueOf(p);
}

int intensityOf(uint16_t p) {
    return redOf(p) + (greenOf(p) >> 1) + blueOf(p);
}

uint16_t* rowOf(uint16_t* frame, int y) {
    return frame + y * kFrameWidth;
}

void copyPixels(uint16_t* to, const uint16_t* from, int count) {
    memcpy(to, from, static_cast<size_t>(count) * sizeof *to);
}

uint16_t snowPixel(uint16_t p, int t) {
    const int change = t - kSnowCentre;
    return pack(std::clamp(redOf(p) + change, 0, 31), std::clamp(greenOf(p) + 2 * change, 0, 63),
                std::clamp(blueOf(p) + change, 0, 31));
}

// The middle of the frame, taken out before the frame is written over.
struct ZoomPicture {
    uint16_t pixels[kZoomWidth * kZoomHeight];

    explicit ZoomPicture(uint16_t* frame) {
        for (int y = 0; y < kZoomHeight; ++y) {
            copyPixels(pixels + y * kZoomWidth, rowOf(frame, kZoomY + y) + kZoomX, kZoomWidth);
        }
    }
    const uint16_t* row(int y) const { return pixels + y * kZoomWidth; }
};

void rotateRow(uint16_t* row, int offset) {
    std::rotate(row, row + (kFrameWidth - offset), row + kFrameWidth);
}

}  // namespace

void invertFrame(uint16_t* frame) {
    for (int i = 0; i < kFramePixels; ++i) {
        frame[i] = static_cast<uint16_t>(frame[i] ^ kWhole);
    }
}

void burnFrame(uint16_t* frame, int direction) {
    const uint16_t light = burnColour(direction);
    for (int i = 0; i < kFramePixels; ++i) {
        frame[i] = weightOf(frame[i]) < kBurnThreshold ? uint16_t{0} : light;
    }
}

int snowEntries(int direction) {
    return kSnowEntries[direction & 3];
}

void snowFrame(uint16_t* frame, const uint8_t* table, int entries) {
    int entry = 0;
    for (int i = 0; i < kFramePixels; ++i) {
        ++entry;
        if (entry == entries) {
            entry = 0;
        }
        frame[i] = snowPixel(frame[i], table[entry]);
    }
}

// Deliberate: away from direction 0 the odd columns and rows keep the picture that was there, a
// screen door of both. [quirk_zoom_away_from_up_is_a_screen_door]
void zoomFrame(uint16_t* frame, int direction) {
    const ZoomPicture picture(frame);
    for (int y = 0; y < kZoomHeight; ++y) {
        uint16_t* out = rowOf(frame, 2 * y);
        const uint16_t* source = picture.row(y);
        if (direction != 0) {
            for (int x = 0; x < kZoomWidth; ++x) {
                out[2 * x] = source[x];
            }
            continue;
        }
        for (int x = 0; x < kZoomWidth; ++x) {
            out[2 * x] = source[x];
            out[2 * x + 1] = source[x];
        }
        copyPixels(out + kFrameWidth, out, kFrameWidth);
    }
}

void gameBoyFrame(uint16_t* frame) {
    for (int i = 0; i < kFramePixels; ++i) {
        frame[i] = gameBoyShade(weightOf(frame[i]));
    }
}

void mirrorFrame(uint16_t* frame, int direction) {
    constexpr int kHalfHeight = kFrameHeight / 2;
    for (int y = 0; y < kHalfHeight && direction % 2 == 0; ++y) {
        uint16_t* upper = rowOf(frame, y);
        uint16_t* lower = rowOf(frame, kFrameHeight - 1 - y);
        copyPixels(direction == 0 ? upper : lower, direction == 0 ? lower : upper, kFrameWidth);
    }
    for (int y = 0; y < kFrameHeight && direction % 2 != 0; ++y) {
        uint16_t* row = rowOf(frame, y);
        uint16_t* middle = row + kFrameWidth / 2;
        if (direction == 1) {
            std::reverse_copy(row, middle, middle);
        } else {
            std::reverse_copy(middle, row + kFrameWidth, row);
        }
    }
}

// A tint depends on the intensity alone: 94 values say all about it.
void hueFrame(uint16_t* frame, int direction) {
    const auto tintOf = tints(direction);
    for (int i = 0; i < kFramePixels; ++i) {
        frame[i] = tintOf[static_cast<size_t>(intensityOf(frame[i]))];
    }
}

int nextScrollOffset(int offset, int direction, bool hold) {
    uint16_t o = static_cast<uint16_t>(offset);
    const bool forward = direction == 1 || direction == 2;
    if (!hold) {
        o = static_cast<uint16_t>(forward ? o + kScrollStep : o - kScrollStep);
    }
    // Deliberate: across, 640 itself wraps, so 638 is followed by 2; downwards 360 is reached, a
    // full turn. [quirk_scroll_wraps_at_640_across_and_past_360_down]
    const bool across = direction == 1 || direction == 3;
    if (across ? o >= kFrameWidth : o > kFrameHeight) {
        o = kScrollStep;
    }
    if (o == 0) {
        o = across ? kFrameWidth : kFrameHeight;
    }
    return o;
}

void scrollFrame(uint16_t* frame, int direction, int offset) {
    if (direction == 1 || direction == 3) {
        for (int y = 0; y < kFrameHeight; ++y) {
            rotateRow(rowOf(frame, y), offset);
        }
    } else {
        std::rotate(frame, rowOf(frame, kFrameHeight - offset), frame + kFramePixels);
    }
}

}  // namespace px
