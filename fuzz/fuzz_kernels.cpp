// Any pixels, counts and alignments through the mixer's arithmetic: the fast functions write what
// the plain ones write and nothing else.
//
// Input: which function, its numbers, then the pixels; they are repeated as far as needed.
#include <vector>

#include "fuzz/input.h"
#include "px/kernels.h"
#include "px/kernels_fast.h"

namespace {

using fuzz::require;
using Pixels = std::vector<uint16_t>;
using Mix = void (*)(uint16_t*, const uint16_t*, const uint16_t*, int);
using Level = void (*)(uint16_t*, int, int);

constexpr Mix kPlainMixes[] = {px::blendPixels, px::addPixels, px::multiplyPixels};
constexpr Mix kFastMixes[] = {px::fast::blendPixels, px::fast::addPixels, px::fast::multiplyPixels};
constexpr Level kPlainLevels[] = {px::flashPixels, px::fadePixels};
constexpr Level kFastLevels[] = {px::fast::flashPixels, px::fast::fadePixels};
constexpr int kLevels = 15;
constexpr int kFunctions = 7;

// Pixels that end where their memory ends and start `shift` pixels after it starts, so that their
// address takes every alignment.
struct Run {
    Pixels memory;
    size_t shift;

    uint16_t* data() { return memory.data() + shift; }
    bool operator==(const Run&) const = default;
};

uint16_t pixelAt(std::span<const uint8_t> bytes, size_t i) {
    const size_t size = bytes.size();
    return size == 0 ? uint16_t{0}
                     : static_cast<uint16_t>(bytes[i * 2 % size] | bytes[(i * 2 + 1) % size] << 8);
}

Run runOf(std::span<const uint8_t> bytes, size_t from, size_t count, size_t shift) {
    Run run{Pixels(shift + count, 0x5A5A), shift};
    for (size_t i = 0; i < count; ++i) {
        run.data()[i] = pixelAt(bytes, from + i);
    }
    return run;
}

void checkPixels(fuzz::Input& input, int function) {
    const int count = input.word() % 700;
    const int shifts = input.byte();
    const int level = 1 + input.below(kLevels);
    const auto pixels = static_cast<size_t>(count);
    const auto shift = static_cast<size_t>(shifts % 16);
    Run bottom = runOf(input.rest(), 0, pixels, shift);
    Run top = runOf(input.rest(), pixels, pixels, static_cast<size_t>(shifts / 16));
    Run same = bottom;
    std::vector<uint8_t> alpha(pixels);
    for (size_t i = 0; i < pixels; ++i) {
        alpha[i] = static_cast<uint8_t>(pixelAt(input.rest(), i + 3) & 15);
    }
    if (function < 3) {
        Run out{Pixels(shift + pixels), shift};
        kFastMixes[function](out.data(), bottom.data(), top.data(), count);
        kPlainMixes[function](same.data(), same.data(), top.data(), count);
        std::fill_n(same.memory.begin(), shift, uint16_t{0});
        require(out == same, "a mix to another place");
        kFastMixes[function](bottom.data(), bottom.data(), top.data(), count);
        std::fill_n(bottom.memory.begin(), shift, uint16_t{0});
    } else if (function < 5) {
        kFastLevels[function - 3](bottom.data(), count, level);
        kPlainLevels[function - 3](same.data(), count, level);
    } else if (function == 5) {
        px::fast::keyByAlpha(bottom.data(), top.data(), alpha.data(), count);
        px::keyByAlpha(same.data(), top.data(), alpha.data(), count);
    } else {
        px::fast::keyByBlack(bottom.data(), top.data(), count);
        px::keyByBlack(same.data(), top.data(), count);
    }
    require(bottom == same, "fast and plain pixels");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Input input(data, size);
    const int function = input.below(kFunctions);
    checkPixels(input, function);
    return 0;
}
