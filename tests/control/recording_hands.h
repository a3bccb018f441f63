#pragma once
// Hands that write down what they were told, and a clock that goes on when it is told.

#include <string>
#include <vector>

#include "tools/control/base/hands.h"
#include "tools/control/base/time.h"

namespace control {

class RecordingHands : public Hands {
public:
    void key(Key which, bool down) override {
        down_[indexOf(which)] = down;
        note((down ? "+" : "-") + std::string(kKeyNames[indexOf(which)]));
    }
    void button(bool down) override { note(down ? "+button" : "-button"); }
    void point(int x, int y) override { note("at " + std::to_string(x) + " " + std::to_string(y)); }
    bool reachesVelmora() override { return true; }
    std::string road() const override { return "a test"; }

    bool anyDown() const {
        for (const bool down : down_) {
            if (down) {
                return true;
            }
        }
        return false;
    }
    // What was done since the last call, in words: "+Up -Up +S".
    std::string take() {
        std::string all;
        for (const std::string& each : noted_) {
            all += (all.empty() ? "" : " ") + each;
        }
        noted_.clear();
        return all;
    }

private:
    void note(const std::string& what) { noted_.push_back(what); }

    std::vector<std::string> noted_;
    std::array<bool, kKeys> down_{};
};

// So long after the beginning of a test.
inline Time after(int ms) {
    return Time{} + std::chrono::hours(1) + milliseconds(ms);
}

}  // namespace control
