// The bridge and the program's own handlers: what the bridge has in mind is what the program does.
#include "state/stage.h"

#include <random>

#include "common/geometry.h"
#include "tools/control/bridge/bridge.h"

namespace {

using control::Action;
using control::Bridge;
using control::Key;
using control::Quantum;
using control::Screen;
using control::StageModel;
using control::Time;

constexpr int kFrameMs = 39;

SDLKey symbolOf(Key key) {
    constexpr SDLKey kSymbols[control::kKeys] = {
        SDLK_q,     SDLK_w,    SDLK_e,    SDLK_r,   SDLK_t,     SDLK_y,         SDLK_u,
        SDLK_i,     SDLK_o,    SDLK_a,    SDLK_s,   SDLK_z,     SDLK_x,         SDLK_f,
        SDLK_1,     SDLK_2,    SDLK_3,    SDLK_4,   SDLK_5,     SDLK_6,         SDLK_UP,
        SDLK_RIGHT, SDLK_DOWN, SDLK_LEFT, SDLK_TAB, SDLK_SPACE, SDLK_BACKSPACE, SDLK_RETURN};
    return kSymbols[control::indexOf(key)];
}

// Keys are the program's at once, the mouse with the next frame that asks for events.
class HandsOnSdl : public control::Hands {
public:
    void key(Key which, bool down) override { scripted().keysDown[symbolOf(which)] = down ? 1 : 0; }
    void button(bool down) override {
        const SDL_Event event =
            mouseButton(down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP, at_.x, at_.y);
        scripted().events.push_back(event);
    }
    void point(int x, int y) override {
        const Point picture = pictureOffset(all->appW, all->appH);
        at_ = {x + picture.x, y + picture.y};
        scripted().events.push_back(mouseMoved(at_.x, at_.y));
    }
    bool reachesVelmora() override { return true; }
    std::string road() const override { return "the program's handlers"; }

private:
    Point at_{};
};

class ControlOnStage : public StageTest {
protected:
    ControlOnStage() {
        testing::internal::CaptureStdout();  // the loader names each clip
        placeClip("block-16-200.m19", "a.m19");
        placeClip("block-16-200.m19", "b.m19");
        addFamille("one", {"a.m19", "b.m19", "a.m19"});
        addFamille("two", {"b.m19", "a.m19"});
        addFamille("gone", {"gone.m19"});
        addFamille("four", {"a.m19", "b.m19", "a.m19", "b.m19", "a.m19"});
        for (const Famille& each : std::span(playlist->familles, 4)) {
            files.tracks.push_back(each.nbTracks);
        }
        for (int slot = 0; slot < kFilterSlots; ++slot) {
            const int id = slot == 8 ? FILTER_MIRROR : slot + 1;  // MIRROR is on two letters
            files.filters[static_cast<size_t>(slot)] = id;
            _filters->slots[0][slot].id = id;
            _filters->slots[1][slot].id = id;
        }
        all->state = STATE_HOME;
        bridge->stageBegins(now());
        pass(3000);
    }

    ~ControlOnStage() override {
        const std::string printed = testing::internal::GetCapturedStdout();
        if (HasFailure()) {
            fputs(printed.c_str(), stdout);
        }
    }

    Time now() const { return Time{} + std::chrono::hours(1) + control::milliseconds(ms_); }

    void frame() {
        mix->nbDecks = playlist->loadSlot;
        keys->updateGKeys();
        keys->actions();
        if (all->state == STATE_MIX) {
            playlist->loopLoadPlaylist();
        }
    }

    // Milliseconds with their frames, which drift against the bridge's steps.
    void pass(int ms) {
        for (const int end = ms_ + ms; ms_ < end; ++ms_) {
            while (next_ <= now()) {
                next_ = bridge->advance(now());
            }
            if (ms_ % kFrameMs == 0) {
                frame();
            }
        }
    }

    std::string act(const std::string& name, std::optional<double> value = std::nullopt) {
        const std::optional<Action> action = control::actionNamed(name);
        EXPECT_TRUE(action) << name;
        const std::string why = bridge->act(*action, value, Quantum::NOW, now());
        next_ = bridge->advance(now());
        return why;
    }

    // The same, and everything is played.
    void play(const std::string& name, std::optional<double> value = std::nullopt) {
        EXPECT_EQ(act(name, value), "") << name;
        finish();
    }

    void finish() {
        pass(3000);  // a playlist is loaded then
        for (int i = 0; i < 10000 && !bridge->idle(); ++i) {
            pass(100);
        }
        pass(200);
    }

    std::function<const control::StageFiles&()> filesNow() {
        return [this]() -> const control::StageFiles& { return files; };
    }

    void expectSame(const std::string& when) {
        const StageModel& idea = bridge->stage();
        const Screen shown = all->state == STATE_HOME        ? Screen::HOME
                             : all->subState == SUB_OVERMENU ? Screen::LIST
                                                             : Screen::MIX;
        EXPECT_EQ(idea.screen, shown) << when;
        EXPECT_EQ(idea.active, mix->activeLayer) << when;
        EXPECT_EQ(idea.mode, mix->mode) << when;
        EXPECT_EQ(idea.panel, mix->showUI != 0) << when;
        EXPECT_EQ(idea.selected, overMenu->selected) << when;
        for (size_t layer = 0; layer < kLayers; ++layer) {
            EXPECT_EQ(idea.backwards[layer], mix->layer[layer].direction == PLAY_BACKWARD) << when;
            for (size_t slot = 0; slot < kFilterSlots; ++slot) {
                const FilterSlot& real = _filters->slots[layer][slot];
                EXPECT_EQ(idea.filters[layer][slot].on, real.on != 0) << when << slot;
                EXPECT_EQ(idea.filters[layer][slot].direction, real.dir) << when << slot;
            }
        }
    }

    HandsOnSdl hands;
    control::StageFiles files;
    std::optional<Bridge> bridge{std::in_place, hands, control::ControlMap{}, filesNow(), 1U};

private:
    int ms_ = 0;
    Time next_{};
};

}  // namespace

TEST_F(ControlOnStage, Playlist_IsLoadedFromTheMenu) {
    play("playlist 4");
    EXPECT_EQ(playlist->currentFamille, 3);
    EXPECT_EQ(all->state, STATE_MIX);
    EXPECT_EQ(playlist->loadSlot, 5);
    expectSame("from the menu");
    play("playlist 2");
    EXPECT_EQ(playlist->currentFamille, 1);
    expectSame("from the mix");
}

TEST_F(ControlOnStage, Clips_ChangeOnTheirLayers) {
    play("playlist 1");
    play("top.next");
    play("bottom.previous");
    EXPECT_EQ(mix->layer[1].deck, 1);
    EXPECT_EQ(mix->layer[0].deck, 2);
    EXPECT_EQ(mix->activeLayer, 1);
    play("bottom");
    play("next");
    EXPECT_EQ(mix->layer[0].deck, 0);
    play("top.next");
    EXPECT_EQ(mix->layer[1].deck, 2);
    EXPECT_EQ(mix->activeLayer, 0);
    expectSame("clips");
}

TEST_F(ControlOnStage, FastPresses_AreNeitherLostNorMerged) {
    play("playlist 4");
    for (int i = 0; i < 7; ++i) {
        act("next");
        pass(5);
    }
    finish();
    EXPECT_EQ(mix->layer[1].deck, 2);
}

TEST_F(ControlOnStage, FilterThenClip_TheArrowIsTheClips) {
    play("playlist 1");
    act("filter.invert.toggle");
    act("next");
    act("filter.hue.right");
    act("next");
    finish();
    EXPECT_EQ(mix->layer[1].deck, 2);
    EXPECT_EQ(_filters->slots[1][2].on, 1);
    EXPECT_EQ(_filters->slots[1][5].dir, 1);
    expectSame("filters");
}

TEST_F(ControlOnStage, Flash_And_Fade_And_Hold) {
    play("playlist 1");
    act("flash");
    pass(100);
    EXPECT_EQ(mix->flash, kFlashLevels);
    act("fade", 1);
    pass(1000);
    EXPECT_EQ(mix->fade, kFadeLevels);
    act("fade", 0);
    pass(1000);
    EXPECT_EQ(mix->fade, 0);
    act("hold", 1);
    pass(100);
    EXPECT_EQ(mix->hold, 1);
    act("hold", 0);
    pass(200);
    EXPECT_EQ(mix->hold, 0);
}

TEST_F(ControlOnStage, PanelUnderTheFade_ComesWhenItIsLetGo) {
    play("playlist 1");
    act("fade", 1);
    pass(300);
    act("panel");
    pass(500);
    EXPECT_EQ(mix->showUI, 0);
    act("fade", 0);
    finish();
    EXPECT_EQ(mix->showUI, 1);
    expectSame("panel");
}

TEST_F(ControlOnStage, FadeOnAFilterKeyOfW_GoesOnAfterIt) {
    play("playlist 1");
    act("fade", 1);
    pass(1000);
    play("filter.scroll.toggle");
    pass(1000);
    EXPECT_EQ(mix->fade, kFadeLevels);
    EXPECT_EQ(_filters->slots[1][1].on, 1);
}

TEST_F(ControlOnStage, Scrub_FollowsTheKnob) {
    play("playlist 1");
    moxel[0].frameCount = 200;
    mix->layer[1].frame = 50;
    act("scrub", 0.25);
    pass(200);
    EXPECT_EQ(mix->layer[1].frame, 50);
    act("scrub", 0.5);
    pass(100);
    EXPECT_EQ(mix->layer[1].frame, 82);  // 160 pixels, five a frame
    act("scrub", 0.125);
    pass(100);
    EXPECT_EQ(mix->layer[1].frame, 34);
    pass(1000);
    EXPECT_EQ(mix->scrubbing, 0);
}

TEST_F(ControlOnStage, ScrubOfTheOtherLayer_ReturnsWhenItRests) {
    play("playlist 1");
    play("bottom.next");
    moxel[1].frameCount = 200;
    mix->layer[0].frame = 10;
    act("bottom.scrub", 0.0);
    pass(300);
    act("bottom.scrub", 0.5);
    pass(100);
    EXPECT_EQ(mix->activeLayer, 0);
    EXPECT_EQ(mix->layer[0].frame, 74);
    pass(1500);
    EXPECT_EQ(mix->activeLayer, 1);
    expectSame("scrub");
}

TEST_F(ControlOnStage, ActionDuringAScrubOfTheOtherLayer_IsTheActiveLayers) {
    play("playlist 1");
    play("bottom.next");
    act("bottom.scrub", 0.5);
    pass(300);
    act("next");
    finish();
    EXPECT_EQ(mix->layer[1].deck, 1);
    EXPECT_EQ(mix->layer[0].deck, 1);
    EXPECT_EQ(mix->activeLayer, 1);
    expectSame("action during a scrub");
}

TEST_F(ControlOnStage, Home_FromMixAndListAndUnsure) {
    play("playlist 1");
    play("home");
    EXPECT_EQ(all->state, STATE_HOME);
    expectSame("home");
    play("list");
    EXPECT_EQ(all->subState, SUB_OVERMENU);
    expectSame("list");
    play("home");
    EXPECT_EQ(all->state, STATE_HOME);
}

TEST_F(ControlOnStage, BridgeStartedLate_FindsHomeFromAnyScreen) {
    for (const int shown : {STATE_HOME, STATE_MIX}) {
        for (const int part : {SUB_PERFORMING, SUB_OVERMENU}) {
            all->state = shown;
            all->subState = part;
            bridge.emplace(hands, control::ControlMap{}, filesNow(), 1U);
            play("home");
            EXPECT_EQ(all->state, STATE_HOME) << shown << part;
            if (shown == STATE_HOME && part == SUB_PERFORMING) {
                continue;  // the menu is entered from the list alone
            }
            all->state = shown;
            all->subState = part;
            bridge.emplace(hands, control::ControlMap{}, filesNow(), 1U);
            play("playlist 2");
            EXPECT_EQ(all->state, STATE_MIX) << shown << part;
            EXPECT_EQ(playlist->currentFamille, 1) << shown << part;
            expectSame("a playlist where the screen was unsure");
            playlist->currentFamille = 0;
        }
    }
}

TEST_F(ControlOnStage, ThousandRandomActions_LeaveTheIdeaEqualToTheStage) {
    std::vector<std::string> names;
    for (const std::string& name : control::actionNames()) {
        if (name.find('N') == std::string::npos && name != "fullscreen" && name != "tap" &&
            name != "beat.stop") {
            names.push_back(name);
        }
    }
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&](size_t n) { return static_cast<size_t>(random() % n); };
        play("playlist 1");
        for (int i = 0; i < 1000; ++i) {
            const size_t kind = below(60);
            if (kind == 0 || bridge->stage().screen != Screen::MIX) {
                act("playlist " + std::to_string(1 + below(4)));
            } else {
                const std::string name = names[below(names.size())];
                const bool plain = name.find("scrub") == std::string::npos && below(2) == 0;
                act(name, plain ? std::nullopt : std::optional(static_cast<double>(below(5)) / 4));
            }
            pass(50);
        }
        act("fade", 0);
        act("hold", 0);
        finish();
        expectSame("seed " + std::to_string(seed));
        if (HasFailure()) {
            return;
        }
    }
}
