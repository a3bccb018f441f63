#pragma once
// Which keys an action is, from where the stage is. Pure.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tools/control/base/key.h"
#include "tools/control/stage/stage_model.h"

namespace control {

// Keys that are down together, a bit each.
using KeySet = uint32_t;

constexpr KeySet setOf(Key key) {
    return KeySet{1} << indexOf(key);
}

inline constexpr KeySet kFilterLetters = (setOf(Key::O) << 1) - setOf(Key::Q);

// What is down in each step, one after the other; each step lasts kStep (player.h). A key that is
// in two steps running stays down between them.
using Gesture = std::vector<KeySet>;

// Velmora tells a new press by the key having been up in the frame before; and in the frame in
// which a filter letter goes up the arrows still belong to the filter. Where either matters a step
// with nothing down must stand between two steps.
constexpr bool needsGap(KeySet before, KeySet next) {
    return (before & next) != 0 || (before & kFilterLetters) != 0;
}

struct Played {
    Gesture gesture;  // empty when there is nothing to press
    std::string why;  // not empty: the action cannot be done now, and this is the reason
};

// The keys of an action, and `stage` as it is after them; it stays as it was where there is a
// reason against. `lot(n)` draws one of 0 to n - 1. Not for what is held, takes a value or is about
// the beat: those have no gesture.
Played gestureOf(const Action& action, StageModel& stage, const StageFiles& files,
                 const std::function<int(int)>& lot);

// The keys that make `layer` (0 bottom, 1 top) the active one; none where it is.
Gesture gestureToLayer(int layer, StageModel& stage);

// Why what is done to the mix cannot be done now; empty: it can.
std::string whyNoMix(const StageModel& stage);

}  // namespace control
