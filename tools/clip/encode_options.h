#pragma once
// The options of the command line that say how clips are made, and what they come to.

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/clip/jobs/encode_job.h"

namespace maker {

// As given; what is not given is the preset's to say.
struct EncodeArguments {
    double start = 0;
    double duration = 0;
    double fps = kStageFps;
    std::string fit;
    std::string longInput = "cut";
    std::string loop = "none";
    std::string alpha = "auto";
    std::string preset;
    std::optional<int> quality;
    bool dither = false;
    int64_t records = 0;
    int64_t bytes = 0;
    bool partial = false;
    int workers = 1;
};

// One of the names that --fit takes.
Fit fitOf(const std::string& name);
CLI::Validator isFit();

void addEncodeOptions(CLI::App& command, EncodeArguments& arguments);

// Throws CLI::ValidationError where options do not go together.
EncodeSettings settingsOf(const EncodeArguments& arguments);

// The command line without the program's name; "--loop crossfade 12" and "--alpha key 00ff00" come
// as one value each, with a colon.
std::vector<std::string> argumentsOf(int argc, char** argv);

// All that decides about a clip's bytes, as one line of text.
std::string fingerprint(const EncodeSettings& settings);

// The line about one clip.
std::string reportLine(const ClipReport& clip);

}  // namespace maker
