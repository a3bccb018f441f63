// The display's options by mouse: set, saved, found again after a restart, and used.
#include <X11/keysym.h>

#include "app/expected.h"
#include "app/filtered.h"
#include "app/options_pages.h"
#include "app/pictures.h"
#include "app/tiny_clip.h"

namespace {

using app::Place;
using app::Shot;

constexpr uint16_t kPaper = 0x18C3;  // of the playlists' pages

// A display that has room for both sizes.
class DisplayOptions : public app::OptionsPages {
protected:
    DisplayOptions() : OptionsPages({1280, 1024}) {
        stage.folder.addClip("one.m19", app::tinyClip({{one, {}}}));
        // Several frames alike: the white line over the picture grows with them.
        stage.folder.addClip("two.m19",
                             app::tinyClip({{two, {}}, {two, {}}, {two, {}}, {two, {}}}));
        stage.folder.addPlaylist("TWO", {"two.m19", "one.m19"});
        stage.folder.writePlaylists();
    }
    bool checked(const Shot& shot, Place checkBox) {
        return at(shot, {checkBox.x + 12, checkBox.y + 12}) == app::kNames;
    }
    void expectSize(int width, int height) {
        const auto has = [&] {
            const app::WindowPlace place = stage.window();
            return place.width == width && place.height == height;
        };
        EXPECT_TRUE(app::waitUntil(has)) << stage.window().width << " x " << stage.window().height;
    }
    // 1024 x 768: the middle 512 columns of the picture, every pixel twice in both directions, and
    // black below. Over the first rows lie the white lines and the frame rate.
    static constexpr int kUnderLines = 60;
    static bool isPlaced(const Shot& shot, const Shot& picture) {
        for (int y = kUnderLines; y < 768; ++y) {
            for (int x = 0; x < 1024; ++x) {
                const uint16_t wanted = y < 720 ? picture.at(64 + x / 2, y / 2) : uint16_t{0};
                if (shot.at(x, y) != wanted) {
                    return false;
                }
            }
        }
        return true;
    }
    Shot awaitPicture(const Shot& picture, const std::string& what) {
        return stage.await(
            [&](const Shot& shot) {
                return shot.width == 1024 && shot.height == 768 && isPlaced(shot, picture);
            },
            what);
    }
    void expectMode(unsigned long key, const Shot& picture, const char* what) {
        stage.tap(key);
        awaitPicture(picture, what);
    }
    void expectFilter(unsigned long letter, const Shot& filtered, const char* what) {
        for (const Shot* picture : {&filtered, &two}) {
            stage.press(letter);
            stage.tap(XK_BackSpace);
            stage.release(letter);
            awaitPicture(*picture, what);
        }
    }
    void chooseEverything() {
        openOptions();
        bind(1, 0);  // MIRROR to Q
        bind(3, 2);  // INVERT to E
        bind(6, 8);  // HUE to O
        click({350, 40});
        click({350, 80});
        click({180, 60});
        left = 192;
        top = 204;
        const Shot page = awaitPage0();
        EXPECT_FALSE(checked(page, {20, 50}));
        EXPECT_TRUE(checked(page, {170, 50}));
        EXPECT_TRUE(checked(page, {340, 30}));
        EXPECT_TRUE(checked(page, {340, 70}));
        expectSize(1280, 720);
        click({600, 380});
        expectSize(1024, 768);
    }
    // Over the first rows only white is drawn: the frame rate's digits, and a line of up to three
    // quarters of the width at the very top.
    void awaitLineAndFrameRate(const Shot& picture) {
        const auto drawn = [&](const Shot& shot) {
            int digits = 0;
            int line = 0;
            for (int y = 0; y < kUnderLines; ++y) {
                for (int x = 0; x < 1024; ++x) {
                    if (shot.at(x, y) != picture.at(64 + x / 2, y / 2)) {
                        EXPECT_EQ(shot.at(x, y), app::kWhite) << x << ", " << y;
                        digits += x >= 20 && x < 60 && y >= 20 && y < 45 ? 1 : 0;
                        line += y < 10 ? 1 : 0;
                    }
                }
            }
            return digits > 20 && line > 200 && line <= 768;
        };
        stage.await(drawn, "the white line and the frame rate");
    }

    const Shot one = app::richPicture(21);
    const Shot two = app::keyPicture(22);
};

}  // namespace

TEST_F(DisplayOptions, ResolutionFiltersAndBoxes_AreThereAfterARestart) {
    stage.startAtHome();
    chooseEverything();
    std::string expected = std::string(app::kHead) +
                           "\t<mode>0</mode>\n\t<topbar>1</topbar>\n\t<fps>1</fps>\n"
                           "\t<res_w>1024</res_w>\n\t<res_h>768</res_h>\n";
    for (const int id : {1, 0, 3, 0, 0, 0, 0, 0, 6}) {
        expected += "\t<filter>" + std::to_string(id) + "</filter>\n";
    }
    EXPECT_EQ(stage.folder.read("userdata/prefs.xml"), expected + "</all>\n");
    EXPECT_EQ(stage.closeWindow(), 1);

    stage.startMix(2);
    expectSize(1024, 768);
    awaitPicture(two, "the top clip");
    awaitLineAndFrameRate(two);
    expectFilter(XK_q, app::mirrored(two, 0), "MIRROR on Q");
    expectFilter(XK_e, app::inverted(two), "INVERT on E");
    expectFilter(XK_o, app::hued(two, 0), "HUE on O");
    stage.tap(XK_Down);
    stage.tap(XK_Right);
    stage.tap(XK_Up);
    expectMode(XK_1, two, "top alone");
    expectMode(XK_2, app::blended(one, two), "blend");
    expectMode(XK_3, app::added(one, two), "add");
    expectMode(XK_4, app::multiplied(one, two), "multiply");
    expectMode(XK_5, app::keyed(one, two), "key");
    expectMode(XK_6, app::halves(one, two), "half half");
    // Back through the list to the options: everything is as it was left.
    stage.tap(XK_Return);
    stage.tap(XK_z);
    openOptions();
    const Shot page = stage.look();
    EXPECT_TRUE(checked(page, {170, 50}));
    EXPECT_TRUE(checked(page, {340, 30}));
    stage.keepShot(page);
    // And to the first size again.
    click({30, 60});
    left = 320;
    top = 180;
    stage.tap(XK_z);
    expectSize(1280, 720);
    EXPECT_EQ(stage.closeWindow(), 1);
}

// The menu stands in the middle of the new size and answers there; nothing of it is left behind the
// screen that follows.
TEST_F(DisplayOptions, AfterAnotherResolution_HomeAnswersWhereItStands) {
    stage.startAtHome();
    openOptions();
    click({180, 60});
    left = 192;
    top = 204;
    awaitPage0();
    click({600, 380});
    expectSize(1024, 768);
    stage.await([](const Shot& shot) { return app::homeSelection(shot) == 0; },
                "home in the middle");
    stage.click(left + 400, top + 130);  // EDIT
    const auto onlyItsPage = [this](const Shot& shot) {
        return shot.at(left + 300, top + 350) == kPaper &&
               app::countOf(shot, {0, 0, 1024, top}, 0) == 1024 * top &&
               app::countOf(shot, {0, top + 360, 1024, 204}, 0) == 1024 * 204 &&
               app::countOf(shot, {0, top, left, 360}, 0) == left * 360 &&
               app::countOf(shot, {left + 640, top, 192, 360}, 0) == 192 * 360;
    };
    stage.await(onlyItsPage, "the playlists alone");
    stage.tap(XK_z);
    stage.await([](const Shot& shot) { return app::homeSelection(shot) == 0; }, "home again");
    stage.pointerTo(left + 420, top + 230);  // QUIT
    stage.mouseDown();
    EXPECT_EQ(stage.waitExit(), 1);
}
