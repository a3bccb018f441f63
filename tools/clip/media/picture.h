#pragma once
// An 8-bit RGBA picture of any size, row-major without gaps, straight alpha.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace maker {

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba;

    Picture() = default;
    // Black and opaque.
    Picture(int pictureWidth, int pictureHeight);

    uint8_t* at(int x, int y) { return rgba.data() + offset(x, y); }
    const uint8_t* at(int x, int y) const { return rgba.data() + offset(x, y); }

    // `rgb` is 0xRRGGBB. What lies outside of the picture is left out.
    void fill(int x, int y, int w, int h, uint32_t rgb);
    void set(int x, int y, uint32_t rgb) { fill(x, y, 1, 1, rgb); }
    // The whole of `from` replaces what is there.
    void copy(const Picture& from, int x, int y);

private:
    size_t offset(int x, int y) const {
        return (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 4;
    }
};

// Each pixel the mean of factor x factor of `from`, whose sides are multiples of it.
Picture shrunk(const Picture& from, int factor);

// `from` over a grey checkerboard, which shows what is transparent; the result is opaque.
Picture overCheckerboard(const Picture& from);

// `from` over black.
Picture overBlack(const Picture& from);

}  // namespace maker
