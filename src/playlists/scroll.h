#pragma once
// The scroll record of a list that shows 15 rows at a time beside a track of 194 pixels.

#include <cstdint>

inline constexpr int kVisibleRows = 15;
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
