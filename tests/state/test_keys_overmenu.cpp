// The keys of the list of playlists over the mix.
#include "state/stage.h"

namespace {

class KeysOverMenu : public StageTest {
protected:
    KeysOverMenu() {
        all->state = STATE_MIX;
        all->subState = SUB_OVERMENU;
        placeClip("one-frame-8.m19", "a.m19");
        addFamille("one", {"a.m19"});
        addFamille("two", {"a.m19", "a.m19"});
        addFamille("three", {"a.m19"});
    }

    static std::string act(const std::vector<int>& pressed) {
        setKeys(pressed);
        return printedBy([] { keys->actionsOverMenu(); });
    }
};

TEST_F(KeysOverMenu, Load_StartsTheSelectedPlaylist) {
    for (const int slot : {KEY_X, PAD_CONFIRM}) {
        all->subState = SUB_OVERMENU;
        loadClip(5, "a.m19");
        playlist->loadSlot = 6;
        mix->mode = MODE_BLEND;
        mix->fade = 9;
        mix->layer[1] = {5, 3, 1};
        overMenu->selected = 1;
        EXPECT_EQ(act({slot}), "");  // the slots were emptied before, so none is destroyed
        EXPECT_EQ(playlist->currentFamille, 1);
        EXPECT_EQ(playlist->loading, 1);
        EXPECT_EQ(playlist->loadSlot, 0);
        EXPECT_EQ(playlist->loadTrack, 0);
        EXPECT_EQ(moxel[0].name, "a.m19");
        EXPECT_EQ(moxel[5].hasRAM, 0);
        EXPECT_EQ(moxel[5].state, CLIP_LOADING);
        EXPECT_EQ(mix->mode, MODE_TOP);
        EXPECT_EQ(mix->fade, 0);
        EXPECT_EQ(mix->layer[1].deck, 0);
        EXPECT_EQ(mix->layer[1].frame, 0);
        EXPECT_EQ(mix->layer[1].direction, 0);
        EXPECT_EQ(all->subState, SUB_PERFORMING);
        EXPECT_EQ(all->state, STATE_MIX);
    }
}

// The mix starts over, the filters stay as the performer left them.
TEST_F(KeysOverMenu, Load_LeavesTheFilters) {
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        _filters->slots[0][slot] = {slot, slot % 4, slot % 2, 100 + slot};
        _filters->slots[1][slot] = {9 - slot, 3 - slot % 4, 1 - slot % 2, 200 + slot};
    }
    _filters->selected = 7;
    overMenu->selected = 1;
    act({KEY_X});
    printedBy([] {
        for (int steps = 0; playlist->loading != 0 && steps < 100; ++steps) {
            runFrame();
        }
    });
    ASSERT_EQ(playlist->loadSlot, 2);
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        SCOPED_TRACE(slot);
        const FilterSlot& bottom = _filters->slots[0][slot];
        const FilterSlot& top = _filters->slots[1][slot];
        EXPECT_EQ(bottom.id, slot);
        EXPECT_EQ(bottom.dir, slot % 4);
        EXPECT_EQ(bottom.on, slot % 2);
        EXPECT_EQ(top.id, 9 - slot);
        EXPECT_EQ(top.dir, 3 - slot % 4);
        EXPECT_EQ(top.on, 1 - slot % 2);
    }
    EXPECT_EQ(_filters->slots[0][4].coef, 104);
    EXPECT_EQ(_filters->slots[1][4].coef, 204);
    EXPECT_EQ(_filters->selected, 7);
}

TEST_F(KeysOverMenu, LoadWithoutPlaylists_EndsAtOnce) {
    playlist->nbFamilles = 0;
    playlist->familles[0].nbTracks = 0;
    overMenu->selected = 0;
    act({KEY_X});
    EXPECT_EQ(playlist->loading, 0);
    EXPECT_EQ(playlist->loadDone, 1);
    EXPECT_EQ(all->subState, SUB_PERFORMING);
}

TEST_F(KeysOverMenu, Return_ClosesWithoutLoading) {
    overMenu->selected = 2;
    mix->mode = MODE_BLEND;
    act({KEY_RETURN});
    EXPECT_EQ(all->subState, SUB_PERFORMING);
    EXPECT_EQ(playlist->loading, 0);
    EXPECT_EQ(playlist->currentFamille, 0);
    EXPECT_EQ(mix->mode, MODE_BLEND);
}

TEST_F(KeysOverMenu, Down_StopsAtTheLast) {
    for (const int slot : {KEY_DOWN, PAD_DOWN}) {
        overMenu->selected = 0;
        for (const int expected : {1, 2, 2, 2}) {
            act({slot});
            EXPECT_EQ(overMenu->selected, expected);
        }
    }
}

TEST_F(KeysOverMenu, WithoutPlaylists_SelectionStaysAt0) {
    playlist->nbFamilles = 0;
    for (const int slot : {KEY_DOWN, PAD_DOWN, KEY_UP, PAD_UP}) {
        overMenu->selected = 0;
        act({slot});
        EXPECT_EQ(overMenu->selected, 0) << slot;
    }
}

TEST_F(KeysOverMenu, Up_StopsAtTheFirst) {
    for (const int slot : {KEY_UP, PAD_UP}) {
        overMenu->selected = 2;
        for (const int expected : {1, 0, 0}) {
            act({slot});
            EXPECT_EQ(overMenu->selected, expected);
        }
    }
}

TEST_F(KeysOverMenu, KeyAndControllerDown_OneStep) {
    act({KEY_DOWN, PAD_DOWN});
    EXPECT_EQ(overMenu->selected, 1);
}

// Down first, then up.
TEST_F(KeysOverMenu, DownAndUp_Cancel) {
    overMenu->selected = 1;
    act({KEY_DOWN, KEY_UP});
    EXPECT_EQ(overMenu->selected, 1);
    overMenu->selected = 2;  // down has no room, up has
    act({KEY_DOWN, KEY_UP});
    EXPECT_EQ(overMenu->selected, 1);
}

// The load takes the selection of before the step.
TEST_F(KeysOverMenu, LoadAndDown_LoadsTheOldSelection) {
    overMenu->selected = 0;
    act({KEY_X, KEY_DOWN});
    EXPECT_EQ(playlist->currentFamille, 0);
    EXPECT_EQ(overMenu->selected, 1);
}

TEST_F(KeysOverMenu, Home_EmptiesTheSlotsAndShowsThePointer) {
    for (const int slot : {KEY_Z, PAD_BACK}) {
        all->state = STATE_MIX;
        scripted().cursorCalls.clear();
        loadClip(0, "a.m19");
        playlist->loadSlot = 1;
        playlist->loading = 1;
        act({slot});
        EXPECT_EQ(all->state, STATE_HOME);
        EXPECT_EQ(all->subState, SUB_OVERMENU);
        EXPECT_EQ(playlist->loading, 0);
        EXPECT_EQ(playlist->loadSlot, 0);
        EXPECT_EQ(moxel[0].hasRAM, 0);
        EXPECT_EQ(moxel[0].state, CLIP_LOADING);
        EXPECT_EQ(scripted().cursorCalls, std::vector<int>{1});
    }
}

TEST_F(KeysOverMenu, HeldKeys_DoNotAct) {
    setKeys({}, {KEY_X, KEY_RETURN, KEY_DOWN, KEY_Z});
    keys->actionsOverMenu();
    EXPECT_EQ(all->state, STATE_MIX);
    EXPECT_EQ(all->subState, SUB_OVERMENU);
    EXPECT_EQ(overMenu->selected, 0);
    EXPECT_EQ(playlist->loading, 0);
}

TEST_F(KeysOverMenu, Mouse_DoesNothing) {
    setKeys({});
    keys->mouseClick = 1;
    for (int y = 0; y < 360; y += 10) {
        keys->mouseX = 100 - 320;
        keys->mouseY = y;
        keys->actionsOverMenu();
    }
    EXPECT_EQ(overMenu->selected, 0);
    EXPECT_EQ(all->subState, SUB_OVERMENU);
    EXPECT_EQ(playlist->loading, 0);
}

TEST_F(KeysOverMenu, Init_SelectsThePlaylistLoadedLast) {
    playlist->currentFamille = 2;
    overMenu->initOverMenu();
    EXPECT_EQ(overMenu->selected, 2);
}

}  // namespace
