#include "tools/control/rhythm/schedule.h"

#include <utility>

namespace control {

namespace {

constexpr int kChances = 1000000;

bool happens(const Rule& rule, int64_t beat, const Lot& lot) {
    if (beat % rule.beats != rule.offset || rule.actions.empty()) {
        return false;
    }
    return rule.chance >= 1 || lot(kChances) < rule.chance * kChances;
}

}  // namespace

bool Schedule::put(const Action& action, Quantum at) {
    if (waiting_.size() >= kMostWaiting) {
        return false;
    }
    waiting_.push_back({action, at});
    return true;
}

std::vector<Action> Schedule::onBeat(int64_t beat, int bar, const std::vector<Rule>& rules,
                                     const Lot& lot) {
    std::vector<Action> now;
    std::vector<Waiting> later;
    for (const Waiting& each : waiting_) {
        if (each.at == Quantum::BAR && beat % bar != 0) {
            later.push_back(each);
        } else {
            now.push_back(each.action);
        }
    }
    waiting_ = std::move(later);
    for (const Rule& rule : rules) {
        if (happens(rule, beat, lot)) {
            const size_t drawn =
                rule.actions.size() == 1
                    ? 0
                    : static_cast<size_t>(lot(static_cast<int>(rule.actions.size())));
            now.push_back(rule.actions[drawn]);
        }
    }
    return now;
}

std::vector<Action> Schedule::takeAll() {
    std::vector<Action> all;
    for (const Waiting& each : std::exchange(waiting_, {})) {
        all.push_back(each.action);
    }
    return all;
}

}  // namespace control
