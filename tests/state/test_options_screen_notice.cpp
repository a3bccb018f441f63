// The options when a file cannot be saved: the page says so and stays, and can be left all the
// same.
#include "state/options_screen.h"

namespace {

constexpr int kOrange = 0xFFB000;
constexpr const char* kPrefs = "userdata/prefs.xml";
constexpr const char* kMap = "userdata/gamecontroller.xml";
constexpr const char* kPrefsLine =
    "The options could not be saved. Going back once more leaves without saving";
constexpr const char* kMapLine =
    "The buttons could not be saved. Going back once more leaves without saving";

class OptionsNotice : public OptionsTest {
protected:
    // A folder where the new file should be written first.
    static void stopSaving(const std::string& path) {
        std::filesystem::create_directories(path + ".tmp");
    }
    static void allowSaving(const std::string& path) { std::filesystem::remove(path + ".tmp"); }
    static void click(int x, int y) {
        keys->mouseX = x;
        keys->mouseY = y;
        keys->mouseClick = 1;
        keys->actions();
        keys->mouseClick = 0;
    }
    static void press(int slot) {
        setKeys({slot});
        keys->actions();
        setKeys({});
    }
    // By the key, by the click.
    static void goBack(bool byKey) { byKey ? press(1) : click(600, 380); }
    void expectPage0(const char* line, const char* what) {
        ExpectedPage expected(_options->offset.x, _options->offset.y);
        expected.page0(atlas.get(), "no controller detected");
        expected.checkBox(atlas.get(), 20, 50, all->appW == 1280);
        expected.checkBox(atlas.get(), 170, 50, all->appW == 1024);
        expected.checkBox(atlas.get(), 340, 30, _options->topbar == 1);
        expected.checkBox(atlas.get(), 340, 70, false);
        if (line != nullptr) {
            expected.text(line, 150, 338, kOrange);
        }
        draw();
        EXPECT_TRUE(samePixels(screen[1], expected.picture.get())) << what;
    }
    void expectPage1(const char* line, const char* what) {
        ExpectedPage expected(320, 180);
        expected.page1Ground(_options->controllerPicture);
        expected.page1Texts();
        for (int entry = 0; entry < 14; ++entry) {
            expected.square(entry, entry == 0 ? 0x27E4 : 0xF904);
        }
        expected.number(0, 7);
        expected.page1Labels();
        expected.back(atlas.get());
        if (line != nullptr) {
            expected.text(line, 138, 310, kOrange);
        }
        draw();
        EXPECT_TRUE(samePixels(screen[1], expected.picture.get())) << what;
    }
    void openPage1() {
        all->state = STATE_OPTIONS;
        _options->page = 1;
        keys->padButton[0] = 7;
    }
};

TEST_F(OptionsNotice, PrefsNotSaved_PageStaysWithItsChoicesAndSaysSo) {
    stopSaving(kPrefs);
    click(350, 40);
    click(180, 60);
    const std::string said = printedBy([] { press(1); });
    EXPECT_EQ(said, "Could not save " + _options->homeDir + "/userdata/prefs.xml\n");
    EXPECT_EQ(all->state, STATE_OPTIONS);
    EXPECT_EQ(_options->topbar, 1);
    EXPECT_EQ(all->appW, 1024);
    EXPECT_TRUE(scripted().modeCalls.empty()) << "the size waits for the way out";
    expectPage0(kPrefsLine, "said");
    keys->actions();
    expectPage0(kPrefsLine, "and it stays");
}

TEST_F(OptionsNotice, BackOnceMore_LeavesWithoutSavingAndTheSizeTakesEffect) {
    for (const int slot : {1, 36, 0}) {
        stopSaving(kPrefs);
        all->state = STATE_OPTIONS;
        _options->page = 0;
        all->applyResolution(1024, 768);
        scripted().modeCalls.clear();
        press(1);
        ASSERT_EQ(all->state, STATE_OPTIONS);
        allowSaving(kPrefs);
        slot != 0 ? press(slot) : click(600, 380);
        EXPECT_EQ(all->state, STATE_HOME) << slot;
        EXPECT_FALSE(std::filesystem::exists(kPrefs)) << slot;
        ASSERT_EQ(scripted().modeCalls.size(), 1U);
        EXPECT_EQ(scripted().modeCalls[0].width, 1024);
    }
    all->state = STATE_OPTIONS;
    expectPage0(nullptr, "the next visit begins without the line");
    press(1);
    EXPECT_TRUE(std::filesystem::exists(kPrefs)) << "and saves again";
}

TEST_F(OptionsNotice, ClickElsewhere_TakesTheLineAwayAndSavesAgain) {
    stopSaving(kPrefs);
    press(1);
    click(300, 300);
    expectPage0(nullptr, "gone");
    press(1);
    EXPECT_EQ(all->state, STATE_OPTIONS);
    expectPage0(kPrefsLine, "tried again");
    click(350, 40);
    allowSaving(kPrefs);
    press(1);
    EXPECT_EQ(all->state, STATE_HOME);
    EXPECT_NE(readFile(kPrefs).find("<topbar>1</topbar>"), std::string::npos);
}

// The way out stops the frame; the filter lands in the next one, and is a change.
TEST_F(OptionsNotice, DropAfterIt_TakesTheLineAwayAndSavesAgain) {
    stopSaving(kPrefs);
    click(190, 150);
    keys->mouseX = 80;
    keys->mouseY = 220;
    keys->mouseHeld = 0;
    press(1);
    EXPECT_EQ(_options->dragging, 1);
    EXPECT_EQ(_filters->slots[0][1].id, FILTER_NONE);
    EXPECT_NE(_options->notice, nullptr);
    keys->actions();
    EXPECT_EQ(_filters->slots[0][1].id, FILTER_INVERT);
    EXPECT_EQ(_options->notice, nullptr);
    press(1);
    EXPECT_EQ(all->state, STATE_OPTIONS);
}

TEST_F(OptionsNotice, MapNotSaved_PageStaysWithItsButtonsAndSaysSo) {
    for (const bool byKey : {true, false}) {
        stopSaving(kMap);
        openPage1();
        const std::string said = printedBy([&] { goBack(byKey); });
        EXPECT_EQ(said, "Could not save " + _options->homeDir + "/userdata/gamecontroller.xml\n");
        EXPECT_EQ(_options->page, 1);
        EXPECT_EQ(keys->padButton[0], 7);
        expectPage1(kMapLine, "said");

        allowSaving(kMap);
        goBack(byKey);
        EXPECT_EQ(_options->page, 0);
        EXPECT_EQ(all->state, STATE_OPTIONS);
        EXPECT_FALSE(std::filesystem::exists(kMap)) << "once more leaves without saving";
        expectPage0(nullptr, "the line was page 1's");
    }
}

TEST_F(OptionsNotice, ClickOnASquare_TakesTheLineAwayAndSavesAgain) {
    stopSaving(kMap);
    openPage1();
    press(1);
    click(480, 90);
    press(1);  // cancels
    expectPage1(nullptr, "gone");
    press(1);
    EXPECT_EQ(_options->page, 1);
    expectPage1(kMapLine, "tried again");
    click(300, 300);
    expectPage1(nullptr, "gone by a click on nothing");
    allowSaving(kMap);
    press(1);
    EXPECT_EQ(_options->page, 0);
    EXPECT_NE(readFile(kMap).find("<button>7</button>"), std::string::npos);
}

// Both files on a card that cannot be written: every page can be left.
TEST_F(OptionsNotice, NothingCanBeSaved_FourTimesBackLeadsHome) {
    stopSaving(kMap);
    stopSaving(kPrefs);
    openPage1();
    for (int times = 0; times < 3; ++times) {
        press(1);
        EXPECT_EQ(all->state, STATE_OPTIONS) << times;
    }
    press(1);
    EXPECT_EQ(all->state, STATE_HOME);
}

}  // namespace
