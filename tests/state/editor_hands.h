#pragma once
// Fixture for the playlist screen: hands on mouse and keys, frame by frame, straight into the
// handler. Points are pixels of the 640 x 360 picture. Rows are visible rows of a list.

#include <SDL.h>

#include <cctype>

#include "draw/painter.h"
#include "layout/page_layout.h"
#include "state/stage.h"

struct Spot {
    int x;
    int y;
};

// On the browse page.
inline constexpr Spot kCreate = {20, 240}, kEdit = {90, 240}, kPreview = {150, 240},
                      kDelete = {210, 240}, kRename = {280, 240}, kCopy = {340, 240},
                      kMove = {400, 240}, kBack = {600, 240};
// On the name page.
inline constexpr Spot kOk = {30, 268}, kCancel = {90, 268};
// On the page of one playlist.
inline constexpr Spot kAdd = {160, 268}, kTrackPreview = {220, 268}, kTrackDelete = {290, 268},
                      kTrackMove = {350, 268}, kConfirm = {530, 268}, kTracksBack = {600, 268};
// Of a question.
inline constexpr Spot kYes = {20, 320}, kNo = {90, 320};
inline constexpr Spot kNowhere = {450, 350};

inline Spot leftRow(int row) {
    return {100, 18 + 13 * row + 6};
}
inline Spot rightRow(int row) {
    return {400, 18 + 13 * row + 6};
}
inline Spot keyCell(int key) {
    return {10 + 30 * (key % 10) + 15, 52 + 30 * (key / 10) + 15};
}

class EditorTest : public StageTest {
protected:
    EditorTest() { open(); }
    EditorTest(int width, int height) : StageTest(width, height) { open(); }

    void open() {
        std::filesystem::create_directories("userdata");
        std::filesystem::create_directories("videos");
        _textureUI = loadPicture("data/textureUI.png");
        all->state = STATE_PLAYLISTS;
        pointAt(kNowhere);
        // The screen stands for a while already.
        frame();
        tempsActuel += 1000;
        frame();
    }
    static void frame() {
        tempsActuel += 40;
        printed += printedBy([] { keys->actionsEditPlaylists(); });
    }
    static void pointAt(Spot at) {
        keys->mouseX = at.x;
        keys->mouseY = at.y;
    }
    static void press(Spot at) {
        pointAt(at);
        keys->mouseClick = 1;
        keys->mouseHeld = 0;
        frame();
        keys->mouseClick = 0;
        keys->mouseHeld = 1;
    }
    static void move(Spot to) {
        pointAt(to);
        frame();
    }
    static void release() {
        keys->mouseHeld = 0;
        frame();
    }
    // Clicks stand far enough apart in time not to make a double click.
    static void click(Spot at) {
        tempsActuel += 2000;
        press(at);
        release();
    }
    static void drag(Spot from, Spot to) {
        tempsActuel += 2000;
        press(from);
        move(to);
        release();
    }
    static void tap(int slot) {
        setKeys({slot});
        frame();
        setKeys({});
        frame();
    }
    // A key as SDL tells of it: its symbol and character at once, its slot a frame later.
    static void typeKey(int symbol, int character = 0, int slot = -1) {
        keys->typed[0] = {symbol, static_cast<uint16_t>(character)};
        keys->typedCount = 1;
        keys->keyDown = 1;
        frame();
        keys->typedCount = 0;
        keys->keyDown = 0;
        if (slot >= 0) {
            setKeys({slot});
        }
        frame();
        setKeys({});
        frame();
    }
    static void type(const std::string& text) {
        for (const char letter : text) {
            typeKey(std::tolower(letter), letter);
        }
    }
    static void turnWheel(Spot at, int notches) {
        pointAt(at);
        keys->wheel = notches;
        frame();
        keys->wheel = 0;
    }
    // Presses a slot so many times.
    static void tap(int slot, int times) {
        for (int i = 0; i < times; ++i) {
            tap(slot);
        }
    }
    // Saving fails until letSave().
    static void breakSaving() {
        std::filesystem::rename("userdata", "gone");
        writeFile("userdata", "no folder");
    }
    static void letSave() {
        std::filesystem::remove("userdata");
        std::filesystem::rename("gone", "userdata");
    }
    static void draw() { playlist->draw(screen[0], _textureUI); }
    static std::vector<std::string> paths(int famille) {
        std::vector<std::string> result;
        for (int t = 0; t < playlist->familles[famille].nbTracks; ++t) {
            result.push_back(playlist->familles[famille].tracks[t].path);
        }
        return result;
    }
    static int rowOfEntry(const std::string& name) {
        const auto end = playlist->entries + playlist->nbEntries;
        const auto found = std::find(playlist->entries, end, name);
        EXPECT_NE(found, end) << name;
        return static_cast<int>(found - playlist->entries);
    }
    static void editFirst() {
        click(leftRow(0));
        click(kEdit);
        ASSERT_EQ(playlist->editPage, page::TRACKS);
    }

    static inline std::string printed;  // by all frames of the test program so far
};
