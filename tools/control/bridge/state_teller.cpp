#include "tools/control/bridge/state_teller.h"

#include <algorithm>

namespace control {

namespace {

constexpr Duration kSecond = milliseconds(1000);

std::optional<double> counted(std::optional<int64_t> from0) {
    return from0 ? std::optional(static_cast<double>(*from0 + 1)) : std::nullopt;
}

}  // namespace

std::vector<StateTeller::Part> StateTeller::parts() const {
    const StageModel& stage = bridge_.stage();
    const std::string mode = nameOf({.kind = ActionKind::MODE, .mode = stage.mode});
    return {{"/state/layer", std::nullopt, stage.active == 1 ? "top" : "bottom"},
            {"/state/mode", std::nullopt, mode.substr(mode.find('.') + 1)},
            {"/state/playlist", counted(stage.selected), ""},
            {"/state/beat", counted(bridge_.lastBeat()), ""}};
}

void StateTeller::listen(const std::string& to, bool once) {
    const auto known = std::ranges::find(listeners_, to, &Listener::to);
    if (known != listeners_.end()) {
        known->told.assign(kStateParts, {});
        known->once = known->once && once;
        return;
    }
    if (listeners_.size() >= kMostListeners) {
        listeners_.pop_front();
    }
    listeners_.push_back({.to = to, .once = once, .sent = {}});
}

void StateTeller::doNamed(const Heard& heard) {
    const std::optional<Action> action = actionNamed(heard.text);
    const std::string why = action ? bridge_.act(*action, heard.value, Quantum::NOW, heard.when)
                                   : whyNoAction(heard.text);
    send_(heard.device, why.empty() ? "/done" : "/refused", std::nullopt, why);
}

bool StateTeller::hear(const Heard& heard) {
    if (heard.address == "/subscribe") {
        if (heard.value == 0.0) {
            std::erase_if(listeners_,
                          [&](const Listener& each) { return each.to == heard.device; });
        } else {
            listen(heard.device, false);
        }
    } else if (heard.address == "/state") {
        listen(heard.device, true);
    } else if (heard.address == "/do") {
        doNamed(heard);
    } else {
        return false;
    }
    return true;
}

Time StateTeller::advance(Time now) {
    Time next = Time::max();
    const std::vector<Part> current = parts();
    for (Listener& each : listeners_) {
        while (!each.sent.empty() && now - each.sent.front() >= kSecond) {
            each.sent.pop_front();
        }
        for (size_t i = 0; i < current.size(); ++i) {
            if (each.told[i] == current[i]) {
                continue;
            }
            if (each.sent.size() >= kMostAnswers) {
                next = std::min(next, each.sent.front() + kSecond);
                break;
            }
            each.told[i] = current[i];
            each.sent.push_back(now);
            send_(each.to, current[i].address, current[i].number, current[i].text);
        }
    }
    std::erase_if(listeners_,
                  [&](const Listener& each) { return each.once && each.told == current; });
    return next;
}

}  // namespace control
