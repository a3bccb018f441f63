// The playlist screen's frame: preview or page, and the label of what is dragged.
#include <memory>

#include "common/geometry.h"
#include "core/all.h"
#include "core/globals.h"
#include "editor/keys_editor.h"
#include "editor/page_painter.h"
#include "input/keys.h"
#include "moxel/moxel.h"

// The page's surface lives for the frame, also when there is no memory for what is drawn on it: its
// format follows the work surface's at any moment.
void Editor::draw(SDL_Surface* surface, SDL_Surface* atlas) {
    const c_moxel& clip = *model.previewClip;
    if (model.previewActive != 0 && clip.state == CLIP_READY && clip.frameCount > 0) {
        drawPreview(surface);
        return;
    }
    const SDL_PixelFormat& format = *surface->format;
    const std::unique_ptr<SDL_Surface, void (*)(SDL_Surface*)> paper(
        SDL_CreateRGBSurface(SDL_SWSURFACE, kFrameWidth, kFrameHeight, format.BitsPerPixel,
                             format.Rmask, format.Gmask, format.Bmask, format.Amask),
        SDL_FreeSurface);
    if (paper == nullptr) {
        return;
    }
    if (onPage(page::TRACKS)) {
        explorer.lookInto(model);
    }
    const Point pointer = {keys->mouseX, keys->mouseY};
    PagePainter painter(*this, paper.get(), atlas, pointer, tempsActuel);
    painter.fill(0, 0, kFrameWidth, kFrameHeight, page::kPaperRgb);
    painter.draw();
    if (model.dragging != 0) {
        painter.drag(pointer.x, pointer.y);
    }
    const Point offset = pictureOffset(all->appW, all->appH);
    Painter(surface, offset).piece(paper.get(), 0, 0, kFrameWidth, kFrameHeight, 0, 0);
}

// The doors of c_playlist and c_keys to the screen.

void c_playlist::draw(SDL_Surface* surface, SDL_Surface* atlas) {
    editor->draw(surface, atlas);
}

void c_playlist::drawScroll(SDL_Surface* surface, int bar) {
    PagePainter(*editor, surface).scrollBar(bar);
}

void c_playlist::drawDrag(SDL_Surface* surface, int x, int y) {
    PagePainter(*editor, surface).drag(x, y);
}

void c_playlist::startPreview() {
    editor->startPreview();
}

void c_playlist::readDir(const std::string& entry) {
    editor->explorer.enter(*this, entry);
}

void c_keys::actionsEditPlaylists() {
    useEditor(*this, *editor);
}
