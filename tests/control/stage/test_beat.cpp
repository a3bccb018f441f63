#include <gtest/gtest.h>

#include <vector>

#include "tests/control/recording_hands.h"
#include "tools/control/rhythm/beat.h"

namespace control {

namespace {

using Beats = std::vector<int64_t>;

// Beats that are told from one millisecond to another, both included, as far as advance() asks.
Beats advanced(Beat& beat, int from, int to) {
    Beats told;
    for (int ms = from; ms <= to; ++ms) {
        while (beat.next() <= after(ms)) {
            if (const auto now = beat.advance(after(ms))) {
                told.push_back(*now);
            }
        }
    }
    return told;
}

// `count` ticks, the first at `from`, at that tempo; the beats that they told.
Beats ticked(Beat& beat, int count, double fromMs, double tempo) {
    Beats told;
    for (int i = 0; i < count; ++i) {
        const double ms = fromMs + i * 60000.0 / tempo / kTicksOfBeat;
        if (const auto now = beat.tick(after(0) + durationOf(ms / 1000))) {
            told.push_back(*now);
        }
    }
    return told;
}

}  // namespace

TEST(Beat, Nothing_NeverBeats) {
    Beat beat;
    EXPECT_EQ(beat.next(), Time::max());
    EXPECT_FALSE(beat.beats(after(0)));
    EXPECT_EQ(beat.tempo(after(0)), 0);
    EXPECT_FALSE(beat.advance(after(1000)));
}

TEST(Beat, Tempo_BeatsFromNow) {
    Beat beat;
    beat.setTempo(120, after(0));
    EXPECT_EQ(advanced(beat, 0, 1999), (Beats{0, 1, 2, 3}));
    EXPECT_DOUBLE_EQ(beat.tempo(after(0)), 120);
}

TEST(Beat, TempoOf174_HasNoDriftInTenMinutes) {
    Beat beat;
    beat.setTempo(174, after(0));
    int64_t last = -1;
    while (beat.next() <= after(600000)) {
        const Time due = beat.next();
        last = beat.advance(due).value();
        const double wanted = static_cast<double>(last) * 60 / 174;
        ASSERT_NEAR(secondsOf(due - after(0)), wanted, 0.0001);
    }
    EXPECT_EQ(last, 1740);
}

TEST(Beat, MissedBeats_OnlyTheLastIsTold) {
    Beat beat;
    beat.setTempo(120, after(0));
    EXPECT_EQ(beat.advance(after(0)), 0);
    EXPECT_EQ(beat.advance(after(2100)), 4);
    EXPECT_FALSE(beat.advance(after(2100)));
    EXPECT_EQ(beat.next(), after(2500));
}

TEST(Beat, Taps_GiveTheTempoAndTheFirstOfABar) {
    Beat beat;
    EXPECT_EQ(beat.tap(after(0)), 0);
    EXPECT_EQ(beat.next(), Time::max());
    EXPECT_EQ(beat.tap(after(500)), 1);
    EXPECT_EQ(beat.tap(after(1000)), 2);
    EXPECT_NEAR(beat.tempo(after(1000)), 120, 1e-9);
    EXPECT_EQ(advanced(beat, 1001, 2100), (Beats{3, 4}));
}

TEST(Beat, TapTooEarly_IsTheBeatThatComes) {
    Beat beat;
    beat.tap(after(0));
    beat.tap(after(500));
    EXPECT_EQ(beat.tap(after(950)), 2);
    // The mean of both: 475 ms.
    EXPECT_EQ(beat.next(), after(1425));
}

TEST(Beat, TapTooLate_DoesNotTellTheBeatTwice) {
    Beat beat;
    beat.tap(after(0));
    beat.tap(after(500));
    EXPECT_EQ(advanced(beat, 501, 1020), (Beats{2}));
    EXPECT_FALSE(beat.tap(after(1020)));
    EXPECT_EQ(beat.next(), after(1530));
}

TEST(Beat, TapsAfterAPause_BeginABar) {
    Beat beat;
    beat.tap(after(0));
    beat.tap(after(500));
    advanced(beat, 501, 9999);
    EXPECT_EQ(beat.tap(after(10100)), 0);
    EXPECT_NEAR(beat.tempo(after(10100)), 120, 1e-9);
    EXPECT_EQ(beat.next(), after(10600));
}

TEST(Beat, Clock_BeatsEveryTwentyFourTicksFromStart) {
    Beat beat;
    beat.start();
    EXPECT_EQ(ticked(beat, 24 * 3 + 1, 0, 120), (Beats{0, 1, 2, 3}));
    EXPECT_NEAR(beat.tempo(after(1500)), 120, 0.01);
    EXPECT_TRUE(beat.beats(after(1500)));
    EXPECT_FALSE(beat.beats(after(2600)));
}

TEST(Beat, ClockAt174_ToldWithItsTicksForTenMinutes) {
    Beat beat;
    beat.start();
    const Beats told = ticked(beat, 174 * 10 * kTicksOfBeat, 0, 174);
    ASSERT_EQ(told.size(), 1740U);
    EXPECT_EQ(told.back(), 1739);
}

TEST(Beat, ClockWithoutStart_BeatsFromItsFirstTick) {
    Beat beat;
    EXPECT_EQ(ticked(beat, 25, 0, 120), (Beats{0, 1}));
}

TEST(Beat, StopAndContinue_GoOnWhereTheyWere) {
    Beat beat;
    beat.start();
    ticked(beat, 30, 0, 120);
    beat.stopClock();
    EXPECT_EQ(ticked(beat, 100, 700, 120), Beats{});
    EXPECT_FALSE(beat.beats(after(2000)));
    beat.goOn();
    EXPECT_EQ(ticked(beat, 19, 3000, 120), (Beats{2}));
    beat.start();
    EXPECT_EQ(ticked(beat, 1, 5000, 120), (Beats{0}));
}

TEST(Beat, ClockBegins_TempoOfOurOwnEnds) {
    Beat beat;
    beat.setTempo(100, after(0));
    ticked(beat, 2, 0, 120);
    EXPECT_EQ(beat.next(), Time::max());
}

TEST(Beat, TapUnderAClock_SaysWhichBeatIsTheFirst) {
    Beat beat;
    beat.start();
    EXPECT_EQ(ticked(beat, 24 * 2 + 4, 0, 120), (Beats{0, 1, 2}));
    EXPECT_FALSE(beat.tap(after(1100)));
    EXPECT_EQ(ticked(beat, 24, 24 * 2 * 20.83 + 90, 120), (Beats{1}));
    // Nearer to the beat that comes.
    ticked(beat, 12, 1700, 120);
    EXPECT_FALSE(beat.tap(after(1990)));
    EXPECT_EQ(ticked(beat, 24, 2000, 120), (Beats{0}));
}

TEST(Beat, Stop_EndsTapAndTempo) {
    Beat beat;
    beat.setTempo(120, after(0));
    beat.stop();
    EXPECT_EQ(beat.next(), Time::max());
    beat.start();
    ticked(beat, 30, 0, 120);
    beat.stop();
    EXPECT_EQ(ticked(beat, 30, 700, 120), Beats{});
}

}  // namespace control
