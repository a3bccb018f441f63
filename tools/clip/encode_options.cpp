// The options of the command line that say how clips are made, and what they come to.

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "clip/format.h"
#include "tools/base/errors.h"
#include "tools/base/progress.h"
#include "tools/base/texts.h"
#include "tools/clip/commands.h"
#include "tools/clip/jobs/batch.h"

namespace maker {

namespace {

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

// The choices of an option, in the order in which its errors name them.
template <class Value>
using Names = std::vector<std::pair<std::string, Value>>;

const Names<Fit> kFits{{"cover", Fit::COVER},
                       {"contain", Fit::CONTAIN},
                       {"stretch", Fit::STRETCH},
                       {"whole", Fit::WHOLE}};
const Names<LongInput> kLongs{
    {"cut", LongInput::CUT}, {"split", LongInput::SPLIT}, {"fit", LongInput::FIT}};
const Names<LoopKind> kLoops{
    {"none", LoopKind::NONE}, {"pingpong", LoopKind::PINGPONG}, {"best", LoopKind::BEST}};
const Names<AlphaFrom> kAlphas{
    {"auto", AlphaFrom::SOURCE}, {"none", AlphaFrom::NONE}, {"luma", AlphaFrom::BRIGHTNESS}};

template <class Value>
std::optional<Value> named(const Names<Value>& names, const std::string& text) {
    const auto found = std::find_if(names.begin(), names.end(),
                                    [&text](const auto& name) { return name.first == text; });
    return found == names.end() ? std::nullopt : std::optional(found->second);
}

std::string takeLoop(const std::string& text, LoopSettings& loop) {
    const std::string blend = behind(text, kCrossfade);
    const std::optional<LoopKind> kind = named(kLoops, text);
    if (isCrossfade(blend)) {
        loop = {LoopKind::CROSSFADE, std::stoi(blend)};
    } else if (kind) {
        loop = {*kind, 0};
    } else {
        return text + " is not none, pingpong, crossfade:N (1 to " + std::to_string(kLongestBlend) +
               ") or best";
    }
    return "";
}

std::string takeAlpha(const std::string& text, EncodeSettings& settings) {
    const std::string colour = behind(text, kKey);
    const std::optional<AlphaFrom> from = named(kAlphas, text);
    if (!from && !isColour(colour)) {
        return text + " is not auto, none, luma or key:RRGGBB";
    }
    settings.alpha = from.value_or(AlphaFrom::COLOUR);
    if (!from) {
        const auto channel = [&colour](size_t at) {
            return static_cast<uint8_t>(std::stoi(colour.substr(at, 2), nullptr, 16));
        };
        settings.key = {channel(0), channel(2), channel(4), 255};
    }
    return "";
}

std::string takeNoise(const std::string& text, EncodeSettings& settings) {
    constexpr double kMost = 50;
    double level = 0;
    if (text == "auto") {
        settings.denoise.reset();
        return "";
    }
    if (text != "off" &&
        (!CLI::detail::lexical_cast(text, level) || !(level >= 0 && level <= kMost))) {
        return text + " is not auto, off or a number from 0 to 50";
    }
    settings.denoise = level;
    return "";
}

// What a text of the option comes to; `take` gives what is wrong with it, or "".
template <class Take>
CLI::Option* addParsed(CLI::App& command, const char* option, Take take, const char* help) {
    return command.add_option_function<std::string>(option, take, help)
        ->check(CLI::Validator([take](const std::string& text) { return take(text); }, ""));
}

void addPictureOptions(CLI::App& command, EncodeArguments& arguments) {
    EncodeSettings& settings = arguments.settings;
    addFit(command, arguments.fit,
           "fill the frame, show the whole picture, distort, or enlarge pixels by a whole factor")
        ->option_text("cover|contain|stretch|whole (cover)");
    command
        .add_option_function<std::string>(
            "--long", [&](const std::string& name) { settings.longInput = *named(kLongs, name); },
            "of more than 256 frames take the first, make several clips, or play them faster")
        ->check(CLI::IsMember(kLongs))
        ->option_text("cut|split|fit (cut)");
    addParsed(
        command, "--loop", [&](const std::string& text) { return takeLoop(text, settings.loop); },
        "play forwards and backwards, blend the last N frames into the first, or find "
        "the part that repeats best (in the first 40 seconds)")
        ->option_text("none|pingpong|crossfade:N|best (none)");
    addParsed(
        command, "--alpha", [&](const std::string& text) { return takeAlpha(text, settings); },
        "keep transparency where there is some, drop it, or make it from brightness "
        "or around a colour")
        ->option_text("auto|none|luma|key:RRGGBB (auto)");
}

void addCodingOptions(CLI::App& command, EncodeArguments& arguments) {
    EncodeSettings& settings = arguments.settings;
    command
        .add_option(
            "--preset", arguments.preset,
            "auto: each block of frames as its colours ask for; graphics: few colours, kept "
            "exactly; footage: filmed; pixel: graphics enlarged by a whole factor without "
            "blur. Other options come first")
        ->check(CLI::IsMember({"auto", "graphics", "footage", "pixel"}))
        ->option_text("auto|graphics|footage|pixel (auto)");
    command
        .add_option("--quality", arguments.quality,
                    "100 keeps every pixel, below small differences are given up")
        ->check(CLI::Range(0, kBestQuality))
        ->option_text("0-100 (" + std::to_string(kDefaultQuality) + "; graphics, pixel: 100)");
    command.add_flag("--dither", settings.dither, "dither colours to 16 bits");
    addParsed(
        command, "--denoise", [&](const std::string& text) { return takeNoise(text, settings); },
        "leave out a camera's noise: what is found of it, none, or so many levels of 255")
        ->option_text("auto|off|N (auto)");
    command
        .add_option("--records", settings.records,
                    "tile records that a clip may have: fewer load faster")
        ->check(CLI::Range(int64_t{1}, kLargestBudget))
        ->option_text("N");
    command.add_option("--size", settings.bytes, "bytes that a clip may have, like 500K or 8M")
        ->transform(CLI::AsSizeValue(false))
        ->check(CLI::Range(int64_t{1}, kLargestBudget))
        ->option_text("BYTES");
    command.add_flag("--partial", settings.partial,
                     "take what is there of an input that breaks off");
    command.add_option("-j,--jobs", settings.workers, "work on this many cores at once")
        ->check(CLI::Range(1, 1024))
        ->option_text("N (all)");
}

}  // namespace

CLI::Option* addFit(CLI::App& command, std::optional<Fit>& fit, const std::string& help) {
    return command
        .add_option_function<std::string>(
            "--fit", [&fit](const std::string& name) { fit = named(kFits, name); }, help)
        ->check(CLI::IsMember(kFits));
}

void addCompare(CLI::App& command, std::string& path) {
    command
        .add_option("--compare", path,
                    "show source, clip and their difference, 8 times as large, side by side: a few "
                    "frames and the worst as a picture, or all as an exact film")
        ->option_text("FILE.png|FILE.mkv");
}

void addEncodeOptions(CLI::App& command, EncodeArguments& arguments) {
    arguments.settings.workers = defaultWorkers();
    const size_t others = command.get_options().size();
    addTimeOptions(command, arguments);
    addPictureOptions(command, arguments);
    addLookOptions(command, arguments.settings.look);
    addCodingOptions(command, arguments);
    const std::vector<CLI::Option*> all = command.get_options();
    arguments.options.assign(all.begin() + static_cast<std::ptrdiff_t>(others), all.end());
}

// But for the number of cores, which says nothing about the clip.
OptionTexts givenOptions(const EncodeArguments& arguments) {
    OptionTexts given;
    for (const CLI::Option* option : arguments.options) {
        if (option->count() > 0 && option->get_name() != "--jobs") {
            given.emplace_back(option->get_name(), option->results().front());
        }
    }
    return given;
}

EncodeSettings settingsOf(const OptionTexts& kept, const EncodeArguments& changes) {
    OptionTexts texts = givenOptions(changes);
    std::copy_if(kept.begin(), kept.end(), std::back_inserter(texts), [&changes](const auto& old) {
        return std::none_of(
            changes.options.begin(), changes.options.end(),
            [&old](const auto* now) { return now->count() > 0 && now->get_name() == old.first; });
    });
    std::vector<std::string> words;
    for (const auto& [name, text] : texts) {
        words.push_back(name + "=" + text);
    }
    CLI::App parser;
    EncodeArguments arguments;
    addEncodeOptions(parser, arguments);
    parser.parse(std::move(words));
    EncodeSettings settings = settingsOf(arguments);
    settings.workers = changes.settings.workers;
    return settings;
}

EncodeSettings settingsOf(const EncodeArguments& arguments) {
    const bool pixel = arguments.preset == "pixel";
    const bool graphics = pixel || arguments.preset == "graphics";
    EncodeSettings settings = arguments.settings;
    settings.given = givenOptions(arguments);
    settings.fit = arguments.fit.value_or(pixel ? Fit::WHOLE : Fit::COVER);
    settings.nearest = pixel;
    settings.content = graphics                        ? Content::GRAPHICS
                       : arguments.preset == "footage" ? Content::FOOTAGE
                                                       : Content::MIXED;
    settings.quality = arguments.quality.value_or(graphics ? kBestQuality : kDefaultQuality);
    const std::string beatFault = fitBeats(arguments.beats, settings);
    if (!beatFault.empty()) {
        throw CLI::ValidationError("beats", beatFault);
    }
    if (settings.loop.kind == LoopKind::BEST && settings.longInput == LongInput::SPLIT) {
        throw CLI::ValidationError("--loop best", "makes one clip, --long split several");
    }
    if (settings.loop.kind != LoopKind::NONE && settings.look.fades()) {
        throw CLI::ValidationError("--loop", "leaves no beginning and end to fade");
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
                  "start %g duration %g fps %g beats %g reverse %d fit %d nearest %d long %d loop "
                  "%d %d alpha %d "
                  "%02x%02x%02x content %d quality %d dither %d denoise %g records %lld bytes %lld "
                  "partial %d",
                  settings.start, settings.duration, settings.fps, settings.beats,
                  settings.reverse ? 1 : 0, static_cast<int>(settings.fit),
                  settings.nearest ? 1 : 0, static_cast<int>(settings.longInput),
                  static_cast<int>(settings.loop.kind), settings.loop.blend,
                  static_cast<int>(settings.alpha), settings.key.red, settings.key.green,
                  settings.key.blue, static_cast<int>(settings.content), settings.quality,
                  settings.dither ? 1 : 0, settings.denoise.value_or(-1),
                  static_cast<long long>(settings.records), static_cast<long long>(settings.bytes),
                  settings.partial ? 1 : 0);
    return text + textOf(settings.look);
}

size_t encodeInOrder(
    size_t inputs, EncodeSettings settings,
    const std::function<void(size_t, const EncodeSettings&, const EncodeEvents&)>& make,
    const std::function<void(size_t)>& print) {
    const int workers = settings.workers;
    // One clip is coded by all workers together, several by one each.
    settings.workers = inputs > 1 ? 1 : workers;
    std::vector<std::string> errors(inputs);
    Progress progress(inputs);
    const auto task = [&](size_t i) {
        const auto show = [&progress, i](const ProgressStep& step) { progress.update(i, step); };
        try {
            make(i, settings, {.progress = show});
        } catch (const Interrupted&) {
            throw;
        } catch (const std::exception& error) {
            errors[i] = lineOf(error);
        }
        progress.finish(i);
    };
    size_t failed = 0;
    runInOrder(inputs, workers, task, [&](size_t i) {
        progress.aside([&] {
            if (errors[i].empty()) {
                print(i);
                std::fflush(stdout);
            } else {
                std::fprintf(stderr, "velmora-clip: %s\n", errors[i].c_str());
                ++failed;
            }
        });
    });
    return failed;
}

std::string reportLine(const ClipReport& clip) {
    const std::string cost = std::to_string(clip.records) + " records, " + sizeText(clip.memory) +
                             " loaded, ready in " + decimals(clip.seconds, 1) + " s";
    return clip.path.string() + ": " + counted(static_cast<size_t>(clip.frames), "frame") + ", " +
           sizeText(clip.bytes) + ", " + decibels(clip.psnr, 1) + ", " + cost +
           (clip.note.empty() ? "" : "; " + clip.note);
}

}  // namespace maker
