#pragma once
// Times short pieces of work against each other on a machine that does other things as well: each
// call is timed by itself, the pieces take turns, and the best time of each counts.

#include <algorithm>
#include <chrono>
#include <functional>
#include <limits>
#include <numeric>
#include <vector>

struct Timed {
    std::function<void()> work;
    std::function<void()> prepare;  // before each call and not timed; may be empty
    double best = std::numeric_limits<double>::infinity();  // microseconds
};

inline double microseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
        .count();
}

// A pass of many short pieces, one after the other; each piece's best time counts by itself, so a
// pass may be longer than the time that the system leaves it alone.
struct TimedPass {
    std::function<void(size_t)> work;
    size_t pieces;
    std::vector<double> best = std::vector<double>(pieces, std::numeric_limits<double>::infinity());

    void run() {
        for (size_t i = 0; i < pieces; ++i) {
            best[i] = std::min(best[i], microseconds([&] { work(i); }));
        }
    }
    double mean() const {
        return std::accumulate(best.begin(), best.end(), 0.0) / static_cast<double>(pieces);
    }
};

inline void takeTurns(std::vector<TimedPass>& passes, int rounds) {
    for (int round = 0; round < rounds; ++round) {
        for (TimedPass& pass : passes) {
            pass.run();
        }
    }
}

inline void takeTurns(std::vector<Timed>& pieces, int rounds) {
    for (int round = 0; round < rounds; ++round) {
        for (Timed& piece : pieces) {
            if (piece.prepare) {
                piece.prepare();
            }
            piece.best = std::min(piece.best, microseconds(piece.work));
        }
    }
}
