#pragma once
// The line of progress on standard error: what is done, frames a second, the time left.
//
// Shown on a terminal only, and gone at the end. Several clips may be under way at once, each with
// a number below `clips`; all calls may come from any thread.

#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace maker {

// How far one clip is: the frames of its input are gone through once or more often.
struct ProgressStep {
    int frames = 0;        // done in this pass
    int expected = 0;      // 0 when nobody knows
    int pass = 0;          // from 0
    int passes = 1;        // as many as it takes, as far as is known by now
    bool looking = false;  // nothing is encoded yet
};

struct ProgressState {
    size_t clips = 0;
    size_t finished = 0;
    bool looking = false;  // at the only clip's input, before it is encoded
    int frames = 0;        // gone through, of all clips
    int expected = 0;      // of the only clip; 0 when nobody knows
    double part = 0;       // done of everything, 0 to 1; 0 when nobody knows
    double seconds = 0;    // since the beginning
};

// "frame 100 of 250, 40 frames/s, 4 s left", or with several clips "3 of 12 clips, ..."
std::string progressText(const ProgressState& state);

class Progress {
public:
    explicit Progress(size_t clips);
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

    bool shown_;
    std::mutex mutex_;
    std::vector<Clip> clips_;
    std::chrono::steady_clock::time_point begin_;
    std::chrono::steady_clock::time_point last_;
};

}  // namespace maker
