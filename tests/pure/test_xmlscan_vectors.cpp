// The scanner against the recorded calls: results, positions and numbers of characters read.
#include <gtest/gtest.h>

#include "files/xmlscan.h"
#include "pure/counted_stream.h"
#include "pure/vectors.h"

namespace {

constexpr const char* kFolder = TEST_DATA "/xml/";

void runCall(CountedStream& stream, const nlohmann::json& call) {
    const std::string op = call.at("op");
    const nlohmann::json& expected = call.at("expect");
    if (op == "prologue") {
        xml::readPrologue(stream.file());
    } else if (op == "finLigne") {
        EXPECT_EQ(xml::skipChar(stream.file()), expected.at("result").get<int>());
    } else if (op == "lireMot") {
        EXPECT_EQ(xml::skipTo(stream.file(), vectors::bytesOf(call.at("arg"))),
                  vectors::bytesOf(expected.at("result")));
    } else {
        ASSERT_EQ(op, "lireNoeud");
        EXPECT_EQ(xml::readNode(stream.file(), vectors::bytesOf(call.at("arg"))),
                  vectors::bytesOf(expected.at("result")));
    }
    EXPECT_EQ(stream.position(), expected.at("pos").get<size_t>());
    EXPECT_EQ(stream.reads(), expected.at("reads").get<size_t>());
}

TEST(XmlScanVectors, EveryCall_ResultPositionAndReads) {
    const auto cases = vectors::lines(std::string(kFolder) + "scanner.jsonl");
    ASSERT_EQ(cases.size(), 29u);
    for (const nlohmann::json& each : cases) {
        SCOPED_TRACE(each.at("id").get<std::string>());
        CountedStream stream(vectors::fileBytes(kFolder + each.at("file").get<std::string>()));
        for (size_t i = 0; i < each.at("calls").size(); ++i) {
            SCOPED_TRACE("call " + std::to_string(i));
            runCall(stream, each.at("calls").at(i));
        }
    }
}

}  // namespace
