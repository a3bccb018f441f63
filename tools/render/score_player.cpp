#include "tools/render/score_player.h"

#include "common/geometry.h"
#include "core/all.h"
#include "core/globals.h"
#include "input/keys.h"
#include "playlists/playlist.h"
#include "tools/render/headless_sdl.h"
#include "tools/score/keys.h"
#include "ui/overmenu.h"

namespace maker {

namespace {

constexpr int kPause = 2 * kTapFrames;  // from one press of a key to the next

void post(const ScoreEvent& event) {
    const Point picture = pictureOffset(all->appW, all->appH);
    switch (event.deed) {
        case Deed::KEY_DOWN:
        case Deed::KEY_AGAIN:
            postKey(true, event.code, event.character);
            break;
        case Deed::KEY_UP:
            postKey(false, event.code, 0);
            break;
        case Deed::KEY_IS_DOWN:
        case Deed::KEY_IS_UP:
            setKey(event.code, event.deed == Deed::KEY_IS_DOWN);
            break;
        case Deed::POINTER:
            postPointer(picture.x + event.x, picture.y + event.y);
            break;
        case Deed::MOUSE_DOWN:
        case Deed::MOUSE_UP:
            postMouse(event.deed == Deed::MOUSE_DOWN, event.code);
            break;
        case Deed::PAD_DOWN:
        case Deed::PAD_UP:
            setPadButton(event.code, event.deed == Deed::PAD_DOWN);
            break;
        case Deed::RATE:
            break;  // counts before its frame begins
        case Deed::CLOSE:
            postClose();
            break;
    }
}

// What leads to the playlist from here; 0: nothing but time.
int nextKey(int wanted) {
    if (all->state == STATE_HOME) {
        return *keyOf("x");
    }
    if (all->state != STATE_MIX || all->subState != SUB_OVERMENU) {
        return 0;
    }
    return *keyOf(overMenu->selected < wanted ? "down" : overMenu->selected > wanted ? "up" : "x");
}

}  // namespace

ScorePlayer::ScorePlayer(const Score& score, int wanted)
    : score_(score), playlist_(wanted), frame_(wanted < 0 ? 0 : -1) {
    setRate();
}

// Before the first event of the next frame: the program looks at the clock first.
void ScorePlayer::setRate() const {
    for (size_t i = next_; i < score_.events.size() && score_.events[i].frame <= frame_; ++i) {
        if (score_.events[i].deed == Deed::RATE) {
            headlessStage().rate = score_.events[i].code;
        }
    }
}

void ScorePlayer::apply(bool early) {
    for (size_t i = next_; i < score_.events.size() && score_.events[i].frame <= frame_; ++i) {
        if (score_.events[i].early == early) {
            post(score_.events[i]);
        }
    }
}

void ScorePlayer::walk() {
    ++walked_;
    if (pressed_ >= 0 && walked_ - pressed_ == kTapFrames) {
        postKey(false, key_, 0);
    }
    if (pressed_ >= 0 && walked_ - pressed_ < kPause) {
        return;
    }
    pressed_ = -1;
    key_ = loads_ ? 0 : nextKey(playlist_);
    if (key_ != 0) {
        loads_ = all->state == STATE_MIX && key_ == *keyOf("x");
        pressed_ = walked_;
        postKey(true, key_, usualCharacter(key_));
    }
}

void ScorePlayer::keysSampled() {
    apply(true);
}

void ScorePlayer::eventsRead() {
    if (frame_ < 0) {
        walk();
        return;
    }
    apply(false);
    while (next_ < score_.events.size() && score_.events[next_].frame <= frame_) {
        ++next_;
    }
}

int ScorePlayer::frameShown() {
    const int shown = frame_;
    // The key that chose the playlist is up again by then.
    const bool begins = loads_ && pressed_ < 0 && playlist->loadDone != 0;
    if (frame_ >= 0 || begins) {
        ++frame_;
    }
    setRate();
    return shown;
}

}  // namespace maker
