// info and verify on the command line.
#include <nlohmann/json.hpp>

#include "clip_tool/tool.h"

namespace {

const std::string kClips = std::string(TEST_DATA) + "/clips/";
const std::string kBroken = std::string(TEST_DATA) + "/broken/";

std::string quoted(const std::string& path) {
    return " '" + path + "'";
}

class InfoCommand : public Commands {};
class VerifyCommand : public Commands {};

TEST_F(VerifyCommand, SeveralFiles_TellsTheVerdictOfEach) {
    const Outcome outcome =
        tool("verify" + quoted(kClips + "gaps-64.m19") + quoted(kBroken + "record-number.m19") +
             quoted(kBroken + "trailing-bytes.m19") + quoted(kBroken + "height-12.m19") +
             quoted(kBroken + "version-18.m19") + quoted(kBroken + "empty.m19"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
              kClips + "gaps-64.m19: plays\n" +  //
                  kBroken +
                  "record-number.m19: broken in block 0 at offset 558: frame 0 of the block, tile "
                  "3: record 60000 of 5\n" +
                  kBroken +
                  "trailing-bytes.m19: plays; ignored: 100 bytes after the last block (offset "
                  "1121)\n" +
                  kBroken +
                  "height-12.m19: broken in the file header at offset 4: height 12, not a multiple "
                  "of 8 from 8 to 360\n" +
                  kBroken +
                  "version-18.m19: broken in the file header at offset 0: version 18, not 19\n" +
                  kBroken +
                  "empty.m19: broken in the file header at offset 0: the file is empty\n");
}

TEST_F(VerifyCommand, TrailingBytes_CountAsPlaying) {
    EXPECT_EQ(tool("verify" + quoted(kBroken + "trailing-bytes.m19")).status, 0);
}

TEST_F(VerifyCommand, MissingFile_FailsAndTheRestIsChecked) {
    const Outcome outcome = tool("verify no.m19 ." + quoted(kClips + "gaps-64.m19"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, kClips + "gaps-64.m19: plays\n");
    EXPECT_EQ(outcome.err,
              "velmora-clip: cannot read no.m19: No such file or directory\n"
              "velmora-clip: there are no clips in .\n");
}

TEST_F(VerifyCommand, Folder_IsAllClipsBelowIt) {
    fs::create_directories("set/sub");
    fs::copy_file(kClips + "gaps-64.m19", "set/sub/a.m19");
    fs::copy_file(kBroken + "empty.m19", "set/b.m19");
    const Outcome outcome = tool("verify set");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out,
              "set/b.m19: broken in the file header at offset 0: the file is empty\n"
              "set/sub/a.m19: plays\n");
}

TEST_F(InfoCommand, MistypedCommand_IsNamedWithTheNearest) {
    const Outcome near = tool("verfy a.m19");
    EXPECT_EQ(near.status, 2);
    EXPECT_NE(near.err.find("there is no command 'verfy'; did you mean verify?\n"),
              std::string::npos)
        << near.err;
    const Outcome far = tool("conjure a.m19");
    EXPECT_EQ(far.status, 2);
    EXPECT_NE(far.err.find("there is no command 'conjure'\n"), std::string::npos) << far.err;
}

TEST_F(InfoCommand, Version_IsTold) {
    const Outcome outcome = tool("--version");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out.rfind("velmora-clip 1.", 0), 0u) << outcome.out;
}

TEST_F(VerifyCommand, WithoutFiles_IsWrongUse) {
    EXPECT_EQ(tool("verify").status, 2);
    EXPECT_EQ(tool("verify --help").status, 0);
}

TEST_F(InfoCommand, Text_TellsFacts) {
    const Outcome outcome = tool("info" + quoted(kClips + "gaps-64.m19"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find("640 x 64, colour and alpha"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("verdict\n  plays\n"), std::string::npos) << outcome.out;
}

// 3 blocks of fewer than 2000 records: 3 + 3 steps of 0.039 s.
TEST_F(InfoCommand, Json_HasEveryFact) {
    const Outcome outcome =
        tool("info --json" + quoted(kClips + "gaps-64.m19") + quoted(kClips + "flat-200.m19"));
    EXPECT_EQ(outcome.status, 0);
    const nlohmann::json facts = nlohmann::json::parse(outcome.out);
    ASSERT_EQ(facts.size(), 2u);
    EXPECT_EQ(facts[0].at("frames"), 33);
    EXPECT_EQ(facts[0].at("blockCount"), 3);
    EXPECT_EQ(facts[0].at("plays"), true);
    EXPECT_NEAR(facts[0].at("loadSeconds").get<double>(), 0.234, 1e-9);
    EXPECT_NEAR(facts[0].at("loadSecondsAsFirst").get<double>(), 0.234, 1e-9);
    EXPECT_EQ(facts[0].at("loadsSlowly"), false);
    EXPECT_GT(facts[0].at("memory").get<size_t>(), 1'850'000u);
    EXPECT_EQ(facts[0].at("recordsByType").size(), 20u);
    EXPECT_EQ(facts[1].at("height"), 200);
}

TEST_F(InfoCommand, BrokenClip_HasItsFaultAndNoCosts) {
    const Outcome outcome = tool("info --json" + quoted(kBroken + "alpha-255.m19"));
    EXPECT_EQ(outcome.status, 0);
    const nlohmann::json facts = nlohmann::json::parse(outcome.out).at(0);
    EXPECT_EQ(facts.at("plays"), false);
    EXPECT_EQ(facts.at("fault").at("offset"), 6);
    EXPECT_FALSE(facts.contains("loadSeconds"));
}

TEST_F(InfoCommand, FullDiskBehindTheOutput_Fails) {
    const std::string line =
        "'" + kTool + "' info --json '" + kClips + "flat-200.m19' >/dev/full 2>../err.txt";
    const int status = std::system(line.c_str());
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_EQ(textOf("../err.txt"), "velmora-clip: cannot write all of the output\n");
}

TEST_F(InfoCommand, NoClip_Fails) {
    std::ofstream("text.m19") << "hello";
    const Outcome outcome = tool("info --json text.m19");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(nlohmann::json::parse(outcome.out), nlohmann::json::array());
    EXPECT_NE(outcome.err.find("text.m19 is not a clip"), std::string::npos) << outcome.err;
    EXPECT_EQ(tool("info").status, 2);
}

}  // namespace
