#pragma once
// Times short pieces of work against each other on a machine that does other things as well: each
// call is timed by itself, the pieces take turns, and the best time of each counts.

#include <algorithm>
#include <chrono>
#include <functional>
#include <limits>
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
