// velmora-clip import: what is new or changed becomes clips in videos/ and tracks of a playlist.
//
// Works in the current directory, as the program does, which must not run meanwhile: it writes the
// playlists file from its memory. The other playlists stay as the program reads them; after an
// error the file is as it was.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "common/limits.h"
#include "common/messages.h"
#include "files/playlists.h"
#include "files/userfile.h"
#include "files/xmlscan.h"
#include "layout/page_layout.h"
#include "tools/clip/base/atomic_file.h"
#include "tools/clip/base/errors.h"
#include "tools/clip/base/texts.h"
#include "tools/clip/commands.h"
#include "tools/clip/jobs/clip_names.h"
#include "tools/clip/jobs/import_log.h"

namespace maker {

namespace fs = std::filesystem;
using files::kPlaylistsName;
using files::Playlist;

namespace {

constexpr const char* kVideos = "videos";
constexpr const char* kLongestSuffix = "-99";  // of the parts of a split input

struct PlaylistPart {
    std::string name;
    int added = 0;
    int tracks = 0;  // in all
};

struct PlaylistChange {
    std::vector<PlaylistPart> parts;   // the playlists that got something
    std::vector<std::string> leftOut;  // tracks for which there was no room
    std::vector<std::string> lost;     // tracks that the program could not read back
    std::string keptCopy;              // of a file that held more than the program reads of it
};

size_t countOf(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

std::vector<Playlist> readPlaylists() {
    std::error_code ignored;
    if (!fs::exists(kPlaylistsName, ignored)) {
        return {};
    }
    UserFile file;
    const std::optional<std::string> bytes = file.read(kPlaylistsName);
    if (!bytes) {
        std::puts(msg::kNoPlaylistsFile);
    }
    if (file.unreadable()) {
        throw ToolError(std::string("cannot read ") + kPlaylistsName);
    }
    return bytes ? files::parsePlaylists(*bytes) : std::vector<Playlist>();
}

void save(const std::vector<Playlist>& playlists) {
    FolderInMaking folder(folderOf(kPlaylistsName));
    if (!UserFile().save(fs::current_path().string(), kPlaylistsName,
                         [&] { return files::printPlaylists(playlists); })) {
        throw ToolError(std::string("cannot write ") + kPlaylistsName);
    }
    folder.keep();
}

// What the program does not read would be gone once it is written.
std::string keepCopy(const std::vector<Playlist>& playlists) {
    std::error_code ignored;
    if (!fs::exists(kPlaylistsName, ignored)) {
        return "";
    }
    const std::vector<uint8_t> bytes = readWholeFile(kPlaylistsName);
    const std::string text(bytes.begin(), bytes.end());
    size_t tracks = 0;
    for (const Playlist& playlist : playlists) {
        tracks += playlist.tracks.size();
    }
    if (countOf(text, "<playlist>") == playlists.size() && countOf(text, "<track>") == tracks) {
        return "";
    }
    const std::string copy = std::string(kPlaylistsName) + ".old";
    writeWholeFile(copy, bytes);
    return copy;
}

std::string partName(const std::string& name, int number) {
    return number == 1 ? name : name + " " + std::to_string(number);
}

Playlist* findPlaylist(std::vector<Playlist>& playlists, const std::string& name) {
    const auto found = std::ranges::find(playlists, name, &Playlist::name);
    return found == playlists.end() ? nullptr : &*found;
}

// Null when all are full and no other can be made.
Playlist* playlistWithRoom(std::vector<Playlist>& playlists, const std::string& name) {
    for (int number = 1;; ++number) {
        const std::string part = partName(name, number);
        Playlist* playlist = findPlaylist(playlists, part);
        if (playlist == nullptr && playlists.size() < kPlaylists) {
            playlist = &playlists.emplace_back(Playlist{part, {}});
        }
        if (playlist == nullptr || playlist->tracks.size() < kClipSlots) {
            return playlist;
        }
    }
}

void noteAdded(PlaylistChange& change, const Playlist& playlist) {
    if (change.parts.empty() || change.parts.back().name != playlist.name) {
        change.parts.push_back({playlist.name, 0, 0});
    }
    ++change.parts.back().added;
    change.parts.back().tracks = static_cast<int>(playlist.tracks.size());
}

// A playlist's name as the file holds it: Latin-1, of 1 to 20 characters that the program can read
// back, not all of them blank. Empty for any other.
std::string playlistName(const std::string& text) {
    const std::string name = latin1Of(text);
    const bool readable = std::all_of(name.begin(), name.end(), [](char c) {
        const unsigned char byte = static_cast<unsigned char>(c);
        return byte >= ' ' && (byte < 0x7F || byte >= 0xA0) &&
               std::string("<>&%").find(c) == std::string::npos;
    });
    const bool seen = name.find_first_not_of(" \xA0") != std::string::npos;
    return readable && seen && name.size() <= static_cast<size_t>(page::kLongestName) ? name : "";
}

// Adds the tracks that are not there yet behind those of the playlist. A playlist holds 50; what is
// more goes to "name 2", "name 3" and so on. There can be 50 playlists.
PlaylistChange addToPlaylist(const std::string& name, const std::vector<std::string>& tracks) {
    std::vector<Playlist> playlists = readPlaylists();
    PlaylistChange change;
    change.keptCopy = keepCopy(playlists);
    std::set<std::string> there;
    int number = 1;
    while (const Playlist* playlist = findPlaylist(playlists, partName(name, number++))) {
        there.insert(playlist->tracks.begin(), playlist->tracks.end());
    }
    for (const std::string& track : tracks) {
        if (!xml::comesBack(track, "track")) {
            change.lost.push_back(track);
            continue;
        }
        if (!there.insert(track).second) {
            continue;
        }
        Playlist* playlist = playlistWithRoom(playlists, name);
        if (playlist == nullptr) {
            change.leftOut.push_back(track);
            continue;
        }
        playlist->tracks.push_back(track);
        noteAdded(change, *playlist);
    }
    if (!change.parts.empty()) {
        save(playlists);
    }
    return change;
}

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
        if (!change.keptCopy.empty()) {
            std::fprintf(
                stderr,
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

int import(const ImportCommand& command) {
    const std::string playlist = playlistName(command.playlist);
    Import import(command);
    import.makeClips();
    const bool room = import.addTracks(playlist);
    return import.report() && room ? kExitOk : kExitFailed;
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
    addEncodeOptions(*command, options->arguments);
    command->callback([options, &status] { status = import(*options); });
}

}  // namespace maker
