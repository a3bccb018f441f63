// pack and unpack, run for real: a set goes from one folder to another.
#include "clip_tool/sets.h"
#include "clip_tool/tool.h"
#include "tools/base/errors.h"
#include "tools/clip/set/arriving.h"

namespace {

using sets::kSums;
using sets::kXml;
using sets::listing;
using sets::Listing;
using sets::Playlist;
using sets::write;
using sets::xmlOf;

bool says(const std::string& text, const std::string& line) {
    return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
}

class Pack : public Commands {
protected:
    Pack() {
        unsetenv("VELMORA_HOME");
        setenv("XDG_CONFIG_HOME", (fs::current_path() / "config").c_str(), 1);
        fs::create_directories("there");
    }

    // "home": forty clips under bad names, a link, one that is missing and one that is broken.
    std::vector<Playlist> makeHome() {
        std::vector<Playlist> playlists = {
            {"all of it", {}}, {"\xE9t\xE9 & co", {}}, {"empty", {}}};
        const char* names[] = {"with space.m19",  "caf\xC3\xA9.m19",
                               "\xE9t\xE9.m19",   "100%.m19",
                               "back\\slash.m19", "same.m19",
                               "one/same.m19",    "two/same.m19",
                               "-dash.m19",       "\xE6\x97\xA5\xE6\x9C\xAC.m19"};
        for (const char* name : names) {
            playlists[0].tracks.push_back(name);
        }
        while (playlists[0].tracks.size() < 40) {
            playlists[0].tracks.push_back("deep/er/" + std::to_string(playlists[0].tracks.size()) +
                                          ".m19");
        }
        int number = 0;
        for (const std::string& track : playlists[0].tracks) {
            write("home/videos/" + track, sets::clipText("gaps-64", ++number));
        }
        write("disk/elsewhere.m19", sets::clipText("flat-200"));
        fs::create_symlink("../../disk/elsewhere.m19", "home/videos/link.m19");
        write("home/videos/broken.m19", "no clip");
        playlists[1].tracks = {"same.m19", "link.m19", "gone.m19", "broken.m19", "same.m19"};
        write(std::string("home/") + kXml, xmlOf(playlists));
        write("home/userdata/prefs.xml", "the preferences");
        write("config/velmora/control.toml", "# the map\n");
        return playlists;
    }
};

TEST_F(Pack, WholeSet_ArrivesAsItWas) {
    const std::vector<Playlist> playlists = makeHome();
    const Outcome packed = tool("pack --from home -o set.velmora");
    EXPECT_EQ(packed.status, 1);
    EXPECT_EQ(packed.err,
              "velmora-clip: 'broken.m19' is left out: it is broken in the file header at offset "
              "0: version 110, not 19\n"
              "velmora-clip: 'gone.m19' is left out: it is missing\n");
    EXPECT_TRUE(says(packed.out, "3 playlists and 41 clips, 1.0 MB in set.velmora")) << packed.out;

    fs::remove_all("config");
    const Outcome unpacked = tool("unpack set.velmora --to there");
    EXPECT_EQ(unpacked.status, 0) << unpacked.err;
    EXPECT_EQ(unpacked.err, "");
    EXPECT_TRUE(says(unpacked.out, "clip 'gone.m19': not in the set")) << unpacked.out;
    Listing before = listing("home");
    Listing after = listing("there");
    before.erase("videos/broken.m19");
    before["videos/link.m19"] = sets::clipText("flat-200");
    EXPECT_EQ(before.erase(kSums), 1u);
    EXPECT_EQ(after.erase(kSums), 1u);
    EXPECT_EQ(before, after);
    EXPECT_EQ(textOf("config/velmora/control.toml"), "# the map\n");
    EXPECT_EQ(filesHere(), (Names{"config", "disk", "home", "set.velmora", "there"}));
}

TEST_F(Pack, SameSet_IsTheSameBytesAndAZipForAnyTool) {
    makeHome();
    tool("pack --from home -o a.velmora");
    for (const auto& entry : fs::recursive_directory_iterator("home")) {
        if (!entry.is_symlink()) {
            fs::last_write_time(entry.path(), fs::file_time_type::clock::now());
        }
    }
    tool("pack --from home -o b.velmora");
    const std::string bytes = textOf("a.velmora");
    EXPECT_EQ(bytes.substr(0, 4), "PK\3\4");
    EXPECT_TRUE(bytes == textOf("b.velmora"));
    size_t clips = 0;
    for (const auto& [name, text] : listing("home/videos")) {
        clips += text.size();
    }
    EXPECT_LT(bytes.size(), clips);
}

TEST_F(Pack, NamedPlaylists_AreTheOnlyOnes) {
    makeHome();
    const Outcome packed = tool("pack 'été & co' --from home -o set.velmora");
    EXPECT_EQ(packed.status, 1);
    EXPECT_TRUE(says(packed.out, "1 playlist and 2 clips, 65.4 kB in set.velmora")) << packed.out;
    tool("unpack set.velmora --to there");
    EXPECT_EQ(filesIn("there/videos"), (Names{"link.m19", "same.m19"}));
    const Outcome none = tool("pack 'emty' --from home -o other.velmora");
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "velmora-clip: there is no playlist 'emty'; there is 'empty'\n");
    EXPECT_FALSE(fs::exists("other.velmora"));
}

TEST_F(Pack, CheckAndDryRun_TellAndWriteNothing) {
    makeHome();
    const Listing home = listing("home");
    const Outcome check = tool("pack --from home --check");
    EXPECT_EQ(check.status, 1);
    EXPECT_TRUE(says(check.out, "playlist 'all of it': 40 tracks")) << check.out;
    EXPECT_TRUE(says(check.out, "clip 'one/same.m19': 24.5 kB")) << check.out;
    EXPECT_EQ(listing("home"), home);
    tool("pack --from home -o set.velmora");
    const Outcome dry = tool("unpack set.velmora --to there --dry-run");
    EXPECT_EQ(dry.status, 0) << dry.err;
    EXPECT_TRUE(says(dry.out, "clip 'one/same.m19': new")) << dry.out;
    EXPECT_TRUE(says(dry.out, "playlist 'all of it': new, 40 tracks")) << dry.out;
    EXPECT_EQ(listing("there"), Listing());
    EXPECT_EQ(tool("unpack set.velmora --to there").out, dry.out);
}

TEST_F(Pack, ClipOutsideVideos_IsLeftOut) {
    write("home/secret.m19", sets::clipText("flat-200"));
    write(std::string("home/") + kXml, xmlOf({{"a", {"../secret.m19", "/etc/passwd"}}}));
    fs::create_directories("home/videos");
    const Outcome packed = tool("pack --from home -o set.velmora");
    EXPECT_EQ(packed.status, 1);
    EXPECT_NE(packed.err.find("'../secret.m19' is left out: a set holds clips below videos/"),
              std::string::npos)
        << packed.err;
    EXPECT_TRUE(says(packed.out, "1 playlist and 0 clips, 0.0 kB in set.velmora")) << packed.out;
}

TEST_F(Pack, FailedPack_LeavesTheOldSet) {
    makeHome();
    write("set.velmora", "old");
    const Outcome full = tool("pack --from home -o set.velmora", "trap '' XFSZ; ulimit -f 100; ");
    EXPECT_EQ(full.status, 1);
    EXPECT_NE(full.err.find("cannot write "), std::string::npos) << full.err;
    EXPECT_EQ(textOf("set.velmora"), "old");
    EXPECT_EQ(filesHere(), (Names{"config", "disk", "home", "set.velmora", "there"}));
    EXPECT_EQ(tool("pack --from home -o no/set.velmora").status, 1);
    EXPECT_EQ(tool("pack --from home").status, 2);
    EXPECT_EQ(tool("pack --from there -o x.velmora").err,
              "velmora-clip: there is no playlist to pack\n");
}

class Unpack : public Pack {
protected:
    // A set of two clips and two playlists.
    void makeSet() {
        write("home/videos/a.m19", sets::clipText("gaps-64", 1));
        write("home/videos/sub/b.m19", sets::clipText("gaps-64", 2));
        write(std::string("home/") + kXml,
              xmlOf({{"one", {"a.m19", "sub/b.m19"}}, {"a name of 20 letters", {"a.m19"}}}));
        write("home/userdata/prefs.xml", "the set's");
        ASSERT_EQ(tool("pack --from home -o set.velmora").status, 0);
    }
};

TEST_F(Unpack, SecondTime_ChangesNothing) {
    makeSet();
    ASSERT_EQ(tool("unpack set.velmora --to there").status, 0);
    const Listing once = listing("there");
    const auto time = fs::last_write_time("there/videos/a.m19");
    const Outcome again = tool("unpack set.velmora --to there");
    EXPECT_EQ(again.status, 0) << again.err;
    EXPECT_TRUE(says(again.out, "playlist 'one': as it was")) << again.out;
    EXPECT_TRUE(says(again.out, "clip 'a.m19': there already")) << again.out;
    EXPECT_EQ(listing("there"), once);
    EXPECT_EQ(fs::last_write_time("there/videos/a.m19"), time);
}

TEST_F(Unpack, OtherClipsAndPlaylistsOfTheNames_StayAndTheNewOnesAreNumbered) {
    makeSet();
    write("there/videos/a.m19", "another clip");
    write("there/videos/a_2.m19", "one more");
    const std::string old = xmlOf({{"one", {"x.m19"}}, {"a name of 20 letters", {"a.m19"}}});
    write(std::string("there/") + kXml, old);
    write("there/userdata/prefs.xml", "its own");
    const Outcome unpacked = tool("unpack set.velmora --to there");
    EXPECT_EQ(unpacked.status, 0) << unpacked.err;
    EXPECT_EQ(textOf("there/videos/a.m19"), "another clip");
    EXPECT_EQ(textOf("there/videos/a_2.m19"), "one more");
    EXPECT_EQ(textOf("there/videos/a_3.m19"), sets::clipText("gaps-64", 1));
    EXPECT_EQ(textOf(std::string("there/") + kXml), xmlOf({{"one", {"x.m19"}},
                                                           {"a name of 20 letters", {"a.m19"}},
                                                           {"one 2", {"a_3.m19", "sub/b.m19"}},
                                                           {"a name of 20 lette 2", {"a_3.m19"}}}));
    EXPECT_EQ(textOf("there/userdata/prefs.xml"), "its own");
    const Listing once = listing("there");
    EXPECT_EQ(tool("unpack set.velmora --to there").status, 0);
    EXPECT_EQ(listing("there"), once);
    EXPECT_EQ(tool("unpack set.velmora --to there --preferences").status, 0);
    EXPECT_EQ(textOf("there/userdata/prefs.xml"), "the set's");
    EXPECT_EQ(textOf("there/userdata/prefs.xml.old"), "its own");
}

// One byte of many thousand.
TEST_F(Unpack, ClipOfTheSameSize_IsAnotherClip) {
    write("home/videos/a.m19", sets::clipText("gaps-64", 2));
    write(std::string("home/") + kXml, xmlOf({{"new", {"a.m19"}}}));
    ASSERT_EQ(tool("pack --from home -o set.velmora").status, 0);
    write("there/videos/a.m19", sets::clipText("gaps-64", 1));
    write(std::string("there/") + kXml, xmlOf({{"own", {"a.m19"}}}));
    ASSERT_EQ(tool("unpack set.velmora --to there").status, 0);
    EXPECT_TRUE(textOf("there/videos/a.m19") == sets::clipText("gaps-64", 1));
    EXPECT_TRUE(textOf("there/videos/a_2.m19") == sets::clipText("gaps-64", 2));
    EXPECT_EQ(textOf(std::string("there/") + kXml),
              xmlOf({{"own", {"a.m19"}}, {"new", {"a_2.m19"}}}));
}

// Between the look at the folder and the names that are given.
TEST_F(Unpack, FileThatHasComeMeanwhile_IsNotWrittenOver) {
    const std::vector<uint8_t> bytes = {1, 2, 3};
    {
        maker::Arriving arriving;
        arriving.write("there/first.m19", bytes, false);
        arriving.write("there/second.m19", bytes, false);
        write("there/second.m19", "somebody's");
        EXPECT_THROW(arriving.name(), maker::ToolError);
    }
    EXPECT_EQ(listing("there"), (Listing{{"second.m19", "somebody's"}}));
}

TEST_F(Unpack, FiftyPlaylists_LeaveNoRoom) {
    makeSet();
    std::vector<Playlist> playlists;
    for (int i = 0; i < 49; ++i) {
        playlists.push_back({"p" + std::to_string(i), {}});
    }
    write(std::string("there/") + kXml, xmlOf(playlists));
    const Listing before = listing("there");
    const Outcome unpacked = tool("unpack set.velmora --to there");
    EXPECT_EQ(unpacked.status, 1);
    EXPECT_EQ(unpacked.err,
              "velmora-clip: cannot unpack set.velmora: there would be 51 playlists, and there can "
              "be 50\n");
    EXPECT_EQ(listing("there"), before);
}

TEST_F(Unpack, LinkThatLeadsOut_IsNotFollowed) {
    makeSet();
    fs::create_directories("there/videos");
    fs::create_directories("outside");
    fs::create_symlink("../../outside", "there/videos/sub");
    const Outcome unpacked = tool("unpack set.velmora --to there");
    EXPECT_EQ(unpacked.status, 1);
    EXPECT_EQ(unpacked.err,
              "velmora-clip: cannot unpack set.velmora: 'videos/sub' is a link that leads out of "
              "videos/; nothing is written there\n");
    EXPECT_EQ(listing("outside"), Listing());
    EXPECT_FALSE(fs::exists("there/videos/a.m19"));
    // One that stays inside is as good as a folder; a link in a clip's place is a clip of its own.
    fs::remove("there/videos/sub");
    fs::create_directory("there/videos/other");
    fs::create_symlink("other", "there/videos/sub");
    fs::create_symlink("../../outside/new.m19", "there/videos/a.m19");
    EXPECT_EQ(tool("unpack set.velmora --to there").status, 0);
    EXPECT_EQ(filesIn("there/videos"), (Names{"a.m19", "a_2.m19", "other", "sub"}));
    EXPECT_EQ(filesIn("there/videos/other"), Names{"b.m19"});
    EXPECT_EQ(listing("outside"), Listing());
}

TEST_F(Unpack, FullDisk_LeavesAllAsItWas) {
    makeSet();
    write(std::string("there/") + kXml, xmlOf({{"old", {"x.m19"}}}));
    const Listing before = listing("there");
    const Outcome unpacked = tool("unpack set.velmora --to there", "trap '' XFSZ; ulimit -f 10; ");
    EXPECT_EQ(unpacked.status, 1);
    EXPECT_NE(unpacked.err.find("cannot unpack set.velmora: cannot write videos/a.m19: "),
              std::string::npos)
        << unpacked.err;
    EXPECT_EQ(listing("there"), before);
}

TEST_F(Unpack, FileThatTheProgramReadsInPart_IsKeptAsACopy) {
    makeSet();
    const std::string cut = xmlOf({{"kept", {"x.m19"}}}).substr(0, 116) + "\t<playlist>\n</all>\n";
    write(std::string("there/") + kXml, cut);
    const Outcome unpacked = tool("unpack set.velmora --to there");
    EXPECT_EQ(unpacked.status, 0) << unpacked.err;
    EXPECT_NE(unpacked.err.find("kept as userdata/playlists.xml.old\n"), std::string::npos)
        << unpacked.err;
    EXPECT_EQ(textOf(std::string("there/") + kXml + ".old"), cut);
}

TEST_F(Unpack, LeftoversOfAKilledRun_AreRemoved) {
    makeSet();
    write("there/videos/.zzz.m19.velmora-999999999-000000", "half");
    write("there/videos/.own.m19", "not a leftover");
    EXPECT_EQ(tool("unpack set.velmora --to there").status, 0);
    EXPECT_EQ(filesIn("there/videos"), (Names{".own.m19", "a.m19", "sub"}));
}

TEST_F(Unpack, NoSetOrNoFolder_IsOneLine) {
    EXPECT_EQ(tool("unpack gone.velmora --to there").err,
              "velmora-clip: cannot unpack gone.velmora: there is no such file\n");
    makeSet();
    EXPECT_EQ(tool("unpack set.velmora --to no").err, "velmora-clip: --to: no folder no\n");
    EXPECT_EQ(tool("unpack").status, 2);
}

}  // namespace
