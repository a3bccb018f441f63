#pragma once
// Hears OSC over UDP and answers from the same socket. Owns the socket; it belongs to one thread
// and nothing here waits. Bad packets and floods are counted and left out. Also sends single
// messages.

#include <netinet/in.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/control/base/heard.h"

namespace control {

struct OscCounts {
    size_t received = 0;  // messages that were handed on
    size_t bad = 0;       // packets
    size_t dropped = 0;   // messages of senders that sent too many
};

// How many messages each sender may send within a second. Pure. The one silent for longest is
// forgotten when there are more senders than kSenders.
class OscLimit {
public:
    static constexpr size_t kMessages = 2000;
    static constexpr size_t kSenders = 64;

    // True when one more message from `sender` at `now` is heard.
    bool admits(const std::string& sender, Time now);
    size_t senders() const { return senders_.size(); }

private:
    struct Sender {
        Time second{};  // when the running one began
        Time last{};
        size_t messages = 0;
    };
    Sender& senderNamed(const std::string& name, Time now);

    std::map<std::string, Sender> senders_;
};

class OscEar {
public:
    // `listen`: a numeric address, IPv4 or IPv6. Port 0: any that is free. Throws ToolError.
    OscEar(const std::string& listen, int port);
    ~OscEar();
    OscEar(const OscEar&) = delete;
    OscEar& operator=(const OscEar&) = delete;

    int fd() const { return socket_; }  // readable when there is something to take
    int port() const;

    // Puts what came in behind `into`, of at most kDatagrams datagrams; the others wait.
    static constexpr int kDatagrams = 256;
    void take(Time now, std::vector<Heard>& into);
    OscCounts counts() const { return counts_; }

    // Sends a message with these arguments, the number as a float and a text that is not empty, to
    // a Heard's `device`. False when it could not be sent.
    bool answer(const std::string& to, std::string_view address, std::optional<double> number,
                std::string_view text);

private:
    void hearDatagram(std::span<const uint8_t> packet, const std::string& sender, Time now,
                      std::vector<Heard>& into);

    int socket_ = -1;
    OscLimit limit_;
    OscCounts counts_;
    std::vector<uint8_t> buffer_;
    std::vector<Heard> packet_;  // what one datagram holds
};

// Sends one message; `host` may be a name. Throws ToolError.
void sendOsc(const std::string& host, int port, std::string_view address,
             std::optional<double> number);

}  // namespace control
