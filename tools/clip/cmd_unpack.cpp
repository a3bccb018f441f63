// velmora-clip unpack: a packed set laid into Velmora's folder.
//
// Velmora must not run meanwhile: it writes the playlists file from its memory.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/base/velmora_folder.h"
#include "tools/clip/commands.h"
#include "tools/clip/jobs/playlists_file.h"
#include "tools/clip/set/pack_names.h"
#include "tools/clip/set/unpack.h"

namespace maker {

namespace {

struct UnpackCommand {
    std::string input;
    std::string folder;
    bool preferences = false;
    bool dryRun = false;
};

std::string kindText(PlaceKind kind, const std::string& become) {
    switch (kind) {
        case PlaceKind::NEW:
            return "new";
        case PlaceKind::THERE:
            return "there already, as " + inQuotes(become);
        default:
            return "another clip has this name; it comes as " + inQuotes(become);
    }
}

std::string kindText(const MergedPlaylist& part) {
    const std::string become = "'" + latin1AsUtf8(part.become) + "'";
    switch (part.kind) {
        case MergeKind::NEW:
            return "new, " + counted(part.tracks, "track");
        case MergeKind::THERE:
            return part.become == part.name ? "as it was" : "there already, as " + become;
        default:
            return "another playlist has this name; it comes as " + become;
    }
}

std::string kindText(OtherKind kind) {
    switch (kind) {
        case OtherKind::NEW:
            return "new";
        case OtherKind::THERE:
            return "as it was";
        case OtherKind::KEPT:
            return "left as it is; --preferences takes the set's";
        default:
            return "the set's, the old one is kept beside it, ending in .old";
    }
}

void printPlan(const UnpackPlan& plan) {
    for (const PlannedClip& clip : plan.clips) {
        const bool same = clip.place.kind == PlaceKind::THERE && clip.place.track == clip.track;
        std::printf("clip %s: %s\n", inQuotes(clip.track).c_str(),
                    same ? "there already" : kindText(clip.place.kind, clip.place.track).c_str());
    }
    for (const std::string& track : plan.absent) {
        std::error_code ignored;
        const bool other = std::filesystem::exists(std::filesystem::path(kVideos) / track, ignored);
        std::printf("clip %s: not in the set%s\n", inQuotes(track).c_str(),
                    other ? "; the one here of this name will play" : "");
    }
    for (const MergedPlaylist& part : plan.merge.parts) {
        std::printf("playlist '%s': %s\n", latin1AsUtf8(part.name).c_str(), kindText(part).c_str());
    }
    for (const PlannedOther& other : plan.others) {
        std::printf("%s: %s\n", readable(other.target.string()).c_str(),
                    kindText(other.kind).c_str());
    }
}

void unpackHere(const std::string& input, const UnpackCommand& command) {
    PackReader pack{std::filesystem::path(input)};
    const UnpackPlan plan = planUnpack(pack, command.preferences);
    if (!command.dryRun) {
        warnOfCopy(carryOut(pack, plan));
    }
    printPlan(plan);
}

int unpack(const UnpackCommand& command) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(command.input, ignored)) {
        throw ToolError("cannot unpack " + command.input + ": there is no such file");
    }
    const std::string input = enterFolder(velmoraFolder(command.folder), {command.input}).front();
    std::printf("into %s\n", readable(std::filesystem::current_path().string()).c_str());
    try {
        unpackHere(input, command);
    } catch (const ToolError& error) {
        throw ToolError("cannot unpack " + command.input + ": " + error.what());
    }
    return kExitOk;
}

}  // namespace

void addUnpack(CLI::App& app, int& status) {
    auto options = std::make_shared<UnpackCommand>();
    CLI::App* command = app.add_subcommand(
        "unpack", "lay a packed set into Velmora's folder, beside what is there");
    command->add_option("set", options->input, "what pack wrote")
        ->required()
        ->option_text("SET REQUIRED");
    command
        ->add_option("--to", options->folder,
                     "Velmora's folder; else that of VELMORA_HOME, the current one when it has "
                     "videos/ and userdata/, or ~/Velmora")
        ->option_text("FOLDER");
    command->add_flag("--preferences", options->preferences,
                      "take preferences and controller maps of the set also where there are some");
    command->add_flag("--dry-run", options->dryRun,
                      "tell what would come of it, and write nothing");
    command->footer(
        "Nothing that is there is written over: a different clip or playlist of the same name\n"
        "makes the new one come under a number. All of the set arrives, or nothing. Velmora must\n"
        "not run meanwhile.");
    command->callback([options, &status] { status = unpack(*options); });
}

}  // namespace maker
