// The editor's operations when there is not enough memory for one: done or not done, never half.
#include "common/memory.h"
#include "state/editor_hands.h"
#include "support/failing_memory.h"

namespace {

constexpr long kMostCalls = 5000;
constexpr const char* kFolder = "a-folder-with-a-long-name";
constexpr const char* kSaved = "userdata/playlists.xml";

// Long enough to need memory, each of another length: what one text left is room for some others,
// and an operation can be broken off at its later steps too.
std::string longText(const std::string& start, int number) {
    return start + "-with-a-long-name-" + std::string(static_cast<size_t>(3 * number), 'x') +
           ".m19";
}

// What the editor holds and shows.
struct Model {
    std::vector<std::string> names;
    std::vector<std::vector<std::string>> tracks;
    int page;
    std::string folder;  // of the explorer
    bool operator==(const Model&) const = default;
};

struct Operation {
    const char* name;
    void (*prepare)();
    void (*act)();
};

void openTracks() {
    playlist->editFamille = 2;
    editor->useButton(page::EDIT);
}

void openAndRemoveOne() {
    openTracks();
    playlist->removeTrack(2, 2);
}

const Operation kOperations[] = {
    {"AddTrack", [] { openTracks(); },
     [] { playlist->addTrack("a-clip-with-a-long-name-of-its-own.m19", 2, 0); }},
    {"RemoveTrack", [] { openTracks(); }, [] { playlist->removeTrack(2, 0); }},
    {"MoveTrackUp", [] { openTracks(); }, [] { playlist->moveTrack(3, 0); }},
    {"MoveTrackDown", [] { openTracks(); }, [] { playlist->moveTrack(0, 3); }},
    {"OpenTracks", [] {}, [] { openTracks(); }},
    {"EnterFolder", [] { openTracks(); }, [] { playlist->readDir(kFolder); }},
    {"LeaveFolder",
     [] {
         openTracks();
         playlist->readDir(kFolder);
     },
     [] { playlist->readDir(".. back"); }},
    {"DiscardTracks", openAndRemoveOne,
     [] {
         editor->question = ASK_SAVE;
         editor->answer(false);
     }},
    {"RemoveFirstPlaylist", [] {}, [] { playlist->removeFamille(0); }},
    {"RemoveLastPlaylist", [] {}, [] { playlist->removeFamille(3); }},
    {"MovePlaylistUp", [] {}, [] { playlist->deplacerFamille(3, 0); }},
    {"MovePlaylistDown", [] {}, [] { playlist->deplacerFamille(0, 4); }},
    {"CreatePlaylist", [] { playlist->newName = "a name of twenty"; },
     [] { playlist->createNewFamille(); }},
    {"CopyPlaylist", [] { editor->select(page::LEFT, 1); }, [] { editor->useButton(page::COPY); }},
    {"CarryPlaylist",
     [] {
         editor->select(page::LEFT, 1);
         editor->useButton(page::MOVE);
     },
     [] { editor->carry(1); }},
    {"CarryTrack",
     [] {
         openTracks();
         editor->useButton(page::MOVE);
     },
     [] { editor->carry(1); }},
    {"Scan", [] {}, [] { playlist->scanFamilles(); }},
};

class ShortOperation : public EditorTest,
                       public testing::WithParamInterface<std::tuple<Operation, Shortage>> {
protected:
    // The lists as new, in texts that have no room to spare.
    static void renew() {
        printedBy([] {
            std::filesystem::create_directories(std::string("videos/") + kFolder);
            editor->question = ASK_NOTHING;
            playlist->editPage = page::BROWSE;
            editor->carriedFrom = -1;
            playlist->editFamille = 0;
            std::string().swap(playlist->newName);
            std::string().swap(playlist->curDir);
            std::string().swap(playlist->browseDir);
            for (Famille& each : playlist->familles) {
                Famille fresh;
                std::swap(each, fresh);
            }
            Famille fresh;
            std::swap(editor->enteredFamille, fresh);
            playlist->nbFamilles = 0;
            for (int f = 0; f < 4; ++f) {
                std::vector<std::string> paths;
                for (int t = 0; t < 4; ++t) {
                    paths.push_back(longText(numbered("track", 10 * f + t), (f + t) % 4));
                }
                addFamille(longText(numbered("list", f), 3 - f), paths);
            }
        });
    }
    static Model model() {
        Model now = {familleNames(), {}, playlist->editPage, playlist->browseDir};
        for (int f = 0; f < playlist->nbFamilles; ++f) {
            now.tracks.push_back(paths(f));
        }
        return now;
    }
};

TEST_P(ShortOperation, EachCallFails_DoneOrNotDone) {
    const auto& [operation, shortage] = GetParam();
    renew();
    operation.prepare();
    const Model before = model();
    printedBy(operation.act);
    const Model after = model();
    long call = 0;
    for (bool failed = true; failed && call < kMostCalls && !HasFailure();) {
        ++call;
        SCOPED_TRACE(call);
        renew();
        operation.prepare();
        bool ended = false;
        printedBy([&] {
            failed =
                withFailingMemory(call, shortage, [&] { ended = withinMemory(operation.act); });
        });
        const Model now = model();
        EXPECT_TRUE(now == (ended ? after : before));
        EXPECT_TRUE(ended || failed);
        // Asked again with memory it is done.
        if (!ended) {
            printedBy(operation.act);
            EXPECT_TRUE(model() == after);
        }
        frame();
        draw();
    }
    EXPECT_LT(call, kMostCalls);
}

INSTANTIATE_TEST_SUITE_P(Operations, ShortOperation,
                         testing::Combine(testing::ValuesIn(kOperations),
                                          testing::Values(Shortage::ONE_CALL,
                                                          Shortage::FROM_THEN_ON)),
                         [](const auto& each) {
                             return std::string(std::get<0>(each.param).name) +
                                    (std::get<1>(each.param) == Shortage::ONE_CALL ? "OneCall"
                                                                                   : "FromThenOn");
                         });

class ShortSave : public EditorTest, public testing::WithParamInterface<Shortage> {
protected:
    // `save` with each of its calls for memory failing, over a file that says "before".
    static void eachCall(const std::string& file, bool (*save)(), int atLeast) {
        const std::string line = "Could not save " + playlist->baseDir + "/" + file + "\n";
        long call = 1;
        for (bool saved = false; !saved && call < kMostCalls; ++call) {
            SCOPED_TRACE(call);
            writeFile(file, "before");
            const std::string said =
                printedBy([&] { withFailingMemory(call, GetParam(), [&] { saved = save(); }); });
            EXPECT_EQ(said, saved ? "" : line);
            EXPECT_EQ(readFile(file) == "before", !saved);
            EXPECT_FALSE(std::filesystem::exists(file + ".tmp"));
        }
        EXPECT_GT(call, atLeast);
        EXPECT_LT(call, kMostCalls);
    }
};

TEST_P(ShortSave, OfPlaylists_OldFileStaysAndTheLineSaysSo) {
    addFamille(longText("list", 1), {longText("track", 1), longText("track", 2)});
    eachCall(
        kSaved, [] { return playlist->saveXML(); }, 5);
}

TEST_P(ShortSave, OfPreferences_OldFileStaysAndTheLineSaysSo) {
    eachCall(
        "userdata/prefs.xml", [] { return _options->saveXML(); }, 5);
}

TEST_P(ShortSave, OfTheController_OldFileStaysAndTheLineSaysSo) {
    eachCall(
        "userdata/gamecontroller.xml", [] { return _options->saveXMLController(); }, 5);
}

INSTANTIATE_TEST_SUITE_P(Shortages, ShortSave,
                         testing::Values(Shortage::ONE_CALL, Shortage::FROM_THEN_ON),
                         [](const auto& each) {
                             return each.param == Shortage::ONE_CALL ? "OneCall" : "FromThenOn";
                         });

class ShortEditor : public EditorTest {};

// A folder of which only some entries can be had shows those.
TEST_F(ShortEditor, FolderWithoutMemory_ShowsItsFirstEntriesAndSaysSo) {
    for (int clip = 0; clip < 4; ++clip) {
        placeClip("one-frame-8.m19", longText(numbered("clip", clip), 1));
    }
    addFamille("set");
    editFirst();
    const auto startOver = [] {
        for (std::string& entry : playlist->entries) {
            std::string().swap(entry);
        }
        playlist->curDir = playlist->baseDir;
    };
    startOver();
    const long calls = memoryCalls([] { playlist->readDir("videos"); });
    ASSERT_EQ(playlist->nbEntries, 4);
    startOver();
    // The last of them is the last entry's.
    const std::string said = printedBy([&] {
        withFailingMemory(calls, Shortage::FROM_THEN_ON, [] { playlist->readDir("videos"); });
    });
    EXPECT_EQ(said, "Not enough memory\n");
    EXPECT_EQ(playlist->nbEntries, 3);
    EXPECT_EQ(playlist->dirHandle, nullptr);
}

// The scan counts a track as missing that it has no memory to look at, and says so.
TEST_F(ShortEditor, ScanWithoutMemory_CountsTheTrackAsMissing) {
    placeClip("one-frame-8.m19", "a-clip-with-a-long-name.m19");
    addFamille("set", {"a-clip-with-a-long-name.m19", "a-clip-with-a-long-name.m19"});
    const std::string said = printedBy(
        [] { withFailingMemory(1, Shortage::ONE_CALL, [] { playlist->scanFamilles(); }); });
    EXPECT_EQ(said, "Not enough memory for this clip\n");
    EXPECT_EQ(playlist->familles[0].nbMissing, 1);
    EXPECT_EQ(playlist->familles[0].tracks[0].missing, 1);
    playlist->scanFamilles();
    EXPECT_EQ(playlist->familles[0].nbMissing, 0);
}

// The mouse holds nothing any more when there is no memory for what it let go.
TEST_F(ShortEditor, DropWithoutMemory_IsLetGo) {
    addFamille("set", {longText("track", 1), longText("track", 2), longText("track", 3)});
    frame();
    editFirst();
    tempsActuel += 2000;
    press(leftRow(0));
    move(leftRow(2));
    keys->mouseHeld = 0;
    bool ended = true;
    withFailingMemory(1, Shortage::FROM_THEN_ON,
                      [&] { ended = withinMemory([] { keys->actionsEditPlaylists(); }); });
    EXPECT_FALSE(ended);
    EXPECT_EQ(editor->press, PRESS_NOTHING);
    EXPECT_EQ(playlist->dragging, 0);
    EXPECT_EQ(paths(0)[0], longText("track", 1));
}

// The clip that a preview played is gone with it: nothing of it is drawn.
TEST_F(ShortEditor, PreviewWithoutMemory_StaysOnThePage) {
    placeClip("gaps-64.m19", "folder-with-a-name/clip.m19");
    addFamille("set", {"folder-with-a-name/clip.m19"});
    frame();
    editFirst();
    long call = 1;
    for (bool shown = false; !shown && call < kMostCalls; ++call) {
        SCOPED_TRACE(call);
        printedBy([&] {
            withFailingMemory(call, Shortage::ONE_CALL,
                              [] { withinMemory([] { playlist->startPreview(); }); });
        });
        draw();
        shown = playlist->previewActive != 0;
        EXPECT_EQ(shown, playlist->previewClip->state == CLIP_READY);
        editor->endPreview();
    }
    EXPECT_GT(call, 27);
    EXPECT_LT(call, kMostCalls);
}

}  // namespace
