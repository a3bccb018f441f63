// The six mixing modes: the whole window, pixel for pixel.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include "app/expected.h"
#include "app/pictures.h"
#include "app/stage.h"
#include "app/tiny_clip.h"

namespace {

using app::Screen;
using app::Shot;
using app::Stage;

// Four clips of one frame: two full of fields, one for the colour key, one with alpha.
struct Clips {
    Shot first = app::richPicture(11);
    Shot second = app::richPicture(77);
    Shot holes = app::keyPicture(5);
    Shot ghost = app::richPicture(140);
    std::vector<uint8_t> ghostAlpha = app::allAlphaLevels(9);
};

enum Deck { FIRST, SECOND, HOLES, GHOST, DECKS };

void startWith(Stage& stage, const Clips& clips) {
    stage.folder.addClip("first.m19", app::tinyClip({{clips.first, {}}}));
    stage.folder.addClip("second.m19", app::tinyClip({{clips.second, {}}}));
    stage.folder.addClip("holes.m19", app::tinyClip({{clips.holes, {}}}));
    stage.folder.addClip("ghost.m19", app::tinyClip({{clips.ghost, clips.ghostAlpha}}, true));
    stage.folder.addPlaylist("FOUR", {"first.m19", "second.m19", "holes.m19", "ghost.m19"});
    stage.folder.writePlaylists();
    stage.startMix(DECKS);
}

class Modes : public testing::Test {
protected:
    void start(Screen screen) {
        screen_ = screen;
        stage_ = std::make_unique<Stage>(screen);
        startWith(*stage_, clips_);
    }
    // Moves the active layer's deck forward.
    void forward(int decks) {
        for (int i = 0; i < decks; ++i) {
            stage_->tap(XK_Right);
        }
    }
    void expectMode(unsigned long key, const Shot& picture, const char* what) {
        stage_->tap(key);
        stage_->expectShows(app::placed(picture, screen_), what);
    }
    void expectAllModes(const Shot& bottom, const Shot& top, const Shot& key) {
        expectMode(XK_1, top, "top alone");
        expectMode(XK_2, app::blended(bottom, top), "blend");
        expectMode(XK_3, app::added(bottom, top), "add");
        expectMode(XK_4, app::multiplied(bottom, top), "multiply");
        expectMode(XK_5, key, "key");
        expectMode(XK_6, app::halves(bottom, top), "half half");
    }
    Stage& stage() { return *stage_; }

    Clips clips_;

private:
    Screen screen_;
    std::unique_ptr<Stage> stage_;
};

}  // namespace

TEST_F(Modes, TwoOpaqueClips_EveryModeIsExact) {
    start({});
    stage().expectShows(app::placed(clips_.first), "the first clip");
    forward(1);
    expectAllModes(clips_.first, clips_.second, app::keyed(clips_.first, clips_.second));
    // The other way round: first on top of second.
    stage().tap(XK_Down);
    forward(1);
    stage().tap(XK_Up);
    stage().tap(XK_Left);
    expectAllModes(clips_.second, clips_.first, app::keyed(clips_.second, clips_.first));
}

TEST_F(Modes, ColourKeyClipOnTop_OnlyPlainBlackIsTransparent) {
    start({});
    forward(HOLES);
    expectAllModes(clips_.first, clips_.holes, app::keyed(clips_.first, clips_.holes));
}

TEST_F(Modes, AlphaClipOnTop_KeyMixesByEveryLevel) {
    start({});
    forward(GHOST);
    const Shot key = app::keyedByAlpha(clips_.first, clips_.ghost, clips_.ghostAlpha);
    expectAllModes(clips_.first, clips_.ghost, key);
    // Below, its alpha has no say.
    stage().tap(XK_Left);
    stage().tap(XK_Down);
    stage().tap(XK_Left);
    stage().tap(XK_5);
    stage().expectShows(app::placed(app::keyed(clips_.ghost, clips_.holes)), "alpha clip below");
}

TEST_F(Modes, SameClipOnBothLayers_BottomKeepsWhatItShowedLast) {
    start({});
    // The second clip is drawn on the bottom layer while the first is on top.
    stage().tap(XK_2);
    stage().tap(XK_Down);
    forward(1);
    stage().expectShows(app::placed(app::blended(clips_.second, clips_.first)), "two clips");
    // Now the first on both: the bottom one is not drawn any more.
    stage().tap(XK_Left);
    expectAllModes(clips_.second, clips_.first, app::keyed(clips_.second, clips_.first));
}

TEST_F(Modes, Composite480_PictureIsCentredOnBlack) {
    start({720, 480});
    forward(1);
    expectAllModes(clips_.first, clips_.second, app::keyed(clips_.first, clips_.second));
}

TEST_F(Modes, Composite576_PictureIsCentredOnBlack) {
    start({720, 576});
    forward(1);
    expectAllModes(clips_.first, clips_.second, app::keyed(clips_.first, clips_.second));
}

// 121 spare rows: the picture starts half a row further right and wraps into the next row.
TEST_F(Modes, CompositeOddHeight_PictureIsShiftedByHalfARow) {
    start({720, 481});
    forward(1);
    expectAllModes(clips_.first, clips_.second, app::keyed(clips_.first, clips_.second));
}

// The window is smaller than the display and stays at the picture's size.
TEST_F(Modes, LargerDisplay_WindowShowsTheSamePixels) {
    start({1920, 1080});
    forward(1);
    expectAllModes(clips_.first, clips_.second, app::keyed(clips_.first, clips_.second));
}
