// The playlist screen without a mouse: by keyboard alone, by pad alone.
#include "moxel/moxel.h"
#include "state/editor_hands.h"

namespace {

using Names = std::vector<std::string>;
using Paths = std::vector<std::string>;

constexpr const char* kHead = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";

struct Device {
    const char* name;
    int up, right, down, left, confirm, back;
};
constexpr Device kKeyboard = {"keyboard", KEY_UP, KEY_RIGHT, KEY_DOWN, KEY_LEFT, KEY_X, KEY_Z};
constexpr Device kPad = {"pad", PAD_UP, PAD_RIGHT, PAD_DOWN, PAD_LEFT, PAD_CONFIRM, PAD_BACK};

class ByKeys : public EditorTest, public ::testing::WithParamInterface<Device> {
protected:
    ByKeys() : hand(GetParam()) {
        placeClip("rgb-all-360.m19", "x.m19");
        placeClip("rgba-all-360.m19", "y.m19");
        writeFile("videos/live/z.m19", "");
    }
    // From a list to a button, and it is used; the row's ends are joined.
    void use(page::Button button) {
        for (int steps = 0; editor->focus == page::kNoButton && steps < 2; ++steps) {
            tap(hand.left);
        }
        for (int steps = 0; editor->focus != button && steps < 10; ++steps) {
            tap(hand.right);
        }
        ASSERT_EQ(editor->focus, button);
        tap(hand.confirm);
    }
    // The keyboard writes; the pad lights the letters of the screen one after the other.
    void write(const std::string& name) {
        if (hand.confirm == KEY_X) {
            type(name);
            return;
        }
        const std::string letters = "abcdefghijklmnopqrstuvwxyz_-+*0123456789";
        for (const char letter : name) {
            light(static_cast<int>(letters.find(letter)));
            tap(hand.confirm);
        }
    }
    void light(int key) {
        for (int steps = 0; playlist->keyUnderPointer % 10 != key % 10 && steps < 10; ++steps) {
            tap(playlist->keyUnderPointer % 10 < key % 10 ? hand.right : hand.left);
        }
        for (int steps = 0; playlist->keyUnderPointer / 10 != key / 10 && steps < 5; ++steps) {
            tap(playlist->keyUnderPointer < key ? hand.down : hand.up);
        }
        ASSERT_EQ(playlist->keyUnderPointer, key);
    }
    void finishName() {
        if (hand.confirm == KEY_X) {
            typeKey(SDLK_RETURN, '\r', KEY_RETURN);
        } else {
            light(41);
            tap(hand.confirm);
        }
    }
    void goToEntry(const std::string& name) {
        const int row = rowOfEntry(name);
        for (int steps = 0; playlist->selItem != row && steps < 100; ++steps) {
            tap(playlist->selItem < row ? hand.down : hand.up);
        }
    }
    static std::string saved() { return readFile("userdata/playlists.xml"); }

    const Device hand;
};

TEST_P(ByKeys, NewPlaylist_FromNothingAndAway) {
    // Created.
    tap(hand.down);
    ASSERT_EQ(editor->focus, page::CREATE) << "an empty list leads to the buttons";
    tap(hand.confirm);
    ASSERT_EQ(playlist->editPage, page::NEW_PLAYLIST);
    write("set");
    finishName();
    ASSERT_EQ(familleNames(), (Names{"set"}));
    EXPECT_EQ(editor->focus, page::kNoButton);

    // Filled, from the files.
    tap(hand.confirm);
    ASSERT_EQ(playlist->editPage, page::TRACKS);
    goToEntry("x.m19");
    use(page::ADD);
    EXPECT_EQ(editor->focus, page::ADD) << "the hand stays on it";
    tap(hand.up);
    goToEntry("y.m19");
    use(page::ADD);
    EXPECT_EQ(paths(0), (Paths{"x.m19", "y.m19"}));

    // Swapped.
    tap(hand.up);
    tap(hand.left);
    ASSERT_EQ(playlist->dragSource, 0);
    ASSERT_EQ(playlist->selRow, 1);
    use(page::MOVE);
    tap(hand.up);
    tap(hand.confirm);
    EXPECT_EQ(paths(0), (Paths{"y.m19", "x.m19"}));
    EXPECT_EQ(editor->carriedFrom, -1);

    // Previewed, by the row and by the button.
    tap(hand.confirm);
    EXPECT_EQ(playlist->previewActive, 1);
    EXPECT_EQ(playlist->previewClip->name, "y.m19");
    tap(hand.back);
    EXPECT_EQ(playlist->previewActive, 0);
    use(page::PREVIEW);
    EXPECT_EQ(playlist->previewActive, 1);
    tap(hand.confirm);
    EXPECT_EQ(playlist->editPage, page::TRACKS);

    // Saved.
    use(page::CONFIRM);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    const std::string tracks =
        "\t\t<track>y.m19</track>\n\t\t<track>x.m19</track>\n\t</playlist>\n";
    EXPECT_EQ(saved(), kHead + ("\t<playlist>\n\t\t<name>set</name>\n" + tracks) + "</all>\n");

    // Renamed, copied.
    use(page::RENAME);
    ASSERT_EQ(playlist->newName, "set");
    write("-b");
    finishName();
    EXPECT_EQ(familleNames(), (Names{"set-b"}));
    use(page::COPY);
    EXPECT_EQ(familleNames(), (Names{"set-b", "set-b-2"}));
    EXPECT_EQ(playlist->editFamille, 1);
    EXPECT_EQ(saved(), kHead + ("\t<playlist>\n\t\t<name>set-b</name>\n" + tracks) +
                           "\t<playlist>\n\t\t<name>set-b-2</name>\n" + tracks + "</all>\n");

    // Deleted: no is what loses nothing, and is chosen at first.
    use(page::DELETE);
    ASSERT_EQ(editor->question, ASK_DELETE);
    tap(hand.confirm);
    EXPECT_EQ(familleNames(), (Names{"set-b", "set-b-2"}));
    ASSERT_EQ(editor->focus, page::DELETE);
    tap(hand.confirm);
    tap(hand.left);
    tap(hand.confirm);
    EXPECT_EQ(familleNames(), (Names{"set-b"}));

    // Home.
    use(page::BACK);
    EXPECT_EQ(all->state, STATE_HOME);
}

TEST_P(ByKeys, Playlists_AreCarriedSetDownAndPutBack) {
    for (const char* name : {"A", "B", "C"}) {
        addFamille(name, {std::string(name) + ".m19"});
    }
    playlist->familles[0].nbMissing = 1;
    playlist->familles[0].tracks[0].missing = 1;
    use(page::MOVE);
    EXPECT_EQ(editor->carriedFrom, 0);
    tap(hand.down);
    tap(hand.down);
    tap(hand.down);
    EXPECT_EQ(familleNames(), (Names{"B", "C", "A"}));
    EXPECT_EQ(playlist->editFamille, 2);
    EXPECT_EQ(playlist->familles[2].nbMissing, 1) << "its marks go with it";
    EXPECT_EQ(playlist->familles[2].tracks[0].missing, 1);
    EXPECT_EQ(playlist->familles[0].nbMissing, 0);
    EXPECT_EQ(saved(), "") << "not before it is set down";
    tap(hand.back);
    EXPECT_EQ(familleNames(), (Names{"A", "B", "C"}));
    EXPECT_EQ(playlist->editFamille, 0);
    EXPECT_EQ(editor->carriedFrom, -1);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    EXPECT_EQ(saved(), "");
    use(page::MOVE);
    tap(hand.down);
    tap(hand.confirm);
    EXPECT_EQ(familleNames(), (Names{"B", "A", "C"}));
    EXPECT_EQ(saved(), std::string(kHead) +
                           "\t<playlist>\n\t\t<name>B</name>\n\t\t<track>B.m19</track>\n"
                           "\t</playlist>\n"
                           "\t<playlist>\n\t\t<name>A</name>\n\t\t<track>A.m19</track>\n"
                           "\t</playlist>\n"
                           "\t<playlist>\n\t\t<name>C</name>\n\t\t<track>C.m19</track>\n"
                           "\t</playlist>\n</all>\n");
}

TEST_P(ByKeys, FiftyPlaylists_AreCarriedFromEndToEnd) {
    for (int f = 0; f < 50; ++f) {
        addFamille(numbered("f", f));
    }
    frame();
    use(page::MOVE);
    tap(hand.down, 60);
    EXPECT_EQ(playlist->familles[49].name, "f0");
    EXPECT_EQ(playlist->familles[0].name, "f1");
    EXPECT_EQ(playlist->nbFamilles, 50);
    EXPECT_EQ(playlist->scroll[0].pos, 35) << "it stays in view";
    tap(hand.up, 60);
    EXPECT_EQ(playlist->familles[0].name, "f0");
    EXPECT_EQ(playlist->familles[49].name, "f49");
}

TEST_P(ByKeys, Tracks_AreCarriedAndPutBack) {
    addFamille("set", {"A", "B", "C"});
    tap(hand.confirm);
    tap(hand.down);
    use(page::MOVE);
    tap(hand.down);
    EXPECT_EQ(paths(0), (Paths{"A", "C", "B"}));
    tap(hand.down);
    tap(hand.up);
    tap(hand.up);
    tap(hand.up);
    EXPECT_EQ(paths(0), (Paths{"B", "A", "C"}));
    tap(hand.back);
    EXPECT_EQ(paths(0), (Paths{"A", "B", "C"}));
    EXPECT_EQ(playlist->selRow, 1);
    EXPECT_EQ(playlist->editPage, page::TRACKS);
}

TEST_P(ByKeys, FullPlaylist_KeepsItsOrderAndSaysSo) {
    addFamille("full", std::vector<std::string>(49, "t.m19"));
    tap(hand.confirm);
    use(page::MOVE);
    EXPECT_EQ(editor->carriedFrom, -1);
    EXPECT_EQ(editor->notice, "49 tracks is the most: remove one first");
    tap(hand.right);
    tap(hand.up);
    tap(hand.right);
    goToEntry("x.m19");
    use(page::ADD);
    EXPECT_EQ(playlist->familles[0].nbTracks, 49);
    EXPECT_EQ(editor->notice, "49 tracks is the most: remove one first");
}

TEST_P(ByKeys, Tracks_AreRemovedByTheButton) {
    addFamille("set", {"A", "B", "C"});
    tap(hand.confirm);
    tap(hand.down);
    use(page::DELETE);
    EXPECT_EQ(paths(0), (Paths{"A", "C"}));
    tap(hand.confirm);
    tap(hand.confirm);
    EXPECT_EQ(paths(0), Paths{});
    EXPECT_EQ(editor->focus, page::kNoButton) << "it has nothing left to delete";
    tap(hand.confirm);
    EXPECT_EQ(paths(0), Paths{}) << "once too often does nothing";
}

TEST_P(ByKeys, QuestionAboutChanges_IsAnsweredEveryWay) {
    const auto changed = [this] {
        tap(hand.confirm);
        use(page::DELETE);
        tap(hand.back);
        ASSERT_EQ(editor->question, ASK_SAVE);
    };
    addFamille("set", {"A", "B", "C"});
    changed();
    tap(hand.back);
    EXPECT_EQ(playlist->editPage, page::TRACKS) << "back goes on editing";
    tap(hand.back);
    tap(hand.right);
    tap(hand.confirm);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(paths(0), (Paths{"A", "B", "C"})) << "no";
    EXPECT_EQ(saved(), "");
    changed();
    tap(hand.right);
    tap(hand.left);
    tap(hand.confirm);
    EXPECT_EQ(paths(0), (Paths{"B", "C"})) << "yes";
    changed();
    tap(hand.confirm);
    EXPECT_EQ(paths(0), (Paths{"C"})) << "yes is chosen at first";
    EXPECT_NE(saved(), "");
}

TEST_P(ByKeys, NamePage_CancelIsBelowTheKeys) {
    tap(hand.down);
    tap(hand.confirm);
    write("a");
    tap(hand.down, 5);
    ASSERT_EQ(editor->focus, page::OK);
    tap(hand.right);
    ASSERT_EQ(editor->focus, page::CANCEL);
    tap(hand.up);
    EXPECT_EQ(editor->focus, page::kNoButton) << "back to the keys";
    tap(hand.down);
    tap(hand.left);
    ASSERT_EQ(editor->focus, page::CANCEL) << "the row's ends are joined";
    if (hand.confirm == KEY_X) {
        typeKey(SDLK_RETURN, '\r', KEY_RETURN);
    } else {
        tap(hand.confirm);
    }
    EXPECT_EQ(editor->question, ASK_DISCARD);
    EXPECT_EQ(playlist->nbFamilles, 0);
}

TEST_P(ByKeys, ButtonsAreReachedFromEveryList_AndKeepTheSelection) {
    addFamille("A", {"a0", "a1", "a2"});
    addFamille("B", {"b0"});
    addFamille("empty");
    frame();
    tap(hand.down);
    tap(hand.left);
    EXPECT_EQ(editor->focus, page::CREATE);
    EXPECT_EQ(playlist->editFamille, 1) << "any row can be worked on";
    tap(hand.up);
    tap(hand.right);
    EXPECT_EQ(playlist->dragSource, 1);
    tap(hand.right);
    EXPECT_EQ(editor->focus, page::CREATE) << "right of the right list";
    EXPECT_EQ(playlist->dragSource, 1);
    tap(hand.up);
    tap(hand.down);
    EXPECT_EQ(editor->focus, page::CREATE) << "below the last row";
    tap(hand.up);
    tap(hand.left);
    tap(hand.down);
    tap(hand.right);
    EXPECT_EQ(editor->focus, page::CREATE) << "an empty list is no stop on the way";
    EXPECT_EQ(playlist->dragSource, 0);
    tap(hand.left);
    EXPECT_EQ(editor->focus, page::BACK);
    tap(hand.left);
    EXPECT_EQ(editor->focus, page::MOVE);
    tap(hand.left);
    tap(hand.left);
    tap(hand.left);
    EXPECT_EQ(editor->focus, page::DELETE);
    tap(hand.left);
    EXPECT_EQ(editor->focus, page::EDIT) << "a playlist has no preview";
}

TEST_P(ByKeys, HeldArrow_StopsAtTheListsEnd) {
    for (int f = 0; f < 20; ++f) {
        addFamille(numbered("f", f));
    }
    frame();
    setKeys({hand.down});
    frame();
    setKeys({}, {hand.down});
    for (int i = 0; i < 100; ++i) {
        frame();
    }
    EXPECT_EQ(playlist->editFamille, 19);
    EXPECT_EQ(editor->focus, page::kNoButton);
}

INSTANTIATE_TEST_SUITE_P(Alone, ByKeys, ::testing::Values(kKeyboard, kPad),
                         [](const auto& named) { return std::string(named.param.name); });

}  // namespace
