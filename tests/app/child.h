#pragma once
// One child process: started with its own environment, folder and output files, and ended for sure.
// A child that still runs when its Child goes gets SIGTERM, then SIGKILL; when the whole test
// process dies, the kernel sends it SIGKILL.

#include <sys/types.h>

#include <csignal>
#include <optional>
#include <string>
#include <vector>

namespace app {

struct ChildSetup {
    std::vector<std::string> command;      // the first word is the program's path or name
    std::vector<std::string> environment;  // NAME=value, on top of the test's own
    std::string folder = ".";              // where it runs
    std::string output = "/dev/null";      // file for standard output, "" for none: closed
    std::string errors = "/dev/null";      // file for standard error
    unsigned long addressSpace = 0;        // bytes that it may have at most; 0 as many as it wants
};

class Child {
public:
    Child() = default;
    ~Child() { stop(SIGTERM); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // Throws std::runtime_error when there is no new process. Descriptors without close-on-exec
    // stay open in it.
    void start(const ChildSetup& setup);

    bool running();
    // Exit status, or 128 + the signal that ended it; nothing when it runs on past the time.
    std::optional<int> waitExit(int timeoutMs);
    // Sends the signal, waits, and kills what does not listen. Nothing to do when it has ended.
    void stop(int signal);

    pid_t id() const { return id_; }

private:
    pid_t id_ = 0;
    std::optional<int> status_;
};

}  // namespace app
