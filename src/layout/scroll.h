#pragma once
// The scroll record of a list that shows 15 rows at a time beside a track of 194 pixels that starts
// at y 20. Rows count from 0; a list may be empty. Nothing here fails.

#include <cstdint>

inline constexpr int kVisibleRows = 15;
inline constexpr int kScrollTop = 20;      // y of the track, pixels
inline constexpr int kScrollTrack = 194;   // pixels
inline constexpr int kSmallestThumb = 20;  // pixels

struct ScrollBar {
    int32_t pos;     // first visible row
    int32_t maxPos;  // largest pos
    int32_t count;   // rows in the list
    int32_t active;  // non-zero while the thumb is dragged
    int32_t thumb;   // thumb height, pixels
};

// From the top, for a list of `count` rows.
void resetScroll(ScrollBar& bar, int count);
// The list changed to `count` rows; the position stays as far as it can.
void resizeScroll(ScrollBar& bar, int count);
// By so many rows down (or up when negative), as far as the list goes.
void scrollBy(ScrollBar& bar, int rows);
// The position that a thumb dragged to `y` asks for.
void scrollTo(ScrollBar& bar, int y);
// Scrolls as little as it takes to have `row` in view.
void scrollIntoView(ScrollBar& bar, int row);
// y of the thumb's first pixel. Without a thumb (maxPos 0) the top of the track.
int thumbTop(const ScrollBar& bar);
