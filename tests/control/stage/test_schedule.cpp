#include <gtest/gtest.h>

#include "tools/control/rhythm/schedule.h"

namespace control {

namespace {

const Action kFlash = {.kind = ActionKind::FLASH};
const Action kNext = {.kind = ActionKind::NEXT};
const Action kReverse = {.kind = ActionKind::REVERSE};

int lowest(int) {
    return 0;
}
int highest(int n) {
    return n - 1;
}

Rule every(int beats, int offset, std::vector<Action> actions, double chance = 1) {
    Rule rule;
    rule.beats = beats;
    rule.offset = offset;
    rule.actions = std::move(actions);
    rule.chance = chance;
    return rule;
}

using Actions = std::vector<Action>;

}  // namespace

TEST(Schedule, Rule_HappensOnEachOfItsBeats) {
    Schedule schedule;
    const std::vector<Rule> rules = {every(4, 0, {kFlash}), every(4, 2, {kNext})};
    EXPECT_EQ(schedule.onBeat(0, 4, rules, lowest), Actions{kFlash});
    EXPECT_EQ(schedule.onBeat(1, 4, rules, lowest), Actions{});
    EXPECT_EQ(schedule.onBeat(2, 4, rules, lowest), Actions{kNext});
    EXPECT_EQ(schedule.onBeat(4, 4, rules, lowest), Actions{kFlash});
}

TEST(Schedule, SeveralActions_OneIsDrawn) {
    Schedule schedule;
    const std::vector<Rule> rules = {every(1, 0, {kFlash, kNext, kReverse})};
    EXPECT_EQ(schedule.onBeat(0, 4, rules, lowest), Actions{kFlash});
    EXPECT_EQ(schedule.onBeat(0, 4, rules, highest), Actions{kReverse});
}

TEST(Schedule, Chance_LeavesSomeOut) {
    Schedule schedule;
    const std::vector<Rule> rules = {every(1, 0, {kFlash}, 0.25)};
    EXPECT_EQ(schedule.onBeat(0, 4, rules, lowest), Actions{kFlash});
    EXPECT_EQ(schedule.onBeat(0, 4, rules, [](int) { return 249999; }), Actions{kFlash});
    EXPECT_EQ(schedule.onBeat(0, 4, rules, [](int) { return 250000; }), Actions{});
}

TEST(Schedule, WaitingForABeat_ComesOnceBeforeTheRules) {
    Schedule schedule;
    const std::vector<Rule> rules = {every(1, 0, {kFlash})};
    schedule.put(kNext, Quantum::BEAT);
    EXPECT_EQ(schedule.onBeat(1, 4, rules, lowest), (Actions{kNext, kFlash}));
    EXPECT_EQ(schedule.onBeat(2, 4, rules, lowest), Actions{kFlash});
}

TEST(Schedule, WaitingForABar_ComesWithItsFirstBeat) {
    Schedule schedule;
    schedule.put(kNext, Quantum::BAR);
    schedule.put(kReverse, Quantum::BEAT);
    EXPECT_EQ(schedule.onBeat(3, 3, {}, lowest), (Actions{kNext, kReverse}));
    schedule.put(kNext, Quantum::BAR);
    EXPECT_EQ(schedule.onBeat(4, 3, {}, lowest), Actions{});
    EXPECT_EQ(schedule.onBeat(6, 3, {}, lowest), Actions{kNext});
}

TEST(Schedule, TooMuchWaiting_IsNotTaken) {
    Schedule schedule;
    for (size_t i = 0; i < kMostWaiting; ++i) {
        EXPECT_TRUE(schedule.put(kNext, Quantum::BAR));
    }
    EXPECT_FALSE(schedule.put(kNext, Quantum::BAR));
    EXPECT_EQ(schedule.takeAll().size(), kMostWaiting);
    EXPECT_TRUE(schedule.put(kNext, Quantum::BAR));
}

}  // namespace control
