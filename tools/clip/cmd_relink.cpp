// velmora-clip relink: missing clips of the playlists, found again in other folders.

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "tools/base/texts.h"
#include "tools/base/velmora_folder.h"
#include "tools/clip/commands.h"
#include "tools/clip/set/relink.h"

namespace maker {

namespace {

struct RelinkCommand {
    std::vector<std::string> folders;
    std::string folder;
    bool write = false;
};

void printFound(const FoundClip& clip) {
    const std::string track = inQuotes(clip.track);
    if (clip.kind == FindKind::NONE) {
        std::printf("clip %s: not found\n", track.c_str());
    } else if (clip.kind == FindKind::AMBIGUOUS) {
        std::printf("clip %s: several that differ, none is taken\n", track.c_str());
        for (const std::filesystem::path& file : clip.files) {
            std::printf("  %s\n", readable(file.string()).c_str());
        }
    } else {
        std::printf("clip %s: %s, %s\n", track.c_str(),
                    readable(clip.files.front().string()).c_str(),
                    clip.kind == FindKind::BY_CONTENT ? "by what it holds" : "by its name");
    }
}

int relink(const RelinkCommand& command) {
    const std::vector<std::string> folders =
        enterFolder(velmoraFolder(command.folder), command.folders);
    const std::vector<FoundClip> found = findMissing(folders);
    if (command.write) {
        bringBack(found);
    }
    size_t brought = 0;
    for (const FoundClip& clip : found) {
        printFound(clip);
        brought += clip.kind == FindKind::BY_CONTENT || clip.kind == FindKind::BY_NAME ? 1 : 0;
    }
    std::printf("%zu missing, %zu %s\n", found.size(), brought,
                command.write ? "copied into videos/" : "found; --write copies them into videos/");
    return brought == found.size() ? kExitOk : kExitFailed;
}

}  // namespace

void addRelink(CLI::App& app, int& status) {
    auto options = std::make_shared<RelinkCommand>();
    CLI::App* command =
        app.add_subcommand("relink", "find missing clips of the playlists in other folders");
    command->add_option("folder", options->folders, "where to look, with all that is below")
        ->required()
        ->option_text("FOLDER... REQUIRED");
    command
        ->add_option("--to", options->folder,
                     "Velmora's folder; else that of VELMORA_HOME, the current one when it has "
                     "videos/ and userdata/, or ~/Velmora")
        ->option_text("FOLDER");
    command->add_flag("--write", options->write, "copy what is found into videos/");
    command->footer(
        "A clip is known by its checksum where pack or unpack has noted it, or else by its name.\n"
        "The exit status is 1 when a clip is still missing.");
    command->callback([options, &status] { status = relink(*options); });
}

}  // namespace maker
