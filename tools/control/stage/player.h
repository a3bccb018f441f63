#pragma once
// Plays gestures, held keys and the mouse at a pace that Velmora can follow. It samples the keys
// once a frame, 39 ms apart, so a press lasts kStep, two frames, and what comes faster waits its
// turn. Owns no clock: whoever has it calls advance() when told to.

#include <array>
#include <deque>
#include <optional>

#include "tools/control/base/hands.h"
#include "tools/control/base/time.h"
#include "tools/control/stage/gestures.h"

namespace control {

inline constexpr Duration kStep = milliseconds(80);
// Steps that wait at most: some minutes of playing as fast as Velmora can follow.
inline constexpr size_t kMostSteps = 4096;
// A scrub ends when its knob rests so long.
inline constexpr Duration kScrubRest = milliseconds(400);
// Where a scrub's value 0 and 1 are in the strip, in pixels of the picture; five are a frame.
inline constexpr int kScrubLeft = 0;
inline constexpr int kScrubRight = 639;
inline constexpr int kScrubLine = 215;

class Player {
public:
    explicit Player(Hands& hands) : hands_(hands) {}

    // In its turn. False when too many steps wait already: nothing of it is played then.
    bool play(const Gesture& gesture);
    // A key that stays down (A or Space), beside all gestures.
    void hold(Key key, bool down);
    // The pointer goes to `value`, 0 to 1, in the strip, with the button down, when all gestures
    // before are played. A gesture that is played ends the scrub.
    void scrub(double value, Time now);
    void endScrub() { scrub_.wanted.reset(); }
    bool holds(Key key) const { return held_[indexOf(key)].wanted || held_[indexOf(key)].down; }
    bool scrubbing() const { return scrub_.wanted.has_value() || scrub_.down; }

    // Does what is due. Returns when the next is: Time::max() when nothing waits.
    Time advance(Time now);

    // Lets go of everything and forgets what waits.
    void stop();

    bool idle() const { return steps_.empty() && down_ == 0; }
    size_t waiting() const { return steps_.size(); }
    // Steps since the beginning: taken in, and begun.
    size_t planned() const { return begun_ + steps_.size(); }
    size_t begun() const { return begun_; }

private:
    struct Held {
        bool wanted = false;
        bool down = false;
        Time changed{};  // not changed again for kStep
    };
    struct Scrub {
        std::optional<double> wanted;
        bool down = false;
        double shown = -1;
        Time pressed{};
        Time heard{};  // its knob, last
    };

    Time advanceSteps(Time now);
    Time advanceHeld(Time now);
    Time advanceScrub(Time now);
    void change(KeySet to, Time now);
    void release();
    void point(double value);

    Hands& hands_;
    std::deque<KeySet> steps_;
    size_t begun_ = 0;
    KeySet down_ = 0;    // of the step that is played
    KeySet before_ = 0;  // of the one before
    Time changed_{};     // when it began
    std::array<Held, kKeys> held_{};
    Scrub scrub_;
};

}  // namespace control
