// One turn of the program: when it runs, what it draws and shows.
#include "mainloop.h"

#include "state/stage.h"

namespace {

constexpr uint16_t kMark = 0x1234;

class MainLoop : public StageTest {
protected:
    static int callAt(uint32_t ticks) {
        scripted().ticks = ticks;
        return mainLoop();
    }
    static size_t framesShown() { return scripted().updated.size(); }
};

TEST_F(MainLoop, FirstFrame_NotBefore39Ms) {
    for (const uint32_t ticks : {0u, 1u, 37u, 38u}) {
        EXPECT_EQ(callAt(ticks), 1);
        EXPECT_EQ(framesShown(), 0u);
    }
    EXPECT_EQ(callAt(39), 1);
    EXPECT_EQ(framesShown(), 1u);
}

TEST_F(MainLoop, FrameNotDue_NothingIsReadOrChanged) {
    callAt(1000);
    scripted().eventsAsked = scripted().keyStatesAsked = 0;
    scripted().events = {plainEvent(SDL_QUIT)};
    const int counter = _intro->counter;
    EXPECT_EQ(callAt(1038), 1);
    EXPECT_EQ(scripted().eventsAsked, 0);
    EXPECT_EQ(scripted().keyStatesAsked, 0);
    EXPECT_EQ(framesShown(), 1u);
    EXPECT_EQ(_intro->counter, counter);
    EXPECT_EQ(tempsActuel, 1038);
    EXPECT_EQ(tempsPrecedent, 1000);
    EXPECT_EQ(isExit, 1);
    EXPECT_EQ(callAt(1039), 0);
    EXPECT_EQ(framesShown(), 2u);
}

TEST_F(MainLoop, FrameNotDue_SleepsUntilItIs) {
    callAt(1000);
    EXPECT_TRUE(scripted().delays.empty());
    callAt(1000);
    callAt(1007);
    callAt(1038);
    EXPECT_EQ(scripted().delays, (std::vector<uint32_t>{39, 32, 1}));
    callAt(1039);
    EXPECT_EQ(scripted().delays.size(), 3u);
}

TEST_F(MainLoop, FrameNotDue_ReturnsIsExit) {
    isExit = 0;
    EXPECT_EQ(callAt(10), 0);
}

TEST_F(MainLoop, FrameRate_ThousandByTheInterval) {
    callAt(100);
    EXPECT_EQ(fps, 10);
    callAt(139);
    EXPECT_EQ(fps, 25);
    callAt(189);
    EXPECT_EQ(fps, 20);
    callAt(2000);
    EXPECT_EQ(fps, 0);
    EXPECT_EQ(tempsPrecedent, 2000);
}

// The network sets the clock of a machine that has none: 20 s back in mid-show.
TEST_F(MainLoop, ClockSetBack_FrameRunsAndThePaceGoesOn) {
    callAt(30000);
    callAt(30039);
    EXPECT_EQ(callAt(10040), 1);
    EXPECT_EQ(framesShown(), 3u);
    EXPECT_EQ(tempsPrecedent, 10040);
    EXPECT_EQ(fps, 25);  // as of the frame before
    callAt(10078);
    EXPECT_EQ(framesShown(), 3u);
    callAt(10079);
    EXPECT_EQ(framesShown(), 4u);
}

TEST_F(MainLoop, ClockSetBack_KeysAndClosingAreHeard) {
    callAt(30000);
    scripted().events = {plainEvent(SDL_QUIT)};
    EXPECT_EQ(callAt(10000), 0);
}

TEST_F(MainLoop, Quit_FrameIsFinishedAndShown) {
    scripted().events = {plainEvent(SDL_QUIT)};
    EXPECT_EQ(runFrame(), 0);
    EXPECT_EQ(framesShown(), 1u);
    EXPECT_EQ(_intro->counter, 49);
}

TEST_F(MainLoop, quirk_speed_keys_do_not_change_the_pace) {
    all->state = STATE_MIX;
    all->subState = SUB_PERFORMING;
    scripted().keysDown[SDLK_x] = 1;
    scripted().keysDown[SDLK_UP] = 1;
    callAt(1000);
    callAt(1039);
    ASSERT_EQ(mix->targetFps, 40);  // x is down for more than one frame
    callAt(1039 + 38);              // at 40 frames a second this would be due
    EXPECT_EQ(framesShown(), 2u);
    callAt(1039 + 39);
    EXPECT_EQ(framesShown(), 3u);
    scripted().keysDown[SDLK_DOWN] = 1;
    callAt(2000);
    ASSERT_EQ(mix->targetFps, 10);
    callAt(2039);  // at 10 frames a second it would not
    EXPECT_EQ(framesShown(), 5u);
}

TEST_F(MainLoop, DecksOfTheMix_FollowTheLoader) {
    all->state = STATE_INTRO;
    playlist->loadSlot = 7;
    runFrame();
    EXPECT_EQ(mix->nbDecks, 7);
}

TEST_F(MainLoop, Intro_HomeAfter50Frames) {
    for (int frame = 1; frame <= 49; ++frame) {
        runFrame();
        ASSERT_EQ(all->state, STATE_INTRO) << frame;
    }
    runFrame();
    EXPECT_EQ(all->state, STATE_HOME);
    EXPECT_EQ(_intro->counter, 0);
    // The 50th frame still shows the intro, faded to black; the next one the menu.
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1280, 720, 0), 1280 * 720);
    runFrame();
    EXPECT_LT(countPixels(screen[1], 0, 0, 1280, 720, 0), 1280 * 720);
}

TEST_F(MainLoop, EveryState_ShowsTheWholeVideoSurfaceOnce) {
    for (const int state : {0, 1, 2, 3, 4, 5, 9}) {
        all->state = state;
        scripted().updated.clear();
        runFrame();
        EXPECT_EQ(scripted().updated, std::vector<SDL_Surface*>{screen[1]}) << state;
    }
}

TEST_F(MainLoop, IntroHomeAndPlaylists_ShowTheWorkSurface) {
    for (const int state : {STATE_INTRO, STATE_HOME, STATE_PLAYLISTS}) {
        all->state = state;
        all->shown = state;  // not just entered
        _intro->counter = 40;
        fillAll(screen[0], 0);
        setPixel(screen[0], 3, 700, 0xFFFF);  // outside every picture, full already
        fillAll(screen[1], kMark);
        runFrame();
        EXPECT_EQ(pixelAt(screen[1], 3, 700), 0xFFFF) << state;
        EXPECT_TRUE(samePixels(screen[1], screen[0])) << state;
    }
}

TEST_F(MainLoop, MixAndOptions_DrawStraightIntoTheVideoSurface) {
    for (const int state : {STATE_MIX, STATE_OPTIONS}) {
        all->state = state;
        fillAll(screen[0], kMark);
        const Picture before = copyOf(screen[0]);
        // The options' slot boxes leave their fill on the work surface.
        for (int slot = 0; state == STATE_OPTIONS && slot < 9; ++slot) {
            fill(before.get(), 330 + 60 * slot, 380, 44, 44, 0);
        }
        runFrame();
        EXPECT_TRUE(samePixels(screen[0], before.get())) << state;
        EXPECT_EQ(countPixels(screen[1], 0, 0, 1280, 720, kMark), 0) << state;
    }
}

// A mark beside the picture, on both surfaces, stands for what the screen before left there.
TEST_F(MainLoop, EnteredHomeAndPlaylists_NothingOfTheScreenBefore) {
    for (const int state : {STATE_HOME, STATE_PLAYLISTS}) {
        for (const int before : {STATE_INTRO, STATE_HOME, STATE_PLAYLISTS, STATE_MIX}) {
            if (before == state) {
                continue;
            }
            all->state = before;
            runFrame();
            all->applyResolution(1024, 768);
            updateResolution();
            setPixel(screen[0], 3, 700, kMark);
            setPixel(screen[1], 3, 760, kMark);
            all->state = state;
            runFrame();
            EXPECT_EQ(pixelAt(screen[1], 3, 700), 0) << before << " to " << state;
            EXPECT_EQ(pixelAt(screen[1], 3, 760), 0) << before << " to " << state;
        }
    }
}

TEST_F(MainLoop, ScreenThatStays_IsNotClearedAgain) {
    all->state = STATE_HOME;
    runFrame();
    setPixel(screen[0], 3, 700, kMark);
    runFrame();
    EXPECT_EQ(pixelAt(screen[1], 3, 700), kMark);
}

TEST_F(MainLoop, State5_ShowsTheWorkSurfaceUnchanged) {
    all->state = 5;
    fillAll(screen[0], kMark);
    setPixel(screen[0], 17, 23, 0xABCD);
    const Picture before = copyOf(screen[0]);
    runFrame();
    EXPECT_TRUE(samePixels(screen[0], before.get()));
    EXPECT_TRUE(samePixels(screen[1], before.get()));
}

// A key takes effect in the drawing of the same frame.
TEST_F(MainLoop, StateChange_DrawnInTheSameFrame) {
    all->state = STATE_HOME;
    all->subState = SUB_PERFORMING;
    scripted().keysDown[SDLK_x] = 1;
    fillAll(screen[1], kMark);
    runFrame();
    EXPECT_EQ(all->state, STATE_MIX);
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1280, 720, 0), 1280 * 720);
}

TEST_F(MainLoop, FrameRate_ShownInTheMixWithThePreference) {
    all->state = STATE_MIX;
    all->subState = SUB_PERFORMING;
    _options->fps = 1;
    const Picture expected = newPicture(1280, 720);
    Lettering().paint(expected.get(), "25", 20, 20, 0xFFFFFF, 1);
    callAt(1000);
    callAt(1040);
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
    EXPECT_GT(countPixels(expected.get(), 0, 0, 100, 100, 0xFFFF), 10);
}

TEST_F(MainLoop, FrameRate_ShownOverTheOverMenuToo) {
    all->state = STATE_MIX;
    all->subState = SUB_OVERMENU;
    addFamille("one");
    runFrame();
    runFrame();
    const Picture expected = copyOf(screen[1]);
    Lettering().paint(expected.get(), "25", 20, 20, 0xFFFFFF, 1);
    _options->fps = 1;
    runFrame();
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
}

TEST_F(MainLoop, FrameRate_NotShownWithoutThePreference) {
    all->state = STATE_MIX;
    all->subState = SUB_PERFORMING;
    runFrame();
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1280, 720, 0), 1280 * 720);
}

TEST_F(MainLoop, FrameRate_NotShownOnOtherScreens) {
    for (const int state : {1, 2, 4, 5}) {
        all->state = state;
        _options->fps = 0;
        runFrame();
        const Picture without = copyOf(screen[1]);
        _options->fps = 1;
        runFrame();
        const int differing = samePixels(screen[1], without.get()) ? 0 : 1;
        // The options screen may show the preference itself, but not at the digits' place.
        Picture corner = newPicture(80, 20);
        Picture cornerBefore = newPicture(80, 20);
        SDL_Rect place = {20, 20, 80, 20};
        SDL_BlitSurface(screen[1], &place, corner.get(), nullptr);
        SDL_BlitSurface(without.get(), &place, cornerBefore.get(), nullptr);
        EXPECT_TRUE(samePixels(corner.get(), cornerBefore.get())) << state;
        if (state != STATE_OPTIONS) {
            EXPECT_EQ(differing, 0) << state;
        }
    }
}

}  // namespace
