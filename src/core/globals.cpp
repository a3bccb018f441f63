#include "core/globals.h"

#include "layout/colours.h"

int isExit = 1;
bool g_bMainLoop = true;
int tempsActuel = 0;
int tempsPrecedent = 0;
int fps = 0;
int x2 = 1;
int debugCount = 0;
short maxDeck = 0;
int _debugInt = 0;

SDL_Surface* screen[2] = {nullptr, nullptr};
SDL_Surface* _textureUI = nullptr;
SDL_Joystick* joy = nullptr;
int _nbJoySticks = 0;
SDL_Event g_Event;

uint32_t _colorW = colours::kWhite;
uint32_t _colorN = colours::kBlack;
uint32_t _colorR = colours::kPink;
uint32_t _colorB = colours::kBlue;
uint32_t _colorO = colours::kOrange;

uint16_t* moxelTiles16 = nullptr;
uint8_t* moxelAlpha16 = nullptr;
uint16_t* finalTilesTracks = nullptr;
uint16_t* finalTilesMix = nullptr;

c_all* all = nullptr;
c_moxel* moxel = nullptr;
c_keys* keys = nullptr;
c_playlist* playlist = nullptr;
Editor* editor = nullptr;
c_filters* _filters = nullptr;
c_ttf* ttf = nullptr;
c_lib* _lib = nullptr;
c_options* _options = nullptr;
c_mix* mix = nullptr;
c_overMenu* overMenu = nullptr;
c_intro* _intro = nullptr;
c_home* _home = nullptr;
