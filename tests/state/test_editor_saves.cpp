// Saves that fail: the page says so and keeps what was edited, and the next save takes it along.
#include "state/editor_hands.h"

namespace {

using Names = std::vector<std::string>;

constexpr const char* kFile = "userdata/playlists.xml";

class FailedSave : public EditorTest {
protected:
    FailedSave() {
        writeFile("videos/x.m19", "");
        addFamille("A", {"a0.m19", "a1.m19"});
        addFamille("B", {"b0.m19"});
        frame();
    }
    static bool says(const char* words) { return editor->notice.find(words) != std::string::npos; }
    static bool saidOnPage() {
        draw();
        return says("could not be saved") && countPixels(screen[0], 324, 476, 300, 12, 0xFD80) > 50;
    }
    static bool saved(const std::string& element) {
        return readFile(kFile).find(element) != std::string::npos;
    }
};

TEST_F(FailedSave, OfANewPlaylist_KeepsThePageAndTheNameAlone) {
    click(kCreate);
    type("abc");
    breakSaving();
    typeKey(SDLK_RETURN, '\r', KEY_RETURN);
    EXPECT_EQ(playlist->editPage, page::NEW_PLAYLIST);
    EXPECT_EQ(playlist->newName, "abc");
    EXPECT_TRUE(saidOnPage());
    EXPECT_EQ(familleNames(), (Names{"A", "B"})) << "no playlist that nobody saved";
    letSave();
    click(kOk);
    EXPECT_EQ(familleNames(), (Names{"A", "B", "abc"}));
    EXPECT_TRUE(saved("<name>abc</name>"));
    EXPECT_EQ(editor->notice, "");
}

TEST_F(FailedSave, OfARename_KeepsThePageAndTheOldName) {
    click(kRename);
    type("2");
    breakSaving();
    click(kOk);
    EXPECT_EQ(playlist->editPage, page::NEW_PLAYLIST);
    EXPECT_EQ(playlist->newName, "A2");
    EXPECT_TRUE(saidOnPage());
    EXPECT_EQ(familleNames(), (Names{"A", "B"}));
    letSave();
    click(kOk);
    EXPECT_TRUE(saved("<name>A2</name>"));
}

TEST_F(FailedSave, OfTracks_KeepsThePageAndTheEdit) {
    editFirst();
    drag(leftRow(0), kTrackDelete);
    breakSaving();
    click(kConfirm);
    EXPECT_EQ(playlist->editPage, page::TRACKS);
    EXPECT_EQ(paths(0), (Names{"a1.m19"}));
    EXPECT_TRUE(saidOnPage());
    // Yes to "save changes?" fails in the same way.
    click(kTracksBack);
    ASSERT_EQ(editor->question, ASK_SAVE);
    click(kYes);
    EXPECT_EQ(playlist->editPage, page::TRACKS);
    EXPECT_TRUE(saidOnPage());
    letSave();
    click(kConfirm);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(editor->notice, "");
    EXPECT_FALSE(saved("a0.m19"));
    EXPECT_TRUE(saved("a1.m19"));
}

// The change stands in memory.
TEST_F(FailedSave, OfDeleteMoveAndCopy_GoesWithTheNextOne) {
    breakSaving();
    click(kCopy);
    EXPECT_EQ(familleNames(), (Names{"A", "A-2", "B"}));
    EXPECT_TRUE(saidOnPage());
    click(kNowhere);
    EXPECT_EQ(editor->notice, "");
    drag(leftRow(2), leftRow(0));
    EXPECT_EQ(familleNames(), (Names{"B", "A", "A-2"}));
    EXPECT_TRUE(saidOnPage());
    click(leftRow(1));
    click(kDelete);
    click(kYes);
    EXPECT_EQ(familleNames(), (Names{"B", "A-2"}));
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_TRUE(saidOnPage());
    click(leftRow(0));
    tap(KEY_LEFT);
    while (editor->focus != page::MOVE) {
        tap(KEY_RIGHT);
    }
    tap(KEY_X);
    tap(KEY_DOWN);
    tap(KEY_X);
    EXPECT_EQ(familleNames(), (Names{"A-2", "B"}));
    EXPECT_TRUE(saidOnPage());
    letSave();
    EXPECT_FALSE(std::filesystem::exists(kFile));
    drag(leftRow(0), leftRow(5));
    EXPECT_EQ(editor->notice, "");
    EXPECT_EQ(readFile(kFile),
              "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n"
              "\t<playlist>\n\t\t<name>B</name>\n\t\t<track>b0.m19</track>\n\t</playlist>\n"
              "\t<playlist>\n\t\t<name>A-2</name>\n\t\t<track>a0.m19</track>\n"
              "\t\t<track>a1.m19</track>\n\t</playlist>\n</all>\n");
}

}  // namespace
