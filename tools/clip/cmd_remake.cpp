// velmora-clip remake: clips made again from where they came from, with other options.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tools/clip/commands.h"
#include "tools/clip/jobs/clip_origin.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

struct RemakeCommand {
    std::vector<std::string> clips;
    EncodeArguments arguments;
};

// Of a split input all parts are made, into the name that they share.
fs::path outputOf(const fs::path& clip, const ClipOrigin& origin) {
    return origin.part > 0 ? clip.parent_path() / origin.output : clip;
}

int remake(const RemakeCommand& command) {
    std::set<fs::path> asked;
    std::vector<fs::path> clips;
    for (const fs::path clip : command.clips) {
        const std::optional<ClipOrigin> origin = readOrigin(clip);
        if (asked.insert(origin ? outputOf(clip, *origin) : clip).second) {
            clips.push_back(clip);
        }
    }
    std::vector<EncodeReport> reports(clips.size());
    const auto make = [&](size_t i, const EncodeSettings& common, const EncodeEvents& events) {
        const ClipOrigin origin = checkedOrigin(clips[i]);
        EncodeSettings settings = settingsOf(origin.options, command.arguments);
        settings.workers = common.workers;
        reports[i] = encodeFile(origin.source, outputOf(clips[i], origin), settings, events);
    };
    const size_t failed =
        encodeInOrder(clips.size(), settingsOf(command.arguments), make, [&](size_t i) {
            for (const ClipReport& clip : reports[i].clips) {
                std::puts(reportLine(clip).c_str());
            }
        });
    return failed == 0 ? kExitOk : kExitFailed;
}

}  // namespace

void addRemake(CLI::App& app, int& status) {
    auto options = std::make_shared<RemakeCommand>();
    CLI::App* command = app.add_subcommand(
        "remake", "make clips again from their sources, as they were made but for what is given");
    command->add_option("clips", options->clips, "clips that have their CLIP.json beside them")
        ->required()
        ->option_text("CLIP... REQUIRED");
    addEncodeOptions(*command, options->arguments);
    command->callback([options, &status] { status = remake(*options); });
}

}  // namespace maker
