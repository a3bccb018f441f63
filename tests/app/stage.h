#pragma once
// One run of the real program on a private X server, with hands on its keyboard and mouse and eyes
// on its window. Everything that was started ends, and every file goes, when the Stage goes.
//
// The hands are in step with the program: they count its pictures (frame_double.h), so a key is
// held until the program must have seen it, however slow the machine is. What never comes ends the
// test: the waits throw std::runtime_error and leave a PPM file of the screen in the build folder.
// A pixel of the window that is no colour of its fails the test, whatever was looked for.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/child.h"
#include "app/clock.h"
#include "app/frames.h"
#include "app/runfolder.h"
#include "app/shot.h"
#include "app/xlink.h"
#include "app/xserver.h"

namespace app {

// The first picture that begins after an event reads it at the end of its sampling, the second
// answers a key. The program hands its pictures to the server without waiting; with the third one
// done the second is on the screen for sure.
inline constexpr int kPicturesToSee = 3;

class Stage {
public:
    // The X server is up and the run folder is there; the program does not run yet.
    explicit Stage(Screen screen = {});
    ~Stage();

    RunFolder folder;  // clips, playlists and missing files: fill it before start()
    // Where the program prints: a file, "" for nowhere, its standard output being closed.
    std::string printsTo = folder.path() + "/stdout";

    // Starts the program, waits for its window and gives it the keyboard.
    void start();
    // As far as the home screen; then further with "x" to the mix screen, where the over-menu is
    // open; then with "x" again, until the selected playlist of `tracks` one-block clips is loaded.
    void startAtHome();
    void startAtOverMenu();
    void startMix(int tracks);
    // With so many bytes of address space, which is not enough: its exit status.
    int startWithin(unsigned long addressSpace);

    void tap(unsigned long symbol);  // the key is seen down, acted on and seen up again
    void press(unsigned long symbol);
    void release(unsigned long symbol);
    // The same without waiting for the program.
    void keyDown(unsigned long symbol) { link_->key(symbol, true); }
    void keyUp(unsigned long symbol) { link_->key(symbol, false); }
    void pointerTo(int x, int y);  // in the window
    void click(int x, int y);
    void mouseDown() { link_->button(true); }
    void mouseUp() { link_->button(false); }
    // Waits for so many pictures that begin from now on.
    void passPictures(int count);
    int picturesBegun() const { return frames_.begun(); }
    int picturesShown() const { return frames_.finished(); }

    // The program's part of the screen: its window, as far as it is on the screen. Looked at while
    // the program rests between two pictures; one that never does is held between them.
    Shot look();
    // The same, and how many pictures had been shown by then.
    Shot lookInStep(int* pictures);
    // All of the screen; other programs' pixels may be of any colour.
    Shot lookAtScreen();
    Shot await(const std::function<bool(const Shot&)>& condition, const std::string& what);
    void expectShows(const Shot& wanted, const std::string& what);
    // The same in every picture of a stretch.
    void expectKeeps(const Shot& wanted, int pictures, const std::string& what);

    // Writes the shot into the build folder and answers where.
    std::string keepShot(const Shot& shot);

    const std::string& display() const { return server_.display(); }
    WindowPlace window() { return link_->findWindow("Velmora"); }
    void focus();
    bool isFullScreen() { return link_->isCovered(screen_.width, screen_.height); }
    bool running() { return program_.running(); }
    pid_t processId() const { return program_.id(); }
    int waitExit();  // exit status; throws when the program does not end
    XLink& link() { return *link_; }
    void askToClose();                                      // the window, as its close button does
    int closeWindow();                                      // asks, then as waitExit
    std::string output() { return folder.read("stdout"); }  // complete once the program has ended
    std::string errors() { return folder.read("stderr"); }

private:
    void startProgram(unsigned long addressSpace);
    using Capture = std::function<Shot()>;  // taken, and to be read
    Shot inStep(const std::function<Capture()>& take, int* pictures);
    void failOnStrange(const Shot& shot);
    // Looks, and again after each picture, until the shot is right; false when it never was.
    bool lookUntil(const std::function<bool(const Shot&)>& right, int timeoutMs, Shot* last);
    [[noreturn]] void giveUp(const std::string& what);

    // Order of making; the program ends first, the server last.
    XServer server_;
    std::unique_ptr<XLink> link_;
    Child program_;
    Screen screen_;
    Frames frames_{folder.path() + "/frames"};
    bool strangeSeen_ = false;
    bool restless_ = false;  // the program had no time to rest when it was last looked at
};

}  // namespace app
