#pragma once
// The test's side of the frame double: a file of counts for one program at a time.

#include <string>

#include "app/frame_double.h"

namespace app {

class Frames {
public:
    explicit Frames(const std::string& path);  // throws std::runtime_error when it cannot be made
    ~Frames();
    Frames(const Frames&) = delete;
    Frames& operator=(const Frames&) = delete;

    void startAnew();  // another program counts from 0
    int begun() const { return static_cast<int>(count_->begun.load()); }
    int finished() const { return static_cast<int>(count_->finished.load()); }
    // No frame begins before it is let go; the one that has begun goes on to its end.
    void hold(bool held) { count_->held = held ? 1 : 0; }
    const std::string& path() const { return path_; }

private:
    std::string path_;
    FrameCount* count_;
};

}  // namespace app
