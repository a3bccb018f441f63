// Mixing and placing in one pass against row by row, on surfaces of many sizes.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <vector>

#include "bench/vector_targets.h"
#include "common/limits.h"
#include "px/kernels.h"
#include "px/output_fast.h"

namespace {

using Mix = void (*)(uint16_t*, const uint16_t*, const uint16_t*, int);

std::vector<uint16_t> noise(unsigned seed) {
    std::mt19937 random(seed);
    std::vector<uint16_t> frame(kFramePixels);
    for (uint16_t& pixel : frame) {
        pixel = static_cast<uint16_t>(random() % 4 == 0 ? 0 : random() & 0xFFFF);
    }
    return frame;
}

struct Size {
    int width;
    int height;
    int spare;  // pixels between the rows
    bool composite;
};

constexpr Size kSizes[] = {
    {1280, 720, 0, false}, {1280, 720, 7, false}, {1280, 768, 0, false}, {1280, 719, 0, false},
    {1366, 768, 2, false}, {1024, 768, 0, false}, {1279, 720, 1, false}, {1920, 1080, 0, false},
    {720, 576, 0, true},   {720, 480, 4, true},   {720, 481, 0, true},   {1280, 720, 0, true},
    {320, 240, 0, true},
};

// Layers and a surface with rows of guards around it.
struct Scene {
    explicit Scene(Size size)
        : stride(static_cast<size_t>(size.width + size.spare)),
          surface(stride * static_cast<size_t>(size.height + 2), 0x5A5A),
          view{surface.data() + stride, size.width, size.height, stride * 2, size.composite} {}
    bool sameAs(const Scene& other) const {
        return surface == other.surface && bottom == other.bottom && top == other.top;
    }

    std::vector<uint16_t> bottom = noise(1);
    std::vector<uint16_t> top = noise(2);
    size_t stride;
    std::vector<uint16_t> surface;
    px::OutputView view;
};

using Draw = std::function<void(Scene&)>;

void expectSame(const Draw& plain, const Draw& fast) {
    for (const Size& size : kSizes) {
        Scene expected(size);
        plain(expected);
        for (const VectorTarget& target : vectorTargets()) {
            useTarget(target);
            Scene scene(size);
            fast(scene);
            EXPECT_TRUE(scene.sameAs(expected))
                << target.name << " " << size.width << " x " << size.height;
        }
    }
}

void expectSameMix(Mix plain, px::fast::Mix mix) {
    expectSame(
        [=](Scene& s) {
            uint16_t mixed[kFrameWidth];
            px::beginPicture(s.view);
            for (int y = 0; y < kFrameHeight; ++y) {
                const int at = y * kFrameWidth;
                plain(mixed, s.bottom.data() + at, s.top.data() + at, kFrameWidth);
                px::placeRow(s.view, mixed, y);
            }
        },
        [=](Scene& s) { px::fast::mixPicture(s.view, mix, s.bottom.data(), s.top.data()); });
}

TEST(FastPicture, Mixes_AreAsRowByRow) {
    expectSameMix(px::blendPixels, px::fast::Mix::kBlend);
    expectSameMix(px::addPixels, px::fast::Mix::kAdd);
    expectSameMix(px::multiplyPixels, px::fast::Mix::kMultiply);
}

TEST(FastPicture, Placing_IsAsRowByRow) {
    expectSame([](Scene& s) { px::placePicture(s.view, s.bottom.data()); },
               [](Scene& s) { px::fast::placePicture(s.view, s.bottom.data()); });
}

TEST(FastPicture, KeyByBlack_StaysInTheBottomLayer) {
    expectSame(
        [](Scene& s) {
            px::keyByBlack(s.bottom.data(), s.top.data(), kFramePixels);
            px::placePicture(s.view, s.bottom.data());
        },
        [](Scene& s) { px::fast::keyPicture(s.view, s.bottom.data(), s.top.data(), nullptr); });
}

TEST(FastPicture, KeyByAlpha_StaysInTheBottomLayer) {
    std::mt19937 random(15);
    std::vector<uint8_t> alpha(kFramePixels);
    for (uint8_t& level : alpha) {
        level = static_cast<uint8_t>(random() % 16);
    }
    expectSame(
        [&](Scene& s) {
            px::keyByAlpha(s.bottom.data(), s.top.data(), alpha.data(), kFramePixels);
            px::placePicture(s.view, s.bottom.data());
        },
        [&](Scene& s) {
            px::fast::keyPicture(s.view, s.bottom.data(), s.top.data(), alpha.data());
        });
}

}  // namespace
