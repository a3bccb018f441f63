// Any pixels, counts and alignments through the mixer's arithmetic: the fast functions write what
// the plain ones write and nothing else.
//
// Input: which function, its numbers, then the pixels; they are repeated as far as needed.
#include <iterator>
#include <vector>

#include "fuzz/input.h"
#include "px/operations.h"

namespace {

using fuzz::require;
using Pixels = std::vector<uint16_t>;

constexpr px::Transition px::Operations::*kTransitions[] = {&px::Operations::flash,
                                                            &px::Operations::fade};
constexpr int kLevels = 15;

// The modes that mix.
std::vector<MixMode> mixes() {
    std::vector<MixMode> modes;
    for (const ModeControl& control : kModes) {
        if (px::plain().mixes[control.mode].pixels != nullptr) {
            modes.push_back(control.mode);
        }
    }
    return modes;
}

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

void checkMix(MixMode mode, Run& bottom, Run& same, const px::Layers& layers, int count) {
    const px::Mix& fast = px::operations().mixes[mode];
    Run out{Pixels(bottom.memory.size()), bottom.shift};
    fast.pixels(out.data(), layers, count);
    px::plain().mixes[mode].pixels(same.data(), {same.data(), layers.top, layers.alpha}, count);
    std::fill_n(same.memory.begin(), same.shift, uint16_t{0});
    require(out == same, "a mix to another place");
    fast.pixels(bottom.data(), layers, count);
    std::fill_n(bottom.memory.begin(), bottom.shift, uint16_t{0});
}

void checkPixels(fuzz::Input& input) {
    static const std::vector<MixMode> modes = mixes();
    const auto function =
        static_cast<size_t>(input.below(static_cast<int>(modes.size() + std::size(kTransitions))));
    const int count = input.word() % 700;
    const int shifts = input.byte();
    const int levels = input.byte();
    const auto pixels = static_cast<size_t>(count);
    Run bottom = runOf(input.rest(), 0, pixels, static_cast<size_t>(shifts % 16));
    Run top = runOf(input.rest(), pixels, pixels, static_cast<size_t>(shifts / 16));
    Run same = bottom;
    std::vector<uint8_t> alpha(pixels);
    for (size_t i = 0; i < pixels; ++i) {
        alpha[i] = static_cast<uint8_t>(pixelAt(input.rest(), i + 3) & 15);
    }
    if (function < modes.size()) {
        const uint8_t* const given = levels % 2 == 0 ? alpha.data() : nullptr;
        checkMix(modes[function], bottom, same, {bottom.data(), top.data(), given}, count);
    } else {
        const auto transition = kTransitions[function - modes.size()];
        const int level = 1 + levels % kLevels;
        (px::operations().*transition)(bottom.data(), count, level);
        (px::plain().*transition)(same.data(), count, level);
    }
    require(bottom == same, "fast and plain pixels");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Input input(data, size);
    checkPixels(input);
    return 0;
}
