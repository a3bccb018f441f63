#include "tools/control/ears/osc_bytes.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace control {
namespace {

using namespace std::string_literals;

// In a buffer of exact size, so that sanitizers see reads beyond it.
bool read(const std::string& packet, std::vector<Heard>& into) {
    const auto exact = std::make_unique<uint8_t[]>(packet.size());
    std::copy(packet.begin(), packet.end(), exact.get());
    return heardOfOsc({exact.get(), packet.size()}, into);
}

Heard readOne(const std::string& packet) {
    std::vector<Heard> heard;
    EXPECT_TRUE(read(packet, heard));
    EXPECT_EQ(heard.size(), 1U);
    return heard.empty() ? Heard() : heard[0];
}

void expectBad(const std::string& packet) {
    std::vector<Heard> heard(1);
    EXPECT_FALSE(read(packet, heard)) << testing::PrintToString(packet);
    EXPECT_EQ(heard.size(), 1U);
}

const std::string kPlain = "/a\0\0,\0\0\0"s;

// Elements up to 255 bytes.
std::string bundle(const std::vector<std::string>& elements) {
    std::string packet = "#bundle\0\0\0\0\0\0\0\0\1"s;
    for (const std::string& element : elements) {
        packet += "\0\0\0"s + static_cast<char>(element.size()) + element;
    }
    return packet;
}

TEST(OscBytes, Message_HasItsAddress) {
    const Heard heard = readOne("/top/next\0\0\0,\0\0\0"s);
    EXPECT_EQ(heard.kind, HeardKind::OSC);
    EXPECT_EQ(heard.address, "/top/next");
    EXPECT_EQ(heard.value, std::nullopt);
    EXPECT_EQ(heard.text, "");
    EXPECT_EQ(readOne("/old"s + "\0\0\0\0"s).address, "/old");
}

TEST(OscBytes, Numbers_OfEachTypeAreTheValue) {
    EXPECT_EQ(readOne("/a\0\0,i\0\0\xFF\xFF\xFF\xFE"s).value, -2.0);
    EXPECT_EQ(readOne("/a\0\0,f\0\0\x3F\0\0\0"s).value, 0.5);
    EXPECT_EQ(readOne("/a\0\0,h\0\0\0\0\0\1\0\0\0\0"s).value, 4294967296.0);
    EXPECT_EQ(readOne("/a\0\0,d\0\0\x3F\xD0\0\0\0\0\0\0"s).value, 0.25);
    EXPECT_EQ(readOne("/a\0\0,T\0\0"s).value, 1.0);
    EXPECT_EQ(readOne("/a\0\0,F\0\0"s).value, 0.0);
    EXPECT_EQ(readOne("/a\0\0,c\0\0\0\0\0A"s).value, std::nullopt);
    EXPECT_EQ(readOne("/a\0\0,N\0\0"s).value, std::nullopt);
}

TEST(OscBytes, Value_IsTheFirstNumberWhenFinite) {
    EXPECT_EQ(readOne("/a\0\0,sid\0\0\0\0b\0\0\0\0\0\0\3\x3F\xD0\0\0\0\0\0\0"s).value, 3.0);
    EXPECT_EQ(readOne("/a\0\0,f\0\0\x7F\xC0\0\0"s).value, std::nullopt);
    EXPECT_EQ(readOne("/a\0\0,f\0\0\x7F\x80\0\0"s).value, std::nullopt);
    EXPECT_EQ(readOne("/a\0\0,fT\0\xFF\x80\0\0"s).value, std::nullopt);
}

TEST(OscBytes, Text_IsTheFirstAndTidy) {
    EXPECT_EQ(readOne("/a\0\0,iss\0\0\0\0\0\0\0\1a\nb\0cde\0"s).text, "a?b");
    EXPECT_EQ(readOne("/a\0\0,S\0\0\x7F\xC3\xA9\0"s).text, "?\xC3\xA9");
    EXPECT_EQ(readOne("/a\0\0,s\0\0"s + std::string(256, 'x') + "\0\0\0\0"s).text,
              std::string(256, 'x'));
    EXPECT_EQ(readOne("/a\0\0,s\0\0"s + std::string(259, 'x') + "\0"s).text, std::string(256, 'x'));
}

TEST(OscBytes, Blob_IsPassedOver) {
    const Heard heard = readOne("/a\0\0,bi\0\0\0\0\1x\0\0\0\0\0\0\7"s);
    EXPECT_EQ(heard.value, 7.0);
}

TEST(OscBytes, Malformed_IsBad) {
    const std::vector<std::string> packets = {""s,
                                              "/"s,
                                              "/a\0"s,
                                              "/abc"s,
                                              "/a\0\0,i"s,
                                              "/a\0\0,iii"s,
                                              "/a\0\0i\0\0\0\0\0\0\0"s,
                                              "/a\0\0,i\0\0"s,
                                              "/a\0\0,i\0\0\0\0\0"s,
                                              "/a\0\0,d\0\0\0\0\0\0"s,
                                              "/a\0\0,s\0\0abcd"s,
                                              "/a\0\0,i\0\0\0\0\0\0\0\0\0\0"s,
                                              "/a\0\0,?\0\0"s,
                                              "/a\0\0\0\0\0\0"s,
                                              "/a\0\0,b\0\0\0\0\0\x08xxxx"s,
                                              "/a\0\0,b\0\0\xFF\xFF\xFF\xFFxxxx"s,
                                              "/a\0\0,b\0\0\x7F\xFF\xFF\xFFxxxx"s,
                                              "/a\0\0,b\0\0"s,
                                              "/a\0x,\0\0\0"s,
                                              "/a\0\0,\0\0x"s};
    for (const std::string& packet : packets) {
        expectBad(packet);
    }
}

TEST(OscBytes, Address_IsPrintableAndBounded) {
    expectBad("a\0\0\0,\0\0\0"s);
    expectBad("/\n\0\0,\0\0\0"s);
    expectBad("/ a\0,\0\0\0"s);
    expectBad("/\xC3\xA9\0,\0\0\0"s);
    const std::string longest = "/" + std::string(127, 'x');
    EXPECT_EQ(readOne(longest + "\0\0\0\0,\0\0\0"s).address, longest);
    expectBad(longest + "x\0\0\0,\0\0\0"s);
}

TEST(OscBytes, Bundle_GivesItsMessagesInOrder) {
    std::vector<Heard> heard;
    EXPECT_TRUE(read(bundle({}), heard));
    EXPECT_TRUE(heard.empty());
    EXPECT_TRUE(read(bundle({kPlain, bundle({"/b\0\0,T\0\0"s}), "/c\0\0"s}), heard));
    ASSERT_EQ(heard.size(), 3U);
    EXPECT_EQ(heard[0].address, "/a");
    EXPECT_EQ(heard[1].address, "/b");
    EXPECT_EQ(heard[1].value, 1.0);
    EXPECT_EQ(heard[2].address, "/c");
}

TEST(OscBytes, Bundle_IsFourDeepAtMost) {
    const std::string four = bundle({bundle({bundle({bundle({kPlain})})})});
    std::vector<Heard> heard;
    EXPECT_TRUE(read(four, heard));
    EXPECT_EQ(heard.size(), 1U);
    expectBad(bundle({four}));
}

TEST(OscBytes, Bundle_HoldsSixtyFourMessages) {
    std::vector<Heard> heard(3);
    EXPECT_TRUE(read(bundle(std::vector<std::string>(64, kPlain)), heard));
    EXPECT_EQ(heard.size(), 67U);
    expectBad(bundle(std::vector<std::string>(65, kPlain)));
}

TEST(OscBytes, MalformedBundle_GivesNothing) {
    expectBad("#bundle\0"s);
    expectBad("#bundle\0\0\0\0\0"s);
    expectBad(bundle({kPlain}) + "\0\0\0\x08"s);
    expectBad(bundle({kPlain}) + "\0\0\0\0"s);
    expectBad(bundle({kPlain}) + "\xFF\xFF\xFF\xFF"s);
    expectBad(bundle({kPlain}) + "\0\0\0\3/a\0\0"s);
    expectBad(bundle({kPlain, "/a\0\0,i\0\0"s}));
    expectBad(bundle({kPlain}) + "\0\0"s);
}

TEST(OscBytes, EveryCut_IsBad) {
    const std::string packet = bundle({"/a\0\0,sib\0\0\0\0hey\0\0\0\0\1\0\0\0\2xy\0\0"s});
    std::vector<Heard> heard;
    EXPECT_TRUE(read(packet, heard));
    for (size_t size = 0; size < packet.size(); ++size) {
        // An empty bundle is none.
        if (size != 16) {
            expectBad(packet.substr(0, size));
        }
    }
}

}  // namespace
}  // namespace control
