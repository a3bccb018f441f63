// The doors of c_playlist and c_keys to the playlist screen.
#include "core/globals.h"
#include "editor/editor.h"
#include "editor/keys_editor.h"
#include "editor/page_painter.h"
#include "input/keys.h"

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
