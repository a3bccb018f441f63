// playlists.xml: what is read, what is written, and what happens when either fails.
#include <sys/stat.h>

#include "state/stage.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kUserFile = "userdata/playlists.xml";
constexpr const char* kHead = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";

std::string famille(const std::string& name, int tracks) {
    std::string text = "\t<playlist>\n\t\t<name>" + name + "</name>\n";
    for (int t = 0; t < tracks; ++t) {
        text += numbered("\t\t<track>t", t) + ".m19</track>\n";
    }
    return text + "\t</playlist>\n";
}

void read(const std::string& body) {
    writeFile(kUserFile, kHead + body);
    EXPECT_EQ(printedBy([] { playlist->lireXML(); }), "");
}

class PlaylistXml : public StageTest {};

TEST_F(PlaylistXml, NoFile_MessageAndNothing) {
    addFamille("old", {"a.m19", "b.m19"});
    playlist->familles[50].nbTracks = 3;
    EXPECT_EQ(printedBy([] { playlist->lireXML(); }), "can't find playlists XML file\n");
    EXPECT_EQ(playlist->nbFamilles, 0);
    EXPECT_EQ(playlist->familles[0].nbTracks, 0);
    EXPECT_EQ(playlist->file, nullptr);
}

TEST_F(PlaylistXml, EmptyRoot_NoFamilles) {
    addFamille("old");
    read("</all>\n");
    EXPECT_EQ(playlist->nbFamilles, 0);
    EXPECT_EQ(playlist->file, nullptr);
}

TEST_F(PlaylistXml, FamilleWithoutTracks_ReadAndWrittenAsItsName) {
    read(famille("bare", 0) + "</all>\n");
    EXPECT_EQ(familleNames(), (std::vector<std::string>{"bare"}));
    EXPECT_EQ(playlist->familles[0].nbTracks, 0);
    fs::remove(kUserFile);
    playlist->saveXML();
    EXPECT_EQ(readFile(kUserFile), std::string(kHead) +
                                       "\t<playlist>\n\t\t<name>bare</name>\n\t</playlist>\n"
                                       "</all>\n");
}

TEST_F(PlaylistXml, quirk_unclosed_playlist_is_dropped) {
    read(famille("whole", 2) + "\t<playlist>\n\t\t<name>open</name>\n\t\t<track>a.m19</track>\n" +
         "</all>\n");
    EXPECT_EQ(familleNames(), (std::vector<std::string>{"whole"}));
    EXPECT_EQ(playlist->familles[1].nbTracks, 0);
}

TEST_F(PlaylistXml, UnclosedWithoutName_NotCounted) {
    read("\t<playlist>\n</all>\n");
    EXPECT_EQ(playlist->nbFamilles, 0);
}

TEST_F(PlaylistXml, MoreThan50Familles_First50) {
    std::string body;
    for (int f = 0; f < 53; ++f) {
        body += famille(numbered("f", f), 1);
    }
    read(body + "</all>\n");
    ASSERT_EQ(playlist->nbFamilles, 50);
    EXPECT_EQ(playlist->familles[0].name, "f0");
    EXPECT_EQ(playlist->familles[49].name, "f49");
    EXPECT_EQ(playlist->familles[49].nbTracks, 1);
}

TEST_F(PlaylistXml, FiftyOneTracks_ReadWhole) {
    read(famille("long", 51) + famille("next", 1) + "</all>\n");
    ASSERT_EQ(playlist->nbFamilles, 2);
    EXPECT_EQ(playlist->familles[0].nbTracks, 51);
    EXPECT_EQ(playlist->familles[0].tracks[50].path, "t50.m19");
    EXPECT_EQ(playlist->familles[1].name, "next");
}

// The 52nd track is read and dropped, so "</playlist>" is still ahead when the next famille is
// looked for; the famille's name is found all the same.
TEST_F(PlaylistXml, FiftyTwoTracks_LastReadAndIgnored) {
    read(famille("long", 52) + famille("next", 1) + "</all>\n");
    ASSERT_EQ(playlist->nbFamilles, 2);
    EXPECT_EQ(playlist->familles[0].nbTracks, 51);
    EXPECT_EQ(playlist->familles[0].tracks[50].path, "t50.m19");
    EXPECT_EQ(playlist->familles[1].name, "next");
    EXPECT_EQ(playlist->familles[1].nbTracks, 1);
}

// A famille of so many tracks and one more whose text holds a famille of its own: that one is found
// only when the track is not read as such.
std::string famillesRead(int tracks) {
    std::string body = famille("long", tracks);
    const size_t end = body.rfind("\t</playlist>");
    body.insert(end, "\t\t<track><playlist><name>inner</name></track>\n");
    read(body + "</all>\n");
    std::string names;
    for (const std::string& name : familleNames()) {
        names += name + " ";
    }
    return names;
}

// 51 track slots, 52 tracks read, 50 clip slots, 49 tracks that the editor lets a playlist grow to.
TEST_F(PlaylistXml, quirk_track_limits_differ) {
    EXPECT_EQ(famillesRead(51), "long ");
    EXPECT_EQ(famillesRead(52), "long inner ");
    EXPECT_EQ(playlist->familles[0].nbTracks, 51);
    EXPECT_EQ(std::size(playlist->familles[0].tracks), 51u);
    EXPECT_EQ(kClipSlots, 50);
    EXPECT_EQ(kEditorTracks, 49);
}

TEST_F(PlaylistXml, SaveThenRead_SameNamesAndTracksInOrder) {
    addFamille("one", {"a.m19", "folder/b.m19"});
    addFamille("two");
    addFamille("three", {"c.m19"});
    playlist->saveXML();
    playlist->nbFamilles = 0;
    playlist->lireXML();
    EXPECT_EQ(familleNames(), (std::vector<std::string>{"one", "two", "three"}));
    ASSERT_EQ(playlist->familles[0].nbTracks, 2);
    EXPECT_EQ(playlist->familles[0].tracks[0].path, "a.m19");
    EXPECT_EQ(playlist->familles[0].tracks[1].path, "folder/b.m19");
    EXPECT_EQ(playlist->familles[1].nbTracks, 0);
    ASSERT_EQ(playlist->familles[2].nbTracks, 1);
    EXPECT_EQ(playlist->familles[2].tracks[0].path, "c.m19");
}

TEST_F(PlaylistXml, Texts_AreWrittenByteForByte) {
    const std::string odd = "100% %s %n & <b> \xE9\xFF";
    addFamille(odd, {"%d/" + odd});
    EXPECT_EQ(printedBy([] { playlist->saveXML(); }), "");
    EXPECT_EQ(readFile(kUserFile), kHead + ("\t<playlist>\n\t\t<name>" + odd) +
                                       "</name>\n\t\t<track>%d/" + odd +
                                       "</track>\n\t</playlist>\n</all>\n");
}

TEST_F(PlaylistXml, NoFamilles_EmptyRoot) {
    playlist->saveXML();
    EXPECT_EQ(readFile(kUserFile), std::string(kHead) + "</all>\n");
}

TEST_F(PlaylistXml, SaveWithoutUserdata_MakesTheFolder) {
    ASSERT_FALSE(fs::exists("userdata"));
    addFamille("new");
    EXPECT_EQ(printedBy([] { playlist->saveXML(); }), "");
    EXPECT_TRUE(fs::exists(kUserFile));
}

TEST_F(PlaylistXml, Save_LeavesNoTemporary) {
    playlist->saveXML();
    playlist->saveXML();
    const fs::directory_iterator files("userdata");
    EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

// The temporary file cannot be made: its name is taken by a folder.
TEST_F(PlaylistXml, SaveFails_OldFileStaysAndOneLineSaysSo) {
    writeFile(kUserFile, "old content");
    fs::create_directory(std::string(kUserFile) + ".tmp");
    addFamille("new");
    EXPECT_EQ(printedBy([] { playlist->saveXML(); }),
              "Could not save " + playlist->baseDir + "/userdata/playlists.xml\n");
    EXPECT_EQ(readFile(kUserFile), "old content");
}

// A folder in its place, a pipe that nobody writes into, links that lead round.
TEST_F(PlaylistXml, FileThatCannotBeRead_NothingHeldAndNeverWrittenOver) {
    const std::string refused = "Could not save " + playlist->baseDir + "/userdata/playlists.xml\n";
    fs::create_directory("userdata");
    const std::function<void()> obstacles[] = {
        [] { fs::create_directory(kUserFile); },
        [] { ASSERT_EQ(mkfifo(kUserFile, 0600), 0); },
        [] { fs::create_symlink("playlists.xml", kUserFile); },
    };
    for (const auto& makeObstacle : obstacles) {
        fs::remove(kUserFile);
        makeObstacle();
        const fs::file_type type = fs::symlink_status(kUserFile).type();
        playlist->userFile = {};
        addFamille("old", {"a.m19"});
        EXPECT_EQ(printedBy([] { playlist->lireXML(); }), "can't find playlists XML file\n");
        EXPECT_EQ(playlist->nbFamilles, 0);
        EXPECT_EQ(playlist->familles[0].nbTracks, 0);
        EXPECT_EQ(playlist->file, nullptr);
        playlist->newName = "new";
        EXPECT_EQ(printedBy([] { EXPECT_FALSE(playlist->createNewFamille()); }), refused);
        EXPECT_EQ(printedBy([] { EXPECT_FALSE(playlist->saveFamille()); }), refused);
        EXPECT_EQ(fs::symlink_status(kUserFile).type(), type);
    }
    // Put right meanwhile: what is in memory still does not come from it.
    fs::remove(kUserFile);
    writeFile(kUserFile, "mine");
    EXPECT_EQ(printedBy([] { EXPECT_FALSE(playlist->saveXML()); }), refused);
    EXPECT_EQ(readFile(kUserFile), "mine");
}

TEST_F(PlaylistXml, LinkedFile_IsReadAndReplacedBehindTheLink) {
    writeFile("far/real.xml", kHead + famille("far", 1) + "</all>\n");
    fs::create_directory("userdata");
    fs::create_symlink("../far/real.xml", kUserFile);
    playlist->lireXML();
    EXPECT_EQ(familleNames(), (std::vector<std::string>{"far"}));
    playlist->familles[0].name = "near";
    EXPECT_TRUE(playlist->saveXML());
    EXPECT_TRUE(fs::is_symlink(kUserFile));
    EXPECT_EQ(readFile("far/real.xml"), kHead + famille("near", 1) + "</all>\n");
}

TEST_F(PlaylistXml, ZeroAndFFInTheFile_AreReadAsTheyAre) {
    const std::string odd = std::string("a\0b", 3) + "\xFF\n";
    read(famille(odd, 1) + "</all>\n");
    EXPECT_EQ(familleNames(), (std::vector<std::string>{odd}));
}

TEST_F(PlaylistXml, quirk_read_path_is_relative_write_path_is_not) {
    fs::create_directory("elsewhere");
    fs::current_path("elsewhere");
    addFamille("saved");
    playlist->saveXML();
    EXPECT_FALSE(fs::exists(kUserFile));
    EXPECT_EQ(printedBy([] { playlist->lireXML(); }), "can't find playlists XML file\n");
    fs::current_path("..");
    playlist->lireXML();
    EXPECT_EQ(familleNames(), (std::vector<std::string>{"saved"}));
}

TEST_F(PlaylistXml, ReaderOperations_WorkOnTheOpenFile) {
    writeFile("part.xml", "\n\t<playlist>\n\t\t<name>one</name>\n\t</playlist>\n");
    playlist->file = fopen("part.xml", "r");
    ASSERT_NE(playlist->file, nullptr);
    EXPECT_EQ(playlist->finLigne(), '\n');
    EXPECT_EQ(playlist->lireMot("<playlist>"), "");
    EXPECT_EQ(playlist->lireNoeud("name"), "one");
    EXPECT_EQ(playlist->lireNoeud("track"), "</playlist>");
    fclose(playlist->file);
    playlist->file = nullptr;
}

TEST_F(PlaylistXml, RecordPastTheLast_HasNoTracks) {
    addFamille("one", {"a.m19"});
    addFamille("two", {"a.m19", "b.m19"});
    read(famille("only", 1) + "</all>\n");
    EXPECT_EQ(playlist->nbFamilles, 1);
    EXPECT_EQ(playlist->familles[1].nbTracks, 0);
}

}  // namespace
