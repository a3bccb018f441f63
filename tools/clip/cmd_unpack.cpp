// velmora-clip unpack: a packed set, or a folder of clips, laid into Velmora's folder.
//
// Velmora must not run meanwhile: it writes the playlists file from its memory.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "tools/base/errors.h"
#include "tools/base/progress.h"
#include "tools/base/texts.h"
#include "tools/base/velmora_folder.h"
#include "tools/clip/commands.h"
#include "tools/clip/jobs/playlists_file.h"
#include "tools/clip/set/clip_folder.h"
#include "tools/clip/set/pack_names.h"
#include "tools/clip/set/pack_reader.h"
#include "tools/clip/set/unpack.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

struct UnpackCommand {
    std::string input;
    std::string folder;
    bool preferences = false;
    bool dryRun = false;
    bool count = false;
    std::string name;
    std::string progress;
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

std::string contentsText(size_t playlists, size_t clips) {
    return counted(playlists, "playlist") + ", " + counted(clips, "clip");
}

struct Close {
    void operator()(FILE* file) const { std::fclose(file); }
};

// Without a terminal of its own where there is none.
std::string carriedOut(SetFiles& set, const UnpackPlan& plan, const std::string& terminal) {
    const std::unique_ptr<FILE, Close> own(terminal.empty() ? nullptr
                                                            : std::fopen(terminal.c_str(), "w"));
    Progress progress(plan.clips.size(), terminal.empty() ? stderr : own.get());
    return carryOut(set, plan, [&](size_t clip) {
        if (plan.clips.size() > 1) {
            progress.finish(clip);
        }
    });
}

void unpackHere(SetFiles& set, const UnpackCommand& command) {
    const UnpackPlan plan = planUnpack(set, command.preferences);
    if (!command.dryRun) {
        warnOfCopy(carriedOut(set, plan, command.progress));
    }
    printPlan(plan);
    std::printf("%s\n", contentsText(plan.merge.parts.size(), plan.clips.size()).c_str());
}

void printLeftOut(const ClipFolder& folder) {
    std::fflush(stdout);
    for (const LeftOut& clip : folder.leftOut()) {
        std::fprintf(stderr, "velmora-clip: %s is left out: %s\n", inQuotes(clip.clip).c_str(),
                     readable(clip.fault).c_str());
    }
}

// A folder is a set of its clips, named after it.
int unpackFolder(const fs::path& path, const UnpackCommand& command) {
    const fs::path whole = fs::canonical(path).filename();
    ClipFolder folder(path, command.name.empty() ? whole.string() : command.name);
    unpackHere(folder, command);
    printLeftOut(folder);
    return folder.leftOut().empty() ? kExitOk : kExitFailed;
}

int unpackSet(const fs::path& path, const UnpackCommand& command) {
    PackReader pack(path);
    unpackHere(pack, command);
    return kExitOk;
}

// Of a set its list alone is read, of a folder the names in it.
int countIn(const fs::path& path) {
    size_t clips = 0;
    size_t playlists = 0;
    if (fs::is_directory(path)) {
        clips = looseClips(path).size();
        playlists = playlistsFor(clips);
    } else {
        PackReader pack(path);
        clips = pack.clips();
        playlists = playlistsOf(pack).size();
    }
    std::printf("%s\n", contentsText(playlists, clips).c_str());
    return kExitOk;
}

int unpackInto(const std::string& input, const UnpackCommand& command) {
    std::printf("into %s\n", readable(fs::current_path().string()).c_str());
    return fs::is_directory(input) ? unpackFolder(input, command) : unpackSet(input, command);
}

int unpack(const UnpackCommand& command) {
    std::error_code ignored;
    if (!fs::is_regular_file(command.input, ignored) && !fs::is_directory(command.input, ignored)) {
        throw ToolError("cannot unpack " + command.input + ": there is no such file");
    }
    const std::string input =
        command.count ? command.input
                      : enterFolder(velmoraFolder(command.folder), {command.input}).front();
    try {
        return command.count ? countIn(input) : unpackInto(input, command);
    } catch (const ToolError& error) {
        throw ToolError("cannot unpack " + command.input + ": " + error.what());
    }
}

}  // namespace

void addUnpack(CLI::App& app, int& status) {
    auto options = std::make_shared<UnpackCommand>();
    CLI::App* command = app.add_subcommand(
        "unpack", "lay a packed set, or clips of a folder, into Velmora's folder");
    command->add_option("set", options->input, "what pack wrote, or a folder of clips")
        ->required()
        ->option_text("SET REQUIRED");
    command
        ->add_option("--to", options->folder,
                     "Velmora's folder; else that of VELMORA_HOME, the current one when it has "
                     "videos/ and userdata/, or ~/Velmora")
        ->option_text("FOLDER");
    command->add_flag("--preferences", options->preferences,
                      "take preferences and controller maps of the set also where there are some");
    command
        ->add_option("--name", options->name,
                     "what the playlist of a folder is called; its own name without it")
        ->option_text("NAME");
    command
        ->add_option("--progress", options->progress,
                     "the terminal that shows the line of progress; standard error without it")
        ->option_text("FILE");
    command->add_flag("--count", options->count,
                      "tell how much it holds without reading the clips, and write nothing");
    command->add_flag("--dry-run", options->dryRun,
                      "tell what would come of it, and write nothing");
    command->footer(
        "Nothing that is there is written over: a different clip or playlist of the same name\n"
        "makes the new one come under a number. All of the set arrives, or nothing. Velmora must\n"
        "not run meanwhile. The clips of a folder and of those in it make a playlist; those of\n"
        "them that do not play are left out and named, and the exit status is 1.");
    command->callback([options, &status] { status = unpack(*options); });
}

}  // namespace maker
