// Names: typed on the keyboard, left half-typed, given to old playlists and to copies.
#include "state/editor_hands.h"

namespace {

using Names = std::vector<std::string>;

class Typing : public EditorTest {
protected:
    Typing() {
        addFamille("A", {"a.m19"});
        frame();
        click(kCreate);
    }
};

TEST_F(Typing, EveryLetterOfTheSet_IsWritten) {
    type("abcdefghijklmnopqrst");
    EXPECT_EQ(playlist->newName, "abcdefghijklmnopqrst");
    typeKey(SDLK_u, 'u');
    EXPECT_EQ(playlist->newName.size(), 20u) << "20 are the most";
    playlist->newName.clear();
    type("uvwxyz_-+*0123456789");
    EXPECT_EQ(playlist->newName, "uvwxyz_-+*0123456789");
}

TEST_F(Typing, Capitals_BecomeSmallAndOtherSignsNothing) {
    typeKey(SDLK_q, 'Q');
    typeKey(SDLK_2, 0xE9);  // an e with an acute
    typeKey(SDLK_LESS, '<');
    typeKey(SDLK_5, '%');
    typeKey(SDLK_e, 0x20AC);
    typeKey(SDLK_LSHIFT, 0);
    typeKey(SDLK_x, 0);  // a layout that tells no character
    EXPECT_EQ(playlist->newName, "qx");
}

TEST_F(Typing, LettersThatSwitchElsewhere_WriteAndNothingElse) {
    for (const int slot : {KEY_A, KEY_Z, KEY_X, KEY_S, KEY_Q, KEY_W, KEY_F}) {
        static constexpr char kLetters[] = "azxsqw......f";
        const char letter = kLetters[slot == KEY_F ? 12 : slot];
        playlist->newName.clear();
        typeKey(letter, letter, slot);
        EXPECT_EQ(playlist->newName.size(), 1u) << slot;
        EXPECT_EQ(playlist->editPage, page::NEW_PLAYLIST) << slot;
        EXPECT_EQ(keys->writing, 1);
    }
    EXPECT_EQ(editor->question, ASK_NOTHING);
}

// All within one frame: what comes behind Return is not for the next page.
TEST_F(Typing, BurstOfKeys_IsTakenInItsOrder) {
    keys->typed[0] = {'b', 'b'};
    keys->typed[1] = {'x', 'x'};
    keys->typed[2] = {SDLK_BACKSPACE, 8};
    keys->typed[3] = {'c', 'c'};
    keys->typed[4] = {SDLK_RETURN, 13};
    keys->typed[5] = {'z', 'z'};
    keys->typedCount = 6;
    frame();
    EXPECT_EQ(familleNames(), (Names{"A", "bc"}));
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(keys->writing, 1) << "the slots go down only now";
    keys->typedCount = 0;
    setKeys({KEY_X, KEY_Z, KEY_BACKSPACE, KEY_RETURN});
    frame();
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(editor->question, ASK_NOTHING);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    EXPECT_EQ(keys->writing, 0);
}

TEST_F(Typing, KeyHeldSinceThePageBefore_DoesNotWrite) {
    click(kCancel);
    tap(KEY_LEFT);
    ASSERT_EQ(editor->focus, page::CREATE);
    setKeys({KEY_X});
    keys->keyHeld = 1;
    frame();
    ASSERT_EQ(playlist->editPage, page::NEW_PLAYLIST);
    setKeys({}, {KEY_X});
    keys->typed[0] = {'x', 'x'};
    keys->typedCount = 1;
    for (int repeats = 0; repeats < 5; ++repeats) {
        frame();
    }
    EXPECT_EQ(playlist->newName, "");
    keys->keyHeld = 0;
    frame();
    EXPECT_EQ(playlist->newName, "x") << "typed anew";
}

TEST_F(Typing, Writing_IsOnForThisPageAlone) {
    EXPECT_EQ(keys->writing, 1);
    type("a");
    click(kCancel);
    ASSERT_EQ(editor->question, ASK_DISCARD);
    EXPECT_EQ(keys->writing, 0) << "a question takes no letters";
    click(kNo);
    EXPECT_EQ(keys->writing, 1);
    click(kOk);
    EXPECT_EQ(keys->writing, 0);
    click(kEdit);
    EXPECT_EQ(keys->writing, 0);
    click(kTracksBack);
    click(kRename);
    EXPECT_EQ(keys->writing, 1);
    click(kCancel);
    click(kBack);
    EXPECT_EQ(all->state, STATE_HOME);
    EXPECT_EQ(keys->writing, 0);
}

TEST_F(Typing, HalfTypedName_IsAskedFor) {
    const auto byEscape = [] { typeKey(SDLK_ESCAPE, 27); };
    const auto byPad = [] { tap(PAD_BACK); };
    const auto byButton = [] { click(kCancel); };
    for (const std::function<void()>& leave :
         {std::function<void()>(byEscape), std::function<void()>(byPad),
          std::function<void()>(byButton)}) {
        type("ab");
        leave();
        ASSERT_EQ(editor->question, ASK_DISCARD);
        EXPECT_EQ(playlist->editPage, page::NEW_PLAYLIST);
        // Back goes on writing, and so does no, which is chosen at first.
        tap(PAD_BACK);
        EXPECT_EQ(playlist->newName, "ab");
        leave();
        tap(KEY_X);
        EXPECT_EQ(playlist->newName, "ab");
        leave();
        typeKey(SDLK_ESCAPE, 27);
        EXPECT_EQ(playlist->newName, "ab");
        EXPECT_EQ(playlist->editPage, page::NEW_PLAYLIST);
        leave();
        tap(KEY_LEFT);
        tap(KEY_X);
        EXPECT_EQ(playlist->editPage, page::BROWSE);
        EXPECT_EQ(playlist->nbFamilles, 1);
        click(kCreate);
        EXPECT_EQ(playlist->newName, "");
    }
}

TEST_F(Typing, HeldEscape_AsksOnce) {
    type("a");
    keys->typed[0] = {SDLK_ESCAPE, 27};
    keys->typedCount = 1;
    frame();
    keys->keyHeld = 1;
    for (int repeats = 0; repeats < 20; ++repeats) {
        frame();
        EXPECT_EQ(editor->question, ASK_DISCARD);
    }
    keys->keyHeld = 0;
}

class OldNames : public EditorTest {
protected:
    OldNames() {
        addFamille("A", {"a.m19"});
        addFamille("B", {"b0.m19", "b1.m19"});
        frame();
    }
};

TEST_F(OldNames, Rename_BeginsWithTheOldNameAndSaves) {
    click(leftRow(1));
    click(kRename);
    EXPECT_EQ(playlist->newName, "B");
    typeKey(SDLK_BACKSPACE, 8);
    type("new");
    click(kOk);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(familleNames(), (Names{"A", "new"}));
    EXPECT_EQ(playlist->editFamille, 1);
    EXPECT_EQ(readFile("userdata/playlists.xml"),
              "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n"
              "\t<playlist>\n\t\t<name>A</name>\n\t\t<track>a.m19</track>\n\t</playlist>\n"
              "\t<playlist>\n\t\t<name>new</name>\n\t\t<track>b0.m19</track>\n"
              "\t\t<track>b1.m19</track>\n\t</playlist>\n</all>\n");
}

TEST_F(OldNames, RenameLeftOrToTheSame_ChangesNothing) {
    click(kRename);
    typeKey(SDLK_ESCAPE, 27);
    EXPECT_EQ(playlist->editPage, page::BROWSE) << "an untouched name is not asked for";
    click(kRename);
    click(kOk);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    click(kRename);
    type("x");
    click(kCancel);
    EXPECT_EQ(editor->question, ASK_DISCARD);
    click(kYes);
    EXPECT_EQ(familleNames(), (Names{"A", "B"}));
    EXPECT_FALSE(std::filesystem::exists("userdata/playlists.xml"));
}

TEST_F(OldNames, RenameToWhatTheFileWouldLose_IsRefusedWithALine) {
    click(kRename);
    playlist->newName = "</all>";
    click(kOk);
    EXPECT_EQ(playlist->editPage, page::NEW_PLAYLIST);
    EXPECT_EQ(editor->notice, "a playlist cannot keep this name: use another one");
    EXPECT_EQ(familleNames(), (Names{"A", "B"}));
}

TEST_F(OldNames, OfAFileMayBeLong_AndAreShortenedFirst) {
    playlist->familles[0].name = std::string(92, 'W');
    click(kRename);
    draw();
    EXPECT_EQ(countPixels(screen[0], 320 + 636, 180, 4, 360, 0x18C3), 4 * 360) << "its end is seen";
    type("x");
    EXPECT_EQ(playlist->newName.size(), 92u);
    for (int i = 0; i < 73; ++i) {
        typeKey(SDLK_BACKSPACE, 8);
    }
    type("xy");
    EXPECT_EQ(playlist->newName, std::string(19, 'W') + "x");
}

// "e" and its accent are two bytes, and go as one letter.
TEST_F(OldNames, LettersOfUtf8_AreTakenAwayWhole) {
    playlist->familles[1].name = "caf\xC3\xA9";
    click(leftRow(1));
    click(kRename);
    typeKey(SDLK_BACKSPACE, 8);
    EXPECT_EQ(playlist->newName, "caf");
    typeKey(SDLK_BACKSPACE, 8);
    EXPECT_EQ(playlist->newName, "ca");
}

TEST_F(OldNames, ADraggedPlaylist_IsRenamedOrCopied) {
    drag(leftRow(1), kRename);
    EXPECT_EQ(playlist->newName, "B");
    click(kCancel);
    drag(leftRow(1), kCopy);
    EXPECT_EQ(familleNames(), (Names{"A", "B", "B-2"}));
    drag(rightRow(0), kCopy);
    EXPECT_EQ(playlist->nbFamilles, 3) << "a track is no playlist";
}

TEST_F(OldNames, Copies_StandBehindWithTheSameTracks) {
    click(kCopy);
    EXPECT_EQ(familleNames(), (Names{"A", "A-2", "B"}));
    EXPECT_EQ(paths(1), paths(0));
    EXPECT_EQ(playlist->familles[1].nbMissing, 1) << "scanned";
    EXPECT_EQ(playlist->editFamille, 1) << "the copy is selected";
    click(kCopy);
    EXPECT_EQ(familleNames(), (Names{"A", "A-2", "A-3", "B"})) << "not A-2-2";
    click(leftRow(3));
    click(kCopy);
    EXPECT_EQ(familleNames(), (Names{"A", "A-2", "A-3", "B", "B-2"}));
    EXPECT_EQ(paths(4), (Names{"b0.m19", "b1.m19"}));
}

TEST_F(OldNames, CopiesOfLongNames_HaveAtMost20Signs) {
    playlist->familles[0].name = "abcdefghijklmnopqrst";
    playlist->familles[1].name = std::string(16, 'u') + "v\xC3\xA9wx";
    click(kCopy);
    EXPECT_EQ(playlist->familles[1].name, "abcdefghijklmnopqr-2");
    click(leftRow(2));
    click(kCopy);
    // 18 bytes would end in the middle of the accented letter.
    EXPECT_EQ(playlist->familles[3].name, std::string(16, 'u') + "v-2");
}

TEST_F(OldNames, CopiesOfOddNames_HaveNamesToo) {
    for (const auto& [name, copy] : {std::pair("", "-2"), std::pair("-7", "-7-2"),
                                     std::pair("9", "9-2"), std::pair("x-", "x--2")}) {
        playlist->familles[0].name = name;
        click(leftRow(0));
        click(kCopy);
        EXPECT_EQ(playlist->familles[1].name, copy);
        playlist->removeFamille(1);
    }
}

TEST_F(OldNames, FiftyPlaylists_AreNotCopied) {
    while (playlist->nbFamilles < 49) {
        addFamille("A");
    }
    click(kCopy);
    EXPECT_EQ(playlist->nbFamilles, 50);
    EXPECT_EQ(playlist->familles[1].name, "A-2");
    click(kCopy);
    EXPECT_EQ(playlist->nbFamilles, 50);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
}

}  // namespace
