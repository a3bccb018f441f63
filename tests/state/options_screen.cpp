#include "state/options_screen.h"

#include "draw/painter.h"

const char* joystickName = nullptr;

extern "C" const char* SDL_JoystickName(int index) {
    return index == 0 ? joystickName : "another controller";
}

namespace {

constexpr int kWhite = 0xFFFFFF;
constexpr int kPink = 0xFE00C3;
constexpr int kBlue = 0x59B1FF;
constexpr uint16_t kOrange565 = 0xFD80;  // 0xFFB000
constexpr uint16_t kGround565 = 0x2104;  // 0x222222
constexpr uint16_t kChip565 = 0x4208;    // 0x404040

}  // namespace

ExpectedPage::ExpectedPage(int left, int top)
    : picture(newPicture(screen[1]->w, screen[1]->h)), left_(left), top_(top) {}

void ExpectedPage::box(int x, int y, int w, int h, uint16_t colour) {
    fill(picture.get(), left_ + x, top_ + y, w, h, colour);
}

void ExpectedPage::text(const char* words, int x, int y, int rgb, int font) {
    lettering_.paint(picture.get(), words, left_ + x, top_ + y, rgb, font);
}

void ExpectedPage::piece(SDL_Surface* from, int pieceX, int pieceY, int w, int h, int x, int y) {
    SDL_Rect part = {static_cast<int16_t>(pieceX), static_cast<int16_t>(pieceY),
                     static_cast<uint16_t>(w), static_cast<uint16_t>(h)};
    SDL_Rect to = {static_cast<int16_t>(left_ + x), static_cast<int16_t>(top_ + y), 0, 0};
    SDL_BlitSurface(from, &part, picture.get(), &to);
}

void ExpectedPage::page0(SDL_Surface* atlas, const char* controller) {
    box(0, 0, 640, 360, kGround565);
    text("FILTERS", 7, 120, kPink);
    text("Drag and drop filters to a keyboard letter to create a bond", 7, 170, kWhite);
    const char* letters[] = {"Q", "W", "E", "R", "T", "Y", "U", "I", "O"};
    for (int k = 0; k < 9; ++k) {
        const int x = 10 + 60 * k;
        box(x, 200, 44, 44, 0xFFFF);
        box(x + 2, 202, 40, 40, kGround565);  // the fill is on the work surface
        text(letters[k], x + 6, 204, kPink, 1);
    }
    const char* names[] = {"NONE", "MIRROR", "SCROLL",   "INVERT", "BURNED",
                           "ZOOM", "HUE",    "GAME BOY", "GLITCH", "SNOW"};
    for (int i = 0; i < 10; ++i) {
        box(7 + 60 * i, 140, 56, 20, kChip565);
        text(names[i], 10 + 60 * i, 145, kBlue);
    }
    text("SCREEN RESOLUTION", 7, 10, kPink);
    text("This option has no effect when using a Composite cable", 7, 30, kWhite);
    text("1280 x 720", 50, 57, kWhite);
    text("1024 x 768", 200, 57, kWhite);
    text("OTHER", 327, 10, kPink);
    text("show top white line", 370, 37, kWhite);
    text("show framerate", 370, 77, kWhite);
    text("GAME CONTROLLER", 7, 290, kPink);
    text(controller, 7, 310, kWhite);
    box(7, 330, 128, 24, kOrange565);
    text("configure controller", 13, 338, 0);
    back(atlas);
}

void ExpectedPage::checkBox(SDL_Surface* atlas, int x, int y, bool on) {
    piece(atlas, 96, on ? 24 : 0, 24, 24, x, y);
}

void ExpectedPage::page1Ground(SDL_Surface* controller) {
    fillAll(picture.get(), 0);
    piece(controller, 0, 0, 600, 370, 20, 0);
}

void ExpectedPage::page1Texts() {
    text("Click a red square to assign a button from your controller", 170, 330, kWhite);
    text("Press a button from your controller to check if it's correctly assigned", 138, 350,
         kWhite);
}

void ExpectedPage::square(int entry, uint16_t colour) {
    box(kSquares[entry].x, kSquares[entry].y, 30, 30, colour);
}

void ExpectedPage::page1Labels() {
    const auto line = [this](const char* words, int x, int y, int rgb) {
        if (*words != '\0') {
            box(x - 1, y, lettering_.width(words, 0) + 2, lettering_.height(words, 0), kGround565);
            text(words, x, y, rgb);
        }
    };
    for (const SquareLabel& label : kSquareLabels) {
        line(label.name, label.x, label.y, kWhite);
        line(label.onStage, label.x, label.y + kLabelStep, kBlue);
    }
}

void ExpectedPage::number(int entry, int button, bool down) {
    // Six pixels a digit, in the middle of the thirty.
    const int x = button < 10 ? 12 : 9;
    text(std::to_string(button).c_str(), kSquares[entry].x + x, kSquares[entry].y + 9,
         down ? kWhite : 0);
}

void ExpectedPage::sharedFrame(int entry) {
    const auto [x, y] = kSquares[entry];
    box(x, y, 30, 2, 0xFFFF);
    box(x, y + 28, 30, 2, 0xFFFF);
    box(x, y, 2, 30, 0xFFFF);
    box(x + 28, y, 2, 30, 0xFFFF);
}

void ExpectedPage::back(SDL_Surface* atlas) {
    piece(atlas, 0, 96, 64, 24, 576, 370);
}

OptionsTest::OptionsTest(int width, int height)
    : StageTest(width, height), atlas(loadPicture("data/textureUI.png")) {
    all->state = STATE_OPTIONS;
    keys->mouseX = -100;  // beside the picture
    keys->mouseY = -100;
    joystickName = nullptr;
}

OptionsTest::~OptionsTest() {
    joystickName = nullptr;
}
