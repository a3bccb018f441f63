#include "app/screens.h"

namespace app {

namespace {

// The items' squares in the picture: their top left corner.
struct Corner {
    int x;
    int y;
};
// Cells of 104 pixels from (160, 60) on; the bars start 9 to the right and 15 below a cell's
// corner.
constexpr Corner kHomeItems[] = {{273, 75}, {377, 75}, {169, 179}, {273, 179}, {377, 179}};

constexpr int kRowHeight = 20;
constexpr int kBoxEdge = 2;
// 0x999999 at 30 %: 19, 38, 19 in RGB565, of which SDL leaves 9 / 32 on black: 5, 10, 5.
constexpr uint16_t kHighlightOnBlack = 0x2945;
constexpr uint16_t kHelpColour = 0xAD55;  // 0xAAAAAA

bool barsAreWhite(const Shot& shot, int x, int y) {
    return isFilled(shot, {x, y, 94, 2}, kWhite) && isFilled(shot, {x + 92, y, 2, 94}, kWhite) &&
           isFilled(shot, {x, y + 92, 94, 2}, kWhite) && isFilled(shot, {x, y, 2, 94}, kWhite);
}

}  // namespace

bool isFilled(const Shot& shot, Box box, uint16_t colour) {
    return countOf(shot, box, colour) == box.width * box.height;
}

int countOf(const Shot& shot, Box box, uint16_t colour) {
    int count = 0;
    for (int y = box.y; y < box.y + box.height; ++y) {
        for (int x = box.x; x < box.x + box.width; ++x) {
            count +=
                x >= 0 && y >= 0 && x < shot.width && y < shot.height && shot.at(x, y) == colour;
        }
    }
    return count;
}

int homeSelection(const Shot& shot) {
    return homeSelection(shot, pictureX(shot.width), pictureY(shot.height));
}

int homeSelection(const Shot& shot, int left, int top) {
    int selected = -1;
    for (int item = 0; item < 5; ++item) {
        if (!barsAreWhite(shot, left + kHomeItems[item].x, top + kHomeItems[item].y)) {
            continue;
        }
        if (selected >= 0) {
            return -1;
        }
        selected = item;
    }
    return selected;
}

Box overMenuRow(int windowHeight, int row, int rows) {
    const int top = (windowHeight - (rows * kRowHeight + 2 * kBoxEdge)) / 2;
    return {32, top + kBoxEdge + kRowHeight * row, 196, kRowHeight};
}

int overMenuSelection(const Shot& shot, int rows) {
    int selected = -1;
    for (int row = 0; row < rows; ++row) {
        const Box box = overMenuRow(shot.height, row, rows);
        // The last pixels of the row, past the longest count.
        if (isFilled(shot, {box.x + box.width - 2, box.y, 2, box.height}, kHighlightOnBlack)) {
            if (selected >= 0) {
                return -1;
            }
            selected = row;
        }
    }
    return selected;
}

bool overMenuShown(const Shot& shot, int rows) {
    constexpr int kAbove = 20;
    const int top = overMenuRow(shot.height, 0, rows).y - kBoxEdge;
    const Box words = {32, top - kAbove, 60, 8};
    const int lit = countOf(shot, words, kHelpColour);
    return lit > 20 && lit + countOf(shot, words, 0) == words.width * words.height;
}

}  // namespace app
