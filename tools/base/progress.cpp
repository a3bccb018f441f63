#include "tools/base/progress.h"

#include <unistd.h>
#include <cmath>

#include <algorithm>
#include <cstdio>

#include "tools/base/texts.h"

namespace maker {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPause = std::chrono::milliseconds(100);  // between two lines
constexpr double kSettled = 0.5;                         // seconds before a rate means anything

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

std::string timeText(double seconds) {
    const int whole = static_cast<int>(std::lround(seconds));
    char text[40];
    if (whole < 60) {
        std::snprintf(text, sizeof text, "%d s", whole);
    } else if (whole < 3600) {
        std::snprintf(text, sizeof text, "%d:%02d min", whole / 60, whole % 60);
    } else {
        std::snprintf(text, sizeof text, "%d:%02d h", whole / 3600, whole % 3600 / 60);
    }
    return text;
}

}  // namespace

std::string progressText(const ProgressState& state) {
    std::string text;
    const bool fitting = state.clips <= 1 && state.stage == Stage::FITTING;
    if (fitting) {
        text = "fitting " + counted(static_cast<size_t>(state.frames), "frame");
    } else if (state.clips > 1) {
        text = std::to_string(state.finished) + " of " + std::to_string(state.clips) + " clips";
    } else {
        text = state.stage == Stage::LOOKING ? "looking at " : "";
        text += "frame " + std::to_string(state.frames);
        text += state.expected > 0 ? " of " + std::to_string(state.expected) : "";
    }
    if (state.seconds >= kSettled) {
        text += fitting || state.frames == 0
                    ? ""
                    : ", " + decimals(state.frames / state.seconds, 1) + " frames/s";
        if (state.part > 0) {
            text += ", " + timeText(state.seconds * (1 - state.part) / state.part) + " left";
        }
    }
    return text;
}

Progress::Progress(size_t clips, FILE* terminal)
    : terminal_(terminal),
      shown_(terminal != nullptr && isatty(fileno(terminal)) != 0),
      clips_(clips),
      begin_(Clock::now()),
      last_(begin_) {}

void Progress::show() {
    if (!shown_ || Clock::now() - last_ < kPause) {
        return;
    }
    last_ = Clock::now();
    ProgressState state;
    state.clips = clips_.size();
    state.seconds = secondsSince(begin_);
    double parts = 0;
    for (const Clip& clip : clips_) {
        state.frames += clip.step.frames;
        state.finished += clip.finished ? 1 : 0;
        state.expected = clip.step.expected;
        state.stage = clip.step.stage;
        parts += clip.finished ? 1 : clip.part;
    }
    state.part = parts / static_cast<double>(clips_.size());
    std::fprintf(terminal_, "\r%s\033[K", progressText(state).c_str());
    std::fflush(terminal_);
}

void Progress::update(size_t clip, const ProgressStep& step) {
    const std::lock_guard lock(mutex_);
    Clip& own = clips_[clip];
    own.step = step;
    own.part = std::max(own.part, std::min(step.part, 1.0));
    show();
}

void Progress::finish(size_t clip) {
    const std::lock_guard lock(mutex_);
    clips_[clip].finished = true;
    show();
}

void Progress::aside(const std::function<void()>& print) {
    const std::lock_guard lock(mutex_);
    if (shown_) {
        std::fputs("\r\033[K", terminal_);
        std::fflush(terminal_);
    }
    print();
}

Progress::~Progress() {
    aside([] {});
}

}  // namespace maker
