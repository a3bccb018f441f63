#pragma once
// What the screen showed at one moment: rows of RGB565 without gaps. Screens of 24 bits hold the
// same colours, widened; a pixel of them that is none of those makes the shot unlike any picture.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace app {

struct StrangePixel {
    int x;
    int y;
    uint32_t value;  // as the screen has it
    bool operator==(const StrangePixel& other) const = default;
};

struct Shot {
    int width = 0;
    int height = 0;
    std::vector<uint16_t> pixels;
    std::optional<StrangePixel> strange = std::nullopt;  // the first; it is black in the pixels

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

// The strange pixel in words.
std::string describe(const StrangePixel& pixel);

// "same", or how many pixels differ and the first of them, in words.
std::string difference(const Shot& seen, const Shot& wanted);

// Writes the shot as a PPM file; false when it could not.
bool writePpm(const Shot& shot, const std::string& path);

}  // namespace app
