// Two pictures, mixed or keyed onto an output surface of any size: the fast functions write what
// mixing and placing row by row writes, and nothing outside the surface.
//
// Input: the surface's shape, its size, what is left between its rows, how the pictures are mixed.
#include <vector>

#include "common/limits.h"
#include "fuzz/input.h"
#include "px/kernels.h"
#include "px/output.h"
#include "px/output_fast.h"

namespace {

using fuzz::require;
using Pixels = std::vector<uint16_t>;

constexpr int kMostWidth = 1400;
constexpr int kMostHeight = 760;
constexpr int kStageWidth = 1280;
constexpr int kStageHeight = 720;

enum Way { BLEND, ADD, MULTIPLY, TOP_LEFT_OUT, KEY_BY_ALPHA, KEY_BY_BLACK, WAYS };

struct Pictures {
    Pixels bottom = Pixels(kFramePixels);
    Pixels top = Pixels(kFramePixels);
    std::vector<uint8_t> alpha = std::vector<uint8_t>(kFramePixels);
    Pixels mixed[WAYS];

    Pictures() {
        for (uint32_t i = 0; i < kFramePixels; ++i) {
            bottom[i] = static_cast<uint16_t>(i * 2654435761u >> 16);
            top[i] = i % 5 == 0 ? uint16_t{0} : static_cast<uint16_t>(i * 40503u >> 3 & 0xFFFF);
            alpha[i] = static_cast<uint8_t>(i * 7 / 3 % 16);
        }
        for (Pixels& pixels : mixed) {
            pixels = bottom;
        }
        const auto mix = [&](Way way) { return mixed[way].data(); };
        px::blendPixels(mix(BLEND), mix(BLEND), top.data(), kFramePixels);
        px::addPixels(mix(ADD), mix(ADD), top.data(), kFramePixels);
        px::multiplyPixels(mix(MULTIPLY), mix(MULTIPLY), top.data(), kFramePixels);
        px::keyByAlpha(mix(KEY_BY_ALPHA), top.data(), alpha.data(), kFramePixels);
        px::keyByBlack(mix(KEY_BY_BLACK), top.data(), kFramePixels);
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

void placeFast(const px::OutputView& view, const Pictures& pictures, int way) {
    if (way < TOP_LEFT_OUT) {
        px::fast::mixPicture(view, static_cast<px::fast::Mix>(way), pictures.bottom.data(),
                             pictures.top.data());
    } else if (way == TOP_LEFT_OUT) {
        px::fast::placePicture(view, pictures.bottom.data());
    } else {
        Pixels bottom = pictures.bottom;
        const uint8_t* alpha = way == KEY_BY_ALPHA ? pictures.alpha.data() : nullptr;
        px::fast::keyPicture(view, bottom.data(), pictures.top.data(), alpha);
        require(bottom == pictures.mixed[way], "the key stays in the bottom layer");
    }
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
    const int way = input.below(WAYS);
    Surface plain(width, height, pitch, composite);
    Surface fast(width, height, pitch, composite);
    placeFast(fast.view, pictures, way);
    placePlain(plain.view, pictures.mixed[way]);
    require(plain.memory == fast.memory, "fast and plain surfaces");
    px::fillRowStart(fast.view, shape % height, input.word(), 0xFFFF);
    return 0;
}
