#include "tools/control/ears/jack_server.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace control {

namespace {

constexpr int kNoStartServer = 1;       // JackNoStartServer
constexpr unsigned long kIsOutput = 2;  // JackPortIsOutput
constexpr const char* kMidi = "8 bit raw midi";

// Null when RtMidi has not brought JACK along.
template <typename Function>
Function* jackFunction(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, name));
}

using SetMessages = void(void (*)(const char*));
using Open = void*(const char*, int, int*, ...);
using Close = int(void*);
using OnShutdown = void(void*, void (*)(void*), void*);
using GetPorts = const char**(void*, const char*, const char*, unsigned long);
using Free = void(void*);

// Asking JACK costs some, so it is asked only when there are traces of a server.
bool tracesOfServer() {
    std::error_code error;
    const char* runtime = getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr &&
        std::filesystem::exists(std::filesystem::path(runtime) / "pipewire-0", error)) {
        return true;
    }
    std::filesystem::directory_iterator files("/dev/shm", error);
    for (; !error && files != std::filesystem::directory_iterator(); files.increment(error)) {
        if (files->path().filename().native().starts_with("jack")) {
            return true;
        }
    }
    return false;
}

void* connected() {
    const auto open = jackFunction<Open>("jack_client_open");
    const auto setError = jackFunction<SetMessages>("jack_set_error_function");
    const auto setInfo = jackFunction<SetMessages>("jack_set_info_function");
    if (open == nullptr || setError == nullptr || setInfo == nullptr || !tracesOfServer()) {
        return nullptr;
    }
    setError([](const char*) {});
    setInfo([](const char*) {});
    return open("Velmora-watch", kNoStartServer, nullptr);
}

}  // namespace

bool JackServer::runs() {
    if (client_ != nullptr) {
        if (ended_) {
            disconnect();
        }
        return client_ != nullptr;
    }
    client_ = connected();
    const auto onShutdown = jackFunction<OnShutdown>("jack_on_shutdown");
    if (client_ != nullptr && onShutdown != nullptr) {
        onShutdown(
            client_, [](void* self) { static_cast<JackServer*>(self)->ended_ = true; }, this);
    }
    return client_ != nullptr;
}

std::vector<std::string> JackServer::sources() const {
    std::vector<std::string> names;
    const auto getPorts = jackFunction<GetPorts>("jack_get_ports");
    const auto release = jackFunction<Free>("jack_free");
    const char** ports = getPorts == nullptr || release == nullptr
                             ? nullptr
                             : getPorts(client_, nullptr, kMidi, kIsOutput);
    if (ports == nullptr) {
        return names;
    }
    for (const char** port = ports; *port != nullptr; ++port) {
        names.emplace_back(*port);
    }
    release(ports);
    return names;
}

void JackServer::disconnect() {
    if (client_ != nullptr) {
        jackFunction<Close>("jack_client_close")(client_);
    }
    client_ = nullptr;
    ended_ = false;
}

}  // namespace control
