// velmora-clip verify: clips against every bound of the format, and whether they load in time.

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/commands.h"
#include "tools/clip/reports/clip_frames.h"
#include "tools/clip/reports/describe.h"

namespace maker {

namespace {

// False, and a line on standard error, when the work fails.
bool tried(const std::function<bool()>& work) {
    try {
        return work();
    } catch (const ToolError& error) {
        std::fflush(stdout);
        std::fprintf(stderr, "velmora-clip: %s\n", error.what());
        return false;
    }
}

bool verify(const std::string& path) {
    Description description;
    describe(readWholeFile(path), description);
    std::printf("%s: %s\n", path.c_str(), verdictText(description).c_str());
    return description.plays();
}

// Whether all play.
bool verifyAll(const std::string& input) {
    bool all = true;
    for (const NamedClip& clip : clipsOf(input)) {
        stopIfInterrupted();
        all = tried([&clip] { return verify(clip.path); }) && all;
    }
    return all;
}

}  // namespace

void addVerify(CLI::App& app, int& status) {
    auto paths = std::make_shared<std::vector<std::string>>();
    CLI::App* command = app.add_subcommand("verify", "tell whether clips play");
    command->add_option("files", *paths, "clips, and folders with all that are below")
        ->required()
        ->option_text("CLIP|FOLDER... REQUIRED");
    command->footer(
        "A line for each clip: \"plays\", \"plays, but loads slowly\", or what is wrong with it "
        "and where.\nThe exit status is 0 when all play.");
    command->callback([paths, &status] {
        for (const std::string& path : *paths) {
            stopIfInterrupted();
            if (!tried([&path] { return verifyAll(path); })) {
                status = kExitFailed;
            }
        }
    });
}

}  // namespace maker
