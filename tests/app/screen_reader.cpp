#include "app/screen_reader.h"

#include <X11/Xutil.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "app/window_colours.h"

namespace app {

namespace {

bool isRgb565(const XImage& image) {
    return image.depth == 16 && image.bits_per_pixel == 16 && image.green_mask == 0x07E0;
}
bool isRgb888(const XImage& image) {
    return image.depth == 24 && image.bits_per_pixel == 32 && image.red_mask == 0xFF0000;
}

// In this machine's byte order, the server being on the same machine.
const char* rowOf(const XImage& image, int row) {
    return image.data + static_cast<ptrdiff_t>(row) * image.bytes_per_line;
}

// The channel's part of a pixel as a number of so many bits.
unsigned channel(unsigned long pixel, unsigned long mask, unsigned bits) {
    const unsigned long most = (1u << bits) - 1;
    const unsigned long lowest = mask & (~mask + 1);
    const unsigned long range = mask / lowest;
    return static_cast<unsigned>(((pixel & mask) / lowest * most + range / 2) / range);
}

// A display whose pixels are numbers of colours.
std::vector<XColor> colourMap(Display* display) {
    std::vector<XColor> map(static_cast<size_t>(DefaultVisual(display, 0)->map_entries));
    for (size_t i = 0; i < map.size(); ++i) {
        map[i].pixel = i;
    }
    XQueryColors(display, DefaultColormap(display, 0), map.data(), static_cast<int>(map.size()));
    return map;
}

}  // namespace

std::shared_ptr<XImage> ScreenReader::capture(int x, int y, int width, int height) {
    const int screen = DefaultScreen(display_);
    const int right = std::min(x + width, DisplayWidth(display_, screen));
    const int bottom = std::min(y + height, DisplayHeight(display_, screen));
    x = std::max(x, 0);
    y = std::max(y, 0);
    width = right - x;
    height = bottom - y;
    XImage* const image =
        XGetImage(display_, DefaultRootWindow(display_), x, y, static_cast<unsigned>(width),
                  static_cast<unsigned>(height), AllPlanes, ZPixmap);
    if (image == nullptr) {
        throw std::runtime_error("the X server does not show the screen");
    }
    return {image, [](XImage* taken) { XDestroyImage(taken); }};
}

Shot ScreenReader::read(XImage& image) const {
    Shot shot = blackShot(image.width, image.height);
    if (isRgb565(image)) {
        for (int row = 0; row < shot.height; ++row) {
            memcpy(&shot.at(0, row), rowOf(image, row),
                   static_cast<size_t>(shot.width) * sizeof(uint16_t));
        }
    } else if (isRgb888(image)) {
        readExactly(image, shot);
    } else {
        readNearly(image, shot);
    }
    return shot;
}

void ScreenReader::readExactly(const XImage& image, Shot& shot) const {
    const auto width = static_cast<size_t>(shot.width);
    std::vector<uint32_t> row(width);
    for (int y = 0; y < shot.height; ++y) {
        memcpy(row.data(), rowOf(image, y), width * sizeof row[0]);
        const size_t first = coloursStored(row.data(), width, &shot.at(0, y));
        if (first < width && !shot.strange.has_value()) {
            shot.strange = {static_cast<int>(first), y, row[first] & 0xFFFFFF};
        }
    }
}

void ScreenReader::readNearly(XImage& image, Shot& shot) const {
    const std::vector<XColor> map =
        image.red_mask == 0 ? colourMap(display_) : std::vector<XColor>();
    for (int y = 0; y < shot.height; ++y) {
        for (int x = 0; x < shot.width; ++x) {
            shot.at(x, y) = nearest(image, XGetPixel(&image, x, y), map);
        }
    }
}

uint16_t ScreenReader::nearest(const XImage& image, unsigned long pixel,
                               const std::vector<XColor>& map) const {
    if (!map.empty()) {
        const XColor& colour = map[std::min<size_t>(pixel, map.size() - 1)];
        return static_cast<uint16_t>((colour.red & 0xF800) | (colour.green >> 10) << 5 |
                                     colour.blue >> 11);
    }
    return static_cast<uint16_t>(channel(pixel, image.red_mask, 5) << 11 |
                                 channel(pixel, image.green_mask, 6) << 5 |
                                 channel(pixel, image.blue_mask, 5));
}

unsigned long ScreenReader::pixelFor(uint16_t colour) const {
    return DefaultDepth(display_, DefaultScreen(display_)) == 24 ? storedColour(colour) : colour;
}

}  // namespace app
