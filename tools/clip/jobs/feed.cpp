#include "tools/clip/jobs/feed.h"

#include <filesystem>
#include <memory>

#include "tools/clip/encoder/quantise.h"
#include "tools/clip/jobs/encode_job.h"
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

// As encode would take the input with these options.
Feed videoFeed(const SourceOptions& options) {
    EncodeSettings settings;
    settings.start = options.start;
    settings.duration = options.duration;
    settings.fps = options.fps;
    settings.fit = options.fit;
    settings.look = options.look;
    settings.alpha = options.alpha ? AlphaFrom::SOURCE : AlphaFrom::NONE;
    const SourceOptions planned = planEncode(options.path, settings).source;
    const auto source = std::make_shared<VideoSource>(planned);
    return {kFrameHeight, planned.alpha,
            [source](std::vector<uint8_t>& rgba) {
                if (!source->step()) {
                    return false;
                }
                rgba = source->picture();
                return true;
            },
            [source] { return source->sampling(); }};
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

Feed openFeed(const SourceOptions& options, bool onStage) {
    const bool isClip = std::filesystem::path(options.path).extension() == ".m19";
    Feed feed = isClip ? clipFeed(options.path) : videoFeed(options);
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
