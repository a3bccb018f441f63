#pragma once
// Frames for the encoder's tests: random tiles of every structure, from a seed, and the comparison
// with what the reference decoder shows.

#include <cstdint>
#include <vector>

#include "clip_tool/reference.h"
#include "tools/clip/encoder/encoder.h"
#include "tools/clip/encoder/frame.h"

namespace pictures {

class Random {
public:
    explicit Random(uint32_t seed) : state_(seed * 2654435761u + 1) {}
    // 0 to limit - 1
    int below(int limit);

private:
    uint32_t state_;
};

maker::Frame flat(int height, uint16_t colour, bool alpha = false);

// Draws a tile of 8 x 8 at a tile position.
void put(maker::Frame& frame, int tile, const maker::Tile& content);

// A tile of random structure: noise, few colours, runs by rows or columns, two colours, flat; with
// `alpha` also uniform, run-like, noisy and empty alpha. Colours under alpha 0 are 0, as the
// quantiser leaves them.
maker::Tile tile(Random& random, bool alpha);

// A tile seen along each of the eight mirror images and turns, 0 to 7. Alpha stays as it is.
maker::Tile turned(const maker::Tile& tile, int way);

// Frames of random tiles, from the seed plus the environment's VELMORA_SEED; about a third of the
// tiles change from frame to frame, and many tiles are mirror images of others.
std::vector<maker::Frame> film(uint32_t seed, int height, int frames, bool alpha);

std::vector<uint8_t> encode(const std::vector<maker::Frame>& frames, int quality = 100,
                            maker::ClipStats* stats = nullptr);

reference::Picture expected(const maker::Frame& frame);

}  // namespace pictures
