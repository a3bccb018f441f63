#include "tools/control/bridge/bridge.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "tools/control/bridge/heard_text.h"

namespace control {

namespace {

constexpr size_t kMostKnobs = 4096;
constexpr const char* kTooMuch = "too much waits to be played already";
constexpr const char* kNotReached = "Velmora does not have the keyboard";

bool isAboutBeat(ActionKind kind) {
    return kind == ActionKind::TAP || kind == ActionKind::TEMPO || kind == ActionKind::STOP_BEAT;
}

Key heldKey(ActionKind kind) {
    return kind == ActionKind::FADE ? Key::A : Key::SPACE;
}

// The end of a press that does nothing.
bool isLetGo(const Action& action, std::optional<double> value) {
    return value == 0.0 && !isHeld(action.kind) && !takesValue(action.kind);
}

bool isClock(HeardKind kind) {
    return kind == HeardKind::CLOCK || kind == HeardKind::START || kind == HeardKind::CONTINUE ||
           kind == HeardKind::STOP;
}

}  // namespace

Bridge::Bridge(Hands& hands, ControlMap map, std::function<const StageFiles&()> files,
               unsigned seed)
    : player_(hands), files_(std::move(files)), random_(seed) {
    map_ = std::move(map);
}

int Bridge::lot(int n) {
    return std::uniform_int_distribution(0, n - 1)(random_);
}

// What is held ends, since its pad may be bound to something else now. The tempo of a map that is
// read again counts only where it is another one.
void Bridge::useMap(ControlMap map, Time now) {
    const bool sameTempo = map.tempo == map_.tempo;
    map_ = std::move(map);
    knobs_.clear();
    player_.hold(Key::A, false);
    player_.hold(Key::SPACE, false);
    if (map_.tempo && !sameTempo) {
        beat_.setTempo(*map_.tempo, now);
    }
}

void Bridge::tell(const std::string& what, const std::string& action,
                  const std::string& why) const {
    if (say_) {
        say_(what + (action.empty() ? "" : " -> " + action) + (why.empty() ? "" : ": " + why));
    }
}

void Bridge::hear(const Heard& heard) {
    if (isClock(heard.kind)) {
        hearClock(heard);
        return;
    }
    if (heard.kind == HeardKind::GONE || heard.kind == HeardKind::SKIPPED) {
        tell(textOf(heard), "", "");
        return;
    }
    const std::vector<const Binding*> bindings = bindingsFor(map_, heard);
    for (const Binding* binding : bindings) {
        hearBinding(*binding, heard);
    }
    if (!bindings.empty()) {
        return;
    }
    if (heard.kind == HeardKind::OSC) {
        hearAction(heard);
    } else {
        tell(textOf(heard), "", "");
    }
}

// Of several clocks the first is followed, until it falls silent.
void Bridge::hearClock(const Heard& heard) {
    if (!map_.clock) {
        return;
    }
    if (heard.device != clockDevice_ && heard.when - clockHeard_ < kClockGone &&
        !clockDevice_.empty()) {
        return;
    }
    clockDevice_ = heard.device;
    clockHeard_ = heard.when;
    switch (heard.kind) {
        case HeardKind::START:
            beat_.start();
            break;
        case HeardKind::CONTINUE:
            beat_.goOn();
            break;
        case HeardKind::STOP:
            beat_.stopClock();
            break;
        default:
            onBeat(beat_.tick(heard.when), heard.when);
            return;
    }
    tell(textOf(heard), "", "");
}

// An OSC address may be an action's name.
void Bridge::hearAction(const Heard& heard) {
    const std::optional<Action> action = actionOfAddress(heard.address, heard.value);
    if (!action) {
        tell(textOf(heard), "", "");
        return;
    }
    // Beside a number in the address it is how far a button is down.
    const bool isNumber = !actionOfAddress(heard.address, std::nullopt);
    const std::optional<double> value = isNumber ? std::nullopt : heard.value;
    if (isLetGo(*action, value)) {
        tell(textOf(heard), "", "");
        return;
    }
    tell(textOf(heard), nameOf(*action), act(*action, value, Quantum::NOW, heard.when));
}

// A knob or fader presses when it rises above the middle, and lets go below it.
void Bridge::hearBinding(const Binding& binding, const Heard& heard) {
    std::optional<double> value = heard.value;
    const bool turns = heard.kind == HeardKind::KNOB || heard.kind == HeardKind::BEND ||
                       (heard.kind == HeardKind::OSC && value.has_value());
    if (turns && !takesValue(binding.action.kind)) {
        // Some senders of OSC take another port for each message.
        const bool osc = heard.kind == HeardKind::OSC;
        const std::string knob = std::to_string(binding.line) + (osc ? "" : heard.device);
        const bool pressed = *value >= kPressedFrom;
        if (knobs_.size() >= kMostKnobs) {
            knobs_.clear();
        }
        bool& before = knobs_[knob];
        // OSC has no travel to speak of: a button that sends 1 each time is pressed each time.
        if (pressed == before && !(osc && pressed)) {
            return;
        }
        before = pressed;
        value = pressed ? 1 : 0;
    }
    if (isLetGo(binding.action, value)) {
        tell(textOf(heard), "", "");
        return;
    }
    tell(textOf(heard), nameOf(binding.action), act(binding.action, value, binding.at, heard.when));
}

std::string Bridge::act(const Action& action, std::optional<double> value, Quantum at, Time now) {
    if (isLetGo(action, value)) {
        return "";
    }
    if (at != Quantum::NOW && beat_.beats(now)) {
        return schedule_.put(action, at) ? "" : "too much waits for the beat already";
    }
    return perform(action, value, now);
}

std::string Bridge::perform(const Action& action, std::optional<double> value, Time now) {
    if (isAboutBeat(action.kind)) {
        return aboutBeat(action, now);
    }
    if (isHeld(action.kind)) {
        return hold(action, value, now);
    }
    if (takesValue(action.kind)) {
        return scrub(action, value, now);
    }
    return gesture(action);
}

std::string Bridge::aboutBeat(const Action& action, Time now) {
    if (action.kind == ActionKind::TAP) {
        onBeat(beat_.tap(now), now);
    } else if (action.kind == ActionKind::TEMPO) {
        beat_.setTempo(action.number, now);
    } else {
        beat_.stop();
        for (const Action& waiting : schedule_.takeAll()) {
            perform(waiting, std::nullopt, now);
        }
    }
    return "";
}

std::string Bridge::hold(const Action& action, std::optional<double> value, Time now) {
    const bool down = !value || *value != 0;
    std::erase_if(touches_, [&](const Touch& each) { return each.action == action; });
    std::string why;
    if (action.kind == ActionKind::FILTER_HELD) {
        Action change = action;
        change.kind = down ? ActionKind::FILTER_ON : ActionKind::FILTER_OFF;
        why = gesture(change);
    } else {
        why = !down ? "" : reached_ ? whyNoMix(stage_) : kNotReached;
        if (why.empty()) {
            player_.hold(heldKey(action.kind), down);
        }
    }
    if (why.empty() && !value) {
        touches_.push_back({action, now + kTouch});
    }
    return why;
}

// While the fade is held Velmora takes no Tab: the panel waits until it is let go.
std::string Bridge::gesture(const Action& action) {
    if (!reached_) {
        return kNotReached;
    }
    if (action.kind == ActionKind::PANEL && player_.holds(Key::A)) {
        panelOwed_ = !panelOwed_;
        return "";
    }
    leaveScrub();
    StageModel after = stage_;
    Played played = gestureOf(action, after, files_(), [this](int n) { return lot(n); });
    if (!played.why.empty()) {
        return played.why;
    }
    return plan(played.gesture, after) ? "" : kTooMuch;
}

// The layer under the pointer is the active one, so that of the knob becomes it until it rests.
std::string Bridge::scrub(const Action& action, std::optional<double> value, Time now) {
    std::string why = reached_ ? whyNoMix(stage_) : kNotReached;
    if (why.empty() && !value) {
        why = "it needs a value from 0 to 1";
    }
    if (!why.empty()) {
        return why;
    }
    const int home = afterScrub_.value_or(stage_.active);
    const int layer = action.layer == Layer::ACTIVE ? home : action.layer == Layer::TOP ? 1 : 0;
    if (layer != stage_.active) {
        player_.endScrub();
        StageModel after = stage_;
        const Gesture gesture = gestureToLayer(layer, after);
        if (!plan(gesture, after)) {
            return kTooMuch;
        }
        afterScrub_ = home;
    }
    player_.scrub(*value, now);
    return "";
}

void Bridge::leaveScrub() {
    if (player_.scrubbing()) {
        player_.endScrub();
    }
    if (afterScrub_) {
        StageModel after = stage_;
        const Gesture gesture = gestureToLayer(*std::exchange(afterScrub_, std::nullopt), after);
        plan(gesture, after);
    }
}

// False when too much waits already: the stage stays as it is then.
bool Bridge::plan(const Gesture& gesture, const StageModel& after) {
    forgetPlans();
    if (!player_.play(gesture)) {
        return false;
    }
    plans_.push_back({player_.planned(), after});
    stage_ = after;
    return true;
}

// Of what is played whole only the stage that it led to is kept.
void Bridge::forgetPlans() {
    while (!plans_.empty() && plans_.front().lastStep <= player_.begun()) {
        played_ = plans_.front().after;
        plans_.pop_front();
    }
}

void Bridge::onBeat(std::optional<int64_t> beat, Time now) {
    if (!beat) {
        return;
    }
    lastBeat_ = beat;
    for (const Action& action :
         schedule_.onBeat(*beat, map_.bar, map_.rules, [this](int n) { return lot(n); })) {
        const std::string why = perform(action, std::nullopt, now);
        tell("beat " + std::to_string(*beat + 1), nameOf(action), why);
    }
}

void Bridge::stageBegins(Time now) {
    const bool reached = reached_;
    reaches(false);
    reached_ = reached;
    stage_ = freshStage();
    played_ = stage_;
    opens_ = now + kIntro;
}

// The stage is as the last gesture left it that was played whole.
void Bridge::reaches(bool reached) {
    reached_ = reached;
    if (reached) {
        return;
    }
    forgetPlans();
    plans_.clear();
    stage_ = played_;
    player_.stop();
    touches_.clear();
    afterScrub_.reset();
    panelOwed_ = false;
}

void Bridge::endTouches(Time now) {
    std::vector<Touch> ended;
    std::ranges::copy_if(touches_, std::back_inserter(ended),
                         [&](const Touch& each) { return now >= each.end; });
    for (const Touch& each : ended) {
        hold(each.action, 0.0, now);
    }
}

Time Bridge::advance(Time now) {
    onBeat(beat_.advance(now), now);
    endTouches(now);
    if (now < opens_) {
        return std::min(opens_, beat_.next());
    }
    Time next = player_.advance(now);
    if (panelOwed_ && !player_.holds(Key::A)) {
        panelOwed_ = false;
        gesture({.kind = ActionKind::PANEL});
        next = std::min(next, player_.advance(now));
    }
    if (afterScrub_ && !player_.scrubbing()) {
        leaveScrub();
        next = std::min(next, player_.advance(now));
    }
    for (const Touch& each : touches_) {
        next = std::min(next, each.end);
    }
    return std::min(next, beat_.next());
}

}  // namespace control
