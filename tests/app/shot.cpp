#include "app/shot.h"

#include <cstdio>

namespace app {

Shot blackShot(int width, int height) {
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    return {width, height, std::vector<uint16_t>(count, 0), std::nullopt};
}

std::string describe(const StrangePixel& pixel) {
    char text[80];
    snprintf(text, sizeof text, "0x%06X at (%d, %d) is no colour of the window",
             static_cast<unsigned>(pixel.value), pixel.x, pixel.y);
    return text;
}

std::string difference(const Shot& seen, const Shot& wanted) {
    char text[160];
    if (seen.width != wanted.width || seen.height != wanted.height) {
        snprintf(text, sizeof text, "%d x %d pixels instead of %d x %d", seen.width, seen.height,
                 wanted.width, wanted.height);
        return text;
    }
    if (seen.strange.has_value()) {
        return describe(*seen.strange);
    }
    int differing = 0;
    std::string first = "same";
    for (int y = 0; y < seen.height; ++y) {
        for (int x = 0; x < seen.width; ++x) {
            if (seen.at(x, y) == wanted.at(x, y)) {
                continue;
            }
            if (differing == 0) {
                snprintf(text, sizeof text, "the first at (%d, %d): 0x%04X instead of 0x%04X", x, y,
                         static_cast<unsigned>(seen.at(x, y)),
                         static_cast<unsigned>(wanted.at(x, y)));
                first = text;
            }
            ++differing;
        }
    }
    return differing == 0 ? first : std::to_string(differing) + " pixels differ, " + first;
}

bool writePpm(const Shot& shot, const std::string& path) {
    FILE* file = fopen(path.c_str(), "wb");
    if (file == nullptr) {
        return false;
    }
    fprintf(file, "P6\n%d %d\n255\n", shot.width, shot.height);
    for (const uint16_t pixel : shot.pixels) {
        fputc((pixel >> 11) * 255 / 31, file);
        fputc(((pixel >> 5) & 63) * 255 / 63, file);
        fputc((pixel & 31) * 255 / 31, file);
    }
    return fclose(file) == 0;
}

}  // namespace app
