// What a frame of each mixer operation costs as the program runs it: 230,400 pixels of noise, mixed
// on their own and onto a surface, and a copy of a frame to compare with. bench_kernels compares
// the plain functions with the fast ones.
#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <vector>

#include "common/limits.h"
#include "px/kernels_fast.h"
#include "px/output_fast.h"

namespace {

std::vector<uint16_t> noise(unsigned seed) {
    std::mt19937 random(seed);
    std::vector<uint16_t> frame(kFramePixels);
    for (uint16_t& pixel : frame) {
        pixel = static_cast<uint16_t>(random() & 0xFFFF);
    }
    return frame;
}

void copyFrame(benchmark::State& state) {
    const std::vector<uint16_t> from = noise(1);
    std::vector<uint16_t> to(kFramePixels);
    for (auto _ : state) {
        memcpy(to.data(), from.data(), kFrameBytes);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(copyFrame)->Unit(benchmark::kMicrosecond);

using Mix = void (*)(uint16_t*, const uint16_t*, const uint16_t*, int);

void mixFrame(benchmark::State& state, Mix mix) {
    const std::vector<uint16_t> bottom = noise(1);
    const std::vector<uint16_t> top = noise(2);
    std::vector<uint16_t> out(kFramePixels);
    for (auto _ : state) {
        mix(out.data(), bottom.data(), top.data(), kFramePixels);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK_CAPTURE(mixFrame, blend, px::fast::blendPixels)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(mixFrame, add, px::fast::addPixels)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(mixFrame, multiply, px::fast::multiplyPixels)->Unit(benchmark::kMicrosecond);

void keyAlpha(benchmark::State& state) {
    std::vector<uint16_t> bottom = noise(1);
    const std::vector<uint16_t> top = noise(2);
    std::vector<uint8_t> alpha(kFramePixels);
    for (size_t i = 0; i < alpha.size(); ++i) {
        alpha[i] = static_cast<uint8_t>(i % 16);
    }
    for (auto _ : state) {
        px::fast::keyByAlpha(bottom.data(), top.data(), alpha.data(), kFramePixels);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(keyAlpha)->Unit(benchmark::kMicrosecond);

void keyBlack(benchmark::State& state) {
    std::vector<uint16_t> bottom = noise(1);
    const std::vector<uint16_t> top = noise(2);
    for (auto _ : state) {
        px::fast::keyByBlack(bottom.data(), top.data(), kFramePixels);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(keyBlack)->Unit(benchmark::kMicrosecond);

using Transition = void (*)(uint16_t*, int, int);

void transition(benchmark::State& state, Transition apply) {
    std::vector<uint16_t> frame = noise(1);
    for (auto _ : state) {
        apply(frame.data(), kFramePixels, 7);
        benchmark::ClobberMemory();
    }
}
BENCHMARK_CAPTURE(transition, flash, px::fast::flashPixels)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(transition, fade, px::fast::fadePixels)->Unit(benchmark::kMicrosecond);

void place(benchmark::State& state, int width, int height, bool composite) {
    const std::vector<uint16_t> frame = noise(1);
    std::vector<uint16_t> surface(static_cast<size_t>(width * height));
    const px::OutputView view = {surface.data(), width, height, static_cast<size_t>(width) * 2,
                                 composite};
    for (auto _ : state) {
        px::fast::placePicture(view, frame.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK_CAPTURE(place, doubled_1280x720, 1280, 720, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(place, centred_720x576, 720, 576, true)->Unit(benchmark::kMicrosecond);

void mixDoubled(benchmark::State& state, px::fast::Mix mix) {
    const std::vector<uint16_t> bottom = noise(1);
    const std::vector<uint16_t> top = noise(2);
    std::vector<uint16_t> surface(4 * kFramePixels);
    const px::OutputView view = {surface.data(), 2 * kFrameWidth, 2 * kFrameHeight, 4 * kFrameWidth,
                                 false};
    for (auto _ : state) {
        px::fast::mixPicture(view, mix, bottom.data(), top.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK_CAPTURE(mixDoubled, blend, px::fast::Mix::kBlend)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(mixDoubled, add, px::fast::Mix::kAdd)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(mixDoubled, multiply, px::fast::Mix::kMultiply)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
