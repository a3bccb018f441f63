// The options of the command line that frame, colour and filter an input's pictures.

#include <algorithm>
#include <cstdio>
#include <map>

#include "tools/clip/commands.h"

namespace maker {

namespace {

constexpr double kPerCent = 100;
constexpr double kLongestFade = 10;  // seconds, a clip's length

struct Place {
    double across;
    double down;
};

const std::map<std::string, Place> kPlaces{{"centre", {0.5, 0.5}},
                                           {"left", {0, 0.5}},
                                           {"right", {1, 0.5}},
                                           {"top", {0.5, 0}},
                                           {"bottom", {0.5, 1}}};
const std::map<std::string, Deinterlace> kDeinterlaces{
    {"auto", Deinterlace::AUTO}, {"on", Deinterlace::ON}, {"off", Deinterlace::OFF}};
const std::map<std::string, Fold> kFolds{{"left", Fold::LEFT},
                                         {"right", Fold::RIGHT},
                                         {"top", Fold::TOP},
                                         {"bottom", Fold::BOTTOM},
                                         {"quarter", Fold::QUARTER}};

bool takePlace(const std::string& text, Look& look) {
    const auto named = kPlaces.find(text);
    if (named != kPlaces.end()) {
        look.across = named->second.across;
        look.down = named->second.down;
        return true;
    }
    const bool shares = text.ends_with('%');
    char end = 0;
    const int read =
        shares ? std::sscanf(text.c_str(), "%lf%%,%lf%%%c", &look.across, &look.down, &end)
               : std::sscanf(text.c_str(), "%lf,%lf%c", &look.across, &look.down, &end);
    if (read != 2 || text.find_first_not_of("0123456789.,%") != std::string::npos ||
        (shares && std::max(look.across, look.down) > kPerCent)) {
        return false;
    }
    look.across /= shares ? kPerCent : 1;
    look.down /= shares ? kPerCent : 1;
    look.inPixels = !shares;
    return true;
}

// An option of one of these names.
template <class Value, class Take>
CLI::Option* addChoice(CLI::App& command, const char* option,
                       const std::map<std::string, Value>& names, Take take, const char* help) {
    return command
        .add_option_function<std::string>(
            option, [&names, take](const std::string& name) { take(names.at(name)); }, help)
        ->check(CLI::IsMember(names));
}

void addPerCent(CLI::App& command, const char* option, double& value, int least, int most,
                const char* help) {
    const int usual = static_cast<int>(value * kPerCent);
    command
        .add_option_function<double>(
            option, [&value](double percent) { value = percent / kPerCent; }, help)
        ->check(CLI::Range(double(least), double(most)))
        ->option_text(std::to_string(least) + "-" + std::to_string(most) + " (" +
                      std::to_string(usual) + ")");
}

void addFraming(CLI::App& command, Look& look) {
    command
        .add_option_function<std::string>(
            "--position", [&look](const std::string& text) { takePlace(text, look); },
            "which part to keep of a picture that is cut, or the point that comes to the middle, "
            "as 30%,70% of its width and height or as a pixel, 800,450")
        ->check(CLI::Validator(
            [](const std::string& text) {
                Look ignored;
                return takePlace(text, ignored)
                           ? ""
                           : text +
                                 " is not centre, left, right, top, bottom, or a point like "
                                 "30%,70% or 800,450";
            },
            ""))
        ->option_text("centre|left|right|top|bottom|X,Y (centre)");
    command.add_option("--zoom", look.zoom, "enlarge, towards the position, so many times")
        ->check(CLI::Range(1.0, 20.0))
        ->option_text("TIMES (1)");
    command
        .add_option_function<std::string>(
            "--flip",
            [&look](const std::string& sides) {
                look.flipAcross = sides.find('h') != std::string::npos;
                look.flipDown = sides.find('v') != std::string::npos;
            },
            "left to right, upside down, or both")
        ->check(CLI::IsMember(std::vector<std::string>{"h", "v", "hv"}))
        ->option_text("h|v|hv");
    addChoice(
        command, "--mirror", kFolds, [&look](Fold fold) { look.fold = fold; },
        "fold the picture: this half, or the quarter at the top left, appears mirrored in the rest")
        ->option_text("left|right|top|bottom|quarter");
}

void addColours(CLI::App& command, Look& look) {
    addPerCent(command, "--brightness", look.brightness, -100, 100, "lighter or darker, per cent");
    addPerCent(command, "--contrast", look.contrast, 0, 400, "around middle grey, per cent");
    addPerCent(command, "--saturation", look.saturation, 0, 200, "of colours, per cent; 0 is grey");
    command.add_option("--fade-in", look.fadeIn, "begin in black and take so long to appear")
        ->check(CLI::Range(0.0, kLongestFade))
        ->option_text("SECONDS");
    command.add_option("--fade-out", look.fadeOut, "turn black so long before the end")
        ->check(CLI::Range(0.0, kLongestFade))
        ->option_text("SECONDS");
}

}  // namespace

void addLookOptions(CLI::App& command, Look& look) {
    addFraming(command, look);
    addColours(command, look);
    addChoice(
        command, "--deinterlace", kDeinterlaces,
        [&look](Deinterlace choice) { look.deinterlace = choice; },
        "of two half pictures shot one after the other make one without combs: where the film is "
        "marked so, always, or never")
        ->option_text("auto|on|off (auto)");
    command.add_option("--slow", look.slow, "so many times slower, with pictures blended between")
        ->check(CLI::Range(1.0, 100.0))
        ->option_text("TIMES (1)");
    command
        .add_option("--filter", look.filter,
                    "FFmpeg's filters, like hqdn3d or gblur=3,hue=h=90, before all other changes")
        ->check(CLI::Validator(faultOf, ""))
        ->option_text("GRAPH");
}

}  // namespace maker
