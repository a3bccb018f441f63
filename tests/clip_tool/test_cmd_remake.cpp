// Where clips came from, told beside them, and velmora-clip remake, run for real.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "clip_tool/inputs.h"
#include "clip_tool/tool.h"

namespace {

using Levels = std::vector<int>;

nlohmann::json origin(const std::string& clip) {
    return nlohmann::json::parse(textOf(clip + ".json"));
}

class Remake : public Commands {
protected:
    Remake() {
        inputs::levels("in.mkv", {3, 4, 5});
        EXPECT_EQ(tool("encode in.mkv -o a.m19 --fps 25 --loop pingpong --quality 100 -j 1").status,
                  0);
    }
};

TEST_F(Remake, Clip_HasItsOriginBeside) {
    const nlohmann::json json = origin("a.m19");
    EXPECT_EQ(json.at("source"), fs::absolute("in.mkv").string());
    EXPECT_EQ(json.at("sourceBytes"), fs::file_size("in.mkv"));
    EXPECT_EQ(json.at("options"),
              nlohmann::json({{"--fps", "25"}, {"--loop", "pingpong"}, {"--quality", "100"}}));
    EXPECT_EQ(json.at("frames"), 4);
    EXPECT_EQ(json.at("bytes"), fs::file_size("a.m19"));
    EXPECT_EQ(json.at("records"), 0);
    std::system("sha256sum in.mkv > ../sum.txt");
    EXPECT_EQ(json.at("sha256"), textOf("../sum.txt").substr(0, 64));
}

TEST_F(Remake, OptionsGiven_ChangeTheKept) {
    const Outcome outcome = tool("remake a.m19 --loop none");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(inputs::levelsOf("a.m19"), (Levels{3, 4, 5}));
    EXPECT_EQ(origin("a.m19").at("options"),
              nlohmann::json({{"--fps", "25"}, {"--loop", "none"}, {"--quality", "100"}}));
    EXPECT_EQ(tool("remake a.m19 --loop=pingpong").status, 0);
    EXPECT_EQ(inputs::levelsOf("a.m19"), (Levels{3, 4, 5, 4}));
}

TEST_F(Remake, SourceWithAnotherTime_IsTheSame) {
    fs::last_write_time("in.mkv", fs::last_write_time("in.mkv") + std::chrono::hours(1));
    EXPECT_EQ(tool("remake a.m19").status, 0);
}

TEST_F(Remake, SourceThatChangedOrIsGone_IsTold) {
    const std::string before = textOf("a.m19");
    const std::string source = fs::absolute("in.mkv");
    inputs::levels("in.mkv", {6});
    for (const char* command : {"remake a.m19", "diff a.m19"}) {
        EXPECT_EQ(tool(command).err,
                  "velmora-clip: the source of a.m19 has changed since: " + source + "\n");
    }
    fs::remove("in.mkv");
    const Outcome gone = tool("remake a.m19");
    EXPECT_EQ(gone.status, 1);
    EXPECT_EQ(gone.err,
              "velmora-clip: the source of a.m19 is not there any more: " + source + "\n");
    EXPECT_TRUE(textOf("a.m19") == before);
}

TEST_F(Remake, ClipWithoutItsOrigin_IsTold) {
    fs::copy_file("a.m19", "b.m19");
    fs::copy_file("a.m19.json", "c.m19.json");
    std::ofstream("c.m19") << "hello";
    for (const std::string clip : {"b.m19", "c.m19"}) {
        const Outcome outcome = tool("remake " + clip);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, "velmora-clip: nothing tells where " + clip + " came from: " + clip +
                                   ".json is not there, or of another clip\n");
    }
    EXPECT_EQ(tool("remake no.m19").err,
              "velmora-clip: cannot read no.m19: No such file or directory\n");
    EXPECT_EQ(tool("remake").status, 2);
    EXPECT_EQ(tool("remake a.m19 --loop sometimes").status, 2);
}

// 280 frames: both parts, once.
TEST_F(Remake, PartsOfASplitInput_AreMadeTogether) {
    inputs::levels("in.mkv", Levels(7, 7));
    ASSERT_EQ(tool("encode in.mkv -o s.m19 --fps 1000 --long split --preset graphics").status, 0);
    EXPECT_EQ(origin("s-2.m19").at("part"), 2);
    const Outcome outcome = tool("remake s-1.m19 s-2.m19 --alpha luma");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 2) << outcome.out;
    EXPECT_EQ(inputs::readClip("s-2.m19").alpha, 1u);
    EXPECT_FALSE(fs::exists("s.m19"));
}

// The file beside the clip may be anybody's.
TEST_F(Remake, NameThatLeavesTheFolder_StaysInIt) {
    nlohmann::json json = origin("a.m19");
    json["part"] = 1;
    json["of"] = "../up.m19";
    std::ofstream("a.m19.json") << json;
    EXPECT_EQ(tool("remake a.m19").status, 0);
    EXPECT_TRUE(fs::exists("up.m19"));
    EXPECT_FALSE(fs::exists("../up.m19"));
}

TEST_F(Remake, NameOfBytes_IsFoundAgain) {
    fs::rename("in.mkv", "caf\xE9.mkv");
    ASSERT_EQ(tool("encode caf\xE9.mkv -o b.m19 --preset graphics").status, 0);
    const Outcome outcome = tool("remake b.m19");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
}

TEST_F(Remake, Link_HasItsOriginBesideTheClip) {
    fs::create_directory("shelf");
    fs::create_symlink("shelf/l.m19", "l.m19");
    ASSERT_EQ(tool("encode in.mkv -o l.m19 --preset graphics").status, 0);
    EXPECT_TRUE(fs::exists("shelf/l.m19.json"));
    EXPECT_EQ(tool("remake l.m19").status, 0);
    EXPECT_EQ(tool("remake shelf/l.m19").status, 0);
}

}  // namespace
