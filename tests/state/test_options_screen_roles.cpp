// Page 1 of the options: what stands on and beside the squares, and that it is true.
#include <cstring>

#include "state/options_screen.h"

namespace {

constexpr uint16_t kRed = 0xF904;
constexpr uint16_t kGreen = 0x27E4;
constexpr uint16_t kPressed = 0x211F;

class SquareRoles : public OptionsTest {
protected:
    SquareRoles() {
        _options->page = 1;
        scripted().joysticks = 1;
    }
    // Gives the square this button, by its click and a press.
    static void assign(int square, int button) {
        keys->mouseX = kSquares[square].x + 15;
        keys->mouseY = kSquares[square].y + 15;
        keys->mouseClick = 1;
        keys->actions();
        keys->mouseClick = 0;
        scripted().buttonsDown = {button};
        keys->actions();
        scripted().buttonsDown = {};
    }
    static void sample(std::set<int> down) {
        scripted().buttonsDown = std::move(down);
        keys->updateGKeys();
    }
    // A clip runs forward; then the button of confirm goes down beside these.
    static bool reversesBeside(std::set<int> down) {
        all->state = STATE_MIX;
        all->subState = SUB_PERFORMING;
        mix->layer[mix->activeLayer].direction = 0;
        sample(down);
        keys->actions();
        down.insert(1);
        sample(down);
        keys->actions();
        return mix->layer[mix->activeLayer].direction == 1;
    }
    void expectPage(const ExpectedPage& expected, const char* what = "") {
        draw();
        EXPECT_TRUE(samePixels(screen[1], expected.picture.get())) << what;
    }
    // Fourteen red squares; `waiting` leaves out what the box stands for.
    void page1(ExpectedPage& expected, bool waiting = false) {
        expected.page1Ground(_options->controllerPicture);
        for (int entry = 0; entry < 14; ++entry) {
            expected.square(entry, kRed);
        }
        if (!waiting) {
            expected.page1Texts();
            expected.page1Labels();
            expected.back(atlas.get());
        }
    }
};

// The functions by the slot that their button drives.
constexpr struct {
    int slot;
    const char* name;
} kFunctions[] = {{31, "up"},     {32, "right"},   {33, "down"},   {34, "left"},   {35, "no use"},
                  {36, "back"},   {37, "confirm"}, {38, "no use"}, {41, "no use"}, {42, "block"},
                  {43, "no use"}, {44, "no use"},  {45, "hold"},   {46, "show"}};

TEST_F(SquareRoles, Labels_NameTheFunctionThatTheButtonDrives) {
    for (int square = 0; square < 14; ++square) {
        keys->initController();
        assign(square, 5);
        sample({5});
        int driven = 0;
        for (const auto& [slot, name] : kFunctions) {
            if (keys->held(slot)) {
                ++driven;
                EXPECT_STREQ(kSquareLabels[square].name, name) << square;
            }
        }
        EXPECT_EQ(driven, 1) << square;
        sample({});
    }
}

// Both lower shoulders: the left one keeps confirm from reversing, the right one does not.
TEST_F(SquareRoles, Block_IsTheLeftShoulder) {
    assign(6, 1);
    assign(8, 2);
    assign(9, 3);
    EXPECT_TRUE(reversesBeside({}));
    EXPECT_FALSE(reversesBeside({2}));
    EXPECT_TRUE(reversesBeside({3}));
}

// Rectangles from (x, y) on, without their right and lower ends.
struct Rect {
    int x, y, w, h;
    bool meets(const Rect& other) const {
        return x < other.x + other.w && other.x < x + w && y < other.y + other.h && other.y < y + h;
    }
};

// On every display, the smallest of 640 columns, with the place of the squares above the picture.
TEST_F(SquareRoles, Labels_CoverNothingAndLieInThePicture) {
    Lettering lettering;
    std::vector<Rect> taken = {{576, 370, 64, 24}, {138, 310, 502, 60}};
    for (const Corner& square : kSquares) {
        taken.push_back({square.x, square.y, 30, 30});
    }
    for (const SquareLabel& label : kSquareLabels) {
        const int lines = *label.onStage != '\0' ? 2 : 1;
        const int wide =
            std::max(lettering.width(label.name, 0), lettering.width(label.onStage, 0));
        const int high = (lines - 1) * kLabelStep + lettering.height(label.name, 0);
        const Rect place = {label.x - 1, label.y, wide + 2, high};
        EXPECT_GE(place.x, 0) << label.name;
        EXPECT_LE(place.x + place.w, 640) << label.name << label.onStage;
        EXPECT_GE(place.y, -30) << label.name;
        for (const Rect& other : taken) {
            EXPECT_FALSE(place.meets(other)) << label.name << " at " << other.x << ", " << other.y;
        }
        taken.push_back(place);
    }
}

TEST_F(SquareRoles, SharedButton_FramesItsSquaresAndNoOthers) {
    assign(4, 12);
    assign(8, 3);
    assign(11, 12);
    EXPECT_EQ(keys->padButton[4], 12);
    EXPECT_EQ(keys->padButton[10], 12) << "a second square may have it too";
    ExpectedPage expected(320, 180);
    page1(expected);
    for (const int square : {4, 8, 11}) {
        expected.square(square, kGreen);
        expected.number(square, square == 8 ? 3 : 12);
    }
    expected.sharedFrame(4);
    expected.sharedFrame(11);
    expectPage(expected, "two with 12, one with 3");

    sample({12});
    for (const int square : {4, 11}) {
        expected.square(square, kPressed);
        expected.number(square, 12, true);
        expected.sharedFrame(square);
    }
    expectPage(expected, "both light up");
}

TEST_F(SquareRoles, SquaresWithoutAButton_ShareNothing) {
    keys->padButton[0] = -1;
    keys->padButton[1] = -1;
    ExpectedPage expected(320, 180);
    page1(expected);
    expectPage(expected);
}

// What no controller has, a file may: three digits have room, more are left out.
TEST_F(SquareRoles, NumbersTooLongForTheirSquare_AreLeftOut) {
    keys->padButton[0] = 999;
    keys->padButton[2] = 1000;
    keys->padButton[4] = 2147483647;
    ExpectedPage expected(320, 180);
    page1(expected);
    for (const int square : {0, 2, 4}) {
        expected.square(square, kGreen);
    }
    expected.text("999", 140 + 6, 90 + 9, 0);
    expectPage(expected);
}

// The box names the square that it covers.
TEST_F(SquareRoles, Waiting_NamesItsSquare) {
    _options->waitingButton = 1;
    for (int square = 0; square < 14; ++square) {
        _options->anchorEntry = square;
        ExpectedPage expected(320, 180);
        page1(expected, true);
        expected.box(100, 100, 440, 160, 0x2104);
        expected.text(kSquareLabels[square].name, 170, 126, 0xFFB000);
        if (*kSquareLabels[square].onStage != '\0') {
            expected.text(kSquareLabels[square].onStage, 230, 126, 0x59B1FF);
        }
        expected.text("Now press the corresponding button on your controller", 170, 150, 0xFFFFFF);
        expected.box(105, 230, 64, 24, 0xFD80);
        expected.text("cancel", 111, 238, 0);
        expected.box(179, 230, 64, 24, 0xFD80);
        expected.text("no button", 185, 238, 0);
        expectPage(expected, kSquareLabels[square].name);
    }
}

}  // namespace
