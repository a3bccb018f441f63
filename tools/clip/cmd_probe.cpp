// velmora-clip probe: what encode would make of an input.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/commands.h"
#include "tools/clip/jobs/batch.h"
#include "tools/clip/jobs/probe.h"
#include "tools/clip/media/movie.h"

namespace maker {

int probeInputs(const std::vector<std::string>& inputs, const EncodeSettings& settings, bool json) {
    int status = kExitOk;
    const char* before = json ? "[\n" : "";
    for (const std::string& input : inputs) {
        try {
            const Probe probe = probeInput(input, settings);
            std::printf("%s%s", before,
                        (json ? probeJson(input, probe) : probeText(input, probe)).c_str());
            before = json ? ",\n" : "";
            std::fflush(stdout);
        } catch (const ToolError& error) {
            std::fprintf(stderr, "velmora-clip: %s\n", error.what());
            status = kExitFailed;
        }
    }
    if (json) {
        std::puts(before[0] == '[' ? "[]" : "\n]");
    }
    return status;
}

namespace {

struct ProbeOptions {
    std::vector<std::string> inputs;
    EncodeArguments arguments;
    std::string ladder;  // a file for the picture; "" for none
    bool json = false;
};

void makeLadder(const ProbeOptions& options) {
    if (options.inputs.size() != 1 || options.json) {
        throw CLI::ValidationError("--ladder", "is a picture of one input");
    }
    if (std::filesystem::path(options.ladder).extension() != kPng.ending) {
        throw ToolError("a ladder is a PNG picture: give " + options.ladder + " the ending " +
                        kPng.ending);
    }
    checkOutput(options.ladder);
    const std::string& input = options.inputs[0];
    const Probe probe = probeInput(input, settingsOf(options.arguments), true);
    writeWholeFile(options.ladder, pictureFile(kPng, drawLadder(input, probe), false));
    std::fputs(probeText(input, probe).c_str(), stdout);
}

}  // namespace

void addProbe(CLI::App& app, int& status) {
    auto options = std::make_shared<ProbeOptions>();
    CLI::App* command =
        app.add_subcommand("probe", "tell what clips videos or animated images would make");
    command->add_option("input", options->inputs, "as for encode")
        ->required()
        ->option_text("INPUT... REQUIRED");
    command->add_flag("--json", options->json, "as a JSON array of one object an input");
    command
        ->add_option("--ladder", options->ladder,
                     "the qualities 100, 90 ... 40 side by side, with size and load seconds")
        ->option_text("FILE.png");
    command->footer(
        "From up to three blocks of 16 frames: the kind of pictures, the size, the memory and how "
        "long\nthe clip loads, and what to do. Nothing is written. encode --dry-run does the same "
        "with\nencode's options.");
    command->callback([options, &status] {
        options->arguments.settings.workers = defaultWorkers();
        if (!options->ladder.empty()) {
            makeLadder(*options);
            status = kExitOk;
            return;
        }
        status = probeInputs(options->inputs, settingsOf(options->arguments), options->json);
    });
}

}  // namespace maker
