#include "tools/render/take.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <optional>
#include <vector>

#include "common/limits.h"
#include "common/messages.h"
#include "core/all.h"
#include "core/globals.h"
#include "files/playlists.h"
#include "options/options.h"
#include "playlists/playlist.h"
#include "program.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/render/headless_sdl.h"
#include "tools/render/score_player.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr const char* kPrinted = "printed";  // what the program prints

std::string textOf(const fs::path& path) {
    const std::vector<uint8_t> bytes = readWholeFile(path);
    return {bytes.begin(), bytes.end()};
}

// The folder that the program runs in, which is the current one meanwhile.
class RunFolder {
public:
    RunFolder(const Score& score, const fs::path& velmora);
    ~RunFolder();
    RunFolder(const RunFolder&) = delete;
    RunFolder& operator=(const RunFolder&) = delete;

private:
    void giveUserFiles(const Score& score, const fs::path& velmora) const;

    fs::path before_ = fs::current_path();
    fs::path path_;
};

RunFolder::RunFolder(const Score& score, const fs::path& velmora) {
    const fs::path home = fs::absolute(velmora);
    for (const char* part : {"data", "videos"}) {
        if (!fs::is_directory(home / part)) {
            throw ToolError("there is no folder " + (home / part).string());
        }
    }
    std::string name = (fs::temp_directory_path() / "velmora-render-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw ToolError("cannot make a folder in " + fs::temp_directory_path().string());
    }
    path_ = name;
    fs::create_directory(path_ / "userdata");
    fs::create_directory_symlink(home / "data", path_ / "data");
    fs::create_directory_symlink(home / "videos", path_ / "videos");
    giveUserFiles(score, home);
    fs::current_path(path_);
}

void RunFolder::giveUserFiles(const Score& score, const fs::path& velmora) const {
    for (const std::string& name : scoreFiles()) {
        const auto kept = std::ranges::find(score.files, name, &ScoreFile::name);
        std::optional<std::string> content;
        if (kept != score.files.end()) {
            content = kept->missing ? std::nullopt : std::optional(kept->content);
        } else if (fs::exists(velmora / name)) {
            content = textOf(velmora / name);
        }
        if (content) {
            std::ofstream(path_ / name, std::ios::binary) << *content;
        }
    }
}

RunFolder::~RunFolder() {
    std::error_code ignored;
    fs::current_path(before_, ignored);
    fs::remove_all(path_, ignored);
}

// What is printed goes into a file meanwhile.
class QuietOutput {
public:
    explicit QuietOutput(const char* path) : before_(dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        dup2(file, STDOUT_FILENO);
        close(file);
    }
    ~QuietOutput() {
        std::fflush(stdout);
        dup2(before_, STDOUT_FILENO);
        close(before_);
    }
    QuietOutput(const QuietOutput&) = delete;
    QuietOutput& operator=(const QuietOutput&) = delete;

private:
    int before_;
};

int placeOfPlaylist(const Score& score) {
    if (score.playlist.empty()) {
        return -1;
    }
    std::vector<files::Playlist> all;
    if (fs::exists(files::kPlaylistsName)) {
        all = files::parsePlaylists(textOf(files::kPlaylistsName));
    }
    const auto found = std::ranges::find_if(all, [&](const files::Playlist& each) {
        return each.name == score.playlist || latin1AsUtf8(each.name) == score.playlist;
    });
    if (found == all.end()) {
        throw ToolError("there is no playlist " + inQuotes(score.playlist));
    }
    if (found->tracks.empty()) {
        throw ToolError("the playlist " + inQuotes(score.playlist) + " is empty");
    }
    return static_cast<int>(found - all.begin());
}

// The mix's picture as it was before the interface came over it.
std::vector<uint16_t> mixPicture;

StagePicture viewOf(const SDL_Surface* surface) {
    return {static_cast<const uint16_t*>(surface->pixels), surface->w, surface->h,
            surface->pitch / static_cast<int>(sizeof(uint16_t))};
}

// The picture stands in the middle, 1:1 or doubled; what a small display cuts off stays black.
void keepMixPicture() {
    const StagePicture from = viewOf(screen[1]);
    const int factor = from.width >= 2 * kFrameWidth && from.height >= 2 * kFrameHeight ? 2 : 1;
    const int left = (from.width - factor * kFrameWidth) / 2;
    const int top = (from.height - factor * kFrameHeight) / 2;
    for (int y = 0; y < kFrameHeight; ++y) {
        const int row = top + factor * y;
        uint16_t* const to = mixPicture.data() + static_cast<ptrdiff_t>(y) * kFrameWidth;
        if (row < 0 || row >= from.height) {
            continue;
        }
        const uint16_t* const pixels = from.pixels + static_cast<ptrdiff_t>(row) * from.pitch;
        for (int x = std::max(0, -left); x < kFrameWidth - std::max(0, -left); ++x) {
            to[x] = pixels[left + factor * x];
        }
    }
}

// Where nothing is mixed there is nothing to film.
void blackenUnlessMixing() {
    if (all->state != STATE_MIX || playlist->loadSlot == 0) {
        std::ranges::fill(mixPicture, uint16_t{0});
    }
}

class Take {
public:
    Take(const Score& score, const TakeSettings& settings)
        : score_(score), settings_(settings), player_(score, placeOfPlaylist(score)) {}

    int run();

private:
    void setStage();
    void shown(const SDL_Surface* surface);
    void stopOn(const std::function<void()>& act);
    void explain() const;

    const Score& score_;
    const TakeSettings& settings_;
    ScorePlayer player_;
    int frames_ = 0;
    bool began_ = false;
    std::exception_ptr trouble_;
};

// The program knows no exceptions: they end it, and go on when it has ended.
void Take::stopOn(const std::function<void()>& act) {
    try {
        act();
    } catch (...) {
        trouble_ = std::current_exception();
        isExit = 0;
    }
}

void Take::shown(const SDL_Surface* surface) {
    began_ = true;
    const int frame = player_.frameShown();
    stopIfInterrupted();
    if (frame < 0) {
        return;
    }
    blackenUnlessMixing();
    const StagePicture picture = settings_.interface ? viewOf(surface)
                                                     : StagePicture{mixPicture.data(), kFrameWidth,
                                                                    kFrameHeight, kFrameWidth};
    ++frames_;
    if (!settings_.picture(frame, picture) || frame + 1 >= score_.frames) {
        isExit = 0;
    }
}

void Take::setStage() {
    HeadlessStage& stage = headlessStage();
    stage.width = score_.width;
    stage.height = score_.height;
    stage.hasPad = score_.hasPad;
    stage.padName = score_.pad;
    stage.keysSampled = [this] {
        if (!settings_.interface) {
            _options->topbar = 0;  // its lines are part of the mix's picture
        }
        stopOn([this] { player_.keysSampled(); });
    };
    stage.eventsRead = [this] { stopOn([this] { player_.eventsRead(); }); };
    stage.shown = [this](const SDL_Surface* surface) { stopOn([&] { shown(surface); }); };
    mixPicture.assign(kFramePixels, 0);
    loadWaits = false;
    mixPictureDone = settings_.interface ? nullptr : keepMixPicture;
}

// The program's last words.
void Take::explain() const {
    std::ifstream printed(kPrinted);
    std::string last;
    for (std::string line; std::getline(printed, line);) {
        last = line.empty() ? last : line;
    }
    throw ToolError("the program did not start: " + last);
}

int Take::run() {
    setStage();
    {
        const QuietOutput quiet(kPrinted);
        srand(score_.seed);
        runProgram();
    }
    if (trouble_ != nullptr) {
        std::rethrow_exception(trouble_);
    }
    if (!began_) {
        explain();
    }
    return frames_;
}

}  // namespace

int play(const Score& score, const TakeSettings& settings) {
    if (score.frames == 0) {
        return 0;
    }
    const RunFolder folder(score, settings.folder);
    return Take(score, settings).run();
}

}  // namespace maker
