// Both options pages, pixel by pixel, at every size of output.
#include "state/options_screen.h"

namespace {

constexpr int kOrange = 0xFFB000;
constexpr uint16_t kRed = 0xF904;
constexpr uint16_t kGreen = 0x27E4;
constexpr uint16_t kPressed = 0x211F;

class OptionsPages : public OptionsTest {
protected:
    using OptionsTest::OptionsTest;
    // Page 0 with the 1280 box on and the other three off.
    void freshPage0(ExpectedPage& expected, const char* controller = "no controller detected") {
        expected.page0(atlas.get(), controller);
        expected.checkBox(atlas.get(), 20, 50, all->appW == 1280);
        expected.checkBox(atlas.get(), 170, 50, all->appW == 1024);
        expected.checkBox(atlas.get(), 340, 30, false);
        expected.checkBox(atlas.get(), 340, 70, false);
    }
    void page1(ExpectedPage& expected, uint16_t squares) {
        expected.page1Ground(_options->controllerPicture);
        expected.page1Texts();
        for (int entry = 0; entry < 14; ++entry) {
            expected.square(entry, squares);
        }
        expected.page1Labels();
        expected.back(atlas.get());
    }
    void expectPage(const ExpectedPage& expected, const char* what = "") {
        draw();
        EXPECT_TRUE(samePixels(screen[1], expected.picture.get())) << what;
    }
};

class CompositeOptionsPages : public OptionsPages {
protected:
    CompositeOptionsPages() : OptionsPages(720, 480) {}
};

TEST_F(OptionsPages, Page0_Fresh) {
    ExpectedPage expected(320, 180);
    freshPage0(expected);
    expectPage(expected);
}

TEST_F(OptionsPages, Page0_At1024x768) {
    all->applyResolution(1024, 768);
    updateResolution();
    ExpectedPage expected(192, 204);
    freshPage0(expected);
    expectPage(expected, "1024 x 768");
}

TEST_F(CompositeOptionsPages, Page0_HasNoResolutionBoxOn) {
    ExpectedPage expected(40, 60);
    freshPage0(expected);
    expectPage(expected);
}

TEST_F(CompositeOptionsPages, Page1_SquaresAboveThePictureAreThere) {
    _options->page = 1;
    ExpectedPage expected(40, 60);
    page1(expected, kRed);
    expectPage(expected);
    EXPECT_EQ(pixelAt(screen[1], 40 + 140, 60 - 30), kRed);
}

TEST_F(OptionsPages, Page0_BoundFiltersAreNamedUnderTheirLetters) {
    _filters->slots[0][0].id = FILTER_SNOW;
    _filters->slots[0][4].id = FILTER_GAME_BOY;
    _filters->slots[0][8].id = FILTER_MIRROR;
    _filters->slots[1][2].id = FILTER_HUE;  // the top layer's are not shown
    ExpectedPage expected(320, 180);
    freshPage0(expected);
    expected.text("SNOW", 10, 250, kOrange);
    expected.text("GAME BOY", 250, 250, kOrange);
    expected.text("MIRROR", 490, 250, kOrange);
    expectPage(expected);
}

TEST_F(OptionsPages, Page0_UnknownFiltersAreNamedNone) {
    for (const int id : {10, -1, 2147483647, -2147483647 - 1}) {
        _filters->slots[0][1].id = id;
        ExpectedPage expected(320, 180);
        freshPage0(expected);
        expected.text("NONE", 70, 250, kOrange);
        expectPage(expected, std::to_string(id).c_str());
    }
}

TEST_F(OptionsPages, Page0_CheckBoxesFollowWidthAndFlags) {
    struct {
        int width;
        bool topbar, fps;
    } const cases[] = {{1280, true, false}, {1024, false, true}, {1100, true, true}};
    for (const auto& c : cases) {
        all->appW = c.width;  // the height does not count
        _options->topbar = c.topbar ? 1 : 0;
        _options->fps = c.fps ? 1 : 0;
        ExpectedPage expected(320, 180);
        expected.page0(atlas.get(), "no controller detected");
        expected.checkBox(atlas.get(), 20, 50, c.width == 1280);
        expected.checkBox(atlas.get(), 170, 50, c.width == 1024);
        expected.checkBox(atlas.get(), 340, 30, c.topbar);
        expected.checkBox(atlas.get(), 340, 70, c.fps);
        expectPage(expected, std::to_string(c.width).c_str());
    }
}

TEST_F(OptionsPages, Page0_NamesTheController) {
    _nbJoySticks = 2;
    joystickName = "Stage Pad 7";
    ExpectedPage expected(320, 180);
    freshPage0(expected, "Stage Pad 7");
    expectPage(expected);
}

TEST_F(OptionsPages, Page0_ControllerWithoutAName_LeavesTheLineEmpty) {
    _nbJoySticks = 1;
    draw();
    // Below the title, above the button, only the ground: 128 x 12 pixels of it.
    EXPECT_EQ(countPixels(screen[1], 320 + 7, 180 + 310, 128, 12, 0x2104), 128 * 12);
}

// The bar covers what is under it; the back button is drawn after it.
TEST_F(OptionsPages, Drag_FollowsTheMouseOnBothPages) {
    _options->dragging = 1;
    _options->draggedFilter = FILTER_GLITCH;
    const Corner places[] = {{100, 100}, {0, 0}, {600, 372}, {-319, -179}, {955, 535}};
    for (const Corner& at : places) {
        keys->mouseX = at.x;
        keys->mouseY = at.y;
        ExpectedPage expected(320, 180);
        freshPage0(expected);
        expected.box(at.x - 2, at.y, 60, 10, 0x5D9F);
        expected.text("GLITCH", at.x + 10, at.y, 0);
        expected.back(atlas.get());
        expectPage(expected, std::to_string(at.x).c_str());
    }
    _options->page = 1;
    keys->mouseX = 300;
    keys->mouseY = 60;
    ExpectedPage expected(320, 180);
    page1(expected, kRed);
    expected.box(298, 60, 60, 10, 0x5D9F);
    expected.text("GLITCH", 310, 60, 0);
    expectPage(expected, "page 1");
}

TEST_F(OptionsPages, Page1_EveryEntryAt99_FourteenRedSquares) {
    _options->page = 1;
    ExpectedPage expected(320, 180);
    page1(expected, kRed);
    expectPage(expected);
    for (const Corner& square : kSquares) {
        EXPECT_EQ(countPixels(screen[1], 320 + square.x, 180 + square.y, 30, 30, kRed), 900);
    }
}

// 99 is no button, nor is what lies below 0; any other number is one.
TEST_F(OptionsPages, Page1_AssignedEntriesAreGreen) {
    _options->page = 1;
    keys->padButton[2] = 0;
    keys->padButton[5] = 98;
    keys->padButton[7] = -1;
    keys->padButton[12] = -2147483647 - 1;
    keys->padButton[13] = 100;
    ExpectedPage expected(320, 180);
    page1(expected, kRed);
    for (const int entry : {2, 5, 13}) {
        expected.square(entry, kGreen);
    }
    expected.number(2, 0);
    expected.number(5, 98);
    expected.text("100", 260 + 6, 120 + 9, 0);
    expectPage(expected);
}

TEST_F(OptionsPages, quirk_controller_page_swaps_shoulders) {
    _options->page = 1;
    const int squareOf[][2] = {{8, 9}, {9, 8}, {10, 11}, {11, 10}};
    const int slotOf[] = {41, 42, 43, 44};
    for (const auto& [entry, square] : squareOf) {
        keys->initController();
        keys->padButton[entry] = 3;
        ExpectedPage expected(320, 180);
        page1(expected, kRed);
        expected.square(square, kGreen);
        expected.number(square, 3);
        setKeys({});
        expectPage(expected, "green");
        setKeys({slotOf[entry - 8]});
        expected.square(square, kPressed);
        expected.number(square, 3, true);
        expectPage(expected, "lit");
    }
}

TEST_F(OptionsPages, Page1_PressedButtonsLightTheirSquares) {
    _options->page = 1;
    const int slots[] = {31, 32, 33, 34, 35, 36, 37, 38};
    for (int entry = 0; entry < 8; ++entry) {
        setKeys({slots[entry]}, {45, 46});  // 12 and 13 are held on
        ExpectedPage expected(320, 180);
        page1(expected, kRed);
        expected.square(entry, kPressed);
        expected.square(12, kPressed);
        expected.square(13, kPressed);
        expectPage(expected, std::to_string(entry).c_str());
    }
}

TEST_F(OptionsPages, Page1_ButtonThatNoEntryMapsTo_LightsNoSquare) {
    _options->page = 1;
    scripted().joysticks = 1;
    scripted().buttonsDown = {5};
    keys->padButton[0] = 4;
    keys->updateGKeys();
    ExpectedPage expected(320, 180);
    page1(expected, kRed);
    expected.square(0, kGreen);
    expected.number(0, 4);
    expectPage(expected, "5 is down");
    scripted().buttonsDown = {4, 5};
    keys->updateGKeys();
    expected.square(0, kPressed);
    expected.number(0, 4, true);
    expectPage(expected, "4 is down too");
}

TEST_F(OptionsPages, Page1_Waiting_BoxOverTheSquaresAndNoBackButton) {
    _options->page = 1;
    _options->waitingButton = 1;
    _options->anchorEntry = 8;
    setKeys({31});
    ExpectedPage expected(320, 180);
    expected.page1Ground(_options->controllerPicture);
    for (int entry = 0; entry < 14; ++entry) {
        expected.square(entry, entry == 0 ? kPressed : kRed);
    }
    expected.box(100, 100, 440, 160, 0x2104);
    expected.text("Now press the corresponding button on your controller", 170, 150, 0xFFFFFF);
    expected.box(105, 230, 64, 24, 0xFD80);
    expected.text("cancel", 111, 238, 0);
    expected.box(179, 230, 64, 24, 0xFD80);
    expected.text("no button", 185, 238, 0);
    expected.text("block", 170, 126, kOrange);
    expected.text("held: no reverse", 230, 126, 0x59B1FF);
    expectPage(expected);
}

TEST_F(OptionsPages, ButtonAnchor_OtherEntriesAreRedAndPressedWins) {
    for (const int entry : {-1, 14, 1000}) {
        _options->drawButtonAnchor(entry, 0, 10, 20);
        EXPECT_EQ(countPixels(screen[1], 330, 200, 30, 30, kRed), 900) << entry;
        EXPECT_EQ(countPixels(screen[1], 329, 199, 32, 32, kRed), 900) << entry;
        _options->drawButtonAnchor(entry, 1, 10, 20);
        EXPECT_EQ(countPixels(screen[1], 330, 200, 30, 30, kPressed), 900) << entry;
    }
}

TEST_F(OptionsPages, AnotherPage_ShowsTheEmptyPicture) {
    _options->page = 2;
    ExpectedPage expected(320, 180);
    expected.box(0, 0, 640, 360, 0x2104);
    expectPage(expected);
}

TEST_F(OptionsPages, MissingPictures_LeaveTheirPlacesEmpty) {
    atlas.reset();
    draw();
    EXPECT_EQ(countPixels(screen[1], 320 + 576, 180 + 370, 64, 24, 0), 64 * 24);
    EXPECT_EQ(countPixels(screen[1], 320 + 20, 180 + 50, 24, 24, 0x2104), 24 * 24);
    SDL_FreeSurface(_options->controllerPicture);
    _options->controllerPicture = nullptr;
    _options->page = 1;
    draw();
    EXPECT_EQ(countPixels(screen[1], 320 + 20, 180 + 210, 600, 90, 0), 600 * 90)
        << "below the labels";
}

// After a refused mode the surface is the display's, whatever the application size.
TEST_F(OptionsPages, SurfacesOfOtherSizesAndDepths_StayInside) {
    struct {
        int width, height, depth;
    } const displays[] = {{640, 360, 16}, {320, 200, 16}, {1, 1, 16}, {800, 600, 32}};
    for (const auto& display : displays) {
        scripted().displayWidth = display.width;
        scripted().displayHeight = display.height;
        scripted().displayDepth = display.depth;
        scripted().padding = 6;
        scripted().refusals = {true};
        printedBy(updateResolution);
        ASSERT_EQ(screen[1]->w, display.width);
        _options->dragging = 1;
        for (_options->page = 0; _options->page < 2; ++_options->page) {
            draw();
        }
        _options->waitingButton = 1;
        _options->page = 1;
        draw();
        _options->waitingButton = 0;
    }
    // The waiting box on 32 bits: 0x222222 by way of RGB565 is 4, 8, 4 of 31, 63, 31.
    _options->waitingButton = 1;
    draw();
    uint32_t pixel = 0;
    memcpy(&pixel,
           static_cast<uint8_t*>(screen[1]->pixels) + 400 * screen[1]->pitch + 4 * (320 + 110), 4);
    EXPECT_EQ(pixel & 0xFFFFFF, 0x202020U);
}

}  // namespace
