// What a frame of each operation on pixels costs: every mode, transition and filter, the plain way
// against the others that the processor has. All must give the same pixels before anything is
// timed. Beside each stands a copy that reads and writes as many bytes as the function does, timed
// in turns with it; ratios are to that copy.
//
//   bench_kernels [ROUNDS]       ROUNDS: calls of each function, 300 unless given
//   bench_kernels --every-pair   only compares the mixes, for all 2^32 pairs of pixels
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "common/limits.h"
#include "px/fx.h"
#include "px/operations.h"
#include "timing.h"
#include "ways.h"

namespace {

constexpr int kSurfaceWidth = 2 * kFrameWidth;
constexpr int kSurfaceHeight = 2 * kFrameHeight;
constexpr int kCompositeWidth = 720;
constexpr int kCompositeHeight = 576;
constexpr size_t kSurfaceBytes = size_t{kSurfaceWidth} * kSurfaceHeight * sizeof(uint16_t);
constexpr size_t kCompositeBytes = size_t{kCompositeWidth} * kCompositeHeight * sizeof(uint16_t);

std::vector<uint16_t> noise(unsigned seed, size_t count) {
    std::mt19937 random(seed);
    std::vector<uint16_t> pixels(count);
    for (uint16_t& pixel : pixels) {
        // One pixel in four is black, so that keying by black has both to do.
        const auto value = random();
        pixel = static_cast<uint16_t>((value >> 20) % 4 != 0 ? value & 0xFFFF : 0);
    }
    return pixels;
}

std::vector<uint8_t> levels(unsigned seed, size_t count, unsigned end) {
    std::mt19937 random(seed);
    std::vector<uint8_t> values(count);
    for (uint8_t& value : values) {
        value = static_cast<uint8_t>(random() % end);
    }
    return values;
}

// What the functions read and write.
struct Buffers {
    std::vector<uint16_t> bottom = noise(1, kFramePixels);
    std::vector<uint16_t> top = noise(2, kFramePixels);
    std::vector<uint16_t> surface = noise(3, size_t{kSurfaceWidth} * kSurfaceHeight);
    std::vector<uint8_t> alpha = levels(4, kFramePixels, 16);
    std::vector<uint8_t> snow = levels(5, px::kMostSnowEntries, px::kSnowLevels);
    std::vector<uint32_t> wide = std::vector<uint32_t>(surface.size());

    px::Layers layers(bool withAlpha) {
        return {bottom.data(), top.data(), withAlpha ? alpha.data() : nullptr};
    }

    px::OutputView doubled() {
        return {surface.data(), kSurfaceWidth, kSurfaceHeight, kSurfaceWidth * sizeof(uint16_t),
                false};
    }
    px::OutputView composite() {
        return {surface.data(), kCompositeWidth, kCompositeHeight,
                kCompositeWidth * sizeof(uint16_t), true};
    }
    bool operator==(const Buffers&) const = default;
};

struct Case {
    std::string name;
    size_t bytes;  // read and written
    std::function<void(const px::Operations& way, Buffers& buffers)> run;
};

void addMix(std::vector<Case>& cases, const std::string& name, MixMode mode, bool alpha) {
    // Half half moves half of one layer; a key is written twice.
    const size_t alphaBytes = alpha ? kFramePixels : 0;
    cases.push_back({name, (mode == MODE_HALF_HALF ? 1 : 3) * kFrameBytes + alphaBytes,
                     [=](const px::Operations& way, Buffers& b) {
                         way.mixes[mode].pixels(b.bottom.data(), b.layers(alpha), kFramePixels);
                     }});
    cases.push_back({name + " + doubling",
                     (mode == MODE_KEY ? 3 : 2) * kFrameBytes + alphaBytes + kSurfaceBytes,
                     [=](const px::Operations& way, Buffers& b) {
                         way.mixPicture(b.doubled(), mode, b.layers(alpha));
                     }});
}

void addMixes(std::vector<Case>& cases) {
    for (const ModeControl& control : kModes) {
        if (control.mode == MODE_KEY) {
            addMix(cases, "key by black", MODE_KEY, false);
            addMix(cases, "key by alpha", MODE_KEY, true);
        } else if (px::plain().mixes[control.mode].pixels != nullptr) {
            addMix(cases, control.label, control.mode, false);
        }
    }
}

void addPlacing(std::vector<Case>& cases) {
    cases.push_back(
        {"doubling", kFrameBytes + kSurfaceBytes, [](const px::Operations& way, Buffers& b) {
             way.placePicture(b.doubled(), b.bottom.data());
         }});
    cases.push_back({"centring, 720 x 576", kFrameBytes + kCompositeBytes + kFrameBytes,
                     [](const px::Operations& way, Buffers& b) {
                         way.placePicture(b.composite(), b.bottom.data());
                     }});
}

// The surface for a display of 24 bits, row by row; of a row that changed the first pixel differs.
void widen(const px::Operations& way, Buffers& b, uint32_t change) {
    for (size_t at = 0; at < b.surface.size(); at += kSurfaceWidth) {
        b.wide[at] ^= change;
        way.widenChanged(b.wide.data() + at, b.surface.data() + at, kSurfaceWidth);
    }
}

void addWidening(std::vector<Case>& cases) {
    cases.push_back({"widening, all changed", 3 * kSurfaceBytes,
                     [](const px::Operations& way, Buffers& b) { widen(way, b, 1); }});
    cases.push_back({"widening, none changed", 3 * kSurfaceBytes,
                     [](const px::Operations& way, Buffers& b) { widen(way, b, 0); }});
}

void addTransitions(std::vector<Case>& cases) {
    for (const int level : {1, 8, 15}) {
        cases.push_back({"flash " + std::to_string(level), 2 * kFrameBytes,
                         [=](const px::Operations& way, Buffers& b) {
                             way.flash(b.bottom.data(), kFramePixels, level);
                         }});
        cases.push_back({"fade " + std::to_string(level), 2 * kFrameBytes,
                         [=](const px::Operations& way, Buffers& b) {
                             way.fade(b.bottom.data(), kFramePixels, level);
                         }});
    }
}

void addFilters(std::vector<Case>& cases) {
    for (const Filter& filter : kFilters) {
        for (int direction = 0; direction < 4; ++direction) {
            if (px::plain().effects[filter.id] == nullptr) {
                continue;
            }
            cases.push_back(
                {std::string(filter.name) + " " + std::to_string(direction), 2 * kFrameBytes,
                 [=](const px::Operations& way, Buffers& b) {
                     way.effects[filter.id](b.bottom.data(), {direction, 122, b.snow.data()});
                 }});
        }
    }
}

using Ways = std::vector<const px::Operations*>;

bool checkAll(const std::vector<Case>& cases, const Ways& ways) {
    bool good = true;
    for (const Case& each : cases) {
        Buffers plain;
        each.run(px::plain(), plain);
        for (const px::Operations* way : ways) {
            Buffers fast;
            each.run(*way, fast);
            if (fast != plain) {
                printf("%s: the plain and the %s function differ\n", each.name.c_str(), way->name);
                good = false;
            }
        }
    }
    return good;
}

// One row of the table: the copy, the plain way, the others.
void timeCase(const Case& each, const Ways& ways, int rounds) {
    const Buffers fresh;
    Buffers b;
    std::vector<uint8_t> from(each.bytes / 2, 1);
    std::vector<uint8_t> to(each.bytes / 2, 2);
    const auto restore = [&] { memcpy(b.bottom.data(), fresh.bottom.data(), kFrameBytes); };
    std::vector<Timed> pieces;
    pieces.push_back({[&] { memcpy(to.data(), from.data(), from.size()); }, {}});
    pieces.push_back({[&] { each.run(px::plain(), b); }, restore});
    for (const px::Operations* way : ways) {
        pieces.push_back({[&, way] { each.run(*way, b); }, restore});
    }
    takeTurns(pieces, rounds);
    printf("| %-24s | %6.1f |", each.name.c_str(), pieces[0].best);
    for (size_t i = 1; i < pieces.size(); ++i) {
        printf(" %6.1f (%5.2f) |", pieces[i].best, pieces[i].best / pieces[0].best);
    }
    printf("\n");
}

// Every bottom pixel under every top pixel.
bool samePairs(const ModeControl& control, const Ways& ways) {
    constexpr int kValues = 65536;
    std::vector<uint16_t> bottom(kValues);
    std::vector<uint16_t> plain(kValues);
    std::vector<uint16_t> fast(kValues);
    for (size_t i = 0; i < kValues; ++i) {
        bottom[i] = static_cast<uint16_t>(i);
    }
    for (int value = 0; value < kValues; ++value) {
        const std::vector<uint16_t> top(kValues, static_cast<uint16_t>(value));
        const px::Layers layers = {bottom.data(), top.data(), nullptr};
        px::plain().mixes[control.mode].pixels(plain.data(), layers, kValues);
        for (const px::Operations* way : ways) {
            way->mixes[control.mode].pixels(fast.data(), layers, kValues);
            if (fast != plain) {
                printf("%s, %s: wrong with top pixel 0x%04X\n", control.label, way->name,
                       static_cast<unsigned>(value));
                return false;
            }
        }
    }
    printf("%s: all 2^32 pairs are the same every way\n", control.label);
    return true;
}

int compareEveryPair(const Ways& ways) {
    bool good = true;
    for (const ModeControl& control : kModes) {
        if (px::plain().mixes[control.mode].pixels != nullptr) {
            good = samePairs(control, ways) && good;
        }
    }
    return good ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const Ways ways = fastWays();
    if (argc > 1 && strcmp(argv[1], "--every-pair") == 0) {
        return compareEveryPair(ways);
    }
    const int rounds = argc > 1 ? atoi(argv[1]) : 300;
    std::vector<Case> cases;
    addMixes(cases);
    addPlacing(cases);
    addWidening(cases);
    addTransitions(cases);
    addFilters(cases);
    if (!checkAll(cases, ways)) {
        return 1;
    }
    printf("%zu functions, all ways: the same pixels. Best of %d calls, microseconds (ratio).\n\n",
           cases.size(), rounds);
    printf("| %-24s | %6s | %-14s |", "640 x 360", "copy", px::plain().name);
    for (const px::Operations* way : ways) {
        printf(" %-14s |", way->name);
    }
    printf("\n");
    for (const Case& each : cases) {
        timeCase(each, ways, rounds);
    }
    return 0;
}
