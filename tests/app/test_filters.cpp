// The filters by their letters: each on each layer, alone and mixed, the whole window.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <functional>

#include "app/expected.h"
#include "app/filtered.h"
#include "app/pictures.h"
#include "app/stage.h"
#include "app/tiny_clip.h"

namespace {

using app::Shot;
using app::Stage;

constexpr unsigned long kLetters[] = {XK_q, XK_w, XK_e, XK_r, XK_t, XK_y, XK_u, XK_i, XK_o};
constexpr unsigned long kArrows[] = {XK_Up, XK_Right, XK_Down, XK_Left};  // directions 0 to 3
enum Letter { MIRROR, SCROLL, INVERT, BURNED, ZOOM, HUE, GAME_BOY, GLITCH, SNOW };

// Filter k + 1 on letter k, in the order of the names above.
std::string preferences() {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n\t<mode>0</mode>\n"
        "\t<topbar>0</topbar>\n\t<fps>0</fps>\n\t<res_w>1280</res_w>\n\t<res_h>720</res_h>\n";
    for (int id = 1; id <= 9; ++id) {
        text += "\t<filter>" + std::to_string(id) + "</filter>\n";
    }
    return text + "</all>\n";
}

// No tile of it is flat, so record numbers are tile numbers.
Shot noisePicture(uint32_t seed) {
    Shot picture = app::blackShot(640, 360);
    for (uint16_t& pixel : picture.pixels) {
        seed = seed * 1664525 + 1013904223;
        pixel = static_cast<uint16_t>(seed >> 12);
    }
    return picture;
}

using Effect = std::function<Shot(const Shot&, int direction)>;

class FilterKeys : public testing::Test {
protected:
    void start(const Shot& bottom, const Shot& top) {
        bottom_ = bottom;
        top_ = top;
        stage.folder.addUserFile("prefs.xml", preferences());
        stage.folder.addClip("top.m19", app::tinyClip({{top, {}}}));
        stage.folder.addClip("bottom.m19", app::tinyClip({{bottom, {}}}));
        stage.folder.addPlaylist("TWO", {"top.m19", "bottom.m19"});
        stage.folder.writePlaylists();
        stage.startMix(2);
        stage.tap(XK_Down);
        stage.tap(XK_Right);
        stage.tap(XK_Up);
        stage.expectShows(app::placed(top), "the top clip");
    }
    // With the letter held, so that what is tapped goes to the active layer's filter.
    void hold(Letter letter, const std::function<void()>& taps) {
        stage.press(kLetters[letter]);
        taps();
        stage.release(kLetters[letter]);
    }
    void toggle(Letter letter) {
        hold(letter, [&] { stage.tap(XK_BackSpace); });
    }
    void turn(Letter letter, int direction) {
        hold(letter, [&] { stage.tap(kArrows[direction]); });
    }
    void turnOn(Letter letter, int direction) {
        hold(letter, [&] {
            stage.tap(kArrows[direction]);
            stage.tap(XK_BackSpace);
        });
    }
    // Modes 0, 2 and 3 of these two layers.
    void expectMixes(const Shot& bottom, const Shot& top, const std::string& what) {
        stage.tap(XK_2);
        stage.expectShows(app::placed(app::blended(bottom, top)), what + ", blend");
        stage.tap(XK_5);
        stage.expectShows(app::placed(app::keyed(bottom, top)), what + ", key");
        stage.tap(XK_1);
        stage.expectShows(app::placed(top), what + ", top alone");
    }
    // In every direction on the top layer, the last of them is `direction`, and in that one on each
    // layer in every mode.
    void check(Letter letter, int direction, const Effect& effect) {
        hold(letter, [&] {
            stage.tap(XK_BackSpace);
            for (const int turns : {1, 2, 3, 4}) {
                const int each = (direction + turns) % 4;
                stage.tap(kArrows[each]);
                stage.expectShows(app::placed(effect(top_, each)),
                                  "direction " + std::to_string(each));
            }
        });
        expectMixes(bottom_, effect(top_, direction), "top layer");
        toggle(letter);
        stage.expectShows(app::placed(top_), "off again");
        stage.tap(XK_Down);
        turnOn(letter, direction);
        expectMixes(effect(bottom_, direction), top_, "bottom layer");
        toggle(letter);
        stage.tap(XK_Up);
    }

    Stage stage;
    Shot bottom_;
    Shot top_;
};

}  // namespace

TEST_F(FilterKeys, MirrorAndZoom_OnEachLayerAndInEveryDirection) {
    start(app::richPicture(3), app::keyPicture(4));
    check(MIRROR, 1, app::mirrored);
    check(ZOOM, 2, app::zoomed);
}

TEST_F(FilterKeys, InvertAndBurned_OnEachLayerAndInEveryDirection) {
    start(app::richPicture(5), app::keyPicture(6));
    check(INVERT, 0, [](const Shot& p, int) { return app::inverted(p); });
    check(BURNED, 3, app::burned);
}

TEST_F(FilterKeys, HueAndGameBoy_OnEachLayerAndInEveryDirection) {
    start(app::richPicture(7), app::keyPicture(8));
    check(HUE, 3, app::hued);
    check(GAME_BOY, 0, [](const Shot& p, int) { return app::gameBoyed(p); });
}

TEST_F(FilterKeys, Glitch_Direction2FlattensTheTilesAndTheOthersChangeNothing) {
    start(noisePicture(1), noisePicture(2));
    check(GLITCH, 2,
          [](const Shot& p, int direction) { return direction == 2 ? app::flatByNumber() : p; });
}

// Held with Space the picture stands still, scrolled by an even number of pixels.
TEST_F(FilterKeys, Scroll_OnEachLayerMovesAndHoldsStill) {
    start(app::richPicture(9), app::richPicture(10));
    for (const int direction : {1, 2, 3, 0}) {
        turnOn(SCROLL, direction);
        stage.passPictures(10);
        stage.press(XK_space);
        const Shot held = stage.look();
        stage.expectKeeps(held, 5, "held");
        Shot seen = app::blackShot(640, 360);
        for (int y = 0; y < 360; ++y) {
            for (int x = 0; x < 640; ++x) {
                seen.at(x, y) = held.at(2 * x, 2 * y);
            }
        }
        EXPECT_EQ(app::placed(seen), held);
        EXPECT_GT(app::scrollOffsetOf(top_, seen, direction), 0) << "direction " << direction;
        stage.release(XK_space);
        stage.await([&](const Shot& shot) { return !(shot == held); }, "moving on");
        toggle(SCROLL);
        stage.expectShows(app::placed(top_), "off again");
    }
    // On the bottom layer: the top one stands still, half half shows both.
    stage.tap(XK_Down);
    turnOn(SCROLL, 1);
    stage.tap(XK_6);
    const Shot first = stage.look();
    const Shot later =
        stage.await([&](const Shot& shot) { return !(shot == first); }, "the bottom layer moves");
    for (int x = 0; x < 640; ++x) {
        ASSERT_EQ(first.at(x, 300), later.at(x, 300)) << "the top layer's half stands still";
    }
}

// Grey 15, 31, 15: a table of 0 to 19 makes red and blue 5 to 24 and green 11 to 49; in direction 3
// it repeats every seven pixels.
TEST_F(FilterKeys, Snow_StaysInItsBoundsAndRepeatsWithItsTable) {
    constexpr uint16_t kGrey = 15 << 11 | 31 << 5 | 15;
    start(app::flatPicture(0), app::flatPicture(kGrey));
    turnOn(SNOW, 3);
    const Shot snow = stage.await(
        [&](const Shot& shot) { return !(shot == app::placed(app::flatPicture(kGrey))); }, "snow");
    std::vector<uint16_t> pixels;
    for (int y = 0; y < 360; ++y) {
        for (int x = 0; x < 640; ++x) {
            const uint16_t p = snow.at(2 * x, 2 * y);
            const int change = (p >> 11) - 15;
            ASSERT_GE(change, -10);
            ASSERT_LE(change, 9);
            ASSERT_EQ((p >> 5 & 63) - 31, 2 * change);
            ASSERT_EQ((p & 31) - 15, change);
            pixels.push_back(p);
        }
    }
    for (size_t i = 7; i < pixels.size(); ++i) {
        ASSERT_EQ(pixels[i], pixels[i - 7]) << "pixel " << i;
    }
    stage.await([&](const Shot& shot) { return !(shot == snow); }, "fresh snow in the next frame");
    // On the bottom layer under a top layer that lets it through.
    toggle(SNOW);
    stage.tap(XK_Down);
    turnOn(SNOW, 3);
    stage.expectShows(app::placed(app::flatPicture(kGrey)), "mode 0 shows the top layer alone");
    stage.tap(XK_2);
    const Shot plain = app::placed(app::blended(app::flatPicture(0), app::flatPicture(kGrey)));
    stage.await([&](const Shot& shot) { return !(shot == plain); }, "snow under the top layer");
}

// The letters choose; the arrows turn the filter and leave layers and clips alone.
TEST_F(FilterKeys, ArrowsWithALetter_DoNotChangeLayerOrClip) {
    start(app::richPicture(12), app::richPicture(13));
    turn(HUE, 3);
    turn(HUE, 2);
    turn(HUE, 1);
    stage.expectShows(app::placed(top_), "still the top clip");
    toggle(HUE);
    stage.expectShows(app::placed(app::hued(top_, 1)), "the top layer is still the active one");
}
