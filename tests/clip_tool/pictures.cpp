#include "clip_tool/pictures.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "tools/clip/reports/clip_frames.h"

namespace pictures {

namespace {

constexpr int kTilesAcross = 80;

uint16_t colour(Random& random, int palette) {
    // Either one of a few colours that come back, or any colour.
    return static_cast<uint16_t>(palette > 0 ? random.below(palette) * 4099 + 7
                                             : random.below(65536));
}

// Runs of up to `longest` pixels along rows or columns.
void fillRuns(Random& random, maker::Tile& tile, int longest, int palette) {
    const bool columns = random.below(2) == 1;
    int left = 0;
    uint16_t value = 0;
    for (int i = 0; i < 64; ++i, --left) {
        if (left == 0) {
            left = 1 + random.below(longest);
            value = colour(random, palette);
        }
        const int at = columns ? i % 8 * 8 + i / 8 : i;
        tile.colours[static_cast<size_t>(at)] = value;
    }
}

void fillAlpha(Random& random, maker::Tile& tile) {
    const int kind = random.below(5);
    const uint8_t level = static_cast<uint8_t>(random.below(16));
    tile.alpha.fill(kind == 0 ? 15 : level);
    for (size_t i = 0; i < 64 && kind >= 2; ++i) {
        if (kind == 2) {
            tile.alpha[i] = static_cast<uint8_t>(random.below(16));
        } else if (kind == 3) {
            tile.alpha[i] = static_cast<uint8_t>(i / 8 < level % 8U ? 15 : 0);
        } else {
            tile.alpha[i] = static_cast<uint8_t>(i / 20 * 5);
        }
    }
    if (random.below(8) == 0) {
        tile.alpha.fill(0);
    }
    for (size_t i = 0; i < 64; ++i) {
        tile.colours[i] = tile.alpha[i] == 0 ? uint16_t{0} : tile.colours[i];
    }
}

}  // namespace

int Random::below(int limit) {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return static_cast<int>((state_ >> 8) % static_cast<uint32_t>(limit));
}

maker::Frame flat(int height, uint16_t value, bool alpha) {
    maker::Frame frame;
    frame.height = height;
    frame.pixels.assign(640 * static_cast<size_t>(height), value);
    if (alpha) {
        frame.alpha.assign(frame.pixels.size(), 15);
    }
    return frame;
}

void put(maker::Frame& frame, int tile, const maker::Tile& content) {
    for (int i = 0; i < 64; ++i) {
        const int x = tile % kTilesAcross * 8 + i % 8;
        const int y = tile / kTilesAcross * 8 + i / 8;
        const size_t at = static_cast<size_t>(y * 640 + x);
        frame.pixels[at] = content.colours[static_cast<size_t>(i)];
        if (!frame.alpha.empty()) {
            frame.alpha[at] = content.alpha[static_cast<size_t>(i)];
        }
    }
}

maker::Tile tile(Random& random, bool alpha) {
    maker::Tile tile{};
    tile.alpha.fill(15);
    const int palette = random.below(3) == 0 ? 0 : 3 + random.below(100);
    constexpr std::array<int, 9> kLongest{1, 1, 2, 4, 9, 20, 40, 64, 64};
    fillRuns(random, tile, kLongest[static_cast<size_t>(random.below(9))], palette);
    if (random.below(6) == 0) {
        const uint16_t a = colour(random, palette);
        const uint16_t b = colour(random, palette);
        const size_t split = static_cast<size_t>(random.below(65));
        for (size_t i = 0; i < 64; ++i) {
            tile.colours[i] = i < split ? a : b;
        }
    }
    if (alpha) {
        fillAlpha(random, tile);
    }
    return tile;
}

maker::Tile turned(const maker::Tile& from, int way) {
    maker::Tile to = from;
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) {
            int toX = (way & 1) != 0 ? 7 - x : x;
            int toY = (way & 2) != 0 ? 7 - y : y;
            if ((way & 4) != 0) {
                std::swap(toX, toY);
            }
            to.colours[static_cast<size_t>(toY * 8 + toX)] =
                from.colours[static_cast<size_t>(y * 8 + x)];
        }
    }
    return to;
}

std::vector<maker::Frame> film(uint32_t seed, int height, int frames, bool alpha) {
    const char* other = std::getenv("VELMORA_SEED");
    Random random(seed + (other != nullptr ? static_cast<uint32_t>(std::atoi(other)) : 0));
    std::vector<maker::Frame> result{flat(height, 0x1234, alpha)};
    std::vector<maker::Tile> seen{tile(random, alpha)};
    const int tiles = height / 8 * kTilesAcross;
    for (int f = 0; f < frames; ++f) {
        maker::Frame frame = result.back();
        for (int t = 0; t < tiles; ++t) {
            if (f > 0 && random.below(3) != 0) {
                continue;
            }
            const maker::Tile& old =
                seen[static_cast<size_t>(random.below(static_cast<int>(seen.size())))];
            // A turned tile keeps its alpha, so its colours under alpha 0 may show: only opaque
            // tiles are turned.
            const bool opaque = std::count(old.alpha.begin(), old.alpha.end(), 15) == 64;
            const maker::Tile now = random.below(2) == 0 ? tile(random, alpha)
                                    : opaque             ? turned(old, random.below(8))
                                                         : old;
            put(frame, t, now);
            seen.push_back(now);
        }
        result.push_back(frame);
    }
    result.erase(result.begin());
    return result;
}

std::vector<uint8_t> encode(const std::vector<maker::Frame>& frames, int quality,
                            maker::ClipStats* stats) {
    maker::ClipEncoder encoder(
        {.height = frames[0].height, .alpha = !frames[0].alpha.empty(), .quality = quality});
    std::vector<uint8_t> rgba;
    for (const maker::Frame& frame : frames) {
        maker::toRgba(frame, rgba);
        encoder.add(rgba.data());
    }
    std::vector<uint8_t> bytes = encoder.finish();
    if (stats != nullptr) {
        *stats = encoder.stats();
    }
    return bytes;
}

reference::Picture expected(const maker::Frame& frame) {
    reference::Picture picture{frame.pixels, frame.alpha};
    if (picture.alpha.empty()) {
        picture.alpha.assign(picture.pixels.size(), 15);
    }
    return picture;
}

}  // namespace pictures
