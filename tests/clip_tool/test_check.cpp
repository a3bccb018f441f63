// The user's files read twice, what is found in them, and a whole set.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "clip_tool/pictures.h"
#include "files/preferences.h"
#include "pure/vectors.h"
#include "support/folder.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/reports/check_files.h"
#include "tools/clip/reports/check_set.h"
#include "tools/clip/reports/memory_room.h"

namespace {

namespace fs = std::filesystem;
using maker::Finding;

const std::string kStart = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";

void write(const fs::path& path, const std::string& text) {
    if (path.has_parent_path()) {
        fs::create_directories(path.parent_path());
    }
    std::ofstream(path, std::ios::binary) << text;
}

std::string playlistText(const std::string& name, const std::vector<std::string>& tracks) {
    std::string text = "\t<playlist>\n\t\t<name>" + name + "</name>\n";
    for (const std::string& track : tracks) {
        text += "\t\t<track>" + track + "</track>\n";
    }
    return text + "\t</playlist>\n";
}

class UserFiles : public testing::Test {
protected:
    // The findings in a playlists file of this inside.
    std::vector<Finding> playlists(const std::string& inside) {
        write("p.xml", kStart + inside + "</all>\n");
        maker::Findings findings;
        maker::checkPlaylistsFile(maker::readPlaylists("p.xml"), findings);
        return findings.all();
    }
    std::vector<Finding> prefs(const std::string& inside) {
        write("f.xml", kStart + inside + "</all>\n");
        maker::Findings findings;
        maker::checkPrefsFile(maker::readElements("f.xml", files::kPreferenceElements), findings);
        return findings.all();
    }
    std::vector<Finding> controller(const std::string& inside) {
        write("c.xml", kStart + inside + "</all>\n");
        maker::Findings findings;
        maker::checkControllerFile(maker::readElements("c.xml", files::kControllerElements),
                                   findings);
        return findings.all();
    }
    TemporaryFolder folder_;
};

// Everything that the program's reader makes of the files, misreadings included.
TEST_F(UserFiles, EveryKnownPlaylistsFile_IsReadAsTheProgramReadsIt) {
    int compared = 0;
    for (const nlohmann::json& vector : vectors::lines(TEST_DATA "/xml/playlists.jsonl")) {
        if (vector.at("file").is_null()) {
            continue;
        }
        std::string content =
            vectors::fileBytes(TEST_DATA "/xml/" + vector.at("file").get<std::string>());
        content.resize(vector.value("truncate", content.size()));
        write("p.xml", content);
        const std::vector<maker::PlaylistText> read = maker::readPlaylists("p.xml").read;
        size_t index = 0;
        for (const nlohmann::json& family : vector.at("expect").at("families")) {
            for (int times = family.value("times", 1); times > 0; --times, ++index) {
                ASSERT_LT(index, read.size()) << vector.at("id");
                EXPECT_EQ(read[index].name, vectors::bytesOf(family.at("name")));
                ASSERT_EQ(read[index].tracks.size(), family.at("tracks").size());
                for (size_t t = 0; t < read[index].tracks.size(); ++t) {
                    EXPECT_EQ(read[index].tracks[t], vectors::bytesOf(family.at("tracks").at(t)));
                }
            }
        }
        EXPECT_EQ(index, read.size()) << vector.at("id");
        ++compared;
    }
    EXPECT_GT(compared, 40);
}

TEST_F(UserFiles, MissingFiles_AreNotThere) {
    EXPECT_FALSE(maker::readPlaylists("no.xml").there);
    EXPECT_FALSE(maker::readElements("no.xml", files::kPreferenceElements).there);
    EXPECT_FALSE(maker::readPlaylists(".").there);
    maker::Findings findings;
    maker::checkPlaylistsFile({}, findings);
    EXPECT_EQ(findings.problems(), 1);
    maker::checkPrefsFile({}, findings);
    maker::checkControllerFile({}, findings);
    EXPECT_EQ(findings.problems(), 1);
    EXPECT_EQ(findings.all().size(), 3u);
}

TEST_F(UserFiles, PlaylistsAsTheProgramWritesThem_AreInOrder) {
    EXPECT_TRUE(playlists(playlistText("one", {"a.m19", "b c & d.m19"}) +
                          playlistText("two", {"sub/c.m19"}))
                    .empty());
}

TEST_F(UserFiles, NameOf93Characters_IsCut) {
    const std::string name(93, 'n');
    const std::vector<Finding> found = playlists(playlistText(name, {"a.m19"}));
    ASSERT_FALSE(found.empty());
    EXPECT_TRUE(found[0].problem);
    EXPECT_EQ(found[0].text, "the name of playlist 1 is read as '" + name.substr(1) +
                                 "', not as '" + name + "' (cut after 92 characters)");
}

TEST_F(UserFiles, Entities_AreMisread) {
    const std::vector<Finding> found = playlists(playlistText("rock &amp; roll", {"a.m19"}));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].text,
              "the name of playlist 1 is read as 'rock &amp; roll', not as 'rock & roll' (entities "
              "such as &amp; are not understood)");
}

TEST_F(UserFiles, TrackInAComment_IsReadAllTheSame) {
    const std::vector<Finding> found = playlists(
        "<playlist><name>a</name><!-- <track>x.m19</track> --><track>y.m19</track>"
        "</playlist>");
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].text, "has 1 track, but 2 are read");
    EXPECT_EQ(found[1].text, "track 1 is read as 'x.m19', not as 'y.m19'");
}

TEST_F(UserFiles, FiftyTwoTracks_AreTooMany) {
    const std::vector<Finding> found =
        playlists(playlistText("long", std::vector<std::string>(52, "a.m19")));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].text, "has 52 tracks, of which only the first 51 are read");
    EXPECT_FALSE(found[1].problem);
    EXPECT_NE(found[1].text.find("at most 49"), std::string::npos);
}

TEST_F(UserFiles, FiftyOnePlaylists_AreTooMany) {
    std::string inside;
    for (int i = 0; i < 51; ++i) {
        inside += playlistText("p", {"a.m19"});
    }
    const std::vector<Finding> found = playlists(inside);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].text, "holds 51 playlists, of which only the first 50 are read");
}

TEST_F(UserFiles, PlaylistsWithoutContent_AreProblems) {
    EXPECT_EQ(playlists("").at(0).text, "holds no playlists: there is nothing to play");
    EXPECT_EQ(playlists(playlistText("void", {})).at(0).text,
              "has no tracks: the stage stays black");
}

TEST_F(UserFiles, BrokenXml_IsComparedByItsPlainTags) {
    const std::vector<Finding> found = playlists(playlistText("a < b", {"I <3 U.m19"}));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_FALSE(found[0].problem);
    EXPECT_EQ(found[0].text.rfind("is no well-formed XML: ", 0), 0u) << found[0].text;
}

const std::string kFilters =
    "<filter>1</filter><filter>2</filter><filter>3</filter><filter>4</filter><filter>5</filter>"
    "<filter>6</filter><filter>7</filter><filter>8</filter><filter>9</filter>";

std::string prefsText(const std::string& topbar, const std::string& fps, const std::string& width,
                      const std::string& height) {
    return "<mode>0</mode><topbar>" + topbar + "</topbar><fps>" + fps + "</fps><res_w>" + width +
           "</res_w><res_h>" + height + "</res_h>";
}

TEST_F(UserFiles, Preferences_InOrderHaveNoFindings) {
    EXPECT_TRUE(prefs(prefsText("0", "1", "1280", "720") + kFilters).empty());
    EXPECT_TRUE(prefs(prefsText("0", "1", "1024", "768") + kFilters).empty());
}

TEST_F(UserFiles, IgnoredPreferences_AreProblems) {
    const std::vector<Finding> found = prefs(prefsText("yes", "2", "640", "wide") + kFilters);
    ASSERT_EQ(found.size(), 4u);
    EXPECT_EQ(found[0].text, "<topbar> holds 'yes', which is ignored: only 0 and 1 count");
    EXPECT_EQ(found[1].text, "<fps> holds '2', which is ignored: only 0 and 1 count");
    EXPECT_EQ(found[2].text, "<res_w> holds '640', which is ignored: less than 800");
    EXPECT_EQ(found[3].text, "<res_h> holds 'wide', which is ignored: less than 600");
    for (const Finding& finding : found) {
        EXPECT_TRUE(finding.problem);
        EXPECT_EQ(finding.where, "userdata/prefs.xml");
    }
}

TEST_F(UserFiles, OtherResolution_IsANote) {
    const std::vector<Finding> found = prefs(prefsText("0", "0", "1920", "1080") + kFilters);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_FALSE(found[0].problem);
}

TEST_F(UserFiles, FiltersThatAreNone_AreProblems) {
    std::string filters = kFilters;
    filters.replace(filters.find(">2<"), 3, ">zoom<");
    filters.replace(filters.find(">3<"), 3, ">10<");
    const std::vector<Finding> found = prefs(prefsText("0", "0", "1280", "720") + filters);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].text,
              "filter 2 is 'zoom', which is no number: it counts as its beginning or 0");
    EXPECT_EQ(found[1].text, "filter 3 is 10, which is no filter: the slot does nothing");
}

TEST_F(UserFiles, ShuffledPreferences_AreMisread) {
    const std::vector<Finding> found =
        prefs("<mode>0</mode><fps>1</fps><topbar>1</topbar><res_w>1280</res_w><res_h>720</res_h>" +
              kFilters);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_TRUE(found[0].problem);
    EXPECT_EQ(found[0].text.rfind("<fps> is read as ", 0), 0u) << found[0].text;
}

TEST_F(UserFiles, MissingPreference_IsNamed) {
    const std::vector<Finding> found =
        prefs("<mode>0</mode><fps>1</fps><res_w>1280</res_w><res_h>720</res_h>" + kFilters);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].text.rfind("<topbar> is missing; ", 0), 0u) << found[0].text;
}

std::string buttons(const std::vector<std::string>& values) {
    std::string text;
    for (const std::string& value : values) {
        text += "\t<button>" + value + "</button>\n";
    }
    return text;
}

TEST_F(UserFiles, Controller_MayHaveUnassignedButtons) {
    EXPECT_TRUE(controller(buttons({"11", "14", "12", "13", "3", "1", "0", "2", "9", "10", "7", "8",
                                    "99", "99"}))
                    .empty());
}

TEST_F(UserFiles, ControllerOddities_AreFound) {
    const std::vector<Finding> found = controller(
        buttons({"1", "2", "start", "-1", "5", "6", "2", "8", "9", "10", "11", "12", "13", "14"}));
    ASSERT_EQ(found.size(), 3u);
    EXPECT_EQ(found[0].text,
              "button 3 is 'start', which is no number: it counts as its beginning or 0");
    EXPECT_EQ(found[1].text, "button 4 is -1: it does nothing");
    EXPECT_EQ(found[2].text, "buttons 2 and 7 are both 2");
    EXPECT_FALSE(found[2].problem);
}

TEST_F(UserFiles, TooFewButtons_AreAProblem) {
    const std::vector<Finding> found = controller(buttons({"1", "2", "3"}));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].text.rfind("button 4 is missing; ", 0), 0u);
}

maker::TrackReport track(int steps, int stepsAsFirst, size_t buffers) {
    maker::TrackReport track;
    track.there = true;
    track.clip.verdict.ok = true;
    track.clip.cost.steps = steps;
    track.clip.cost.stepsAsFirst = stepsAsFirst;
    track.clip.cost.memory = maker::slotBytes() + buffers;
    return track;
}

// The missing file takes one frame, the first that loads is the first clip.
TEST(CheckSet, Loading_IsOneClipAfterTheOther) {
    maker::PlaylistReport playlist;
    playlist.tracks = {maker::TrackReport{}, track(100, 10, 7), track(200, 20, 5)};
    maker::addLoading(playlist);
    EXPECT_EQ(playlist.ready, 2);
    EXPECT_DOUBLE_EQ(playlist.firstSeconds, 11 * 0.039);
    EXPECT_DOUBLE_EQ(playlist.seconds, 211 * 0.039);
    EXPECT_EQ(playlist.memory, 50 * maker::slotBytes() + 12);
}

TEST(CheckSet, FiftiethClip_EndsTheLoading) {
    maker::PlaylistReport playlist;
    playlist.tracks.assign(51, track(10, 4, 1));
    maker::addLoading(playlist);
    EXPECT_EQ(playlist.ready, 50);
    EXPECT_DOUBLE_EQ(playlist.seconds, (4 + 49 * 10) * 0.039);
    EXPECT_EQ(playlist.memory, 50 * maker::slotBytes() + 50);
}

// A missing file takes no memory; a clip that fits to the byte fits.
TEST(CheckSet, FirstBeyond_IsTheTrackThatPassesTheRoom) {
    maker::PlaylistReport playlist;
    playlist.tracks = {maker::TrackReport{}, track(1, 1, 7), track(1, 1, 5)};
    const size_t slots = 50 * maker::slotBytes();
    EXPECT_EQ(maker::firstBeyond(playlist, slots + 12), std::nullopt);
    EXPECT_EQ(maker::firstBeyond(playlist, slots + 11), 2u);
    EXPECT_EQ(maker::firstBeyond(playlist, slots + 6), 1u);
    playlist.tracks.assign(51, track(1, 1, 1));
    EXPECT_EQ(maker::firstBeyond(playlist, slots + 50), std::nullopt);
}

// What was free on the card for the Raspberry Pi in an emulated machine, before the program starts.
TEST(CheckSet, RoomOnMachine_IsNoMoreThanWhatTheLauncherLeavesThere) {
    constexpr size_t kMb = maker::kMebibyte;
    for (const auto& [machine, free] : {std::pair{512, 406}, {1024, 843}, {2048, 1851}}) {
        const size_t room = maker::roomOnMachine(static_cast<size_t>(machine) * kMb);
        EXPECT_LE(room, maker::roomForClips(static_cast<size_t>(free) * kMb)) << machine;
        EXPECT_GT(room, static_cast<size_t>(free - 100) * kMb) << machine;
    }
}

class Set : public testing::Test {
protected:
    Set() {
        write("userdata/prefs.xml",
              kStart + prefsText("0", "0", "1280", "720") + kFilters + "</all>\n");
        write("userdata/gamecontroller.xml",
              kStart + buttons(std::vector<std::string>(14, "99")) + "</all>\n");
        fs::create_directories("videos/sub");
        const std::vector<uint8_t> clip = pictures::encode({pictures::flat(360, 3)});
        maker::writeWholeFile("videos/a.m19", clip);
        maker::writeWholeFile("videos/sub/b.m19", clip);
    }
    void setPlaylists(const std::string& inside) {
        write("userdata/playlists.xml", kStart + inside + "</all>\n");
    }
    TemporaryFolder folder_;
};

TEST_F(Set, GoodSet_HasNoFindings) {
    setPlaylists(playlistText("one", {"a.m19", "sub/b.m19"}));
    const maker::SetReport report = maker::checkSet(".");
    EXPECT_TRUE(report.findings.all().empty());
    ASSERT_EQ(report.playlists.size(), 1u);
    EXPECT_EQ(report.playlists[0].ready, 2);
    EXPECT_DOUBLE_EQ(report.playlists[0].seconds, 8 * 0.039);
    EXPECT_EQ(maker::asText(report).substr(0, 72),
              "Playlists\n  one: 2 tracks; the first after 0.2 s, all after 0.3 s; 93 MB");
    const nlohmann::json json = nlohmann::json::parse(maker::asJson(".", report));
    EXPECT_EQ(json.at("ok"), true);
    EXPECT_EQ(json.at("playlists").at(0).at("tracks").at(1).at("path"), "sub/b.m19");
}

TEST_F(Set, MachineTooSmall_IsAProblemWithTheTrack) {
    setPlaylists(playlistText("one", {"gone.m19", "a.m19"}));
    maker::SetReport report = maker::checkSet(".", size_t{512} << 20);
    ASSERT_EQ(report.findings.problems(), 1);  // the clip that is gone
    EXPECT_NE(maker::asText(report).find("93 MB of memory; fits\n"), std::string::npos);
    report = maker::checkSet(".", size_t{256} << 20);
    EXPECT_EQ(report.findings.problems(), 2);
    EXPECT_NE(maker::asText(report).find("; does not fit\n"), std::string::npos);
    // 256 MiB without 122 for the system, 24 for the program and 32 that stay free.
    EXPECT_NE(maker::asText(report).find(
                  "  one: track 2, 'a.m19', is the first that does not fit: the playlist takes " +
                  maker::megabytes(report.playlists[0].memory, 1) +
                  ", and that machine has 81.8 MB for clips\n"),
              std::string::npos)
        << maker::asText(report);
    const nlohmann::json json = nlohmann::json::parse(maker::asJson(".", report));
    EXPECT_EQ(json.at("playlists").at(0).at("fits"), false);
}

TEST_F(Set, MissingAndBrokenClips_AreProblems) {
    write("videos/bad.m19", "\x13 and no more");
    setPlaylists(playlistText("one", {"no.m19", "A.m19", "bad.m19", "a.m19", "sub", "no.m19"}));
    const maker::SetReport report = maker::checkSet(".");
    const std::vector<Finding>& found = report.findings.all();
    ASSERT_EQ(found.size(), 5u);
    EXPECT_EQ(found[0].where, "one");
    EXPECT_EQ(found[0].text, "'no.m19' is missing");
    EXPECT_EQ(found[1].text, "'A.m19' is missing; there is 'a.m19'");
    EXPECT_EQ(found[2].text.rfind("'bad.m19' is broken in the file header", 0), 0u);
    EXPECT_EQ(found[3].text, "'sub' is missing");
    EXPECT_EQ(found[4].where, "videos/sub/b.m19");
    EXPECT_EQ(found[4].text, "no playlist names it");
    EXPECT_EQ(report.findings.problems(), 4);
    EXPECT_EQ(report.unnamed, std::vector<std::string>{"sub/b.m19"});
    EXPECT_EQ(report.playlists[0].ready, 1);
    EXPECT_NE(maker::asText(report).find("\n4 problems, 1 note.\n"), std::string::npos);
}

// One clip that cannot be read is one problem; the rest is checked all the same.
TEST_F(Set, ClipThatCannotBeRead_IsOneProblem) {
    write("videos/huge.m19", "");
    fs::resize_file("videos/huge.m19", size_t{300} << 20);
    setPlaylists(playlistText("one", {"huge.m19", "a.m19"}));
    const maker::SetReport report = maker::checkSet(".");
    ASSERT_EQ(report.findings.all().size(), 2u);
    EXPECT_EQ(report.findings.all()[0].where, "one");
    EXPECT_EQ(report.findings.all()[0].text,
              "cannot read ./videos/huge.m19: it is larger than any clip");
    EXPECT_EQ(report.findings.all()[1].text, "no playlist names it");
    const nlohmann::json json = nlohmann::json::parse(maker::asJson(".", report));
    EXPECT_EQ(json.at("playlists").at(0).at("tracks").at(0).at("verdict"),
              "cannot read ./videos/huge.m19: it is larger than any clip");
}

TEST_F(Set, OlderClips_AreNoted) {
    write("videos/old.m17", "x");
    setPlaylists(playlistText("one", {"a.m19", "sub/b.m19"}));
    const maker::SetReport report = maker::checkSet(".");
    ASSERT_EQ(report.findings.all().size(), 1u);
    EXPECT_EQ(report.findings.all()[0].text, "is of an older version, which does not play");
}

// The last 2 x height - 360 lines show, which are none up to 180 lines.
TEST_F(Set, LowClips_AreNoted) {
    for (const int height : {8, 176, 184, 352}) {
        maker::writeWholeFile("videos/" + std::to_string(height) + ".m19",
                              pictures::encode({pictures::flat(height, 3)}));
    }
    setPlaylists(playlistText("one", {"8.m19", "176.m19", "184.m19", "352.m19", "8.m19"}) +
                 playlistText("two", {"a.m19", "sub/b.m19", "184.m19"}));
    const maker::SetReport report = maker::checkSet(".");
    const std::vector<Finding>& found = report.findings.all();
    ASSERT_EQ(found.size(), 5u);
    EXPECT_EQ(report.findings.problems(), 0);
    const std::string tail = " lines high, not 360: on the top layer ";
    EXPECT_EQ(found[0].where, "one");
    EXPECT_EQ(found[0].text, "'8.m19' is 8" + tail + "nothing of it shows");
    EXPECT_EQ(found[1].text, "'176.m19' is 176" + tail + "nothing of it shows");
    EXPECT_EQ(found[2].text, "'184.m19' is 184" + tail + "only its last 8 lines show");
    EXPECT_EQ(found[3].text, "'352.m19' is 352" + tail + "only its last 344 lines show");
    EXPECT_EQ(found[4].where, "two");
    EXPECT_EQ(found[4].text, found[2].text);
}

// The end of the file is gone: the program reads 50 playlists, most of them nothing.
TEST_F(Set, CutPlaylistsFile_IsOneProblemAndNotFifty) {
    write("userdata/playlists.xml", kStart + playlistText("one", {"a.m19", "sub/b.m19"}));
    const maker::SetReport report = maker::checkSet(".");
    EXPECT_EQ(report.findings.problems(), 1);
    EXPECT_EQ(report.playlists.size(), 1u);
}

TEST_F(Set, NoFolder_IsAnError) {
    EXPECT_THROW(maker::checkSet("none"), maker::ToolError);
}

TEST_F(Set, EmptyFolder_HasProblemsAndNoCrash) {
    fs::create_directory("empty");
    const maker::SetReport report = maker::checkSet("empty");
    EXPECT_EQ(report.findings.problems(), 2);
    EXPECT_TRUE(report.playlists.empty());
}

}  // namespace
