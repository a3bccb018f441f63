// Page 1 of the options: assigning controller buttons.
#include "state/options_screen.h"

namespace {

constexpr const char* kFile = "userdata/gamecontroller.xml";

class ControllerPage : public OptionsTest {
protected:
    ControllerPage() {
        _options->page = 1;
        scripted().joysticks = 1;
    }
    static void click(int x, int y) {
        keys->mouseX = x;
        keys->mouseY = y;
        keys->mouseClick = 1;
        keys->actions();
        keys->mouseClick = 0;
    }
    // One frame of the handler with these buttons down.
    static void frame(std::set<int> down) {
        scripted().buttonsDown = std::move(down);
        keys->actions();
    }
    static std::vector<int> map() {
        return {std::begin(keys->padButton), std::end(keys->padButton)};
    }
    const std::vector<int> kNone = std::vector<int>(14, 99);
};

TEST_F(ControllerPage, Squares_AnswerWithBothEnds) {
    for (int entry = 0; entry < 14; ++entry) {
        const auto [x, y] = kSquares[entry];
        for (const auto& [px, py] :
             {std::pair{x, y + 15}, {x + 30, y + 15}, {x + 15, y}, {x + 15, y + 30}}) {
            _options->waitingButton = 0;
            _options->anchorEntry = -1;
            click(px, py);
            EXPECT_EQ(_options->waitingButton, 1) << entry;
            EXPECT_EQ(_options->anchorEntry, entry);
        }
        for (const auto& [px, py] :
             {std::pair{x - 1, y + 15}, {x + 31, y + 15}, {x + 15, y - 1}, {x + 15, y + 31}}) {
            _options->waitingButton = 0;
            _options->anchorEntry = -1;
            click(px, py);
            EXPECT_NE(_options->anchorEntry, entry) << px << ", " << py;
        }
    }
}

TEST_F(ControllerPage, CornersOfTheCross_BelongToTheLaterSquare) {
    const int corners[][3] = {{170, 120, 1}, {140, 120, 3}, {170, 150, 2}, {140, 150, 3}};
    for (const auto& [x, y, entry] : corners) {
        _options->waitingButton = 0;
        click(x, y);
        EXPECT_EQ(_options->anchorEntry, entry) << x << ", " << y;
    }
}

TEST_F(ControllerPage, PressWithoutAClick_StartsNothing) {
    keys->mouseX = 150;
    keys->mouseY = 100;
    keys->mouseHeld = 1;
    frame({3});
    EXPECT_EQ(_options->waitingButton, 0);
    EXPECT_EQ(map(), kNone);
}

TEST_F(ControllerPage, AssigningOne_TurnsItsSquareGreen) {
    click(145, 95);
    frame({});
    EXPECT_EQ(_options->waitingButton, 1);
    frame({7});
    EXPECT_EQ(_options->waitingButton, 0);
    std::vector<int> expected = kNone;
    expected[0] = 7;
    EXPECT_EQ(map(), expected);
    draw();
    EXPECT_EQ(pixelAt(screen[1], 320 + 140, 180 + 90), 0x27E4);
    EXPECT_EQ(pixelAt(screen[1], 320 + 170, 180 + 120), 0xF904);
}

TEST_F(ControllerPage, Shoulders_GoToTheSwappedEntries) {
    const int entries[][2] = {{8, 9}, {9, 8}, {10, 11}, {11, 10}};
    for (const auto& [square, entry] : entries) {
        keys->initController();
        click(kSquares[square].x + 5, kSquares[square].y + 5);
        frame({6});
        std::vector<int> expected = kNone;
        expected[static_cast<size_t>(entry)] = 6;
        EXPECT_EQ(map(), expected) << square;
    }
}

TEST_F(ControllerPage, SeveralButtonsDown_TheLowestWins) {
    click(145, 95);
    frame({49, 12, 30});
    EXPECT_EQ(keys->padButton[0], 12);
}

TEST_F(ControllerPage, Buttons0To49_AreScanned) {
    click(145, 95);
    frame({50, 98});
    EXPECT_EQ(_options->waitingButton, 1);
    frame({49, 50});
    EXPECT_EQ(keys->padButton[0], 49);
    click(145, 95);
    frame({0, 1});
    EXPECT_EQ(keys->padButton[0], 0);
}

TEST_F(ControllerPage, WithoutAController_NoButtonIsAskedFor) {
    scripted().joysticks = 0;
    click(145, 95);
    frame({3});
    EXPECT_EQ(_options->waitingButton, 1);
    EXPECT_TRUE(scripted().buttonsAsked.empty());
    EXPECT_EQ(map(), kNone);
}

TEST_F(ControllerPage, Waiting_ClicksElsewhereDoNothing) {
    click(145, 95);
    for (const auto& [x, y] : {std::pair{600, 380},
                               {480, 90},
                               {104, 240},
                               {170, 240},
                               {130, 229},
                               {130, 255},
                               {300, 150}}) {
        click(x, y);
        EXPECT_EQ(_options->waitingButton, 1) << x << ", " << y;
        EXPECT_EQ(_options->anchorEntry, 0);
        EXPECT_EQ(_options->page, 1);
    }
}

TEST_F(ControllerPage, Cancel_EndsTheWaitWithBothEnds) {
    for (const auto& [x, y] : {std::pair{105, 230}, {169, 230}, {105, 254}, {169, 254}}) {
        click(145, 95);
        click(x, y);
        EXPECT_EQ(_options->waitingButton, 0) << x << ", " << y;
    }
    frame({3});
    EXPECT_EQ(map(), kNone);
}

TEST_F(ControllerPage, ButtonInTheFrameOfCancel_StillCounts) {
    click(145, 95);
    scripted().buttonsDown = {3};
    click(110, 235);
    EXPECT_EQ(_options->waitingButton, 0);
    EXPECT_EQ(keys->padButton[0], 3);
}

TEST_F(ControllerPage, Back_ReturnsToPage0AndSavesTheMap) {
    for (const auto& [x, y] : {std::pair{576, 370}, {640, 370}, {576, 395}, {640, 395}}) {
        _options->page = 1;
        std::filesystem::remove(kFile);
        click(x, y);
        EXPECT_EQ(_options->page, 0) << x << ", " << y;
        EXPECT_TRUE(std::filesystem::exists(kFile));
    }
    for (const auto& [x, y] : {std::pair{575, 380}, {641, 380}, {600, 369}, {600, 396}}) {
        _options->page = 1;
        click(x, y);
        EXPECT_EQ(_options->page, 1) << x << ", " << y;
    }
    EXPECT_EQ(all->state, STATE_OPTIONS);
    EXPECT_FALSE(std::filesystem::exists("userdata/prefs.xml")) << "that file is saved elsewhere";
}

// Fourteen buttons on fourteen squares, saved and read back.
TEST_F(ControllerPage, AllAssigned_SavedInTheOrderOfTheSquares) {
    for (int square = 0; square < 14; ++square) {
        click(kSquares[square].x + 15, kSquares[square].y + 15);
        frame({10 + square});
    }
    frame({});
    click(600, 380);
    std::string expected = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";
    for (int button = 10; button < 24; ++button) {
        expected += "\t<button>" + std::to_string(button) + "</button>\n";
    }
    EXPECT_EQ(readFile(kFile), expected + "</all>\n");
    const std::vector<int> assigned = map();
    keys->initController();
    _options->lireXMLController();
    EXPECT_EQ(map(), assigned);
}

TEST_F(ControllerPage, Z_ReturnsToPage0AndSavesTheMap) {
    keys->padButton[0] = 7;
    setKeys({}, {1});
    keys->actions();
    EXPECT_EQ(_options->page, 1) << "held on is not pressed";
    setKeys({1});
    click(145, 95);
    EXPECT_EQ(_options->page, 0);
    EXPECT_EQ(_options->waitingButton, 0) << "the square under the mouse is not meant";
    EXPECT_EQ(all->state, STATE_OPTIONS);
    EXPECT_NE(readFile(kFile).find("<button>7</button>"), std::string::npos);
}

// One press, sampled while it lasts, leaves this page and not the next one too.
TEST_F(ControllerPage, ZKeptDown_StopsAtPage0) {
    scripted().keysDown[SDLK_z] = 1;
    for (int frames = 0; frames < 5; ++frames) {
        keys->updateGKeys();
        keys->actions();
    }
    EXPECT_EQ(_options->page, 0);
    EXPECT_EQ(all->state, STATE_OPTIONS);
}

TEST_F(ControllerPage, quirk_pads_back_stays_on_the_controller_page) {
    setKeys({36});
    keys->actions();
    EXPECT_EQ(_options->page, 1);
    EXPECT_FALSE(std::filesystem::exists(kFile));
    _options->waitingButton = 1;
    keys->actions();
    EXPECT_EQ(_options->waitingButton, 1);
}

TEST_F(ControllerPage, WaitingZ_Cancels) {
    keys->padButton[0] = 7;
    click(145, 95);
    setKeys({1});
    frame({});
    EXPECT_EQ(_options->waitingButton, 0);
    EXPECT_EQ(_options->page, 1);
    EXPECT_EQ(keys->padButton[0], 7);
    EXPECT_FALSE(std::filesystem::exists(kFile));
}

TEST_F(ControllerPage, NoButton_TakesTheButtonAwayWithBothEnds) {
    for (const auto& [x, y] : {std::pair{179, 230}, {243, 230}, {179, 254}, {243, 254}}) {
        keys->padButton[0] = 7;
        click(145, 95);
        click(x, y);
        EXPECT_EQ(_options->waitingButton, 0) << x << ", " << y;
        EXPECT_EQ(map(), kNone) << x << ", " << y;
    }
    keys->padButton[0] = 7;
    click(145, 95);
    for (const auto& [x, y] : {std::pair{178, 240}, {244, 240}, {210, 229}, {210, 255}}) {
        click(x, y);
        EXPECT_EQ(_options->waitingButton, 1) << x << ", " << y;
        EXPECT_EQ(keys->padButton[0], 7);
    }
}

TEST_F(ControllerPage, NoButton_WinsOverAButtonOfItsFrame) {
    click(145, 95);
    scripted().buttonsDown = {3};
    click(210, 240);
    EXPECT_EQ(_options->waitingButton, 0);
    EXPECT_EQ(map(), kNone);
}

// The square's own entry of the map, with the shoulders swapped.
TEST_F(ControllerPage, NoButton_EmptiesTheEntryOfItsSquare) {
    const int entryOf[14] = {0, 1, 2, 3, 4, 5, 6, 7, 9, 8, 11, 10, 12, 13};
    for (int square = 0; square < 14; ++square) {
        for (int entry = 0; entry < 14; ++entry) {
            keys->padButton[entry] = 20 + entry;
        }
        std::vector<int> expected = map();
        expected[static_cast<size_t>(entryOf[square])] = 99;
        click(kSquares[square].x + 15, kSquares[square].y + 15);
        click(210, 240);
        EXPECT_EQ(map(), expected) << square;
    }
    click(600, 380);
    EXPECT_NE(readFile(kFile).find("<button>99</button>\n</all>"), std::string::npos);
}

// The file that lies in userdata/, ours or one saved over it, has the program's own form.
TEST_F(ControllerPage, ShippedMap_IsReadAndSavedUnchanged) {
    const std::string shipped = readFile(TEST_DATA "/../../userdata/gamecontroller.xml");
    writeFile(kFile, shipped);
    _options->lireXMLController();
    const std::set<int> buttons(std::begin(keys->padButton), std::end(keys->padButton));
    EXPECT_GT(buttons.size(), 1U);
    _options->saveXMLController();
    EXPECT_EQ(readFile(kFile), shipped);
}

}  // namespace
