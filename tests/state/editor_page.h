#pragma once
// Fixture for the pages of the playlist screen as drawn: a test composes the page that it wants
// from texts and rectangles on a sheet of paper and compares. Positions are pixels of the 640 x 360
// page.

#include <string>

#include "state/editor_hands.h"

namespace sheet {

inline constexpr uint16_t kPaper = 0x18C3;      // 0x181818
inline constexpr uint16_t kGround = 0x39C7;     // 0x3A3A3A, of a lit row and of a question
inline constexpr uint16_t kSelected = 0xFFFF;   // a row's ground, its list in use
inline constexpr uint16_t kElsewhere = 0x8C51;  // 0x888888, the other list in use
inline constexpr uint16_t kMarked = 0xFD80;     // 0xFFB000
inline constexpr uint16_t kThumb = 0x8C51;      // 0x888888
inline constexpr int kWhite = 0xFFFFFF;
inline constexpr int kGrey = 0x888888;
inline constexpr int kOrange = 0xFFB000;
inline constexpr int kBlack = 0;

// A scroll bar from x on; thumb 0: the list fits.
inline void bar(SDL_Surface* on, int x, int top, int thumb, uint16_t colour) {
    fill(on, x + 1, 20, 8, 194, 0x4228);  // 0x444444
    if (thumb == 0) {
        return;
    }
    fill(on, x, top, 10, thumb, colour);
    fill(on, x + 4, top + 2, 2, 1, 0);
    fill(on, x + 3, top + 3, 4, 1, 0);
    fill(on, x + 2, top + 4, 6, 1, 0);
    fill(on, x + 2, top + thumb - 5, 6, 1, 0);
    fill(on, x + 3, top + thumb - 4, 4, 1, 0);
    fill(on, x + 4, top + thumb - 3, 2, 1, 0);
}

}  // namespace sheet

class PageTest : public EditorTest {
protected:
    void clean() { fillAll(wanted.get(), sheet::kPaper); }
    void box(int x, int y, int w, int h, uint16_t colour) {
        fill(wanted.get(), x, y, w, h, colour);
    }
    void text(const std::string& words, int x, int y, int rgb, int font = 0) {
        if (!words.empty()) {
            letters.paint(wanted.get(), words.c_str(), x, y, rgb, font);
        }
    }
    int width(const std::string& words, int font = 0) { return letters.width(words.c_str(), font); }
    void textRight(const std::string& words, int right, int y, int rgb) {
        text(words, right - width(words), y, rgb);
    }
    // A title and, 8 pixels behind it, what it is about.
    void title(const std::string& words, const std::string& subject, int x) {
        text(words, x, 4, sheet::kOrange);
        text(subject, x + width(words) + 8, 4, sheet::kGrey);
    }
    // The two lines of a page and the selection in full.
    void lines(int y, const char* mouse, const char* keysHelp, const std::string& selection) {
        text(mouse, 4, y, sheet::kWhite);
        text(keysHelp, 4, y + 14, sheet::kGrey);
        text(selection, 4, 345, sheet::kGrey);
    }
    void bar(int x, int top, int thumb, uint16_t colour) {
        sheet::bar(wanted.get(), x, top, thumb, colour);
    }
    // Draws a frame; the page out of the window's middle.
    static Picture drawn() {
        draw();
        return cut(screen[0], 320, 180, 640, 360);
    }
    // The whole page but the rows of its buttons, which begin at `buttonsY`.
    testing::AssertionResult drawnAsWanted(int buttonsY) {
        const Picture actual = drawn();
        copy(actual.get(), wanted.get(), 0, buttonsY - 2, 640, 28);
        return samePixels(actual.get(), wanted.get());
    }
    // The same with a question's two answers left out.
    testing::AssertionResult drawnWithQuestion(int buttonsY) {
        copy(drawn().get(), wanted.get(), 8, 308, 124, 28);
        return drawnAsWanted(buttonsY);
    }
    // A part of the page.
    testing::AssertionResult drawnAsWantedIn(int x, int y, int w, int h) {
        return samePixels(cut(drawn().get(), x, y, w, h).get(),
                          cut(wanted.get(), x, y, w, h).get());
    }
    static void copy(SDL_Surface* from, SDL_Surface* to, int x, int y, int w, int h) {
        for (int row = y; row < y + h; ++row) {
            for (int column = x; column < x + w; ++column) {
                setPixel(to, column, row, pixelAt(from, column, row));
            }
        }
    }
    static Picture cut(SDL_Surface* from, int x, int y, int w, int h) {
        Picture part = newPicture(w, h);
        for (int row = 0; row < h; ++row) {
            for (int column = 0; column < w; ++column) {
                setPixel(part.get(), column, row, pixelAt(from, x + column, y + row));
            }
        }
        return part;
    }

    Lettering letters;
    Picture wanted = newPicture(640, 360, sheet::kPaper);
};
