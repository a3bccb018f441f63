// check on the command line.
#include <nlohmann/json.hpp>

#include "clip_tool/tool.h"

namespace {

class CheckCommand : public Commands {};

void makeSet(const fs::path& folder, const std::string& tracks,
             const std::string& clip = "runs-360.m19") {
    fs::create_directories(folder / "videos");
    fs::create_directories(folder / "userdata");
    fs::copy_file(TEST_DATA "/clips/" + clip, folder / "videos/flat.m19");
    std::ofstream(folder / "userdata/playlists.xml")
        << "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n\t<playlist>\n"
           "\t\t<name>set</name>\n"
        << tracks << "\t</playlist>\n</all>\n";
}

TEST_F(CheckCommand, GoodSet_EndsWithZero) {
    makeSet(".", "\t\t<track>flat.m19</track>\n");
    const Outcome outcome = tool("check");
    EXPECT_EQ(outcome.status, 0) << outcome.out;
    EXPECT_EQ(outcome.err, "");
    EXPECT_NE(outcome.out.find("No problems"), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.out.find("lines high"), std::string::npos) << outcome.out;
}

TEST_F(CheckCommand, MissingClip_EndsWithOne) {
    makeSet("my set", "\t\t<track>flat.m19</track>\n\t\t<track>gone.m19</track>\n");
    const Outcome text = tool("check 'my set'");
    EXPECT_EQ(text.status, 1);
    EXPECT_NE(text.out.find("Problems\n  set: 'gone.m19' is missing\n"), std::string::npos)
        << text.out;
    const Outcome json = tool("check --json 'my set'");
    EXPECT_EQ(json.status, 1);
    const nlohmann::json report = nlohmann::json::parse(json.out);
    EXPECT_EQ(report.at("ok"), false);
    EXPECT_EQ(report.at("problems").at(0).at("where"), "set");
    EXPECT_EQ(report.at("playlists").at(0).at("ready"), 1);
}

TEST_F(CheckCommand, LowClip_IsANoteAndEndsWithZero) {
    makeSet(".", "\t\t<track>flat.m19</track>\n", "flat-200.m19");
    const Outcome text = tool("check");
    EXPECT_EQ(text.status, 0) << text.out;
    EXPECT_NE(text.out.find("  set: 'flat.m19' is 200 lines high, not 360: on the top layer only "
                            "its last 40 lines show\n"),
              std::string::npos)
        << text.out;
    const nlohmann::json report = nlohmann::json::parse(tool("check --json").out);
    EXPECT_EQ(report.at("ok"), true);
    EXPECT_EQ(report.at("notes").at(0).at("where"), "set");
    EXPECT_EQ(report.at("notes").at(0).at("text"),
              "'flat.m19' is 200 lines high, not 360: on the top layer only its last 40 lines "
              "show");
}

TEST_F(CheckCommand, Memory_DecidesOverTheStatus) {
    makeSet(".", "\t\t<track>flat.m19</track>\n");
    EXPECT_EQ(tool("check --memory 512M").status, 0);
    EXPECT_EQ(tool("check --memory 524288k").status, 2);
    EXPECT_EQ(tool("check --memory 524288K").status, 0);
    EXPECT_EQ(tool("check --memory 1G").status, 0);
    const Outcome small = tool("check --memory 200M");
    EXPECT_EQ(small.status, 1);
    EXPECT_NE(small.out.find("Problems\n  set: track 1, 'flat.m19', is the first"),
              std::string::npos)
        << small.out;
}

TEST_F(CheckCommand, MemoryThatIsNoSize_IsOneLine) {
    for (const std::string size : {"512", "0M", "-1M", "M", "1.5G", "512MB", "9999999M"}) {
        const Outcome outcome = tool("check --memory=" + size);
        EXPECT_EQ(outcome.status, 2) << size;
        EXPECT_NE(outcome.err.find("--memory: takes a number and K, M or G, as in 512M\n"),
                  std::string::npos)
            << outcome.err;
    }
}

TEST_F(CheckCommand, NoFolder_IsOneLine) {
    const Outcome outcome = tool("check nowhere");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "velmora-clip: cannot check nowhere: it is no folder\n");
    EXPECT_EQ(tool("check a b").status, 2);
    EXPECT_EQ(tool("check --help").status, 0);
}

}  // namespace
