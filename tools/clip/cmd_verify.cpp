// velmora-clip verify: clips against every bound of the format.

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "clip/validate.h"
#include "tools/clip/atomic_file.h"
#include "tools/clip/commands.h"
#include "tools/clip/errors.h"

namespace maker {

namespace {

std::string describe(const clip::Verdict& verdict) {
    std::string text = verdict.message + " (offset " + std::to_string(verdict.offset);
    if (verdict.block >= 0) {
        text += ", block " + std::to_string(verdict.block);
    }
    text += ")";
    return verdict.kind == clip::FAULT_TRAILING ? text + "; the clip plays" : text;
}

bool verify(const std::string& path) {
    try {
        const clip::Verdict verdict = clip::validate(readWholeFile(path));
        std::printf("%s: %s\n", path.c_str(), verdict.ok ? "ok" : describe(verdict).c_str());
        return verdict.ok;
    } catch (const ToolError& error) {
        std::fflush(stdout);
        std::fprintf(stderr, "velmora-clip: %s\n", error.what());
        return false;
    }
}

}  // namespace

void addVerify(CLI::App& app, int& status) {
    auto paths = std::make_shared<std::vector<std::string>>();
    CLI::App* command = app.add_subcommand("verify", "check clips against every bound");
    command->add_option("files", *paths, "clips")->required();
    command->callback([paths, &status] {
        for (const std::string& path : *paths) {
            if (!verify(path)) {
                status = kExitFailed;
            }
        }
    });
}

}  // namespace maker
