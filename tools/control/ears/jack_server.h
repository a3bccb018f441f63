#pragma once
// Whether a JACK server runs, and its MIDI ports: the one client that stays open beside the ports
// that are listened to. JACK is not linked; it is there when RtMidi brings it along. Never starts a
// server and prints nothing. Belongs to one thread.

#include <atomic>
#include <string>
#include <vector>

namespace control {

class JackServer {
public:
    JackServer() = default;
    ~JackServer() { disconnect(); }
    JackServer(const JackServer&) = delete;
    JackServer& operator=(const JackServer&) = delete;

    // Looks for a server when there was none. False when none runs, also once after one has ended,
    // even when the next one runs already.
    bool runs();
    // The ports that MIDI comes from. Only while it runs.
    std::vector<std::string> sources() const;

private:
    void disconnect();

    void* client_ = nullptr;
    std::atomic<bool> ended_{false};
};

}  // namespace control
