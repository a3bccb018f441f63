#include "tools/clip/jobs/probe.h"

#include <algorithm>
#include <bitset>
#include <cmath>
#include <cstring>
#include <nlohmann/json.hpp>

#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/encoder/quantise.h"
#include "tools/clip/reports/clip_frames.h"
#include "tools/clip/reports/describe.h"

namespace maker {

namespace {

using Pixels = std::vector<uint8_t>;

constexpr int kLowerQualities[] = {60, 40};
constexpr double kLargeSeconds = kSlowSeconds / 2;  // a lower quality is worth a thought from here
constexpr double kNoisy = 1.5;                      // levels of 255
constexpr int kShortestSeconds = 1;                 // that a clip is worth

struct Samples {
    std::vector<Pixels> pictures;
    int frames = 0;  // the others as well
};

// Of all its blocks, one in four, at most three: in the middle of as many equal parts.
bool isSample(int block, int blocks) {
    const int count = std::clamp(blocks / 4, 1, 3);
    for (int i = 0; i < count; ++i) {
        if (block == (2 * i + 1) * blocks / (2 * count)) {
            return true;
        }
    }
    return false;
}

// Where the file does not say how long it is, the blocks of the longest clip are taken, and its
// first one, in case it is short.
Samples samplesOf(VideoSource& source, const EncodeSettings& settings) {
    const int expected = source.expectedFrames();
    const int blocks = expected > 0 ? clip::blocksFor(expected) : clip::kMaxBlocks;
    Samples samples;
    for (; source.step(); ++samples.frames) {
        stopIfInterrupted();
        const int block = samples.frames / clip::kFramesPerBlock;
        if (isSample(block, blocks) || (expected == 0 && block == 0)) {
            samples.pictures.push_back(source.picture());
            applyKey(settings, samples.pictures.back());
        }
    }
    return samples;
}

// In every block's worth of pictures.
bool hasFewColours(const std::vector<Pixels>& pictures, size_t most) {
    std::bitset<kColours> seen;
    for (size_t i = 0; i < pictures.size(); ++i) {
        if (i % clip::kFramesPerBlock == 0) {
            seen.reset();
        }
        for (size_t at = 0; at < pictures[i].size(); at += 4) {
            const uint8_t* pixel = &pictures[i][at];
            seen[nearestColour(pixel[0], pixel[1], pixel[2])] = true;
        }
        if (seen.count() > most) {
            return false;
        }
    }
    return true;
}

// Whether no pixel stands alone between two others along `step`; counts the changes of colour.
bool isEnlarged(const Pixels& picture, size_t step, size_t& changes) {
    const auto differ = [&](size_t a, size_t b) {
        return std::memcmp(&picture[4 * a], &picture[4 * b], 4) != 0;
    };
    const size_t pixels = picture.size() / 4;
    for (size_t i = 2 * step; i < pixels; ++i) {
        const bool change = differ(i, i - step);
        changes += change ? 1 : 0;
        if (change && differ(i - step, i - 2 * step)) {
            return false;
        }
    }
    return true;
}

bool isPixelArt(SourceOptions options) {
    constexpr size_t kMostColours = 64;
    constexpr size_t kLeastChanges = 2000;  // less is a plain shape
    options.fit = Fit::WHOLE;
    options.nearest = true;
    VideoSource source(options);
    if (!source.step() || !hasFewColours({source.picture()}, kMostColours)) {
        return false;
    }
    size_t changes = 0;
    return isEnlarged(source.picture(), 1, changes) &&
           isEnlarged(source.picture(), kFrameWidth, changes) && changes >= kLeastChanges;
}

// What the whole clip has of what the samples have together.
double inProportion(double part, const Probe& probe) {
    return part * probe.frames / probe.sampled;
}

size_t bytesInProportion(size_t part, const Probe& probe) {
    return static_cast<size_t>(std::lround(inProportion(static_cast<double>(part), probe)));
}

// Returns the noise that was left out.
double probeQuality(const Samples& samples, EncodeSettings settings, int quality, Probe& probe) {
    settings.quality = quality;
    settings.records = 0;
    settings.bytes = 0;
    ClipEncoder encoder(clipSettings(settings, probe.alpha));
    for (const Pixels& picture : samples.pictures) {
        stopIfInterrupted();
        encoder.add(picture.data());
    }
    const std::vector<uint8_t> bytes = encoder.finish();
    Description description;
    describe(bytes, description);
    const LoadCost& cost = description.cost;
    const int steps = cost.steps - clip::kStepsBesideRecords;
    probe.blocksCoded += encoder.stats().blocks;
    probe.qualities.push_back(
        {.quality = quality,
         .bytes = bytesInProportion(bytes.size(), probe),
         .memory = slotBytes() + bytesInProportion(cost.memory - slotBytes(), probe),
         .seconds =
             kStepSeconds * (clip::kStepsBesideRecords + std::ceil(inProportion(steps, probe))),
         .psnr = encoder.stats().psnr(),
         .picture = ClipFrames(bytes).picture(probe.sampled / 2)});
    return encoder.stats().noise;
}

// The quality asked for, and lower ones while the clip loads slowly. Gives the noise left out.
double descend(const Samples& samples, const EncodeSettings& settings, Probe& probe) {
    const double noise = probeQuality(samples, settings, settings.quality, probe);
    for (const int quality : kLowerQualities) {
        if (quality < settings.quality && probe.qualities.back().seconds > kLargeSeconds) {
            probeQuality(samples, settings, quality, probe);
        }
    }
    return noise;
}

// All steps of the ladder. Gives the most noise that one leaves out.
double climb(const Samples& samples, const EncodeSettings& settings, Probe& probe) {
    double noise = 0;
    for (const int quality : kLadder) {
        noise = std::max(noise, probeQuality(samples, settings, quality, probe));
    }
    return noise;
}

const char* nameOf(Kind kind) {
    constexpr const char* kNames[] = {"graphics", "pixel art", "film", "noisy film"};
    return kNames[static_cast<size_t>(kind)];
}

}  // namespace

Probe probeInput(const std::string& input, const EncodeSettings& settings, bool ladder) {
    EncodeSettings single = settings;
    single.loop = {};
    if (single.longInput == LongInput::SPLIT) {
        single.longInput = LongInput::CUT;
    }
    const EncodePlan plan = planEncode(input, single);
    VideoSource source(plan.source);
    const Samples samples = samplesOf(source, single);
    if (!source.cutOff().empty() && !settings.partial) {
        throw ToolError("cannot read all of " + input + ": " + source.cutOff());
    }
    if (samples.pictures.empty()) {
        throw ToolError("cannot read " + input + ": it ends before the start asked");
    }
    Probe probe{.frames = samples.frames,
                .sampled = static_cast<int>(samples.pictures.size()),
                .alpha = plan.source.alpha,
                .longer = source.goesOn(),
                .qualities = {},
                .source = Picture(kFrameWidth, kFrameHeight)};
    probe.source.rgba = samples.pictures[samples.pictures.size() / 2];
    const double noise = ladder ? climb(samples, single, probe) : descend(samples, single, probe);
    const bool graphics = hasFewColours(samples.pictures, clip::kPaletteEntries);
    probe.kind = isPixelArt(plan.source) ? Kind::PIXEL_ART
                 : graphics              ? Kind::GRAPHICS
                 : noise >= kNoisy       ? Kind::NOISY_FILM
                                         : Kind::FILM;
    return probe;
}

std::string verdictOf(const Probe& probe) {
    const ProbedQuality& first = probe.qualities.front();
    const ProbedQuality& last = probe.qualities.back();
    const std::string load = decimals(first.seconds, 1) + " s to load";
    if (first.seconds <= kLargeSeconds) {
        return "fits";
    }
    if (last.seconds <= kLargeSeconds) {
        return "large: " + load + "; take --quality " + std::to_string(last.quality);
    }
    const double fits = probe.frames / kStageFps * kLargeSeconds / last.seconds;
    return "large: " + load + "; shorten it, --duration " +
           std::to_string(std::max(kShortestSeconds, static_cast<int>(fits))) + " --quality " +
           std::to_string(last.quality);
}

std::string probeText(const std::string& input, const Probe& probe) {
    std::string text = input + ": " + counted(static_cast<size_t>(probe.frames), "frame") +
                       (probe.longer ? ", its first part" : "") +
                       (probe.alpha ? ", with alpha" : "") + ", " + nameOf(probe.kind) +
                       (probe.kind == Kind::PIXEL_ART ? ": --preset pixel keeps it sharp" : "") +
                       "\n";
    const std::string about = probe.sampled < probe.frames ? "about " : "";
    for (const ProbedQuality& each : probe.qualities) {
        text += "  quality " + std::to_string(each.quality) + ": " + about + sizeText(each.bytes) +
                ", " + decibels(each.psnr, 1) + ", " + sizeText(each.memory) +
                " loaded, ready in " + decimals(each.seconds, 1) + " s\n";
    }
    return text + "  " + verdictOf(probe) + "\n";
}

std::string probeJson(const std::string& input, const Probe& probe) {
    using Json = nlohmann::ordered_json;
    Json qualities = Json::array();
    for (const ProbedQuality& each : probe.qualities) {
        qualities.push_back({{"quality", each.quality},
                             {"bytes", each.bytes},
                             {"memory", each.memory},
                             {"loadSeconds", each.seconds},
                             {"psnr", std::isfinite(each.psnr) ? Json(each.psnr) : Json()}});
    }
    const Json json{{"file", input},
                    {"frames", probe.frames},
                    {"sampled", probe.sampled},
                    {"kind", nameOf(probe.kind)},
                    {"alpha", probe.alpha},
                    {"longer", probe.longer},
                    {"qualities", qualities},
                    {"verdict", verdictOf(probe)}};
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace maker
