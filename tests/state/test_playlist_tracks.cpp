// Tracks added, removed and moved, and the file explorer.
#include "pure/vectors.h"
#include "state/stage.h"

namespace {

using nlohmann::json;

class Tracks : public StageTest {
protected:
    static std::vector<std::string> paths(int famille = 0) {
        std::vector<std::string> result;
        for (int t = 0; t < playlist->familles[famille].nbTracks; ++t) {
            result.push_back(playlist->familles[famille].tracks[t].path);
        }
        return result;
    }
    static void browse(const std::string& folder) {
        playlist->baseDir = "/home/pi/velmora";
        playlist->browseDir = "/home/pi/velmora/videos" + folder;
    }
};

void run(const json& op) {
    const std::string name = op.at("op");
    if (name == "addTrack") {
        playlist->addTrack(vectors::bytesOf(op.at("file")), 0, op.at("pos"));
    } else if (name == "removeTrack") {
        playlist->removeTrack(0, op.at("pos"));
    } else {
        ASSERT_EQ(name, "moveTrack");
        playlist->moveTrack(op.at("from"), op.at("to"));
    }
}

TEST_F(Tracks, Vectors_EveryOperationGivesTheListedTracks) {
    int tests = 0;
    for (const json& vector : vectors::lines(TEST_DATA "/xml/tracks.jsonl")) {
        SCOPED_TRACE(vector.at("id").get<std::string>());
        playlist->nbFamilles = 0;
        addFamille("edited", vector.at("tracks"));
        playlist->editFamille = 0;
        for (int t = 0; t < playlist->familles[0].nbTracks; ++t) {
            const json flags = vector.value("missing", json::array());
            const auto at = static_cast<size_t>(t);
            playlist->familles[0].tracks[t].missing = at < flags.size() ? flags[at].get<int>() : 0;
        }
        playlist->baseDir = vector.at("baseDir");
        playlist->browseDir = vector.at("browseDir");
        playlist->initScroll(0, playlist->familles[0].nbTracks);
        playlist->scroll[0].pos = vector.at("scrollPos");
        for (const json& op : vector.at("ops")) {
            SCOPED_TRACE(op.dump());
            run(op);
            const json& expected = op.at("expect");
            EXPECT_EQ(paths(), expected.at("tracks").get<std::vector<std::string>>());
            const ScrollBar& bar = playlist->scroll[0];
            EXPECT_EQ(bar.pos, expected.at("scroll").at("pos").get<int>());
            EXPECT_EQ(bar.maxPos, expected.at("scroll").at("maxPos").get<int>());
            EXPECT_EQ(bar.count, expected.at("scroll").at("count").get<int>());
            EXPECT_EQ(bar.thumb, expected.at("scroll").at("thumb").get<int>());
            const json flags = expected.value("missing", json::array());
            for (size_t t = 0; t < flags.size(); ++t) {
                EXPECT_EQ(playlist->familles[0].tracks[t].missing, flags[t].get<int>()) << t;
            }
        }
        ++tests;
    }
    EXPECT_EQ(tests, 46);
}

TEST_F(Tracks, FromASubFolder_AreStoredWithIt) {
    addFamille("set");
    browse("/live");
    playlist->addTrack("a.m19", 0, 0);
    browse("");
    playlist->addTrack("b.m19", 0, 1);
    EXPECT_EQ(paths(), (std::vector<std::string>{"live/a.m19", "b.m19"}));
}

TEST_F(Tracks, PastTheEnd_Append) {
    addFamille("set", {"a", "b"});
    browse("");
    playlist->addTrack("c.m19", 0, 40);
    EXPECT_EQ(paths(), (std::vector<std::string>{"a", "b", "c.m19"}));
}

TEST_F(Tracks, MoveDownAndUp_EndBeforeTheRowAndAtIt) {
    addFamille("set", {"A", "B", "C"});
    playlist->editFamille = 0;
    playlist->moveTrack(0, 2);
    EXPECT_EQ(paths(), (std::vector<std::string>{"B", "A", "C"}));
    playlist->moveTrack(2, 0);
    EXPECT_EQ(paths(), (std::vector<std::string>{"C", "B", "A"}));
}

TEST_F(Tracks, MoveRow2ToRow0_PutsItFirst) {
    addFamille("set", {"A", "B", "C"});
    playlist->editFamille = 0;
    playlist->moveTrack(2, 0);
    EXPECT_EQ(paths(), (std::vector<std::string>{"C", "A", "B"}));
}

TEST_F(Tracks, OfPlaylistsThatDoNotExist_DoNothing) {
    addFamille("set", {"A", "B"});
    for (const int famille : {-1, 50, 51, 4000}) {
        playlist->addTrack("x.m19", famille, 0);
        playlist->removeTrack(famille, 0);
        playlist->editFamille = famille;
        playlist->moveTrack(0, 2);
    }
    EXPECT_EQ(paths(), (std::vector<std::string>{"A", "B"}));
}

TEST_F(Tracks, RemovingARowThatDoesNotExist_DoesNothing) {
    addFamille("set", {"A", "B"});
    for (const int row : {-1, 2, 3, 50, 1000}) {
        playlist->removeTrack(0, row);
        EXPECT_EQ(paths(), (std::vector<std::string>{"A", "B"})) << row;
    }
}

TEST_F(Tracks, The50thTrack_IsRefused) {
    addFamille("set", std::vector<std::string>(49, "x"));
    browse("");
    playlist->addTrack("one-more.m19", 0, 0);
    EXPECT_EQ(paths(), std::vector<std::string>(49, "x"));
}

TEST_F(Tracks, quirk_full_playlist_keeps_its_order) {
    std::vector<std::string> before;
    for (int t = 0; t < 49; ++t) {
        before.push_back(numbered("t", t));
    }
    addFamille("set", before);
    playlist->editFamille = 0;
    playlist->moveTrack(0, 9);
    EXPECT_EQ(paths(), before);
}

// A file may bring 50 and 51 tracks: one may still be added or moved with 50, none with 51.
TEST_F(Tracks, PastTheEditorsLimit_StayInsideTheRecord) {
    addFamille("set", std::vector<std::string>(50, "x"));
    browse("");
    playlist->editFamille = 0;
    playlist->familles[0].tracks[49].path = "last";
    playlist->moveTrack(49, 0);
    EXPECT_EQ(paths()[0], "last");
    playlist->addTrack("y.m19", 0, 50);
    EXPECT_EQ(paths().size(), 51u);
    playlist->addTrack("z.m19", 0, 0);
    playlist->moveTrack(50, 0);
    EXPECT_EQ(paths().size(), 51u);
    EXPECT_EQ(paths()[50], "y.m19");
}

class MissingMarks : public Tracks {
protected:
    MissingMarks() {
        addFamille("set", {"A", "gone", "B", "C", "lost"});
        playlist->familles[0].tracks[1].missing = 1;
        playlist->familles[0].tracks[4].missing = 1;
        playlist->familles[0].nbMissing = 2;
        playlist->editFamille = 0;
        browse("");
    }
    // The marked tracks, in order.
    static std::vector<std::string> marked() {
        std::vector<std::string> result;
        for (int t = 0; t < playlist->familles[0].nbTracks; ++t) {
            if (playlist->familles[0].tracks[t].missing != 0) {
                result.push_back(playlist->familles[0].tracks[t].path);
            }
        }
        EXPECT_EQ(playlist->familles[0].nbMissing, static_cast<int>(result.size()));
        return result;
    }
};

TEST_F(MissingMarks, AddedTrack_IsNotMarkedAndTheOthersKeepTheirs) {
    for (const int row : {0, 1, 2, 99}) {
        playlist->addTrack("new.m19", 0, row);
        EXPECT_EQ(marked(), (std::vector<std::string>{"gone", "lost"})) << row;
    }
    playlist->familles[0].nbTracks = 5;
    playlist->familles[0].tracks[5].missing = 1;
    playlist->addTrack("new.m19", 0, 5);
    EXPECT_EQ(playlist->familles[0].tracks[5].missing, 0) << "what an unused row held is forgotten";
}

TEST_F(MissingMarks, MovedTrack_TakesItsMarkAlong) {
    const struct {
        int from, to;
        std::vector<std::string> marks;
    } moves[] = {{1, 0, {"gone", "lost"}},
                 {4, 0, {"lost", "gone"}},
                 {0, 5, {"gone", "lost"}},
                 {2, 4, {"gone", "lost"}}};
    for (const auto& move : moves) {
        playlist->moveTrack(move.from, move.to);
        EXPECT_EQ(marked(), move.marks) << move.from << " to " << move.to;
    }
}

TEST_F(MissingMarks, RemovedTrack_IsNoLongerCounted) {
    playlist->removeTrack(0, 0);
    EXPECT_EQ(marked(), (std::vector<std::string>{"gone", "lost"}));
    playlist->removeTrack(0, 0);
    EXPECT_EQ(marked(), std::vector<std::string>{"lost"});
    playlist->removeTrack(0, 2);
    EXPECT_EQ(marked(), std::vector<std::string>{});
}

TEST_F(Tracks, ClipNames_EndInOneOfThreeExtensions) {
    for (const char* name : {"a.m17", "a.m18", "a.m19", ".m19", "x.y.m19"}) {
        EXPECT_TRUE(playlist->isFileMoxel(name)) << name;
    }
    for (const char* name : {"a.M19", "a.m20", "m19", "19", "", "a.m19 ", "a.mp4"}) {
        EXPECT_FALSE(playlist->isFileMoxel(name)) << name;
    }
}

TEST_F(Tracks, KeyboardTexts_AreLettersSignsDigitsAndTwoWords) {
    EXPECT_STREQ(playlist->edit_char(0), "a");
    EXPECT_STREQ(playlist->edit_char(25), "z");
    EXPECT_STREQ(playlist->edit_char(26), "_");
    EXPECT_STREQ(playlist->edit_char(27), "-");
    EXPECT_STREQ(playlist->edit_char(28), "+");
    EXPECT_STREQ(playlist->edit_char(29), "*");
    EXPECT_STREQ(playlist->edit_char(30), "0");
    EXPECT_STREQ(playlist->edit_char(39), "9");
    EXPECT_STREQ(playlist->edit_char(40), "Del");
    EXPECT_STREQ(playlist->edit_char(41), "OK");
    EXPECT_STREQ(playlist->edit_char(42), "");
    EXPECT_STREQ(playlist->edit_char(-1), "");
}

class Explorer : public StageTest {
protected:
    static std::vector<std::string> listing() {
        return {playlist->entries, playlist->entries + playlist->nbEntries};
    }
    static bool lists(const std::string& name) {
        const std::vector<std::string> rows = listing();
        return std::find(rows.begin(), rows.end(), name) != rows.end();
    }
};

TEST_F(Explorer, Root_HasNoWayUpAndBackFromBelowReturnsThere) {
    writeFile("videos/a.m19", "");
    writeFile("videos/live/b.m19", "");
    playlist->readDir("videos");
    EXPECT_FALSE(lists(".. back"));
    EXPECT_TRUE(lists("live"));
    playlist->readDir("live");
    EXPECT_EQ(listing(), (std::vector<std::string>{".. back", "b.m19"}));
    EXPECT_EQ(playlist->entryIsDir[0], 1);
    EXPECT_EQ(playlist->entryIsClip[0], 0);
    EXPECT_EQ(playlist->entryIsClip[1], 1);
    playlist->readDir(".. back");
    EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos");
    EXPECT_TRUE(lists("a.m19"));
    EXPECT_FALSE(lists(".. back"));
}

TEST_F(Explorer, Names_DecideWhatIsListed) {
    for (const char* name : {"a.m19", "._b.m19", "C.M19", "old.m17", "old.m18", "film.mp4"}) {
        writeFile(std::string("videos/") + name, "");
    }
    std::filesystem::create_directories("videos/.hidden");
    std::filesystem::create_directories("videos/._resource");
    playlist->readDir("videos");
    EXPECT_EQ(playlist->nbEntries, 2);
    EXPECT_TRUE(lists("a.m19"));
    EXPECT_TRUE(lists(".hidden"));
}

TEST_F(Explorer, FolderOf150Clips_ListsAHundred) {
    for (int clip = 0; clip < 150; ++clip) {
        writeFile(numbered("videos/c", clip) + ".m19", "");
    }
    playlist->readDir("videos");
    EXPECT_EQ(playlist->nbEntries, 100);
    EXPECT_EQ(playlist->entryIsClip[99], 1);
}

TEST_F(Explorer, UnreadableFolder_SaysSoAndKeepsTheWayBack) {
    writeFile("videos/a.m19", "");
    playlist->readDir("videos");
    EXPECT_EQ(printedBy([] { playlist->readDir("gone"); }), "Couldn't open the directory\n");
    EXPECT_EQ(listing(), std::vector<std::string>{".. back"});
    EXPECT_EQ(playlist->entries[1], "error");
    EXPECT_EQ(playlist->entries[98], "error");
}

TEST_F(Explorer, quirk_explorer_keeps_its_last_text) {
    for (int clip = 0; clip < 100; ++clip) {
        writeFile(numbered("videos/c", clip) + ".m19", "");
    }
    std::filesystem::create_directories("empty");
    playlist->readDir("videos");
    const std::string last = playlist->entries[99];
    EXPECT_EQ(playlist->entryIsClip[99], 1);
    playlist->readDir(".. back");
    playlist->readDir("empty");
    EXPECT_EQ(playlist->entries[98], "error");
    EXPECT_EQ(playlist->entries[99], last);
    EXPECT_EQ(playlist->entryIsDir[99], 1) << "the flags are those of an unused row";
    EXPECT_EQ(playlist->entryIsClip[99], 0);
}

TEST_F(Explorer, Leaving_KeepsOneFolderOpen) {
    playlist->exitEditPlaylists();
    EXPECT_NE(playlist->dirHandle, nullptr);
    playlist->exitEditPlaylists();
    EXPECT_NE(playlist->dirHandle, nullptr);
    closedir(playlist->dirHandle);
    playlist->dirHandle = nullptr;
}

}  // namespace
