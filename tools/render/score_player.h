#pragma once
// Gives the program a score's events, each in its frame. It is called by the headless stage: before
// the keys of a frame are sampled, before its events are read, and when it has been shown.
//
// A score that names a playlist begins with the frame after the one in which all of that has been
// loaded; the keys that lead there are pressed here.

#include <cstddef>

#include "tools/score/score.h"

namespace maker {

class ScorePlayer {
public:
    // The place of the score's playlist among the program's; -1: the score names none.
    ScorePlayer(const Score& score, int playlist);

    void keysSampled();
    void eventsRead();
    // The frame of the score that has been shown; -1 when it has not begun.
    int frameShown();

private:
    void apply(bool early);
    void setRate() const;
    void walk();

    const Score& score_;
    int playlist_;
    int frame_;         // of the score; -1 before
    size_t next_ = 0;   // of its events
    int walked_ = 0;    // frames of the way to the playlist
    int pressed_ = -1;  // in which of them a key went down; -1: none is
    int key_ = 0;       // this one
    bool loads_ = false;
};

}  // namespace maker
