#include "tools/control/ears/osc.h"

#include <lo/lo.h>
#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "tools/base/errors.h"
#include "tools/control/ears/osc_bytes.h"

namespace control {

namespace {

constexpr size_t kLargestDatagram = 8192;
constexpr int kBurst = 1 << 20;  // bytes

struct FreeAddresses {
    void operator()(addrinfo* list) const { freeaddrinfo(list); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

// Null when there are none.
Addresses addressesOf(const std::string& host, const std::string& port, int flags) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = flags | AI_NUMERICSERV;
    addrinfo* list = nullptr;
    return Addresses(getaddrinfo(host.c_str(), port.c_str(), &hints, &list) == 0 ? list : nullptr);
}

// "127.0.0.1:9000", "[::1]:9000"
std::string joined(const std::string& host, const std::string& port) {
    std::string name;
    const bool six = host.find(':') != std::string::npos;
    return name.append(six ? "[" : "").append(host).append(six ? "]:" : ":").append(port);
}

// The address that joined() wrote.
Addresses addressNamed(const std::string& name) {
    const size_t colon = name.rfind(':');
    if (colon == std::string::npos) {
        return nullptr;
    }
    std::string host = name.substr(0, colon);
    if (host.size() >= 2 && host.front() == '[' && host.back() == ']') {
        host = host.substr(1, host.size() - 2);
    }
    return host.empty() ? nullptr : addressesOf(host, name.substr(colon + 1), AI_NUMERICHOST);
}

std::string nameOf(const sockaddr_storage& sender, socklen_t length) {
    char host[NI_MAXHOST];
    char port[NI_MAXSERV];
    const bool named =
        getnameinfo(reinterpret_cast<const sockaddr*>(&sender), length, host, sizeof(host), port,
                    sizeof(port), NI_NUMERICHOST | NI_NUMERICSERV | NI_DGRAM) == 0;
    return named ? joined(host, port) : "unknown";
}

bool sendMessage(int descriptor, const addrinfo& to, std::string_view address,
                 std::optional<double> number, std::string_view text) {
    const std::unique_ptr<std::remove_pointer_t<lo_message>, void (*)(lo_message)> message(
        lo_message_new(), lo_message_free);
    if (number) {
        // Phones read floats; few read doubles.
        lo_message_add_float(message.get(), static_cast<float>(*number));
    }
    if (!text.empty()) {
        lo_message_add_string(message.get(), std::string(text).c_str());
    }
    size_t size = 0;
    const std::unique_ptr<void, void (*)(void*)> bytes(
        lo_message_serialise(message.get(), std::string(address).c_str(), nullptr, &size), free);
    return bytes && sendto(descriptor, bytes.get(), size, MSG_DONTWAIT, to.ai_addr,
                           to.ai_addrlen) == static_cast<ssize_t>(size);
}

std::string whyNot(int error) {
    return error == EADDRINUSE ? "address in use; is velmora-control running already?"
                               : strerror(error);
}

}  // namespace

OscLimit::Sender& OscLimit::senderNamed(const std::string& name, Time now) {
    const auto found = senders_.find(name);
    if (found != senders_.end()) {
        return found->second;
    }
    if (senders_.size() == kSenders) {
        senders_.erase(std::min_element(
            senders_.begin(), senders_.end(),
            [](const auto& a, const auto& b) { return a.second.last < b.second.last; }));
    }
    return senders_.emplace(name, Sender{now, now, 0}).first->second;
}

bool OscLimit::admits(const std::string& sender, Time now) {
    Sender& known = senderNamed(sender, now);
    known.last = now;
    if (now - known.second >= std::chrono::seconds(1)) {
        known.second = now;
        known.messages = 0;
    }
    return known.messages < kMessages && ++known.messages > 0;
}

OscEar::OscEar(const std::string& listen, int port) : buffer_(kLargestDatagram) {
    const std::string service = std::to_string(port);
    const std::string cannot =
        std::string("cannot listen on ").append(joined(listen, service)).append(": ");
    const Addresses address = addressesOf(listen, service, AI_NUMERICHOST | AI_PASSIVE);
    if (listen.empty() || !address) {
        throw maker::ToolError(cannot + "not a numeric address");
    }
    socket_ = socket(address->ai_family, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    // Room for bursts; the kernel gives what it allows.
    setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &kBurst, sizeof(kBurst));
    if (socket_ < 0 || bind(socket_, address->ai_addr, address->ai_addrlen) != 0) {
        const std::string why = whyNot(errno);
        if (socket_ >= 0) {
            close(socket_);
        }
        throw maker::ToolError(cannot + why);
    }
}

OscEar::~OscEar() {
    close(socket_);
}

int OscEar::port() const {
    sockaddr_storage own{};
    socklen_t length = sizeof(own);
    if (getsockname(socket_, reinterpret_cast<sockaddr*>(&own), &length) != 0) {
        return 0;
    }
    // The port stands at the same place in both families.
    return ntohs(reinterpret_cast<const sockaddr_in&>(own).sin_port);
}

void OscEar::hearDatagram(std::span<const uint8_t> packet, const std::string& sender, Time now,
                          std::vector<Heard>& into) {
    packet_.clear();
    if (!heardOfOsc(packet, packet_)) {
        ++counts_.bad;
        return;
    }
    for (Heard& heard : packet_) {
        if (!limit_.admits(sender, now)) {
            ++counts_.dropped;
            continue;
        }
        ++counts_.received;
        heard.device = sender;
        heard.when = now;
        into.push_back(std::move(heard));
    }
}

void OscEar::take(Time now, std::vector<Heard>& into) {
    for (int i = 0; i < kDatagrams; ++i) {
        sockaddr_storage from{};
        socklen_t length = sizeof(from);
        // MSG_TRUNC: the true size also of what is too large.
        const ssize_t size = recvfrom(socket_, buffer_.data(), buffer_.size(), MSG_TRUNC,
                                      reinterpret_cast<sockaddr*>(&from), &length);
        if (size < 0) {
            return;
        }
        if (static_cast<size_t>(size) > buffer_.size()) {
            ++counts_.bad;
            continue;
        }
        hearDatagram({buffer_.data(), static_cast<size_t>(size)}, nameOf(from, length), now, into);
    }
}

bool OscEar::answer(const std::string& to, std::string_view address, std::optional<double> number,
                    std::string_view text) {
    const Addresses receiver = addressNamed(to);
    return receiver && sendMessage(socket_, *receiver, address, number, text);
}

void sendOsc(const std::string& host, int port, std::string_view address,
             std::optional<double> number) {
    const std::string service = std::to_string(port);
    const std::string cannot =
        std::string("cannot send to ").append(joined(host, service)).append(": ");
    const Addresses receiver = addressesOf(host, service, 0);
    if (host.empty() || !receiver) {
        throw maker::ToolError(cannot + "there is no such address");
    }
    const int descriptor = socket(receiver->ai_family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool sent = descriptor >= 0 && sendMessage(descriptor, *receiver, address, number, {});
    const int error = errno;
    if (descriptor >= 0) {
        close(descriptor);
    }
    if (!sent) {
        throw maker::ToolError(cannot + strerror(error));
    }
}

}  // namespace control
