#pragma once
// 8-bit RGBA pictures of any size, row-major without gaps, straight alpha: drawing in them, and
// keying.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace maker {

struct Colour {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
    uint8_t alpha = 255;

    bool operator==(const Colour&) const = default;
};

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba;

    Picture() = default;
    // Black and opaque.
    Picture(int pictureWidth, int pictureHeight);

    uint8_t* at(int x, int y) { return rgba.data() + offset(x, y); }
    const uint8_t* at(int x, int y) const { return rgba.data() + offset(x, y); }

    // The whole of `from` replaces what is there.
    void copy(const Picture& from, int x, int y);

private:
    size_t offset(int x, int y) const {
        return (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 4;
    }
};

// Draws into pixels that the caller owns. What lies outside of them is left out.
class Canvas {
public:
    Canvas(uint8_t* rgba, int width, int height) : rgba_(rgba), width_(width), height_(height) {}
    explicit Canvas(Picture& picture)
        : Canvas(picture.rgba.data(), picture.width, picture.height) {}

    void rect(int x, int y, int width, int height, Colour colour);
    void set(int x, int y, Colour colour) { rect(x, y, 1, 1, colour); }

protected:
    uint8_t* at(int x, int y) { return rgba_ + (static_cast<ptrdiff_t>(y) * width_ + x) * 4; }

private:
    uint8_t* rgba_;
    int width_;
    int height_;
};

// Each pixel the mean of factor x factor of `from`, whose sides are multiples of it.
Picture shrunk(const Picture& from, int factor);

// `from` over a grey checkerboard, which shows what is transparent; the result is opaque.
Picture overCheckerboard(const Picture& from);

// `from` over black.
Picture overBlack(const Picture& from);

// Alpha made from colours, in place; what was transparent before stays so. Here a pixel is as
// opaque as it is bright. Colours stay.
void keyByBrightness(std::vector<uint8_t>& rgba);

// A key colour fades out softly: near it pixels are transparent, further away the key's part is
// taken out of their colour, so that no rim of it stays.
void keyByColour(const Colour& key, std::vector<uint8_t>& rgba);

// Mixes `part` of `all` of another picture into one. Colours count as much as they are opaque.
void mixInto(std::vector<uint8_t>& rgba, const std::vector<uint8_t>& other, int part, int all);

}  // namespace maker
