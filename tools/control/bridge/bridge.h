#pragma once
// The bridge: what came in becomes actions by the map, actions become gestures, and the player
// plays them. Knows no device, no socket and no clock, so that tests script all of them.

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tools/control/base/hands.h"
#include "tools/control/base/heard.h"
#include "tools/control/map/control_map.h"
#include "tools/control/rhythm/beat.h"
#include "tools/control/rhythm/schedule.h"
#include "tools/control/stage/player.h"
#include "tools/control/stage/stage_model.h"

namespace control {

// Velmora shows its logo for two seconds and takes no keys then.
inline constexpr Duration kIntro = milliseconds(2500);
// An action that is held, asked for without saying when it ends: the fade takes 15 frames to black.
inline constexpr Duration kTouch = milliseconds(600);
// A knob or fader that is bound to a press is pressed from here on.
inline constexpr double kPressedFrom = 0.5;

// One line for whoever watches: `velmora-control monitor`.
using Say = std::function<void(const std::string& line)>;

class Bridge {
public:
    // `files` is called for each action and gives what Velmora's files say now.
    Bridge(Hands& hands, ControlMap map, std::function<const StageFiles&()> files, unsigned seed);

    void watch(Say say) { say_ = std::move(say); }
    void useMap(ControlMap map, Time now);
    const ControlMap& map() const { return map_; }

    void hear(const Heard& heard);

    // An action by itself. `value`: how far a knob is turned, 0 when a pad was let go; none when
    // only the name was said. Returns why it was not done; empty: it is, or waits its turn.
    std::string act(const Action& action, std::optional<double> value, Quantum at, Time now);

    // Velmora was started just now: its stage is fresh, and it shows its logo.
    void stageBegins(Time now);
    // Presses reach it from now on, or no more. What waited then is not played later, and what is
    // asked for meanwhile is refused.
    void reaches(bool reached);

    // Does what is due. Returns when the next is.
    Time advance(Time now);

    const StageModel& stage() const { return stage_; }
    const Beat& beat() const { return beat_; }
    std::optional<int64_t> lastBeat() const { return lastBeat_; }
    bool idle() const { return player_.idle(); }

private:
    void hearClock(const Heard& heard);
    void hearAction(const Heard& heard);
    void hearBinding(const Binding& binding, const Heard& heard);
    std::string perform(const Action& action, std::optional<double> value, Time now);
    std::string hold(const Action& action, std::optional<double> value, Time now);
    std::string scrub(const Action& action, std::optional<double> value, Time now);
    std::string aboutBeat(const Action& action, Time now);
    std::string gesture(const Action& action);
    void onBeat(std::optional<int64_t> beat, Time now);
    void leaveScrub();
    void endTouches(Time now);
    bool plan(const Gesture& gesture, const StageModel& after);
    void forgetPlans();
    void tell(const std::string& what, const std::string& action, const std::string& why) const;
    int lot(int n);

    Player player_;
    ControlMap map_;
    std::function<const StageFiles&()> files_;
    Say say_;
    StageModel stage_;  // when all that waits is played
    struct Touch {
        Action action;
        Time end;
    };
    struct Plan {
        size_t lastStep;  // of a gesture, as the player counts
        StageModel after;
    };
    std::deque<Plan> plans_;
    StageModel played_;  // after the last gesture that was played whole
    bool reached_ = true;
    Beat beat_;
    Schedule schedule_;
    std::mt19937 random_;
    std::optional<int64_t> lastBeat_;
    std::string clockDevice_;  // of several clocks the one that is followed
    Time clockHeard_{};
    Time opens_{};                       // gestures wait until then
    std::map<std::string, bool> knobs_;  // those bound to presses: pressed now
    std::vector<Touch> touches_;         // what is held and ends by itself
    std::optional<int> afterScrub_;      // the layer to return to
    bool panelOwed_ = false;             // asked for while the fade is held
};

}  // namespace control
