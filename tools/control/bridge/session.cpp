#include "tools/control/bridge/session.h"

#include <poll.h>

#include <array>
#include <cstdio>
#include <ctime>
#include <memory>
#include <mutex>
#include <random>
#include <vector>

#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/control/bridge/bridge.h"
#include "tools/control/bridge/heard_text.h"
#include "tools/control/bridge/map_keeper.h"
#include "tools/control/bridge/state_teller.h"
#include "tools/control/ears/midi.h"
#include "tools/control/ears/osc.h"
#include "tools/control/ears/still_down.h"
#include "tools/control/hands/roads.h"
#include "tools/control/stage/stage_files.h"

namespace control {

namespace {

// How often files and Velmora's window are looked at.
constexpr Duration kLook = milliseconds(1000);

void print(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

// Which devices the map wants, asked for by the thread that looks for them.
class Wanted {
public:
    void use(const ControlMap& map) {
        const std::lock_guard lock(mutex_);
        map_ = map;
    }
    bool operator()(std::string_view device) const {
        const std::lock_guard lock(mutex_);
        return listensTo(map_, device);
    }

private:
    mutable std::mutex mutex_;
    ControlMap map_;
};

class Session {
public:
    explicit Session(const SessionSetup& setup);
    void run();

private:
    void useMap(ControlMap map, Time now);
    void openOsc();
    void lookAround(Time now);
    void followStage(Time now);
    void hearAll(Time now);
    void hear(const Heard& heard);
    void tellFaults();
    void tellLosses();
    void waitUntil(Time next);

    SessionSetup setup_;
    std::unique_ptr<Road> road_;  // first of all: its guardian is forked before there are threads
    MapKeeper keeper_;
    StageFilesReader files_;
    Wanted wanted_;
    Bridge bridge_;
    std::unique_ptr<OscEar> osc_;
    std::string oscAt_;
    StateTeller teller_;
    MidiEar midi_;
    StillDown down_;
    std::vector<Heard> heard_;
    uint64_t stage_ = 0;
    bool reached_ = false;
    std::vector<std::string> faults_;  // told already
    size_t lost_ = 0;
    Time looked_{};
};

Session::Session(const SessionSetup& setup)
    : setup_(setup),
      road_(openRoad()),
      keeper_(setup.map),
      files_(setup.folder),
      bridge_(
          *road_, {}, [this]() -> const StageFiles& { return files_.now(); },
          std::random_device()()),
      teller_(bridge_,
              [this](const std::string& to, const std::string& address,
                     std::optional<double> number, const std::string& text) {
                  if (osc_ != nullptr) {
                      osc_->answer(to, address, number, text);
                  }
              }),
      midi_([this](std::string_view device) { return wanted_(device); }) {
    if (setup_.monitor) {
        bridge_.watch(print);
    }
    if (keeper_.makeWhenMissing()) {
        print("wrote " + setup_.map.string() + ": which pad does what is said there");
    }
    const Time now = Clock::now();
    useMap(keeper_.changed().value_or(ControlMap{}), now);
    tellFaults();
    stage_ = road_->stage();
    reached_ = road_->reachesVelmora();
    bridge_.reaches(reached_);
    print("plays Velmora by " + road_->road() + (reached_ ? "" : ", when it is there"));
    if (stage_ != 0) {
        print("Velmora ran already: it is taken for a mix; `home` and `playlist 1` find the way");
    }
}

void Session::openOsc() {
    const ControlMap& map = bridge_.map();
    const std::string listen = setup_.listen.value_or(map.listen);
    const int port = setup_.port.value_or(map.port);
    const std::string at = map.osc || setup_.listen ? listen + " " + std::to_string(port) : "";
    if (at == oscAt_) {
        return;
    }
    osc_.reset();
    oscAt_.clear();
    if (!at.empty()) {
        osc_ = std::make_unique<OscEar>(listen, port);
        print("hears OSC on " + listen + ", port " + std::to_string(osc_->port()));
    }
    oscAt_ = at;
}

void Session::useMap(ControlMap map, Time now) {
    if (setup_.tempo) {
        map.tempo = setup_.tempo;
    }
    wanted_.use(map);
    bridge_.useMap(std::move(map), now);
    midi_.wantAgain();
    openOsc();
}

// A port that is taken ends the bridge at its start; later the map's new one is only not heard.
void Session::lookAround(Time now) {
    if (now - looked_ < kLook) {
        return;
    }
    looked_ = now;
    std::optional<ControlMap> map = keeper_.changed();
    if (map) {
        try {
            useMap(std::move(*map), now);
            print("read " + setup_.map.string() + " again");
        } catch (const maker::ToolError& error) {
            print(error.what());
        }
    }
    tellFaults();
    tellLosses();
}

// Also of a map that changed nothing.
void Session::tellFaults() {
    if (keeper_.faults() != faults_) {
        faults_ = keeper_.faults();
        for (const std::string& fault : faults_) {
            print(fault);
        }
    }
}

void Session::tellLosses() {
    const OscCounts counts = osc_ != nullptr ? osc_->counts() : OscCounts{};
    const size_t lost = midi_.dropped() + counts.bad + counts.dropped;
    if (lost != lost_) {
        print("not heard so far: " + maker::counted(counts.bad, "bad packet") + ", " +
              maker::counted(counts.dropped + midi_.dropped(), "message") + " too many");
        lost_ = lost;
    }
}

void Session::followStage(Time now) {
    road_->look(now);
    const uint64_t stage = road_->stage();
    if (stage != stage_) {
        print(stage == 0 ? "Velmora has gone" : "Velmora is there");
        if (stage != 0) {
            bridge_.stageBegins(now);
        }
    }
    const bool reached = road_->reachesVelmora();
    if (reached != reached_) {
        bridge_.reaches(reached);
    }
    stage_ = stage;
    reached_ = reached;
}

void Session::hear(const Heard& heard) {
    down_.hear(heard);
    if (heard.kind != HeardKind::OSC || !teller_.hear(heard)) {
        bridge_.hear(heard);
    } else if (setup_.monitor) {
        print(textOf(heard) + (heard.address == "/do" ? " -> " + maker::readable(heard.text) : ""));
    }
}

// Nothing of a device that is gone, or of which something was lost, stays down.
void Session::hearAll(Time now) {
    heard_.clear();
    midi_.take(heard_);
    if (osc_ != nullptr) {
        osc_->take(now, heard_);
    }
    for (const Heard& heard : heard_) {
        if (heard.kind == HeardKind::GONE || heard.kind == HeardKind::SKIPPED) {
            for (const Heard& release : down_.releasesFor(heard.device, heard.when)) {
                bridge_.hear(release);
            }
        }
        hear(heard);
    }
}

void Session::waitUntil(Time next) {
    std::array<pollfd, 3> files = {{{road_->fd(), POLLIN, 0},
                                    {midi_.fd(), POLLIN, 0},
                                    {osc_ != nullptr ? osc_->fd() : -1, POLLIN, 0}}};
    const Time now = Clock::now();
    const auto left =
        std::chrono::duration_cast<std::chrono::nanoseconds>(std::max(next - now, Duration{}));
    constexpr int64_t kSecond = 1000000000;
    const timespec time = {static_cast<time_t>(left.count() / kSecond),
                           static_cast<long>(left.count() % kSecond)};
    ppoll(files.data(), files.size(), &time, nullptr);
}

void Session::run() {
    while (!maker::interrupted()) {
        Time now = Clock::now();
        followStage(now);
        hearAll(now);
        lookAround(now);
        now = Clock::now();
        Time next = bridge_.advance(now);
        next = std::min({next, teller_.advance(now), now + kLook});
        waitUntil(next);
    }
    bridge_.reaches(false);
}

}  // namespace

void runSession(const SessionSetup& setup) {
    Session(setup).run();
}

}  // namespace control
