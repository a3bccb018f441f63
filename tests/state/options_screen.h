#pragma once
// What the options pages have to show: pictures built piece by piece at places written out here,
// and the fixture of the options screen's tests. Positions are relative to the 640 x 360 picture.

#include <set>
#include <string>

#include "state/stage.h"

// The controller's name that SDL answers in these tests; null for none.
extern const char* joystickName;

// The squares of page 1: their top left corners.
struct Corner {
    int x, y;
};
inline constexpr Corner kSquares[] = {{140, 90},  {170, 120}, {140, 150}, {110, 120}, {475, 80},
                                      {525, 120}, {475, 160}, {430, 120}, {140, 10},  {475, 10},
                                      {140, -30}, {475, -30}, {360, 120}, {260, 120}};

// What stands beside each square: the function's name and, below it, what it does on stage.
struct SquareLabel {
    int x, y;
    const char* name;
    const char* onStage;  // empty: nothing
};
inline constexpr int kLabelStep = 12;  // from the first line to the second
inline constexpr SquareLabel kSquareLabels[] = {{140, 66, "up", "top layer"},
                                                {204, 124, "right", "next clip"},
                                                {140, 182, "down", "bottom layer"},
                                                {80, 96, "left", "previous clip"},
                                                {509, 89, "no use", ""},
                                                {559, 124, "back", "list: home"},
                                                {509, 164, "confirm", "reverse; list: load"},
                                                {430, 152, "no use", ""},
                                                {174, 14, "block", "held: no reverse"},
                                                {509, 19, "no use", ""},
                                                {174, -21, "no use", ""},
                                                {509, -21, "no use", ""},
                                                {345, 94, "hold", "with show: list"},
                                                {245, 94, "show", "the panel"}};

class ExpectedPage {
public:
    // An empty surface as large as the video surface, with the picture at (left, top).
    ExpectedPage(int left, int top);

    void box(int x, int y, int w, int h, uint16_t colour);
    void text(const char* words, int x, int y, int rgb, int font = 0);
    void piece(SDL_Surface* from, int pieceX, int pieceY, int w, int h, int x, int y);

    // Everything of page 0 but boxes, slot names and drag: the same in every state.
    void page0(SDL_Surface* atlas, const char* controller);
    void checkBox(SDL_Surface* atlas, int x, int y, bool on);
    // Everything of page 1 but squares, texts and back button.
    void page1Ground(SDL_Surface* controller);
    void page1Texts();
    void page1Labels();
    void square(int entry, uint16_t colour);
    // The button's number, of one digit or two, in a square that is green, or blue when it is down.
    void number(int entry, int button, bool down = false);
    void sharedFrame(int entry);  // white, two pixels wide, within the square
    void back(SDL_Surface* atlas);

    Picture picture;

private:
    Lettering lettering_;
    int left_;
    int top_;
};

class OptionsTest : public StageTest {
protected:
    OptionsTest() : OptionsTest(1280, 720) {}
    OptionsTest(int width, int height);
    ~OptionsTest() override;

    void draw() { _options->draw(screen[1], atlas.get()); }

    Picture atlas;
};
