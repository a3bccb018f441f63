// velmora-clip-play CLIP...: shows clips in a window. "velmora-clip play" starts it, so that
// velmora-clip itself needs no display's library.

#include <SDL.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/media/pixel_font.h"
#include "tools/clip/media/source.h"
#include "tools/clip/reports/clip_frames.h"
#include "tools/clip/reports/describe.h"
#include "tools/play/play_state.h"
#include "tools/play/play_window.h"

namespace {

using namespace maker;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::duration<double> kFrame(1 / kStageFps);
constexpr int kListenMs = 5;

struct OpenClip {
    ClipFrames frames;
    std::vector<std::string> facts;  // as the program's preview tells them
};

OpenClip openWithFacts(const std::string& path) {
    const std::vector<uint8_t> bytes = readWholeFile(path);
    Description description;
    describe(bytes, description);
    OpenClip clip{openClip(path), {}};
    clip.facts.push_back(readable(std::filesystem::path(path).filename().string()));
    clip.facts.push_back(std::string(clip.frames.alpha() ? "RVBA" : "RVB") + "  Quality " +
                         std::to_string(description.header.quality));
    clip.facts.push_back(std::to_string(bytes.size() / 1024) + " kbytes");
    clip.facts.push_back(std::to_string(clip.frames.count()) + " frames");
    return clip;
}

// White as a display shows RGB565.
constexpr Colour kWhite{0xF8, 0xFC, 0xF8, 255};
constexpr Colour kBlack{0, 0, 0, 255};

void drawFacts(Picture& picture, const OpenClip& clip, int frame) {
    constexpr int kX = 30;
    constexpr int kFirstY = 40;
    constexpr int kLineY = 20;
    constexpr int kProgressY = 5;
    const PixelFont font(kSmallText);
    Canvas canvas(picture);
    std::vector<std::string> lines = clip.facts;
    lines.push_back("frame " + std::to_string(frame));
    int y = kFirstY;
    for (const std::string& line : lines) {
        const std::u32string text = codePoints(line);
        canvas.rect(kX - 2, y - 2, font.widthOf(text) + 4, kSmallText + 5, kBlack);
        font.draw(canvas, kX, y, text, kWhite);
        y += kLineY;
    }
    canvas.rect(0, kProgressY, frame * picture.width / clip.frames.count(), 1, kWhite);
}

class Watching {
public:
    explicit Watching(std::vector<std::string> paths) : paths_(std::move(paths)) {}

    // Until it is left. False when a clip could not be shown.
    bool run();

private:
    bool openNext(int by);
    bool hearKeys();
    void act(PlayKey key);
    void show();

    std::vector<std::string> paths_;
    std::optional<PlayWindow> window_;
    std::optional<OpenClip> clip_;
    PlayState state_;
    size_t place_ = 0;
    bool left_ = false;
    bool broken_ = false;
};

// From the current place on; a clip that cannot be shown is left out from then on. False when there
// is none left.
bool Watching::openNext(int by) {
    while (!paths_.empty()) {
        const auto count = static_cast<int>(paths_.size());
        place_ = static_cast<size_t>((static_cast<int>(place_) + by + count) % count);
        try {
            clip_ = openWithFacts(paths_[place_]);
            state_.frame = 0;
            return true;
        } catch (const ToolError& error) {
            std::fprintf(stderr, "velmora-clip: %s\n", error.what());
            paths_.erase(paths_.begin() + static_cast<ptrdiff_t>(place_));
            broken_ = true;
            by = by < 0 ? -1 : 0;  // the next one has taken its place
        }
    }
    return false;
}

void Watching::act(PlayKey key) {
    if (key == PlayKey::LEAVE) {
        left_ = true;
    } else if (key == PlayKey::NEXT_CLIP || key == PlayKey::LAST_CLIP) {
        left_ = !openNext(key == PlayKey::NEXT_CLIP ? 1 : -1);
        window_->setTitle(left_ ? "" : clip_->facts.front());
    } else if (key == PlayKey::FULL_SCREEN) {
        window_->toggleFullScreen();
    } else {
        press(state_, key, clip_->frames.count());
    }
}

// True when there is something else to be shown.
bool Watching::hearKeys() {
    bool any = false;
    SDL_Event event;
    while (!left_ && SDL_PollEvent(&event) != 0) {
        left_ = event.type == SDL_QUIT;
        any = any || event.type == SDL_VIDEOEXPOSE;
        if (event.type == SDL_KEYDOWN) {
            if (const std::optional<PlayKey> key = playKeyOf(event.key.keysym.sym)) {
                act(*key);
                any = true;
            }
        }
    }
    return any && !left_;
}

void Watching::show() {
    Picture picture = clip_->frames.picture(state_.frame);
    if (clip_->frames.alpha()) {
        picture = overCheckerboard(picture);
    }
    if (state_.facts) {
        drawFacts(picture, *clip_, state_.frame);
    }
    window_->show(picture);
}

bool Watching::run() {
    if (!openNext(0)) {
        return false;
    }
    window_.emplace();
    window_->setTitle(clip_->facts.front());
    show();
    Clock::time_point due = Clock::now() + std::chrono::duration_cast<Clock::duration>(kFrame);
    while (!left_ && !interrupted()) {
        SDL_Delay(kListenMs);
        bool changed = hearKeys();
        if (Clock::now() >= due) {
            // A clip that was late goes on from now.
            due = std::max(due, Clock::now() - std::chrono::milliseconds(100)) +
                  std::chrono::duration_cast<Clock::duration>(kFrame);
            changed = changed || !state_.held;
            advance(state_, clip_->frames.count());
        }
        if (changed && !left_) {
            show();
        }
    }
    return !broken_;
}

}  // namespace

int main(int argc, char** argv) {
    catchInterrupts();
    try {
        if (argc < 2) {
            throw ToolError("which clips?");
        }
        return Watching({argv + 1, argv + argc}).run() ? 0 : 1;
    } catch (const Interrupted&) {
        return 130;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora-clip: %s\n", lineOf(error));
        return 1;
    }
}
