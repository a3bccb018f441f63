#pragma once
// What the screen showed at one moment: rows of RGB565 without gaps. Screens of 24 bits come as the
// top bits of each channel.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace app {

struct Shot {
    int width = 0;
    int height = 0;
    std::vector<uint16_t> pixels;

    // Inside the shot only.
    uint16_t at(int x, int y) const {
        return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
    }
    uint16_t& at(int x, int y) {
        return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
    }
    bool operator==(const Shot& other) const = default;
};

Shot blackShot(int width, int height);

// "same", or how many pixels differ and the first of them, in words.
std::string difference(const Shot& seen, const Shot& wanted);

// Writes the shot as a PPM file; false when it could not.
bool writePpm(const Shot& shot, const std::string& path);

}  // namespace app
