// velmora-clip info: what clips hold.

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/commands.h"
#include "tools/clip/reports/describe.h"

namespace maker {

namespace {

struct InfoOptions {
    std::vector<std::string> paths;
    bool json = false;
};

// The description of one clip, or "" after a message.
std::string infoOf(const std::string& path, bool json) {
    try {
        Description description;
        if (!describe(readWholeFile(path), description)) {
            throw ToolError(path + " is not a clip: " + description.verdict.message);
        }
        return json ? asJson(path, description) : asText(path, description);
    } catch (const ToolError& error) {
        std::fprintf(stderr, "velmora-clip: %s\n", error.what());
        return "";
    }
}

int info(const InfoOptions& options) {
    int status = kExitOk;
    const char* before = options.json ? "[\n" : "";
    for (const std::string& path : options.paths) {
        stopIfInterrupted();
        const std::string text = infoOf(path, options.json);
        if (text.empty()) {
            status = kExitFailed;
            continue;
        }
        std::printf("%s%s", before, text.c_str());
        before = options.json ? ",\n" : "\n";
    }
    if (options.json) {
        std::puts(before[0] == '[' ? "[]" : "\n]");
    }
    return status;
}

}  // namespace

void addInfo(CLI::App& app, int& status) {
    auto options = std::make_shared<InfoOptions>();
    CLI::App* command = app.add_subcommand("info", "tell what clips hold");
    command->add_option("files", options->paths, "clips")
        ->required()
        ->option_text("CLIP... REQUIRED");
    command->add_flag("--json", options->json, "as a JSON array of one object a clip");
    command->callback([options, &status] { status = info(*options); });
}

}  // namespace maker
