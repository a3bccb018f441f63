#include "tools/clip/jobs/feed.h"

#include <filesystem>
#include <memory>

#include "tools/clip/encoder/quantise.h"
#include "tools/clip/jobs/looped_source.h"
#include "tools/clip/reports/clip_frames.h"

namespace maker {

namespace {

Feed clipFeed(const std::string& path) {
    const auto clip = std::make_shared<ClipFrames>(openClip(path));
    return {clip->height(), clip->alpha(), [clip, index = 0](std::vector<uint8_t>& rgba) mutable {
                if (index == clip->count()) {
                    return false;
                }
                rgba = clip->picture(index++).rgba;
                return true;
            }};
}

Feed videoFeed(const std::string& path, const EncodeSettings& settings, int part) {
    const EncodePlan plan = planEncode(path, settings);
    const auto source = std::make_shared<LoopedSource>(plan, settings);
    std::vector<uint8_t> passed;
    bool there = source->nextClip();
    for (int i = 1; i < part && there; ++i) {
        while (source->next(passed)) {
        }
        there = source->nextClip();
    }
    return {kFrameHeight, plan.source.alpha,
            [source, there](std::vector<uint8_t>& rgba) { return there && source->next(rgba); },
            [source] { return source->source().sampling(); }};
}

void blackenHidden(std::vector<uint8_t>& rgba) {
    for (size_t i = 0; i < rgba.size(); i += 4) {
        if (alphaLevel(rgba[i + 3]) == 0) {
            rgba[i] = rgba[i + 1] = rgba[i + 2] = 0;
        }
    }
}

void roundAll(std::vector<uint8_t>& rgba, bool alpha) {
    Frame frame;
    frame.height = kFrameHeight;
    for (size_t i = 0; i < rgba.size(); i += 4) {
        frame.pixels.push_back(nearestColour(rgba[i], rgba[i + 1], rgba[i + 2]));
        if (alpha) {
            frame.alpha.push_back(alphaLevel(rgba[i + 3]));
        }
    }
    toRgba(frame, rgba);
}

}  // namespace

Feed openFeed(const std::string& path, const EncodeSettings& settings, bool onStage, int part) {
    const bool isClip = std::filesystem::path(path).extension() == ".m19";
    Feed feed = isClip ? clipFeed(path) : videoFeed(path, settings, part);
    feed.next = [next = feed.next, alpha = feed.alpha,
                 rounds = onStage && !isClip](std::vector<uint8_t>& rgba) {
        if (!next(rgba)) {
            return false;
        }
        if (alpha) {
            blackenHidden(rgba);
        }
        if (rounds) {
            roundAll(rgba, alpha);
        }
        return true;
    };
    return feed;
}

}  // namespace maker
