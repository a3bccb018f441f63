#include "app/bridge_process.h"

#include <gtest/gtest.h>

#include <fstream>

#include "app/clock.h"
#include "tools/control/ears/jack_server.h"

namespace app {

void BridgeProcess::start(const std::string& map) {
    const std::string file = folder_.path() + "/control.toml";
    std::ofstream(file) << "[osc]\nport = " << port_ << "\n" << map;
    ChildSetup setup;
    setup.command = {APP_CONTROL, "monitor", "--map", file, "--folder", folder_.path()};
    setup.environment = {"DISPLAY=" + display_};
    setup.output = folder_.path() + "/bridge";
    setup.errors = setup.output;
    child_.start(setup);
    EXPECT_TRUE(waitUntil([&] { return said("hears OSC") && said("plays Velmora by XTest"); }))
        << output();
}

void BridgeProcess::say(const std::string& address, std::optional<double> value) {
    phone_.answer("127.0.0.1:" + std::to_string(port_), address, value, "");
}

std::vector<control::Heard> BridgeProcess::answers() {
    std::vector<control::Heard> heard;
    phone_.take(control::Clock::now(), heard);
    return heard;
}

std::unique_ptr<RtMidiOut> BridgeProcess::plugIn() {
    control::JackServer server;
    EXPECT_TRUE(waitUntil([&] { return server.runs(); })) << "JACK does not run";
    auto device = control::pads();
    const size_t before = output().size();
    const auto heard = [&] {
        const unsigned char program[] = {0xC0, 1};
        device->sendMessage(program, sizeof program);
        return output().find("out: program", before) != std::string::npos;
    };
    EXPECT_TRUE(waitUntil(heard, kPatienceMs, 100)) << output();
    return device;
}

}  // namespace app
