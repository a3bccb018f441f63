// velmora-clip verify: clips against every bound of the format, and whether they load in time.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/clip/base/atomic_file.h"
#include "tools/clip/base/errors.h"
#include "tools/clip/commands.h"
#include "tools/clip/reports/clip_frames.h"
#include "tools/clip/reports/describe.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

bool verify(const std::string& path);

// All clips below the folder.
bool verifyFolder(const std::string& folder) {
    const std::vector<std::string> names = clipsBelow(folder);
    if (names.empty()) {
        throw ToolError("there are no clips in " + folder);
    }
    bool all = true;
    for (const std::string& name : names) {
        stopIfInterrupted();
        all = verify((fs::path(folder) / name).string()) && all;
    }
    return all;
}

bool verify(const std::string& path) {
    try {
        std::error_code ignored;
        if (fs::is_directory(path, ignored)) {
            return verifyFolder(path);
        }
        Description description;
        describe(readWholeFile(path), description);
        std::printf("%s: %s\n", path.c_str(), verdictText(description).c_str());
        return description.plays();
    } catch (const ToolError& error) {
        std::fflush(stdout);
        std::fprintf(stderr, "velmora-clip: %s\n", error.what());
        return false;
    }
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
            if (!verify(path)) {
                status = kExitFailed;
            }
        }
    });
}

}  // namespace maker
