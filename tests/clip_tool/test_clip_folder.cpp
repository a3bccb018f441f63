// Loose clips in a folder, unpacked like a set; and where clips came from, which goes along.
#include <nlohmann/json.hpp>

#include "clip_tool/sets.h"
#include "clip_tool/tool.h"
#include "tools/clip/set/clip_folder.h"

namespace {

using sets::clipText;
using sets::kSums;
using sets::kXml;
using sets::listing;
using sets::Listing;
using sets::write;
using sets::xmlOf;

bool says(const std::string& text, const std::string& line) {
    return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
}

// What the encoder writes beside a clip of this text.
std::string originOf(const std::string& clip, const std::string& source = "/home/film.mp4") {
    const nlohmann::json json = {{"source", source},
                                 {"sourceBytes", 7},
                                 {"sha256", "aa"},
                                 {"options", nlohmann::json::object()},
                                 {"bytes", clip.size()}};
    return json.dump();
}

class ClipFolder : public Commands {
protected:
    ClipFolder() {
        unsetenv("VELMORA_HOME");
        setenv("XDG_CONFIG_HOME", (fs::current_path() / "config").c_str(), 1);
        write(std::string("there/") + kXml, xmlOf({{"own", {}}}));
        fs::create_directories("there/videos");
    }
    const std::string one_ = clipText("gaps-64", 1);
    const std::string two_ = clipText("gaps-64", 2);
};

TEST_F(ClipFolder, ClipsAtTheTopAndBelow_MakeAPlaylistOfItsName) {
    write("BLUE/b.m19", one_);
    write("BLUE/live/a.m19", two_);
    write("BLUE/notes.txt", "no clip");
    const Outcome outcome = tool("unpack BLUE/ --to there");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(says(outcome.out, "1 playlist, 2 clips")) << outcome.out;
    EXPECT_EQ(textOf("there/videos/b.m19"), one_);
    EXPECT_EQ(textOf("there/videos/live/a.m19"), two_);
    EXPECT_EQ(textOf(std::string("there/") + kXml),
              xmlOf({{"own", {}}, {"BLUE", {"b.m19", "live/a.m19"}}}));
    const Listing once = listing("there");
    EXPECT_TRUE(says(tool("unpack BLUE --to there").out, "playlist 'BLUE': as it was"));
    EXPECT_EQ(listing("there"), once);
}

TEST_F(ClipFolder, Name_IsThatOfThePlaylist) {
    write("stick/a.m19", one_);
    EXPECT_EQ(tool("unpack stick --name 'été <1> & a name too long' --to there").status, 0);
    EXPECT_EQ(textOf(std::string("there/") + kXml),
              xmlOf({{"own", {}}, {"\xE9t\xE9 _1_ _ a name too", {"a.m19"}}}));
    EXPECT_EQ(maker::playlistNameOf("\xE6\x97\xA5\t"), "__");
    EXPECT_EQ(maker::playlistNameOf("  "), "clips");
}

TEST_F(ClipFolder, HiddenOnesAndLinks_AreLeftAlone) {
    write("secret/x.m19", one_);
    write("BLUE/a.m19", two_);
    write("BLUE/._a.m19", one_);
    write("BLUE/.Trash-1000/old.m19", one_);
    fs::create_symlink("../secret", "BLUE/out");
    fs::create_symlink("../secret/x.m19", "BLUE/x.m19");
    EXPECT_EQ(tool("unpack BLUE --to there").status, 0);
    EXPECT_EQ(filesIn("there/videos"), Names{"a.m19"});
}

TEST_F(ClipFolder, FortyNineClips_FillAPlaylist) {
    std::vector<std::string> first;
    for (int i = 100; i < 149; ++i) {
        first.push_back(std::to_string(i) + ".m19");
        write("BLUE/" + first.back(), one_);
    }
    EXPECT_EQ(tool("unpack BLUE --count").out, "1 playlist, 49 clips\n");
    write("BLUE/149.m19", two_);
    EXPECT_EQ(tool("unpack BLUE --count").out, "2 playlists, 50 clips\n");
    EXPECT_EQ(tool("unpack BLUE --to there").status, 0);
    EXPECT_EQ(textOf(std::string("there/") + kXml),
              xmlOf({{"own", {}}, {"BLUE", first}, {"BLUE 2", {"149.m19"}}}));
}

TEST_F(ClipFolder, OtherClipOfTheName_StaysAndTheNewOneIsNumbered) {
    write("there/videos/a.m19", two_);
    write("BLUE/a.m19", one_);
    EXPECT_EQ(tool("unpack BLUE --to there").status, 0);
    EXPECT_EQ(textOf("there/videos/a.m19"), two_);
    EXPECT_EQ(textOf("there/videos/a_2.m19"), one_);
    EXPECT_EQ(textOf(std::string("there/") + kXml), xmlOf({{"own", {}}, {"BLUE", {"a_2.m19"}}}));
}

TEST_F(ClipFolder, ClipsThatDoNotPlay_AreLeftOutAndNamed) {
    write("BLUE/a.m19", one_);
    write("BLUE/broken.m19", "no clip");
    write("BLUE/" + std::string(120, 'x') + ".m19", one_);
    const Outcome outcome = tool("unpack BLUE --to there");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err,
              "velmora-clip: 'broken.m19' is left out: it is broken in the file header at offset "
              "0: version 110, not 19\n"
              "velmora-clip: '" +
                  std::string(120, 'x') +
                  ".m19' is left out: its name cannot stand in a playlist\n");
    EXPECT_TRUE(says(outcome.out, "1 playlist, 1 clip")) << outcome.out;
    EXPECT_EQ(filesIn("there/videos"), Names{"a.m19"});
}

TEST_F(ClipFolder, NoClips_IsOneLineAndNothingIsWritten) {
    fs::create_directories("BLUE");
    const Listing before = listing("there");
    EXPECT_EQ(tool("unpack BLUE --to there").err,
              "velmora-clip: cannot unpack BLUE: it holds no clip\n");
    EXPECT_EQ(tool("unpack BLUE --count").err,
              "velmora-clip: cannot unpack BLUE: it holds no clip\n");
    write("BLUE/broken.m19", "no clip");
    EXPECT_EQ(tool("unpack BLUE --to there").err,
              "velmora-clip: cannot unpack BLUE: none of its clips plays\n");
    EXPECT_EQ(listing("there"), before);
}

TEST_F(ClipFolder, MoreThanPlaylistsHold_IsOneLine) {
    for (int i = 0; i <= 50 * 49; ++i) {
        write("BLUE/" + std::to_string(i) + ".m19", "");
    }
    EXPECT_EQ(tool("unpack BLUE --count").err,
              "velmora-clip: cannot unpack BLUE: it holds more than a set can\n");
}

TEST_F(ClipFolder, DryRun_TellsTheSameAndWritesNothing) {
    write("BLUE/a.m19", one_);
    const Listing before = listing("there");
    const Outcome dry = tool("unpack BLUE --to there --dry-run");
    EXPECT_EQ(dry.status, 0) << dry.err;
    EXPECT_EQ(listing("there"), before);
    EXPECT_EQ(tool("unpack BLUE --to there").out, dry.out);
}

TEST_F(ClipFolder, FullDisk_LeavesAllAsItWas) {
    write("BLUE/a.m19", one_);
    const Listing before = listing("there");
    const Outcome outcome = tool("unpack BLUE --to there", "trap '' XFSZ; ulimit -f 10; ");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("cannot unpack BLUE: cannot write videos/a.m19: "),
              std::string::npos)
        << outcome.err;
    EXPECT_EQ(listing("there"), before);
}

// Between the look at the clips and the copy.
TEST_F(ClipFolder, ClipThatChangesMeanwhile_IsAnError) {
    write("BLUE/a.m19", one_);
    maker::ClipFolder folder("BLUE", "BLUE");
    write("BLUE/a.m19", two_);
    try {
        folder.read(*folder.find("videos/a.m19"));
        FAIL();
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "its 'a.m19' has changed meanwhile");
    }
}

TEST_F(ClipFolder, Origin_ComesAlongUnderTheClipsNewName) {
    write("BLUE/a.m19", one_);
    write("BLUE/a.m19.json", originOf(one_));
    write("BLUE/b.m19", one_ + "!");
    write("BLUE/b.m19.json", originOf(one_));  // of a clip of another size
    write("there/videos/a.m19", two_);
    EXPECT_EQ(tool("unpack BLUE --to there").status, 0);
    EXPECT_EQ(textOf("there/videos/a_2.m19.json"), originOf(one_));
    EXPECT_FALSE(fs::exists("there/videos/a.m19.json"));
    EXPECT_FALSE(fs::exists("there/videos/b.m19.json"));
}

class Origins : public ClipFolder {
protected:
    // Of two clips the first has an origin.
    void makeSet() {
        write("home/videos/a.m19", one_);
        write("home/videos/a.m19.json", originOf(one_));
        write("home/videos/b.m19", two_);
        write("home/videos/b.m19.json", "nothing of the encoder's");
        write(std::string("home/") + kXml, xmlOf({{"one", {"a.m19", "b.m19"}}}));
        const Outcome packed = tool("pack --from home -o set.velmora");
        ASSERT_EQ(packed.status, 0) << packed.err;
        EXPECT_TRUE(says(packed.out, "1 playlist and 2 clips, 49.0 kB in set.velmora"))
            << packed.out;
    }
};

TEST_F(Origins, PackedSet_BringsThemBack) {
    makeSet();
    EXPECT_EQ(tool("unpack set.velmora --count").out, "1 playlist, 2 clips\n");
    EXPECT_EQ(tool("unpack set.velmora --to there").status, 0);
    EXPECT_EQ(textOf("there/videos/a.m19.json"), originOf(one_));
    EXPECT_FALSE(fs::exists("there/videos/b.m19.json"));
    EXPECT_EQ(textOf(std::string("there/") + kSums).find(".json"), std::string::npos);
}

TEST_F(Origins, WhatIsInTheirPlace_Stays) {
    makeSet();
    write("there/videos/a.m19.json", "somebody's");
    const Outcome outcome = tool("unpack set.velmora --to there");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(textOf("there/videos/a.m19.json"), "somebody's");
    EXPECT_EQ(textOf("there/videos/a.m19"), one_);
}

TEST_F(Origins, ClipThatIsThere_GetsItsOwn) {
    makeSet();
    write("there/videos/a.m19", one_);
    EXPECT_EQ(tool("unpack set.velmora --to there").status, 0);
    EXPECT_EQ(textOf("there/videos/a.m19.json"), originOf(one_));
}

TEST_F(Origins, WithoutAClip_TheSetIsRefused) {
    write("set.velmora",
          sets::setOf({{"videos/a.m19", one_}, {"videos/z.m19.json", "{}"}}, {{"one", {"a.m19"}}}));
    const Outcome outcome = tool("unpack set.velmora --to there");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err,
              "velmora-clip: cannot unpack set.velmora: its 'videos/z.m19.json' belongs to none of "
              "its clips\n");
    EXPECT_EQ(listing("there/videos"), Listing());
}

TEST_F(Origins, OfNoUse_AreLeftOutOfWhatComes) {
    write("set.velmora",
          sets::setOf({{"videos/a.m19", one_}, {"videos/a.m19.json", "{}"}}, {{"one", {"a.m19"}}}));
    EXPECT_EQ(tool("unpack set.velmora --to there").status, 0);
    EXPECT_FALSE(fs::exists("there/videos/a.m19.json"));
}

}  // namespace
