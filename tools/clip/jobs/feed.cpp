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
                Frame frame;
                clip->draw(index++, frame);
                toRgba(frame, rgba);
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
    settings.alpha = options.alpha ? AlphaFrom::SOURCE : AlphaFrom::NONE;
    const SourceOptions planned = planEncode(options.path, settings).source;
    const auto source = std::make_shared<VideoSource>(planned);
    return {kFrameHeight, planned.alpha, [source](std::vector<uint8_t>& rgba) {
                if (!source->step()) {
                    return false;
                }
                rgba = source->picture();
                return true;
            }};
}

bool isClip(const SourceOptions& options) {
    return std::filesystem::path(options.path).extension() == ".m19";
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
        roundAll(rgba, alpha);
        return true;
    };
    return feed;
}

}  // namespace maker
