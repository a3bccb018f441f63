// Fade to black and white flash, picture by picture.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "app/expected.h"
#include "app/pictures.h"
#include "app/stage.h"
#include "app/tiny_clip.h"

namespace {

using app::Shot;
using app::Stage;

constexpr int kLevels = 15;
constexpr int kUnknown = -1;
// Fifteen levels, seeing the key, and as much again for a slow machine.
constexpr int kLongEnough = 2 * (kLevels + app::kPicturesToSee);

class Transitions : public testing::Test {
protected:
    void start() {
        stage.folder.addClip("one.m19", app::tinyClip({{plain, {}}}));
        stage.folder.addClip("two.m19", app::tinyClip({{other, {}}}));
        stage.folder.addPlaylist("TWO", {"one.m19", "two.m19"});
        stage.folder.writePlaylists();
        stage.startMix(2);
        stage.expectShows(app::placed(plain), "the plain picture");
    }

    // The levels of the shown pictures, in order, without repeats in a row, until `last` is seen.
    std::vector<int> levelsUntil(int last, const std::vector<Shot>& levels) {
        std::vector<int> seen;
        const int end = stage.picturesShown() + kLongEnough;
        while (stage.picturesShown() < end && (seen.empty() || seen.back() != last)) {
            const Shot shot = stage.look();
            const int level = levelOf(shot, levels);
            if (level == kUnknown) {
                ADD_FAILURE() << "a picture of no level: " << stage.keepShot(shot);
                return seen;
            }
            if (seen.empty() || seen.back() != level) {
                seen.push_back(level);
            }
        }
        return seen;
    }

    static int levelOf(const Shot& shot, const std::vector<Shot>& levels) {
        for (size_t level = 0; level < levels.size(); ++level) {
            if (shot == levels[level]) {
                return static_cast<int>(level);
            }
        }
        return kUnknown;
    }

    // Index: the level; 0 is the picture itself.
    static std::vector<Shot> levelsOf(const Shot& picture, Shot (*rule)(const Shot&, int)) {
        std::vector<Shot> levels = {app::placed(picture)};
        for (int level = 1; level <= kLevels; ++level) {
            levels.push_back(app::placed(rule(picture, level)));
        }
        return levels;
    }

    Shot plain = app::richPicture(23);
    Shot other = app::richPicture(31);
    Stage stage;
};

// From `first` to `last` one way only, by way of other levels. A first look that comes late may
// miss `first` itself.
void expectPasses(const std::vector<int>& levels, int first, int last) {
    ASSERT_FALSE(levels.empty());
    EXPECT_EQ(levels.back(), last);
    const bool up = first < last;
    EXPECT_TRUE(up ? std::is_sorted(levels.begin(), levels.end())
                   : std::is_sorted(levels.rbegin(), levels.rend()));
    EXPECT_TRUE(std::any_of(levels.begin(), levels.end(), [&](int level) {
        return level > std::min(first, last) && level < std::max(first, last);
    })) << "no level in between was seen";
}

}  // namespace

TEST_F(Transitions, HeldA_FadesToBlackAndBack) {
    const std::vector<Shot> levels = levelsOf(plain, app::faded);
    ASSERT_EQ(levels[kLevels], app::blackShot(1280, 720));
    start();
    stage.keyDown(XK_a);
    expectPasses(levelsUntil(kLevels, levels), 0, kLevels);
    stage.expectKeeps(levels[kLevels], 8, "black while held");
    stage.keyUp(XK_a);
    expectPasses(levelsUntil(0, levels), kLevels, 0);
    stage.expectKeeps(levels[0], 4, "the picture again");
}

TEST_F(Transitions, PressedS_FlashesOnceAndDecays) {
    const std::vector<Shot> levels = levelsOf(plain, app::flashed);
    start();
    stage.keyDown(XK_s);
    // Held on: one flash all the same.
    stage.await([&](const Shot& shot) { return levelOf(shot, levels) > 0; }, "a flash");
    expectPasses(levelsUntil(0, levels), kLevels, 0);
    stage.expectKeeps(levels[0], 8, "no second flash");
    stage.keyUp(XK_s);
}

// Green of a full flash stays at 60 on black, red and blue are at 31.
TEST_F(Transitions, FlashOverBlack_DecaysThroughFlatColours) {
    start();
    stage.keyDown(XK_a);
    stage.await([](const Shot& shot) { return shot == app::blackShot(1280, 720); }, "black");
    std::vector<Shot> levels = levelsOf(app::flatPicture(0), app::flashed);
    ASSERT_EQ(levels[kLevels].at(0, 0), 0xFF9F);
    stage.keyDown(XK_s);
    stage.await([&](const Shot& shot) { return levelOf(shot, levels) > 0; }, "a flash");
    expectPasses(levelsUntil(0, levels), kLevels, 0);
}

TEST_F(Transitions, BlendMode_ShowsNeitherFadeNorFlash) {
    start();
    stage.tap(XK_Right);
    stage.tap(XK_2);
    const Shot blend = app::placed(app::blended(plain, other));
    stage.expectShows(blend, "blend");
    stage.keyDown(XK_a);
    stage.keyDown(XK_s);
    stage.expectKeeps(blend, kLevels + 6, "blend with fade and flash");
    // The fade counts all the same: back in mode 0 it is black.
    stage.tap(XK_1);
    stage.expectShows(app::blackShot(1280, 720), "mode 0 again");
}

TEST_F(Transitions, WHeld_BlocksFadeAndFlash) {
    start();
    stage.press(XK_w);
    stage.keyDown(XK_a);
    stage.keyDown(XK_s);
    stage.expectKeeps(app::placed(plain), kLevels, "the plain picture");
}
