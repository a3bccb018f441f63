#include "tools/clip/feed.h"

#include <filesystem>
#include <memory>

#include "tools/clip/clip_frames.h"
#include "tools/clip/quantise.h"

namespace maker {

namespace {

Feed clipFeed(const std::string& path) {
    const auto clip = std::make_shared<ClipFrames>(openClip(path));
    return {clip->height(), clip->alpha(), [clip, index = 0](std::vector<uint8_t>& rgba) mutable {
                if (index == clip->count()) {
                    return false;
                }
                Frame frame;
                clip->draw(index++, frame);
                toRgba(frame, rgba);
                return true;
            }};
}

Feed videoFeed(const SourceOptions& options) {
    const auto source = std::make_shared<VideoSource>(options);
    return {kFrameHeight, source->alpha(),
            [source](std::vector<uint8_t>& rgba) { return source->next(rgba); }};
}

bool isClip(const SourceOptions& options) {
    return std::filesystem::path(options.path).extension() == ".m19";
}

// Alpha that rounds to level 0 of 15.
constexpr int kHidden = 8;

void blackenHidden(std::vector<uint8_t>& rgba) {
    for (size_t i = 0; i < rgba.size(); i += 4) {
        if (rgba[i + 3] <= kHidden) {
            rgba[i] = rgba[i + 1] = rgba[i + 2] = 0;
        }
    }
}

}  // namespace

Feed openFeed(const SourceOptions& options) {
    Feed feed = isClip(options) ? clipFeed(options.path) : videoFeed(options);
    if (feed.alpha) {
        feed.next = [next = feed.next](std::vector<uint8_t>& rgba) {
            const bool more = next(rgba);
            if (more) {
                blackenHidden(rgba);
            }
            return more;
        };
    }
    return feed;
}

Feed openStageFeed(const SourceOptions& options) {
    Feed feed = openFeed(options);
    if (isClip(options)) {
        return feed;
    }
    feed.next = [next = feed.next, alpha = feed.alpha](std::vector<uint8_t>& rgba) {
        if (!next(rgba)) {
            return false;
        }
        Frame frame;
        quantise(rgba.data(), kFrameHeight, {.alpha = alpha, .dither = false}, frame);
        toRgba(frame, rgba);
        return true;
    };
    return feed;
}

}  // namespace maker
