#pragma once
// c_options: the performer's preferences, their files, and the options screen. One object, the
// global
// `_options`.
//
// Two files below userdata/: prefs.xml (flags, application size, the filter of each slot) and
// gamecontroller.xml (the controller map). A missing file is reported in one line and leaves the
// values as they are. Saving replaces a file whole or leaves the old one and says so.

#include <SDL.h>

#include <cstdint>
#include <cstdio>
#include <string>

class c_options {
public:
    // Once the application resolution is known: reads both files, then looks for a composite output
    // again. The saved application size takes effect with updateResolution().
    void initOptions();
    void lireXML();
    void saveXML();
    void lireXMLController();
    void saveXMLController();
    std::string lireMot(const std::string& target);
    std::string lireNoeud(const std::string& name);
    int finLigne();
    void draw(SDL_Surface* surface, SDL_Surface* texture);
    // Leaves the screen for home: the preferences are saved, a changed resolution takes effect.
    void quitOptions();

    int32_t offsetX;  // of the 640 x 360 picture in the application resolution
    int32_t offsetY;
    int32_t page;
    SDL_Surface* controllerPicture;  // null when its file is missing
    int32_t dragging;
    int32_t draggedFilter;
    int32_t waitingButton;
    std::string homeDir;  // working directory at start-up
    FILE* file;           // open while read or written
    int32_t topbar;       // 1: draw the white lines at the top of the mix
    int32_t fps;          // 1: draw the frame rate on the mix screen
    int32_t anchorEntry;
};
