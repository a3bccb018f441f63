#include "app/pictures.h"

namespace app {

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 360;
constexpr int kTile = 8;

// A small random generator (xorshift), seeded with anything but 0.
class Noise {
public:
    explicit Noise(uint32_t seed) : state_(seed) {}
    uint32_t next() {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 17;
        state_ ^= state_ << 5;
        return state_;
    }
    uint16_t pixel() { return static_cast<uint16_t>(next() >> 8); }

private:
    uint32_t state_;
};

uint16_t pack(int r, int g, int b) {
    return static_cast<uint16_t>(r * 2048 + g * 32 + b);
}

}  // namespace

Shot richPicture(uint32_t seed) {
    Noise noise(seed);
    Shot picture = blackShot(kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            if (y < 24) {
                constexpr uint16_t kBands[] = {0x0000, 0x0001, 0xFFFF};
                picture.at(x, y) = kBands[y / kTile];
            } else if (y < 152) {
                // 128 rows: two for each green; ten columns for each red or blue.
                const int green = (y - 24) / 2;
                const int across = x % 320 / 10;
                picture.at(x, y) = x < 320 ? pack(across, green, static_cast<int>(seed % 32))
                                           : pack(static_cast<int>(seed % 32), green, across);
            } else {
                picture.at(x, y) = noise.pixel();
            }
        }
    }
    return picture;
}

Shot keyPicture(uint32_t seed) {
    Noise noise(seed);
    Shot picture = blackShot(kWidth, kHeight);
    for (uint16_t& pixel : picture.pixels) {
        const uint32_t kind = noise.next() / 256 % 3;
        pixel = kind == 0 ? uint16_t{0} : kind == 1 ? uint16_t{1} : noise.pixel();
    }
    return picture;
}

Shot flatPicture(uint16_t colour) {
    Shot picture = blackShot(kWidth, kHeight);
    picture.pixels.assign(picture.pixels.size(), colour);
    return picture;
}

std::vector<uint8_t> allAlphaLevels(uint32_t seed) {
    Noise noise(seed);
    std::vector<uint8_t> levels(static_cast<size_t>(kWidth) * kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const int tile = x / kTile + y / kTile;
            const auto each = static_cast<uint8_t>(noise.next() >> 28);
            levels[static_cast<size_t>(y * kWidth + x)] =
                y < kHeight / 2 ? static_cast<uint8_t>(tile % 16) : each;
        }
    }
    return levels;
}

Shot numberedPicture(int number) {
    Shot picture = flatPicture(pack(8 + number % 16, 20, 8 + number / 16 % 16));
    for (int y = 0; y < 2 * kTile; ++y) {
        for (int x = 0; x < (number + 1) % 79 * kTile; ++x) {
            picture.at(x, y) = pack(31, 8 + number % 32, 0);
        }
    }
    return picture;
}

}  // namespace app
