#pragma once
// Draws the playlist screen's pages as the Editor leaves them onto the 640 x 360 page surface.
// Lives for one frame and changes nothing else; without an atlas the buttons are drawn plainly.
// Where a text has no room it is cut.

#include <SDL.h>

#include <cstdint>
#include <string>

#include "draw/painter.h"
#include "editor/editor.h"

class PagePainter : public Painter {
public:
    // The pointer lights what lies under it; the caret blinks by `now`, ms.
    explicit PagePainter(const Editor& shown, SDL_Surface* paper, SDL_Surface* atlas = nullptr,
                         Point pointer = {-1, -1}, int now = 0)
        : Painter(paper),
          editor_(shown),
          model_(shown.model),
          atlas_(atlas),
          pointer_(pointer),
          now_(now) {}

    void draw();  // the page shown
    void scrollBar(int list);
    void drag(int x, int y);  // where the item would be dropped, and its text at the pointer

private:
    // How a row looks. The list in use shows its selection inverted, the other one greyed.
    // A carried one is orange.
    enum Look { PLAIN, LIT, SELECTED_ELSEWHERE, SELECTED, CARRIED };
    struct Row {
        int y;         // of its texts
        uint32_t ink;  // for its texts
        uint32_t quietInk;
        uint32_t alarm;  // what is wrong with its file
    };

    // The controls of every page (page_painter).
    void controls(const char* mouseHelp, const char* keysHelp);
    void button(const page::ButtonPlace& place, bool usable, bool focused);
    void question();
    std::string questionSubject() const;
    void line(const std::string& words, int y, uint32_t rgb);  // over the whole width

    // The pages with lists (page_painter_lists).
    void browsePage();
    void tracksPage();
    void title(int list, const std::string& heading, const std::string& subject);
    void hint(int list, const char* words);
    Look lookOf(int list, int row) const;
    Row ground(int list, int visibleRow);
    void familleRows();
    void trackRows(int list);
    void entryRows();
    int clipFacts(const ClipFacts& facts, const Row& row);
    void explorerTitle();

    // The name page (page_painter).
    void namePage();
    void name();
    void keys();

    const Editor& editor_;
    const c_playlist& model_;
    SDL_Surface* atlas_;
    Point pointer_;
    int now_;
};
