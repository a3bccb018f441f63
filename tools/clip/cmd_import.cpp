// velmora-clip import: what is new or changed becomes clips in videos/ and tracks of a playlist.
//
// Works in Velmora's folder, as the program does, which must not run meanwhile: it writes the
// playlists file from its memory.

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "common/limits.h"
#include "files/xmlscan.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/base/velmora_folder.h"
#include "tools/clip/commands.h"
#include "tools/clip/jobs/clip_names.h"
#include "tools/clip/jobs/import_log.h"
#include "tools/clip/jobs/import_playlist.h"
#include "tools/clip/jobs/playlists_file.h"
#include "tools/clip/jobs/watched_inputs.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr const char* kVideos = "videos";
constexpr const char* kLongestSuffix = "-99";  // of the parts of a split input

struct ImportCommand {
    std::vector<std::string> given;
    std::string playlist;
    std::string folder;
    bool watch = false;
    EncodeArguments arguments;
};

struct Item {
    std::string input;
    std::string name;
    InputState state;
    std::vector<std::string> clips;  // files in videos/
    std::vector<std::string> lines;  // about new clips
};

class Import {
public:
    explicit Import(const ImportCommand& command)
        : settings_(settingsOf(command.arguments)), log_(kVideos) {
        options_ = fingerprint(settings_);
        const Scan scan = scanInputs(command.given);
        for (const std::string& input : scan.inputs) {
            items_.push_back({input, "", stateOf(input), {}, {}});
        }
        stills_ = scan.stills;
        giveNames();
    }

    void makeClips() {
        if (todo_.empty()) {
            return;
        }
        failed_ = encodeInOrder(
            todo_.size(), settings_,
            [this](size_t i, const EncodeSettings& settings, const EncodeEvents& events) {
                make(items_[todo_[i]], settings, events);
            },
            [this](size_t i) {
                for (const std::string& line : items_[todo_[i]].lines) {
                    std::puts(line.c_str());
                }
            });
    }

    // False when not all of them are in it.
    bool addTracks(const std::string& playlist) const {
        std::vector<std::string> tracks;
        for (const Item& item : items_) {
            tracks.insert(tracks.end(), item.clips.begin(), item.clips.end());
        }
        const PlaylistChange change = addToPlaylist(playlist, tracks);
        warnOfCopy(change.keptCopy);
        for (const PlaylistPart& part : change.parts) {
            std::printf("playlist '%s': %d added, %d in it\n", latin1AsUtf8(part.name).c_str(),
                        part.added, part.tracks);
        }
        if (change.parts.empty() && change.leftOut.empty() && !tracks.empty()) {
            std::printf("playlist '%s': as it was\n", latin1AsUtf8(playlist).c_str());
        }
        if (!change.leftOut.empty()) {
            std::fprintf(
                stderr,
                "velmora-clip: %zu clips are in no playlist, from %s on: there are %d already\n",
                change.leftOut.size(), change.leftOut.front().c_str(), kPlaylists);
        }
        for (const std::string& track : change.lost) {
            std::fprintf(stderr,
                         "velmora-clip: %s is in no playlist: the program cannot read such a name "
                         "back, nor any of more than %zu characters\n",
                         inQuotes(track).c_str(), xml::longestText("track"));
        }
        return change.leftOut.empty() && change.lost.empty();
    }

    bool report() const {
        std::printf("%zu made, %zu unchanged, %zu failed\n", todo_.size() - failed_,
                    items_.size() - todo_.size(), failed_);
        if (stills_ > 0) {
            std::printf("still pictures left: %d; name them to take them\n", stills_);
        }
        return failed_ == 0;
    }

private:
    void giveNames() {
        ClipNames names;
        for (const std::string& name : log_.names()) {
            names.take(name);
        }
        std::error_code error;
        for (fs::directory_iterator at(kVideos, error), end; !error && at != end;
             at.increment(error)) {
            names.take(at->path().stem().string());
        }
        const char* suffix = settings_.longInput == LongInput::SPLIT ? kLongestSuffix : "";
        for (size_t i = 0; i < items_.size(); ++i) {
            Item& item = items_[i];
            item.name = log_.nameOf(item.input);
            if (item.name.empty()) {
                item.name = names.give(safeName(item.input), kPanelRoom, suffix);
            }
            item.clips = log_.clipsOf(item.input, item.state, options_);
            if (item.clips.empty()) {
                todo_.push_back(i);
            }
        }
    }

    void make(Item& item, const EncodeSettings& settings, EncodeEvents events) {
        events.beforeCommit = [this, &item](const EncodeReport&) {
            log_.begin(item.input, item.name);
        };
        const fs::path output = fs::path(kVideos) / (item.name + ".m19");
        const EncodeReport report = encodeFile(item.input, output, settings, events);
        log_.finish(item.input, item.name, item.state, options_, report.clips);
        for (const ClipReport& clip : report.clips) {
            item.clips.push_back(clip.path.filename().string());
            item.lines.push_back(reportLine(clip));
        }
    }

    EncodeSettings settings_;
    std::string options_;
    ImportLog log_;
    std::vector<Item> items_;
    std::vector<size_t> todo_;
    size_t failed_ = 0;  // of them
    int stills_ = 0;
};

int importOnce(const ImportCommand& command, const std::string& playlist) {
    Import import(command);
    import.makeClips();
    const bool room = import.addTracks(playlist);
    return import.report() && room ? kExitOk : kExitFailed;
}

// Until it is interrupted.
[[noreturn]] void watch(ImportCommand command, const std::string& playlist) {
    constexpr auto kPause = std::chrono::seconds(1);
    std::puts("watching; Ctrl-C ends it");
    for (WatchedInputs inputs(command.given);;) {
        command.given = inputs.look();
        if (!command.given.empty()) {
            importOnce(command, playlist);
        }
        std::fflush(stdout);
        const auto until = std::chrono::steady_clock::now() + kPause;
        while (std::chrono::steady_clock::now() < until) {
            stopIfInterrupted();
            std::this_thread::sleep_for(kPause / 20);
        }
    }
}

int import(ImportCommand command) {
    command.given = enterFolder(velmoraFolder(command.folder), command.given);
    std::printf("into %s\n", readable(fs::current_path().string()).c_str());
    const std::string playlist = playlistName(command.playlist);
    if (command.watch) {
        watch(command, playlist);
    }
    return importOnce(command, playlist);
}

}  // namespace

void addImport(CLI::App& app, int& status) {
    auto options = std::make_shared<ImportCommand>();
    CLI::App* command = app.add_subcommand(
        "import", "make clips in videos/ of what is new or changed, and a playlist of them");
    command->add_option("input", options->given, "files, and folders with all that is in them")
        ->required()
        ->option_text("INPUT... REQUIRED");
    command
        ->add_option("--playlist", options->playlist,
                     "the playlist that gets the clips; it is made when it is not there")
        ->required()
        ->check(CLI::Validator(
            [](const std::string& name) {
                return playlistName(name).empty()
                           ? "it has 1 to 20 Western characters, not only blanks, without < > & %"
                           : "";
            },
            ""))
        ->option_text("NAME REQUIRED");
    command
        ->add_option("--to", options->folder,
                     "Velmora's folder; else that of VELMORA_HOME, the current one when it has "
                     "videos/ and userdata/, or ~/Velmora")
        ->option_text("FOLDER");
    command->add_flag("--watch", options->watch,
                      "go on with what is new or changes there, until Ctrl-C");
    addEncodeOptions(*command, options->arguments);
    command->callback([options, &status] { status = import(*options); });
}

}  // namespace maker
