// velmora-clip play: clips in a window, by a program of its own, since all else here does without
// a display.

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/base/errors.h"
#include "tools/clip/commands.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

// Beside this one, as it is built, or where the package has it.
fs::path playerProgram() {
    std::error_code ignored;
    const fs::path here = fs::read_symlink("/proc/self/exe", ignored).parent_path();
    for (const fs::path& place : {here, here.parent_path() / "lib" / "velmora"}) {
        if (fs::exists(place / "velmora-clip-play", ignored)) {
            return place / "velmora-clip-play";
        }
    }
    throw ToolError("velmora-clip-play, which shows clips, is not installed");
}

[[noreturn]] void play(const std::vector<std::string>& clips) {
    const std::string program = playerProgram().string();
    std::vector<const char*> arguments = {program.c_str()};
    for (const std::string& clip : clips) {
        arguments.push_back(clip.c_str());
    }
    arguments.push_back(nullptr);
    execv(program.c_str(), const_cast<char* const*>(arguments.data()));
    throw ToolError("cannot start " + program + ": " + std::strerror(errno));
}

}  // namespace

void addPlay(CLI::App& app, int&) {
    auto clips = std::make_shared<std::vector<std::string>>();
    CLI::App* command = app.add_subcommand("play", "show clips in a window, as on stage");
    command->add_option("clip", *clips, "the clips")->required()->option_text("CLIP... REQUIRED");
    command->footer(
        "Space holds, Left and Right step, R reverses, Up and Down go to another clip, Tab tells\n"
        "the facts, F fills the screen, Escape leaves.");
    command->callback([clips] { play(*clips); });
}

}  // namespace maker
