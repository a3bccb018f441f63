#pragma once
// velmora-control as a process beside a program or a window in its place, what is sent to it by
// OSC, and a MIDI device on a JACK server.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/child.h"
#include "app/runfolder.h"
#include "tests/control/jack.h"
#include "tools/control/ears/osc.h"

namespace app {

class BridgeProcess {
public:
    // It plays on `display`, a name such as ":7"; `folder` is Velmora's and holds its map and
    // output.
    BridgeProcess(const std::string& display, RunFolder& folder)
        : display_(display), folder_(folder) {}

    // With this map; waits until it is ready, and fails the test when it never is.
    void start(const std::string& map);
    void say(const std::string& address, std::optional<double> value = std::nullopt);
    // What it answered since the last call.
    std::vector<control::Heard> answers();

    // A device that it hears. Bound to nothing in any map here: program changes.
    std::unique_ptr<RtMidiOut> plugIn();

    std::string output() const { return folder_.read("bridge"); }
    bool said(const std::string& what) const { return output().find(what) != std::string::npos; }
    Child& process() { return child_; }

private:
    const std::string display_;
    RunFolder& folder_;
    const int port_ = 20000 + getpid() % 20000;
    control::OscEar phone_{"127.0.0.1", 0};
    Child child_;
};

}  // namespace app
