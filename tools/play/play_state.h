#pragma once
// What a clip that is watched is doing: its frame, its direction, and what keys change of that.

#include <optional>

namespace maker {

enum class PlayKey {
    LEAVE,
    HOLD,
    ON,    // a frame, in the clip's own direction
    BACK,  // likewise
    REVERSE,
    FACTS,
    NEXT_CLIP,
    LAST_CLIP,
    FULL_SCREEN,
};

// By SDL's number of the key; none for one that does nothing.
std::optional<PlayKey> playKeyOf(int key);

struct PlayState {
    int frame = 0;
    bool backwards = false;
    bool held = false;
    bool facts = false;
};

// The next frame of `frames` is due.
void advance(PlayState& state, int frames);

// Of the keys only those that are about one clip. A step holds it, so that it can be looked at.
void press(PlayState& state, PlayKey key, int frames);

}  // namespace maker
