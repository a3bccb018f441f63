// velmora-clip encode: clips from videos, animated images and image sequences.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/commands.h"
#include "tools/clip/jobs/clip_names.h"
#include "tools/clip/reports/clip_frames.h"
#include "tools/clip/reports/side_by_side.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

struct EncodeCommand {
    std::vector<std::string> inputs;
    std::string output;
    std::string folder;
    bool keep = false;
    bool dryRun = false;
    std::string beside;  // a file for the comparison; "" for none
    EncodeArguments arguments;
};

struct Outcome {
    EncodeReport report;
    std::vector<fs::path> kept;
};

void checkUse(const EncodeCommand& command) {
    if (command.output.empty() == command.folder.empty()) {
        throw CLI::ValidationError("encode", "where to? -o CLIP or -d FOLDER");
    }
    if (!command.output.empty() && command.inputs.size() > 1) {
        throw CLI::ValidationError("-o", "takes one input; several go to a folder, -d FOLDER");
    }
}

std::vector<fs::path> outputsOf(const EncodeCommand& command) {
    if (!command.output.empty()) {
        checkOutput(command.output);
        if (fs::path(command.output).extension() != ".m19") {
            std::fprintf(stderr, "velmora-clip: warning: only names that end in .m19 are played\n");
        }
        return {command.output};
    }
    ClipNames names;
    std::vector<fs::path> outputs;
    for (const std::string& input : command.inputs) {
        const std::string name = names.give(safeName(input), kNoRoomLimit);
        outputs.push_back(fs::path(command.folder) / (name + ".m19"));
    }
    return outputs;
}

void print(const std::string& input, const Outcome& outcome) {
    for (const fs::path& clip : outcome.kept) {
        std::printf("%s: kept\n", clip.c_str());
    }
    for (const ClipReport& clip : outcome.report.clips) {
        std::puts(reportLine(clip).c_str());
    }
    std::fflush(stdout);
    if (outcome.report.damaged > 0) {
        std::fprintf(stderr, "velmora-clip: warning: %s: %d damaged packets skipped\n",
                     input.c_str(), outcome.report.damaged);
    }
    if (!outcome.report.cutOff.empty()) {
        std::fprintf(stderr, "velmora-clip: warning: %s breaks off: %s\n", input.c_str(),
                     outcome.report.cutOff.c_str());
    }
}

// Encodes the only input and shows beside its clip what the clip was made from.
EncodeReport encodeAndCompare(const EncodeCommand& command, const fs::path& output,
                              const EncodeSettings& settings, EncodeEvents events) {
    SideBySide beside(command.beside);
    std::vector<std::vector<uint8_t>> pictures;
    events.picture = [&pictures](const std::vector<uint8_t>& rgba) { pictures.push_back(rgba); };
    EncodeReport report = encodeFile(command.inputs[0], output, settings, events);
    const ClipFrames clip = openClip(output);
    for (int i = 0; i < clip.count(); ++i) {
        stopIfInterrupted();
        beside.add(pictures[static_cast<size_t>(i)], clip.picture(i).rgba);
    }
    beside.finish();
    return report;
}

int encode(const EncodeCommand& command) {
    const EncodeSettings settings = settingsOf(command.arguments);
    if (command.dryRun) {
        return probeInputs(command.inputs, settings, false);
    }
    checkUse(command);
    if (!command.beside.empty() &&
        (command.inputs.size() > 1 || settings.longInput == LongInput::SPLIT)) {
        throw CLI::ValidationError("--compare", "shows one clip of one input");
    }
    const std::vector<std::string>& inputs = command.inputs;
    const std::vector<fs::path> outputs = outputsOf(command);
    std::vector<Outcome> outcomes(inputs.size());
    const auto make = [&](size_t i, const EncodeSettings& own, const EncodeEvents& events) {
        if (command.keep) {
            outcomes[i].kept = clipsThere(outputs[i], own.longInput);
        }
        if (outcomes[i].kept.empty() && !command.beside.empty()) {
            outcomes[i].report = encodeAndCompare(command, outputs[i], own, events);
        } else if (outcomes[i].kept.empty()) {
            outcomes[i].report = encodeFile(inputs[i], outputs[i], own, events);
        }
    };
    const size_t failed = encodeInOrder(inputs.size(), settings, make, [&](size_t i) {
        print(inputs[i], outcomes[i]);
        outcomes[i] = {};
    });
    return failed == 0 ? kExitOk : kExitFailed;
}

}  // namespace

void addEncode(CLI::App& app, int& status) {
    auto options = std::make_shared<EncodeCommand>();
    CLI::App* command = app.add_subcommand("encode", "make clips from videos or animated images");
    command
        ->add_option("input", options->inputs,
                     "videos, animated images, or patterns of numbered pictures like img%03d.png")
        ->required()
        ->option_text("INPUT... REQUIRED");
    command->add_option("-o,--output", options->output, "the clip to write, of one input")
        ->option_text("CLIP");
    command
        ->add_option("-d,--directory", options->folder,
                     "write clips named like their inputs into this folder")
        ->option_text("FOLDER");
    command->add_flag("--keep", options->keep, "leave clips alone that are already there");
    command->add_flag("--dry-run", options->dryRun,
                      "write nothing; tell from a few blocks what would come of it, as probe does");
    addCompare(*command, options->beside);
    addEncodeOptions(*command, options->arguments);
    command->callback([options, &status] { status = encode(*options); });
}

}  // namespace maker
