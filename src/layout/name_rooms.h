#pragma once
// How much room names have on the screens, in pixels, with the numbers that it follows from. The
// screens draw by them, and the clip tool measures names against them.

#include "layout/page_layout.h"

namespace layout {

// The panel over the mix: a layer's box on either kind of output, and the clip's name in it.
inline constexpr int kPanelBoxHdmi = 210;
inline constexpr int kPanelBoxComposite = 120;
inline constexpr int kPanelNameX = 6;

// The list of playlists over the mix: a box as high as its rows.
inline constexpr int kOverMenuNameX = 34;
inline constexpr int kOverMenuCountX = 206;
inline constexpr int kOverMenuRowHeight = 20;
inline constexpr int kOverMenuEdge = 2;  // above the first row and below the last
inline constexpr int kOverMenuNameRoom = kOverMenuCountX - kOverMenuNameX;

// The rows of the playlist screen: a playlist's name before its number of tracks, a track's path
// behind its number.
inline constexpr int kRowIndent = 5;  // from a list's left edge
inline constexpr int kRowEnd = 4;     // from a list's right edge
inline constexpr int kCountColumn = 24;
inline constexpr int kNumberColumn = 20;
inline constexpr int kTextGap = 8;  // between two texts in a line
inline constexpr int kPlaylistNameRoom =
    page::kListWidth[page::LEFT] - kRowIndent - kRowEnd - kCountColumn;
inline constexpr int kTrackPathRoom =
    page::kListWidth[page::RIGHT] - kNumberColumn - kTextGap - kRowEnd;

}  // namespace layout
