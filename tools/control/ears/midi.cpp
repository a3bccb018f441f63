#include "tools/control/ears/midi.h"

#include <rtmidi/RtMidi.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>

#include "tools/control/ears/jack_server.h"
#include "tools/control/ears/midi_names.h"
#include "tools/control/ears/midi_queue.h"

namespace control {

namespace {

constexpr std::chrono::seconds kBetweenLooks(1);
constexpr const char* kOwnName = "Velmora";

RtMidi::Api apiOf(std::string_view api) {
    return api == kAlsa ? RtMidi::LINUX_ALSA : RtMidi::UNIX_JACK;
}

bool compiledIn(RtMidi::Api api) {
    std::vector<RtMidi::Api> apis;
    RtMidi::getCompiledApi(apis);
    return std::find(apis.begin(), apis.end(), api) != apis.end();
}

bool alsaIsThere() {
    return compiledIn(RtMidi::LINUX_ALSA) && access("/dev/snd/seq", R_OK | W_OK) == 0;
}

std::unique_ptr<RtMidiIn> newClient(std::string_view api) {
    auto client = std::make_unique<RtMidiIn>(apiOf(api), kOwnName);
    // Otherwise it prints.
    client->setErrorCallback([](RtMidiError::Type, const std::string&, void*) {});
    client->ignoreTypes(true, false, true);
    return client;
}

std::vector<std::string> portsOf(RtMidiIn& client) {
    std::vector<std::string> ports(client.getPortCount());
    for (size_t i = 0; i < ports.size(); ++i) {
        ports[i] = client.getPortName(static_cast<unsigned>(i));
    }
    return ports;
}

// One port that is open. Closing it says that it is gone.
class OpenPort {
public:
    OpenPort(MidiQueue& queue, const MidiSource& source)
        : source_(source),
          queue_(queue),
          input_(std::make_shared<MidiInput>(source.name)),
          client_(newClient(source.api)) {
        client_->setCallback(heard, this);
    }
    ~OpenPort() {
        client_.reset();
        if (open_) {
            queue_.pushGone(input_, Clock::now());
        }
    }
    OpenPort(const OpenPort&) = delete;
    OpenPort& operator=(const OpenPort&) = delete;

    // False when the port has gone meanwhile.
    bool open() {
        const auto ports = portsOf(*client_);
        const auto found = std::find(ports.begin(), ports.end(), source_.port);
        if (found == ports.end()) {
            return false;
        }
        client_->openPort(static_cast<unsigned>(found - ports.begin()), "in");
        open_ = client_->isPortOpen();
        return open_;
    }
    // Other programs send to it.
    void openOwn() {
        client_->openVirtualPort(kOwnName);
        open_ = true;
    }

    bool is(const MidiSource& source) const {
        return source.api == source_.api && source.port == source_.port;
    }
    const MidiSource& source() const { return source_; }

private:
    static void heard(double, std::vector<unsigned char>* message, void* self) {
        auto* port = static_cast<OpenPort*>(self);
        port->queue_.push(port->input_, *message, Clock::now());
    }

    const MidiSource source_;
    MidiQueue& queue_;
    const std::shared_ptr<MidiInput> input_;
    std::unique_ptr<RtMidiIn> client_;
    bool open_ = false;
};

using Ports = std::vector<std::unique_ptr<OpenPort>>;

bool contains(const Ports& ports, const MidiSource& source) {
    return std::any_of(ports.begin(), ports.end(),
                       [&](const auto& port) { return port->is(source); });
}

}  // namespace

// The thread, and all that belongs to it.
class MidiEar::Watch {
public:
    explicit Watch(std::function<bool(std::string_view)> wanted) : wanted_(std::move(wanted)) {
        // Before the thread runs: the environment is everyone's.
        setenv("JACK_NO_START_SERVER", "1", 1);
        thread_ = std::thread([this] { run(); });
    }
    ~Watch() {
        {
            const std::lock_guard lock(mutex_);
            ends_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }

    void lookSoon() {
        {
            const std::lock_guard lock(mutex_);
            again_ = true;
        }
        changed_.notify_all();
    }
    std::vector<MidiDevice> devices() {
        const std::lock_guard lock(mutex_);
        return devices_;
    }
    void waitForLook() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return looked_; });
    }

    MidiQueue queue;

private:
    void run();
    void look();
    void openOwn(std::string_view api);
    void closeAll(std::string_view api);
    void openWanted(const std::vector<MidiSource>& sources);
    std::vector<std::string> alsaPorts();
    std::vector<std::string> jackPorts();

    const std::function<bool(std::string_view)> wanted_;
    // Of the thread alone. Ports are closed before the server's client.
    JackServer jack_;
    std::unique_ptr<RtMidiIn> alsa_;
    Ports ports_, own_;

    std::mutex mutex_;  // for those below
    std::condition_variable changed_;
    bool ends_ = false;
    bool again_ = false;
    bool looked_ = false;
    std::vector<MidiDevice> devices_;
    std::thread thread_;
};

void MidiEar::Watch::run() {
    std::unique_lock lock(mutex_);
    while (!ends_) {
        again_ = false;
        lock.unlock();
        try {
            look();
        } catch (const RtMidiError&) {
            // A device or server went while it was opened: the next look knows.
        }
        lock.lock();
        looked_ = true;
        changed_.notify_all();
        changed_.wait_for(lock, kBetweenLooks, [&] { return ends_ || again_; });
    }
}

std::vector<std::string> MidiEar::Watch::alsaPorts() {
    if (!alsaIsThere()) {
        return {};
    }
    openOwn(kAlsa);
    if (!alsa_) {
        alsa_ = newClient(kAlsa);
    }
    return portsOf(*alsa_);
}

std::vector<std::string> MidiEar::Watch::jackPorts() {
    if (!compiledIn(RtMidi::UNIX_JACK)) {
        return {};
    }
    if (!jack_.runs()) {
        closeAll(kJack);
        return {};
    }
    openOwn(kJack);
    return jack_.sources();
}

void MidiEar::Watch::openOwn(std::string_view api) {
    const MidiSource own{api, kOwnName, kOwnName};
    if (!contains(own_, own)) {
        own_.push_back(std::make_unique<OpenPort>(queue, own));
        own_.back()->openOwn();
    }
}

void MidiEar::Watch::closeAll(std::string_view api) {
    const auto ofApi = [&](const auto& port) { return port->source().api == api; };
    std::erase_if(ports_, ofApi);
    std::erase_if(own_, ofApi);
}

void MidiEar::Watch::openWanted(const std::vector<MidiSource>& sources) {
    for (const MidiSource& source : sources) {
        if (contains(ports_, source) || !wanted_(source.name)) {
            continue;
        }
        auto port = std::make_unique<OpenPort>(queue, source);
        if (port->open()) {
            ports_.push_back(std::move(port));
        }
    }
}

void MidiEar::Watch::look() {
    const auto alsa = alsaPorts();
    const std::vector<MidiSource> sources = midiSources(alsa, jackPorts());
    std::erase_if(ports_, [&](const auto& port) {
        return !wanted_(port->source().name) ||
               std::none_of(sources.begin(), sources.end(),
                            [&](const MidiSource& source) { return port->is(source); });
    });
    openWanted(sources);
    std::vector<MidiDevice> devices;
    devices.reserve(sources.size());
    for (const MidiSource& source : sources) {
        devices.push_back({source.name, source.api, contains(ports_, source)});
    }
    const std::lock_guard lock(mutex_);
    devices_ = std::move(devices);
}

MidiEar::MidiEar(std::function<bool(std::string_view device)> wanted)
    : watch_(std::make_unique<Watch>(std::move(wanted))) {}

MidiEar::~MidiEar() = default;

int MidiEar::fd() const {
    return watch_->queue.fd();
}

void MidiEar::take(std::vector<Heard>& into) {
    watch_->queue.take(into);
}

std::vector<MidiDevice> MidiEar::devices() const {
    return watch_->devices();
}

size_t MidiEar::dropped() const {
    return watch_->queue.dropped();
}

void MidiEar::wantAgain() {
    watch_->lookSoon();
}

void MidiEar::waitForLook() const {
    watch_->waitForLook();
}

}  // namespace control
