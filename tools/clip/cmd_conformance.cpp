// velmora-clip conformance: clips that test a reader of the format.

#include <cstdio>
#include <memory>
#include <string>

#include "tools/base/texts.h"
#include "tools/clip/commands.h"
#include "tools/clip/jobs/conformance.h"

namespace maker {

void addConformance(CLI::App& app, int& status) {
    auto folder = std::make_shared<std::string>();
    CLI::App* command =
        app.add_subcommand("conformance", "write clips that test a reader of the format");
    command->add_option("folder", *folder, "where they go: a new folder, or an empty one")
        ->required();
    command->footer(
        "README.md there tells what each of them tests, conformance.json the checksums of their "
        "frames.");
    command->callback([folder, &status] {
        const size_t clips = conformance::writeCorpus(*folder);
        std::printf("%s: %s, README.md, conformance.json\n", folder->c_str(),
                    counted(clips, "clip").c_str());
        status = kExitOk;
    });
}

}  // namespace maker
