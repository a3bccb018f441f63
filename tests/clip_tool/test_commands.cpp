// velmora-clip info and verify, run for real.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "clip_tool/tool.h"

namespace {

TEST_F(Commands, Verify_TellsTheFirstFaultOfEachFile) {
    const std::string broken = std::string(TEST_DATA) + "/broken/";
    const std::string good = std::string(TEST_DATA) + "/clips/gaps-64.m19";
    const Outcome outcome = tool("verify '" + good + "' '" + broken + "record-number.m19' '" +
                                 broken + "trailing-bytes.m19' '" + broken + "height-12.m19'");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out,
              good + ": ok\n" + broken +
                  "record-number.m19: frame 0 of the block, tile 3: record 60000 of 5 (offset 558, "
                  "block 0)\n" +
                  broken +
                  "trailing-bytes.m19: 100 bytes after the last block (offset 1121, block 0); the "
                  "clip plays\n" +
                  broken +
                  "height-12.m19: height 12, not a multiple of 8 from 8 to 360 (offset 4)\n");
}

TEST_F(Commands, Verify_MissingFileFailsAndTheRestIsChecked) {
    const std::string good = std::string(TEST_DATA) + "/clips/gaps-64.m19";
    const Outcome outcome = tool("verify no.m19 '" + good + "'");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, good + ": ok\n");
    EXPECT_NE(outcome.err.find("no.m19"), std::string::npos);
}

TEST_F(Commands, Info_TellsFacts) {
    const std::string clips = std::string(TEST_DATA) + "/clips/";
    const Outcome text = tool("info '" + clips + "gaps-64.m19'");
    EXPECT_EQ(text.status, 0);
    EXPECT_NE(text.out.find("640 x 64, colour and alpha"), std::string::npos) << text.out;
    const Outcome json = tool("info --json '" + clips + "gaps-64.m19' '" + clips + "flat-200.m19'");
    EXPECT_EQ(json.status, 0);
    const nlohmann::json facts = nlohmann::json::parse(json.out);
    ASSERT_EQ(facts.size(), 2u);
    EXPECT_EQ(facts[0].at("frames"), 33);
    EXPECT_EQ(facts[1].at("height"), 200);
}

TEST_F(Commands, Info_OfNoClipFails) {
    std::ofstream("text.m19") << "hello";
    const Outcome outcome = tool("info --json text.m19");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(nlohmann::json::parse(outcome.out), nlohmann::json::array());
    EXPECT_NE(outcome.err.find("text.m19 is not a clip"), std::string::npos) << outcome.err;
}

}  // namespace
