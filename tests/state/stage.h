#pragma once
// The program without main(): Stage makes the buffers, surfaces and global objects in main's order,
// on scripted SDL and in a temporary working directory whose ./data is the product's, and takes
// them down again. Fixtures derive from StageTest.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "common/limits.h"
#include "core/all.h"
#include "core/display.h"
#include "core/filters.h"
#include "core/globals.h"
#include "draw/lib.h"
#include "draw/ttf.h"
#include "editor/editor.h"
#include "input/keys.h"
#include "mainloop.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "options/options.h"
#include "playlists/playlist.h"
#include "state/drawing.h"
#include "state/scripted_sdl.h"
#include "support/folder.h"
#include "ui/home.h"
#include "ui/intro.h"
#include "ui/overmenu.h"

// What `act` prints on standard output.
std::string printedBy(const std::function<void()>& act);

// A file under the temporary working directory; folders are made as needed.
void writeFile(const std::string& path, const std::string& content);
std::string readFile(const std::string& path);

// Makes every global what it is before main() starts, freeing what it holds.
void destroyGlobals();

class Stage {
public:
    // The display's size; below 800 wide it is a composite output.
    explicit Stage(int displayWidth = kHdmiWidth, int displayHeight = kHdmiHeight);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    TemporaryFolder folder;
};

class StageTest : public ::testing::Test {
protected:
    StageTest() = default;
    StageTest(int displayWidth, int displayHeight) : stage(displayWidth, displayHeight) {}

    Stage stage;
};

// "f", 12: "f12".
std::string numbered(const std::string& prefix, int number);

// One playlist more in memory; returns its index.
int addFamille(const std::string& name, const std::vector<std::string>& paths = {});
std::vector<std::string> familleNames();

// Copies a clip of tests/data/clips to ./videos/<as>.
void placeClip(const std::string& clip, const std::string& as);
// Loads ./videos/<name> into a slot; the slot is then ready.
void loadClip(int slot, const std::string& name);
// A slot that counts as ready with so many frames, without anything to draw.
void pretendClip(int slot, int frames);

// Sets slots of gKeys for the next handler call; every other slot is up.
void setKeys(const std::vector<int>& pressed, const std::vector<int>& held = {});

// One frame of the main loop, due 40 ms after the last one. Returns what mainLoop returned.
int runFrame();
