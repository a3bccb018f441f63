// A storm of keys, clicks and controller buttons on every screen: the program stays inside its
// arrays, and a performer who lets go of everything finds home again. VELMORA_STORM_FRAMES makes it
// longer.
#include "draw/painter.h"
#include "faults/hands.h"
#include "layout/page_layout.h"
#include "support/seed.h"

namespace faults {

namespace {

constexpr int kFrames = 300;
constexpr int kEventsAFrame = 8;
// Then the hands are back on the screen that is meant.
constexpr int kFramesAVisit = 60;

struct ScreenCase {
    const char* name;
    void (*enter)(Hands& hands);  // from home
};

void enterOverMenu(Hands&) {
    all->state = STATE_MIX;
    all->subState = SUB_OVERMENU;
}

void enterMix(Hands& hands) {
    enterOverMenu(hands);
    hands.load();
}

void enterPanel(Hands& hands) {
    enterMix(hands);
    mix->showUI = 0;
    hands.tap(SDLK_TAB);
    EXPECT_EQ(mix->showUI, 1);
}

void enterEditor(Hands& hands) {
    hands.click(424, 122);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    playlist->editPage = page::BROWSE;
}

void enterNewPlaylist(Hands& hands) {
    enterEditor(hands);
    hands.click(20, 240);
}

void enterTracks(Hands& hands) {
    enterEditor(hands);
    hands.click(90, 240);
}

void enterPreview(Hands& hands) {
    enterEditor(hands);
    editor->select(page::RIGHT, 0);
    hands.click(150, 240);
}

void enterOptions(Hands& hands) {
    hands.click(200, 220);
    EXPECT_EQ(all->state, STATE_OPTIONS);
}

void enterController(Hands& hands) {
    enterOptions(hands);
    hands.click(20, 340);
    EXPECT_EQ(_options->page, 1);
}

constexpr ScreenCase kScreens[] = {
    {"home", [](Hands&) {}},         {"overMenu", enterOverMenu}, {"mix", enterMix},
    {"panel", enterPanel},           {"playlists", enterEditor},  {"newPlaylist", enterNewPlaylist},
    {"tracks", enterTracks},         {"preview", enterPreview},   {"options", enterOptions},
    {"controller", enterController},
};

class StateStorm : public StageTest, public ::testing::WithParamInterface<ScreenCase> {
protected:
    StateStorm() {
        std::filesystem::create_directories("userdata");
        _textureUI = loadPicture("data/textureUI.png");
        placeClip("rgba-all-360.m19", "alpha.m19");
        placeClip("rgb-all-360.m19", "plain.m19");
        placeClip("one-frame-8.m19", "live/small.m19");
        scripted().joysticks = 1;
        for (int entry = 0; entry < kPadEntries; ++entry) {
            keys->padButton[entry] = entry;
        }
    }
    void makeLists() {
        playlist->nbFamilles = 0;
        playlist->editFamille = 0;
        overMenu->selected = 0;
        addFamille("three", {"alpha.m19", "plain.m19", "gone.m19", "live/small.m19"});
        addFamille("none");
        addFamille(std::string(92, 'W'), std::vector<std::string>(51, "plain.m19"));
    }
    void visit(Hands& hands) {
        makeLists();
        printedBy([&] {
            if (!hands.goHome()) {
                return;
            }
            GetParam().enter(hands);
            for (int frame = 0; frame < kFramesAVisit; ++frame) {
                for (int event = 0; event < kEventsAFrame; ++event) {
                    hands.act();
                }
                runFrame();
                expectInside();
            }
            isExit = 1;  // home's last item ends the program
        });
    }
    static void expectInside() {
        for (const MixLayer& layer : mix->layer) {
            ASSERT_GE(layer.deck, 0);
            ASSERT_LT(layer.deck, kClipSlots);
            ASSERT_GE(layer.frame, 0);
        }
        ASSERT_GE(playlist->nbFamilles, 0);
        ASSERT_LE(playlist->nbFamilles, kPlaylists);
        ASSERT_GE(overMenu->selected, 0);
        ASSERT_LT(overMenu->selected, kPlaylists);
        ASSERT_LE(playlist->nbEntries, kExplorerRows);
        ASSERT_GE(_home->selected, 0);
        ASSERT_LT(_home->selected, kHomeItems);
    }

    const unsigned seed = chosenSeed();
};

TEST_P(StateStorm, RandomHands_StaysInsideAndFindsHome) {
    SCOPED_TRACE("VELMORA_SEED=" + std::to_string(seed));
    Hands hands(seed);
    const int frames = chosenCount("VELMORA_STORM_FRAMES", kFrames);
    for (int frame = 0; frame < frames && !HasFailure(); frame += kFramesAVisit) {
        visit(hands);
    }
    bool home = false;
    printedBy([&] { home = hands.goHome(); });
    EXPECT_TRUE(home) << "state " << all->state << ", " << all->subState;
    // It answers: down from the first item is the one below it.
    _home->selected = HOME_MIX;
    hands.tap(SDLK_DOWN);
    EXPECT_EQ(_home->selected, HOME_FULL_SCREEN);
}

std::string screenName(const ::testing::TestParamInfo<ScreenCase>& each) {
    return each.param.name;
}

INSTANTIATE_TEST_SUITE_P(Screens, StateStorm, ::testing::ValuesIn(kScreens), screenName);

}  // namespace

}  // namespace faults
