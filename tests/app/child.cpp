#include "app/child.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "app/clock.h"

namespace app {

namespace {

const int kStopMs = 3000 * slowness();
constexpr int kCannotRun = 127;

// Variables that would lead the program to another display or another driver.
bool isForeign(const char* entry) {
    for (const char* prefix : {"DISPLAY=", "SDL_", "XAUTHORITY=", "WAYLAND_DISPLAY="}) {
        if (strncmp(entry, prefix, strlen(prefix)) == 0) {
            return true;
        }
    }
    return false;
}

// Of two entries for one variable a program may take either.
bool isNamed(const std::vector<std::string>& entries, const char* entry) {
    const size_t name = strcspn(entry, "=") + 1;
    return std::any_of(entries.begin(), entries.end(), [&](const std::string& other) {
        return strncmp(other.c_str(), entry, name) == 0;
    });
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

bool takeOutput(int output) {
    return output < 0 ? close(STDOUT_FILENO) == 0 : dup2(output, STDOUT_FILENO) >= 0;
}

// Nothing here allocates: it runs between fork and exec.
[[noreturn]] void become(char** command, char** environment, const ChildSetup& setup, int output,
                         int errors) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (setup.addressSpace != 0) {
        const rlimit limit = {setup.addressSpace, setup.addressSpace};
        setrlimit(RLIMIT_AS, &limit);
    }
    if (chdir(setup.folder.c_str()) == 0 && takeOutput(output) &&
        dup2(errors, STDERR_FILENO) >= 0) {
        execvpe(command[0], command, environment);
    }
    _exit(kCannotRun);
}

int openForWriting(const std::string& path) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (file < 0) {
        throw std::runtime_error("cannot write " + path);
    }
    return file;
}

}  // namespace

void Child::start(const ChildSetup& setup) {
    std::vector<std::string> command = setup.command;
    std::vector<std::string> environment = setup.environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (!isForeign(*entry) && !isNamed(setup.environment, *entry)) {
            environment.emplace_back(*entry);
        }
    }
    const std::vector<char*> arguments = pointers(command);
    const std::vector<char*> variables = pointers(environment);
    const int output = setup.output.empty() ? -1 : openForWriting(setup.output);
    const int errors = openForWriting(setup.errors);
    status_.reset();
    id_ = fork();
    if (id_ == 0) {
        become(const_cast<char**>(arguments.data()), const_cast<char**>(variables.data()), setup,
               output, errors);
    }
    if (output >= 0) {
        close(output);
    }
    close(errors);
    if (id_ < 0) {
        id_ = 0;
        throw std::runtime_error("no new process for " + setup.command[0]);
    }
}

bool Child::running() {
    return id_ != 0 && !waitExit(0).has_value();
}

std::optional<int> Child::waitExit(int timeoutMs) {
    if (id_ == 0 || status_.has_value()) {
        return status_;
    }
    const auto ended = [this] {
        int status = 0;
        if (waitpid(id_, &status, WNOHANG) != id_) {
            return false;
        }
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        return true;
    };
    waitUntil(ended, timeoutMs);
    return status_;
}

void Child::stop(int signal) {
    if (!running()) {
        return;
    }
    kill(id_, signal);
    if (!waitExit(kStopMs).has_value()) {
        kill(id_, SIGKILL);
        waitExit(kStopMs);
    }
}

}  // namespace app
