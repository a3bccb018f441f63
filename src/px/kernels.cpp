// The plain mixes and transitions. `a` and `b` below are pixels of the bottom and of the top layer.
#include <algorithm>

#include "common/rgb565.h"
#include "px/plain.h"

namespace px {

namespace {

constexpr uint32_t kGreenMask = 0x07E0;
constexpr uint32_t kBlueMask = 0x001F;
constexpr uint32_t kRedMask = 0xF800;
constexpr uint32_t kBlueCarry = 0x20;
constexpr uint32_t kRedCarry = 0x10000;
constexpr uint32_t kGreenCarry = 0x800;
constexpr int kHalvingMask = 0xF7DE;  // every field without its lowest bit
constexpr int kMaxLevel = 15;         // of alpha, flash and fade

uint16_t addPixel(uint32_t a, uint32_t b) {
    uint32_t sum = (a & ~kGreenMask) + (b & ~kGreenMask);
    if ((sum & kBlueCarry) != 0) {
        sum = (sum & ~kBlueMask) - 1;  // takes the carry back and leaves blue at 31
    }
    if ((sum & kRedCarry) != 0) {
        sum |= kRedMask;
    }
    uint32_t green = (a & kGreenMask) + (b & kGreenMask);
    if ((green & kGreenCarry) != 0) {
        green = kGreenMask;
    }
    return static_cast<uint16_t>((sum | green) & 0xFFFF);
}

int mixField(int top, int bottom, int alpha) {
    return top * alpha / kMaxLevel + bottom * (kMaxLevel - alpha) / kMaxLevel;
}

// A transition treats each field by itself, so 32 + 64 + 32 values say all about it.
struct FieldTables {
    uint16_t red[32];
    uint16_t green[64];
    uint16_t blue[32];
};

void applyTables(uint16_t* pixels, int count, const FieldTables& tables) {
    for (int i = 0; i < count; ++i) {
        const uint16_t p = pixels[i];
        pixels[i] = static_cast<uint16_t>(tables.red[redOf(p)] + tables.green[greenOf(p)] +
                                          tables.blue[blueOf(p)]);
    }
}

// Half of each: every field loses its lowest bit, is halved and added.
void blendPixels(uint16_t* out, const Layers& layers, int count) {
    for (int i = 0; i < count; ++i) {
        out[i] = static_cast<uint16_t>(((layers.bottom[i] & kHalvingMask) >> 1) +
                                       ((layers.top[i] & kHalvingMask) >> 1));
    }
}

// Sum of each field, held at its maximum.
void addPixels(uint16_t* out, const Layers& layers, int count) {
    for (int i = 0; i < count; ++i) {
        out[i] = addPixel(layers.bottom[i], layers.top[i]);
    }
}

// Product of each field over its maximum: rA rB / 31, gA gB / 63, bA bB / 31.
void multiplyPixels(uint16_t* out, const Layers& layers, int count) {
    for (int i = 0; i < count; ++i) {
        const uint16_t a = layers.bottom[i];
        const uint16_t b = layers.top[i];
        out[i] = pack(redOf(a) * redOf(b) / 31, greenOf(a) * greenOf(b) / 63,
                      blueOf(a) * blueOf(b) / 31);
    }
}

// Top over bottom by alpha a: f = fB a / 15 + fA (15 - a) / 15, each quotient truncated.
void keyByAlpha(uint16_t* out, const Layers& layers, int count) {
    for (int i = 0; i < count; ++i) {
        const uint16_t a = layers.bottom[i];
        const uint16_t b = layers.top[i];
        const uint8_t alpha = layers.alpha[i];  // with 0 the sum below is the bottom pixel itself
        out[i] = pack(mixField(redOf(b), redOf(a), alpha), mixField(greenOf(b), greenOf(a), alpha),
                      mixField(blueOf(b), blueOf(a), alpha));
    }
}

// Top over bottom; only pure black (0x0000) of the top is transparent.
void keyByBlack(uint16_t* out, const Layers& layers, int count) {
    for (int i = 0; i < count; ++i) {
        const uint16_t a = layers.bottom[i];
        const uint16_t b = layers.top[i];
        out[i] = b != 0 ? b : a;
    }
}

void keyPixels(uint16_t* out, const Layers& layers, int count) {
    (layers.alpha != nullptr ? keyByAlpha : keyByBlack)(out, layers, count);
}

// The left half of the row from the top layer.
void halvePixels(uint16_t* out, const Layers& layers, int count) {
    const int half = count / 2;
    std::copy_n(layers.top, half, out);
    if (out != layers.bottom) {
        std::copy(layers.bottom + half, layers.bottom + count, out + half);
    }
}

// White flash, level k: r = (31 k + (15 - k) r) / 15, b likewise, g = (126 k + (31 - 2 k) g) / 31.
void flashPixels(uint16_t* pixels, int count, int level) {
    FieldTables tables;
    for (int v = 0; v < 32; ++v) {
        const int field = (31 * level + (kMaxLevel - level) * v) / 15;
        tables.red[v] = pack(field, 0, 0);
        tables.blue[v] = pack(0, 0, field);
    }
    // Deliberate: green counts in 31sts, so a full flash leaves it at 60 on black, just short of
    // white. [quirk_full_flash_leaves_green_at_60]
    for (int v = 0; v < 64; ++v) {
        tables.green[v] = pack(0, (126 * level + (31 - 2 * level) * v) / 31, 0);
    }
    applyTables(pixels, count, tables);
}

// Fade to black, with k = 15 - level: r = k r / 15, b likewise, g = 2 k g / 30.
void fadePixels(uint16_t* pixels, int count, int level) {
    const int k = kMaxLevel - level;
    FieldTables tables;
    for (int v = 0; v < 32; ++v) {
        tables.red[v] = pack(k * v / 15, 0, 0);
        tables.blue[v] = pack(0, 0, k * v / 15);
    }
    for (int v = 0; v < 64; ++v) {
        tables.green[v] = pack(0, 2 * k * v / 30, 0);
    }
    applyTables(pixels, count, tables);
}

}  // namespace

void addPlainKernels(Operations& table) {
    constexpr bool kInPlace = true;
    table.mixes[MODE_BLEND] = {blendPixels, !kInPlace, nullptr};
    table.mixes[MODE_ADD] = {addPixels, !kInPlace, nullptr};
    table.mixes[MODE_MULTIPLY] = {multiplyPixels, !kInPlace, nullptr};
    table.mixes[MODE_KEY] = {keyPixels, kInPlace, nullptr};
    table.mixes[MODE_HALF_HALF] = {halvePixels, kInPlace, nullptr};
    table.flash = flashPixels;
    table.fade = fadePixels;
}

}  // namespace px
