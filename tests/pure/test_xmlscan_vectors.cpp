// The scanner against the recorded calls: results, positions and numbers of characters read.
#include <gtest/gtest.h>

#include "files/xmlscan.h"
#include "pure/counted_stream.h"
#include "pure/vectors.h"

namespace {

constexpr const char* kFolder = TEST_DATA "/xml/";

void runCall(xml::Scanner& scanner, const nlohmann::json& call) {
    const std::string op = call.at("op");
    const nlohmann::json& expected = call.at("expect");
    if (op == "prologue") {
        scanner.readPrologue();
    } else if (op == "finLigne") {
        EXPECT_EQ(scanner.skipChar(), expected.at("result").get<int>());
    } else if (op == "lireMot") {
        EXPECT_EQ(scanner.skipTo(vectors::bytesOf(call.at("arg"))),
                  vectors::bytesOf(expected.at("result")));
    } else {
        ASSERT_EQ(op, "lireNoeud");
        EXPECT_EQ(scanner.readNode(vectors::bytesOf(call.at("arg"))),
                  vectors::bytesOf(expected.at("result")));
    }
}

// Of a stream and of the same bytes.
TEST(XmlScanVectors, EveryCall_ResultPositionAndReads) {
    const auto cases = vectors::lines(std::string(kFolder) + "scanner.jsonl");
    ASSERT_EQ(cases.size(), 29u);
    for (const nlohmann::json& each : cases) {
        SCOPED_TRACE(each.at("id").get<std::string>());
        const std::string bytes = vectors::fileBytes(kFolder + each.at("file").get<std::string>());
        CountedStream stream(bytes);
        xml::Scanner fromStream(stream.file());
        xml::Scanner fromBytes(bytes);
        for (size_t i = 0; i < each.at("calls").size(); ++i) {
            SCOPED_TRACE("call " + std::to_string(i));
            const nlohmann::json& call = each.at("calls").at(i);
            runCall(fromStream, call);
            EXPECT_EQ(stream.position(), call.at("expect").at("pos").get<size_t>());
            EXPECT_EQ(stream.reads(), call.at("expect").at("reads").get<size_t>());
            runCall(fromBytes, call);
        }
    }
}

}  // namespace
