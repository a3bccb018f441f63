#include "tools/doctor/pace.h"

#include <SDL.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <random>
#include <vector>

#include "common/limits.h"
#include "common/rgb565.h"
#include "core/present.h"
#include "px/filters.h"
#include "px/operations.h"

namespace doctor {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kFrames = 25;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Two layers of noise, others in every frame, so that no step finds little to do.
class NoisyLayers {
public:
    NoisyLayers() : random_(kFramePixels + kFrames), alpha_(kFramePixels), snow_(kFramePixels) {
        std::minstd_rand source;
        std::ranges::generate(random_, [&] { return static_cast<uint16_t>(source() >> 8); });
        std::ranges::generate(alpha_, [&] { return static_cast<uint8_t>(source() % 16); });
        std::ranges::generate(snow_, [&] { return static_cast<uint8_t>(source() % 20); });
    }

    void mixOnto(const px::OutputView& view, int frame) {
        const px::Operations& operations = px::operations();
        for (std::vector<uint16_t>& layer : layers_) {
            std::copy_n(random_.begin() + frame, kFramePixels, layer.begin());
            for (const Filter& filter : kFilters) {
                if (const px::Effect effect = operations.effects[filter.id]) {
                    effect(layer.data(), {kDirection, kScroll, snow_.data()});
                }
            }
        }
        operations.mixPicture(view, MODE_KEY,
                              {layers_[0].data(), layers_[1].data(), alpha_.data()});
    }

private:
    static constexpr int kDirection = 0;
    static constexpr int kScroll = 8;

    std::vector<uint16_t> random_;
    std::vector<uint16_t> layers_[kLayers] = {std::vector<uint16_t>(kFramePixels),
                                              std::vector<uint16_t>(kFramePixels)};
    std::vector<uint8_t> alpha_;
    std::vector<uint8_t> snow_;
};

// Half of the frames went better: the odd one that something else held up does not count.
double median(std::vector<double> times) {
    std::ranges::sort(times);
    return times[times.size() / 2];
}

px::OutputView viewOf(std::vector<uint16_t>& pixels) {
    return {pixels.data(), kHdmiWidth, kHdmiHeight, kHdmiWidth * sizeof(uint16_t), false};
}

}  // namespace

PaceFacts measurePace(bool withDisplay) {
    SDL_WM_SetCaption("Velmora", "Velmora");
    SDL_Surface* video =
        withDisplay ? SDL_SetVideoMode(kHdmiWidth, kHdmiHeight, px::kDepth, 0) : nullptr;
    NoisyLayers layers;
    std::vector<uint16_t> pixels(size_t{kHdmiWidth} * kHdmiHeight);
    SDL_Surface* picture =
        SDL_CreateRGBSurfaceFrom(pixels.data(), kHdmiWidth, kHdmiHeight, px::kDepth, kHdmiWidth * 2,
                                 px::kRedMask, px::kGreenMask, px::kBlueMask, 0);
    std::vector<double> made;
    std::vector<double> shown;
    for (int frame = 0; frame < kFrames; ++frame) {
        const Clock::time_point start = Clock::now();
        layers.mixOnto(viewOf(pixels), frame);
        made.push_back(millisecondsSince(start));
        if (video != nullptr) {
            const Clock::time_point mixed = Clock::now();
            SDL_BlitSurface(picture, nullptr, video, nullptr);
            present(video);
            shown.push_back(millisecondsSince(mixed));
        }
    }
    SDL_FreeSurface(picture);
    return {median(made), video != nullptr ? std::optional(median(shown)) : std::nullopt};
}

}  // namespace doctor
