#pragma once
// Tells OSC senders that asked for it what the bridge knows: /state/layer "top", /state/mode "add",
// /state/playlist 3, /state/beat 12. Only to those that asked, and 30 messages a second at most to
// each.
//
// "/subscribe" asks for it, from then on; "/subscribe 0" ends it. "/state" asks once. "/do" with an
// action's name as its text plays it and is answered: "/done", or "/refused" with the reason.

#include <deque>
#include <functional>
#include <map>
#include <string>

#include "tools/control/bridge/bridge.h"

namespace control {

inline constexpr int kMostAnswers = 30;       // a second, to each
inline constexpr size_t kMostListeners = 16;  // the one that asked first makes room
inline constexpr int kStateParts = 4;

class StateTeller {
public:
    using Send = std::function<void(const std::string& to, const std::string& address,
                                    std::optional<double> number, const std::string& text)>;
    StateTeller(Bridge& bridge, Send send) : bridge_(bridge), send_(std::move(send)) {}

    // True when the message was for here.
    bool hear(const Heard& heard);

    // Sends what has changed, as far as it may. Returns when more may be sent; Time::max(): nothing
    // waits.
    Time advance(Time now);

private:
    struct Part {
        std::string address;
        std::optional<double> number;
        std::string text;
        bool operator==(const Part&) const = default;
    };
    struct Listener {
        std::string to;
        bool once = false;
        std::vector<Part> told = std::vector<Part>(kStateParts);
        std::deque<Time> sent;
    };

    std::vector<Part> parts() const;
    void listen(const std::string& to, bool once);
    void doNamed(const Heard& heard);

    Bridge& bridge_;
    Send send_;
    std::deque<Listener> listeners_;
};

}  // namespace control
