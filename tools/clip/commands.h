#pragma once
// The subcommands of velmora-clip. Each adds itself to the command line; when it is the one that
// was asked for, its work runs while the line is parsed and leaves the exit status in `status`.
// What goes wrong is thrown (errors.h).

#include <CLI/CLI.hpp>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/clip/jobs/beats.h"
#include "tools/clip/jobs/encode_job.h"

namespace maker {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitInterrupted = 130;

using AddCommand = void(CLI::App& app, int& status);

AddCommand addEncode, addRemake, addImport, addInfo, addVerify, addCheck, addSheet, addExport,
    addDiff, addDemo, addConformance, addProbe, addPack, addUnpack, addRelink, addPlay,
    addThumbnail;

// In the order of the help.
inline constexpr AddCommand* kCommands[] = {
    addEncode, addRemake, addImport, addProbe,  addInfo,       addVerify,
    addCheck,  addPack,   addUnpack, addRelink, addPlay,       addThumbnail,
    addSheet,  addExport, addDiff,   addDemo,   addConformance};

// The options that say how clips are made, as given; what is not given is the preset's to say.
struct EncodeArguments {
    EncodeSettings settings;  // without what depends on the preset or on beats
    BeatWishes beats;
    std::string preset;
    std::optional<Fit> fit;
    std::optional<int> quality;
    std::vector<const CLI::Option*> options;  // all that there are
};

void addEncodeOptions(CLI::App& command, EncodeArguments& arguments);

// The option --fit.
CLI::Option* addFit(CLI::App& command, std::optional<Fit>& fit, const std::string& help);

// The options that say which part of an input a clip shows, and how fast.
void addTimeOptions(CLI::App& command, EncodeArguments& arguments);

// The option --compare.
void addCompare(CLI::App& command, std::string& path);

// The options that frame, colour and filter.
void addLookOptions(CLI::App& command, Look& look);

// Throws CLI::ValidationError where options do not go together.
EncodeSettings settingsOf(const EncodeArguments& arguments);

// As a clip's options were, but for those that are given now.
EncodeSettings settingsOf(const OptionTexts& kept, const EncodeArguments& changes);

// The command line without the program's name; "--loop crossfade 12" and "--alpha key 00ff00" come
// as one value each, with a colon.
std::vector<std::string> argumentsOf(int argc, char** argv);

// All that decides about a clip's bytes, as one line of text.
std::string fingerprint(const EncodeSettings& settings);

// Prints what each input would become; returns the exit status.
int probeInputs(const std::vector<std::string>& inputs, const EncodeSettings& settings, bool json);

// Encodes so many inputs: `make` each of them, side by side where there are workers, and then
// `print` in their order what came of it; an error is printed in its place. Returns how many
// failed.
size_t encodeInOrder(
    size_t inputs, EncodeSettings settings,
    const std::function<void(size_t, const EncodeSettings&, const EncodeEvents&)>& make,
    const std::function<void(size_t)>& print);

// The line about one clip.
std::string reportLine(const ClipReport& clip);

}  // namespace maker
