#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

#include "tests/control/recording_hands.h"
#include "tools/control/rhythm/clock_follower.h"

namespace control {

namespace {

struct Told {
    int64_t beat;
    double ms;  // when
};

Time at(double ms) {
    return after(0) + durationOf(ms / 1000);
}

// A clock of that tempo: `arrives` gives how late tick i comes, in milliseconds, or that it does
// not come at all (below 0). The follower is asked whenever it wants to be.
std::vector<Told> follow(int ticks, const std::function<double(int)>& periodOf,
                         const std::function<double(int)>& arrives) {
    ClockFollower follower;
    follower.start();
    std::vector<Told> told;
    double sent = 0;
    std::vector<double> times;
    for (int i = 0; i < ticks; ++i) {
        const double late = arrives(i);
        if (late >= 0) {
            times.push_back(sent + late);
        }
        sent += periodOf(i);
    }
    // Messages do not overtake each other.
    for (size_t i = 1; i < times.size(); ++i) {
        times[i] = std::max(times[i], times[i - 1]);
    }
    for (const double ms : times) {
        while (follower.next() < at(ms)) {
            const Time when = follower.next();
            if (const auto beat = follower.advance(when)) {
                told.push_back({*beat, secondsOf(when - after(0)) * 1000});
            }
        }
        if (const auto beat = follower.tick(at(ms))) {
            told.push_back({*beat, ms});
        }
    }
    return told;
}

double of174(int) {
    return 60000.0 / 174 / kTicksOfBeat;
}

double inTime(int) {
    return 0;
}

// Each beat once, in order, and at most so late.
void expectBeats(const std::vector<Told>& told, size_t count, double mostLate) {
    ASSERT_EQ(told.size(), count);
    for (size_t i = 0; i < count; ++i) {
        ASSERT_EQ(told[i].beat, static_cast<int64_t>(i));
        ASSERT_NEAR(told[i].ms, static_cast<double>(i) * 60000 / 174, mostLate) << i;
    }
}

}  // namespace

TEST(ClockFollower, EveryTickInTime_BeatsWithThem) {
    expectBeats(follow(174 * kTicksOfBeat, of174, inTime), 174, 0.001);
}

TEST(ClockFollower, LostTicks_MoveNoBeat) {
    // One, two and five in a row.
    const auto arrives = [](int i) {
        return i == 100 || i == 200 || i == 201 || (i >= 300 && i < 305) ? -1.0 : 0.0;
    };
    expectBeats(follow(40 * kTicksOfBeat, of174, arrives), 40, 0.001);
}

TEST(ClockFollower, LostTickOfABeat_IsToldAllTheSame) {
    const auto arrives = [](int i) { return i == 5 * kTicksOfBeat ? -1.0 : 0.0; };
    const std::vector<Told> told = follow(20 * kTicksOfBeat, of174, arrives);
    expectBeats(told, 20, 8);
    EXPECT_GT(told[5].ms, 5 * 60000.0 / 174);
    EXPECT_NEAR(told[6].ms, 6 * 60000.0 / 174, 0.001);
}

TEST(ClockFollower, TicksHeldUp_AreNotTakenForLost) {
    // For 60 milliseconds nothing comes through, then all at once.
    const auto arrives = [](int i) {
        return i >= 130 && i < 135 ? (135 - i) * 60000.0 / 174 / kTicksOfBeat : 0.0;
    };
    expectBeats(follow(40 * kTicksOfBeat, of174, arrives), 40, 0.001);
}

TEST(ClockFollower, OtherTempo_CountsTicksAsTheyCome) {
    for (const double tempo : {160.0, 188.0, 120.0, 90.0, 240.0}) {
        const auto periodOf = [&](int i) {
            return 60000.0 / (i < 480 ? 174 : tempo) / kTicksOfBeat;
        };
        const std::vector<Told> told = follow(60 * kTicksOfBeat, periodOf, inTime);
        ASSERT_EQ(told.size(), 60U) << tempo;
        const double wanted = 20 * 60000.0 / 174 + 39 * 60000.0 / tempo;
        EXPECT_NEAR(told.back().ms, wanted, 1) << tempo;
    }
}

TEST(ClockFollower, FloodOfTicks_IsOnlyCounted) {
    ClockFollower follower;
    int64_t last = -1;
    for (int i = 0; i < 100 * kTicksOfBeat; ++i) {
        last = follower.tick(at(i < 1200 ? 0 : i * 0.001)).value_or(last);
        EXPECT_EQ(follower.next(), Time::max());
    }
    EXPECT_EQ(last, 99);
}

TEST(ClockFollower, SilentClock_MakesNothingUp) {
    ClockFollower follower;
    for (int i = 0; i < 100; ++i) {
        follower.tick(at(i * 20));
    }
    // 99 is the last; the beat of tick 120 is far.
    EXPECT_EQ(follower.next(), Time::max());
    EXPECT_FALSE(follower.advance(at(5000)));
    EXPECT_FALSE(follower.runs(at(5000)));
}

// Two in a thousand ticks are lost, ten are held up for 20 ms, all others for up to 5.
TEST(ClockFollower, TenMinutesOfABadLine_DriftNowhere) {
    for (unsigned seed = 1; seed <= 20 && !HasFatalFailure(); ++seed) {
        std::mt19937 random(seed);
        const auto below = [&](int n) { return std::uniform_int_distribution(0, n - 1)(random); };
        const auto arrives = [&](int) {
            const int drawn = below(1000);
            return drawn < 2 ? -1.0 : drawn < 12 ? 20.0 : below(50) / 10.0;
        };
        SCOPED_TRACE(seed);
        expectBeats(follow(1740 * kTicksOfBeat, of174, arrives), 1740, 45);
    }
}

// A machine that stands still now and then, for up to a tenth of a second, and loses ticks besides.
TEST(ClockFollower, MachineThatStalls_DriftsNowhere) {
    for (unsigned seed = 1; seed <= 20 && !HasFatalFailure(); ++seed) {
        std::mt19937 random(seed);
        const auto below = [&](int n) { return std::uniform_int_distribution(0, n - 1)(random); };
        double stall = 0;
        // It has learned the tempo after two beats.
        const auto arrives = [&](int i) {
            stall = below(150) == 0 ? std::max(stall, below(100) * 1.0) : stall - of174(0);
            stall = std::max(stall, 0.0);
            return below(500) == 0 && i > 2 * kTicksOfBeat ? -1.0 : stall + below(30) / 10.0;
        };
        SCOPED_TRACE(seed);
        const std::vector<Told> told = follow(1740 * kTicksOfBeat, of174, arrives);
        ASSERT_EQ(told.size(), 1740U);
        // The last beats, those held up left out, are in time.
        double least = 1000;
        for (size_t i = 1720; i < told.size(); ++i) {
            least = std::min(least, told[i].ms - static_cast<double>(i) * 60000 / 174);
        }
        EXPECT_NEAR(least, 2, 6);
    }
}

}  // namespace control
