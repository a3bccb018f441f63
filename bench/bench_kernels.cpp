// The mixer's pixel functions, plain against fast, for every vector width that the processor has.
// Both must give the same pixels before anything is timed. Beside each stands a copy that reads and
// writes as many bytes as the function does, timed in turns with it; ratios are to that copy.
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
#include "px/fx_fast.h"
#include "px/kernels.h"
#include "px/kernels_fast.h"
#include "px/output.h"
#include "px/output_fast.h"
#include "timing.h"
#include "vector_targets.h"

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
    std::vector<uint8_t> snow = levels(5, 497, 20);

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

using Function = std::function<void(Buffers&)>;

struct Case {
    std::string name;
    size_t bytes;  // read and written
    Function plain;
    Function fast;
};

using RowMix = void (*)(uint16_t*, const uint16_t*, const uint16_t*, int);

void mixRows(Buffers& b, RowMix mixRow) {
    uint16_t mixed[kFrameWidth];
    px::beginPicture(b.doubled());
    for (int y = 0; y < kFrameHeight; ++y) {
        mixRow(mixed, b.bottom.data() + y * kFrameWidth, b.top.data() + y * kFrameWidth,
               kFrameWidth);
        px::placeRow(b.doubled(), mixed, y);
    }
}

void addMix(std::vector<Case>& cases, const std::string& name, RowMix plain, RowMix fast,
            px::fast::Mix mix) {
    cases.push_back(
        {name, 3 * kFrameBytes,
         [=](Buffers& b) { plain(b.bottom.data(), b.bottom.data(), b.top.data(), kFramePixels); },
         [=](Buffers& b) { fast(b.bottom.data(), b.bottom.data(), b.top.data(), kFramePixels); }});
    cases.push_back({name + " + doubling", 2 * kFrameBytes + kSurfaceBytes,
                     [=](Buffers& b) { mixRows(b, plain); },
                     [=](Buffers& b) {
                         px::fast::mixPicture(b.doubled(), mix, b.bottom.data(), b.top.data());
                     }});
}

void addMixes(std::vector<Case>& cases) {
    addMix(cases, "blend", px::blendPixels, px::fast::blendPixels, px::fast::Mix::kBlend);
    addMix(cases, "add", px::addPixels, px::fast::addPixels, px::fast::Mix::kAdd);
    addMix(cases, "multiply", px::multiplyPixels, px::fast::multiplyPixels,
           px::fast::Mix::kMultiply);
}

void addKeys(std::vector<Case>& cases) {
    constexpr size_t kKeyBytes = 3 * kFrameBytes;
    cases.push_back(
        {"key by black", kKeyBytes,
         [](Buffers& b) { px::keyByBlack(b.bottom.data(), b.top.data(), kFramePixels); },
         [](Buffers& b) { px::fast::keyByBlack(b.bottom.data(), b.top.data(), kFramePixels); }});
    cases.push_back({"key by black + doubling", kKeyBytes + kSurfaceBytes,
                     [](Buffers& b) {
                         px::keyByBlack(b.bottom.data(), b.top.data(), kFramePixels);
                         px::placePicture(b.doubled(), b.bottom.data());
                     },
                     [](Buffers& b) {
                         px::fast::keyPicture(b.doubled(), b.bottom.data(), b.top.data(), nullptr);
                     }});
    cases.push_back(
        {"key by alpha", kKeyBytes + kFramePixels,
         [](Buffers& b) {
             px::keyByAlpha(b.bottom.data(), b.top.data(), b.alpha.data(), kFramePixels);
         },
         [](Buffers& b) {
             px::fast::keyByAlpha(b.bottom.data(), b.top.data(), b.alpha.data(), kFramePixels);
         }});
    cases.push_back(
        {"key by alpha + doubling", kKeyBytes + kFramePixels + kSurfaceBytes,
         [](Buffers& b) {
             px::keyByAlpha(b.bottom.data(), b.top.data(), b.alpha.data(), kFramePixels);
             px::placePicture(b.doubled(), b.bottom.data());
         },
         [](Buffers& b) {
             px::fast::keyPicture(b.doubled(), b.bottom.data(), b.top.data(), b.alpha.data());
         }});
}

void halve(Buffers& b) {
    for (int y = 0; y < kFrameHeight; ++y) {
        memcpy(b.bottom.data() + y * kFrameWidth, b.top.data() + y * kFrameWidth, kFrameWidth);
    }
}

void addPlacing(std::vector<Case>& cases) {
    cases.push_back({"doubling", kFrameBytes + kSurfaceBytes,
                     [](Buffers& b) { px::placePicture(b.doubled(), b.bottom.data()); },
                     [](Buffers& b) { px::fast::placePicture(b.doubled(), b.bottom.data()); }});
    cases.push_back({"half half + doubling", 2 * kFrameBytes + kSurfaceBytes,
                     [](Buffers& b) {
                         halve(b);
                         px::placePicture(b.doubled(), b.bottom.data());
                     },
                     [](Buffers& b) {
                         halve(b);
                         px::fast::placePicture(b.doubled(), b.bottom.data());
                     }});
    cases.push_back({"centring, 720 x 576", kFrameBytes + kCompositeBytes + kFrameBytes,
                     [](Buffers& b) { px::placePicture(b.composite(), b.bottom.data()); },
                     [](Buffers& b) { px::fast::placePicture(b.composite(), b.bottom.data()); }});
}

void addInPlace(std::vector<Case>& cases, const std::string& name,
                const std::function<void(uint16_t*, Buffers&)>& plain,
                const std::function<void(uint16_t*, Buffers&)>& fast) {
    cases.push_back({name, 2 * kFrameBytes, [plain](Buffers& b) { plain(b.bottom.data(), b); },
                     [fast](Buffers& b) { fast(b.bottom.data(), b); }});
}

void addTransitions(std::vector<Case>& cases) {
    for (const int level : {1, 8, 15}) {
        addInPlace(
            cases, "flash " + std::to_string(level),
            [=](uint16_t* p, Buffers&) { px::flashPixels(p, kFramePixels, level); },
            [=](uint16_t* p, Buffers&) { px::fast::flashPixels(p, kFramePixels, level); });
        addInPlace(
            cases, "fade " + std::to_string(level),
            [=](uint16_t* p, Buffers&) { px::fadePixels(p, kFramePixels, level); },
            [=](uint16_t* p, Buffers&) { px::fast::fadePixels(p, kFramePixels, level); });
    }
}

using DirectedFilter = void (*)(uint16_t*, int);

void addDirected(std::vector<Case>& cases, const std::string& name, DirectedFilter plain,
                 DirectedFilter fast) {
    for (int direction = 0; direction < 4; ++direction) {
        addInPlace(
            cases, name + " " + std::to_string(direction),
            [=](uint16_t* p, Buffers&) { plain(p, direction); },
            [=](uint16_t* p, Buffers&) { fast(p, direction); });
    }
}

void addFilters(std::vector<Case>& cases) {
    addInPlace(
        cases, "invert", [](uint16_t* p, Buffers&) { px::invertFrame(p); },
        [](uint16_t* p, Buffers&) { px::fast::invertFrame(p); });
    addDirected(cases, "burned", px::burnFrame, px::fast::burnFrame);
    for (int direction = 0; direction < 4; ++direction) {
        const int entries = px::snowEntries(direction);
        addInPlace(
            cases, "snow " + std::to_string(direction),
            [=](uint16_t* p, Buffers& b) { px::snowFrame(p, b.snow.data(), entries); },
            [=](uint16_t* p, Buffers& b) { px::fast::snowFrame(p, b.snow.data(), entries); });
    }
    addDirected(cases, "zoom", px::zoomFrame, px::fast::zoomFrame);
    addInPlace(
        cases, "game boy", [](uint16_t* p, Buffers&) { px::gameBoyFrame(p); },
        [](uint16_t* p, Buffers&) { px::fast::gameBoyFrame(p); });
    addDirected(cases, "mirror", px::mirrorFrame, px::fast::mirrorFrame);
    addDirected(cases, "hue", px::hueFrame, px::fast::hueFrame);
    for (int direction = 0; direction < 4; ++direction) {
        addInPlace(
            cases, "scroll " + std::to_string(direction),
            [=](uint16_t* p, Buffers&) { px::scrollFrame(p, direction, 122); },
            [=](uint16_t* p, Buffers&) { px::fast::scrollFrame(p, direction, 122); });
    }
}

bool sameResult(const Case& each) {
    Buffers plain;
    Buffers fast;
    each.plain(plain);
    each.fast(fast);
    return plain == fast;
}

bool checkAll(const std::vector<Case>& cases, const std::vector<VectorTarget>& targets) {
    bool good = true;
    for (const VectorTarget& target : targets) {
        useTarget(target);
        for (const Case& each : cases) {
            if (!sameResult(each)) {
                printf("%s: the plain and the %s function differ\n", each.name.c_str(),
                       target.name.c_str());
                good = false;
            }
        }
    }
    return good;
}

// One row of the table: the copy, the plain function, the fast one at each width.
void timeCase(const Case& each, const std::vector<VectorTarget>& targets, int rounds) {
    const Buffers fresh;
    Buffers b;
    std::vector<uint8_t> from(each.bytes / 2, 1);
    std::vector<uint8_t> to(each.bytes / 2, 2);
    const auto restore = [&] { memcpy(b.bottom.data(), fresh.bottom.data(), kFrameBytes); };
    std::vector<Timed> pieces;
    pieces.push_back({[&] { memcpy(to.data(), from.data(), from.size()); }, {}});
    pieces.push_back({[&] { each.plain(b); }, restore});
    for (const VectorTarget& target : targets) {
        pieces.push_back({[&] { each.fast(b); },
                          [&] {
                              useTarget(target);
                              restore();
                          }});
    }
    takeTurns(pieces, rounds);
    printf("| %-24s | %6.1f |", each.name.c_str(), pieces[0].best);
    for (size_t i = 1; i < pieces.size(); ++i) {
        printf(" %6.1f (%5.2f) |", pieces[i].best, pieces[i].best / pieces[0].best);
    }
    printf("\n");
}

struct PairMix {
    const char* name;
    RowMix plain;
    RowMix fast;
};

void plainKey(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count) {
    memcpy(out, bottom, static_cast<size_t>(count) * sizeof *out);
    px::keyByBlack(out, top, count);
}

void fastKey(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count) {
    memcpy(out, bottom, static_cast<size_t>(count) * sizeof *out);
    px::fast::keyByBlack(out, top, count);
}

// Every bottom pixel under every top pixel.
bool samePairs(const PairMix& mix, const std::vector<VectorTarget>& targets) {
    constexpr int kValues = 65536;
    std::vector<uint16_t> bottom(kValues);
    std::vector<uint16_t> plain(kValues);
    std::vector<uint16_t> fast(kValues);
    for (size_t i = 0; i < kValues; ++i) {
        bottom[i] = static_cast<uint16_t>(i);
    }
    for (int value = 0; value < kValues; ++value) {
        const std::vector<uint16_t> top(kValues, static_cast<uint16_t>(value));
        mix.plain(plain.data(), bottom.data(), top.data(), kValues);
        for (const VectorTarget& target : targets) {
            useTarget(target);
            mix.fast(fast.data(), bottom.data(), top.data(), kValues);
            if (fast != plain) {
                printf("%s, %s: wrong with top pixel 0x%04X\n", mix.name, target.name.c_str(),
                       static_cast<unsigned>(value));
                return false;
            }
        }
    }
    printf("%s: all 2^32 pairs are the same at every width\n", mix.name);
    return true;
}

int compareEveryPair(const std::vector<VectorTarget>& targets) {
    constexpr PairMix kMixes[] = {
        {"blend", px::blendPixels, px::fast::blendPixels},
        {"add", px::addPixels, px::fast::addPixels},
        {"multiply", px::multiplyPixels, px::fast::multiplyPixels},
        {"key by black", plainKey, fastKey},
    };
    bool good = true;
    for (const PairMix& mix : kMixes) {
        good = samePairs(mix, targets) && good;
    }
    return good ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && strcmp(argv[1], "--every-pair") == 0) {
        return compareEveryPair(vectorTargets());
    }
    const int rounds = argc > 1 ? atoi(argv[1]) : 300;
    std::vector<Case> cases;
    addMixes(cases);
    addKeys(cases);
    addPlacing(cases);
    addTransitions(cases);
    addFilters(cases);
    const std::vector<VectorTarget> targets = vectorTargets();
    if (!checkAll(cases, targets)) {
        return 1;
    }
    printf(
        "%zu functions, all widths: the same pixels. Best of %d calls, microseconds (ratio).\n\n",
        cases.size(), rounds);
    printf("| %-24s | %6s | %-14s |", "640 x 360", "copy", "plain");
    for (const VectorTarget& target : targets) {
        printf(" %-14s |", target.name.c_str());
    }
    printf("\n");
    for (const Case& each : cases) {
        timeCase(each, targets, rounds);
    }
    return 0;
}
