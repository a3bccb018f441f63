#pragma once
// Where things stand on the program's screens, and which screen a shot shows.

#include "app/shot.h"

namespace app {

struct Box {
    int x;
    int y;
    int width;
    int height;
};

inline constexpr int kPictureWidth = 640;
inline constexpr int kPictureHeight = 360;
inline constexpr uint16_t kWhite = 0xFFFF;

// Top left of the 640 x 360 picture in a window of that size.
constexpr int pictureX(int windowWidth) {
    return (windowWidth - kPictureWidth) / 2;
}
constexpr int pictureY(int windowHeight) {
    return (windowHeight - kPictureHeight) / 2;
}

bool isFilled(const Shot& shot, Box box, uint16_t colour);
// Pixels of that colour in the box.
int countOf(const Shot& shot, Box box, uint16_t colour);

// The home screen's item whose four bars are white while no other item's are; -1 when this is not
// the home screen.
int homeSelection(const Shot& shot);
// The same with the picture's top left there, for a window that is not on the screen as a whole.
int homeSelection(const Shot& shot, int left, int top);

// The over-menu's row i of n, in the window.
Box overMenuRow(int windowHeight, int row, int rows);
// The selected row of n rows, -1 when none is highlighted. Looks at the highlight on black alone,
// as on a mix screen without clips.
int overMenuSelection(const Shot& shot, int rows);
// The help line's words stand on their black strip above n rows.
bool overMenuShown(const Shot& shot, int rows);

}  // namespace app
