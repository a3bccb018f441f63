#include "playlists/scroll.h"

#include <algorithm>

void resetScroll(ScrollBar& bar, int count) {
    bar.pos = 0;
    bar.active = 0;
    resizeScroll(bar, count);
}

void resizeScroll(ScrollBar& bar, int count) {
    bar.count = count;
    bar.maxPos = std::max(count - kVisibleRows, 0);
    bar.pos = std::min(bar.pos, bar.maxPos);
    bar.thumb = std::max(kScrollTrack / (bar.maxPos + 1), kSmallestThumb);
}
