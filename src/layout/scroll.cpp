#include "layout/scroll.h"

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

void scrollBy(ScrollBar& bar, int rows) {
    bar.pos = std::clamp(bar.pos + rows, 0, bar.maxPos);
}

// pos = (count - 15) x (y - 20) / (194 - thumb), held in its range. A list that fits has no thumb.
void scrollTo(ScrollBar& bar, int y) {
    if (bar.maxPos == 0 || bar.thumb >= kScrollTrack) {
        bar.pos = 0;
        return;
    }
    const int travelled = std::clamp(y - kScrollTop, 0, kScrollTrack);
    bar.pos = std::clamp((bar.count - kVisibleRows) * travelled / (kScrollTrack - bar.thumb), 0,
                         bar.maxPos);
}

void scrollIntoView(ScrollBar& bar, int row) {
    if (row < bar.pos) {
        bar.pos = row;
    } else if (row >= bar.pos + kVisibleRows) {
        bar.pos = row - kVisibleRows + 1;
    }
    bar.pos = std::clamp(bar.pos, 0, bar.maxPos);
}

int thumbTop(const ScrollBar& bar) {
    return bar.maxPos == 0 ? kScrollTop
                           : kScrollTop + bar.pos * (kScrollTrack - bar.thumb) / bar.maxPos;
}
