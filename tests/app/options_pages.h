#pragma once
// The options as a performer meets them: which page a shot shows, clicks and drags on it. Positions
// are those of the 640 x 360 picture; (left, top) is where it stands in the window, which changes
// as soon as another resolution is chosen.

#include <gtest/gtest.h>

#include <string>

#include "app/screens.h"
#include "app/stage.h"

namespace app {

// Colours of a page.
inline constexpr uint16_t kGround = 0x2104;
inline constexpr uint16_t kChip = 0x4208;
inline constexpr uint16_t kDragBar = 0x5D9F;
inline constexpr uint16_t kNames = 0xFD80;

// How both files of the options begin.
inline constexpr const char* kHead = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";

// Positions on a page, from the picture's top left.
struct Place {
    int x, y;
};

// A performer's hands on the options, with the picture at (left, top) of the window.
class OptionsPages : public testing::Test {
protected:
    explicit OptionsPages(Screen screen = {}) : stage(screen) {}

    void click(Place at) { stage.click(left + at.x, top + at.y); }
    uint16_t at(const Shot& shot, Place place) { return shot.at(left + place.x, top + place.y); }
    Box box(int x, int y, int w, int h) { return {left + x, top + y, w, h}; }
    // All ten chips and the ground between them.
    bool page0Shown(const Shot& shot) {
        bool shown = at(shot, {300, 275}) == kGround;
        for (int i = 0; i < 10; ++i) {
            shown = shown && at(shot, {7 + 60 * i, 140}) == kChip &&
                    at(shot, {62 + 60 * i, 159}) == kChip &&
                    at(shot, {64 + 60 * i, 150}) == kGround;
        }
        return shown;
    }
    Shot awaitPage0() {
        return stage.await([this](const Shot& shot) { return page0Shown(shot); }, "options page 0");
    }
    void openOptions() {
        stage.click(left + 200, top + 220);
        awaitPage0();
    }
    // Drags the chip of a filter to a slot and watches it on the way.
    void bind(int filter, int slot) {
        stage.pointerTo(left + 20 + 60 * filter, top + 150);
        stage.passPictures(kPicturesToSee);
        stage.mouseDown();
        stage.passPictures(kPicturesToSee);
        stage.pointerTo(left + 30 + 60 * slot, top + 225);
        stage.await(
            [&](const Shot& shot) {
                return at(shot, {28 + 60 * slot, 225}) == kDragBar;
            },
            "the dragged filter");
        if (slot == 0) {
            stage.keepShot(stage.look());
        }
        stage.mouseUp();
        stage.await(
            [&](const Shot& shot) {
                return at(shot, {28 + 60 * slot, 225}) != kDragBar &&
                       countOf(shot, box(10 + 60 * slot, 250, 40, 10), kNames) > 10;
            },
            "the filter's name under its letter");
    }

    Stage stage;
    int left = 320;
    int top = 180;
};

}  // namespace app
