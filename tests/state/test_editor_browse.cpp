// The browse page and the page of a new playlist: what clicks, drags and keys do there.
#include "state/editor_hands.h"
#include "ui/overmenu.h"

namespace {

using Names = std::vector<std::string>;

constexpr const char* kDocument = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";

class Browse : public EditorTest {
protected:
    Browse() {
        addFamille("A", {"a0.m19", "a1.m19"});
        addFamille("B", {"b0.m19"});
        addFamille("C");
        frame();
    }
};

TEST_F(Browse, Click_SelectsAPlaylistAndListsItsTracks) {
    click(leftRow(1));
    EXPECT_EQ(playlist->editFamille, 1);
    EXPECT_EQ(playlist->selRow, 1);
    EXPECT_EQ(playlist->dragSource, 0);
    EXPECT_EQ(playlist->scroll[1].count, 1);
    click(rightRow(0));
    EXPECT_EQ(playlist->dragSource, 1);
    EXPECT_EQ(playlist->selItem, 0);
    EXPECT_EQ(playlist->selRow, 1) << "the playlist whose track it is";
}

TEST_F(Browse, ClickBelowTheLastRow_SelectsNothing) {
    click(leftRow(1));
    click(leftRow(3));
    EXPECT_EQ(playlist->editFamille, 1);
    click(rightRow(5));
    EXPECT_EQ(playlist->dragSource, 0);
}

TEST_F(Browse, DoubleClick_EditsThePlaylist) {
    click(leftRow(1));
    press(leftRow(1));
    release();
    EXPECT_EQ(playlist->editPage, page::TRACKS);
    EXPECT_EQ(playlist->editFamille, 1);
}

TEST_F(Browse, TwoSlowClicksOrTwoRows_AreNoDoubleClick) {
    click(leftRow(1));
    click(leftRow(1));
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    press(leftRow(2));
    release();
    EXPECT_EQ(playlist->editPage, page::BROWSE);
}

TEST_F(Browse, PressWithoutMove_IsNoDrag) {
    press(leftRow(0));
    move({leftRow(0).x + 3, leftRow(0).y + 3});
    EXPECT_EQ(playlist->dragging, 0);
    move({leftRow(0).x + 4, leftRow(0).y});
    EXPECT_EQ(playlist->dragging, 1);
    release();
    EXPECT_EQ(playlist->dragging, 0);
}

TEST_F(Browse, DragWithinTheList_MovesThePlaylistAndSaves) {
    drag(leftRow(0), leftRow(2));
    EXPECT_EQ(familleNames(), (Names{"B", "A", "C"}));
    EXPECT_EQ(playlist->editFamille, 1) << "it stays the selected one";
    EXPECT_EQ(readFile("userdata/playlists.xml"),
              std::string(kDocument) +
                  "\t<playlist>\n\t\t<name>B</name>\n\t\t<track>b0.m19</track>\n\t</playlist>\n"
                  "\t<playlist>\n\t\t<name>A</name>\n\t\t<track>a0.m19</track>\n"
                  "\t\t<track>a1.m19</track>\n\t</playlist>\n"
                  "\t<playlist>\n\t\t<name>C</name>\n\t</playlist>\n</all>\n");
    drag(leftRow(2), leftRow(0));
    EXPECT_EQ(familleNames(), (Names{"C", "B", "A"}));
    EXPECT_EQ(playlist->editFamille, 0);
}

TEST_F(Browse, DragBelowTheLastRow_MovesToTheEnd) {
    press(leftRow(0));
    move(leftRow(9));
    EXPECT_EQ(playlist->dropRow, 3) << "the marker stands below the last row";
    release();
    EXPECT_EQ(familleNames(), (Names{"B", "C", "A"}));
}

TEST_F(Browse, DropInPlaceOrOutside_ChangesAndSavesNothing) {
    drag(leftRow(1), {150, leftRow(1).y});
    drag(leftRow(1), {150, leftRow(2).y});
    drag(leftRow(1), rightRow(0));
    drag(leftRow(1), {100, 350});
    drag(leftRow(1), {-300, -170});
    drag(leftRow(1), kBack);
    EXPECT_EQ(familleNames(), (Names{"A", "B", "C"}));
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    EXPECT_FALSE(std::filesystem::exists("userdata/playlists.xml"));
}

TEST_F(Browse, DropRow_IsThatUnderThePointerOrNone) {
    press(leftRow(0));
    move(leftRow(2));
    EXPECT_EQ(playlist->dropRow, 2);
    move(rightRow(2));
    EXPECT_GE(playlist->dropRow, 16);
    release();
    press(rightRow(0));
    move(leftRow(1));
    EXPECT_EQ(playlist->dragging, 1);
    EXPECT_GE(playlist->dropRow, 16) << "a track has no place among the playlists";
    release();
    EXPECT_EQ(familleNames(), (Names{"A", "B", "C"}));
}

TEST_F(Browse, DragOntoEdit_EditsThatPlaylist) {
    drag(leftRow(1), kEdit);
    EXPECT_EQ(playlist->editPage, page::TRACKS);
    EXPECT_EQ(playlist->editFamille, 1);
}

TEST_F(Browse, Delete_AsksAndDoesItOnYes) {
    click(leftRow(1));
    click(kDelete);
    EXPECT_EQ(editor->question, ASK_DELETE);
    EXPECT_EQ(familleNames(), (Names{"A", "B", "C"}));
    click(kYes);
    EXPECT_EQ(familleNames(), (Names{"A", "C"}));
    EXPECT_EQ(editor->question, ASK_NOTHING);
    EXPECT_NE(readFile("userdata/playlists.xml").find("<name>C</name>"), std::string::npos);
    EXPECT_EQ(readFile("userdata/playlists.xml").find("<name>B</name>"), std::string::npos);
}

TEST_F(Browse, DeleteQuestion_NoAndZKeepThePlaylist) {
    drag(leftRow(0), kDelete);
    EXPECT_EQ(editor->question, ASK_DELETE);
    click(kNo);
    EXPECT_EQ(editor->question, ASK_NOTHING);
    drag(leftRow(0), kDelete);
    ASSERT_EQ(editor->question, ASK_DELETE);
    tap(KEY_Z);
    EXPECT_EQ(editor->question, ASK_NOTHING);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    EXPECT_EQ(familleNames(), (Names{"A", "B", "C"}));
}

TEST_F(Browse, WhileAQuestionStands_NothingElseAnswers) {
    click(kDelete);
    click(kDelete);
    click(leftRow(2));
    click(kBack);
    tap(KEY_DOWN);
    tap(KEY_RETURN);
    tap(KEY_BACKSPACE);
    EXPECT_EQ(editor->question, ASK_DELETE);
    EXPECT_EQ(playlist->editFamille, 0);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
}

TEST_F(Browse, DeletingTheLastPlaylists_LeavesAnEmptyPage) {
    overMenu->selected = 2;
    for (int i = 0; i < 3; ++i) {
        tap(KEY_BACKSPACE);
        tap(KEY_LEFT);
        tap(KEY_X);
    }
    EXPECT_EQ(playlist->nbFamilles, 0);
    EXPECT_EQ(playlist->editFamille, 0);
    EXPECT_EQ(overMenu->selected, 0);
    EXPECT_EQ(readFile("userdata/playlists.xml"), std::string(kDocument) + "</all>\n");
    click(kDelete);
    click(kEdit);
    click(leftRow(0));
    tap(KEY_X);
    tap(KEY_DOWN);
    EXPECT_EQ(editor->question, ASK_NOTHING);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    draw();
}

TEST_F(Browse, Arrows_MoveTheSelectionInTheListInUse) {
    tap(KEY_DOWN);
    EXPECT_EQ(playlist->editFamille, 1);
    tap(PAD_UP);
    EXPECT_EQ(playlist->editFamille, 0);
    tap(KEY_UP);
    EXPECT_EQ(playlist->editFamille, 0);
    tap(KEY_RIGHT);
    EXPECT_EQ(playlist->dragSource, 1);
    tap(PAD_DOWN);
    EXPECT_EQ(playlist->selItem, 1);
    tap(PAD_LEFT);
    EXPECT_EQ(playlist->dragSource, 0);
}

TEST_F(Browse, ArrowHeld_GoesOnAfterAWhile) {
    while (playlist->nbFamilles < 50) {
        addFamille("more");
    }
    setKeys({KEY_DOWN});
    frame();
    setKeys({}, {KEY_DOWN});
    for (int i = 0; i < 9; ++i) {
        frame();
    }
    EXPECT_EQ(playlist->editFamille, 1);
    for (int i = 0; i < 40; ++i) {
        frame();
    }
    EXPECT_EQ(playlist->editFamille, 21) << "every second frame";
    EXPECT_EQ(playlist->scroll[0].pos, 7) << "row 21 is the last one in view";
}

TEST_F(Browse, X_EditsThePlaylist) {
    tap(KEY_DOWN);
    tap(PAD_CONFIRM);
    EXPECT_EQ(playlist->editPage, page::TRACKS);
    EXPECT_EQ(playlist->editFamille, 1);
}

TEST_F(Browse, BackAndZ_LeaveForHome) {
    click(kBack);
    EXPECT_EQ(all->state, STATE_HOME);
    EXPECT_NE(playlist->dirHandle, nullptr);
    all->state = STATE_PLAYLISTS;
    tap(PAD_BACK);
    EXPECT_EQ(all->state, STATE_HOME);
}

TEST_F(Browse, KeysDuringADrag_DoNothingButZLetsGo) {
    press(leftRow(0));
    move(leftRow(2));
    for (const int slot : {KEY_X, KEY_BACKSPACE, KEY_RETURN, KEY_DOWN}) {
        tap(slot);
    }
    EXPECT_EQ(playlist->dragging, 1);
    EXPECT_EQ(playlist->editFamille, 0);
    EXPECT_EQ(editor->question, ASK_NOTHING);
    tap(KEY_Z);
    EXPECT_EQ(playlist->dragging, 0);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    release();
    EXPECT_EQ(familleNames(), (Names{"A", "B", "C"}));
}

TEST_F(Browse, ThumbDragged_ScrollsTheListAndLeavesTheSelection) {
    for (int f = 3; f < 50; ++f) {
        addFamille(numbered("f", f));
    }
    frame();
    EXPECT_EQ(playlist->scroll[0].maxPos, 35);
    press({314, 25});
    EXPECT_EQ(playlist->scroll[0].active, 1);
    EXPECT_EQ(playlist->scroll[0].pos, 0) << "taken, not moved";
    move({400, 107});
    EXPECT_EQ(playlist->scroll[0].pos, 17);  // 35 x 87 / 174
    move({400, 350});
    EXPECT_EQ(playlist->scroll[0].pos, 35);
    release();
    EXPECT_EQ(playlist->scroll[0].active, 0);
    EXPECT_EQ(playlist->editFamille, 0);
    // Beside the thumb the press itself moves it.
    press({314, 21});
    EXPECT_EQ(playlist->scroll[0].pos, 0);  // 35 x 1 / 174
    release();
    click(leftRow(3));
    EXPECT_EQ(playlist->editFamille, 3);
}

TEST_F(Browse, DragAtTheListsEdge_ScrollsOn) {
    for (int f = 3; f < 50; ++f) {
        addFamille(numbered("f", f));
    }
    frame();
    press(leftRow(0));
    for (int i = 0; i < 200; ++i) {
        move({100, 215});
    }
    EXPECT_EQ(playlist->scroll[0].pos, 35);
    EXPECT_EQ(playlist->dropRow, 15);
    release();
    EXPECT_EQ(playlist->familles[49].name, "A");
    EXPECT_EQ(playlist->editFamille, 49);
}

TEST_F(Browse, FiftyPlaylists_RefuseAFiftyFirst) {
    while (playlist->nbFamilles < 50) {
        addFamille("more");
    }
    click(kCreate);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(playlist->nbFamilles, 50);
}

class NewPlaylist : public EditorTest {
protected:
    NewPlaylist() {
        addFamille("A", {"a.m19"});
        frame();
        click(kCreate);
    }
};

// However it came that there is no room any more: none of the fifty goes.
TEST_F(NewPlaylist, OKWithFiftyPlaylists_DoesNothing) {
    click(keyCell(0));
    while (playlist->nbFamilles < 50) {
        addFamille("more");
    }
    click(keyCell(page::kKeyOk));
    EXPECT_EQ(playlist->editPage, page::NEW_PLAYLIST);
    EXPECT_EQ(playlist->nbFamilles, 50);
    EXPECT_EQ(playlist->familles[49].name, "more");
}

TEST_F(NewPlaylist, EveryKey_TypesItsText) {
    const std::string wanted = "abcdefghijklmnopqrstuvwxyz_-+*0123456789";
    for (int key = 0; key < 40; ++key) {
        playlist->newName.clear();
        click(keyCell(key));
        EXPECT_EQ(playlist->newName, wanted.substr(static_cast<size_t>(key), 1));
    }
}

TEST_F(NewPlaylist, Name_EndsAt20CharactersAndDelTakesTheLast) {
    for (int i = 0; i < 25; ++i) {
        click(keyCell(1));
    }
    EXPECT_EQ(playlist->newName, std::string(20, 'b'));
    click(keyCell(40));
    EXPECT_EQ(playlist->newName, std::string(19, 'b'));
    typeKey(SDLK_BACKSPACE, '\b', KEY_BACKSPACE);
    EXPECT_EQ(playlist->newName, std::string(18, 'b'));
    for (int i = 0; i < 30; ++i) {
        typeKey(SDLK_BACKSPACE);
    }
    EXPECT_EQ(playlist->newName, "");
}

TEST_F(NewPlaylist, OK_CreatesSelectsAndSaves) {
    click(keyCell(2));
    click(keyCell(41));
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(familleNames(), (Names{"A", "c"}));
    EXPECT_EQ(playlist->editFamille, 1);
    EXPECT_EQ(playlist->scroll[0].count, 2);
    EXPECT_EQ(playlist->scroll[1].count, 0);
    EXPECT_EQ(readFile("userdata/playlists.xml"),
              std::string(kDocument) +
                  "\t<playlist>\n\t\t<name>A</name>\n\t\t<track>a.m19</track>\n\t</playlist>\n"
                  "\t<playlist>\n\t\t<name>c</name>\n\t</playlist>\n</all>\n");
    // The name is empty again the next time.
    click(kCreate);
    EXPECT_EQ(playlist->newName, "");
}

TEST_F(NewPlaylist, InTheRecordOfADeletedOne_HasNoneOfItsMarks) {
    playlist->familles[1].nbMissing = 3;
    playlist->familles[1].tracks[0].missing = 1;
    click(keyCell(2));
    click(keyCell(41));
    EXPECT_EQ(playlist->familles[1].nbMissing, 0);
    EXPECT_EQ(playlist->familles[1].tracks[0].missing, 0);
}

TEST_F(NewPlaylist, OKWithoutAName_DoesNothing) {
    click(keyCell(41));
    click(kOk);
    typeKey(SDLK_RETURN, '\r', KEY_RETURN);
    EXPECT_EQ(playlist->editPage, page::NEW_PLAYLIST);
    EXPECT_EQ(playlist->nbFamilles, 1);
}

TEST_F(NewPlaylist, ReturnAndTheButton_AreOKToo) {
    click(keyCell(0));
    typeKey(SDLK_RETURN, '\r', KEY_RETURN);
    EXPECT_EQ(playlist->nbFamilles, 2);
    click(kCreate);
    click(keyCell(0));
    click(kOk);
    EXPECT_EQ(playlist->nbFamilles, 3);
}

TEST_F(NewPlaylist, CancelEscapeAndPad_LeaveAnEmptyName) {
    click(kCancel);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    click(kCreate);
    typeKey(SDLK_ESCAPE, 27);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    click(kCreate);
    tap(PAD_BACK);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    EXPECT_EQ(playlist->nbFamilles, 1);
}

TEST_F(NewPlaylist, PointerAndArrows_ChooseTheKey) {
    move(keyCell(13));
    EXPECT_EQ(playlist->keyUnderPointer, 13);
    tap(KEY_RIGHT);
    EXPECT_EQ(playlist->keyUnderPointer, 14) << "the pointer at rest does not choose again";
    tap(PAD_DOWN);
    EXPECT_EQ(playlist->keyUnderPointer, 24);
    typeKey(SDLK_SPACE, ' ', KEY_SPACE);
    EXPECT_EQ(playlist->newName, "y");
    move({320, 60});
    EXPECT_EQ(playlist->keyUnderPointer, -1);
    tap(PAD_CONFIRM);
    EXPECT_EQ(playlist->newName, "y");
}

}  // namespace
