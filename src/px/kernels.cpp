#include "px/kernels.h"

#include "common/rgb565.h"

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

}  // namespace

void blendPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count) {
    for (int i = 0; i < count; ++i) {
        out[i] = static_cast<uint16_t>(((bottom[i] & kHalvingMask) >> 1) +
                                       ((top[i] & kHalvingMask) >> 1));
    }
}

void addPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count) {
    for (int i = 0; i < count; ++i) {
        out[i] = addPixel(bottom[i], top[i]);
    }
}

void multiplyPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count) {
    for (int i = 0; i < count; ++i) {
        const uint16_t a = bottom[i];
        const uint16_t b = top[i];
        out[i] = pack(redOf(a) * redOf(b) / 31, greenOf(a) * greenOf(b) / 63,
                      blueOf(a) * blueOf(b) / 31);
    }
}

void keyByAlpha(uint16_t* bottom, const uint16_t* top, const uint8_t* alpha, int count) {
    for (int i = 0; i < count; ++i) {
        const uint16_t a = bottom[i];
        const uint16_t b = top[i];
        // With alpha 0 the sum below is the bottom pixel itself.
        bottom[i] =
            pack(mixField(redOf(b), redOf(a), alpha[i]), mixField(greenOf(b), greenOf(a), alpha[i]),
                 mixField(blueOf(b), blueOf(a), alpha[i]));
    }
}

void keyByBlack(uint16_t* bottom, const uint16_t* top, int count) {
    for (int i = 0; i < count; ++i) {
        bottom[i] = top[i] != 0 ? top[i] : bottom[i];
    }
}

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

}  // namespace px
