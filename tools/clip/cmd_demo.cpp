// velmora-clip demo: the demo loops as clips, and the playlists that play them.

#include <cstdio>
#include <memory>
#include <string>

#include "tools/clip/commands.h"
#include "tools/clip/jobs/export_demo.h"

namespace maker {

namespace {

struct DemoOptions {
    std::string folder;
    std::string playlists;
    bool force = false;
};

void logLoop(const std::filesystem::path& path, const std::string& outcome) {
    std::printf("%s: %s\n", path.c_str(), outcome.c_str());
    std::fflush(stdout);
}

void exportDemo(const DemoOptions& options) {
    exportLoops(demo::loops(), options.folder, options.force, logLoop);
    if (!options.playlists.empty()) {
        const bool written = exportPlaylists(demo::playlists(), options.playlists);
        std::printf("%s: %s\n", options.playlists.c_str(), written ? "written" : "kept");
    }
}

}  // namespace

void addDemo(CLI::App& app, int& status) {
    auto options = std::make_shared<DemoOptions>();
    CLI::App* command = app.add_subcommand("demo", "make the clips of the demo playlists");
    command->add_option("folder", options->folder, "where the clips go")->required();
    command->add_option("--playlists", options->playlists,
                        "write the demo playlists here, if there is no such file");
    command->add_flag("--force", options->force, "make clips anew that are already there");
    command->callback([options, &status] {
        exportDemo(*options);
        status = kExitOk;
    });
}

}  // namespace maker
