#pragma once
// c_all: which screen is shown and the sizes of display and application. One object, the global
// `all`, created first.

#include <string>

#include "common/geometry.h"

enum ScreenState : int {
    STATE_INTRO = 0,
    STATE_HOME = 1,
    STATE_PLAYLISTS = 2,
    STATE_MIX = 3,
    STATE_OPTIONS = 4,
};

// Sub-states of the mix screen.
enum MixSubState : int { SUB_PERFORMING = 1, SUB_OVERMENU = 2 };

class c_all {
public:
    // After SDL_Init and before any video mode, while SDL still reports the display itself.
    void initAll();
    // Detects a composite output; from then on the application has the display's size.
    void checkComposite();
    // The chosen application size (pixels), and the offset of the picture in it to `placed`. The
    // video mode follows with updateResolution().
    void applyResolution(int w, int h);

    int state;             // ScreenState
    int subState;          // MixSubState
    std::string prefix;    // empty; handed to c_moxel::init, which does not use it
    int screenW, screenH;  // the display at start-up, pixels
    int appW, appH;        // the video surface, pixels
    int composite;         // 1 once a composite output was detected, never back to 0
    Point* placed;         // the options' picture offset; null until they are there
    int shown;             // ScreenState of the frame drawn last
};
