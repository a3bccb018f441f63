// The panel over the mix: its boxes, bars and grid stand where they belong, and nothing else
// changes.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include "app/expected.h"
#include "app/pictures.h"
#include "app/screens.h"
#include "app/stage.h"
#include "app/tiny_clip.h"

namespace {

using app::Box;
using app::Screen;
using app::Shot;
using app::Stage;

constexpr uint16_t kGround = 0x07E0;  // full green; no colour of the panel is

struct Layout {
    Box frameRate;
    Box topLayer;
    Box bottomLayer;
    Box button;  // the first; slots of the grid are as large
    int step;
    int gridTop;
    int gridBottom;
    int gap;
};
constexpr Layout kHdmi = {{30, 535, 20, 15},
                          {30, 560, 210, 60},
                          {30, 630, 210, 60},
                          {250, 630, 100, 60},
                          110,
                          560,
                          630,
                          10};
constexpr Layout kComposite = {
    {30, 305, 20, 15}, {30, 325, 120, 50}, {30, 390, 120, 50}, {155, 390, 50, 50}, 55, 325, 390, 5};

class PanelKeys : public testing::Test {
protected:
    void start(Screen screen) {
        stage_ = std::make_unique<Stage>(screen);
        stage().folder.addClip("one.m19", app::tinyClip({{app::flatPicture(kGround), {}}}));
        stage().folder.addClip("two.m19", app::tinyClip({{app::flatPicture(kGround), {}}}));
        stage().folder.addPlaylist("TWO", {"one.m19", "two.m19"});
        stage().folder.writePlaylists();
        stage().startMix(2);
        plain_ = app::placed(app::flatPicture(kGround), screen);
        stage().expectShows(plain_, "no panel at the start");
    }
    Stage& stage() { return *stage_; }

    static std::vector<Box> row(const Layout& layout, int y, int count) {
        std::vector<Box> boxes;
        for (int i = 0; i < count; ++i) {
            boxes.push_back(
                {layout.button.x + i * layout.step, y, layout.button.width, layout.button.height});
        }
        return boxes;
    }
    // Every pixel outside the boxes is the plain picture's; inside, the first pixel of each box's
    // top row is not (the frame rate's box is black, the others are translucent). The deck bars may
    // reach past a box's edge, which they share with it, and are white.
    void expectOnlyBoxes(const std::vector<Box>& boxes, const std::string& what) {
        const auto matches = [&](const Shot& shot) {
            Shot rest = shot;
            for (const Box& box : boxes) {
                if (shot.at(box.x, box.y) == plain_.at(box.x, box.y) && isOverGround(box)) {
                    return false;
                }
                for (int y = box.y; y < box.y + box.height; ++y) {
                    for (int x = box.x; x < box.x + box.width; ++x) {
                        rest.at(x, y) = plain_.at(x, y);
                    }
                }
            }
            return rest == plain_;
        };
        stage().await(matches, what);
    }
    bool isOverGround(const Box& box) const { return plain_.at(box.x, box.y) == kGround; }

    // Both layer boxes have their bars, white: the frame bar over the whole width (one frame), the
    // deck bar over the first or second half.
    void expectBars(const Layout& layout) {
        const Shot shot = stage().look();
        for (const Box& box : {layout.topLayer, layout.bottomLayer}) {
            EXPECT_TRUE(
                app::isFilled(shot, {box.x, box.y + box.height - 12, box.width, 4}, app::kWhite));
        }
        const int half = layout.topLayer.width / 2;
        EXPECT_TRUE(app::isFilled(
            shot, {30, layout.topLayer.y + layout.topLayer.height - 4, half, 4}, app::kWhite));
        EXPECT_TRUE(app::isFilled(
            shot, {30 + half, layout.bottomLayer.y + layout.bottomLayer.height - 4, half, 4},
            app::kWhite));
    }

    void checkPanel(const Layout& layout) {
        stage().tap(XK_Down);
        stage().tap(XK_Right);
        stage().tap(XK_Up);
        stage().tap(XK_Tab);
        std::vector<Box> boxes = {layout.frameRate, layout.topLayer, layout.bottomLayer};
        std::vector<Box> buttons = row(layout, layout.button.y, 6);
        buttons.insert(buttons.end(), boxes.begin(), boxes.end());
        expectOnlyBoxes(buttons, "the panel with its six mode buttons");
        expectBars(layout);
        // A letter held: two rows of nine in place of the buttons.
        stage().press(XK_e);
        for (const int y : {layout.gridTop, layout.gridBottom}) {
            const std::vector<Box> slots = row(layout, y, 9);
            boxes.insert(boxes.end(), slots.begin(), slots.end());
        }
        expectOnlyBoxes(boxes, "the panel with its filter grid");
        stage().tap(XK_BackSpace);
        const Box third = {layout.button.x + 2 * layout.step,
                           layout.gridTop + layout.button.height - 4, layout.button.width, 4};
        stage().await([&](const Shot& shot) { return app::isFilled(shot, third, app::kWhite); },
                      "the third slot's strip");
        stage().release(XK_e);
        expectOnlyBoxes(buttons, "the buttons again");
        stage().tap(XK_Tab);
        stage().expectShows(plain_, "no pixel of the panel");
        stage().press(XK_e);
        stage().expectKeeps(plain_, 5, "no grid without the panel");
        stage().release(XK_e);
    }

private:
    std::unique_ptr<Stage> stage_;
    Shot plain_;
};

}  // namespace

TEST_F(PanelKeys, Hdmi_BoxesBarsAndGridStandInTheirPlaces) {
    start({});
    checkPanel(kHdmi);
}

TEST_F(PanelKeys, Composite480_BoxesBarsAndGridStandInTheirPlaces) {
    start({720, 480});
    checkPanel(kComposite);
}

// The active layer and the mode show in their boxes' colour: 0x59B1FF over green has blue, black
// over green has none.
TEST_F(PanelKeys, ActiveLayerAndMode_AreLit) {
    start({});
    stage().tap(XK_Tab);
    const auto isLit = [](const Shot& shot, int x, int y) { return (shot.at(x, y) & 31) > 0; };
    const auto awaitLit = [&](int layer, int button) {
        stage().await(
            [&](const Shot& shot) {
                bool right =
                    isLit(shot, 31, 561) == (layer == 1) && isLit(shot, 31, 631) == (layer == 0);
                for (int i = 0; i < 6; ++i) {
                    right = right && isLit(shot, 251 + 110 * i, 631) == (i == button);
                }
                return right;
            },
            "layer " + std::to_string(layer) + ", button " + std::to_string(button));
    };
    awaitLit(1, 0);
    stage().tap(XK_Down);
    awaitLit(0, 0);
    const unsigned long keys[] = {XK_1, XK_2, XK_3, XK_4, XK_5, XK_6};  // as the buttons stand
    for (const int button : {1, 2, 3, 4, 5, 0}) {
        stage().tap(keys[button]);
        awaitLit(0, button);
    }
}
