#include "tools/clip/encode_options.h"

#include <algorithm>
#include <cstdio>

#include "clip/format.h"
#include "tools/clip/base/texts.h"
#include "tools/clip/jobs/batch.h"

namespace maker {

namespace {

constexpr double kLongest = 1e6;  // seconds
constexpr int64_t kLargestBudget = int64_t{1} << 40;
constexpr int kLongestBlend = clip::kMaxFrames - 1;
constexpr const char* kCrossfade = "crossfade:";
constexpr const char* kKey = "key:";

bool isNumber(const std::string& text, const char* digits) {
    return !text.empty() && text.find_first_not_of(digits) == std::string::npos;
}

bool isCrossfade(const std::string& text) {
    return isNumber(text, "0123456789") && text.size() <= 3 && std::stoi(text) >= 1 &&
           std::stoi(text) <= kLongestBlend;
}

bool isColour(const std::string& text) {
    return text.size() == 6 && isNumber(text, "0123456789abcdefABCDEF");
}

std::string behind(const std::string& text, const std::string& prefix) {
    return text.starts_with(prefix) ? text.substr(prefix.size()) : "";
}

std::string checkLoop(const std::string& text) {
    const bool good = text == "none" || text == "pingpong" || text == "best" ||
                      isCrossfade(behind(text, kCrossfade));
    return good ? ""
                : text + " is not none, pingpong, crossfade:N (1 to " +
                      std::to_string(kLongestBlend) + ") or best";
}

std::string checkAlpha(const std::string& text) {
    const bool good =
        text == "auto" || text == "none" || text == "luma" || isColour(behind(text, kKey));
    return good ? "" : text + " is not auto, none, luma or key:RRGGBB";
}

LoopSettings loopOf(const std::string& text) {
    if (text.starts_with(kCrossfade)) {
        return {LoopKind::CROSSFADE, std::stoi(behind(text, kCrossfade))};
    }
    return {text == "pingpong" ? LoopKind::PINGPONG
            : text == "best"   ? LoopKind::BEST
                               : LoopKind::NONE,
            0};
}

Colour colourOf(const std::string& text) {
    const auto channel = [&text](size_t at) {
        return static_cast<uint8_t>(std::stoi(text.substr(at, 2), nullptr, 16));
    };
    return {channel(0), channel(2), channel(4), 255};
}

void addPictureOptions(CLI::App& command, EncodeArguments& arguments) {
    command.add_option("--start", arguments.start, "begin at this second of the input")
        ->check(CLI::Range(0.0, kLongest))
        ->option_text("SECONDS");
    command.add_option("--duration", arguments.duration, "take this many seconds")
        ->check(CLI::Range(1e-3, kLongest))
        ->option_text("SECONDS");
    command
        .add_option("--fps", arguments.fps,
                    "frames a second of the clip: 25.6, the stage's own pace, keeps the input's "
                    "speed, more slows it down; each picture of an image sequence is one frame")
        ->check(CLI::Range(0.01, 1000.0))
        ->option_text("RATE (25.6)");
    command
        .add_option("--fit", arguments.fit,
                    "fill the frame, show the whole picture, distort, or enlarge pixels by a "
                    "whole factor")
        ->check(isFit())
        ->option_text("cover|contain|stretch|whole (cover)");
    command
        .add_option("--long", arguments.longInput,
                    "of more than 256 frames take the first, make several clips, or play them "
                    "faster")
        ->check(CLI::IsMember({"cut", "split", "fit"}))
        ->option_text("cut|split|fit (cut)");
    command
        .add_option("--loop", arguments.loop,
                    "play forwards and backwards, blend the last N frames into the first, or find "
                    "the part that repeats best (in the first 40 seconds)")
        ->check(CLI::Validator(checkLoop, ""))
        ->option_text("none|pingpong|crossfade:N|best (none)");
    command
        .add_option("--alpha", arguments.alpha,
                    "keep transparency where there is some, drop it, or make it from brightness "
                    "or around a colour")
        ->check(CLI::Validator(checkAlpha, ""))
        ->option_text("auto|none|luma|key:RRGGBB (auto)");
}

void addCodingOptions(CLI::App& command, EncodeArguments& arguments) {
    command
        .add_option("--preset", arguments.preset,
                    "graphics: few colours, kept exactly; footage: filmed; pixel: graphics "
                    "enlarged by a whole factor without blur. Other options come first")
        ->check(CLI::IsMember({"graphics", "footage", "pixel"}))
        ->option_text("graphics|footage|pixel");
    command
        .add_option("--quality", arguments.quality,
                    "100 keeps every pixel, below small differences are given up")
        ->check(CLI::Range(0, kBestQuality))
        ->option_text("0-100 (" + std::to_string(kDefaultQuality) + "; graphics, pixel: 100)");
    command.add_flag("--dither", arguments.dither, "dither colours to 16 bits");
    command
        .add_option("--records", arguments.records,
                    "tile records that a clip may have: fewer load faster")
        ->check(CLI::Range(int64_t{1}, kLargestBudget))
        ->option_text("N");
    command.add_option("--size", arguments.bytes, "bytes that a clip may have, like 500K or 8M")
        ->transform(CLI::AsSizeValue(false))
        ->check(CLI::Range(int64_t{1}, kLargestBudget))
        ->option_text("BYTES");
    command.add_flag("--partial", arguments.partial,
                     "take what is there of an input that breaks off");
    command.add_option("-j,--jobs", arguments.workers, "work on this many cores at once")
        ->check(CLI::Range(1, 1024))
        ->option_text("N (all)");
}

}  // namespace

Fit fitOf(const std::string& name) {
    return name == "contain"   ? Fit::CONTAIN
           : name == "stretch" ? Fit::STRETCH
           : name == "whole"   ? Fit::WHOLE
                               : Fit::COVER;
}

CLI::Validator isFit() {
    return CLI::IsMember({"cover", "contain", "stretch", "whole"});
}

void addEncodeOptions(CLI::App& command, EncodeArguments& arguments) {
    arguments.workers = defaultWorkers();
    addPictureOptions(command, arguments);
    addCodingOptions(command, arguments);
}

EncodeSettings settingsOf(const EncodeArguments& arguments) {
    const bool pixel = arguments.preset == "pixel";
    const bool graphics = pixel || arguments.preset == "graphics";
    EncodeSettings settings;
    settings.start = arguments.start;
    settings.duration = arguments.duration;
    settings.fps = arguments.fps;
    settings.fit = fitOf(arguments.fit.empty() && pixel ? "whole" : arguments.fit);
    settings.nearest = pixel;
    settings.longInput = arguments.longInput == "split" ? LongInput::SPLIT
                         : arguments.longInput == "fit" ? LongInput::FIT
                                                        : LongInput::CUT;
    settings.loop = loopOf(arguments.loop);
    settings.alpha = arguments.alpha == "auto"   ? AlphaFrom::SOURCE
                     : arguments.alpha == "none" ? AlphaFrom::NONE
                     : arguments.alpha == "luma" ? AlphaFrom::BRIGHTNESS
                                                 : AlphaFrom::COLOUR;
    if (settings.alpha == AlphaFrom::COLOUR) {
        settings.key = colourOf(behind(arguments.alpha, kKey));
    }
    settings.content = graphics                        ? Content::GRAPHICS
                       : arguments.preset == "footage" ? Content::FOOTAGE
                                                       : Content::MIXED;
    settings.quality = arguments.quality.value_or(graphics ? kBestQuality : kDefaultQuality);
    settings.dither = arguments.dither;
    settings.records = arguments.records;
    settings.bytes = arguments.bytes;
    settings.partial = arguments.partial;
    settings.workers = arguments.workers;
    if (settings.loop.kind == LoopKind::BEST && settings.longInput == LongInput::SPLIT) {
        throw CLI::ValidationError("--loop best", "makes one clip, --long split several");
    }
    return settings;
}

std::vector<std::string> argumentsOf(int argc, char** argv) {
    const std::vector<std::string> given(argv + std::min(argc, 1), argv + argc);
    std::vector<std::string> joined;
    for (const std::string& argument : given) {
        const std::string before = joined.empty() ? "" : joined.back();
        const std::string option = joined.size() < 2 ? "" : joined[joined.size() - 2];
        const bool crossfade =
            (option == "--loop" && before == "crossfade") || before == "--loop=crossfade";
        const bool key = (option == "--alpha" && before == "key") || before == "--alpha=key";
        if ((crossfade && isCrossfade(argument)) || (key && isColour(argument))) {
            joined.back().append(":").append(argument);
        } else {
            joined.push_back(argument);
        }
    }
    return joined;
}

std::string fingerprint(const EncodeSettings& settings) {
    char text[400];
    std::snprintf(text, sizeof text,
                  "start %g duration %g fps %g fit %d nearest %d long %d loop %d %d alpha %d "
                  "%02x%02x%02x content %d quality %d dither %d records %lld bytes %lld partial %d",
                  settings.start, settings.duration, settings.fps, static_cast<int>(settings.fit),
                  settings.nearest ? 1 : 0, static_cast<int>(settings.longInput),
                  static_cast<int>(settings.loop.kind), settings.loop.blend,
                  static_cast<int>(settings.alpha), settings.key.red, settings.key.green,
                  settings.key.blue, static_cast<int>(settings.content), settings.quality,
                  settings.dither ? 1 : 0, static_cast<long long>(settings.records),
                  static_cast<long long>(settings.bytes), settings.partial ? 1 : 0);
    return text;
}

std::string reportLine(const ClipReport& clip) {
    const std::string cost = std::to_string(clip.records) + " records, " + sizeText(clip.memory) +
                             " loaded, ready in " + decimals(clip.seconds, 1) + " s";
    return clip.path.string() + ": " + counted(static_cast<size_t>(clip.frames), "frame") + ", " +
           sizeText(clip.bytes) + ", " + decibels(clip.psnr, 1) + ", " + cost +
           (clip.note.empty() ? "" : "; " + clip.note);
}

}  // namespace maker
