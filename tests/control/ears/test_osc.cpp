#include "tools/control/ears/osc.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

#include "tools/base/errors.h"

namespace control {
namespace {

using namespace std::string_literals;

const std::string kPlain = "/a\0\0,\0\0\0"s;
constexpr Time kStart{std::chrono::seconds(100)};

// A program on the same machine.
class Sender {
public:
    Sender() : socket_(socket(AF_INET, SOCK_DGRAM, 0)) {
        own_.sin_family = AF_INET;
        own_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof(own_);
        EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&own_), length), 0);
        EXPECT_EQ(getsockname(socket_, reinterpret_cast<sockaddr*>(&own_), &length), 0);
    }
    ~Sender() { close(socket_); }
    Sender(const Sender&) = delete;
    Sender& operator=(const Sender&) = delete;

    std::string name() const { return "127.0.0.1:" + std::to_string(ntohs(own_.sin_port)); }
    void send(int port, const std::string& bytes) const {
        sockaddr_in to = own_;
        to.sin_port = htons(static_cast<uint16_t>(port));
        EXPECT_EQ(sendto(socket_, bytes.data(), bytes.size(), 0, reinterpret_cast<sockaddr*>(&to),
                         sizeof(to)),
                  static_cast<ssize_t>(bytes.size()));
    }
    // Empty when nothing is there.
    std::string received() const {
        std::string bytes(8192, '\0');
        const ssize_t size = recv(socket_, bytes.data(), bytes.size(), MSG_DONTWAIT);
        bytes.resize(size < 0 ? 0 : static_cast<size_t>(size));
        return bytes;
    }

private:
    int socket_;
    sockaddr_in own_{};
};

std::string errorOf(const std::string& listen, int port) {
    try {
        const OscEar ear(listen, port);
        return "";
    } catch (const maker::ToolError& error) {
        return error.what();
    }
}

TEST(OscEar, Message_ComesWithItsSender) {
    OscEar ear("127.0.0.1", 0);
    const Sender sender;
    sender.send(ear.port(), "/a\0\0,f\0\0\x3F\0\0\0"s);
    pollfd waiting{ear.fd(), POLLIN, 0};
    EXPECT_EQ(poll(&waiting, 1, 1000), 1);
    std::vector<Heard> heard;
    ear.take(kStart, heard);
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_EQ(heard[0].address, "/a");
    EXPECT_EQ(heard[0].value, 0.5);
    EXPECT_EQ(heard[0].device, sender.name());
    EXPECT_EQ(heard[0].when, kStart);
    EXPECT_EQ(ear.counts().received, 1U);
}

TEST(OscEar, BadPackets_AreCounted) {
    OscEar ear("127.0.0.1", 0);
    const Sender sender;
    sender.send(ear.port(), "");
    sender.send(ear.port(), "noise");
    sender.send(ear.port(), "/a\0\0,s\0\0"s + std::string(8184, '\0'));
    sender.send(ear.port(), kPlain);
    std::vector<Heard> heard;
    ear.take(kStart, heard);
    EXPECT_EQ(heard.size(), 1U);
    EXPECT_EQ(ear.counts().bad, 3U);
    EXPECT_EQ(ear.counts().received, 1U);
    EXPECT_EQ(ear.counts().dropped, 0U);
}

TEST(OscEar, Take_LeavesTheRestWaiting) {
    OscEar ear("127.0.0.1", 0);
    const Sender sender;
    for (int i = 0; i < 258; ++i) {
        sender.send(ear.port(), "");
    }
    std::vector<Heard> heard;
    ear.take(kStart, heard);
    EXPECT_EQ(ear.counts().bad, 256U);
    ear.take(kStart, heard);
    EXPECT_EQ(ear.counts().bad, 258U);
}

TEST(OscEar, Flood_IsDroppedOfItsSenderAlone) {
    OscEar ear("127.0.0.1", 0);
    const Sender loud;
    const Sender quiet;
    std::string bundle = "#bundle\0\0\0\0\0\0\0\0\1"s;
    for (int i = 0; i < 64; ++i) {
        bundle += "\0\0\0\x08"s + kPlain;
    }
    std::vector<Heard> heard;
    for (int i = 0; i < 32; ++i) {
        loud.send(ear.port(), bundle);
        ear.take(kStart + milliseconds(i), heard);
    }
    EXPECT_EQ(heard.size(), 2000U);
    EXPECT_EQ(ear.counts().dropped, 48U);
    quiet.send(ear.port(), kPlain);
    loud.send(ear.port(), kPlain);
    ear.take(kStart + milliseconds(999), heard);
    EXPECT_EQ(heard.size(), 2001U);
    loud.send(ear.port(), kPlain);
    ear.take(kStart + milliseconds(1000), heard);
    EXPECT_EQ(heard.size(), 2002U);
    EXPECT_EQ(ear.counts().dropped, 49U);
}

TEST(OscEar, Answer_ReachesOnlyWhoAsked) {
    OscEar ear("127.0.0.1", 0);
    const Sender asker;
    const Sender other;
    EXPECT_TRUE(ear.answer(asker.name(), "/tempo", 0.5, "ok"));
    EXPECT_EQ(asker.received(), "/tempo\0\0,fs\0\x3F\0\0\0ok\0\0"s);
    EXPECT_TRUE(ear.answer(asker.name(), "/a", std::nullopt, ""));
    EXPECT_EQ(asker.received(), "/a\0\0,\0\0\0"s);
    EXPECT_EQ(other.received(), "");
    for (const char* nobody : {"", ":", "nanoKEY", "127.0.0.1", "127.0.0.1:x", "[::1", "host:1"}) {
        EXPECT_FALSE(ear.answer(nobody, "/a", 1, "")) << nobody;
    }
}

TEST(OscEar, SixthVersion_IsHeardAndAnswered) {
    if (!errorOf("::1", 0).empty()) {
        GTEST_SKIP() << "this machine has no IPv6";
    }
    OscEar ear("::1", 0);
    OscEar asker("::1", 0);
    EXPECT_TRUE(asker.answer("[::1]:" + std::to_string(ear.port()), "/a", 1, ""));
    std::vector<Heard> heard;
    ear.take(kStart, heard);
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_EQ(heard[0].device, "[::1]:" + std::to_string(asker.port()));
    EXPECT_TRUE(ear.answer(heard[0].device, "/b", 1, ""));
    asker.take(kStart, heard);
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_EQ(heard[1].address, "/b");
}

TEST(OscEar, Listening_SaysWhyItCannot) {
    const OscEar first("127.0.0.1", 0);
    const std::string port = std::to_string(first.port());
    EXPECT_EQ(errorOf("127.0.0.1", first.port()),
              "cannot listen on 127.0.0.1:" + port +
                  ": address in use; is velmora-control running already?");
    EXPECT_EQ(errorOf("example", 7770), "cannot listen on example:7770: not a numeric address");
    EXPECT_EQ(errorOf("", 7770), "cannot listen on :7770: not a numeric address");
    EXPECT_EQ(errorOf("192.0.2.1", 7770),
              "cannot listen on 192.0.2.1:7770: Cannot assign requested address");
}

TEST(OscLimit, Senders_AreBoundedAndTheSilentGo) {
    OscLimit limit;
    for (size_t i = 0; i < OscLimit::kMessages; ++i) {
        EXPECT_TRUE(limit.admits("loud", kStart));
    }
    for (int i = 1; i <= 200; ++i) {
        EXPECT_TRUE(limit.admits(std::to_string(i), kStart + milliseconds(i)));
        // It is never the one silent for longest, so it is not forgotten.
        EXPECT_FALSE(limit.admits("loud", kStart + milliseconds(i)));
    }
    EXPECT_EQ(limit.senders(), 64U);
}

TEST(SendOsc, Message_Arrives) {
    OscEar ear("127.0.0.1", 0);
    sendOsc("127.0.0.1", ear.port(), "/tempo", 120);
    sendOsc("localhost", ear.port(), "/tap", std::nullopt);
    std::vector<Heard> heard;
    ear.take(kStart, heard);
    ASSERT_GE(heard.size(), 1U);
    EXPECT_EQ(heard[0].address, "/tempo");
    EXPECT_EQ(heard[0].value, 120.0);
    EXPECT_THROW(sendOsc("", 7770, "/tap", std::nullopt), maker::ToolError);
    EXPECT_THROW(sendOsc("no.such.host.invalid", 7770, "/tap", std::nullopt), maker::ToolError);
}

}  // namespace
}  // namespace control
