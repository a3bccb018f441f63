// The playlist screen's frame: preview or page, scroll bars, the label of what is dragged.
#include <memory>

#include "common/geometry.h"
#include "common/rgb565.h"
#include "core/all.h"
#include "core/display.h"
#include "core/globals.h"
#include "draw/ttf.h"
#include "editor/page_painter.h"
#include "input/keys.h"
#include "moxel/moxel.h"
#include "playlists/playlist.h"

namespace {

constexpr int kTrackRgb = 0x444444;
constexpr int kThumbRgb = 0x888888;
constexpr int kMarkerWidth = 310;
constexpr int kMarkerHeight = 2;

// The thumb's arrowheads, row by row from their narrow end: columns from the thumb's left edge.
struct ArrowRow {
    int x;
    int width;
};
constexpr ArrowRow kArrowRows[] = {{4, 2}, {3, 4}, {2, 6}};
constexpr int kUpArrowY = 2;    // of the narrow end, from the thumb's top
constexpr int kDownArrowY = 3;  // of the narrow end, up from the thumb's end

// Goes also when there is no memory for what is drawn on it.
struct FreeSurface {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using Paper = std::unique_ptr<SDL_Surface, FreeSurface>;

}  // namespace

void c_playlist::initScroll(int bar, int count) {
    resetScroll(scroll[bar], count);
}

void c_playlist::updateScroll(int bar, int count) {
    resizeScroll(scroll[bar], count);
}

// The page's surface lives for the frame: its format follows the work surface's at any moment.
void c_playlist::draw(SDL_Surface* surface, SDL_Surface* atlas) {
    if (previewActive != 0 && previewClip->state == CLIP_READY && previewClip->frameCount > 0) {
        drawPreview(surface);
        return;
    }
    const SDL_PixelFormat& format = *surface->format;
    const Paper paper(SDL_CreateRGBSurface(SDL_SWSURFACE, kFrameWidth, kFrameHeight,
                                           format.BitsPerPixel, format.Rmask, format.Gmask,
                                           format.Bmask, format.Amask));
    if (paper == nullptr) {
        return;
    }
    SDL_FillRect(paper.get(), nullptr, surfaceColour(paper.get(), px::fromRgb(page::kPaperRgb)));
    drawPage(paper.get(), atlas);
    if (dragging != 0) {
        drawDrag(paper.get(), keys->mouseX, keys->mouseY);
    }
    const Point offset = pictureOffset(all->appW, all->appH);
    SDL_Rect at = {static_cast<int16_t>(offset.x), static_cast<int16_t>(offset.y), 0, 0};
    SDL_BlitSurface(paper.get(), nullptr, surface, &at);
}

void c_playlist::drawPage(SDL_Surface* surface, SDL_Surface* atlas) {
    PagePainter painter(surface, atlas);
    switch (editPage) {
        case page::BROWSE:
            drawBrowsePage(painter);
            break;
        case page::NEW_PLAYLIST:
            drawNamePage(painter);
            break;
        case page::TRACKS:
            drawTracksPage(painter);
            break;
        default:
            break;
    }
}

void c_playlist::drawScroll(SDL_Surface* surface, int bar) {
    const ScrollBar& drawn = scroll[bar];
    const int x = page::kScrollX[bar];
    PagePainter painter(surface, nullptr);
    painter.fill(x, kScrollTop - 1, page::kScrollWidth, kScrollTrack + 2, page::kPaperRgb);
    painter.fill(x + 1, kScrollTop, page::kScrollWidth - 2, kScrollTrack, kTrackRgb);
    if (drawn.maxPos == 0) {
        return;
    }
    const int top = thumbTop(drawn);
    const int colour = drawn.active != 0 ? static_cast<int>(_colorO) : kThumbRgb;
    painter.fill(x, top, page::kScrollWidth, drawn.thumb, colour);
    int step = 0;
    for (const ArrowRow& row : kArrowRows) {
        painter.fill(x + row.x, top + kUpArrowY + step, row.width, 1, 0);
        painter.fill(x + row.x, top + drawn.thumb - kDownArrowY - step, row.width, 1, 0);
        ++step;
    }
}

std::string c_playlist::draggedText() const {
    const auto trackOf = [this](int famille, int row) {
        const bool there =
            famille >= 0 && famille < nbFamilles && row >= 0 && row < familles[famille].nbTracks;
        return there ? familles[famille].tracks[row].path : std::string();
    };
    if (editPage == page::BROWSE && dragSource == page::LEFT) {
        return selRow >= 0 && selRow < nbFamilles ? familles[selRow].name : "";
    }
    if (editPage == page::BROWSE && dragSource == page::RIGHT) {
        return trackOf(selRow, selItem);
    }
    if (editPage == page::TRACKS && dragSource == page::LEFT) {
        return trackOf(editFamille, selRow);
    }
    if (editPage == page::TRACKS && dragSource == page::RIGHT) {
        return selItem >= 0 && selItem < nbEntries ? entries[selItem] : "";
    }
    return "";
}

void c_playlist::drawDrag(SDL_Surface* surface, int x, int y) {
    if (dropRow < page::kNoDropRow) {
        PagePainter painter(surface, nullptr);
        painter.fill(page::kListX[page::LEFT], page::kRowHeight * dropRow + page::kFirstRowY,
                     kMarkerWidth, kMarkerHeight, static_cast<int>(_colorO));
    }
    ttf->texteFilled(surface, draggedText().c_str(), static_cast<short>(x), static_cast<short>(y),
                     static_cast<int>(_colorW), 0, static_cast<int>(_colorB));
}
