#include "tools/record/recorder.h"

#include <cstring>
#include <filesystem>
#include <optional>
#include <set>
#include <utility>

#include "common/geometry.h"
#include "core/all.h"
#include "core/globals.h"
#include "files/playlists.h"
#include "files/userfile.h"

namespace maker {

namespace {

constexpr size_t kMostFileBytes = size_t{1} << 20;  // of a user's file; none is near it
constexpr size_t kLineRoom = 4096;

ScoreEvent of(Deed deed, int code = 0) {
    ScoreEvent event;
    event.deed = deed;
    event.code = code;
    return event;
}

// All that the playlists name, each once.
std::vector<ScoreClip> clipsOf(const std::string& playlistsFile) {
    std::vector<ScoreClip> clips;
    std::set<std::string> seen;
    for (const files::Playlist& each : files::parsePlaylists(playlistsFile)) {
        for (const std::string& track : each.tracks) {
            if (!canName(track) || !seen.insert(track).second) {
                continue;
            }
            std::error_code error;
            const uintmax_t bytes = std::filesystem::file_size("videos/" + track, error);
            clips.push_back({track, error ? std::nullopt : std::optional<uint64_t>(bytes)});
        }
    }
    return clips;
}

}  // namespace

Recorder::Recorder(uint32_t seed, std::function<void(std::string_view)> write)
    : write_(std::move(write)), seed_(seed) {
    for (std::string* text : {&line_, &next_, &out_}) {
        text->reserve(kLineRoom);
    }
}

// Nothing has been saved yet: the files are as the program has read them.
void Recorder::writeHead() {
    Score head;
    head.width = all->screenW;
    head.height = all->screenH;
    head.seed = seed_;
    head.hasPad = _nbJoySticks > 0;
    const char* const name = head.hasPad ? SDL_JoystickName(0) : nullptr;
    head.pad = name != nullptr ? name : "";
    for (const std::string& file : scoreFiles()) {
        const std::optional<std::string> content = readRegular(file, kMostFileBytes);
        head.files.push_back({file, !content, content.value_or("")});
        if (file == files::kPlaylistsName) {
            head.clips = content ? clipsOf(*content) : std::vector<ScoreClip>();
        }
    }
    write_(printScoreHead(head));
}

void Recorder::endLine() {
    flushPointer();
    if (!line_.empty()) {
        out_.assign(std::to_string(frame_)).append(line_).append("\n");
        write_(out_);
    }
    line_.swap(next_);
    next_.clear();
}

// When the window gets the keyboard SDL looks which keys are down, and makes no events of it.
void Recorder::compareKeys(const uint8_t* keys) {
    if (std::memcmp(keys, keysDown_.data(), keysDown_.size()) == 0) {
        return;
    }
    for (size_t key = 0; key < keysDown_.size(); ++key) {
        if (keys[key] != keysDown_[key]) {
            keysDown_[key] = keys[key];
            note(of(keys[key] != 0 ? Deed::KEY_IS_DOWN : Deed::KEY_IS_UP, static_cast<int>(key)),
                 true);
        }
    }
}

void Recorder::frameBegins(int rate, const uint8_t* keys) {
    if (frame_ < 0) {
        writeHead();
        line_.swap(next_);
    } else {
        endLine();
    }
    ++frame_;
    read_ = false;
    if (rate != rate_) {
        rate_ = rate;
        noteNow(of(Deed::RATE, rate));
    }
    compareKeys(keys);
}

void Recorder::noteNow(ScoreEvent event) {
    (event.early && read_ ? next_ : line_).append(printScoreEvent(event));
}

void Recorder::note(ScoreEvent event, bool early) {
    event.early = early;
    noteNow(event);
}

// Of several places the last one counts, as to the program.
void Recorder::movePointer(int windowX, int windowY) {
    const Point picture = pictureOffset(all->appW, all->appH);
    const int x = windowX - picture.x;
    const int y = windowY - picture.y;
    moved_ = moved_ || x != pointer_.x || y != pointer_.y;
    pointer_ = of(Deed::POINTER);
    pointer_.x = x;
    pointer_.y = y;
    movedEarly_ = read_;
}

void Recorder::flushPointer() {
    if (moved_) {
        note(pointer_, movedEarly_);
        moved_ = false;
    }
}

void Recorder::hearKey(const SDL_KeyboardEvent& event) {
    const auto key = static_cast<size_t>(event.keysym.sym);
    if (key >= keysDown_.size()) {
        return;
    }
    ScoreEvent heard = of(Deed::KEY_UP, static_cast<int>(key));
    if (event.type == SDL_KEYDOWN) {
        heard.deed = keysDown_[key] != 0 ? Deed::KEY_AGAIN : Deed::KEY_DOWN;
        heard.character = event.keysym.unicode;
    }
    keysDown_[key] = event.type == SDL_KEYDOWN ? 1 : 0;
    note(heard, read_);
}

void Recorder::hearButton(const SDL_MouseButtonEvent& event) {
    movePointer(event.x, event.y);
    flushPointer();
    note(of(event.type == SDL_MOUSEBUTTONDOWN ? Deed::MOUSE_DOWN : Deed::MOUSE_UP, event.button),
         read_);
}

void Recorder::hear(const SDL_Event& event) {
    switch (event.type) {
        case SDL_KEYDOWN:
        case SDL_KEYUP:
            hearKey(event.key);
            break;
        case SDL_MOUSEMOTION:
            movePointer(event.motion.x, event.motion.y);
            break;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
            hearButton(event.button);
            break;
        case SDL_QUIT:
            note(of(Deed::CLOSE), read_);
            break;
        default:
            break;
    }
}

// Before the events of a frame the program samples its buttons.
void Recorder::padAsked(int button, bool down) {
    const auto index = static_cast<size_t>(button);
    if (index < padDown_.size() && padDown_[index] != down) {
        padDown_[index] = down;
        note(of(down ? Deed::PAD_DOWN : Deed::PAD_UP, button), !read_);
    }
}

void Recorder::allRead() {
    flushPointer();
    read_ = true;
}

int Recorder::finish() {
    if (frame_ >= 0) {
        endLine();
        out_.assign(std::to_string(frame_ + 1)).append(" end\n");
        write_(out_);
    }
    return frame_ + 1;
}

}  // namespace maker
