#pragma once
// c_options: the performer's preferences, their files, and the options screen's two pages: 0 with
// filters, display and controller status, 1 with the controller's buttons. One object, the global
// `_options`.
//
// Two files below userdata/: prefs.xml (flags, application size, the filter of each slot) and
// gamecontroller.xml (the controller map). A file that is missing or cannot be read is reported in
// one line and leaves the values as they are. Saving replaces a file whole or leaves the old one
// and says so; one that could not be read is left alone for the rest of the run.

#include <SDL.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "common/geometry.h"
#include "draw/painter.h"
#include "files/preferences.h"
#include "files/userfile.h"
#include "files/xmlscan.h"
#include "layout/options_layout.h"

class c_options {
public:
    // Once the application resolution is known: reads both files, then looks for a composite output
    // again. The saved application size takes effect with updateResolution().
    void initOptions();
    void lireXML();
    bool saveXML();  // false: said, the old file stands
    void lireXMLController();
    bool saveXMLController();  // likewise
    // Kept without a caller: the scanner's steps (xmlscan.h) on the open `file`.
    std::string lireMot(const std::string& target) { return xml::Scanner(file).skipTo(target); }
    std::string lireNoeud(const std::string& name) { return xml::Scanner(file).readNode(name); }
    int finLigne() { return xml::Scanner(file).skipChar(); }

    // The current page on the video surface, `surface`; `texture` is the interface atlas or null.
    // Positions are those of options_layout.h, relative to the picture.
    void draw(SDL_Surface* surface, SDL_Surface* texture);
    void drawScreen0(SDL_Surface* surface, SDL_Surface* texture);
    void drawScreen1(SDL_Surface* surface, SDL_Surface* texture);
    void drawFilters(SDL_Surface* surface);
    void drawDisplayOptions(SDL_Surface* surface, SDL_Surface* texture);
    void drawDrag(SDL_Surface* surface);  // the dragged filter at the mouse
    // One square of the controller page, at (x, y): blue while its button is pressed, else red
    // without a button (99 or below 0) or for an entry that there is not, else green.
    void drawButtonAnchor(int entry, int pressed, int x, int y);

    // Leaves the screen for home: the preferences are saved, a changed resolution takes effect.
    // When they cannot be saved the page stays with all that was chosen and says so; the next call
    // leaves without saving.
    void quitOptions();
    // Leaves page 1 for page 0: the controller map is saved, or likewise.
    void quitControllerPage();

    Point offset;  // of the 640 x 360 picture in the application resolution
    int32_t page;
    SDL_Surface* controllerPicture;  // null when its file is missing
    int32_t dragging;                // 1: a filter hangs at the mouse
    int32_t draggedFilter;           // its id
    int32_t waitingButton;           // 1: page 1 waits for a controller button
    std::string homeDir;             // working directory at start-up
    FILE* file;                      // of lireMot, lireNoeud and finLigne; null when closed
    int32_t topbar;                  // 1: draw the white lines at the top of the mix
    int32_t fps;                     // 1: draw the frame rate on the mix screen
    int32_t anchorEntry;             // square that waits for its button, 0 to 13
    // What the page has to say, or null: its save failed, and the next way out leaves unsaved. A
    // click that is no way out, and a change, put it back to null.
    const char* notice;
    UserFile prefsFile;
    UserFile controllerFile;

private:
    files::Preferences preferences() const;
    Painter painterOn(SDL_Surface* surface) const { return Painter(surface, offset); }
    void drawController(Painter& painter) const;
    void drawAnchors(Painter& painter);
    void drawWaitingBox(Painter& painter) const;
    void drawNotice(Painter& painter, Point at) const;
    static void drawBack(Painter& painter, SDL_Surface* texture);
};
