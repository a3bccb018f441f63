// velmora-clip import: what is new or changed becomes clips in videos/ and tracks of a playlist.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/limits.h"
#include "files/xmlscan.h"
#include "tools/clip/base/errors.h"
#include "tools/clip/base/progress.h"
#include "tools/clip/base/texts.h"
#include "tools/clip/commands.h"
#include "tools/clip/jobs/batch.h"
#include "tools/clip/jobs/clip_names.h"
#include "tools/clip/jobs/import_log.h"
#include "tools/clip/jobs/playlist_file.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr const char* kVideos = "videos";
constexpr const char* kLongestSuffix = "-99";  // of the parts of a split input

struct ImportCommand {
    std::vector<std::string> given;
    std::string playlist;
    EncodeArguments arguments;
};

struct Item {
    std::string input;
    std::string name;
    InputState state;
    std::vector<std::string> clips;  // files in videos/
    std::vector<std::string> lines;  // about new clips
    std::string error;
};

class Import {
public:
    explicit Import(const ImportCommand& command)
        : settings_(settingsOf(command.arguments)), workers_(settings_.workers), log_(kVideos) {
        options_ = fingerprint(settings_);
        const Scan scan = scanInputs(command.given);
        for (const std::string& input : scan.inputs) {
            items_.push_back({input, "", stateOf(input), {}, {}, ""});
        }
        stills_ = scan.stills;
        giveNames();
    }

    void makeClips();
    bool addTracks(const std::string& playlist) const;
    int report() const;

private:
    void giveNames();
    void make(Item& item, size_t number);
    void print(const Item& item) const;

    EncodeSettings settings_;
    int workers_;
    std::string options_;
    ImportLog log_;
    std::vector<Item> items_;
    std::vector<size_t> todo_;
    std::optional<Progress> progress_;
    int stills_ = 0;
};

void Import::giveNames() {
    ClipNames names;
    for (const std::string& name : log_.names()) {
        names.take(name);
    }
    std::error_code error;
    for (fs::directory_iterator at(kVideos, error), end; !error && at != end; at.increment(error)) {
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

void Import::make(Item& item, size_t number) {
    EncodeEvents events;
    events.progress = [this, number](int done, int expected) {
        progress_->update(number, done, expected);
    };
    events.beforeCommit = [this, &item](const EncodeReport&) { log_.begin(item.input, item.name); };
    const fs::path output = fs::path(kVideos) / (item.name + ".m19");
    const EncodeReport report = encodeFile(item.input, output, settings_, events);
    log_.finish(item.input, item.name, item.state, options_, report.clips);
    for (const ClipReport& clip : report.clips) {
        item.clips.push_back(clip.path.filename().string());
        item.lines.push_back(reportLine(clip));
    }
}

void Import::print(const Item& item) const {
    for (const std::string& line : item.lines) {
        std::puts(line.c_str());
    }
    std::fflush(stdout);
    if (!item.error.empty()) {
        std::fprintf(stderr, "velmora-clip: %s\n", item.error.c_str());
    }
}

void Import::makeClips() {
    if (todo_.empty()) {
        return;
    }
    settings_.workers = todo_.size() > 1 ? 1 : workers_;
    progress_.emplace(todo_.size());
    const auto task = [this](size_t i) {
        Item& item = items_[todo_[i]];
        try {
            make(item, i);
        } catch (const Interrupted&) {
            throw;
        } catch (const std::exception& error) {
            item.error = lineOf(error);
        }
        progress_->finish(i);
    };
    runInOrder(todo_.size(), workers_, task,
               [this](size_t i) { progress_->aside([this, i] { print(items_[todo_[i]]); }); });
    progress_.reset();
}

// False when not all of them are in it.
bool Import::addTracks(const std::string& playlist) const {
    std::vector<std::string> tracks;
    for (const Item& item : items_) {
        tracks.insert(tracks.end(), item.clips.begin(), item.clips.end());
    }
    const PlaylistChange change = addToPlaylist(playlist, tracks);
    if (!change.keptCopy.empty()) {
        std::fprintf(stderr,
                     "velmora-clip: warning: the playlists file held more than the program reads "
                     "of it; as it was it is kept as %s\n",
                     change.keptCopy.c_str());
    }
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

int Import::report() const {
    size_t failed = 0;
    for (const Item& item : items_) {
        failed += item.error.empty() ? 0 : 1;
    }
    std::printf("%zu made, %zu unchanged, %zu failed\n", todo_.size() - failed,
                items_.size() - todo_.size(), failed);
    if (stills_ > 0) {
        std::printf("still pictures left: %d; name them to take them\n", stills_);
    }
    return failed > 0 ? kExitFailed : kExitOk;
}

std::string checkPlaylist(const std::string& name) {
    return playlistName(name).empty()
               ? "it has 1 to 20 Western characters, not only blanks, without < > & %"
               : "";
}

int import(const ImportCommand& command) {
    const std::string playlist = playlistName(command.playlist);
    Import import(command);
    import.makeClips();
    const bool room = import.addTracks(playlist);
    const int status = import.report();
    return room ? status : kExitFailed;
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
        ->check(CLI::Validator(checkPlaylist, ""))
        ->option_text("NAME REQUIRED");
    addEncodeOptions(*command, options->arguments);
    command->callback([options, &status] { status = import(*options); });
}

}  // namespace maker
