// velmora-clip encode: clips from videos, animated images and image sequences.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/clip/base/atomic_file.h"
#include "tools/clip/base/errors.h"
#include "tools/clip/base/progress.h"
#include "tools/clip/commands.h"
#include "tools/clip/jobs/batch.h"
#include "tools/clip/jobs/clip_names.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

struct EncodeCommand {
    std::vector<std::string> inputs;
    std::string output;
    std::string folder;
    bool keep = false;
    EncodeArguments arguments;
};

struct Outcome {
    EncodeReport report;
    std::string error;
    bool kept = false;
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
        const fs::path folder = folderOf(command.output);
        std::error_code ignored;
        if (!fs::is_directory(folder, ignored)) {
            throw ToolError("cannot write " + command.output + ": no folder " + folder.string());
        }
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

void print(const std::string& input, const fs::path& output, const Outcome& outcome) {
    if (!outcome.error.empty()) {
        std::fprintf(stderr, "velmora-clip: %s\n", outcome.error.c_str());
        return;
    }
    if (outcome.kept) {
        std::printf("%s: kept\n", output.c_str());
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

int encode(const EncodeCommand& command) {
    checkUse(command);
    EncodeSettings settings = settingsOf(command.arguments);
    const int workers = settings.workers;
    const std::vector<std::string>& inputs = command.inputs;
    // One clip is coded by all workers together, several by one each.
    settings.workers = inputs.size() > 1 ? 1 : workers;
    const std::vector<fs::path> outputs = outputsOf(command);
    std::vector<Outcome> outcomes(inputs.size());
    int status = kExitOk;
    Progress progress(inputs.size());
    const auto task = [&](size_t i) {
        std::error_code ignored;
        outcomes[i].kept = command.keep && fs::exists(outputs[i], ignored);
        const EncodeEvents events{
            [&progress, i](int done, int expected) { progress.update(i, done, expected); }, {}};
        try {
            if (!outcomes[i].kept) {
                outcomes[i].report = encodeFile(inputs[i], outputs[i], settings, events);
            }
        } catch (const Interrupted&) {
            throw;
        } catch (const std::exception& error) {
            outcomes[i].error = lineOf(error);
        }
        progress.finish(i);
    };
    runInOrder(inputs.size(), workers, task, [&](size_t i) {
        progress.aside([&] { print(inputs[i], outputs[i], outcomes[i]); });
        status = outcomes[i].error.empty() ? status : kExitFailed;
        outcomes[i] = {};
    });
    return status;
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
    addEncodeOptions(*command, options->arguments);
    command->callback([options, &status] { status = encode(*options); });
}

}  // namespace maker
