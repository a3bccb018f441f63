#include "tools/doctor/set.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "support/folder.h"
#include "tests/doctor/said.h"
#include "tools/doctor/bridge.h"

namespace doctor {
namespace {

namespace fs = std::filesystem;

const std::string kRights = "sudo chown -R $USER on Velmora's folder; or the disk is read-only.";

// Velmora's folder, as the user nobody where that can be had.
class Folder : public testing::Test {
protected:
    Folder() {
        for (const char* const name : {"data", "userdata", "videos"}) {
            fs::create_directory(name);
        }
        for (const char* const name : kData) {
            std::ofstream(name) << "x";
        }
        chmod(".", 0755);
    }
    void makePlaylist(const std::string& clip) {
        std::ofstream("userdata/playlists.xml")
            << "<all>\n\t<playlist>\n\t\t<name>one</name>\n\t\t<track>" << clip
            << "</track>\n\t</playlist>\n</all>\n";
    }
    template <typename Judge>
    Remarks asNobody(Judge judge) {
        Remarks remarks;
        EXPECT_EQ(seteuid(65534), 0);
        judge(remarks);
        EXPECT_EQ(seteuid(0), 0);
        return remarks;
    }
    static bool mayBecomeNobody() { return geteuid() == 0; }

    static constexpr const char* kData[] = {"data/textureUI.png", "data/volter", "data/home.png",
                                            "data/logo-tessaron.png", "data/ps3-controller.png"};
    TemporaryFolder folder_;
};

TEST_F(Folder, Data_IsInOrder) {
    Remarks remarks;
    judgeData(".", remarks);
    EXPECT_TRUE(atWorst(remarks, Grade::FINE));
    EXPECT_TRUE(says(remarks, Grade::FINE, "data", "all pictures and letters are there"));
}

TEST_F(Folder, DataThatIsMissing_HurtsByName) {
    const char* const without[] = {
        "data/textureUI.png is missing: the menus and the panel have no pictures",
        "data/volter is missing: there are no letters",
        "data/home.png is missing: the menu has no background",
        "data/logo-tessaron.png is missing: there is no logo",
        "data/ps3-controller.png is missing: the controller's page has no picture"};
    for (size_t i = 0; i < std::size(kData); ++i) {
        fs::rename(kData[i], "away");
        Remarks remarks;
        judgeData(".", remarks);
        EXPECT_TRUE(says(remarks, Grade::HURTS, "data", without[i],
                         "Start Velmora with its launcher, or in its own folder."));
        EXPECT_EQ(remarks.worstFirst().size(), 1U);
        fs::rename("away", kData[i]);
    }
}

TEST_F(Folder, Rights_AreThere) {
    makePlaylist("a.m19");
    Remarks remarks;
    judgeRights(".", remarks);
    EXPECT_EQ(remarks.worstFirst().size(), 0U);
}

TEST_F(Folder, UserdataNotWritable_Hurts) {
    if (!mayBecomeNobody()) {
        GTEST_SKIP() << "needs to give up rights";
    }
    const std::string text =
        "userdata/ cannot be written: what is changed in EDIT and OPTIONS is lost";
    chmod("userdata", 0755);
    EXPECT_TRUE(says(asNobody([](Remarks& remarks) { judgeRights(".", remarks); }), Grade::HURTS,
                     "rights", text, kRights));
    chmod("userdata", 0777);
    EXPECT_TRUE(
        atWorst(asNobody([](Remarks& remarks) { judgeRights(".", remarks); }), Grade::FINE));
    // It is made with the first save.
    fs::remove("userdata");
    EXPECT_TRUE(says(asNobody([](Remarks& remarks) { judgeRights(".", remarks); }), Grade::HURTS,
                     "rights", text, kRights));
}

TEST_F(Folder, UserFileNotReadable_Hurts) {
    for (const char* const name : {"playlists.xml", "prefs.xml", "gamecontroller.xml"}) {
        const std::string path = std::string("userdata/").append(name);
        fs::create_directory(path);
        Remarks remarks;
        judgeRights(".", remarks);
        EXPECT_TRUE(
            says(remarks, Grade::HURTS, "rights", path + " is there and cannot be read", kRights));
        fs::remove(path);
    }
}

TEST_F(Folder, VideosNotReadable_Stops) {
    if (!mayBecomeNobody()) {
        GTEST_SKIP() << "needs to give up rights";
    }
    chmod("userdata", 0777);
    chmod("videos", 0700);
    EXPECT_TRUE(says(asNobody([](Remarks& remarks) { judgeRights(".", remarks); }), Grade::STOPS,
                     "rights", "videos/ cannot be read: there are no clips", kRights));
}

TEST_F(Folder, ControllerMap_IsRead) {
    EXPECT_FALSE(controllerMapIn("."));
    files::ControllerMap map{};
    map[5] = 7;
    std::ofstream("userdata/gamecontroller.xml") << files::printController(map);
    const auto read = controllerMapIn(".");
    ASSERT_TRUE(read);
    EXPECT_EQ((*read)[5], 7);
}

maker::PlaylistReport playlistOf(const std::string& name, int ready, double seconds,
                                 size_t memory) {
    maker::PlaylistReport playlist;
    playlist.name = name;
    playlist.ready = ready;
    playlist.firstSeconds = 0.4;
    playlist.seconds = seconds;
    playlist.memory = memory;
    return playlist;
}

Remarks judged(const maker::SetReport& set, std::optional<size_t> memory = std::nullopt,
               bool withController = true) {
    Remarks remarks;
    judgeSet(set, memory, withController, remarks);
    return remarks;
}

TEST(JudgeSet, Playlists_TellTheirLoading) {
    maker::SetReport set;
    set.playlists = {playlistOf("one", 1, 60, 1), playlistOf("two", 12, 60.1, 2)};
    const Remarks remarks = judged(set);
    EXPECT_TRUE(
        says(remarks, Grade::FINE, "one", "1 clip; the first after 0.4 s, all after 60.0 s"));
    EXPECT_TRUE(says(remarks, Grade::NOTE, "two",
                     "12 clips; the first after 0.4 s, all after 60.1 s",
                     "Fewer clips load faster; all that are there play meanwhile."));
}

TEST(JudgeSet, PlaylistWithoutClips_Hurts) {
    maker::SetReport set;
    set.playlists = {playlistOf("one", 1, 1, 1), playlistOf("two", 0, 0, 1)};
    const Remarks remarks = judged(set);
    EXPECT_TRUE(atWorst(remarks, Grade::HURTS));
    EXPECT_TRUE(says(remarks, Grade::HURTS, "two",
                     "none of its clips plays: the stage stays black with it",
                     "Put clips into it in EDIT, or their files back below videos/."));
}

TEST(JudgeSet, NothingToPlay_Stops) {
    maker::SetReport set;
    const std::string mend =
        "velmora-clip demo --playlists userdata/playlists.xml makes the demo set.";
    EXPECT_TRUE(says(judged(set), Grade::STOPS, "playlists",
                     "there is no clip to play in any of them", mend));
    set.playlists = {playlistOf("two", 0, 0, 1)};
    EXPECT_TRUE(says(judged(set), Grade::STOPS, "playlists",
                     "there is no clip to play in any of them", mend));
}

TEST(JudgeSet, Memory_IsHeldAgainstTheLargest) {
    maker::SetReport set;
    set.playlists = {playlistOf("one", 1, 1, 5'000'000), playlistOf("two", 1, 1, 8'000'000)};
    // 24 MiB are the program's without its slots, 32 MiB stay free.
    constexpr size_t kOthers = size_t{56} << 20;
    EXPECT_TRUE(says(judged(set, kOthers + 8'000'000), Grade::FINE, "memory",
                     "the largest playlist, 'two', takes 8 MB, and 8 MB are free for it"));
    EXPECT_TRUE(
        says(judged(set, kOthers + 7'000'000), Grade::HURTS, "memory",
             "the largest playlist, 'two', takes 8 MB, and 7 MB are free for it: its last clips "
             "will not be loaded",
             "End other programs, or take fewer or smaller clips."));
}

TEST(JudgeSet, Findings_KeepTheirWeight) {
    maker::SetReport set;
    set.playlists = {playlistOf("one", 1, 1, 1)};
    set.findings.problem("one", "'a.m19' is missing");
    set.findings.note("videos/b.m19", "no playlist names it");
    const Remarks remarks = judged(set);
    EXPECT_TRUE(says(remarks, Grade::HURTS, "one", "'a.m19' is missing"));
    EXPECT_TRUE(says(remarks, Grade::NOTE, "videos/b.m19", "no playlist names it"));
}

TEST(JudgeSet, ControllersFile_MattersWithAController) {
    maker::SetReport set;
    set.playlists = {playlistOf("one", 1, 1, 1)};
    set.findings.problem(files::kControllerName, "is missing");
    EXPECT_TRUE(atWorst(judged(set, std::nullopt, true), Grade::HURTS));
    EXPECT_TRUE(atWorst(judged(set, std::nullopt, false), Grade::NOTE));
}

TEST(JudgeBridge, WhatItMisses_Hurts) {
    Remarks remarks;
    judgeBridge("ok      OSC: 0.0.0.0, port 9000\nMISSING no MIDI device: plug one in\n", remarks);
    EXPECT_TRUE(says(remarks, Grade::HURTS, "velmora-control", "no MIDI device: plug one in"));
    EXPECT_EQ(remarks.worstFirst().size(), 1U);
}

TEST(JudgeBridge, AllThere_IsInOrder) {
    Remarks remarks;
    judgeBridge("ok      OSC: 0.0.0.0, port 9000\n", remarks);
    EXPECT_TRUE(says(remarks, Grade::FINE, "velmora-control", "finds all that its map asks for"));
    Remarks silent;
    judgeBridge("", silent);
    EXPECT_EQ(silent.worstFirst().size(), 0U);
}

}  // namespace
}  // namespace doctor
