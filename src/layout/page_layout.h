#pragma once
// Where things stand on the playlist screen's three pages, in pixels of the 640 x 360 picture, and
// what lies under a point. Drawing and hit-testing share these numbers. Rectangles here are half
// open: a place of width w covers x to x + w - 1. What lies under no part of the page is -1, or
// kNoDropRow for a drop.

#include <cstdint>
#include <span>

#include "layout/scroll.h"

namespace page {

enum Page : int { BROWSE = 0, NEW_PLAYLIST = 1, TRACKS = 2 };
enum List : int { LEFT = 0, RIGHT = 1 };

inline constexpr uint32_t kPaperRgb = 0x181818;
inline constexpr int kFirstRowY = 18;
inline constexpr int kRowHeight = 13;
inline constexpr int kListX[2] = {2, 322};
inline constexpr int kListWidth[2] = {308, 306};
inline constexpr int kTitleY = 4;

inline constexpr int kScrollX[2] = {310, 628};
inline constexpr int kScrollWidth = 10;

// The marker's last useful place is below the last visible row.
inline constexpr int kNoDropRow = 16;
inline constexpr int kDropEndY = 220;

// The atlas rows of the buttons, in order.
enum Button : int {
    CREATE,
    EDIT,
    PREVIEW,
    DELETE,
    BACK,
    CONFIRM,
    OK,
    CANCEL,
    YES,
    NO,
    RENAME,
    COPY,
    MOVE,
    ADD,
};
inline constexpr int kNoButton = -1;

struct ButtonPlace {
    Button button;
    int x;
    int y;
    int width;
};

inline constexpr int kButtonHeight = 24;
inline constexpr int kButtonWidth = 56;
inline constexpr int kBackWidth = 64;
// No two pages have a button in the same place: what a hand that clicks twice uses is on the page
// that it saw. The browse page has the upper row, the other two share the lower one.
inline constexpr int kUpperY = 228;
inline constexpr int kLowerY = 256;

// clang-format off
inline constexpr ButtonPlace kBrowseButtons[] = {
    {CREATE,    2, kUpperY, kButtonWidth},
    {EDIT,     66, kUpperY, kButtonWidth},
    {PREVIEW, 130, kUpperY, kButtonWidth},
    {DELETE,  194, kUpperY, kButtonWidth},
    {RENAME,  258, kUpperY, kButtonWidth},
    {COPY,    322, kUpperY, kButtonWidth},
    {MOVE,    386, kUpperY, kButtonWidth},
    {BACK,    574, kUpperY, kBackWidth},
};
inline constexpr ButtonPlace kNameButtons[] = {
    {OK,       10, kLowerY, kButtonWidth},
    {CANCEL,   74, kLowerY, kButtonWidth},
};
inline constexpr ButtonPlace kTracksButtons[] = {
    {ADD,     138, kLowerY, kButtonWidth},
    {PREVIEW, 202, kLowerY, kButtonWidth},
    {DELETE,  266, kLowerY, kButtonWidth},
    {MOVE,    330, kLowerY, kButtonWidth},
    {CONFIRM, 510, kLowerY, kButtonWidth},
    {BACK,    574, kLowerY, kBackWidth},
};
inline constexpr ButtonPlace kQuestionButtons[] = {
    {YES,      10, 310, kButtonWidth},
    {NO,       74, 310, kButtonWidth},
};
// clang-format on

// The two lines of help, where the page has no buttons: under the upper row or over the lower one.
inline constexpr int kHelpLine = 14;

constexpr int helpY(int shown) {
    return shown == BROWSE ? 262 : kUpperY;
}

constexpr std::span<const ButtonPlace> buttonsOf(int shown) {
    switch (shown) {
        case BROWSE:
            return kBrowseButtons;
        case NEW_PLAYLIST:
            return kNameButtons;
        case TRACKS:
            return kTracksButtons;
        default:
            return {};
    }
}

constexpr bool inside(int px, int py, int x, int y, int w, int h) {
    return px >= x && px < x + w && py >= y && py < y + h;
}

constexpr int buttonAt(std::span<const ButtonPlace> places, int x, int y) {
    for (const ButtonPlace& place : places) {
        if (inside(x, y, place.x, place.y, place.width, kButtonHeight)) {
            return place.button;
        }
    }
    return -1;
}

// Visible row 0 to 14 of a list.
constexpr int rowAt(int list, int x, int y) {
    const bool hit =
        inside(x, y, kListX[list], kFirstRowY, kListWidth[list], kVisibleRows * kRowHeight);
    return hit ? (y - kFirstRowY) / kRowHeight : -1;
}

// The row of the left list before which something let go here lands: 0 to 15. The title line
// belongs to the first row, so that the list's top edge is easy to hit.
constexpr int dropRowAt(int x, int y) {
    if (!inside(x, y, kListX[LEFT], 0, kListWidth[LEFT], kDropEndY)) {
        return kNoDropRow;
    }
    return y < kFirstRowY ? 0 : (y - kFirstRowY) / kRowHeight;
}

// -1 above the first row of the left list, 1 below its last one, else 0: where a drag scrolls.
constexpr int dragScrollAt(int x, int y) {
    if (dropRowAt(x, y) == kNoDropRow) {
        return 0;
    }
    if (y < kFirstRowY) {
        return -1;
    }
    return y >= kFirstRowY + kVisibleRows * kRowHeight ? 1 : 0;
}

// The list whose scroll bar lies under the point.
constexpr int scrollBarAt(int x, int y) {
    for (int list = LEFT; list <= RIGHT; ++list) {
        if (inside(x, y, kScrollX[list], kScrollTop, kScrollWidth, kScrollTrack)) {
            return list;
        }
    }
    return -1;
}

// The on-screen keyboard: 42 keys in rows of 10.
inline constexpr int kKeys = 42;
inline constexpr const char* kKeyTexts[kKeys] = {
    "a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m",   "n",
    "o", "p", "q", "r", "s", "t", "u", "v", "w", "x", "y", "z", "_",   "-",
    "+", "*", "0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "Del", "OK",
};
inline constexpr int kKeyColumns = 10;
inline constexpr int kKeySize = 30;
inline constexpr int kKeysX = 10;
inline constexpr int kKeysY = 52;
inline constexpr int kKeyDel = 40;
inline constexpr int kKeyOk = 41;
inline constexpr int kLongestName = 20;  // characters that can be typed

constexpr const char* keyText(int key) {
    return key >= 0 && key < kKeys ? kKeyTexts[key] : "";
}

constexpr int keyAt(int x, int y) {
    if (x < kKeysX || x >= kKeysX + kKeyColumns * kKeySize || y < kKeysY) {
        return -1;
    }
    const int key = (y - kKeysY) / kKeySize * kKeyColumns + (x - kKeysX) / kKeySize;
    return key < kKeys ? key : -1;
}

// One key further in a direction; at an edge the key stays. From no key to the first one.
constexpr int keyBeside(int key, int dx, int dy) {
    if (key < 0 || key >= kKeys) {
        return 0;
    }
    const int column = key % kKeyColumns + dx;
    const int beside = key + dx + dy * kKeyColumns;
    return column < 0 || column >= kKeyColumns || beside < 0 || beside >= kKeys ? key : beside;
}

}  // namespace page
