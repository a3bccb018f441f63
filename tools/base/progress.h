#pragma once
// The line of progress on standard error: what is done, frames a second, the time left.
//
// Shown on a terminal only, and gone at the end. Several clips may be under way at once, each with
// a number below `clips`; all calls may come from any thread.

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace maker {

enum class Stage {
    LOOKING,   // at the input, before it is encoded
    ENCODING,  // or gathering, where there is a budget
    FITTING,   // into a budget
};

// How far one clip is: the frames of its input are gone through once or more often.
struct ProgressStep {
    int frames = 0;    // done in this pass
    int expected = 0;  // 0 when nobody knows
    double part = 0;   // done of all passes, 0 to 1; 0 when nobody knows
    Stage stage = Stage::ENCODING;
};

struct ProgressState {
    size_t clips = 0;
    size_t finished = 0;
    Stage stage = Stage::ENCODING;  // of the only clip
    int frames = 0;                 // gone through, of all clips
    int expected = 0;               // of the only clip; 0 when nobody knows
    double part = 0;                // done of everything, 0 to 1; 0 when nobody knows
    double seconds = 0;             // since the beginning
};

// "frame 100 of 250, 40 frames/s, 4 s left", "fitting 250 frames, 4 s left", or with several clips
// "3 of 12 clips, ..."
std::string progressText(const ProgressState& state);

class Progress {
public:
    // Shown on `terminal`, when it is one.
    explicit Progress(size_t clips, FILE* terminal = stderr);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void update(size_t clip, const ProgressStep& step);  // never goes back
    void finish(size_t clip);
    void aside(const std::function<void()>& print);  // without the line, for other output

private:
    struct Clip {
        ProgressStep step;
        double part = 0;
        bool finished = false;
    };

    void show();

    FILE* terminal_;
    bool shown_;
    std::mutex mutex_;
    std::vector<Clip> clips_;
    std::chrono::steady_clock::time_point begin_;
    std::chrono::steady_clock::time_point last_;
};

}  // namespace maker
