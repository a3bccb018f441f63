#pragma once
// The global objects and buffers, all declared here, all defined in globals.cpp and all created by
// main(). Only .cpp files of velmora_app include this. Each line ends with who writes it once the
// program runs.

#include <SDL.h>

#include <cstdint>

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
extern int isExit;          // 1 runs, 0 ends after this frame: input, home menu
extern bool g_bMainLoop;    // main
extern int tempsActuel;     // ms since SDL started, this call: mainLoop
extern int tempsPrecedent;  // ms, start of the last frame run: mainLoop
extern int fps;             // frame rate of the last frame: mainLoop
extern int x2;              // main; never read
extern int debugCount;      // main; never read
extern short maxDeck;       // main; never read
extern int _debugInt;       // counts controller button presses: input

// Surfaces, input devices.
extern SDL_Surface* screen[2];   // [0] work surface, [1] video surface: main, display
extern SDL_Surface* _textureUI;  // interface atlas, null when its file is missing: main
extern SDL_Joystick* joy;        // joystick 0, null when there is none: main
extern int _nbJoySticks;         // joysticks at start-up: main
extern SDL_Event g_Event;        // input

// Colours of layout/colours.h, 0x00RRGGBB, which nobody writes.
extern uint32_t _colorW;  // white
extern uint32_t _colorN;  // black
extern uint32_t _colorR;  // pink-red
extern uint32_t _colorB;  // blue
extern uint32_t _colorO;  // orange

// Pixel buffers: frames of 640 x 360 RGB565, row-major, 640 pixels a row. Slot 0 is the bottom
// layer, slot 1 the top layer.
extern uint16_t* moxelTiles16;      // two slots, the layers as drawn: clips
extern uint8_t* moxelAlpha16;       // room for a frame of 16-bit values; the first 230,400 bytes
                                    // hold the top layer's alpha, a byte a pixel, 0-15: clips
extern uint16_t* finalTilesTracks;  // two slots, the mixer's working copy: mixer, preview
extern uint16_t* finalTilesMix;     // one frame; nothing reads or writes it

// One object for each module; `moxel` is an array of 50.
extern c_all* all;
extern c_moxel* moxel;
extern c_keys* keys;
extern c_playlist* playlist;
extern Editor* editor;
extern c_filters* _filters;
extern c_ttf* ttf;
extern c_lib* _lib;
extern c_options* _options;
extern c_mix* mix;
extern c_overMenu* overMenu;
extern c_intro* _intro;
extern c_home* _home;
