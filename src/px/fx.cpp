// The plain effects. Two measures of a pixel: weight L = 2 r + g + 2 b (0 to 187), intensity
// S = r + g / 2 + b (0 to 93).
#include "px/fx.h"

#include <algorithm>
#include <cstring>

#include "common/limits.h"
#include "common/rgb565.h"
#include "px/fx_numbers.h"
#include "px/plain.h"

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

// Where the two overlap.
void movePixels(uint16_t* to, const uint16_t* from, int count) {
    memmove(to, from, static_cast<size_t>(count) * sizeof *to);
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

// The last `tail` of `count` pixels come to the front. `room` holds half of them.
void rotatePixels(uint16_t* pixels, int count, int tail, uint16_t* room) {
    const int head = count - tail;
    if (head < tail) {
        copyPixels(room, pixels, head);
        movePixels(pixels, pixels + head, tail);
        copyPixels(pixels + tail, room, head);
    } else {
        copyPixels(room, pixels + head, tail);
        movePixels(pixels + tail, pixels, head);
        copyPixels(pixels, room, tail);
    }
}

// Photographic negative.
void invertFrame(uint16_t* frame, const Setting&) {
    for (int i = 0; i < kFramePixels; ++i) {
        frame[i] = static_cast<uint16_t>(frame[i] ^ kWhole);
    }
}

// Two tones: black where L is below 90, else the direction's colour: light grey, red, green,
// yellow; black for any other direction.
void burnFrame(uint16_t* frame, const Setting& setting) {
    const uint16_t light = burnColour(setting.direction);
    for (int i = 0; i < kFramePixels; ++i) {
        frame[i] = weightOf(frame[i]) < kBurnThreshold ? uint16_t{0} : light;
    }
}

// Brightness noise. Pixel i takes entry (i + 1) mod n of the noise, t = 0 to 19, and gains t - 10
// in red and blue and 2 t - 20 in green, each held in its range.
void snowFrame(uint16_t* frame, const Setting& setting) {
    const int entries = snowEntries(setting.direction);
    int entry = 0;
    for (int i = 0; i < kFramePixels; ++i) {
        ++entry;
        if (entry == entries) {
            entry = 0;
        }
        frame[i] = snowPixel(frame[i], setting.noise[entry]);
    }
}

// The centre, 320 x 180 pixels from column 160 of row 90 on, enlarged twice.
//
// Deliberate: away from direction 0 the odd columns and rows keep the picture that was there, a
// screen door of both. [quirk_zoom_away_from_up_is_a_screen_door]
void zoomFrame(uint16_t* frame, const Setting& setting) {
    const ZoomPicture picture(frame);
    for (int y = 0; y < kZoomHeight; ++y) {
        uint16_t* out = rowOf(frame, 2 * y);
        const uint16_t* source = picture.row(y);
        if (setting.direction != 0) {
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

// Four shades of green by L: up to 45, 90, 135 and above.
void gameBoyFrame(uint16_t* frame, const Setting&) {
    for (int i = 0; i < kFramePixels; ++i) {
        frame[i] = gameBoyShade(weightOf(frame[i]));
    }
}

// One half mirrored over the other: 0 keeps the bottom, 1 the left, 2 the top, 3 the right.
void mirrorFrame(uint16_t* frame, const Setting& setting) {
    const int direction = setting.direction;
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

// Monochrome by S: 0 grey, 1 red, 2 green, 3 yellow. 94 tints say all about it.
void hueFrame(uint16_t* frame, const Setting& setting) {
    const auto tintOf = tints(setting.direction);
    for (int i = 0; i < kFramePixels; ++i) {
        frame[i] = tintOf[static_cast<size_t>(intensityOf(frame[i]))];
    }
}

bool isAcross(int direction) {
    return direction == 1 || direction == 3;
}

// Rotates the frame right by `offset` pixels (directions 1, 3; at most 640) or down by `offset`
// rows (0, 2; at most 360).
void scrollFrame(uint16_t* frame, const Setting& setting) {
    uint16_t room[kFramePixels / 2];
    if (!isAcross(setting.direction)) {
        rotatePixels(frame, kFramePixels, setting.offset * kFrameWidth, room);
        return;
    }
    for (int y = 0; y < kFrameHeight; ++y) {
        rotatePixels(rowOf(frame, y), kFrameWidth, setting.offset, room);
    }
}

}  // namespace

int snowEntries(int direction) {
    return kSnowEntries[direction & 3];
}

int nextScrollOffset(int offset, int direction, bool hold) {
    uint16_t o = static_cast<uint16_t>(offset);
    const bool forward = direction == 1 || direction == 2;
    if (!hold) {
        o = static_cast<uint16_t>(forward ? o + kScrollStep : o - kScrollStep);
    }
    // Deliberate: across, 640 itself wraps, so 638 is followed by 2; downwards 360 is reached, a
    // full turn. [quirk_scroll_wraps_at_640_across_and_past_360_down]
    const bool across = isAcross(direction);
    if (across ? o >= kFrameWidth : o > kFrameHeight) {
        o = kScrollStep;
    }
    if (o == 0) {
        o = across ? kFrameWidth : kFrameHeight;
    }
    return o;
}

void addPlainEffects(Operations& table) {
    table.effects[FILTER_INVERT] = invertFrame;
    table.effects[FILTER_BURNED] = burnFrame;
    table.effects[FILTER_SNOW] = snowFrame;
    table.effects[FILTER_ZOOM] = zoomFrame;
    table.effects[FILTER_GAME_BOY] = gameBoyFrame;
    table.effects[FILTER_MIRROR] = mirrorFrame;
    table.effects[FILTER_HUE] = hueFrame;
    table.effects[FILTER_SCROLL] = scrollFrame;
}

}  // namespace px
