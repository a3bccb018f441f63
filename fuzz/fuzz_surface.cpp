// Two pictures, mixed or keyed onto an output surface of any size: the fast functions write what
// mixing and placing row by row writes, and nothing outside the surface.
//
// Input: the surface's shape, its size, what is left between its rows, how the pictures are mixed.
#include <vector>

#include "common/limits.h"
#include "fuzz/input.h"
#include "px/operations.h"
#include "px/output.h"

namespace {

using fuzz::require;
using Pixels = std::vector<uint16_t>;

constexpr int kMostWidth = 1400;
constexpr int kMostHeight = 760;
constexpr int kStageWidth = 1280;
constexpr int kStageHeight = 720;

// A picture as it is, or both by a mode, with and without the top layer's alpha.
struct Way {
    int mode;
    bool alpha;
};

struct Pictures {
    Pixels bottom = Pixels(kFramePixels);
    Pixels top = Pixels(kFramePixels);
    std::vector<uint8_t> alpha = std::vector<uint8_t>(kFramePixels);
    std::vector<Way> ways = {{MODE_TOP, false}};
    std::vector<Pixels> mixed;  // by each way

    Pictures() {
        for (uint32_t i = 0; i < kFramePixels; ++i) {
            bottom[i] = static_cast<uint16_t>(i * 2654435761u >> 16);
            top[i] = i % 5 == 0 ? uint16_t{0} : static_cast<uint16_t>(i * 40503u >> 3 & 0xFFFF);
            alpha[i] = static_cast<uint8_t>(i * 7 / 3 % 16);
        }
        mixed.push_back(bottom);
        for (int mode = 0; mode < kMixModes; ++mode) {
            const auto mix = px::plain().mixes[mode].pixels;
            for (int withAlpha = 0; withAlpha < 2 && mix != nullptr; ++withAlpha) {
                ways.push_back({mode, withAlpha != 0});
                Pixels& out = mixed.emplace_back(bottom);
                const px::Layers both = layers(ways.back(), out);
                for (int i = 0; i < kFramePixels; i += kFrameWidth) {
                    mix(out.data() + i, both.from(i), kFrameWidth);
                }
            }
        }
    }
    px::Layers layers(Way way, Pixels& under) const {
        return {under.data(), top.data(), way.alpha ? alpha.data() : nullptr};
    }
};

// The last row ends with its pixels, and so does the memory.
struct Surface {
    Pixels memory;
    px::OutputView view;

    Surface(int width, int height, size_t pitch, bool composite)
        : memory((static_cast<size_t>(height) - 1) * pitch / 2 + static_cast<size_t>(width),
                 0xA5A5),
          view{memory.data(), width, height, pitch, composite} {}
};

void placeFast(const px::OutputView& view, const Pictures& pictures, size_t number) {
    const Way way = pictures.ways[number];
    if (way.mode == MODE_TOP) {
        px::operations().placePicture(view, pictures.bottom.data());
        return;
    }
    Pixels bottom = pictures.bottom;
    px::operations().mixPicture(view, way.mode, pictures.layers(way, bottom));
    const bool stays = px::plain().mixes[way.mode].inPlace;
    require(bottom == (stays ? pictures.mixed[number] : pictures.bottom),
            "a mix in place stays in the bottom layer, and no other");
}

void placePlain(const px::OutputView& view, const Pixels& frame) {
    px::beginPicture(view);
    for (int y = 0; y < kFrameHeight; ++y) {
        px::placeRow(view, frame.data() + y * kFrameWidth, y);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const Pictures pictures;
    fuzz::Input input(data, size);
    const int shape = input.byte();
    const bool composite = (shape & 4) != 0;
    const int width = (shape & 1) == 0 ? kStageWidth : 1 + input.word() % kMostWidth;
    const int height = (shape & 2) == 0 ? kStageHeight : 1 + input.word() % kMostHeight;
    const size_t pitch = 2 * static_cast<size_t>(width + input.below(20));
    const auto way = static_cast<size_t>(input.below(static_cast<int>(pictures.ways.size())));
    Surface plain(width, height, pitch, composite);
    Surface fast(width, height, pitch, composite);
    placeFast(fast.view, pictures, way);
    placePlain(plain.view, pictures.mixed[way]);
    require(plain.memory == fast.memory, "fast and plain surfaces");
    px::fillRowStart(fast.view, shape % height, input.word(), 0xFFFF);
    return 0;
}
