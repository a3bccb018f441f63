#pragma once
// Takes a part of the X server's screen, and turns it into a Shot. Screens of 16 bits hold RGB565,
// those of 24 bits one of its colours as window_colours.h has them: what is no such colour is
// recorded in the Shot. On screens of other depths each pixel becomes the nearest colour.

#include <X11/Xlib.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "app/shot.h"

namespace app {

class ScreenReader {
public:
    explicit ScreenReader(Display* display) : display_(display) {}

    // The part of the rectangle that lies on the screen, as the server has it: quickly, at one
    // moment. Throws std::runtime_error when the server does not show it.
    std::shared_ptr<XImage> capture(int x, int y, int width, int height);
    // The same as a Shot, which takes its time.
    Shot read(XImage& image) const;
    // What to paint with, for that colour.
    unsigned long pixelFor(uint16_t colour) const;

private:
    void readExactly(const XImage& image, Shot& shot) const;
    void readNearly(XImage& image, Shot& shot) const;
    uint16_t nearest(const XImage& image, unsigned long pixel,
                     const std::vector<XColor>& map) const;

    Display* display_;
};

}  // namespace app
