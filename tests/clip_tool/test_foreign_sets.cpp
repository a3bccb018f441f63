// Sets that nobody should have made: each is refused with a line of its own, and nothing is
// written.
#include "clip_tool/sets.h"
#include "clip_tool/tool.h"

namespace {

using sets::checksums;
using sets::clipText;
using sets::Entry;
using sets::kXml;
using sets::listing;
using sets::setOf;
using sets::xmlOf;
using sets::zipOf;

class ForeignSets : public Commands {
protected:
    ForeignSets() {
        unsetenv("VELMORA_HOME");
        setenv("XDG_CONFIG_HOME", (fs::current_path() / "config").c_str(), 1);
        sets::write("there/videos/own.m19", clipText("flat-200"));
        sets::write(std::string("there/") + kXml, xmlOf({{"own", {"own.m19"}}}));
    }

    // What is said of the set.
    std::string refusal(const std::string& bytes) {
        sets::write("set.velmora", bytes);
        const sets::Listing before = listing(".");
        const Outcome outcome = tool("unpack set.velmora --to there");
        EXPECT_EQ(outcome.status, 1) << outcome.out;
        EXPECT_TRUE(listing(".") == before);
        const std::string start = "velmora-clip: cannot unpack set.velmora: ";
        EXPECT_EQ(outcome.err.rfind(start, 0), 0u) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
        return outcome.err.substr(std::min(start.size(), outcome.err.size()));
    }

    const Entry clip_{"videos/a.m19", clipText("gaps-64")};
    const std::vector<sets::Playlist> playlists_ = {{"one", {"a.m19"}}};
};

TEST_F(ForeignSets, SetByHand_IsTaken) {
    // Folders that other tools list are passed over.
    const Entry xml{kXml, xmlOf(playlists_)};
    sets::write("set.velmora",
                zipOf({{"videos/", "", 040755U << 16}, clip_, xml, checksums({clip_, xml})}));
    const Outcome outcome = tool("unpack set.velmora --to there");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(textOf("there/videos/a.m19"), clip_.text);
}

TEST_F(ForeignSets, NamesThatLeadOut_AreRefused) {
    for (const char* name :
         {"/etc/a.m19", "../a.m19", "videos/../../a.m19", "videos//a.m19", "videos/./a.m19",
          "videos/sub/../../../a.m19", "videos//etc/a.m19", "userdata/../a.m19", "videos/..",
          "other.txt", "videos/a.sh", "userdata/.ssh", "videos/a.m17"}) {
        const std::string quoted =
            std::string("it holds '") + name + "', which is nothing of a set\n";
        EXPECT_EQ(refusal(setOf({clip_, {name, clip_.text}}, playlists_)), quoted);
    }
    EXPECT_FALSE(fs::exists("a.m19"));
}

TEST_F(ForeignSets, NameThatTheProgramCannotReadBack_IsRefused) {
    const std::string name = "videos/" + std::string(88, 'l') + ".m19";
    EXPECT_NE(refusal(setOf({{name, clip_.text}}, playlists_)).find("nothing of a set"),
              std::string::npos);
}

TEST_F(ForeignSets, LinkOrDevice_IsRefused) {
    for (const uint32_t mode : {0120777U, 0020666U, 0010666U}) {
        EXPECT_EQ(refusal(setOf({{clip_.name, "/etc/passwd", mode << 16}}, playlists_)),
                  "its 'videos/a.m19' is a link or no ordinary file\n");
    }
}

TEST_F(ForeignSets, SizesThatNoClipHas_AreRefusedUnread) {
    Entry large = clip_;
    large.claimedBytes = (256U << 20) + 1;
    EXPECT_NE(refusal(setOf({large}, playlists_)), "");
    // Deflated: a small file that says it is large, and is.
    sets::write("zeros", std::string((256U << 20) + 1, '\0'));
    sets::write("zip.py",
                "import zipfile, sys\n"
                "with zipfile.ZipFile('bomb.velmora', 'w', zipfile.ZIP_DEFLATED) as z:\n"
                "    z.write('zeros', 'videos/a.m19')\n"
                "    z.writestr('checksums.txt', 'x')\n");
    ASSERT_EQ(std::system("python3 zip.py"), 0);
    fs::remove("zeros");
    const std::string bomb = textOf("bomb.velmora");
    fs::remove("bomb.velmora");
    EXPECT_LT(bomb.size(), 300000u);
    EXPECT_EQ(refusal(bomb), "its 'videos/a.m19' is larger than any can be\n");
}

TEST_F(ForeignSets, MoreThanTheDiskHolds_IsRefusedUnread) {
    sets::write("zip.py",
                "import zipfile, struct, hashlib\n"
                "names = ['videos/%d.m19' % i for i in range(2500)]\n"
                "text = '# Velmora set, version 1: SHA-256 of its files\\n'\n"
                "text += ''.join('%064x  %s\\n' % (0, name) for name in names)\n"
                "with zipfile.ZipFile('bomb.velmora', 'w', zipfile.ZIP_DEFLATED) as z:\n"
                "    for name in names:\n"
                "        z.writestr(name, b'\\0' * 4000)\n"
                "    z.writestr('checksums.txt', text)\n"
                "data = open('bomb.velmora', 'rb').read()\n"
                "data = data.replace(struct.pack('<I', 4000), struct.pack('<I', 256 << 20))\n"
                "open('bomb.velmora', 'wb').write(data)\n");
    ASSERT_EQ(std::system("python3 zip.py"), 0);
    const std::string bomb = textOf("bomb.velmora");
    fs::remove("bomb.velmora");
    const std::string reason = refusal(bomb);
    EXPECT_EQ(reason.rfind("it needs 671088.6 MB, and ", 0), 0u) << reason;
}

TEST_F(ForeignSets, SizeThatLies_IsDamage) {
    sets::write("zip.py",
                "import zipfile, struct, sys\n"
                "with zipfile.ZipFile('lie.velmora', 'w', zipfile.ZIP_DEFLATED) as z:\n"
                "    z.writestr('checksums.txt', '#' * 70001)\n"
                "data = open('lie.velmora', 'rb').read()\n"
                "data = data.replace(struct.pack('<I', 70001), struct.pack('<I', 47))\n"
                "open('lie.velmora', 'wb').write(data)\n");
    ASSERT_EQ(std::system("python3 zip.py"), 0);
    const std::string lie = textOf("lie.velmora");
    fs::remove("lie.velmora");
    EXPECT_EQ(refusal(lie), "its 'checksums.txt' is damaged\n");
}

TEST_F(ForeignSets, Duplicates_AreRefused) {
    EXPECT_EQ(refusal(setOf({clip_, {clip_.name, clipText("flat-200")}}, playlists_)),
              "it holds two files of one name\n");
    const Entry other{"videos/caf\xC3\xA9.m19", clip_.text};
    Entry same = other;
    same.saysUtf8 = true;
    EXPECT_EQ(refusal(setOf({clip_, other, same}, playlists_)), "it holds two files of one name\n");
}

TEST_F(ForeignSets, TruncatedAtAnyPlace_IsRefused) {
    const std::string whole = setOf({{clip_.name, clipText("one-frame-8")}}, playlists_);
    for (size_t bytes = 0; bytes < whole.size(); bytes += whole.size() / 40) {
        EXPECT_NE(refusal(whole.substr(0, bytes)), "") << bytes;
    }
    EXPECT_NE(refusal(whole.substr(0, whole.size() - 1)), "");
}

TEST_F(ForeignSets, ChecksumsThatDoNotFit_AreRefused) {
    const Entry xml{kXml, xmlOf(playlists_)};
    EXPECT_EQ(refusal(zipOf({clip_, xml})),
              "it has no list of checksums: no set of velmora-clip\n");
    EXPECT_EQ(refusal(zipOf({clip_, xml, checksums({xml})})),
              "its 'videos/a.m19' has no checksum\n");
    EXPECT_EQ(refusal(zipOf({xml, checksums({clip_, xml})})), "its 'videos/a.m19' is missing\n");
    Entry other = clip_;
    other.text.back() ^= 1;
    EXPECT_EQ(refusal(zipOf({other, xml, checksums({clip_, xml})})),
              "its 'videos/a.m19' is not what its checksum says\n");
    EXPECT_EQ(refusal(zipOf({clip_, xml, {"checksums.txt", ""}})),
              "its list of checksums is empty\n");
    EXPECT_EQ(refusal(zipOf({clip_, xml, {"checksums.txt", "{}\n"}})),
              "its list of checksums is wrong in line 1\n");
    Entry list = checksums({clip_, xml});
    list.text += list.text.substr(list.text.find('\n') + 1);
    EXPECT_EQ(refusal(zipOf({clip_, xml, list})), "its list of checksums is wrong in line 4\n");
}

TEST_F(ForeignSets, PlaylistsThatDoNotFit_AreRefused) {
    EXPECT_EQ(refusal(zipOf({clip_, checksums({clip_})})), "it has no playlists\n");
    const Entry broken{kXml, xmlOf(playlists_) + "more"};
    EXPECT_EQ(refusal(zipOf({clip_, broken, checksums({clip_, broken})})),
              "its playlists are not as Velmora writes them\n");
    EXPECT_EQ(refusal(setOf({clip_}, {{"one", {"b.m19"}}})),
              "its 'videos/a.m19' is in none of its playlists\n");
}

TEST_F(ForeignSets, MoreFilesThanASetCanHold_AreRefused) {
    std::vector<Entry> entries;
    for (int number = 0; number < 8000; ++number) {
        entries.push_back({"videos/" + std::to_string(number) + ".m19", "", 0});
    }
    EXPECT_EQ(refusal(zipOf(entries)), "it holds more files than a set can\n");
}

TEST_F(ForeignSets, ClipThatDoesNotPlay_IsRefused) {
    EXPECT_NE(
        refusal(setOf({{clip_.name, "no clip"}}, playlists_)).find("'videos/a.m19' is broken"),
        std::string::npos);
}

}  // namespace
