#pragma once
// From the source's timing to the clip's: which source frame stands for each clip frame.
//
// Clip frame n is shown at n / fps seconds and takes the source frame on show at that moment, so
// motion keeps its true speed at any pair of rates. Times are in seconds from the clip's start.

namespace maker {

class Pacer {
public:
    // At most `limit` clip frames in all.
    Pacer(double fps, int limit) : fps_(fps), limit_(limit) {}

    // How many clip frames, not counted before, begin earlier than `until`: they show the source
    // frame that is on show up to that moment.
    int due(double until);

    bool finished() const { return given_ >= limit_; }

private:
    double fps_;
    int limit_;
    int given_ = 0;
};

// Clip frames that fill `seconds`; at most `limit`.
int framesFor(double seconds, double fps, int limit);

}  // namespace maker
