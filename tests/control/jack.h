#pragma once
// A JACK server of the test's own, which needs no sound card, and a device on it.

#include <rtmidi/RtMidi.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace control {

// JACK_DEFAULT_SERVER of this process, and of those that it starts, is that server.
class JackProcess {
public:
    explicit JackProcess(const char* period = "256")
        : name_("velmora-test-" + std::to_string(getpid())) {
        setenv("JACK_DEFAULT_SERVER", name_.c_str(), 1);
        setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
        process_ = fork();
        if (process_ == 0) {
            (void)!freopen("/dev/null", "w", stdout);
            (void)!freopen("/dev/null", "w", stderr);
            execlp("jackd", "jackd", "-n", name_.c_str(), "-r", "-d", "dummy", "-p", period,
                   nullptr);
            _exit(127);
        }
    }
    ~JackProcess() { stop(); }
    JackProcess(const JackProcess&) = delete;
    JackProcess& operator=(const JackProcess&) = delete;

    void stop() {
        if (process_ > 0) {
            kill(process_, SIGTERM);
            waitpid(process_, nullptr, 0);
        }
        process_ = -1;
    }

private:
    std::string name_;
    pid_t process_;
};

// A device on JACK.
inline std::unique_ptr<RtMidiOut> pads() {
    auto out = std::make_unique<RtMidiOut>(RtMidi::UNIX_JACK, "pads");
    out->openVirtualPort("out");
    return out;
}

inline bool jackIsInstalled() {
    return system("command -v jackd >/dev/null 2>&1") == 0;
}

}  // namespace control
