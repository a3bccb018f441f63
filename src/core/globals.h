#pragma once
// The global objects and buffers, all defined here, and all created by mainloop.cpp before the
// first frame. Only .cpp files of velmora_app include this. Each line ends with who writes it once
// the program runs.

#include <SDL.h>

#include <cstdint>

#include "layout/colours.h"

class c_all;
class c_filters;
class c_home;
class c_intro;
class c_keys;
class c_lib;
class c_mix;
class c_moxel;
class c_options;
class c_overMenu;
class c_playlist;
class c_ttf;
class Editor;

// The run of the program.
inline int isExit = 1;           // 1 runs, 0 ends after this frame: input, home menu
inline bool g_bMainLoop = true;  // main
inline int tempsActuel = 0;      // ms since SDL started, this call: mainLoop
inline int tempsPrecedent = 0;   // ms, start of the last frame run: mainLoop
inline int fps = 0;              // frame rate of the last frame: mainLoop
inline int x2 = 1;               // main; never read
inline int debugCount = 0;       // main; never read
inline short maxDeck = 0;        // main; never read
inline int _debugInt = 0;        // counts controller button presses: input
// Called with the mix's picture on the video surface and nothing of the interface over it. Null
// on stage: who films it sets it before the run.
inline void (*mixPictureDone)() = nullptr;

// Whether a load step waits, frame by frame, until what it reads has come from the card. False for
// who counts frames: they must not depend on a disk.
inline bool loadWaits = true;

// Surfaces, input devices.
inline SDL_Surface* screen[2] = {};        // [0] work surface, [1] video surface: main, display
inline SDL_Surface* _textureUI = nullptr;  // interface atlas, null when its file is missing: main
inline SDL_Joystick* joy = nullptr;        // joystick 0, null when there is none: main
inline int _nbJoySticks = 0;               // joysticks at start-up: main
inline SDL_Event g_Event;                  // input

// Colours of layout/colours.h, 0x00RRGGBB, which nobody writes.
inline uint32_t _colorW = colours::kWhite;   // white
inline uint32_t _colorN = colours::kBlack;   // black
inline uint32_t _colorR = colours::kPink;    // pink-red
inline uint32_t _colorB = colours::kBlue;    // blue
inline uint32_t _colorO = colours::kOrange;  // orange

// Pixel buffers: frames of 640 x 360 RGB565, row-major, 640 pixels a row. Slot 0 is the bottom
// layer, slot 1 the top layer.
inline uint16_t* moxelTiles16 = nullptr;  // two slots, the layers as drawn: clips
// Room for a frame of 16-bit values; the first 230,400 bytes hold the top layer's alpha, a byte a
// pixel, 0-15: clips
inline uint8_t* moxelAlpha16 = nullptr;
inline uint16_t* finalTilesTracks = nullptr;  // two slots, the mixer's working copy: mixer, preview
inline uint16_t* finalTilesMix = nullptr;     // one frame; nothing reads or writes it

// One object for each module; `moxel` is an array of 50.
inline c_all* all = nullptr;
inline c_moxel* moxel = nullptr;
inline c_keys* keys = nullptr;
inline c_playlist* playlist = nullptr;
inline Editor* editor = nullptr;
inline c_filters* _filters = nullptr;
inline c_ttf* ttf = nullptr;
inline c_lib* _lib = nullptr;
inline c_options* _options = nullptr;
inline c_mix* mix = nullptr;
inline c_overMenu* overMenu = nullptr;
inline c_intro* _intro = nullptr;
inline c_home* _home = nullptr;
