// velmora-clip pack: a set in one file, to be played elsewhere.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/base/texts.h"
#include "tools/base/velmora_folder.h"
#include "tools/clip/commands.h"
#include "tools/clip/set/contents.h"
#include "tools/clip/set/manifest.h"
#include "tools/clip/set/pack_names.h"

namespace maker {

namespace {

struct PackCommand {
    std::vector<std::string> names;
    std::string output;
    std::string folder;
    bool check = false;
};

void printContents(const SetContents& contents) {
    for (const files::Playlist& playlist : contents.playlists) {
        std::printf("playlist '%s': %s\n", latin1AsUtf8(playlist.name).c_str(),
                    counted(playlist.tracks.size(), "track").c_str());
    }
    for (const PackedClip& clip : contents.clips) {
        if (clip.fault.empty()) {
            std::printf("clip %s: %s\n", inQuotes(clip.track).c_str(),
                        sizeText(clip.bytes).c_str());
        }
    }
    for (const FileToPack& file : contents.files) {
        if (!file.name.starts_with(kVideosPrefix) && file.name != files::kPlaylistsName) {
            std::printf("%s\n", file.name.c_str());
        }
    }
}

void printLeftOut(const SetContents& contents) {
    std::fflush(stdout);
    for (const PackedClip& clip : contents.clips) {
        if (!clip.fault.empty()) {
            std::fprintf(stderr, "velmora-clip: %s is left out: %s\n", inQuotes(clip.track).c_str(),
                         readable(clip.fault).c_str());
        }
    }
}

void noteSums(const SetContents& contents) {
    Manifest sums;
    for (const FileToPack& file : contents.files) {
        if (!trackOfPacked(file.name).empty()) {
            sums[file.name] = file.sha256;
        }
    }
    addKnownSums(sums);
}

int pack(PackCommand command) {
    const std::string output =
        enterFolder(velmoraFolder(command.folder, "--from"), {command.output}).front();
    const SetContents contents = contentsHere(command.names);
    printContents(contents);
    if (!command.check) {
        writePack(output, contents.files);
        noteSums(contents);
    }
    const std::string in = command.check ? "" : " in " + readable(command.output);
    size_t bytes = 0;
    for (const PackedClip& clip : contents.clips) {
        bytes += clip.fault.empty() ? clip.bytes : 0;
    }
    std::printf("%s and %s, %s%s\n", counted(contents.playlists.size(), "playlist").c_str(),
                counted(contents.clips.size() - contents.leftOut, "clip").c_str(),
                sizeText(bytes).c_str(), in.c_str());
    printLeftOut(contents);
    return contents.leftOut == 0 ? kExitOk : kExitFailed;
}

}  // namespace

void addPack(CLI::App& app, int& status) {
    auto options = std::make_shared<PackCommand>();
    CLI::App* command =
        app.add_subcommand("pack", "put playlists with all that they need into one file");
    command->add_option("playlist", options->names, "the playlists; all of them unless named")
        ->option_text("PLAYLIST...");
    CLI::Option* output =
        command->add_option("-o", options->output, "the set to write")->option_text("SET");
    command
        ->add_option("--from", options->folder,
                     "Velmora's folder; else that of VELMORA_HOME, the current one when it has "
                     "videos/ and userdata/, or ~/Velmora")
        ->option_text("FOLDER");
    CLI::Option* check =
        command->add_flag("--check", options->check, "tell what would be in it, and write nothing");
    command->footer(
        "The set is a zip with the playlists, their clips and where these came from, the\n"
        "preferences, both controller maps and a list of checksums. Clips that are missing or\n"
        "would not play are left out and named, their tracks stay; the exit status is then 1.");
    command->callback([options, output, check, &status] {
        if (output->count() == 0 && check->count() == 0) {
            throw CLI::RequiredError("-o");
        }
        status = pack(*options);
    });
}

}  // namespace maker
