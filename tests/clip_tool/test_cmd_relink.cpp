// relink, run for real: missing clips come back from other folders.
#include "clip_tool/sets.h"
#include "clip_tool/tool.h"

namespace {

using sets::clipText;
using sets::kXml;
using sets::listing;
using sets::write;
using sets::xmlOf;

class Relink : public Commands {
protected:
    Relink() {
        unsetenv("VELMORA_HOME");
        setenv("XDG_CONFIG_HOME", (fs::current_path() / "config").c_str(), 1);
        write("home/videos/there.m19", clipText("gaps-64"));
        write(std::string("home/") + kXml,
              xmlOf({{"one", {"there.m19", "sub/known.m19", "named.m19", "two.m19", "no.m19"}}}));
        write("home/videos/sub/known.m19", clipText("gaps-64", 1));
        tool("pack --from home -o set.velmora");  // notes what it holds
        fs::remove_all("home/videos/sub");
        write("stick/renamed.m19", clipText("gaps-64", 1));
        write("stick/known.m19", clipText("gaps-64", 2));
        write("stick/deep/named.m19", clipText("gaps-64", 3));
        write("stick/copy/named.m19", clipText("gaps-64", 3));
        write("stick/a/two.m19", clipText("gaps-64", 4));
        write("stick/b/two.m19", clipText("gaps-64", 5));
        write("stick/no.m19", "no clip");
    }
};

TEST_F(Relink, WithoutWrite_ShowsAndWritesNothing) {
    const sets::Listing before = listing("home");
    const Outcome outcome = tool("relink stick --to home");
    const std::string stick = fs::absolute("stick").string();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "clip 'named.m19': " + stick +
                               "/copy/named.m19, by its name\n"
                               "clip 'no.m19': not found\n"
                               "clip 'sub/known.m19': " +
                               stick +
                               "/renamed.m19, by what it holds\n"
                               "clip 'two.m19': several that differ, none is taken\n  " +
                               stick + "/a/two.m19\n  " + stick +
                               "/b/two.m19\n"
                               "4 missing, 2 found; --write copies them into videos/\n");
    EXPECT_EQ(listing("home"), before);
}

TEST_F(Relink, Write_BringsTheClipsBack) {
    sets::Listing expected = listing("home");
    const Outcome outcome = tool("relink stick --to home --write");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("4 missing, 2 copied into videos/\n"), std::string::npos)
        << outcome.out;
    expected["videos/sub"] = "";
    expected["videos/sub/known.m19"] = clipText("gaps-64", 1);
    expected["videos/named.m19"] = clipText("gaps-64", 3);
    EXPECT_EQ(listing("home"), expected);
}

TEST_F(Relink, FullDiskOrALinkOut_WritesNothing) {
    const sets::Listing before = listing("home");
    EXPECT_EQ(tool("relink stick --to home --write", "trap '' XFSZ; ulimit -f 10; ").status, 1);
    EXPECT_EQ(listing("home"), before);
    fs::create_directory("outside");
    fs::create_symlink("../../outside", "home/videos/sub");
    const Outcome outcome = tool("relink stick --to home --write");
    EXPECT_NE(outcome.err.find("a link that leads out of videos/"), std::string::npos);
    EXPECT_EQ(filesIn("home/videos"), (Names{"sub", "there.m19"}));
    EXPECT_TRUE(fs::is_empty("outside"));
}

}  // namespace
